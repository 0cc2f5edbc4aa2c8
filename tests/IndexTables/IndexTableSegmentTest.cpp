#include <gtest/gtest.h>

#include "IndexTables/IndexTableLocalTag.h"
#include "IndexTables/IndexTableSegment.h"
#include "IndexTables/IndexTestSupport.h"
#include "KLV/Key.h"
#include "KLV/Value.h"

using namespace Vellum;
using namespace Vellum::IndexTables;
using namespace IndexTest;

namespace
{

// A constant bit rate segment: IndexSID 2, BodySID 1, EditUnitByteCount 0x1000, no arrays.
Bytes cbrValue()
{
    return cat(cat(leadingItems(0, 0), item(0x3F05, be(0x1000, 4))), cat(item(0x3F06, be(2, 4)), item(0x3F07, be(1, 4))));
}

// Two entries of a segment with one slice: SliceCount 1 and the arrays.
Bytes slicedValue()
{
    Bytes entries = cat(indexEntryBytes(0, 0, 0xC0, 0, be(0x100, 4)), indexEntryBytes(1, -1, 0x22, 0x900, be(0x80, 4)));
    Bytes v = cat(leadingItems(10, 2), cat(item(0x3F06, be(2, 4)), item(0x3F07, be(1, 4))));
    v = cat(v, item(0x3F08, {1}));
    v = cat(v, item(0x3F09, arrayBytes(2, 6, {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0x20})));
    return cat(v, item(0x3F0A, arrayBytes(2, 15, entries)));
}

class RecordingListener : public IndexTableSegmentListener
{
public:
    void itemRead(Types::LocalTag const & tag, KLV::Value & value) override
    {
        tags.push_back(tag.value());
        lengths.push_back(value.remaining());
    }
    std::vector<unsigned short> tags;
    std::vector<uint64> lengths;
};
} // namespace

TEST(IndexTableSegment, NewSegmentDefaults)
{
    IndexTableSegment a;
    IndexTableSegment b(9);
    EXPECT_EQ(4, a.berLength());
    EXPECT_EQ(9, b.berLength());
    EXPECT_NE(a.instanceUID(), b.instanceUID());
    EXPECT_EQ(nullptr, a.editUnitByteCount());
    EXPECT_EQ(nullptr, a.indexSID());
    EXPECT_EQ(nullptr, a.sliceCount());
    EXPECT_EQ(nullptr, a.posTableCount());
    EXPECT_EQ(nullptr, a.deltaEntryArray());
    EXPECT_EQ(nullptr, a.indexEntryArray());
    EXPECT_EQ(0u, a.indexEntryCount());
    EXPECT_EQ(0u, a.deltaEntryCount());
    EXPECT_EQ(16u + 4 + 64, a.serializedSize());
    EXPECT_EQ(16u + 9 + 64, b.serializedSize());

    Bytes bytes = written(a);
    ASSERT_EQ(84u, bytes.size());
    EXPECT_EQ(currentKey(), Bytes(bytes.begin(), bytes.begin() + 16));
    EXPECT_EQ(Bytes({0x83, 0, 0, 64}), Bytes(bytes.begin() + 16, bytes.begin() + 20));
    Bytes instance(a.instanceUID().rawBuffer(), a.instanceUID().rawBuffer() + 16);
    // Edit rate 0/1, start and duration 0.
    EXPECT_EQ(cat(cat(item(0x3C0A, instance), item(0x3F0B, cat(be(0, 4), be(1, 4)))),
                  cat(item(0x3F0C, be(0, 8)), item(0x3F0D, be(0, 8)))),
              Bytes(bytes.begin() + 20, bytes.begin() + 76));
    EXPECT_EQ(item(0x3F07, be(0, 4)), Bytes(bytes.end() - 8, bytes.end()));
    // Read back, it is the same segment.
    EXPECT_EQ(bytes, written(*parse<IndexTableSegment>(bytes)));
}

TEST(IndexTableSegment, ConstantBitRateSegmentRoundTrip)
{
    Bytes bytes = packet(currentKey(), cbrValue());
    std::unique_ptr<IndexTableSegment> segment = parse<IndexTableSegment>(bytes);
    EXPECT_EQ(4, segment->berLength());
    EXPECT_EQ(Bytes(uid()), Bytes(segment->instanceUID().rawBuffer(), segment->instanceUID().rawBuffer() + 16));
    EXPECT_EQ(25, segment->indexEditRate().numerator());
    ASSERT_NE(nullptr, segment->editUnitByteCount());
    EXPECT_EQ(0x1000u, segment->editUnitByteCount()->value());
    ASSERT_NE(nullptr, segment->indexSID());
    EXPECT_EQ(2u, segment->indexSID()->value());
    EXPECT_EQ(1u, segment->bodySID().value());
    // No SliceCount on the wire: NSL 0, and none written.
    EXPECT_EQ(nullptr, segment->sliceCount());
    EXPECT_EQ(nullptr, segment->posTableCount());
    EXPECT_EQ(nullptr, segment->indexEntryArray());
    EXPECT_EQ(16u + 4 + 64 + 8 + 8, segment->serializedSize());
    EXPECT_EQ(bytes, written(*segment));

    segment->resetEditUnitByteCount();
    segment->resetIndexSID();
    EXPECT_EQ(nullptr, segment->editUnitByteCount());
    EXPECT_EQ(84u, written(*segment).size());

    // Short form and nine-byte lengths are kept as read.
    Bytes shortForm = packet(currentKey(), cbrValue(), 1);
    EXPECT_EQ(shortForm, written(*parse<IndexTableSegment>(shortForm)));
    Bytes nine = packet(currentKey(), cbrValue(), 9);
    EXPECT_EQ(nine, written(*parse<IndexTableSegment>(nine)));
}

TEST(IndexTableSegment, ArraysAndListener)
{
    Bytes bytes = packet(currentKey(), slicedValue());
    RecordingListener listener;
    std::unique_ptr<IndexTableSegment> segment = parse<IndexTableSegment>(bytes, &listener);
    EXPECT_EQ(std::vector<unsigned short>({0x3C0A, 0x3F0B, 0x3F0C, 0x3F0D, 0x3F06, 0x3F07, 0x3F08, 0x3F09, 0x3F0A}),
              listener.tags);
    EXPECT_EQ(16u, listener.lengths[0]);
    EXPECT_EQ(38u, listener.lengths.back());
    EXPECT_EQ(&listener, segment->listener());

    ASSERT_NE(nullptr, segment->sliceCount());
    EXPECT_EQ(1, segment->sliceCount()->value());
    EXPECT_EQ(2u, segment->deltaEntryCount());
    EXPECT_EQ(32u, segment->deltaEntry(1).elementDelta());
    EXPECT_EQ(2u, segment->indexEntryCount());
    EXPECT_EQ(0x80u, segment->indexEntry(1).sliceOffset(0));
    EXPECT_EQ(0x900u, segment->indexEntry(1).streamOffset());
    EXPECT_EQ(bytes, written(*segment));
    EXPECT_EQ(bytes.size(), segment->serializedSize());

    Thrown t = thrownBy([&] { segment->indexEntry(2); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("IndexTableSegment::indexEntry IndexOutOfBounds", t.message);
    t = thrownBy([&] { segment->deltaEntry(2); });
    EXPECT_EQ("IndexTableSegment::deltaEntry IndexOutOfBounds", t.message);

    // Editing through the segment.
    segment->indexEntry(0).temporalOffset(1);
    EXPECT_EQ(1, segment->indexEntryArray()->at(0).temporalOffset());
    segment->removeDeltaEntry(0);
    EXPECT_EQ(1u, segment->deltaEntryCount());
    segment->resetDeltaEntryArray();
    EXPECT_EQ(0u, segment->deltaEntryCount());
    t = thrownBy([&] { segment->removeDeltaEntry(0); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to remove element from empty deltaEntryArray.", t.message);
    t = thrownBy([&] { segment->deltaEntry(0); });
    EXPECT_EQ("IndexTableSegment::deltaEntry IndexOutOfBounds", t.message);
    segment->addDeltaEntry(0, DeltaEntry(0, 0, 0));
    EXPECT_EQ(1u, segment->deltaEntryCount());
    EXPECT_EQ(OUT_OF_BOUNDS, thrownBy([&] { segment->addDeltaEntry(2, DeltaEntry(0, 0, 0)); }).code);

    segment->resetIndexEntryArray();
    t = thrownBy([&] { segment->removeIndexEntry(0); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to remove element from empty indexEntryArray.", t.message);

    segment->listener(nullptr);
    EXPECT_EQ(nullptr, segment->listener());
}

TEST(IndexTableSegment, AddingIndexEntries)
{
    IndexTableSegment segment;
    segment.sliceCount(2);
    IndexEntry one(0);
    one.addSliceOffset(0, 5);
    Thrown t = thrownBy([&] { segment.addIndexEntry(0, one); });
    EXPECT_EQ(INVALID_ELEMENT, t.code);
    EXPECT_EQ("Error: NSL in segment has value: 2 while IndexEntry has NSL: 1\n"
              "Error: NPE in segment has value: 0 while IndexEntry has NPE: 0",
              t.message);
    EXPECT_EQ(nullptr, segment.indexEntryArray());

    // A first entry at a position past the end leaves no array behind.
    IndexEntry two(one);
    two.addSliceOffset(1, 9);
    EXPECT_EQ(OUT_OF_BOUNDS, thrownBy([&] { segment.addIndexEntry(1, two); }).code);
    EXPECT_EQ(nullptr, segment.indexEntryArray());

    segment.addIndexEntry(0, two);
    ASSERT_NE(nullptr, segment.indexEntryArray());
    EXPECT_EQ(19u, segment.indexEntryArray()->elementSize());
    // With the array in place, the array's own check speaks.
    t = thrownBy([&] { segment.addIndexEntry(1, one); });
    EXPECT_EQ(INVALID_ELEMENT, t.code);
    EXPECT_EQ("TRying to insert an invalid element", t.message);
    segment.addIndexEntry(1, two);
    EXPECT_EQ(2u, segment.indexEntryCount());

    // The counts stay fixed while the array exists, even when it is empty.
    t = thrownBy([&] { segment.sliceCount(1); });
    EXPECT_EQ(INVALID_SEGMENT, t.code);
    EXPECT_EQ("IndexEntryArray still contains value. Please empty IndexEntryArray before setting sliceCount",
              t.message);
    segment.removeIndexEntry(1);
    segment.removeIndexEntry(0);
    EXPECT_EQ(0u, segment.indexEntryCount());
    t = thrownBy([&] { segment.posTableCount(1); });
    EXPECT_EQ(INVALID_SEGMENT, t.code);
    EXPECT_EQ("IndexEntryArray still contains value. Please empty IndexEntryArray before setting posTableCount",
              t.message);
    EXPECT_EQ(nullptr, segment.posTableCount());
    segment.resetIndexEntryArray();
    segment.posTableCount(1);
    segment.sliceCount(0);
    ASSERT_NE(nullptr, segment.posTableCount());
    EXPECT_EQ(1, segment.posTableCount()->value());
    EXPECT_EQ(0, segment.sliceCount()->value());

    // Set counts are written: 5 bytes each.
    EXPECT_EQ(16u + 4 + 64 + 5 + 5, segment.serializedSize());
    IndexEntry withPosition(0);
    withPosition.addPosTable(0, Templates::Rational<int>(1, 2));
    segment.addIndexEntry(0, withPosition);
    EXPECT_EQ(16u + 4 + 64 + 5 + 5 + 4 + 8 + 19, segment.serializedSize());
    Bytes bytes = written(segment);
    EXPECT_EQ(segment.serializedSize(), bytes.size());
    std::unique_ptr<IndexTableSegment> back = parse<IndexTableSegment>(bytes);
    EXPECT_EQ(Templates::Rational<int>(1, 2), back->indexEntry(0).posTable(0));
    EXPECT_EQ(bytes, written(*back));
}

TEST(IndexTableSegment, KeysUnknownItemsAndBadItems)
{
    // The older key is read, and written again under the current one.
    Bytes old = packet(secondKey(), cbrValue());
    Bytes current = packet(currentKey(), cbrValue());
    EXPECT_TRUE(IndexTableSegment::isSegmentKey(KLV::Key(secondKey().data())));
    EXPECT_EQ(KLV::Key(currentKey().data()), IndexTableSegment::key());
    EXPECT_EQ(current, written(*parse<IndexTableSegment>(old)));

    Bytes wrongKey = currentKey();
    wrongKey[14] = 0x02;
    Thrown t = thrownBy([&] { parse<IndexTableSegment>(packet(wrongKey, cbrValue())); });
    EXPECT_EQ(INVALID_SEGMENT, t.code);
    EXPECT_EQ("Trying to load a Index Segment with an invalid key", t.message);
    EXPECT_FALSE(IndexTableSegment::isSegmentKey(KLV::Key(wrongKey.data())));

    // Unknown items, even empty ones, are kept in file order and not written.
    Bytes withUnknown = cat(cat(item(0x7F01, Bytes()), cbrValue()), item(0x3F99, {1, 2, 3}));
    std::unique_ptr<IndexTableSegment> segment = parse<IndexTableSegment>(packet(currentKey(), withUnknown));
    ASSERT_EQ(2u, segment->unknownElements().size());
    EXPECT_EQ(0x7F01, segment->unknownElements()[0].tag.value());
    EXPECT_EQ(0u, segment->unknownElements()[0].value->size());
    EXPECT_EQ(0x3F99, segment->unknownElements()[1].tag.value());
    EXPECT_EQ(Bytes({1, 2, 3}), Bytes(segment->unknownElements()[1].value->value(),
                                      segment->unknownElements()[1].value->value() + 3));
    EXPECT_EQ(current, written(*segment));

    // An item longer than its type: a 6-byte BodySID.
    Bytes longBodySID = cat(leadingItems(0, 0), item(0x3F07, {0, 0, 0, 1, 0xAB, 0xCD}));
    t = thrownBy([&] { parse<IndexTableSegment>(packet(currentKey(), longBodySID)); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    EXPECT_EQ("Invalid data size in Local Value. Value still contains data to be read.", t.message);
    EXPECT_EQ(Bytes({0xAB, 0xCD}), t.data);

    // An item shorter than its type, a tag cut in half, and an item running past the value.
    t = thrownBy([&] { parse<IndexTableSegment>(packet(currentKey(), item(0x3F07, {0, 1}))); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    EXPECT_EQ("Invalid data size in Value", t.message);
    t = thrownBy([&] { parse<IndexTableSegment>(packet(currentKey(), cat(cbrValue(), Bytes({0x3F})))); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    Bytes runsOver = cat(cbrValue(), cat(be(0x3F99, 2), be(100, 2)));
    t = thrownBy([&] { parse<IndexTableSegment>(packet(currentKey(), cat(runsOver, Bytes(10, 0)))); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
}

TEST(IndexTableSegment, BadArrays)
{
    Bytes base = cat(leadingItems(0, 3), item(0x3F07, be(1, 4)));
    // An array claiming more entries than its value holds.
    Bytes claims = cat(base, item(0x3F0A, arrayBytes(3, 11, cat(indexEntryBytes(0, 0, 0x80, 0),
                                                               indexEntryBytes(0, 0, 0x80, 1)))));
    Thrown t = thrownBy([&] { parse<IndexTableSegment>(packet(currentKey(), claims)); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    EXPECT_EQ("Number of expected values differ from the size of the local KLV value field. Index Table Segment",
              t.message);

    // An index entry array in front of its SliceCount is read without slice offsets, and the
    // bytes left over in the item give it away.
    Bytes entries = cat(indexEntryBytes(0, 0, 0xC0, 0, be(1, 4)), indexEntryBytes(0, -1, 0x22, 9, be(2, 4)));
    Bytes early = cat(cat(base, item(0x3F0A, arrayBytes(2, 15, entries))), item(0x3F08, {1}));
    t = thrownBy([&] { parse<IndexTableSegment>(packet(currentKey(), early)); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    EXPECT_EQ("Invalid data size in Local Value. Value still contains data to be read.", t.message);
    EXPECT_EQ(8u, t.data.size());

    // An array header cut short.
    t = thrownBy([&] { parse<IndexTableSegment>(packet(currentKey(), cat(base, item(0x3F09, {0, 0, 0, 1})))); });
    EXPECT_EQ("Invalid data size in the Index Table collection. Not enough data to read element entry size",
              t.message);
}

TEST(IndexTableSegment, SizesOfTheLengthFields)
{
    // A length field of one byte cannot hold more than 127.
    std::unique_ptr<IndexTableSegment> segment = parse<IndexTableSegment>(packet(currentKey(), cbrValue(), 1));
    for (unsigned i = 0; i < 7; ++i)
        segment->addDeltaEntry(i, DeltaEntry(0, 0, i));
    // 80 + 4 + 8 + 42 = 134 bytes of items.
    EXPECT_EQ(16u + 1 + 134, segment->serializedSize());
    Thrown t = thrownBy([&] { written(*segment); });
    EXPECT_EQ(INVALID_SEGMENT, t.code);
    EXPECT_EQ("Type size exceeded", t.message);

    // An array beyond 65535 bytes gets a length of its low 16 bits: writers keep segments small.
    IndexTableSegment big;
    for (unsigned i = 0; i < 6000; ++i)
        big.addIndexEntry(i, IndexEntry(i));
    Bytes bytes = written(big);
    ASSERT_EQ(big.serializedSize(), bytes.size());
    std::size_t at = 20 + 64;
    EXPECT_EQ(Bytes({0x3F, 0x0A}), Bytes(bytes.begin() + at, bytes.begin() + at + 2));
    EXPECT_EQ(be((8 + 6000 * 11) & 0xFFFF, 2), Bytes(bytes.begin() + at + 2, bytes.begin() + at + 4));
    EXPECT_EQ(be(64 + 4 + 8 + 6000 * 11, 3), Bytes(bytes.begin() + 17, bytes.begin() + 20));
}
