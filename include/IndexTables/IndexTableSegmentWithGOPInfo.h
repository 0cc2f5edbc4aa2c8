#pragma once
// A segment that also works out, from its index entries, the group of pictures (GOP) to which
// each edit unit belongs, in stored order and in display order.
//
// In stored order a GOP starts at each key frame, an entry that is neither forward nor backward
// predicted. In display order, the picture displayed at edit unit d belongs to the GOP that
// starts at the last key frame stored at or before d, and its position there is d minus that
// key frame's position. GOP numbers count from 0 in each segment.
//
// A GOP may run across the end of a segment into the next. Each segment alone knows only its own
// part; updateMissingInfo joins it to its neighbours, so that positions, sizes and the closed flag
// come out as if the two segments were one. The GOP that a segment continues from its predecessor
// keeps the number 0; GOPs of a neighbour that do not reach into the segment get numbers relative
// to the segment's own (-1 for the one in front of the first).

#include "IndexTables/IndexTableSegment.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace IndexTables
{
// Where one stored edit unit stands in its GOP.
struct GOPInfo
{
    GOPInfo() : gopPosition(-1), displayOrderGopPosition(-1), gopNumber(0), displayOrderGopNumber(0) {}

    // The distance from the GOP's key frame in stored order; -1 while no key frame is known.
    int gopPosition;
    // The position in display order of the picture stored here; -1 while unknown.
    int displayOrderGopPosition;
    // The GOP in stored order.
    int gopNumber;
    // The GOP in display order; meaningful when displayOrderGopPosition is known.
    int displayOrderGopNumber;
};

struct GOPStructuralInfo
{
    GOPStructuralInfo() : size(0), closed(true) {}
    GOPStructuralInfo(int gopSize, bool isClosed) : size(gopSize), closed(isClosed) {}

    // Edit units in the GOP.
    int size;
    // No picture of the GOP refers to one in front of its key frame.
    bool closed;
};

class IndexTableSegmentWithGOPInfo : public IndexTableSegment
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::map<int, GOPStructuralInfo> GOPSizeMap;

    // Reads the segment and works out the GOP structure of its index entries. The structure is
    // worked out once: entries changed or added afterwards are not looked at again.
    explicit IndexTableSegmentWithGOPInfo(KLV::Packet & packet, IndexTableSegmentListener * listener = nullptr);
    ~IndexTableSegmentWithGOPInfo() override;

    // The record of the index entry `index`; one past the records throws IndexOutOfBounds.
    GOPInfo const & gopInfo(unsigned int index) const;
    // Each GOP's size and closed flag, by GOP number.
    GOPSizeMap const & gopIndex2SizeMap() const;
    // The index of the first key frame; -1 when there is none.
    int firstKeyFramePosition() const;

    // Joins this segment to the segments in front of and behind it (either may be null): the GOP
    // that runs across a seam gets its positions, size and closed flag as a whole, and pictures
    // displayed on one side of a seam but stored on the other get their display order records.
    // Does nothing for a segment without index entries; a neighbour whose entries do not cover
    // its duration is passed over. A neighbour that does not adjoin throws InvalidIndexSegment;
    // joining behind a segment whose last edit unit has no known GOP position throws
    // NotImplemented. Join segments in their order, so that a segment without key frames has
    // learnt its positions before its successor asks for them.
    void updateMissingInfo(IndexTableSegmentWithGOPInfo const * previous,
                           IndexTableSegmentWithGOPInfo const * next) const;
    // Completes the display order record of the edit unit stored at `index` from the adjoining
    // segment `neighbour`, when the picture stored there is displayed in the neighbour's span.
    // An unknown answer leaves the record as it is; an index past the records throws
    // IndexOutOfBounds.
    void updateMissingIndex(unsigned int index, IndexTableSegmentWithGOPInfo const * neighbour) const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> gopImpl_;
};
} // namespace IndexTables
} // namespace Vellum
