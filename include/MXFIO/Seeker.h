#pragma once
// Turns an edit unit of one essence container into a stream offset, through an index table
// provider and a partition provider. A query leaves the source where it was.

#include "DataIO/DataSource.h"
#include "IndexTables/DeltaEntry.h"
#include "IndexTables/IndexEntry.h"
#include "KLV/Key.h"
#include "MXFIO/IndexTableProvider.h"
#include "MXFIO/PartitionProvider.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace MXFIO
{
class Seeker
{
public:
    VELLUM_CLASS_ALLOCATION

    // What the index says of one edit unit.
    struct EditUnitInfo
    {
        signed char temporalOffset;
        signed char keyFrameOffset;
        unsigned char flags;
        uint64 streamOffset;
    };

    Seeker(DataIO::RandomAccessDataSource & source, Templates::auto_ptr<IndexTableProvider> indexProvider,
           Templates::auto_ptr<PartitionProvider> partitionProvider, unsigned int editUnitByteCount,
           uint64 containerSize, int64 containerDuration);
    ~Seeker();
    Seeker(Seeker const &) = delete;
    Seeker & operator=(Seeker const &) = delete;

    IndexTableProvider & indexProvider();
    PartitionProvider & partitionProvider();
    void indexProvider(Templates::auto_ptr<IndexTableProvider> provider);
    void partitionProvider(Templates::auto_ptr<PartitionProvider> provider);

    // Coarse: the stream offset of the start of the edit unit. False when the edit unit lies
    // beyond a complete index.
    bool streamOffset(int64 editUnit, uint64 & offset);
    // Fine: the stream offset of one element of the edit unit, through the index's element table.
    bool elementStreamOffset(int64 editUnit, unsigned int trackNumber, uint64 & offset);
    // The partition holding a stream offset; null when none.
    Partition * partition(uint64 streamOffset, int64 editUnit);
    // Index information of an edit unit; false without an entry.
    bool editUnitInfo(int64 editUnit, EditUnitInfo & info);
    // The edit unit to read so that the unit displayed at editUnit comes out (temporal reordering).
    int64 reorderedEditUnit(int64 editUnit);
    bool hasIndex();

    // The element table: the track numbers of a content package in order, byte 2 cleared.
    void elements(Templates::vector<unsigned int> const & trackNumbers);
    // Maps a track number that is not in the element table to one that is.
    void alternateTrackNumber(unsigned int trackNumber, unsigned int mappedTo);
    bool trackNumberExists(unsigned int trackNumber) const;
    // The position of the element in a content package; throws KeyNotFound for an unknown one.
    unsigned int elementIndex(unsigned int trackNumber) const;

    // What a reader learnt while reading: the stream offset where an edit unit starts.
    void learnStreamOffset(int64 editUnit, uint64 offset);
    void containerSize(uint64 size, int64 duration);
    // The first packet of a body partition of clip wrapped essence must be the essence, not fill.
    void checkClipWrappedPacket(KLV::Key const & key) const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
