#include <gtest/gtest.h>

#include <random>

#include "DataIO/Chain.h"
#include "DataIO/SliceTestHelpers.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::CountingBlock;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::bytesOf;
using Vellum::DataIO::Testing::counting;
using Vellum::DataIO::Testing::window;

namespace
{

int references(BlockHolder const & block)
{
    return static_cast<CountingBlock *>(block.block())->references();
}

// A chain of pieces with the given sizes, each on a block of its own, holding `bytes` in order.
void fill(Chain & chain, CountingBlockFactory & factory, std::vector<unsigned char> const & bytes,
          std::vector<size_t> const & sizes)
{
    for (std::vector<unsigned char> const & piece : Testing::cut(bytes, sizes))
    {
        BlockHolder block = factory.make(piece);
        chain.push_back(window(block, 0, piece.size()));
    }
}
} // namespace

TEST(ChainTest, PushBackMergesAdjacentWindowsPushFrontDoesNot)
{
    CountingBlockFactory factory;
    {
        BlockHolder block = factory.make(counting(100));
        BlockHolder other = factory.make(counting(100, 100));

        Chain chain;
        EXPECT_TRUE(chain.empty());
        EXPECT_EQ(0u, chain.data_size());
        chain.push_back(window(block, 0, 10));
        chain.push_back(window(block, 10, 15));
        EXPECT_EQ(1u, chain.slice_count());
        EXPECT_EQ(25u, chain.data_size());
        chain.push_back(window(block, 0, 0)); // empty: dropped
        chain.push_back(Templates::auto_ptr<Slice>());
        EXPECT_EQ(1u, chain.slice_count());
        chain.push_back(window(block, 30, 5)); // gap: a slice of its own
        chain.push_back(window(other, 35, 5)); // continues on another block
        EXPECT_EQ(3u, chain.slice_count());
        EXPECT_EQ(35u, chain.data_size());

        Chain front;
        front.push_front(window(block, 10, 15));
        front.push_front(window(block, 0, 10));
        EXPECT_EQ(2u, front.slice_count());
        EXPECT_EQ(counting(25), bytesOf(front));

        // Whole chains are spliced in without a merge, and left empty.
        Chain joined;
        joined.push_back(window(block, 50, 5));
        Chain tail;
        tail.push_back(window(block, 55, 5));
        joined.push_back(tail);
        EXPECT_TRUE(tail.empty());
        EXPECT_EQ(2u, joined.slice_count());
        Chain head;
        head.push_back(window(block, 45, 5));
        joined.push_front(head);
        EXPECT_TRUE(head.empty());
        EXPECT_EQ(counting(15, 45), bytesOf(joined));

        Templates::auto_ptr<Slice> first = joined.erase(joined.begin());
        EXPECT_EQ(45u, first->offset());
        EXPECT_EQ(2u, joined.slice_count());
        joined.clear();
        EXPECT_TRUE(joined.empty());
    }
    EXPECT_EQ(0, factory.live);
}

TEST(ChainTest, MakeSliceSharesWithinASliceAndCopiesAcrossSeams)
{
    CountingBlockFactory factory;
    {
        Chain chain;
        fill(chain, factory, counting(30), {10, 10, 10});
        int blocks = factory.created;
        Chain::iterator second = chain.begin();
        ++second;

        Templates::auto_ptr<Slice> inside = chain.makeSlice(12, 5);
        EXPECT_EQ(second->block(), inside->block());
        EXPECT_EQ(counting(5, 12), bytesOf(*inside));
        EXPECT_EQ(blocks, factory.created);

        // Ending on a seam, and starting on one, stay within one slice.
        Templates::auto_ptr<Slice> toSeam = chain.makeSlice(5, 5);
        EXPECT_EQ(chain.begin()->block(), toSeam->block());
        Templates::auto_ptr<Slice> fromSeam = chain.makeSlice(10, 10);
        EXPECT_EQ(second->block(), fromSeam->block());
        EXPECT_EQ(counting(10, 10), bytesOf(*fromSeam));
        EXPECT_EQ(blocks, factory.created);

        // Across two seams: one new block of the first slice's family.
        Templates::auto_ptr<Slice> across = chain.makeSlice(8, 15);
        EXPECT_EQ(blocks + 1, factory.created);
        EXPECT_EQ(15u, across->block()->size());
        EXPECT_EQ(counting(15, 8), bytesOf(*across));
        EXPECT_EQ(3u, chain.slice_count());
        EXPECT_EQ(counting(30), bytesOf(chain));

        // Past the data: an empty slice; beyond the end: only what is there.
        EXPECT_EQ(0u, chain.makeSlice(30, 4)->size());
        EXPECT_EQ(0u, chain.makeSlice(1000, 4)->size());
        EXPECT_EQ(counting(5, 25), bytesOf(*chain.makeSlice(25, 1000000)));
        EXPECT_EQ(counting(12, 18), bytesOf(*chain.makeSlice(18, ~uint64(0))));
        EXPECT_EQ(0u, chain.makeSlice(3, 0)->size());
    }
    EXPECT_EQ(0, factory.live);
}

TEST(ChainTest, ChopBeginAndEndAgreeWithAFlatCopy)
{
    CountingBlockFactory factory;
    std::mt19937 random(20240611u);
    for (int round = 0; round < 200; ++round)
    {
        std::vector<unsigned char> bytes(1 + random() % 200);
        for (unsigned char & b : bytes)
            b = static_cast<unsigned char>(random());
        std::vector<size_t> sizes;
        for (size_t total = 0; total < bytes.size(); total += sizes.back())
            sizes.push_back(1 + random() % 40);

        Chain chain;
        fill(chain, factory, bytes, sizes);
        Chain out;
        std::vector<unsigned char> earlier = {0xEE, 0xEF};
        {
            BlockHolder block = factory.make(earlier);
            out.push_back(window(block, 0, 2));
        }
        uint64 n = random() % (bytes.size() + 20);
        size_t moved = n < bytes.size() ? size_t(n) : bytes.size();
        std::vector<unsigned char> expectedOut;
        std::vector<unsigned char> expectedRest;
        if (round % 2 == 0)
        {
            chain.chopBegin(n, out);
            expectedOut = earlier;
            expectedOut.insert(expectedOut.end(), bytes.begin(), bytes.begin() + long(moved));
            expectedRest.assign(bytes.begin() + long(moved), bytes.end());
        }
        else
        {
            chain.chopEnd(n, out);
            expectedOut.assign(bytes.end() - long(moved), bytes.end());
            expectedOut.insert(expectedOut.end(), earlier.begin(), earlier.end());
            expectedRest.assign(bytes.begin(), bytes.end() - long(moved));
        }
        ASSERT_EQ(expectedOut, bytesOf(out)) << "round " << round;
        ASSERT_EQ(expectedRest, bytesOf(chain)) << "round " << round;
        ASSERT_EQ(expectedRest.size(), chain.data_size());
    }
    EXPECT_EQ(0, factory.live);
}

TEST(ChainTest, ChopInTheMiddleOfASliceSharesTheBlock)
{
    CountingBlockFactory factory;
    Chain out;
    {
        Chain chain;
        {
            BlockHolder block = factory.make(counting(10));
            chain.push_back(window(block, 0, 10));
            EXPECT_EQ(2, references(block));
        }
        chain.chopBegin(4, out);
        EXPECT_EQ(chain.begin()->block(), out.begin()->block());
        EXPECT_EQ(2, static_cast<CountingBlock *>(out.begin()->block())->references());
        EXPECT_EQ(counting(4), bytesOf(out));
        EXPECT_EQ(counting(6, 4), bytesOf(chain));
        chain.chopBegin(0, out); // nothing
        EXPECT_EQ(4u, out.data_size());
        // Moving the rest re-joins the windows in `out`.
        chain.chopBegin(100, out);
        EXPECT_TRUE(chain.empty());
        EXPECT_EQ(1u, out.slice_count());
        EXPECT_EQ(counting(10), bytesOf(out));
    }
    // The block lives while `out` holds a window on it.
    EXPECT_EQ(1, factory.live);
    out.clear();
    EXPECT_EQ(0, factory.live);
}
