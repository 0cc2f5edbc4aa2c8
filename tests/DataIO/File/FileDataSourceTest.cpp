#include "DataIO/File/FileDataSource.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DataIO/File/ScratchDirectory.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using namespace Vellum;
using DataIO::File::FileDataSource;
using TestSupport::patternBytes;
using TestSupport::ScratchDirectory;

namespace
{
uint64 const ALL = ~uint64(0);
}

TEST(FileDataSourceTest, ReadsTheWholeFileInEveryBufferingMode)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    std::vector<unsigned char> bytes = patternBytes(1000);
    dir.put("data.bin", bytes);

    for (int bufferSize : {0, 1, 64, 4096, -1})
    {
        SCOPED_TRACE(bufferSize);
        FileDataSource source(dir.widePath("data.bin").c_str(), bufferSize);
        EXPECT_EQ(0u, source.absoluteOffset());
        EXPECT_EQ(1000u, source.remaining());
        EXPECT_FALSE(source.endOfStream());

        std::vector<unsigned char> got(1000 + 16, 0xEE);
        EXPECT_EQ(300u, source.read(got.data(), 300));
        EXPECT_EQ(300u, source.absoluteOffset());
        EXPECT_EQ(700u, source.remaining());
        // A short count at the end is not an error.
        EXPECT_EQ(700u, source.read(got.data() + 300, 716));
        EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), got.begin()));
        EXPECT_EQ(0xEE, got[1000]);
        EXPECT_TRUE(source.endOfStream());
        EXPECT_EQ(0u, source.remaining());
        EXPECT_EQ(0u, source.read(got.data(), 10));
        EXPECT_EQ(1000u, source.absoluteOffset());
    }
}

TEST(FileDataSourceTest, SeekSkipAndDiscardStopAtTheEnd)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    std::vector<unsigned char> bytes = patternBytes(500);
    dir.put("data.bin", bytes);
    FileDataSource source(dir.widePath("data.bin").c_str(), 64);
    unsigned char b = 0;

    EXPECT_EQ(123u, source.seek(123));
    ASSERT_EQ(1u, source.read(&b, 1));
    EXPECT_EQ(bytes[123], b);

    // Backwards after a read.
    EXPECT_EQ(7u, source.seek(7));
    ASSERT_EQ(1u, source.read(&b, 1));
    EXPECT_EQ(bytes[7], b);

    // Past the end: lands at the end and says so.
    EXPECT_EQ(500u, source.seek(501));
    EXPECT_TRUE(source.endOfStream());
    EXPECT_EQ(500u, source.seek(ALL));
    EXPECT_EQ(0u, source.read(&b, 1));

    EXPECT_EQ(100u, source.seek(100));
    EXPECT_EQ(50u, source.skip(50));
    EXPECT_EQ(150u, source.absoluteOffset());
    ASSERT_EQ(1u, source.read(&b, 1));
    EXPECT_EQ(bytes[150], b);
    EXPECT_EQ(0u, source.skip(0));
    // Skipping too far gives what was actually skipped; the largest count does not wrap around.
    EXPECT_EQ(349u, source.skip(1000));
    EXPECT_TRUE(source.endOfStream());
    EXPECT_EQ(0u, source.skip(1));
    source.seek(10);
    EXPECT_EQ(490u, source.skip(ALL));
    EXPECT_EQ(500u, source.absoluteOffset());

    source.seek(42);
    source.discard();
    EXPECT_EQ(500u, source.absoluteOffset());
    EXPECT_EQ(0u, source.remaining());
    EXPECT_TRUE(source.endOfStream());
}

TEST(FileDataSourceTest, EmptyFileAndWidePath)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    dir.put("empty.bin", {});
    FileDataSource empty(dir.widePath("empty.bin").c_str(), -1);
    unsigned char b = 0;
    EXPECT_TRUE(empty.endOfStream());
    EXPECT_EQ(0u, empty.read(&b, 1));
    EXPECT_EQ(0u, empty.seek(10));
    EXPECT_EQ(0u, empty.skip(10));

    // Paths are interface text: non-ASCII names reach the system intact.
    std::string name = "\xC3\xA9t\xC3\xA9-\xE2\x82\xAC.mxf";
    dir.put(name, {1, 2, 3});
    FileDataSource wide(dir.widePath(name).c_str(), 0);
    EXPECT_EQ(3u, wide.remaining());
    unsigned char got[3] = {};
    EXPECT_EQ(3u, wide.read(got, 3));
    EXPECT_EQ(3, got[2]);
}

TEST(FileDataSourceTest, FailuresCarryTheSystemText)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    Templates::wstring missing = dir.widePath("missing.mxf");
    try
    {
        FileDataSource source(missing.c_str(), -1);
        FAIL() << "opened a missing file";
    }
    catch (Exceptions::IOError const & e)
    {
        EXPECT_EQ("file_ != 0: Error opening: '" + dir.path("missing.mxf") + "'. No such file or directory",
                  std::string(Utils::narrow(e.message()).c_str()));
        EXPECT_EQ(26, e.errorCode());
        EXPECT_NE(std::string::npos, e.whatUtf8().find("DataIO/File/FileImpl.cpp:")) << e.whatUtf8();
    }

    // A directory opens for reading on this system but cannot be read: a plain failure.
    FileDataSource directory(Utils::wide(dir.path("").c_str()).c_str(), -1);
    if (directory.remaining() > 0)
    {
        std::vector<unsigned char> got(size_t(directory.remaining()));
        try
        {
            directory.read(got.data(), got.size());
            FAIL() << "read a directory";
        }
        catch (Exceptions::IOError const & e)
        {
            EXPECT_EQ("Error reading from file. Is a directory", std::string(Utils::narrow(e.message()).c_str()));
        }
        EXPECT_EQ(0u, directory.absoluteOffset());
    }
}
