#include "IndexTables/IndexTable.h"

#include <utility>

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace IndexTables
{
namespace
{
int64 startOf(IndexTableSegment const & segment) { return segment.indexStartPosition().value(); }
int64 durationOf(IndexTableSegment const & segment) { return segment.indexDuration().value(); }

// At or behind the start, and before the end or in a segment that is still open.
bool covers(IndexTableSegment const & segment, int64 editUnit)
{
    int64 start = startOf(segment);
    int64 duration = durationOf(segment);
    if (editUnit < start)
        return false;
    if (duration == 0)
        return true;
    // Unsigned differences: no overflow near the ends of the range.
    return duration > 0 && static_cast<uint64>(editUnit) - static_cast<uint64>(start) < static_cast<uint64>(duration);
}
} // namespace

struct IndexTable::Impl
{
    VELLUM_CLASS_ALLOCATION

    Impl(unsigned int index, unsigned int body) : indexSID(index), bodySID(body) {}

    // A closed segment that reaches past the start of the segment behind it.
    bool overlapsSuccessor(Segments::const_iterator at) const
    {
        Segments::const_iterator next = at;
        ++next;
        if (next == segments.end())
            return false;
        int64 duration = durationOf(*at->second);
        return duration > 0 &&
               static_cast<uint64>(duration) > static_cast<uint64>(next->first) - static_cast<uint64>(at->first);
    }

    void noteOverlap(Segments::const_iterator at)
    {
        if (overlapsSuccessor(at))
            overlapping.insert(at->first);
        else
            overlapping.erase(at->first);
    }

    // The walk that stands for the whole rule: backward from the candidate to the second segment,
    // the first segment that covers the edit unit; then the first segment itself.
    IndexTableSegment const * walk(Segments::const_iterator candidate, int64 editUnit) const
    {
        for (Segments::const_iterator at = candidate; at != segments.begin(); --at)
        {
            IndexTableSegment const & segment = *at->second;
            if (covers(segment, editUnit) || (editUnit < startOf(segment) && durationOf(segment) == 0))
                return &segment;
        }
        IndexTableSegment const & first = *segments.begin()->second;
        return covers(first, editUnit) ? &first : nullptr;
    }

    uint32 indexSID;
    uint32 bodySID;
    Segments segments;
    // Start positions of the open segments (duration 0), and of the closed segments that overlap
    // their successor. While no segment overlaps, a look-up needs only the segment in front of
    // the edit unit and the nearest open one in front of that.
    Templates::set<int64> openStarts;
    Templates::set<int64> overlapping;
};

IndexTable::IndexTable(unsigned int indexSID, unsigned int bodySID) : impl_(new Impl(indexSID, bodySID)) {}

IndexTable::~IndexTable() = default;

unsigned int IndexTable::indexSID() const { return impl_->indexSID; }

unsigned int IndexTable::bodySID() const { return impl_->bodySID; }

void IndexTable::add(Templates::auto_ptr<IndexTableSegment> segment, bool replaceExisting)
{
    if (!segment)
        return;
    if (segment->bodySID().value() != impl_->bodySID)
        VELLUM_THROW(InvalidID, "Trying to load a IndexTable segment into a IndexTable with different bodySIDs");
    if (segment->indexSID() != nullptr && segment->indexSID()->value() != impl_->indexSID)
        VELLUM_THROW(InvalidID, "Trying to load a IndexTable segment into a IndexTable with different indexSIDs");

    Impl & d = *impl_;
    int64 start = startOf(*segment);
    Segments::iterator at;
    if (replaceExisting)
    {
        at = d.segments.find(start);
        if (at != d.segments.end())
            at->second = std::move(segment);
        else
            at = d.segments.insert(Segments::value_type(start, std::move(segment))).first;
    }
    else
    {
        // Segments come in order as a file is read: the end is the likely place.
        std::size_t before = d.segments.size();
        at = d.segments.emplace_hint(d.segments.end(), start, std::move(segment));
        if (d.segments.size() == before)
            return; // the position is taken; the segment is dropped
    }

    if (durationOf(*at->second) == 0)
        d.openStarts.insert(start);
    else
        d.openStarts.erase(start);
    d.noteOverlap(at);
    if (at != d.segments.begin())
    {
        Segments::iterator before = at;
        --before;
        d.noteOverlap(before);
    }
}

IndexTableSegment const * IndexTable::find(int64 editUnit) const
{
    Impl const & d = *impl_;
    Segments::const_iterator candidate = d.segments.upper_bound(editUnit);
    if (candidate == d.segments.begin())
        return nullptr;
    --candidate;
    if (!d.overlapping.empty())
        return d.walk(candidate, editUnit);

    if (covers(*candidate->second, editUnit))
        return candidate->second.get();
    // No closed segment in front reaches this far: only an open one can answer.
    Templates::set<int64>::const_iterator open = d.openStarts.lower_bound(candidate->first);
    if (open == d.openStarts.begin())
        return nullptr;
    --open;
    return d.segments.find(*open)->second.get();
}

unsigned int IndexTable::size() const { return static_cast<unsigned int>(impl_->segments.size()); }

IndexTable::SegmentIterator IndexTable::segmentIteratorBegin() const { return impl_->segments.begin(); }

IndexTable::SegmentIterator IndexTable::segmentIteratorEnd() const { return impl_->segments.end(); }
} // namespace IndexTables
} // namespace Vellum
