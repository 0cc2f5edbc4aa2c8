#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/DeltaEntry.h"
#include "IndexTables/IndexEntry.h"
#include "IndexTables/IndexTableSegment.h"
#include "MXFIO/Seeker.h"
#include "Support/Mxf.h"
#include "Utils/Text.h"

using namespace Vellum;
using MXFIO::IndexTableSegmentPtr;
using MXFIO::Seeker;
using VellumTest::messageOf;

namespace
{
// Serves at most one segment; counts the questions and moves the source as a parse would.
class OneSegmentProvider : public MXFIO::IndexTableProvider
{
public:
    OneSegmentProvider(DataIO::RandomAccessDataSource & source, IndexTableSegmentPtr segment, bool complete)
        : source_(source), segment_(segment), complete_(complete), questions(0)
    {
    }
    IndexTableSegmentPtr segment(int64 editUnit) override
    {
        ++questions;
        source_.seek(3);
        if (segment_.get() == nullptr)
            return segment_;
        int64 start = segment_->indexStartPosition().value();
        int64 duration = segment_->indexDuration().value();
        if (editUnit >= start && (duration < 1 || editUnit < start + duration))
            return segment_;
        return IndexTableSegmentPtr();
    }
    void addSegment(IndexTableSegmentPtr) override {}
    bool beyondTable(int64 editUnit) const override
    {
        return complete_ && segment_.get() != nullptr &&
               editUnit >= segment_->indexStartPosition().value() + segment_->indexDuration().value();
    }

protected:
    IndexTableSegmentPtr fetchSegment(int64) override { return IndexTableSegmentPtr(); }

private:
    DataIO::RandomAccessDataSource & source_;
    IndexTableSegmentPtr segment_;
    bool complete_;

public:
    int questions;
};

class NoPartitions : public MXFIO::PartitionProvider
{
public:
    MXFIO::Partition * partition(uint64, int64) override { return nullptr; }
};

// Ten edit units of two elements: picture (in slice 0, at 0) and sound (in slice 1, 100 bytes into
// it). Unit n starts at 1000 n, its slice 1 at 600; unit 3 has no slice offset.
IndexTableSegmentPtr tenUnits(int64 start = 0)
{
    IndexTableSegmentPtr segment(new IndexTables::IndexTableSegment());
    segment->indexStartPosition(start);
    segment->indexDuration(10);
    segment->sliceCount(1);
    segment->addDeltaEntry(0, IndexTables::DeltaEntry(0, 0, 0));
    segment->addDeltaEntry(1, IndexTables::DeltaEntry(0, 1, 100));
    for (unsigned int n = 0; n < 10; ++n)
    {
        IndexTables::IndexEntry entry((signed char)(n % 3 == 1 ? 1 : n % 3 == 2 ? -1 : 0), 0, n == 0, false, false,
                                      false, uint64(start + n) * 1000);
        entry.addSliceOffset(0, 600);
        segment->addIndexEntry(n, entry);
    }
    segment->indexEntry(3).removeSliceOffset(0);
    return segment;
}

struct Fixture
{
    explicit Fixture(IndexTableSegmentPtr segment, bool complete = false, unsigned int editUnitByteCount = 0,
                     uint64 size = 1000, int64 duration = 10)
        : bytes(64, 0), source(bytes.data(), bytes.size())
    {
        provider = new OneSegmentProvider(source, segment, complete);
        seeker.reset(new Seeker(source, Templates::auto_ptr<MXFIO::IndexTableProvider>(provider),
                                Templates::auto_ptr<MXFIO::PartitionProvider>(new NoPartitions()),
                                editUnitByteCount, size, duration));
        source.seek(17);
    }
    std::vector<unsigned char> bytes;
    DataIO::Memory::MemoryDataSource source;
    OneSegmentProvider * provider;
    Templates::auto_ptr<Seeker> seeker;
};

} // namespace

TEST(MXFIOSeeker, ConstantEditUnitSizeNeedsNoIndex)
{
    Fixture f(tenUnits(), true, 4096);
    uint64 offset = 0;
    EXPECT_TRUE(f.seeker->streamOffset(7, offset));
    EXPECT_EQ(offset, 7u * 4096u);
    EXPECT_TRUE(f.seeker->streamOffset(0, offset));
    EXPECT_EQ(offset, 0u);
    EXPECT_FALSE(f.seeker->streamOffset(-1, offset));
    EXPECT_EQ(f.provider->questions, 0);
    EXPECT_TRUE(f.seeker->hasIndex());
}

TEST(MXFIOSeeker, CoarseOffsetsFromTheIndexOrAnEstimate)
{
    // With an entry: its stream offset, and the source stays where it stood.
    Fixture f(tenUnits(), false, 0, 50000, 20);
    uint64 offset = 0;
    EXPECT_TRUE(f.seeker->streamOffset(4, offset));
    EXPECT_EQ(offset, 4000u);
    EXPECT_EQ(f.source.absoluteOffset(), 17u);
    EXPECT_GT(f.provider->questions, 0);

    // Beyond an incomplete table: estimated from 50000 bytes over 20 units.
    EXPECT_TRUE(f.seeker->streamOffset(13, offset));
    EXPECT_EQ(offset, 13u * 2500u);
    // What reading has taught beats the estimate.
    f.seeker->learnStreamOffset(13, 31000);
    EXPECT_TRUE(f.seeker->streamOffset(13, offset));
    EXPECT_EQ(offset, 31000u);
    // Only the most recent 65536 learnt offsets are kept, however long the file.
    for (int64 unit = 100; unit < 100 + 70000; ++unit)
        f.seeker->learnStreamOffset(unit, uint64(unit) * 3000 + 7);
    EXPECT_TRUE(f.seeker->streamOffset(100 + 69999, offset));
    EXPECT_EQ(offset, uint64(100 + 69999) * 3000 + 7);
    EXPECT_TRUE(f.seeker->streamOffset(100, offset));
    EXPECT_EQ(offset, 100u * 2500u);
    // A new size starts a new average; a duration of 0 gives an average of 0.
    f.seeker->containerSize(7000, 0);
    EXPECT_TRUE(f.seeker->streamOffset(15, offset));
    EXPECT_EQ(offset, 0u);
    f.seeker->containerSize(7, 2);
    EXPECT_TRUE(f.seeker->streamOffset(15, offset));
    EXPECT_EQ(offset, 52u); // 15 * 7 / 2, truncated

    // A complete table: beyond its end is a failure, not an estimate.
    Fixture complete(tenUnits(), true);
    EXPECT_FALSE(complete.seeker->streamOffset(10, offset));
    EXPECT_TRUE(complete.seeker->streamOffset(9, offset));
    EXPECT_EQ(offset, 9000u);
    EXPECT_EQ(complete.source.absoluteOffset(), 17u);
}

TEST(MXFIOSeeker, FineOffsetsThroughTheElementTable)
{
    Fixture f(tenUnits(10));
    uint64 offset = 0;
    // No element table yet.
    EXPECT_FALSE(f.seeker->elementStreamOffset(12, 0x15010500, offset));
    std::vector<unsigned int> numbers = {0x15010500, 0x16010300};
    f.seeker->elements(Templates::vector<unsigned int>(numbers.begin(), numbers.end()));
    EXPECT_TRUE(f.seeker->trackNumberExists(0x16010300));
    // Byte 2, the element count, does not tell elements apart.
    EXPECT_TRUE(f.seeker->trackNumberExists(0x16020300));
    EXPECT_FALSE(f.seeker->trackNumberExists(0x16010301));
    EXPECT_EQ(f.seeker->elementIndex(0x15020500), 0u);
    EXPECT_EQ(f.seeker->elementIndex(0x16010300), 1u);

    EXPECT_TRUE(f.seeker->elementStreamOffset(12, 0x15010500, offset));
    EXPECT_EQ(offset, 12000u);
    EXPECT_TRUE(f.seeker->elementStreamOffset(12, 0x16020300, offset));
    EXPECT_EQ(offset, 12000u + 600u + 100u);
    EXPECT_EQ(f.source.absoluteOffset(), 17u);
    // Unit 13 lacks the slice offset of slice 1; units outside the segment have no entry.
    EXPECT_FALSE(f.seeker->elementStreamOffset(13, 0x16010300, offset));
    EXPECT_TRUE(f.seeker->elementStreamOffset(13, 0x15010500, offset));
    EXPECT_FALSE(f.seeker->elementStreamOffset(9, 0x15010500, offset));
    EXPECT_FALSE(f.seeker->elementStreamOffset(20, 0x15010500, offset));

    // An alternate number reads the element it is mapped to.
    f.seeker->alternateTrackNumber(0x16010307, 0x16010300);
    EXPECT_TRUE(f.seeker->trackNumberExists(0x16010307));
    EXPECT_TRUE(f.seeker->elementStreamOffset(14, 0x16010307, offset));
    EXPECT_EQ(offset, 14700u);

    EXPECT_EQ(messageOf<Exceptions::KeyNotFound>([&] { f.seeker->elementStreamOffset(12, 0x17010100, offset); }),
              "it != elements_.end (): Track number not in Essence container");
    EXPECT_EQ(messageOf<Exceptions::KeyNotFound>([&] { f.seeker->elementIndex(0x17010100); }),
              "element != elements_.end (): Track number not in Essence container");
}

TEST(MXFIOSeeker, IndexInformationAndReordering)
{
    Fixture f(tenUnits());
    Seeker::EditUnitInfo info;
    ASSERT_TRUE(f.seeker->editUnitInfo(4, info));
    EXPECT_EQ(info.temporalOffset, 1);
    EXPECT_EQ(info.streamOffset, 4000u);
    ASSERT_TRUE(f.seeker->editUnitInfo(0, info));
    EXPECT_EQ(info.flags, 0x80);
    EXPECT_FALSE(f.seeker->editUnitInfo(10, info));
    // The unit shown at 4 is stored at 5; the one shown at 5 at 4.
    EXPECT_EQ(f.seeker->reorderedEditUnit(4), 5);
    EXPECT_EQ(f.seeker->reorderedEditUnit(5), 4);
    EXPECT_EQ(f.seeker->reorderedEditUnit(3), 3);
    EXPECT_EQ(f.seeker->reorderedEditUnit(30), 30);
    EXPECT_TRUE(f.seeker->hasIndex());

    Fixture none((IndexTableSegmentPtr()));
    EXPECT_FALSE(none.seeker->hasIndex());
    EXPECT_FALSE(none.seeker->editUnitInfo(0, info));
    EXPECT_EQ(none.seeker->partition(0, 0), nullptr);
}

TEST(MXFIOSeeker, ClipWrappedBodyStartsWithEssence)
{
    Fixture f(tenUnits());
    unsigned char fill[16] = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                              0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00};
    unsigned char essence[16] = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01,
                                 0x0D, 0x01, 0x03, 0x01, 0x15, 0x01, 0x06, 0x00};
    EXPECT_NO_THROW(f.seeker->checkClipWrappedPacket(KLV::Key(essence)));
    EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { f.seeker->checkClipWrappedPacket(KLV::Key(fill)); }),
              "!KLV::isFillItem (key): Expected Essence KLV on clip-wrapped body partition");
}

TEST(MXFIOSeeker, SystemItemIsOneElement)
{
    // A system pack and its package metadata set, then picture and sound: three delta entries.
    Fixture f(tenUnits());
    std::vector<unsigned int> numbers = {0x04010100, 0x04010201, 0x15010500, 0x16010300};
    f.seeker->elements(Templates::vector<unsigned int>(numbers.begin(), numbers.end()));
    EXPECT_EQ(f.seeker->elementIndex(0x04010100), 0u);
    EXPECT_EQ(f.seeker->elementIndex(0x04010201), 0u);
    EXPECT_EQ(f.seeker->elementIndex(0x15010500), 1u);
    EXPECT_EQ(f.seeker->elementIndex(0x16010300), 2u);
    uint64 offset = 0;
    EXPECT_TRUE(f.seeker->elementStreamOffset(2, 0x15010500, offset));
    EXPECT_EQ(offset, 2700u); // the second delta entry: slice 1, 100 bytes in
    EXPECT_FALSE(f.seeker->elementStreamOffset(2, 0x16010300, offset)); // no third delta entry

    // Constant edit unit size: no entries, the delta entries place the elements.
    IndexTableSegmentPtr constant(new IndexTables::IndexTableSegment());
    constant->indexStartPosition(0);
    constant->indexDuration(0);
    constant->editUnitByteCount(4096);
    constant->addDeltaEntry(0, IndexTables::DeltaEntry(0, 0, 0));
    constant->addDeltaEntry(1, IndexTables::DeltaEntry(0, 0, 512));
    Fixture d10(constant, false, 4096);
    std::vector<unsigned int> d10Numbers = {0x04010100, 0x04010201, 0x05010100};
    d10.seeker->elements(Templates::vector<unsigned int>(d10Numbers.begin(), d10Numbers.end()));
    EXPECT_TRUE(d10.seeker->elementStreamOffset(3, 0x05010100, offset));
    EXPECT_EQ(offset, 3u * 4096u + 512u);
}
