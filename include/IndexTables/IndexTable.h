#pragma once
// The segments of one index table (one IndexSID), by start position, for look-up by edit unit.

#include "IndexTables/IndexTableSegment.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace IndexTables
{
class IndexTable
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::map<int64, Templates::auto_ptr<IndexTableSegment>> Segments;
    // Over (start position, segment) pairs in the order of the start positions.
    typedef Segments::const_iterator SegmentIterator;

    IndexTable(unsigned int indexSID, unsigned int bodySID);
    virtual ~IndexTable();
    IndexTable(IndexTable const &) = delete;
    IndexTable & operator=(IndexTable const &) = delete;

    unsigned int indexSID() const;
    unsigned int bodySID() const;

    // Takes the segment over, filed under its start position and duration as they are now:
    // change neither while the table holds it. A BodySID other than the table's, or an IndexSID
    // other than the table's, throws InvalidID; a segment without IndexSID is accepted. With
    // `replaceExisting` the table first looks for a segment at the same start position and
    // replaces it (a segment repeated later in a file, perhaps completed); without it the segment
    // is simply inserted, and one already held at that position is kept while the new one is
    // dropped. A null segment adds nothing.
    void add(Templates::auto_ptr<IndexTableSegment> segment, bool replaceExisting);

    // The segment that covers the edit unit, or null. A segment of duration 0 is still open and
    // covers everything at or behind its start that no later segment covers. Logarithmic in the
    // number of segments, unless segments overlap one another.
    IndexTableSegment const * find(int64 editUnit) const;

    unsigned int size() const;
    SegmentIterator segmentIteratorBegin() const;
    SegmentIterator segmentIteratorEnd() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace IndexTables
} // namespace Vellum
