#include "IndexTables/IndexTableSegmentWithGOPInfo.h"

#include "Exceptions/Exceptions.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace IndexTables
{
namespace
{
// Temporal offsets are signed bytes: a picture is displayed at most this far from where it is
// stored, so only this many edit units on either side of a seam can point across it.
int const TEMPORAL_REACH = 128;

bool isKeyFrame(IndexEntry const & entry) { return !entry.forwardPrediction() && !entry.backwardPrediction(); }
} // namespace

struct IndexTableSegmentWithGOPInfo::Impl
{
    VELLUM_CLASS_ALLOCATION

    Impl()
        : firstKeyFrame(-1), lastGopNumber(0), hasPrevious(false), carriedIn(0), inClosed(true), hasNext(false),
          carriedOut(0), outClosed(true)
    {
    }

    // One record for each index entry.
    Templates::vector<Templates::SharedPtr<GOPInfo>> gopInfoVector;
    // The GOPs as this segment alone sees them, and as joined to its neighbours.
    GOPSizeMap localSizes;
    GOPSizeMap sizes;
    int firstKeyFrame;
    int lastGopNumber;

    // What the joins learnt: how many edit units of the first GOP lie in front of this segment,
    // and how many of the last behind it, and whether the GOPs across the seams are closed.
    bool hasPrevious;
    int carriedIn;
    bool inClosed;
    bool hasNext;
    int carriedOut;
    bool outClosed;

    int count() const { return static_cast<int>(gopInfoVector.size()); }
    // Edit units in front of the first key frame: all of them when there is none.
    int leadingLength() const { return firstKeyFrame < 0 ? count() : firstKeyFrame; }

    void compute(IndexTableSegment const & segment)
    {
        int n = static_cast<int>(segment.indexEntryCount());
        gopInfoVector.reserve(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i)
            gopInfoVector.push_back(Templates::SharedPtr<GOPInfo>(new GOPInfo));

        int gop = 0;
        int last = -1;
        bool closed = true;
        for (int i = 0; i < n; ++i)
        {
            IndexEntry const & entry = segment.indexEntry(static_cast<unsigned int>(i));
            if (isKeyFrame(entry))
            {
                int length = i - (last < 0 ? 0 : last);
                last = i;
                if (firstKeyFrame < 0)
                    firstKeyFrame = i;
                if (length != 0)
                {
                    localSizes[gop] = GOPStructuralInfo(length, closed);
                    ++gop;
                    closed = true;
                }
            }
            else if (entry.keyFrameOffset() < last - i)
                closed = false;

            GOPInfo & info = *gopInfoVector[static_cast<std::size_t>(i)];
            info.gopNumber = gop;
            if (last >= 0)
            {
                info.gopPosition = i - last;
                int target = i + entry.temporalOffset();
                if (target >= 0 && target < n)
                {
                    GOPInfo & shown = *gopInfoVector[static_cast<std::size_t>(target)];
                    shown.displayOrderGopPosition = i - last;
                    shown.displayOrderGopNumber = gop;
                }
            }
        }
        if (n > 0)
            localSizes[gop] = GOPStructuralInfo(last >= 0 ? n - last : n, closed);
        lastGopNumber = gop;
        sizes = localSizes;
    }

    // The joined view: the first GOP grows by what lies in front, the last by what lies behind.
    void recomputeSizes()
    {
        sizes = localSizes;
        if (sizes.empty())
            return;
        GOPStructuralInfo & first = sizes.begin()->second;
        if (hasPrevious && leadingLength() > 0)
        {
            first.size = leadingLength() + carriedIn;
            first.closed = inClosed;
        }
        if (hasNext)
        {
            GOPStructuralInfo & lastGop = sizes.rbegin()->second;
            lastGop.size += carriedOut;
            lastGop.closed = lastGop.closed && outClosed;
        }
    }
};

namespace
{
int leadingLengthOf(IndexTableSegmentWithGOPInfo const & segment)
{
    int first = segment.firstKeyFramePosition();
    return first < 0 ? static_cast<int>(segment.indexEntryCount()) : first;
}

// Whether a picture in front of the first key frame of `segment` refers to one in front of the
// GOP that it continues, when `carried` edit units of that GOP lie in front of the segment.
bool leadReachesOut(IndexTableSegmentWithGOPInfo const & segment, int carried)
{
    int lead = leadingLengthOf(segment);
    for (int j = 0; j < lead; ++j)
        if (segment.indexEntry(static_cast<unsigned int>(j)).keyFrameOffset() < -(carried + j))
            return true;
    return false;
}

// A neighbour whose index entries cover its duration, so that its records can be trusted.
bool complete(IndexTableSegmentWithGOPInfo const * segment)
{
    return segment != nullptr && segment->indexEntryArray() != nullptr && segment->indexEntryCount() != 0 &&
           static_cast<int64>(segment->indexEntryCount()) == segment->indexDuration().value();
}
} // namespace

IndexTableSegmentWithGOPInfo::IndexTableSegmentWithGOPInfo(KLV::Packet & packet, IndexTableSegmentListener * listener)
    : IndexTableSegment(packet, listener), gopImpl_(new Impl)
{
    gopImpl_->compute(*this);
}

IndexTableSegmentWithGOPInfo::~IndexTableSegmentWithGOPInfo() = default;

GOPInfo const & IndexTableSegmentWithGOPInfo::gopInfo(unsigned int index) const
{
    THROW_UNLESS_TEXT(IndexOutOfBounds, index < gopImpl_->gopInfoVector.size(), "index < gopInfoVector_.size ()",
                      "The IndexTableSegment is smaller than the given index.");
    return *gopImpl_->gopInfoVector[index];
}

IndexTableSegmentWithGOPInfo::GOPSizeMap const & IndexTableSegmentWithGOPInfo::gopIndex2SizeMap() const
{
    return gopImpl_->sizes;
}

int IndexTableSegmentWithGOPInfo::firstKeyFramePosition() const { return gopImpl_->firstKeyFrame; }

void IndexTableSegmentWithGOPInfo::updateMissingInfo(IndexTableSegmentWithGOPInfo const * previous,
                                                     IndexTableSegmentWithGOPInfo const * next) const
{
    if (indexEntryArray() == nullptr)
        return;
    Impl & d = *gopImpl_;
    int n = d.count();
    int lead = d.leadingLength();

    if (complete(previous))
    {
        THROW_UNLESS_TEXT(InvalidIndexSegment,
                          previous->indexStartPosition().value() + previous->indexDuration().value() ==
                              indexStartPosition().value(),
                          "previous -> indexStartPosition ().value () + previous -> indexDuration ().value () == "
                          "this -> indexStartPosition ().value ()",
                          "Trying to update non-consecutive IndexTableSegmentWithGOPInfo's.");
        GOPInfo const & lastInfoFromPrevious = previous->gopInfo(previous->indexEntryCount() - 1);
        THROW_UNLESS(NotImplemented, lastInfoFromPrevious.gopPosition >= 0,
                     "Not supported: IndexTableSegment duration is smaller than GOP length.");
        int carried = lastInfoFromPrevious.gopPosition + 1;
        bool previousClosed = previous->gopIndex2SizeMap().empty() || previous->gopIndex2SizeMap().rbegin()->second.closed;

        d.hasPrevious = true;
        d.carriedIn = carried;
        d.inClosed = previousClosed && !leadReachesOut(*this, carried);
        // The edit units in front of the first key frame continue the GOP of the previous segment.
        for (int j = 0; j < lead; ++j)
            d.gopInfoVector[static_cast<std::size_t>(j)]->gopPosition = carried + j;
        for (int i = 0; i < lead; ++i)
        {
            int target = i + indexEntry(static_cast<unsigned int>(i)).temporalOffset();
            if (target >= 0 && target < n)
            {
                GOPInfo & shown = *d.gopInfoVector[static_cast<std::size_t>(target)];
                shown.displayOrderGopPosition = carried + i;
                shown.displayOrderGopNumber = 0;
            }
        }
    }

    if (complete(next) && n > 0)
    {
        THROW_UNLESS_TEXT(InvalidIndexSegment,
                          indexStartPosition().value() + indexDuration().value() == next->indexStartPosition().value(),
                          "this -> indexStartPosition ().value () + this -> indexDuration ().value () == "
                          "next -> indexStartPosition ().value ()",
                          "Trying to update non-consecutive IndexTableSegmentWithGOPInfo's.");
        GOPInfo const & lastInfoFromPrevious = *d.gopInfoVector.back();
        THROW_UNLESS(NotImplemented, lastInfoFromPrevious.gopPosition >= 0,
                     "Not supported: IndexTableSegment duration is smaller than GOP length.");
        d.hasNext = true;
        d.carriedOut = leadingLengthOf(*next);
        d.outClosed = !leadReachesOut(*next, lastInfoFromPrevious.gopPosition + 1);
    }

    d.recomputeSizes();

    // Pictures stored near a seam may be displayed on its other side.
    for (int s = 0; s < n; ++s)
    {
        if (d.gopInfoVector[static_cast<std::size_t>(s)]->displayOrderGopPosition >= 0)
            continue;
        if (d.hasPrevious && s < TEMPORAL_REACH)
            updateMissingIndex(static_cast<unsigned int>(s), previous);
        if (d.hasNext && s >= n - TEMPORAL_REACH &&
            d.gopInfoVector[static_cast<std::size_t>(s)]->displayOrderGopPosition < 0)
            updateMissingIndex(static_cast<unsigned int>(s), next);
    }
}

void IndexTableSegmentWithGOPInfo::updateMissingIndex(unsigned int index,
                                                      IndexTableSegmentWithGOPInfo const * neighbour) const
{
    Impl & d = *gopImpl_;
    THROW_UNLESS_TEXT(IndexOutOfBounds, index < d.gopInfoVector.size(), "index < gopInfoVector_.size ()",
                      "The IndexTableSegment is smaller than the given index.");
    if (neighbour == nullptr || neighbour->indexEntryCount() == 0)
        return;
    GOPInfo & record = *d.gopInfoVector[index];
    int n = d.count();
    int other = static_cast<int>(neighbour->indexEntryCount());
    int64 start = indexStartPosition().value();
    int64 otherStart = neighbour->indexStartPosition().value();

    if (otherStart + neighbour->indexDuration().value() == start)
    {
        // Behind the neighbour: look for the picture displayed there and stored here.
        int from = other > TEMPORAL_REACH ? other - TEMPORAL_REACH : 0;
        for (int i = from; i < other; ++i)
        {
            if (i + neighbour->indexEntry(static_cast<unsigned int>(i)).temporalOffset() - other !=
                static_cast<int>(index))
                continue;
            GOPInfo const & displayed = neighbour->gopInfo(static_cast<unsigned int>(i));
            if (displayed.gopPosition < 0)
                return;
            // The neighbour's last GOP is this segment's first when it runs on into it, else the
            // one in front of it.
            int shift = neighbour->gopImpl_->lastGopNumber + (d.leadingLength() > 0 ? 0 : 1);
            record.displayOrderGopPosition = displayed.gopPosition;
            record.displayOrderGopNumber = displayed.gopNumber - shift;
            return;
        }
    }
    else if (start + indexDuration().value() == otherStart && n > 0)
    {
        // In front of the neighbour: its first GOP continues this segment's last one.
        int carried = d.gopInfoVector.back()->gopPosition + 1;
        if (carried <= 0)
            return;
        int lead = leadingLengthOf(*neighbour);
        int to = other < TEMPORAL_REACH ? other : TEMPORAL_REACH;
        for (int i = 0; i < to; ++i)
        {
            if (n + i + neighbour->indexEntry(static_cast<unsigned int>(i)).temporalOffset() != static_cast<int>(index))
                continue;
            if (i < lead)
            {
                record.displayOrderGopPosition = carried + i;
                record.displayOrderGopNumber = d.lastGopNumber;
            }
            else
            {
                GOPInfo const & displayed = neighbour->gopInfo(static_cast<unsigned int>(i));
                record.displayOrderGopPosition = displayed.gopPosition;
                record.displayOrderGopNumber = displayed.gopNumber + d.lastGopNumber + (lead > 0 ? 0 : 1);
            }
            return;
        }
    }
}
} // namespace IndexTables
} // namespace Vellum
