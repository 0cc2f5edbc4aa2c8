#include "MXFIO/Reader.h"

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Value.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace MXFIO
{
using Packs::PartitionPack;

struct Reader::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(Reader * o, DataIO::RandomAccessDataSource & s, Templates::SharedPtr<MetaMetadata::Dictionary> d,
         uint64 limit)
        : owner(o), source(s), klvReader(s), dictionary(d), keySearchLimit(limit), runInLength(0)
    {
    }

    ~Impl()
    {
        runInValue.reset();
    }

    // Reads the pack of `packet`, steps over one fill item behind it and files the partition,
    // unless one stands at that offset already.
    Partition * registerPartition(KLV::Packet & packet)
    {
        uint64 const offset = packet.keyAbsoluteOffset();
        Templates::auto_ptr<PartitionPack> pack(new PartitionPack(packet));
        packet.value().discard();
        uint64 metadataOffset = source.absoluteOffset();
        try
        {
            uint64 skipped = 0;
            KLV::Key next = klvReader.peekNextKey(skipped, 0);
            if (KLV::isFillItem(next))
            {
                Templates::auto_ptr<KLV::Packet> fill = klvReader.nextKLV(skipped, 0);
                fill->value().discard();
                metadataOffset = source.absoluteOffset();
            }
        }
        catch (Exceptions::NotEnoughData &)
        {
        }
        Partitions::iterator found = partitions.find(offset);
        if (found != partitions.end())
            return found->second.get();
        Templates::auto_ptr<Partition> partition(
            new Partition(*owner, std::move(pack), offset, metadataOffset, keySearchLimit));
        return partitions.insert(Partitions::value_type(offset, std::move(partition))).first->second.get();
    }

    typedef Templates::map<uint64, Templates::auto_ptr<Partition>> Partitions;

    Reader * owner;
    DataIO::RandomAccessDataSource & source;
    KLV::Reader klvReader;
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    uint64 keySearchLimit;
    uint64 runInLength;
    Templates::vector<unsigned char> runInBuffer;
    Templates::auto_ptr<DataIO::Memory::MemoryDataSource> runInSource;
    Templates::auto_ptr<KLV::Value> runInValue;
    Partitions partitions;
    Templates::SharedPtr<Packs::RandomIndexPack> rip;
};

Reader::Reader(DataIO::RandomAccessDataSource & source, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
               uint64 keySearchLimit)
    : impl_(new Impl(this, source, dictionary, keySearchLimit))
{
}

Reader::~Reader() = default;

DataIO::RandomAccessDataSource & Reader::source()
{
    return impl_->source;
}

KLV::Reader & Reader::klvReader()
{
    return impl_->klvReader;
}

Templates::SharedPtr<MetaMetadata::Dictionary> Reader::dictionary() const
{
    return impl_->dictionary;
}

Templates::SharedPtr<Packs::RandomIndexPack> Reader::rip() const
{
    return impl_->rip;
}

uint64 Reader::runInLength() const
{
    return impl_->runInLength;
}

Partition * Reader::find(uint64 offset)
{
    Impl::Partitions::iterator it = impl_->partitions.upper_bound(offset);
    if (it == impl_->partitions.begin())
        return nullptr;
    --it;
    return it->second.get();
}

Partition * Reader::readPartition(uint64 limit, bool unlimited, uint64 & bytesSkipped, bool & essenceSeen)
{
    bytesSkipped = 0;
    int64 budget = int64(limit);
    try
    {
        for (;;)
        {
            if (impl_->source.remaining() == 0 || budget < 0)
                return nullptr;
            uint64 skipped = 0;
            Templates::auto_ptr<KLV::Packet> packet = impl_->klvReader.nextKLV(skipped, uint64(budget));
            bytesSkipped += skipped;
            if (Packs::isPartitionPack(packet->key()))
                return impl_->registerPartition(*packet);
            if (KLV::isEssence(packet->key()))
                essenceSeen = true;
            bytesSkipped += packet->klvLength();
            if (!unlimited)
                budget -= int64(packet->klvLength());
            packet->value().discard();
        }
    }
    catch (Exceptions::NotEnoughData &)
    {
    }
    catch (Exceptions::KeyNotFound &)
    {
    }
    catch (Exceptions::InvalidFormat &)
    {
    }
    return nullptr;
}

Partition * Reader::headerPartition()
{
    if (!impl_->partitions.empty())
    {
        Partition * known = find(impl_->runInLength);
        if (known != nullptr && known->partitionAbsoluteOffset() == impl_->runInLength)
            return known;
        impl_->source.seek(0);
    }
    else if (impl_->source.absoluteOffset() != 0)
    {
        impl_->source.seek(0);
    }
    bool essenceSeen = false;
    uint64 runIn = 0;
    Partition * header = readPartition(impl_->keySearchLimit, false, runIn, essenceSeen);
    if (header == nullptr)
        return nullptr;
    impl_->runInLength = runIn;
    if (impl_->runInLength != 0 && !impl_->runInSource)
    {
        impl_->source.seek(0);
        impl_->runInBuffer.resize(size_t(impl_->runInLength));
        uint64 got = impl_->source.read(impl_->runInBuffer.data(), impl_->runInLength);
        impl_->runInBuffer.resize(size_t(got));
        impl_->runInSource.reset(
            new DataIO::Memory::MemoryDataSource(impl_->runInBuffer.data(), impl_->runInBuffer.size()));
    }
    return header;
}

KLV::Value * Reader::runIn()
{
    if (impl_->runInLength == 0 || !impl_->runInSource)
        return nullptr;
    if (!impl_->runInValue)
    {
        impl_->runInSource->seek(0);
        impl_->runInValue.reset(new KLV::Value(*impl_->runInSource, impl_->runInBuffer.size()));
    }
    return impl_->runInValue.get();
}

void Reader::positionSource(Partition * partition)
{
    DataIO::RandomAccessDataSource & source = impl_->source;
    if (impl_->rip.get() == nullptr)
    {
        uint64 const body = partition->bodyAbsoluteOffset();
        if (source.absoluteOffset() > body)
        {
            try
            {
                uint64 skipped = 0;
                if (Packs::isPartitionPack(impl_->klvReader.peekNextKey(skipped, 0)))
                    return;
            }
            catch (Exceptions::NotEnoughData &)
            {
            }
            catch (Exceptions::KeyNotFound &)
            {
            }
        }
        source.seek(body);
        return;
    }
    Packs::RandomIndexPack::OffsetIndexedMap const & offsets = impl_->rip->offsetIndexedMap();
    Packs::RandomIndexPack::OffsetIndexedMap::const_iterator it =
        offsets.find(partition->partitionPack().thisPartition());
    if (it == offsets.end())
        return;
    ++it;
    if (it == offsets.end())
        return;
    source.seek(it->first + impl_->runInLength);
}

Partition * Reader::nextPartition(Partition * current)
{
    if (current == nullptr || current->partitionPack().partitionKind() == PartitionPack::FooterPartition)
        return nullptr;
    uint64 const offset = current->partitionAbsoluteOffset();
    Impl::Partitions::iterator it = impl_->partitions.find(offset);
    if (it == impl_->partitions.end())
    {
        impl_->source.seek(offset);
        uint64 skipped = 0;
        bool essenceSeen = false;
        readPartition(0, true, skipped, essenceSeen);
        it = impl_->partitions.find(offset);
    }
    if (it != impl_->partitions.end())
    {
        ++it;
        if (it != impl_->partitions.end() &&
            it->second->partitionPack().previousPartition() + impl_->runInLength == offset)
            return it->second.get();
    }
    positionSource(current);
    uint64 skipped = 0;
    bool essenceSeen = false;
    Partition * next = readPartition(impl_->keySearchLimit, true, skipped, essenceSeen);
    if (next == nullptr)
        return nullptr;
    THROW_UNLESS(InvalidFormat,
                 next == 0 || next -> partitionPack ().previousPartition () <= current -> partitionPack ().thisPartition (),
                 "The Partition Pack has an invalid PreviousPartition value");
    // A walk only ever moves on; a pack met again behind us ends it.
    if (next->partitionAbsoluteOffset() <= offset)
        return nullptr;
    return next;
}

Partition * Reader::previousPartition(Partition * current)
{
    if (current == nullptr || current->partitionPack().partitionKind() == PartitionPack::HeaderPartition)
        return nullptr;
    uint64 const p = current->partitionPack().previousPartition();
    Partition * previous = nullptr;
    Impl::Partitions::iterator it = impl_->partitions.find(p + impl_->runInLength);
    if (it != impl_->partitions.end())
    {
        previous = it->second.get();
    }
    else
    {
        impl_->source.seek(p);
        uint64 skipped = 0;
        bool essenceSeen = false;
        previous = readPartition(impl_->keySearchLimit, false, skipped, essenceSeen);
    }
    THROW_UNLESS(InvalidFormat, previous != current && previous != 0,
                 "A Partition has an invalid PreviousPartition value");
    THROW_UNLESS(InvalidFormat,
                 previous -> partitionPack ().thisPartition () < current -> partitionPack ().thisPartition (),
                 "Partitions have inconsistent ThisPartition values");
    // Offsets in the source must fall as well, so that no walk back can turn in a circle.
    THROW_UNLESS_TEXT(InvalidFormat, previous->partitionAbsoluteOffset() < current->partitionAbsoluteOffset(),
                      "previous -> partitionPack ().thisPartition () < current -> partitionPack ().thisPartition ()",
                      "Partitions have inconsistent ThisPartition values");
    return previous;
}

Partition * Reader::nextPartition(Partition * current, unsigned int bodySID)
{
    for (Partition * p = nextPartition(current); p != nullptr; p = nextPartition(p))
        if (p->partitionPack().bodySID() == bodySID)
            return p;
    return nullptr;
}

Partition * Reader::previousPartition(Partition * current, unsigned int bodySID)
{
    for (Partition * p = previousPartition(current); p != nullptr; p = previousPartition(p))
        if (p->partitionPack().bodySID() == bodySID)
            return p;
    return nullptr;
}

Partition * Reader::nextIndexPartition(Partition * current, unsigned int indexSID)
{
    for (Partition * p = nextPartition(current); p != nullptr; p = nextPartition(p))
        if (p->partitionPack().indexSID() == indexSID)
            return p;
    return nullptr;
}

Partition * Reader::previousIndexPartition(Partition * current, unsigned int indexSID)
{
    for (Partition * p = previousPartition(current); p != nullptr; p = previousPartition(p))
        if (p->partitionPack().indexSID() == indexSID)
            return p;
    return nullptr;
}

Partition * Reader::nextCompletePartition(Partition * current)
{
    for (Partition * p = nextPartition(current); p != nullptr; p = nextPartition(p))
        if (p->partitionPack().isComplete())
            return p;
    return nullptr;
}

Partition * Reader::nextClosedPartition(Partition * current)
{
    for (Partition * p = nextPartition(current); p != nullptr; p = nextPartition(p))
        if (!p->partitionPack().isOpen())
            return p;
    return nullptr;
}

Partition * Reader::lastLoadedPartition()
{
    if (impl_->partitions.empty())
        return nullptr;
    return impl_->partitions.rbegin()->second.get();
}

Partition * Reader::firstPartitionWithFinalMetadata()
{
    Partition * header = headerPartition();
    THROW_UNLESS(InvalidFormat, header != 0, "No header partition found");
    Partition * latestOpen = nullptr;
    for (Partition * p = header; p != nullptr; p = nextPartition(p))
    {
        if (p->partitionPack().headerByteCount() == 0)
            continue;
        if (!p->partitionPack().isOpen())
            return p;
        latestOpen = p;
    }
    return latestOpen != nullptr ? latestOpen : header;
}

bool Reader::loadRIP()
{
    DataIO::RandomAccessDataSource & source = impl_->source;
    source.seek(0);
    uint64 const size = source.remaining();
    if (size < 4)
        return false;
    source.seek(size - 4);
    uint64 length = 0;
    {
        unsigned char word[4] = {0, 0, 0, 0};
        KLV::Value value(source, 4);
        if (value.read(word, 4) != 4)
            return false;
        length = (uint64(word[0]) << 24) | (uint64(word[1]) << 16) | (uint64(word[2]) << 8) | uint64(word[3]);
    }
    if (length >= size || length < 21)
        return false;
    try
    {
        source.seek(size - length);
        KLV::Reader reader(source);
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        Templates::SharedPtr<Packs::RandomIndexPack> rip(new Packs::RandomIndexPack(*packet));
        impl_->rip = rip;
        return true;
    }
    catch (Exceptions::NotEnoughData &)
    {
    }
    catch (Exceptions::InvalidFormat &)
    {
    }
    catch (Exceptions::KeyNotFound &)
    {
    }
    catch (Exceptions::InvalidKey &)
    {
    }
    catch (Exceptions::InvalidLength &)
    {
    }
    return false;
}

bool Reader::loadRIP(Templates::auto_ptr<Packs::RandomIndexPack> rip)
{
    if (impl_->rip.get() != nullptr)
        return false;
    impl_->rip = Templates::SharedPtr<Packs::RandomIndexPack>(rip.release());
    return true;
}
} // namespace MXFIO
} // namespace Vellum
