#pragma once
// What a partition writer needs of the index generator of its essence container: segments to
// write when a partition asks, and their size in advance.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"

namespace Vellum
{
namespace DataIO
{
class DataSink;
}

namespace MXFIO
{
// Which segments a partition carries: none, those not yet written, or all of them.
enum IndexTableGeneration
{
    IndexTableGenerationNone = 0,
    IndexTableGenerationNotWritten = 1,
    IndexTableGenerationAll = 2
};

// The form of the segments: constant edit unit size (with or without delta entries, with extra
// slices behind fillers), variable size with index entries, or a choice between the two made
// from the essence.
enum IndexTableSegmentType
{
    IndexSegmentConstant = 0,
    IndexSegmentConstantWithDeltas = 1,
    IndexSegmentConstantWithSlices = 2,
    IndexSegmentVariable = 3,
    IndexSegmentVariableWithSlices = 4,
    IndexSegmentChoose = 5,
    IndexSegmentChooseWithSlices = 6
};

class IndexTableGenerator
{
public:
    VELLUM_CLASS_ALLOCATION

    IndexTableGenerator() {}
    virtual ~IndexTableGenerator() {}

    // Closes the segment in the making, so that what has been produced can be written.
    virtual void updateIndex() = 0;
    // The bytes that writeIndexSegments would write now (for the footer when `footer`).
    virtual uint64 rawIndexByteCount(bool footer) const = 0;
    virtual void writeIndexSegments(bool footer, DataIO::DataSink & sink) = 0;
    virtual void indexSID(unsigned int sid) = 0;
    virtual void bodySID(unsigned int sid) = 0;
    // The strategies of body partitions and of the closing partition, and the segment form.
    virtual void indexStrategies(IndexTableGeneration body, IndexTableGeneration closing,
                                 IndexTableSegmentType type) = 0;
    virtual IndexTableSegmentType indexSegmentType() const = 0;
    // True when segments follow the essence they index, in the same partition or a later one.
    virtual bool indexesAfterEndOfEssence() const = 0;

private:
    IndexTableGenerator(IndexTableGenerator const &) = delete;
    IndexTableGenerator & operator=(IndexTableGenerator const &) = delete;
};
}
}
