#include <gtest/gtest.h>

#include "IndexTables/DeltaEntryArray.h"
#include "IndexTables/IndexEntryArray.h"
#include "IndexTables/IndexTestSupport.h"
#include "KLV/Value.h"

using namespace Vellum;
using namespace Vellum::IndexTables;
using namespace IndexTest;

namespace
{
template <class A>
Bytes arrayWire(A const & array)
{
    DataIO::Memory::MemoryDataSink sink;
    array.serialize(sink);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

// A value over `bytes` that a test keeps alive beside what it reads.
struct Over
{
    explicit Over(Bytes const & b) : bytes(b), source(bytes.data(), bytes.size()), value(source, bytes.size()) {}
    Bytes bytes;
    DataIO::Memory::MemoryDataSource source;
    KLV::Value value;
};

} // namespace

TEST(DeltaEntryArray, BuildsChecksAndWrites)
{
    DeltaEntryArray array;
    EXPECT_EQ(6u, array.elementSize());
    EXPECT_EQ(0u, array.size());
    EXPECT_EQ(8u, array.serializedSize());
    EXPECT_EQ(Bytes({0, 0, 0, 0, 0, 0, 0, 6}), arrayWire(array));

    array.append(DeltaEntry(0, 0, 0));
    array.insertAt(1, DeltaEntry(0, 1, 100)); // at size(): appends
    array.insertAt(0, DeltaEntry(-1, 0, 7));
    EXPECT_EQ(3u, array.size());
    EXPECT_EQ(7u, array.at(0).elementDelta());
    EXPECT_EQ(100u, array.at(2).elementDelta());
    EXPECT_EQ(26u, array.serializedSize());

    Thrown t = thrownBy([&] { array.insertAt(4, DeltaEntry(0, 0, 0)); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to access a element beyond the end of data", t.message);
    DeltaEntryArray const & constant = array;
    EXPECT_EQ("Trying to access a element beyond the end of data", thrownBy([&] { constant.at(3); }).message);
    EXPECT_EQ("Trying to access a element beyond the end of data", thrownBy([&] { array.at(3); }).message);
    EXPECT_EQ("Trying to access a element beyond the end of data", thrownBy([&] { array.remove(3); }).message);
    EXPECT_EQ(3u, array.size());

    array.remove(0);
    EXPECT_EQ(Bytes({0, 0, 0, 2, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 100}), arrayWire(array));

    // Entries are copies: changing the original does nothing to the array.
    DeltaEntry entry(0, 0, 5);
    array.append(entry);
    entry = DeltaEntry(0, 0, 6);
    EXPECT_EQ(5u, array.at(2).elementDelta());

    DeltaEntryArray copy(array);
    copy.remove(0);
    EXPECT_EQ(3u, array.size());
    EXPECT_EQ(2u, copy.size());
}

TEST(DeltaEntryArray, ReadsAndRefusesShortValues)
{
    Over good(arrayBytes(2, 6, {0, 0, 0, 0, 0, 0, 1, 2, 0, 0, 1, 0}));
    DeltaEntryArray read(good.value);
    EXPECT_EQ(2u, read.size());
    EXPECT_EQ(2, read.at(1).slice());
    EXPECT_EQ(256u, read.at(1).elementDelta());
    EXPECT_EQ(good.bytes, arrayWire(read));

    Over header(Bytes({0, 0, 0, 1, 0, 0}));
    Thrown t = thrownBy([&] { DeltaEntryArray a(header.value); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    EXPECT_EQ("Invalid data size in the Index Table collection. Not enough data to read element entry size",
              t.message);
    EXPECT_EQ(6u, t.data.size());

    // A count that the value cannot hold fails before any entry is read.
    Over claims(arrayBytes(3, 6, Bytes(12, 0)));
    t = thrownBy([&] { DeltaEntryArray a(claims.value); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    EXPECT_EQ("Number of expected values differ from the size of the local KLV value field. Index Table Segment",
              t.message);
    EXPECT_EQ(20u, t.data.size());

    // A huge count with an entry size of 0 passes the size test but not the reading; nothing is
    // allocated for the count.
    Over zero(arrayBytes(0xFFFFFFFFu, 0, Bytes(6, 0)));
    t = thrownBy([&] { DeltaEntryArray a(zero.value); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    EXPECT_EQ("Invalid data size in Value to create an element in the Index Table collections.", t.message);
}

TEST(IndexEntryArray, ElementSizeFollowsTheCounts)
{
    IndexEntryArray array(2, 1);
    EXPECT_EQ(11u + 8 + 8, array.elementSize());

    IndexEntry entry(0);
    Thrown t = thrownBy([&] { array.append(entry); });
    EXPECT_EQ(INVALID_ELEMENT, t.code);
    EXPECT_EQ("Trying to append an invalid element", t.message);
    t = thrownBy([&] { array.insertAt(0, entry); });
    EXPECT_EQ(INVALID_ELEMENT, t.code);
    EXPECT_EQ("TRying to insert an invalid element", t.message);

    entry.addSliceOffset(0, 1);
    entry.addSliceOffset(1, 2);
    entry.addPosTable(0, Templates::Rational<int>(0, 1));
    array.append(entry);
    entry.streamOffset(500);
    array.insertAt(1, entry);
    EXPECT_EQ(2u, array.size());
    EXPECT_EQ(500u, array.at(1).streamOffset());
    EXPECT_EQ(8u + 2 * 27, array.serializedSize());

    t = thrownBy([&] { array.insertAt(3, entry); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to insert an element beyond the end of the data", t.message);
    t = thrownBy([&] { array.at(2); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to access an element beyond the end of the data", t.message);
    IndexEntryArray const & constant = array;
    t = thrownBy([&] { constant.at(2); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("IndexEntryArray::at() IndexOutOfBonds", t.message);
    t = thrownBy([&] { array.remove(2); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to remove an element beyond the end of the data", t.message);

    array.at(0).temporalOffset(3);
    EXPECT_EQ(3, constant.at(0).temporalOffset());
    array.remove(0);
    EXPECT_EQ(500u, array.at(0).streamOffset());
}

TEST(IndexEntryArray, ReadsEntriesByTheSegmentsLayout)
{
    Bytes entries = cat(indexEntryBytes(0, 0, 0xC0, 0, be(0x10, 4)), indexEntryBytes(1, -1, 0x22, 0x400, be(0x20, 4)));
    Over value(arrayBytes(2, 15, entries));
    IndexEntryArray array(value.value, 1, 0);
    EXPECT_EQ(2u, array.size());
    EXPECT_EQ(15u, array.elementSize());
    EXPECT_EQ(0x20u, array.at(1).sliceOffset(0));
    EXPECT_EQ(value.bytes, arrayWire(array));

    // The file's entry size does not step the reading: with the counts of a segment without
    // slices, the same bytes run out of step and the last entry comes up short.
    Over misread(arrayBytes(2, 15, entries));
    Thrown t = thrownBy([&] { IndexEntryArray a(misread.value, 0, 1); });
    EXPECT_EQ(INVALID_LENGTH, t.code);
    EXPECT_EQ("Invalid data size in Value to create an element in the Index Table collections.", t.message);

    Over claims(arrayBytes(3, 11, Bytes(22, 0)));
    t = thrownBy([&] { IndexEntryArray a(claims.value, 0, 0); });
    EXPECT_EQ("Number of expected values differ from the size of the local KLV value field. Index Table Segment",
              t.message);

    // An empty array keeps the entry size it was written with.
    Over empty(arrayBytes(0, 0, Bytes()));
    IndexEntryArray none(empty.value, 0, 0);
    EXPECT_EQ(0u, none.elementSize());
    EXPECT_EQ(empty.bytes, arrayWire(none));
}
