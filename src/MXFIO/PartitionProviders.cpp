#include "MXFIO/PartitionProvider.h"

#include "MXFIO/BodyExtent.h"
#include "MXFIO/ContainerOffsets.h"
#include "MXFIO/Reader2.h"
#include "Packs/RandomIndexPack.h"
#include "Platform/Synchronization.h"

namespace Vellum
{
namespace MXFIO
{
// ---------------------------------------------------------------------------------------------
// BasicPartitionProvider

BasicPartitionProvider::BasicPartitionProvider(Reader & reader, unsigned int bodySID, bool fromLastLoaded)
    : reader_(reader), bodySID_(bodySID), fromLastLoaded_(fromLastLoaded)
{
}

Partition * BasicPartitionProvider::partition(uint64 streamOffset, int64)
{
    Reader2 * reader2 = dynamic_cast<Reader2 *>(&reader_);
    if (reader2 != nullptr)
        return partitionContainingRelativeOffset(*reader2, bodySID_, streamOffset, fromLastLoaded_);
    return partitionContainingRelativeOffset(reader_, bodySID_, streamOffset);
}

// ---------------------------------------------------------------------------------------------
// BaseRandomPartitionProvider

struct BaseRandomPartitionProvider::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(Reader2 & r, unsigned int sid) : reader(r), bodySID(sid) {}

    Reader2 & reader;
    unsigned int bodySID;
    Templates::vector<uint64> partitionOffsets;
};

BaseRandomPartitionProvider::BaseRandomPartitionProvider(Reader2 & reader, unsigned int bodySID)
    : impl_(new Impl(reader, bodySID))
{
    if (reader.rip().get() == nullptr)
        reader.loadRipFromFooter();
    Templates::SharedPtr<Packs::RandomIndexPack> rip = reader.rip();
    if (rip.get() != nullptr)
    {
        Packs::RandomIndexPack::OffsetIndexedMap const & offsets = rip->offsetIndexedMap();
        for (Packs::RandomIndexPack::OffsetIndexedMap::const_iterator it = offsets.begin(); it != offsets.end();
             ++it)
            if (it->second == bodySID)
                impl_->partitionOffsets.push_back(it->first);
    }
}

BaseRandomPartitionProvider::~BaseRandomPartitionProvider() = default;

Templates::vector<uint64> const & BaseRandomPartitionProvider::partitionOffsets() const
{
    return impl_->partitionOffsets;
}

Reader2 & BaseRandomPartitionProvider::reader() { return impl_->reader; }

unsigned int BaseRandomPartitionProvider::bodySID() const { return impl_->bodySID; }

uint64 BaseRandomPartitionProvider::essenceSize(Partition & partition, uint64)
{
    // The partition behind it in the file closes its essence, whatever its body SID.
    return Detail::lastBodySize(partition, impl_->reader.nextPartition(&partition));
}

Partition * BaseRandomPartitionProvider::partition(uint64 streamOffset, int64 editUnit)
{
    Templates::vector<uint64> const & table = impl_->partitionOffsets;
    if (table.empty())
        return nullptr;
    uint64 const last = table.size() - 1;
    uint64 low = 0;
    uint64 high = last;
    for (;;)
    {
        uint64 i = guessIndex(streamOffset, editUnit);
        if (i < low)
            i = low;
        if (i > high)
            i = high;
        Partition * partition = impl_->reader.partitionAtOffset(table[i]);
        THROW_UNLESS_TEXT(InvalidFormat, partition != nullptr && partition->partitionPack().thisPartition() == table[i],
                          "partition != 0", "Unable to find a partition in an offset indicated in RIP.");
        partitionRead(*partition);
        uint64 const bodyOffset = partition->partitionPack().bodyOffset();
        if (streamOffset >= bodyOffset)
        {
            if (streamOffset - bodyOffset < essenceSize(*partition, i))
                return partition;
            if (i == last || i == high)
                return nullptr;
            low = i + 1;
        }
        else
        {
            if (i == 0 || i == low)
                return nullptr;
            high = i - 1;
        }
    }
}

// ---------------------------------------------------------------------------------------------
// EstimatePartitionProvider

struct EstimatePartitionProvider::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl() : average(0), count(0) {}

    // Stream bytes for each partition, over the partitions seen.
    uint64 average;
    uint64 count;
    Templates::map<Partition *, uint64> sizes;
};

EstimatePartitionProvider::EstimatePartitionProvider(Reader2 & reader, unsigned int bodySID)
    : BaseRandomPartitionProvider(reader, bodySID), impl_(new Impl)
{
    Templates::vector<uint64> const & table = partitionOffsets();
    THROW_UNLESS_TEXT(NotFound, table.size() > 1, "partitionOffsets_.size () > 1",
                      "No partition for this bodySID was found in RIP.");
    // The first partition and the last but one, reached back from the last, start the average;
    // the last may be short.
    Partition * first = reader.partitionAtOffset(table.front());
    THROW_UNLESS_TEXT(InvalidFormat, first != nullptr && first->partitionPack().thisPartition() == table.front(),
                      "partition != 0", "Unable to find a partition in an offset indicated in RIP.");
    partitionRead(*first);
    Partition * lastOne = reader.partitionAtOffset(table.back());
    THROW_UNLESS_TEXT(InvalidFormat, lastOne != nullptr && lastOne->partitionPack().thisPartition() == table.back(),
                      "partition != 0", "Unable to find a partition in an offset indicated in RIP.");
    Partition * lastButOne = reader.previousPartition(lastOne, bodySID);
    if (lastButOne != nullptr)
        partitionRead(*lastButOne);
}

EstimatePartitionProvider::~EstimatePartitionProvider() = default;

uint64 EstimatePartitionProvider::guessIndex(uint64 streamOffset, int64)
{
    return impl_->average == 0 ? 0 : streamOffset / impl_->average;
}

void EstimatePartitionProvider::partitionRead(Partition & partition)
{
    if (impl_->sizes.find(&partition) != impl_->sizes.end())
        return;
    uint64 const size = essenceSize(partition, 0);
    // (size + average * count) / (count + 1), without the product leaving the range.
    uint64 const count = impl_->count;
    uint64 const average = impl_->average;
    uint64 updated = 0;
    if (size >= average)
        updated = average + (size - average) / (count + 1);
    else
        updated = average - (average - size + count) / (count + 1);
    impl_->sizes.insert(Templates::map<Partition *, uint64>::value_type(&partition, size));
    impl_->average = updated;
    impl_->count = count + 1;
}

// ---------------------------------------------------------------------------------------------
// FixedEditUnitCountPartitionProvider

FixedEditUnitCountPartitionProvider::FixedEditUnitCountPartitionProvider(Reader2 & reader, unsigned int bodySID,
                                                                         unsigned int editUnitsPerPartition)
    : BaseRandomPartitionProvider(reader, bodySID), editUnitsPerPartition_(editUnitsPerPartition)
{
    THROW_UNLESS(InvalidValue, editUnitsPerPartition_ != 0,
                 "ContentStorageProfile indicates '0' as the editUnitsPerPartition value.");
}

uint64 FixedEditUnitCountPartitionProvider::guessIndex(uint64, int64 editUnit)
{
    if (editUnit < 0)
        return 0;
    return static_cast<uint64>(editUnit) / editUnitsPerPartition_;
}

// ---------------------------------------------------------------------------------------------
// StreamingPartitionProvider

struct StreamingPartitionProvider::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(Reader & r, unsigned int sid) : reader(r), bodySID(sid), lastSeen(nullptr) {}

    // Takes in the partitions written since the last look.
    void refresh()
    {
        Partition * p = lastSeen == nullptr ? reader.headerPartition() : reader.nextPartition(lastSeen);
        for (; p != nullptr; p = reader.nextPartition(p))
        {
            lastSeen = p;
            if (p->partitionPack().bodySID() == bodySID)
                byBodyOffset.insert(Partitions::value_type(p->partitionPack().bodyOffset(), p));
        }
    }

    typedef Templates::map<uint64, Partition *> Partitions;
    Reader & reader;
    unsigned int bodySID;
    Partition * lastSeen;
    Partitions byBodyOffset;
    Platform::Synchronization::Mutex mutex;
};

StreamingPartitionProvider::StreamingPartitionProvider(Reader & reader, unsigned int bodySID)
    : impl_(new Impl(reader, bodySID))
{
}

StreamingPartitionProvider::~StreamingPartitionProvider() = default;

Partition * StreamingPartitionProvider::partition(uint64 streamOffset, int64)
{
    Platform::Synchronization::ScopedLock lock(impl_->mutex);
    impl_->refresh();
    Impl::Partitions::iterator it = impl_->byBodyOffset.upper_bound(streamOffset);
    if (it == impl_->byBodyOffset.begin())
        return nullptr;
    --it;
    Partition * partition = it->second;
    uint64 const bodyOffset = it->first;
    // The essence reaches to the next partition, or for now to the end of what has been written.
    Partition * next = impl_->reader.nextPartition(partition);
    uint64 const body = partition->bodyAbsoluteOffset();
    uint64 const end = next != nullptr ? next->partitionAbsoluteOffset() : Detail::sourceEnd(impl_->reader);
    if (end <= body || streamOffset - bodyOffset >= end - body)
        return nullptr;
    return partition;
}
} // namespace MXFIO
} // namespace Vellum
