#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "DataIO/Memory/MemoryBlock.h"
#include "DataIO/Memory/MemoryDataSink.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "Support/Mxf.h"
#include "Utils/Text.h"

using namespace Vellum;
using DataIO::Memory::MemoryDataSink;
using DataIO::Memory::MemoryDataSource;

TEST(MemoryDataSourceTest, OwnsItsCopyOfTheBytes)
{
    std::unique_ptr<unsigned char[]> original(new unsigned char[6]{1, 2, 3, 4, 5, 6});
    MemoryDataSource source(original.get(), 6);
    std::memset(original.get(), 0xFF, 6);
    original.reset();

    unsigned char got[6] = {};
    EXPECT_EQ(2u, source.read(got, 2));
    EXPECT_EQ(1, got[0]);
    EXPECT_EQ(2, got[1]);

    // A copy of the source is independent of it, position included.
    MemoryDataSource copy(source);
    EXPECT_EQ(2u, copy.absoluteOffset());
    EXPECT_EQ(4u, copy.read(got, 10));
    EXPECT_EQ(6, got[3]);
    EXPECT_TRUE(copy.endOfStream());
    EXPECT_EQ(2u, source.absoluteOffset());
    EXPECT_EQ(1u, source.read(got, 1));
    EXPECT_EQ(3, got[0]);

    MemoryDataSource empty(nullptr, 0);
    EXPECT_TRUE(empty.endOfStream());
    EXPECT_EQ(0u, empty.read(got, 1));
    EXPECT_EQ(0u, empty.read(nullptr, 0));
}

TEST(MemoryDataSinkTest, RefusesToPassFourGibibytes)
{
    try
    {
        MemoryDataSink sink(0x100000000ull);
        FAIL() << "reserved more than 4 GiB";
    }
    catch (Exceptions::IOError const & e)
    {
        EXPECT_EQ("Type size exceeded", std::string(Utils::narrow(e.message()).c_str()));
        EXPECT_EQ(26, e.errorCode());
    }

    MemoryDataSink sink;
    unsigned char a[4] = {9, 8, 7, 6};
    sink.write(a, 4);
    // The size is checked before a byte is touched: the pointer needs no more than 4 bytes behind it.
    EXPECT_THROW(sink.write(a, 0xFFFFFFFFull - 3), Exceptions::IOError);
    EXPECT_THROW(sink.write(a, ~uint64(0)), Exceptions::IOError);
    EXPECT_EQ(VellumTest::messageOf<Exceptions::IOError>([&] { sink.write(a, 0x100000000ull); }), "Type size exceeded");
    // Nothing changed.
    EXPECT_EQ(4u, sink.serializedSize());
    EXPECT_EQ(6, sink.rawBuffer()[3]);
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
        new DataIO::Memory::BaseMemoryBlock_T<ExhaustedConfig>(&DataIO::Memory::MemoryBlockFactory::instance(), 64);
        FAIL() << "no exception";
    }
    catch (Exceptions::BadAlloc const & e)
    {
        EXPECT_EQ(2, e.errorCode());
        EXPECT_EQ("data_ != 0: Error allocating memory for a BaseMemoryBlock_T", Utils::narrow(e.message()));
    }
}
