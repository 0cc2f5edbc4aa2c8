#include "MXFIO/ContainerOffsets.h"

#include "MXFIO/BodyExtent.h"
#include "MXFIO/Reader2.h"
#include "Packs/RandomIndexPack.h"

namespace Vellum
{
namespace MXFIO
{
using Detail::bodyBeyondText;

namespace
{
bool ofBody(Partition const * partition, unsigned int bodySID)
{
    return partition->partitionPack().bodySID() == bodySID;
}

// The essence of a partition that the next partition closes, or the end of the file when none
// follows.
uint64 bodySize(Reader & reader, Partition & partition, Partition * next)
{
    uint64 const body = partition.bodyAbsoluteOffset();
    if (next != nullptr)
    {
        uint64 const nextOffset = next->partitionAbsoluteOffset();
        THROW_UNLESS(InvalidFormat, body <= nextOffset,
                     bodyBeyondText("Expected body offset of partition 0x", body,
                                    "is higher than begin of next partition (0x", nextOffset));
        return nextOffset - body;
    }
    uint64 const end = Detail::sourceEnd(reader);
    THROW_UNLESS(InvalidFormat, body <= end,
                 bodyBeyondText("Expected body offset of partition 0x", body, "is higher than the total file size (0x",
                                end));
    return end - body;
}

// The partitions of the body SID as the RIP names them, in file order. Empty without a RIP or
// when the RIP does not name the body SID.
Templates::vector<Partition *> partitionsFromRIP(Reader2 & reader, unsigned int bodySID)
{
    Templates::vector<Partition *> found;
    Templates::SharedPtr<Packs::RandomIndexPack> rip = reader.rip();
    if (rip.get() == nullptr)
        return found;
    Packs::RandomIndexPack::OffsetIndexedMap const & offsets = rip->offsetIndexedMap();
    for (Packs::RandomIndexPack::OffsetIndexedMap::const_iterator it = offsets.begin(); it != offsets.end(); ++it)
    {
        if (it->second != bodySID)
            continue;
        Partition * partition = reader.partitionAtOffset(it->first);
        THROW_UNLESS_TEXT(InvalidFormat, partition != nullptr && partition->partitionPack().thisPartition() == it->first,
                          "partition != 0", "Unable to find a partition in an offset indicated in RIP.");
        found.push_back(partition);
    }
    return found;
}
} // namespace

uint64 containerSize(Reader & reader, unsigned int bodySID)
{
    uint64 total = 0;
    Partition * current = reader.headerPartition();
    while (current != nullptr)
    {
        Partition * next = reader.nextPartition(current);
        if (ofBody(current, bodySID))
            total += bodySize(reader, *current, next);
        current = next;
    }
    return total;
}

uint64 containerSize(Reader2 & reader, unsigned int bodySID)
{
    if (reader.rip().get() == nullptr)
        reader.loadRipFromFooter();
    Templates::vector<Partition *> partitions = partitionsFromRIP(reader, bodySID);
    if (partitions.empty())
    {
        // No RIP to go by: the chain of partitions from the header.
        for (Partition * p = reader.headerPartition(); p != nullptr; p = reader.nextPartition(p))
            if (ofBody(p, bodySID))
                partitions.push_back(p);
    }
    uint64 total = 0;
    for (std::size_t i = 0; i < partitions.size(); ++i)
    {
        Partition * after = reader.nextPartition(partitions[i]);
        if (i + 1 == partitions.size())
            total += Detail::lastBodySize(*partitions[i], after);
        else
            total += bodySize(reader, *partitions[i], after);
    }
    return total;
}

Partition * partitionContainingRelativeOffset(Reader & reader, unsigned int bodySID, uint64 offset)
{
    Partition * currentPartition = reader.headerPartition();
    THROW_UNLESS(InvalidFormat, currentPartition != 0, "Could not find header partition.");
    uint64 const end = Detail::sourceEnd(reader);
    while (currentPartition != nullptr)
    {
        bool const mine = ofBody(currentPartition, bodySID);
        if (mine && currentPartition->partitionPack().bodyOffset() == offset)
            return currentPartition;
        Partition * next = reader.nextPartition(currentPartition);
        if (mine)
        {
            uint64 const bodyOffset = currentPartition->partitionPack().bodyOffset();
            uint64 const body = currentPartition->bodyAbsoluteOffset();
            uint64 const limit = next != nullptr ? next->partitionAbsoluteOffset() : end;
            // A partition with no essence behind its pack holds no offset.
            if (limit > body && offset >= bodyOffset && offset - bodyOffset < limit - body)
                return currentPartition;
        }
        currentPartition = next;
    }
    return nullptr;
}

Partition * partitionContainingRelativeOffset(Reader2 & reader, unsigned int bodySID, uint64 offset,
                                              bool fromLastLoaded)
{
    Partition * currentPartition = fromLastLoaded ? nullptr : reader.footerPartition();
    if (currentPartition == nullptr)
        currentPartition = reader.lastLoadedPartition();
    THROW_UNLESS(InvalidFormat, currentPartition != 0, "Could not find footer partition.");

    // The start of the partition behind the one looked at, or the end of the file for the first.
    uint64 after = Detail::sourceEnd(reader);
    bool endChecked = false;
    for (; currentPartition != nullptr; currentPartition = reader.previousPartition(currentPartition))
    {
        uint64 const here = currentPartition->partitionAbsoluteOffset();
        if (ofBody(currentPartition, bodySID))
        {
            uint64 const bodyOffset = currentPartition->partitionPack().bodyOffset();
            if (!endChecked)
            {
                // The last partition of the body SID bounds the essence.
                uint64 const body = currentPartition->bodyAbsoluteOffset();
                uint64 const length = after > body ? after - body : 0;
                if (offset >= bodyOffset && offset - bodyOffset >= length)
                    return nullptr;
                endChecked = true;
            }
            if (bodyOffset <= offset)
                return currentPartition;
        }
        after = here;
    }
    return nullptr;
}
} // namespace MXFIO
} // namespace Vellum
