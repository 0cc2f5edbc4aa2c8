#include <gtest/gtest.h>

#include "IndexTables/DeltaEntry.h"
#include "IndexTables/IndexEntry.h"
#include "IndexTables/IndexTestSupport.h"
#include "KLV/Value.h"

using namespace Vellum;
using namespace Vellum::IndexTables;
using namespace IndexTest;

namespace
{
template <class E>
Bytes entryBytes(E const & entry)
{
    DataIO::Memory::MemoryDataSink sink;
    entry.serialize(sink);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

} // namespace

TEST(DeltaEntry, FieldsOnTheWire)
{
    DeltaEntry entry(-1, 2, 0x01020304u);
    EXPECT_EQ(-1, entry.posTableIndex());
    EXPECT_EQ(2, entry.slice());
    EXPECT_EQ(0x01020304u, entry.elementDelta());
    EXPECT_EQ(6, entry.serializedSize());
    EXPECT_EQ(Bytes({0xFF, 0x02, 0x01, 0x02, 0x03, 0x04}), entryBytes(entry));

    Bytes bytes = {0x05, 0x01, 0xFF, 0xFF, 0xFF, 0xFE, 0x77};
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Value value(source, bytes.size());
    DeltaEntry read(value);
    EXPECT_EQ(5, read.posTableIndex());
    EXPECT_EQ(1, read.slice());
    EXPECT_EQ(0xFFFFFFFEu, read.elementDelta());
    EXPECT_EQ(1u, value.remaining());
    // One byte is not an entry.
    Thrown t = thrownBy([&] { DeltaEntry again(value); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);

    DeltaEntry copy(read);
    copy = entry;
    EXPECT_EQ(entryBytes(entry), entryBytes(copy));
    EXPECT_EQ(5, read.posTableIndex());
}

TEST(IndexEntry, ConstructorsAndFlags)
{
    IndexEntry plain(0x0102030405060708ull);
    EXPECT_EQ(0x80, plain.flags());
    EXPECT_TRUE(plain.randomAccess());
    EXPECT_FALSE(plain.sequenceHeader());
    EXPECT_EQ(0, plain.temporalOffset());
    EXPECT_EQ(0, plain.keyFrameOffset());
    EXPECT_EQ(0x0102030405060708ull, plain.streamOffset());
    EXPECT_EQ(11, plain.serializedSize());
    EXPECT_EQ(Bytes({0, 0, 0x80, 1, 2, 3, 4, 5, 6, 7, 8}), entryBytes(plain));

    IndexEntry b(-2, -5, false, false, true, true, 99);
    EXPECT_EQ(-2, b.temporalOffset());
    EXPECT_EQ(-5, b.keyFrameOffset());
    EXPECT_EQ(0x30, b.flags());
    EXPECT_TRUE(b.forwardPrediction());
    EXPECT_TRUE(b.backwardPrediction());
    EXPECT_FALSE(b.randomAccess());

    IndexEntry i(0, 0, true, true, false, false, 0);
    EXPECT_EQ(0xC0, i.flags());

    // The bits without a name are kept as set; the named ones change one at a time.
    b.flags(0x3F);
    EXPECT_EQ(0x3F, b.flags());
    b.randomAccess(true);
    b.forwardPrediction(false);
    EXPECT_EQ(0x9F, b.flags());
    b.sequenceHeader(true);
    b.backwardPrediction(false);
    EXPECT_EQ(0xCF, b.flags());
    b.temporalOffset(127);
    b.keyFrameOffset(-128);
    b.streamOffset(7);
    EXPECT_EQ(Bytes({0x7F, 0x80, 0xCF, 0, 0, 0, 0, 0, 0, 0, 7}), entryBytes(b));
}

TEST(IndexEntry, SliceOffsetsAndPositionTables)
{
    IndexEntry entry(0);
    entry.addSliceOffset(0, 30);
    entry.addSliceOffset(0, 10);
    entry.addSliceOffset(1, 20);
    EXPECT_EQ(3, entry.sliceOffsetCount());
    EXPECT_EQ(10u, entry.sliceOffset(0));
    EXPECT_EQ(20u, entry.sliceOffset(1));
    EXPECT_EQ(30u, entry.sliceOffset(2));

    Thrown t = thrownBy([&] { entry.addSliceOffset(4, 1); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to access a element beyond the end of data", t.message);
    t = thrownBy([&] { entry.sliceOffset(3); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to access a element beyond the end of data.", t.message);
    t = thrownBy([&] { entry.removeSliceOffset(3); });
    EXPECT_EQ("Trying to access a element beyond the end of data", t.message);
    entry.removeSliceOffset(1);
    EXPECT_EQ(2, entry.sliceOffsetCount());
    EXPECT_EQ(30u, entry.sliceOffset(1));

    entry.addPosTable(0, Templates::Rational<int>(1, 2));
    entry.addPosTable(1, Templates::Rational<int>(-3, 4));
    EXPECT_EQ(2, entry.posTableCount());
    EXPECT_EQ(Templates::Rational<int>(-3, 4), entry.posTable(1));
    t = thrownBy([&] { entry.posTable(2); });
    EXPECT_EQ("Trying to access a element beyond the end of data", t.message);
    t = thrownBy([&] { entry.addPosTable(3, Templates::Rational<int>(1, 1)); });
    EXPECT_EQ("Trying to access a element beyond the end of data", t.message);
    t = thrownBy([&] { entry.removePosTable(2); });
    EXPECT_EQ(OUT_OF_BOUNDS, t.code);
    EXPECT_EQ("Trying to access a element beyond the end of data", t.message);

    EXPECT_EQ(11 + 2 * 4 + 2 * 8, entry.serializedSize());
    Bytes expected = indexEntryBytes(0, 0, 0x80, 0,
                                     cat(cat(be(10, 4), be(30, 4)),
                                         cat(cat(be(1, 4), be(2, 4)), cat(be(0xFFFFFFFDull, 4), be(4, 4)))));
    EXPECT_EQ(expected, entryBytes(entry));

    // A copy is deep.
    IndexEntry copy(entry);
    copy.removePosTable(0);
    EXPECT_EQ(2, entry.posTableCount());
    entry = copy;
    EXPECT_EQ(1, entry.posTableCount());

    // An entry holds at most 255 slice offsets: the count is one byte.
    IndexEntry full(0);
    for (unsigned i = 0; i < 255; ++i)
        full.addSliceOffset(static_cast<unsigned char>(i), i);
    EXPECT_EQ(255, full.sliceOffsetCount());
    EXPECT_EQ(OUT_OF_BOUNDS, thrownBy([&] { full.addSliceOffset(255, 0); }).code);
    EXPECT_EQ(11 + 4 * 255, full.serializedSize());
}

TEST(IndexEntry, ReadsByTheCountsItIsGiven)
{
    // Position table numbers that are not in lowest terms are written back as they were read.
    Bytes tail = cat(cat(be(0x11223344, 4), be(2, 4)), be(4, 4));
    Bytes bytes = cat(indexEntryBytes(-1, -3, 0x33, 0x1000, tail), Bytes({0xEE}));
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Value value(source, bytes.size());
    IndexEntry entry(value, 1, 1);
    EXPECT_EQ(-1, entry.temporalOffset());
    EXPECT_EQ(-3, entry.keyFrameOffset());
    EXPECT_EQ(0x33, entry.flags());
    EXPECT_EQ(0x1000u, entry.streamOffset());
    EXPECT_EQ(0x11223344u, entry.sliceOffset(0));
    EXPECT_EQ(Templates::Rational<int>(1, 2), entry.posTable(0));
    EXPECT_EQ(Bytes(bytes.begin(), bytes.end() - 1), entryBytes(entry));
    EXPECT_EQ(1u, value.remaining());

    Bytes shortBytes = indexEntryBytes(0, 0, 0x80, 0);
    DataIO::Memory::MemoryDataSource shortSource(shortBytes.data(), shortBytes.size());
    KLV::Value shortValue(shortSource, shortBytes.size());
    Thrown t = thrownBy([&] { IndexEntry e(shortValue, 1, 0); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ(11u, t.data.size());
}
