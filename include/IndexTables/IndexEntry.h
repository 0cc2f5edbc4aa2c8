#pragma once
// One index entry: where an edit unit lies in its essence container, and how it depends on its
// neighbours. On the wire: TemporalOffset (Int8), KeyFrameOffset (Int8), Flags (UInt8),
// StreamOffset (UInt64), then one UInt32 slice offset for each slice behind the first, then one
// rational (two Int32) for each position table entry: 11 + 4 NSL + 8 NPE bytes.

#include "IndexTables/IndexTableSegmentEntry.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace IndexTables
{
class IndexEntry : public IndexTableSegmentEntry
{
public:
    VELLUM_CLASS_ALLOCATION
    // The bits of the flags byte.
    enum Flag
    {
        RANDOM_ACCESS = 0x80,
        SEQUENCE_HEADER = 0x40,
        FORWARD_PREDICTION = 0x20,
        BACKWARD_PREDICTION = 0x10
    };
    // The fixed part of an entry, in front of the slice offsets.
    enum
    {
        FIXED_SIZE = 11
    };

    // A random access entry (flags 0x80) with both offsets 0.
    explicit IndexEntry(uint64 streamOffset);
    IndexEntry(signed char temporalOffset, signed char keyFrameOffset, bool randomAccess, bool sequenceHeader,
               bool forwardPrediction, bool backwardPrediction, uint64 streamOffset);
    // Reads one entry of a segment with the given SliceCount and PosTableCount; a value that ends
    // sooner throws InvalidLength.
    IndexEntry(KLV::Value & value, unsigned char sliceCount, unsigned char posTableCount);
    IndexEntry(IndexEntry const & other);
    IndexEntry & operator=(IndexEntry const & other);
    ~IndexEntry() override;

    void serialize(DataIO::DataSink & sink) const override;
    // 11 + 4 sliceOffsetCount() + 8 posTableCount().
    unsigned short serializedSize() const override;

    signed char temporalOffset() const;
    void temporalOffset(signed char offset);
    signed char keyFrameOffset() const;
    void keyFrameOffset(signed char offset);
    uint64 streamOffset() const;
    void streamOffset(uint64 offset);

    // The whole flags byte, with the bits that have no name kept as they are.
    unsigned char flags() const;
    void flags(unsigned char flags);
    bool randomAccess() const;
    void randomAccess(bool set);
    bool sequenceHeader() const;
    void sequenceHeader(bool set);
    bool forwardPrediction() const;
    void forwardPrediction(bool set);
    bool backwardPrediction() const;
    void backwardPrediction(bool set);

    // Slice offsets. `position` may equal the count, which appends; anything beyond throws
    // IndexOutOfBounds, and so does adding to an entry that has 255 already.
    void addSliceOffset(unsigned char position, unsigned int offset);
    unsigned int sliceOffset(unsigned char position) const;
    void removeSliceOffset(unsigned char position);
    unsigned char sliceOffsetCount() const;

    // Position table entries, as for the slice offsets. The numbers are kept as they were given
    // or read, so that an entry writes back the bytes it was read from; posTable gives them in
    // lowest terms.
    void addPosTable(unsigned char position, Templates::Rational<int> const & offset);
    Templates::Rational<int> posTable(unsigned char position) const;
    void removePosTable(unsigned char position);
    unsigned char posTableCount() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace IndexTables
} // namespace Vellum
