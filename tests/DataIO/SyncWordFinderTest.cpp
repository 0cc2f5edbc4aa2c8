#include <gtest/gtest.h>

#include <random>

#include "DataIO/BufferSliceSource.h"
#include "DataIO/SliceTestHelpers.h"
#include "DataIO/SyncWordFinder.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::PieceSource;
using Vellum::DataIO::Testing::bytesOf;
using Vellum::DataIO::Testing::cut;

namespace
{
unsigned const START_CODE = 0x00010000u; // 00 00 01 xx
unsigned const START_MASK = 0x00FFFFFFu;

Templates::SharedPtr<SliceSource> pieces(CountingBlockFactory & factory, std::vector<unsigned char> const & bytes,
                                         std::vector<size_t> const & sizes)
{
    return Templates::SharedPtr<SliceSource>(new PieceSource(factory, cut(bytes, sizes)));
}

uint32 loadLittleEndian(unsigned char const * p)
{
    return uint32(p[0]) | uint32(p[1]) << 8 | uint32(p[2]) << 16 | uint32(p[3]) << 24;
}

// The first position at or after `from` and at most `limit` bytes on where the word matches.
bool bruteForce(std::vector<unsigned char> const & bytes, size_t from, uint64 limit, unsigned word, unsigned mask,
                size_t & at)
{
    for (size_t p = from; p + 4 <= bytes.size() && p - from <= limit; ++p)
    {
        if ((loadLittleEndian(&bytes[p]) & mask) == word)
        {
            at = p;
            return true;
        }
    }
    return false;
}
} // namespace

TEST(SyncWordFinderTest, FindZeroConsumesNothing)
{
    CountingBlockFactory factory;
    SliceReader reader(pieces(factory, {0, 0, 1, 0xBA, 0, 0, 0, 1, 0xE0}, {2, 7}));
    SyncWordFinder finder(reader, START_CODE, START_MASK);
    EXPECT_TRUE(finder.find(0));
    EXPECT_EQ(0u, reader.absoluteOffset());
    reader.skip(1);
    SyncResult result;
    EXPECT_FALSE(finder.find(0, result));
    EXPECT_FALSE(result.found);
    EXPECT_TRUE(result.skipped.empty());
    EXPECT_EQ(1u, reader.absoluteOffset());
    // The limit counts the bytes that may be skipped: the word at 5 needs a limit of 4.
    EXPECT_FALSE(finder.find(3, result));
    EXPECT_EQ(4u, reader.absoluteOffset());
    EXPECT_EQ(3u, result.skipped.data_size());
    EXPECT_TRUE(finder.find(1, result));
    EXPECT_EQ(0xE0010000u, result.syncWord);
    EXPECT_EQ(5u, reader.absoluteOffset());
    EXPECT_EQ(4u, result.skipped.data_size()); // appended to what was there
}

TEST(SyncWordFinderTest, TheEndOfTheSource)
{
    CountingBlockFactory factory;
    // Three bytes cannot hold a word, even under a mask that ignores the fourth.
    SliceReader reader(pieces(factory, {7, 7, 0, 0, 1}, {3}));
    SyncWordFinder finder(reader, START_CODE, START_MASK);
    SyncResult result;
    EXPECT_FALSE(finder.find(1000, result));
    EXPECT_EQ((std::vector<unsigned char>{7, 7, 0, 0, 1}), bytesOf(result.skipped));
    EXPECT_TRUE(reader.endOfStream());
    // At the end: false, and nothing appended.
    EXPECT_FALSE(finder.find(1000, result));
    EXPECT_EQ(5u, result.skipped.data_size());

    // A limit short of the end is kept.
    SliceReader shorter(pieces(factory, {7, 7, 7, 7, 7, 7}, {1, 1, 1, 1, 1}));
    SyncWordFinder again(shorter, START_CODE, START_MASK);
    EXPECT_FALSE(again.find(4));
    EXPECT_EQ(4u, shorter.absoluteOffset());
    EXPECT_EQ(2u, shorter.cachedSize());
}

TEST(SyncWordFinderTest, AnOpenSourceWithoutMoreDataKeepsTheUntestedBytes)
{
    CountingBlockFactory factory;
    BufferSliceSource * buffer = new BufferSliceSource;
    SliceReader reader((Templates::SharedPtr<SliceSource>(buffer)));
    SyncWordFinder finder(reader, START_CODE, START_MASK);
    BlockHolder first = factory.make({5, 5, 5, 5, 0, 0});
    buffer->write(Templates::auto_ptr<Slice>(new Slice(first.block(), 0, 6)));
    SyncResult result;
    EXPECT_FALSE(finder.find(1000, result));
    // Positions 0 to 2 are settled; 3 to 5 wait for more bytes.
    EXPECT_EQ(3u, result.skipped.data_size());
    EXPECT_EQ(3u, reader.absoluteOffset());
    BlockHolder second = factory.make({1, 0xC0});
    buffer->write(Templates::auto_ptr<Slice>(new Slice(second.block(), 0, 2)));
    EXPECT_TRUE(finder.find(1000, result));
    EXPECT_EQ(0xC0010000u, result.syncWord);
    EXPECT_EQ(4u, reader.absoluteOffset());
    EXPECT_EQ(4u, result.skipped.data_size());
}

// Random bytes over a small alphabet, cut into random slices, searched again and again with
// random limits; every answer must agree with a plain search of the flat bytes.
TEST(SyncWordFinderTest, AgreesWithABruteForceSearch)
{
    struct Pattern
    {
        unsigned word;
        unsigned mask;
    };
    // A fixed first byte (memchr path), a free first byte (window path), all four bytes fixed.
    Pattern const patterns[] = {{START_CODE, START_MASK}, {0x01000000u, 0xFFFFFF00u}, {0x02010000u, 0xFFFFFFFFu}};
    std::mt19937 random(77u);
    for (int round = 0; round < 300; ++round)
    {
        Pattern const & pattern = patterns[round % 3];
        std::vector<unsigned char> bytes(1 + random() % (round < 250 ? 300 : 200000));
        for (unsigned char & b : bytes)
        {
            unsigned r = random() % 16;
            b = static_cast<unsigned char>(r < 9 ? 0 : r < 13 ? 1 : r < 15 ? 2 : random());
        }
        std::vector<size_t> sizes;
        for (size_t total = 0; total < bytes.size(); total += sizes.back())
            sizes.push_back(round < 250 ? 1 + random() % 12 : 1 + random() % 90000);

        CountingBlockFactory factory;
        PieceSource * source = new PieceSource(factory, cut(bytes, sizes));
        SliceReader reader((Templates::SharedPtr<SliceSource>(source)));
        SyncWordFinder finder(reader, pattern.word, pattern.mask);
        size_t position = 0;
        while (!reader.endOfStream())
        {
            uint64 limit;
            switch (random() % 4)
            {
            case 0:
                limit = ~uint64(0);
                break;
            case 1:
                limit = random() % 4;
                break;
            default:
                limit = random() % 40;
            }
            size_t at = 0;
            bool expected = bruteForce(bytes, position, limit, pattern.word, pattern.mask, at);
            SyncResult result;
            bool found = random() % 2 == 0 ? finder.find(limit, result) : (finder.find(limit) ? true : false);
            ASSERT_EQ(expected, found) << "round " << round << " at " << position << " limit " << limit;
            size_t consumed;
            if (expected)
                consumed = at - position;
            else
                consumed = size_t(limit < bytes.size() - position ? limit : bytes.size() - position);
            ASSERT_EQ(position + consumed, reader.absoluteOffset()) << "round " << round;
            if (!result.skipped.empty() || result.found)
            {
                EXPECT_EQ(expected, result.found);
                EXPECT_EQ(std::vector<unsigned char>(bytes.begin() + long(position),
                                                     bytes.begin() + long(position + consumed)),
                          bytesOf(result.skipped));
                if (expected)
                {
                    EXPECT_EQ(loadLittleEndian(&bytes[at]), result.syncWord);
                }
            }
            position += consumed;
            if (expected || consumed == 0)
                position += reader.skip(1 + random() % 3);
        }
        // Nothing was copied into new blocks, and nothing is left behind.
        EXPECT_EQ(source->reads, factory.created);
        EXPECT_EQ(bytes.size(), position);
    }
}
