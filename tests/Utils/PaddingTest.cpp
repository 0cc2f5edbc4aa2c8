#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "DataIO/Memory/MemoryDataSink.h"
#include "KLV/KLVTestSupport.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Reader.h"
#include "Utils/Padding.h"

using namespace Vellum;
using namespace Vellum::KLVTest;

namespace
{
Bytes contents(DataIO::Memory::MemoryDataSink const & sink)
{
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

Bytes const FILL_KEY = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01, 0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00};
} // namespace

TEST(Padding, WritesFillItemsOfAnExactSize)
{
    DataIO::Memory::MemoryDataSink sink;
    Utils::writeFillKLV(sink, 20, 4);
    EXPECT_EQ(cat(FILL_KEY, Bytes{0x83, 0x00, 0x00, 0x00}), contents(sink));

    DataIO::Memory::MemoryDataSink larger;
    Utils::writeFillKLV(larger, 100, 4);
    Bytes written = contents(larger);
    ASSERT_EQ(100u, written.size());
    EXPECT_EQ(cat(cat(FILL_KEY, Bytes{0x83, 0x00, 0x00, 80}), Bytes(80, 0)), written);

    // Larger than the block of zeros: written in pieces, read back as one fill packet.
    DataIO::Memory::MemoryDataSink huge;
    Utils::writeFillKLV(huge, 200000, 4);
    ASSERT_EQ(200000u, huge.serializedSize());
    DataIO::Memory::MemoryDataSource source(huge.rawBuffer(), huge.serializedSize());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, 0);
    EXPECT_TRUE(KLV::isFillItem(p->key()));
    EXPECT_EQ(200000u, p->klvLength());
    Bytes value(size_t(p->length()), 1);
    p->value().readValue(value.data(), value.size());
    EXPECT_EQ(Bytes(value.size(), 0), value);

    DataIO::Memory::MemoryDataSink shortForm;
    Utils::writeFillKLV(shortForm, 17, 1);
    EXPECT_EQ(cat(FILL_KEY, Bytes{0x00}), contents(shortForm));
}

TEST(Padding, RefusesFillItemsThatCannotBeMade)
{
    DataIO::Memory::MemoryDataSink sink;
    char const tooSmall[] = "Is not possible to make a KLV Fill item which is less than 17 bytes in length";
    EXPECT_EQ(thrown<Exceptions::InvalidValue>(tooSmall), thrownBy([&] { Utils::writeFillKLV(sink, 19, 4); }));
    EXPECT_EQ(tooSmall, thrownBy([&] { Utils::writeFillKLV(sink, 100, 0); }).message);
    EXPECT_EQ(tooSmall, thrownBy([&] { Utils::writeFillKLV(sink, 16, 1); }).message);
    // A short-form length cannot carry 0x80; a length field of 10 bytes does not exist.
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, thrownBy([&] { Utils::writeFillKLV(sink, 17 + 0x80, 1); }).code);
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, thrownBy([&] { Utils::writeFillKLV(sink, 18 + 0x100, 2); }).code);
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, thrownBy([&] { Utils::writeFillKLV(sink, 100, 10); }).code);
    EXPECT_EQ(0u, sink.serializedSize());
}

TEST(Padding, AlignsToTheGrid)
{
    // Aligned: nothing.
    DataIO::Memory::MemoryDataSink sink;
    Bytes head(512, 0x11);
    sink.write(head.data(), head.size());
    Utils::kagAlign(sink, 512, 4);
    EXPECT_EQ(512u, sink.serializedSize());

    // Two bytes short of the grid: too small for a fill, so one more grid step is taken.
    DataIO::Memory::MemoryDataSink spill;
    spill.write(head.data(), 510);
    Utils::kagAlign(spill, 512, 4);
    ASSERT_EQ(1024u, spill.serializedSize());
    Bytes written = contents(spill);
    EXPECT_EQ(cat(FILL_KEY, Bytes{0x83, 0x00, 0x01, 0xEE}), Bytes(written.begin() + 510, written.begin() + 530));

    // Room enough for a fill before the grid point.
    DataIO::Memory::MemoryDataSink room;
    room.write(head.data(), 100);
    Utils::kagAlign(room, 512, 4);
    EXPECT_EQ(512u, room.serializedSize());

    // A grid of 0 or 1 never pads.
    for (unsigned kag : {0u, 1u})
    {
        DataIO::Memory::MemoryDataSink any;
        any.write(head.data(), 7);
        Utils::kagAlign(any, kag, 4);
        EXPECT_EQ(7u, any.serializedSize());
    }

    // A small grid spills over several steps.
    DataIO::Memory::MemoryDataSink small;
    small.write(head.data(), 5);
    Utils::kagAlign(small, 8, 4);
    EXPECT_EQ(32u, small.serializedSize());
}

TEST(Padding, AlignBytesComputesThePaddingWithoutWriting)
{
    EXPECT_EQ(0u, Utils::alignBytes(512, 512, 20));
    EXPECT_EQ(0u, Utils::alignBytes(512, 0, 20));
    EXPECT_EQ(514u, Utils::alignBytes(512, 510, 20));
    EXPECT_EQ(412u, Utils::alignBytes(512, 100, 20));
    EXPECT_EQ(20u, Utils::alignBytes(512, 492, 20));
    EXPECT_EQ(531u, Utils::alignBytes(512, 493, 20));
    EXPECT_EQ(0u, Utils::alignBytes(0, 12345, 20));
    EXPECT_EQ(27u, Utils::alignBytes(8, 5, 20));
    EXPECT_EQ(3u, Utils::alignBytes(8, 5, 0));
    EXPECT_EQ(1u, Utils::alignBytes(4096, ~uint64(0), 0));
}
