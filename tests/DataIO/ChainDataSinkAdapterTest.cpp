#include <gtest/gtest.h>

#include "DataIO/ChainDataSinkAdapter.h"
#include "DataIO/ChainSinkDataAdapter.h"
#include "DataIO/Memory/MemoryDataSink.h"
#include "DataIO/SliceTestHelpers.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::bytesOf;
using Vellum::DataIO::Testing::counting;

TEST(ChainDataSinkAdapterTest, SmallWritesCollectInOneBlockLargeOnesGetTheirOwn)
{
    Chain chain;
    ChainDataSinkAdapter adapter(chain, 1000);
    EXPECT_EQ(1000u, adapter.absoluteOffset());
    std::vector<unsigned char> expected;
    for (unsigned i = 0; i < 30; ++i)
    {
        std::vector<unsigned char> bytes = counting(100, i);
        adapter.write(bytes.data(), bytes.size());
        expected.insert(expected.end(), bytes.begin(), bytes.end());
    }
    EXPECT_EQ(1u, chain.slice_count());
    EXPECT_EQ(3000u, chain.data_size());
    EXPECT_EQ(10240u, chain.begin()->block()->size());
    EXPECT_EQ(expected, bytesOf(chain));
    EXPECT_EQ(4000u, adapter.absoluteOffset());

    adapter.write(nullptr, 0);
    EXPECT_EQ(1u, chain.slice_count());

    std::vector<unsigned char> large = counting(20000, 7);
    adapter.write(large.data(), large.size());
    EXPECT_EQ(2u, chain.slice_count());
    Chain::iterator last = chain.end();
    --last;
    EXPECT_EQ(20000u, last->size());
    EXPECT_EQ(20000u, last->block()->size());
    EXPECT_NE(chain.begin()->block(), last->block());
    EXPECT_EQ(24000u, adapter.absoluteOffset());

    // The next small write does not fit the large block: a fresh one of the normal size.
    unsigned char tail[3] = {1, 2, 3};
    adapter.write(tail, 3);
    EXPECT_EQ(3u, chain.slice_count());
    last = chain.end();
    --last;
    EXPECT_EQ(10240u, last->block()->size());
    expected.insert(expected.end(), large.begin(), large.end());
    expected.insert(expected.end(), tail, tail + 3);
    EXPECT_EQ(expected, bytesOf(chain));
    EXPECT_EQ(24003u, adapter.absoluteOffset());
}

TEST(ChainDataSinkAdapterTest, FillingABlockExactlyAndBlockSizeZero)
{
    CountingBlockFactory factory;
    {
        Chain chain;
        ChainDataSinkAdapter adapter(factory, chain, 0, 8);
        std::vector<unsigned char> bytes = counting(20);
        adapter.write(bytes.data(), 5);
        adapter.write(bytes.data() + 5, 3); // fills the block to the last byte
        EXPECT_EQ(1, factory.created);
        adapter.write(bytes.data() + 8, 1);
        EXPECT_EQ(2, factory.created);
        EXPECT_EQ(2u, chain.slice_count());
        EXPECT_EQ(counting(9), bytesOf(chain));

        // Block size 0: every write gets a block of its own size.
        Chain own;
        ChainDataSinkAdapter each(factory, own, 50, 0);
        each.write(bytes.data(), 4);
        each.write(bytes.data() + 4, 4);
        EXPECT_EQ(4, factory.created);
        EXPECT_EQ(2u, own.slice_count());
        EXPECT_EQ(4u, own.begin()->block()->size());
        EXPECT_EQ(58u, each.absoluteOffset());
        EXPECT_EQ(counting(8), bytesOf(own));

        // Someone else's slice in between: the adapter's next bytes still come after it.
        Chain mixed;
        ChainDataSinkAdapter shared(factory, mixed, 0, 100);
        shared.write(bytes.data(), 2);
        BlockHolder foreign = factory.make({0xF0, 0xF1});
        mixed.push_back(Templates::auto_ptr<Slice>(new Slice(foreign.block(), 0, 2)));
        shared.write(bytes.data() + 2, 2);
        EXPECT_EQ(3u, mixed.slice_count());
        EXPECT_EQ((std::vector<unsigned char>{0, 1, 0xF0, 0xF1, 2, 3}), bytesOf(mixed));
    }
    EXPECT_EQ(0, factory.live);
}

TEST(ChainSinkDataAdapterTest, WritesEverySliceInOrderAndLeavesTheChain)
{
    Chain chain;
    ChainDataSinkAdapter in(chain, 0, 16);
    std::vector<unsigned char> bytes = counting(40);
    in.write(bytes.data(), 10);
    in.write(bytes.data() + 10, 10);
    in.write(bytes.data() + 20, 20);
    ASSERT_EQ(3u, chain.slice_count());

    Memory::MemoryDataSink sink;
    ChainSinkDataAdapter out(sink);
    out.write(chain);
    ASSERT_EQ(40u, sink.serializedSize());
    EXPECT_EQ(bytes, std::vector<unsigned char>(sink.rawBuffer(), sink.rawBuffer() + 40));
    EXPECT_EQ(40u, chain.data_size());
    EXPECT_EQ(3u, chain.slice_count());
}
