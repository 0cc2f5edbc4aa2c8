#include <gtest/gtest.h>

#include "DataIO/ChainDataSinkAdapter.h"
#include "DataIO/ChainSinkDataAdapter.h"
#include "DataIO/Memory/MemoryDataSink.h"
#include "DataIO/SliceTestHelpers.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::counting;

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
