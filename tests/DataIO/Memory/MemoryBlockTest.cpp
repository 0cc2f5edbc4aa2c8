#include <gtest/gtest.h>

#include <cstring>

#include "DataIO/Memory/MemoryBlock.h"
#include "DataIO/Slice.h"
#include "Utils/Text.h"

using namespace Vellum;
using namespace Vellum::DataIO;

TEST(MemoryBlockTest, FactoryMakesCountedBlocksOfTheSameFamily)
{
    Memory::MemoryBlockFactory & factory = Memory::MemoryBlockFactory::instance();
    EXPECT_EQ(&factory, &Memory::MemoryBlockFactory::instance());

    BlockHolder holder = factory.create(100);
    ASSERT_NE(nullptr, holder.block());
    EXPECT_EQ(100u, holder->size());
    std::memset(holder->data(), 0xAB, 100);
    {
        Slice slice(holder.block(), 10, 20);
        BlockHolder copy(holder);
        EXPECT_EQ(0xAB, *slice.begin());
    }
    BlockHolder sibling = holder->create(7);
    EXPECT_EQ(7u, sibling->size());
    EXPECT_NE(nullptr, dynamic_cast<Memory::MemoryBlock *>(sibling.block()));

    // A block of no bytes is still a block.
    BlockHolder nothing = factory.create(0);
    EXPECT_EQ(0u, nothing->size());

    // release() hands the reference over.
    Block * raw = holder.release();
    EXPECT_EQ(nullptr, holder.block());
    BlockHolder again(raw);
    EXPECT_EQ(raw, again.block());
}

namespace
{
// A memory service that has nothing left.
struct ExhaustedConfig
{
    static void * allocate(uint64) { return nullptr; }
    static void deallocate(void *, uint64) {}
};
} // namespace

TEST(MemoryBlockTest, NoMemoryIsBadAlloc)
{
    try
    {
        new Memory::BaseMemoryBlock_T<ExhaustedConfig>(&Memory::MemoryBlockFactory::instance(), 64);
        FAIL() << "no exception";
    }
    catch (Exceptions::BadAlloc const & e)
    {
        EXPECT_EQ(2, e.errorCode());
        EXPECT_EQ("data_ != 0: Error allocating memory for a BaseMemoryBlock_T", Utils::narrow(e.message()));
    }
}
