#include "MXFIO/IndexTableProvider.h"

#include <utility>

#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "MXFIO/Partition.h"
#include "MXFIO/Reader2.h"
#include "Packs/RandomIndexPack.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
int64 startOf(IndexTables::IndexTableSegment const & segment) { return segment.indexStartPosition().value(); }
int64 durationOf(IndexTables::IndexTableSegment const & segment) { return segment.indexDuration().value(); }

// A segment without a positive duration is still open: it reaches from its start onwards.
bool isOpen(IndexTables::IndexTableSegment const & segment) { return durationOf(segment) < 1; }

bool covers(IndexTables::IndexTableSegment const & segment, int64 editUnit)
{
    int64 const start = startOf(segment);
    if (editUnit < start)
        return false;
    if (isOpen(segment))
        return true;
    // Unsigned differences: no overflow near the ends of the range.
    return static_cast<uint64>(editUnit) - static_cast<uint64>(start) < static_cast<uint64>(durationOf(segment));
}

// What a search over a table of partitions has learnt of one entry.
enum PartitionState
{
    NotParsed = 0,
    WithSegments,
    WithoutSegments
};

// The partitions a search of index segments goes over, with what was found in each. The
// subclass's view decides how a partition of the table is reached.
struct PartitionSearch
{
    VELLUM_CLASS_ALLOCATION

    Templates::vector<unsigned char> state;
    Templates::vector<int64> firstEditUnit;

    void resize(std::size_t size)
    {
        state.resize(size, NotParsed);
        firstEditUnit.resize(size, 0);
    }
};
} // namespace

// ---------------------------------------------------------------------------------------------
// IndexTableCompleteCache

struct IndexTableCompleteCache::Impl
{
    VELLUM_CLASS_ALLOCATION
    typedef Templates::map<int64, IndexTableSegmentPtr> Segments;

    Impl() : haveBodySID(false), bodySID(0), haveIndexSID(false), indexSID(0), overlapping(false) {}

    // A closed segment reaching past the start of the one behind it.
    static bool overlaps(Segments::const_iterator at, Segments::const_iterator next)
    {
        IndexTables::IndexTableSegment const & segment = *at->second;
        return !isOpen(segment) && static_cast<uint64>(durationOf(segment)) >
                                       static_cast<uint64>(next->first) - static_cast<uint64>(at->first);
    }

    void noteOverlaps(Segments::const_iterator at)
    {
        Segments::const_iterator next = at;
        ++next;
        if (next != segments.end() && overlaps(at, next))
            overlapping = true;
        if (at != segments.begin())
        {
            Segments::const_iterator before = at;
            --before;
            if (overlaps(before, at))
                overlapping = true;
        }
    }

    IndexTableSegmentPtr find(int64 editUnit) const
    {
        Segments::const_iterator candidate = segments.upper_bound(editUnit);
        if (candidate == segments.begin())
            return IndexTableSegmentPtr();
        --candidate;
        if (covers(*candidate->second, editUnit))
            return candidate->second;
        if (overlapping)
        {
            // Any segment in front may reach this far.
            for (Segments::const_iterator at = candidate; at != segments.begin();)
            {
                --at;
                if (covers(*at->second, editUnit))
                    return at->second;
            }
            return IndexTableSegmentPtr();
        }
        // No closed segment in front reaches this far: only an open one can answer.
        Templates::set<int64>::const_iterator open = openStarts.upper_bound(candidate->first);
        if (open == openStarts.begin())
            return IndexTableSegmentPtr();
        --open;
        return segments.find(*open)->second;
    }

    Segments segments;
    Templates::set<int64> openStarts;
    bool haveBodySID;
    uint32 bodySID;
    bool haveIndexSID;
    uint32 indexSID;
    bool overlapping;
};

IndexTableCompleteCache::IndexTableCompleteCache() : impl_(new Impl) {}

IndexTableCompleteCache::~IndexTableCompleteCache() = default;

IndexTableSegmentPtr IndexTableCompleteCache::segment(int64 editUnit) { return impl_->find(editUnit); }

void IndexTableCompleteCache::addSegment(IndexTableSegmentPtr segment)
{
    if (segment.get() == nullptr)
        return;
    Impl & d = *impl_;
    uint32 const segmentBodySID = segment->bodySID().value();
    Types::UInt32 const * segmentIndexSID = segment->indexSID();
    THROW_UNLESS_TEXT(InvalidID, !d.haveBodySID || segmentBodySID == d.bodySID, "segmentBodySID == bodySID_",
                      "Trying to cache an IndexTableSegment with different bodySID");
    THROW_UNLESS_TEXT(InvalidID,
                      !d.haveIndexSID || segmentIndexSID == nullptr || segmentIndexSID->value() == d.indexSID,
                      "segmentIndexSID == indexSID_", "Trying to cache an IndexTableSegment with different indexSID");

    int64 const start = startOf(*segment);
    // A segment met again (repeated further on in the file, perhaps completed) takes the place
    // of the one held.
    Impl::Segments::iterator at = d.segments.find(start);
    if (at != d.segments.end())
        at->second = segment;
    else
        at = d.segments.insert(Impl::Segments::value_type(start, segment)).first;
    if (isOpen(*segment))
        d.openStarts.insert(start);
    else
        d.openStarts.erase(start);
    d.noteOverlaps(at);
    if (!d.haveBodySID)
    {
        d.haveBodySID = true;
        d.bodySID = segmentBodySID;
    }
    if (!d.haveIndexSID && segmentIndexSID != nullptr)
    {
        d.haveIndexSID = true;
        d.indexSID = segmentIndexSID->value();
    }
}

bool IndexTableCompleteCache::beyondTable(int64 editUnit) const
{
    return !impl_->segments.empty() && editUnit >= coveredDuration() && impl_->find(editUnit).get() == nullptr;
}

int64 IndexTableCompleteCache::coveredDuration() const
{
    if (impl_->segments.empty())
        return 0;
    IndexTables::IndexTableSegment const & last = *impl_->segments.rbegin()->second;
    int64 const duration = durationOf(last);
    return startOf(last) + (duration > 0 ? duration : 0);
}

bool IndexTableCompleteCache::empty() const { return impl_->segments.empty(); }

// ---------------------------------------------------------------------------------------------
// IndexTableProviderBase

IndexTableProviderBase::IndexTableProviderBase(Templates::auto_ptr<IndexTableCache> cache) : cache_(std::move(cache))
{
    if (!cache_)
        cache_.reset(new IndexTableCompleteCache);
}

IndexTableProviderBase::~IndexTableProviderBase() = default;

IndexTableSegmentPtr IndexTableProviderBase::segment(int64 editUnit)
{
    IndexTableSegmentPtr found = cache_->segment(editUnit);
    if (found.get() != nullptr)
        return found;
    return fetchSegment(editUnit);
}

void IndexTableProviderBase::addSegment(IndexTableSegmentPtr segment) { cache_->addSegment(segment); }

IndexTableCache & IndexTableProviderBase::cache() { return *cache_; }

IndexTableCache const & IndexTableProviderBase::cache() const { return *cache_; }

IndexTableSegmentPtr IndexTableProviderBase::parsePartition(Partition & partition, int64 editUnit)
{
    bool anySegment = false;
    int64 firstStart = 0;
    return parsePartition(partition, editUnit, anySegment, firstStart);
}

IndexTableSegmentPtr IndexTableProviderBase::parsePartition(Partition & partition, int64 editUnit, bool & anySegment,
                                                            int64 & firstStart)
{
    anySegment = false;
    firstStart = 0;
    IndexTableSegmentPtr hit;
    partition.rewind();
    uint64 lastKey = 0;
    for (;;)
    {
        Templates::auto_ptr<KLV::Packet> packet = partition.nextIndexTableSegmentsKLV();
        if (!packet)
            break;
        // A segment that reaches past the index region sends the cursor back to its start: a key
        // that is not behind the one before ends the walk.
        uint64 const keyOffset = packet->keyAbsoluteOffset();
        if (anySegment && keyOffset <= lastKey)
            break;
        lastKey = keyOffset;
        IndexTableSegmentPtr segment(new IndexTables::IndexTableSegment(*packet));
        packet.reset();
        cache_->addSegment(segment);
        if (!anySegment)
        {
            anySegment = true;
            firstStart = startOf(*segment);
        }
        if (hit.get() == nullptr && editUnit >= 0 && covers(*segment, editUnit))
            hit = segment;
    }
    return hit;
}

// ---------------------------------------------------------------------------------------------
// IndexTableFullFileParseProvider

IndexTableFullFileParseProvider::IndexTableFullFileParseProvider(Reader & reader, unsigned int indexSID)
{
    for (Partition * p = reader.headerPartition(); p != nullptr; p = reader.nextPartition(p))
        if (p->partitionPack().indexSID() == indexSID)
            parsePartition(*p, -1);
}

bool IndexTableFullFileParseProvider::beyondTable(int64 editUnit) const { return cache().beyondTable(editUnit); }

// ---------------------------------------------------------------------------------------------
// IndexTableParseOnRequestProvider

IndexTableParseOnRequestProvider::IndexTableParseOnRequestProvider(Reader & reader, unsigned int indexSID)
    : reader_(reader), indexSID_(indexSID), current_(nullptr), noMore_(false)
{
}

bool IndexTableParseOnRequestProvider::beyondTable(int64 editUnit) const
{
    return noMore_ && cache().beyondTable(editUnit);
}

IndexTableSegmentPtr IndexTableParseOnRequestProvider::fetchSegment(int64 editUnit)
{
    if (noMore_ || editUnit < 0)
        return IndexTableSegmentPtr();
    // The partition at hand was read whole before: move on first.
    for (;;)
    {
        current_ = current_ == nullptr ? reader_.headerPartition() : reader_.nextIndexPartition(current_, indexSID_);
        if (current_ == nullptr)
        {
            noMore_ = true;
            return IndexTableSegmentPtr();
        }
        if (current_->partitionPack().indexSID() != indexSID_)
            continue;
        IndexTableSegmentPtr hit = parsePartition(*current_, editUnit);
        if (hit.get() != nullptr)
            return hit;
    }
}

// ---------------------------------------------------------------------------------------------
// The searches over a table of partitions

namespace
{
// Reaches the partition at an index of a table and parses it once; the search below only asks.
class PartitionTable
{
public:
    virtual ~PartitionTable() {}
    virtual std::size_t size() const = 0;
    // Parses the partition at i for the edit unit unless done; fills the search record.
    virtual IndexTableSegmentPtr visit(std::size_t i, int64 editUnit) = 0;
    virtual PartitionSearch & search() = 0;
};

// The binary search of the partitions between low and high. `guess` gives the first index to try
// for the range; a partition without segments of the index hands the decision to the next one
// that has them.
template <class Guess>
IndexTableSegmentPtr searchPartitions(PartitionTable & table, int64 editUnit, Guess guess)
{
    std::size_t const count = table.size();
    if (count == 0 || editUnit < 0)
        return IndexTableSegmentPtr();
    std::size_t low = 0;
    std::size_t high = count - 1;
    PartitionSearch & record = table.search();
    for (;;)
    {
        std::size_t i = guess(low, high);
        if (i < low)
            i = low;
        if (i > high)
            i = high;
        IndexTableSegmentPtr hit = table.visit(i, editUnit);
        if (hit.get() != nullptr)
            return hit;
        if (record.state[i] != WithSegments)
        {
            std::size_t j = i + 1;
            for (; j <= high; ++j)
            {
                hit = table.visit(j, editUnit);
                if (hit.get() != nullptr)
                    return hit;
                if (record.state[j] == WithSegments)
                    break;
            }
            if (j > high)
            {
                // Nothing from i on: only the partitions in front are left.
                if (i == 0 || i == low)
                    return IndexTableSegmentPtr();
                high = i - 1;
                continue;
            }
            i = j;
        }
        if (record.firstEditUnit[i] <= editUnit)
        {
            if (i == count - 1 || i == high)
                return IndexTableSegmentPtr();
            low = i + 1;
        }
        else
        {
            if (i == 0 || i == low)
                return IndexTableSegmentPtr();
            high = i - 1;
        }
    }
}
} // namespace

// ---------------------------------------------------------------------------------------------
// IndexTablePositionEstimateProvider

struct IndexTablePositionEstimateProvider::Impl : public PartitionTable
{
    VELLUM_CLASS_ALLOCATION

    Impl(IndexTablePositionEstimateProvider & o, Reader2 & r, unsigned int sid, uint64 average)
        : owner(o), reader(r), indexSID(sid), editUnitsPerPartition(average)
    {
    }

    std::size_t size() const override { return offsets.size(); }
    PartitionSearch & search() override { return record; }

    IndexTableSegmentPtr visit(std::size_t i, int64 editUnit) override
    {
        if (record.state[i] != NotParsed)
            return IndexTableSegmentPtr();
        record.state[i] = WithoutSegments;
        Partition * partition = reader.partitionAtOffset(offsets[i]);
        if (partition == nullptr || partition->partitionPack().thisPartition() != offsets[i] ||
            partition->partitionPack().indexSID() != indexSID)
            return IndexTableSegmentPtr();
        bool any = false;
        int64 first = 0;
        IndexTableSegmentPtr hit = owner.parsePartition(*partition, editUnit, any, first);
        if (any)
        {
            record.state[i] = WithSegments;
            record.firstEditUnit[i] = first;
        }
        return hit;
    }

    IndexTablePositionEstimateProvider & owner;
    Reader2 & reader;
    unsigned int indexSID;
    uint64 editUnitsPerPartition;
    // Every partition the RIP names, in file order (offsets behind the run-in).
    Templates::vector<uint64> offsets;
    PartitionSearch record;
};

IndexTablePositionEstimateProvider::IndexTablePositionEstimateProvider(Reader2 & reader, unsigned int indexSID,
                                                                       uint64 editUnitsPerPartition)
    : impl_(nullptr)
{
    THROW_UNLESS(InvalidValue, editUnitsPerPartition != 0,
                 "The average number of edit units for each partition must not be 0.");
    Templates::auto_ptr<Impl> impl(new Impl(*this, reader, indexSID, editUnitsPerPartition));
    if (reader.rip().get() == nullptr)
        reader.loadRipFromFooter();
    Templates::SharedPtr<Packs::RandomIndexPack> rip = reader.rip();
    if (rip.get() != nullptr)
    {
        Packs::RandomIndexPack::OffsetIndexedMap const & offsets = rip->offsetIndexedMap();
        for (Packs::RandomIndexPack::OffsetIndexedMap::const_iterator it = offsets.begin(); it != offsets.end(); ++it)
            impl->offsets.push_back(it->first);
    }
    impl->record.resize(impl->offsets.size());
    impl_ = std::move(impl);
}

IndexTablePositionEstimateProvider::~IndexTablePositionEstimateProvider() = default;

IndexTableSegmentPtr IndexTablePositionEstimateProvider::fetchSegment(int64 editUnit)
{
    uint64 const average = impl_->editUnitsPerPartition;
    // The header partition holds no essence: the partition of the first units is the second.
    return searchPartitions(*impl_, editUnit,
                            [editUnit, average](std::size_t, std::size_t)
                            { return static_cast<std::size_t>(static_cast<uint64>(editUnit) / average + 1); });
}

// ---------------------------------------------------------------------------------------------
// IndexTableStreamingProvider

struct IndexTableStreamingProvider::Impl : public PartitionTable
{
    VELLUM_CLASS_ALLOCATION

    Impl(IndexTableStreamingProvider & o, Reader & r, unsigned int sid)
        : owner(o), reader(r), indexSID(sid), lastSeen(nullptr)
    {
    }

    std::size_t size() const override { return partitions.size(); }
    PartitionSearch & search() override { return record; }

    // Takes in the partitions written since the last look.
    void refresh()
    {
        Partition * p = lastSeen == nullptr ? reader.headerPartition() : reader.nextPartition(lastSeen);
        for (; p != nullptr; p = reader.nextPartition(p))
        {
            lastSeen = p;
            if (p->partitionPack().indexSID() == indexSID)
                partitions.push_back(p);
        }
        record.resize(partitions.size());
    }

    IndexTableSegmentPtr visit(std::size_t i, int64 editUnit) override
    {
        if (record.state[i] != NotParsed)
            return IndexTableSegmentPtr();
        record.state[i] = WithoutSegments;
        bool any = false;
        int64 first = 0;
        IndexTableSegmentPtr hit = owner.parsePartition(*partitions[i], editUnit, any, first);
        if (any)
        {
            record.state[i] = WithSegments;
            record.firstEditUnit[i] = first;
        }
        return hit;
    }

    IndexTableStreamingProvider & owner;
    Reader & reader;
    unsigned int indexSID;
    Partition * lastSeen;
    Templates::vector<Partition *> partitions;
    PartitionSearch record;
    Platform::Synchronization::Mutex mutex;
};

IndexTableStreamingProvider::IndexTableStreamingProvider(Reader & reader, unsigned int indexSID)
    : impl_(new Impl(*this, reader, indexSID))
{
}

IndexTableStreamingProvider::~IndexTableStreamingProvider() = default;

IndexTableSegmentPtr IndexTableStreamingProvider::fetchSegment(int64 editUnit)
{
    Platform::Synchronization::ScopedLock lock(impl_->mutex);
    impl_->refresh();
    IndexTableSegmentPtr hit =
        searchPartitions(*impl_, editUnit, [](std::size_t low, std::size_t high) { return low + (high - low) / 2; });
    // The last partition known may still be growing: it is read again on a later miss.
    if (!impl_->partitions.empty())
        impl_->record.state.back() = NotParsed;
    return hit;
}
} // namespace MXFIO
} // namespace Vellum
