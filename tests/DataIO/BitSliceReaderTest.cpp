#include <gtest/gtest.h>

#include "DataIO/BitSliceReader.h"
#include "DataIO/SliceTestHelpers.h"
#include "Exceptions/Exceptions.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::PieceSource;
using Vellum::DataIO::Testing::bytesOf;
using Vellum::DataIO::Testing::cut;

namespace
{
Templates::SharedPtr<SliceSource> source(CountingBlockFactory & factory, std::vector<unsigned char> const & bytes,
                                         std::vector<size_t> const & sizes)
{
    return Templates::SharedPtr<SliceSource>(new PieceSource(factory, cut(bytes, sizes)));
}

// Drops every 0x03 that follows two zero bytes, as H.264 streams have it.
class EmulationReader : public BitSliceReader
{
public:
    explicit EmulationReader(Templates::SharedPtr<SliceSource> s) : BitSliceReader(s), zeros_(0) {}
    bool discardEmulationPreventionByte(unsigned char byte) override
    {
        bool drop = zeros_ >= 2 && byte == 0x03;
        zeros_ = byte == 0 ? zeros_ + 1 : 0;
        if (drop)
            zeros_ = 0;
        return drop;
    }

private:
    int zeros_;
};
} // namespace

TEST(BitSliceReaderTest, FieldsAcrossBytesAndSeams)
{
    CountingBlockFactory factory;
    // 1010 1011 1100 1101 1110 1111 0001 0010
    BitSliceReader reader(source(factory, {0xAB, 0xCD, 0xEF, 0x12}, {1, 2, 1}));
    unsigned char out[4] = {0, 0, 0, 0};
    reader.readBits(4, out);
    EXPECT_EQ(0xA0, out[0]);
    reader.readBits(12, out); // 1011 1100 1101
    EXPECT_EQ(0xBC, out[0]);
    EXPECT_EQ(0xD0, out[1]);
    reader.readBits(13, out); // 1110 1111 0001 0
    EXPECT_EQ(0xEF, out[0]);
    EXPECT_EQ(0x10, out[1]);
    reader.readBits(3, out); // 010
    EXPECT_EQ(0x40, out[0]);
    EXPECT_THROW(reader.readBits(1, out), Exceptions::NotEnoughData);
    Chain raw;
    reader.readCache(raw);
    EXPECT_EQ((std::vector<unsigned char>{0xAB, 0xCD, 0xEF, 0x12}), bytesOf(raw));
}

TEST(BitSliceReaderTest, SkipBits)
{
    CountingBlockFactory factory;
    BitSliceReader reader(source(factory, {0x0F, 0xF0, 0x3C, 0x81}, {4}));
    unsigned char out[1] = {0};
    EXPECT_EQ(4u, reader.skipBits(4));
    reader.readBits(4, out);
    EXPECT_EQ(0xF0, out[0]);
    // Completing the current byte consumes nothing further.
    EXPECT_EQ(0u, reader.skipBits(0));
    EXPECT_EQ(1u, reader.absoluteOffset());
    EXPECT_EQ(10u, reader.skipBits(10)); // all of 0xF0 and two bits of 0x3C
    reader.readBits(6, out);
    EXPECT_EQ(0xF0, out[0]); // 111100
    reader.readBits(1, out);
    EXPECT_EQ(0x80, out[0]);
    // Past the end: the bits that were there.
    EXPECT_EQ(7u, reader.skipBits(100));
    Chain raw;
    reader.readCache(raw);
    EXPECT_EQ((std::vector<unsigned char>{0x0F, 0xF0, 0x3C, 0x81}), bytesOf(raw));
}

TEST(BitSliceReaderTest, ReadCacheAndReleaseCacheDropAPartlyReadByte)
{
    CountingBlockFactory factory;
    BitSliceReader reader(source(factory, {0xFF, 0x00, 0x80}, {3}));
    unsigned char out[1];
    reader.readBits(2, out);
    reader.releaseCache();
    reader.readBits(1, out);
    EXPECT_EQ(0x00, out[0]); // the first bit of the second byte
    Chain raw;
    reader.readCache(raw);
    EXPECT_EQ((std::vector<unsigned char>{0x00}), bytesOf(raw));
    reader.readBits(1, out);
    EXPECT_EQ(0x80, out[0]);
}

TEST(BitSliceReaderTest, SubclassDropsEmulationPreventionBytes)
{
    CountingBlockFactory factory;
    EmulationReader reader(source(factory, {0x00, 0x00, 0x03, 0x01, 0x7F}, {2, 3}));
    unsigned char out[4] = {0, 0, 0, 0};
    reader.readBits(32, out);
    EXPECT_EQ((std::vector<unsigned char>{0x00, 0x00, 0x01, 0x7F}), std::vector<unsigned char>(out, out + 4));
    // The raw bytes keep the dropped one.
    Chain raw;
    reader.readCache(raw);
    EXPECT_EQ((std::vector<unsigned char>{0x00, 0x00, 0x03, 0x01, 0x7F}), bytesOf(raw));
}
