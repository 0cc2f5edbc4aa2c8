#include <gtest/gtest.h>

#include "KLV/KLVTestSupport.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"

using namespace Vellum;
using namespace Vellum::KLVTest;

namespace
{
Bytes counting(unsigned size)
{
    Bytes b(size);
    for (unsigned i = 0; i < size; ++i)
        b[i] = static_cast<unsigned char>(i);
    return b;
}
} // namespace

TEST(Value, IsABoundedViewOnTheSource)
{
    Bytes data = counting(20);
    DataIO::Memory::MemoryDataSource source(data.data(), data.size());
    source.seek(4);
    {
        KLV::Value value(source, 10);
        EXPECT_EQ(10u, value.totalLength());
        EXPECT_EQ(10u, value.remaining());
        EXPECT_EQ(4u, value.absoluteOffset());
        EXPECT_FALSE(value.endOfStream());

        unsigned char out[32] = {0};
        EXPECT_EQ(3u, value.read(out, 3));
        EXPECT_EQ(Bytes({4, 5, 6}), Bytes(out, out + 3));
        EXPECT_EQ(7u, value.remaining());
        EXPECT_EQ(2u, value.skip(2));
        // A read asking for more gets what is left of the value, not of the source.
        EXPECT_EQ(5u, value.read(out, 32));
        EXPECT_EQ(Bytes({9, 10, 11, 12, 13}), Bytes(out, out + 5));
        EXPECT_TRUE(value.endOfStream());
        EXPECT_EQ(0u, value.read(out, 1));
        EXPECT_EQ(0u, value.skip(1));
        EXPECT_EQ(14u, source.absoluteOffset());
    }
    EXPECT_EQ(14u, source.absoluteOffset());

    source.seek(2);
    {
        KLV::Value value(source, 6);
        value.discard();
        EXPECT_EQ(8u, source.absoluteOffset());
        EXPECT_EQ(0u, value.remaining());
    }

    // A source moved past the end of the value leaves nothing to skip.
    source.seek(0);
    {
        KLV::Value value(source, 5);
        source.seek(12);
        EXPECT_EQ(0u, value.remaining());
        EXPECT_TRUE(value.endOfStream());
    }
    EXPECT_EQ(12u, source.absoluteOffset());
}

TEST(Value, DestructionSkipsWhatIsLeft)
{
    Bytes data = counting(30);
    CountingSource source(data);
    {
        KLV::Value value(source, 12);
        unsigned char out[4];
        value.readValue(out, 4);
    }
    EXPECT_EQ(12u, source.absoluteOffset());
    EXPECT_EQ(1u, source.skips);
    EXPECT_EQ(4u, source.bytesRead);

    // A value read to its end needs no skip.
    source.resetCounts();
    {
        KLV::Value value(source, 3);
        unsigned char out[3];
        value.readValue(out, 3);
    }
    EXPECT_EQ(0u, source.skips);
    EXPECT_EQ(15u, source.absoluteOffset());
}

TEST(Value, ReadValuePastTheEndCarriesWhatWasRead)
{
    Bytes data = counting(10);
    DataIO::Memory::MemoryDataSource source(data.data(), data.size());
    KLV::Value value(source, 6);
    unsigned char out[8] = {0};
    value.readValue(out, 2);
    try
    {
        value.readValue(out, 8);
        FAIL() << "no exception";
    }
    catch (Exceptions::InvalidLength const & e)
    {
        EXPECT_EQ("Invalid data size in Value", n(e.message()));
        EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, e.errorCode());
        ASSERT_EQ(4u, e.readDataLength());
        EXPECT_EQ(Bytes({2, 3, 4, 5}), Bytes(e.readData(), e.readData() + 4));
    }
}

TEST(Value, LengthBeyondTheSourceReadsShortAndDiesQuietly)
{
    Bytes data = counting(10);
    DataIO::Memory::MemoryDataSource source(data.data(), data.size());
    source.seek(2);
    {
        KLV::Value value(source, 100);
        unsigned char out[200];
        EXPECT_EQ(8u, value.read(out, 200));
        EXPECT_EQ(92u, value.remaining());
        EXPECT_EQ(0u, value.read(out, 200));
        EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, thrownBy([&] { value.readValue(out, 1); }).code);
    }
    EXPECT_EQ(10u, source.absoluteOffset());

    // The largest length there is: the end saturates instead of wrapping.
    source.seek(3);
    {
        KLV::Value value(source, ~uint64(0));
        EXPECT_EQ(~uint64(0) - 3, value.remaining());
    }
    EXPECT_EQ(10u, source.absoluteOffset());
}

TEST(Packet, HoldsKeyLengthAndValue)
{
    Bytes keyBytes(16, 0x11);
    Bytes data = counting(40);
    DataIO::Memory::MemoryDataSource source(data.data(), data.size());
    source.seek(20);
    {
        KLV::Packet packet(KLV::Key(keyBytes.data()), 4, 9, source, 0);
        EXPECT_EQ(KLV::Key(keyBytes.data()), packet.key());
        EXPECT_EQ(4, packet.berLength());
        EXPECT_EQ(9u, packet.length());
        EXPECT_EQ(0u, packet.keyAbsoluteOffset());
        EXPECT_EQ(29u, packet.klvLength());
        EXPECT_EQ(9u, packet.value().remaining());
        unsigned char first = 0;
        packet.value().readValue(&first, 1);
        EXPECT_EQ(20, first);

        Bytes otherBytes(16, 0x22);
        packet.key(KLV::Key(otherBytes.data()));
        EXPECT_EQ(KLV::Key(otherBytes.data()), packet.key());
        KLV::Packet const & constant = packet;
        EXPECT_EQ(8u, constant.value().remaining());
    }
    // Dropped with its value unread: the source stands behind the packet.
    EXPECT_EQ(29u, source.absoluteOffset());
}
