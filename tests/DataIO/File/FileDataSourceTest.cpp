#include "DataIO/File/FileDataSource.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "DataIO/BufferAlignDataSource.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Support/Mxf.h"
#include "Support/ScratchDirectory.h"

using namespace Vellum;
using DataIO::File::FileDataSource;
using TestSupport::patternBytes;
using TestSupport::ScratchDirectory;
using VellumTest::messageOf;

namespace
{
uint64 const EVERYTHING = ~uint64(0);

// Every random access source keeps the same contract: short reads at the end, seeks and skips
// that stop there, and a discard that goes to the end.
void expectRandomAccessContract(DataIO::RandomAccessDataSource & source, std::vector<unsigned char> const & bytes)
{
    uint64 const size = bytes.size();
    std::vector<unsigned char> got(bytes.size() + 16, 0xEE);
    unsigned char b = 0;
    EXPECT_EQ(size, source.remaining());
    EXPECT_EQ(300u, source.read(got.data(), 300));
    EXPECT_EQ(300u, source.absoluteOffset());
    // A short count at the end is not an error, and writes nothing behind what it read.
    EXPECT_EQ(size - 300, source.read(got.data() + 300, size - 300 + 16));
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), got.begin()));
    EXPECT_EQ(0xEE, got[bytes.size()]);
    EXPECT_TRUE(source.endOfStream());
    EXPECT_EQ(0u, source.read(got.data(), 10));
    // Backwards after a read, and past the end.
    EXPECT_EQ(7u, source.seek(7));
    ASSERT_EQ(1u, source.read(&b, 1));
    EXPECT_EQ(bytes[7], b);
    EXPECT_EQ(size, source.seek(size + 1));
    EXPECT_EQ(size, source.seek(EVERYTHING));
    EXPECT_EQ(0u, source.remaining());
    EXPECT_EQ(100u, source.seek(100));
    EXPECT_EQ(50u, source.skip(50));
    ASSERT_EQ(1u, source.read(&b, 1));
    EXPECT_EQ(bytes[150], b);
    EXPECT_EQ(0u, source.skip(0));
    // Skipping too far gives what was skipped; the largest count does not wrap around.
    EXPECT_EQ(size - 151, source.skip(EVERYTHING));
    EXPECT_EQ(0u, source.skip(1));
    source.seek(42);
    source.discard();
    EXPECT_EQ(size, source.absoluteOffset());
    EXPECT_TRUE(source.endOfStream());
}
} // namespace

TEST(RandomAccessSourceTest, EverySourceKeepsTheContract)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    std::vector<unsigned char> bytes = patternBytes(1000);
    dir.put("data.bin", bytes);
    struct Case
    {
        char const * name;
        std::function<void()> run;
    };
    auto overFile = [&](int buffer) {
        FileDataSource source(dir.widePath("data.bin").c_str(), buffer);
        expectRandomAccessContract(source, bytes);
    };
    Case const cases[] = {
        {"memory", [&] { DataIO::Memory::MemoryDataSource m(bytes.data(), bytes.size()); expectRandomAccessContract(m, bytes); }},
        {"file unbuffered", [&] { overFile(0); }},
        {"file buffer 1", [&] { overFile(1); }},
        {"file buffer 64", [&] { overFile(64); }},
        {"file buffer 4096", [&] { overFile(4096); }},
        {"file default buffer", [&] { overFile(-1); }},
        {"aligned over a file", [&] {
             FileDataSource file(dir.widePath("data.bin").c_str(), 0);
             DataIO::BufferAlignDataSource aligned(file, 512, 4096);
             expectRandomAccessContract(aligned, bytes);
         }},
    };
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.name);
        c.run();
    }
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
        EXPECT_EQ(messageOf<Exceptions::IOError>([&] { directory.read(got.data(), got.size()); }),
                  "Error reading from file. Is a directory");
        EXPECT_EQ(0u, directory.absoluteOffset());
    }
}
