#include "MXFIO/Reader2.h"

#include "Exceptions/Exceptions.h"

#include <algorithm>

namespace Vellum
{
namespace MXFIO
{
using Packs::PartitionPack;

namespace
{
// The scan from the end steps back by this much and reads ahead at most a key more.
uint64 const scanStep = 6144;
uint64 const scanWindow = 6160;

bool isFooter(Partition const * partition)
{
    return partition != nullptr && partition->partitionPack().partitionKind() == PartitionPack::FooterPartition;
}
} // namespace

Reader2::Reader2(DataIO::RandomAccessDataSource & source, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
                 uint64 keySearchLimit)
    : Reader(source, dictionary, keySearchLimit), footer_(nullptr)
{
}

Reader2::~Reader2() {}

Partition * Reader2::lastPartitionFromRIP()
{
    Templates::SharedPtr<Packs::RandomIndexPack> table = rip();
    if (table.get() == nullptr || table->offsetIndexedMap().empty())
        return nullptr;
    uint64 const o = table->offsetIndexedMap().rbegin()->first;
    uint64 const absolute = o + runInLength();
    Partition * partition = find(absolute);
    if (partition != nullptr && partition->partitionPack().thisPartition() == o)
    {
        THROW_UNLESS_TEXT(InvalidFormat, isFooter(partition),
                          "partition -> partitionPack ().partitionKind () == PartitionPack::FOOTER_PARTITION",
                          "Last Partition indicated by RIP is not a Footer Partition");
        return partition;
    }
    source().seek(absolute);
    uint64 skipped = 0;
    bool essenceSeen = false;
    return readPartition(0, true, skipped, essenceSeen);
}

Partition * Reader2::lastPartitionFromHeaderFooterOffset()
{
    Partition * header = headerPartition();
    THROW_UNLESS(InvalidFormat, header != 0, "No header partition found");
    uint64 const f = header->partitionPack().footerPartition();
    Partition * known = find(f + runInLength());
    if (isFooter(known) && known->partitionPack().thisPartition() == f)
        return known;
    if (f == 0)
        return nullptr;
    uint64 const end = source().absoluteOffset() + source().remaining();
    if (f + runInLength() >= end)
        return nullptr;
    source().seek(f + runInLength());
    uint64 skipped = 0;
    bool essenceSeen = false;
    Partition * footer = readPartition(0, true, skipped, essenceSeen);
    if (!isFooter(footer))
        VELLUM_THROW(InvalidFormat, "Footer not found where indicated in header partition");
    return footer;
}

Partition * Reader2::searchLastPartition(bool footerOnly)
{
    DataIO::RandomAccessDataSource & s = source();
    s.seek(0);
    uint64 const size = s.remaining();
    uint64 start = size;
    for (;;)
    {
        THROW_UNLESS_TEXT(InvalidFormat, start != 0, "partition != 0", "No partition found");
        start = start < scanStep + 1 ? 0 : start - scanStep;
        s.seek(start);
        bool essenceSeen = false;
        uint64 skipped = 0;
        Partition * found = readPartition(std::min(s.remaining(), scanWindow), false, skipped, essenceSeen);
        if (found != nullptr)
        {
            for (;;)
            {
                if (isFooter(found))
                {
                    footer_ = found;
                    return found;
                }
                positionSource(found);
                Partition * next = readPartition(std::min(s.remaining(), scanWindow), false, skipped, essenceSeen);
                // A pack met again, or one behind the last, ends the walk as a miss would.
                if (next == nullptr || next->partitionAbsoluteOffset() <= found->partitionAbsoluteOffset())
                    return footerOnly ? nullptr : found;
                found = next;
            }
        }
        if (footerOnly && essenceSeen)
            return nullptr;
        if (s.absoluteOffset() > size)
            VELLUM_THROW(InvalidFormat, "No partition found in file");
    }
}

Partition * Reader2::searchLastPartition(uint64 size)
{
    DataIO::RandomAccessDataSource & s = source();
    s.seek(0);
    uint64 const total = s.remaining();
    s.seek(size > total ? 0 : total - size);
    Partition * last = nullptr;
    while (s.remaining() != 0 && s.absoluteOffset() <= total)
    {
        uint64 skipped = 0;
        bool essenceSeen = false;
        Partition * found = readPartition(s.remaining(), false, skipped, essenceSeen);
        if (found == nullptr)
            break;
        last = found;
    }
    return last;
}

Partition * Reader2::lastPartition(uint64 size)
{
    return searchLastPartition(size);
}

Partition * Reader2::lastPartition()
{
    if (footer_ != nullptr)
        return footer_;
    Partition * last = nullptr;
    try
    {
        last = lastPartitionFromHeaderFooterOffset();
    }
    catch (Exceptions::InvalidFormat &)
    {
        last = nullptr;
    }
    if (last == nullptr)
        last = lastPartitionFromRIP();
    if (last == nullptr)
        last = searchLastPartition(false);
    if (isFooter(last))
        footer_ = last;
    return last;
}

Partition * Reader2::footerPartition()
{
    if (footer_ != nullptr)
        return footer_;
    try
    {
        Partition * found = lastPartitionFromHeaderFooterOffset();
        if (found == nullptr)
            found = lastPartitionFromRIP();
        if (isFooter(found))
        {
            footer_ = found;
            return found;
        }
        return searchLastPartition(true);
    }
    catch (Exceptions::InvalidFormat &)
    {
        return nullptr;
    }
}

Partition * Reader2::partitionAtOffset(uint64 offset)
{
    Partition * known = find(offset + runInLength());
    if (known != nullptr && known->partitionPack().thisPartition() == offset)
        return known;
    source().seek(offset + runInLength());
    uint64 skipped = 0;
    bool essenceSeen = false;
    return readPartition(0, true, skipped, essenceSeen);
}

Partition * Reader2::backwardFirstPartitionWithFinalMetadata()
{
    Partition * header = headerPartition();
    THROW_UNLESS(InvalidFormat, header != 0, "No header partition found");
    if (header->partitionPack().headerByteCount() != 0 && !header->partitionPack().isOpen())
        return header;
    Partition * last = lastPartition();
    if (last == nullptr)
        return header;
    for (Partition * p = last; p != nullptr; p = previousPartition(p))
        if (p->partitionPack().headerByteCount() != 0)
            return p;
    return last;
}

bool Reader2::loadRipFromFooter()
{
    if (loadRIP())
        return true;
    Partition * footer = footerPartition();
    if (footer == nullptr)
        return false;
    Templates::auto_ptr<Packs::RandomIndexPack> table(new Packs::RandomIndexPack);
    for (Partition * p = footer; p != nullptr; p = previousPartition(p))
        table->add(p->partitionPack().bodySID(), p->partitionAbsoluteOffset());
    return loadRIP(std::move(table));
}
} // namespace MXFIO
} // namespace Vellum
