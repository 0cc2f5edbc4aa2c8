#include "DataIO/Memory/MemoryDataSource.h"
#include "DataIO/Memory/MemoryDataSink.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "Exceptions/Exceptions.h"
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

TEST(MemoryDataSourceTest, SeekSkipAndReadClampAtTheEnd)
{
    unsigned char bytes[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    MemoryDataSource source(bytes, 10);
    unsigned char got[16] = {};

    EXPECT_EQ(10u, source.remaining());
    EXPECT_EQ(7u, source.seek(7));
    EXPECT_EQ(3u, source.remaining());
    EXPECT_EQ(3u, source.read(got, 16));
    EXPECT_EQ(9, got[2]);
    EXPECT_TRUE(source.endOfStream());

    EXPECT_EQ(10u, source.seek(11));
    EXPECT_EQ(10u, source.seek(~uint64(0)));
    EXPECT_EQ(0u, source.remaining());
    EXPECT_EQ(2u, source.seek(2));
    EXPECT_FALSE(source.endOfStream());

    EXPECT_EQ(5u, source.skip(5));
    EXPECT_EQ(7u, source.absoluteOffset());
    EXPECT_EQ(3u, source.skip(~uint64(0)));
    EXPECT_EQ(10u, source.absoluteOffset());
    EXPECT_EQ(0u, source.skip(1));

    source.seek(4);
    source.discard();
    EXPECT_EQ(10u, source.absoluteOffset());
    EXPECT_TRUE(source.endOfStream());
}

TEST(MemoryDataSinkTest, CollectsWhatIsWritten)
{
    MemoryDataSink sink;
    EXPECT_EQ(nullptr, sink.rawBuffer());
    EXPECT_EQ(0u, sink.serializedSize());
    EXPECT_EQ(0u, sink.absoluteOffset());
    sink.write(nullptr, 0);
    EXPECT_EQ(nullptr, sink.rawBuffer());

    unsigned char a[3] = {1, 2, 3};
    unsigned char b[2] = {4, 5};
    sink.write(a, 3);
    sink.write(b, 2);
    EXPECT_EQ(5u, sink.absoluteOffset());
    EXPECT_EQ(5u, sink.serializedSize());
    ASSERT_NE(nullptr, sink.rawBuffer());
    EXPECT_EQ(0, std::memcmp(sink.rawBuffer(), "\x01\x02\x03\x04\x05", 5));

    // A reservation is no content.
    MemoryDataSink reserved(100);
    EXPECT_EQ(nullptr, reserved.rawBuffer());
    EXPECT_EQ(0u, reserved.serializedSize());

    // A copy holds its own bytes.
    MemoryDataSink copy(sink);
    sink.write(a, 1);
    EXPECT_EQ(5u, copy.serializedSize());
    EXPECT_NE(copy.rawBuffer(), sink.rawBuffer());
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
    try
    {
        sink.write(a, 0x100000000ull);
        FAIL() << "grew past 4 GiB";
    }
    catch (Exceptions::IOError const & e)
    {
        EXPECT_EQ("Type size exceeded", std::string(Utils::narrow(e.message()).c_str()));
    }
    // Nothing changed.
    EXPECT_EQ(4u, sink.serializedSize());
    EXPECT_EQ(6, sink.rawBuffer()[3]);
}
