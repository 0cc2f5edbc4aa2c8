#include "DataIO/File/FileDataSink.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

#include "DataIO/File/FileDataSource.h"
#include "Support/ScratchDirectory.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using namespace Vellum;
using DataIO::File::FileDataSink;
using TestSupport::patternBytes;
using TestSupport::ScratchDirectory;

TEST(FileDataSinkTest, WritesCreatesAndTruncates)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    std::vector<unsigned char> bytes = patternBytes(3000);
    dir.put("out.bin", patternBytes(5000, 3));

    for (int bufferSize : {0, 16, 1024, -1})
    {
        SCOPED_TRACE(bufferSize);
        {
            // Without append an existing file starts empty.
            FileDataSink sink(dir.widePath("out.bin").c_str(), false, bufferSize);
            EXPECT_EQ(0u, sink.absoluteOffset());
            sink.write(bytes.data(), 1000);
            sink.write(bytes.data(), 0);
            sink.write(bytes.data() + 1000, 2000);
            EXPECT_EQ(3000u, sink.absoluteOffset());
            sink.flush();
            // Flushed bytes are visible to other readers while the sink is open.
            EXPECT_EQ(bytes, dir.get("out.bin"));
        }
        EXPECT_EQ(bytes, dir.get("out.bin"));
    }

    {
        FileDataSink fresh(dir.widePath("new.bin").c_str(), false, -1);
        fresh.write(bytes.data(), 5);
    }
    EXPECT_EQ(std::vector<unsigned char>(bytes.begin(), bytes.begin() + 5), dir.get("new.bin"));
}

TEST(FileDataSinkTest, AppendStartsAtTheEnd)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    std::vector<unsigned char> head = patternBytes(700, 1);
    std::vector<unsigned char> tail = patternBytes(300, 2);
    dir.put("log.bin", head);
    {
        FileDataSink sink(dir.widePath("log.bin").c_str(), true, 64);
        EXPECT_EQ(700u, sink.absoluteOffset());
        sink.write(tail.data(), tail.size());
        EXPECT_EQ(1000u, sink.absoluteOffset());
        // Earlier bytes stay reachable for patching.
        EXPECT_EQ(2u, sink.seek(2));
        unsigned char patch[2] = {0xAB, 0xCD};
        sink.write(patch, 2);
    }
    std::vector<unsigned char> expected = head;
    expected.insert(expected.end(), tail.begin(), tail.end());
    expected[2] = 0xAB;
    expected[3] = 0xCD;
    EXPECT_EQ(expected, dir.get("log.bin"));

    // Append opens for update: the file must be there.
    try
    {
        FileDataSink sink(dir.widePath("absent.bin").c_str(), true, -1);
        FAIL() << "appended to a missing file";
    }
    catch (Exceptions::IOError const & e)
    {
        EXPECT_EQ("file_ != 0: Error opening: '" + dir.path("absent.bin") + "'. No such file or directory",
                  std::string(Utils::narrow(e.message()).c_str()));
    }
    EXPECT_FALSE(std::filesystem::exists(dir.path("absent.bin")));
}

TEST(FileDataSinkTest, RewriteAfterSeekingBack)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    std::vector<unsigned char> bytes = patternBytes(10);
    unsigned char patch[2] = {0x11, 0x22};
    {
        FileDataSink sink(dir.widePath("rw.bin").c_str(), false, 4);
        sink.write(bytes.data(), 10);
        // Past the end: lands at the end.
        EXPECT_EQ(10u, sink.seek(11));
        EXPECT_EQ(3u, sink.seek(3));
        sink.write(patch, 2);
        EXPECT_EQ(5u, sink.absoluteOffset());
        // Never stops short of a byte that has been written.
        EXPECT_EQ(10u, sink.seek(10));
        sink.write(bytes.data(), 1);
        EXPECT_EQ(11u, sink.absoluteOffset());
        // The length believed grows on a rewrite too, so the clamp is loose after one.
        EXPECT_EQ(13u, sink.seek(1000));
        EXPECT_EQ(11u, sink.seek(11));
    }
    std::vector<unsigned char> expected = bytes;
    expected[3] = 0x11;
    expected[4] = 0x22;
    expected.push_back(bytes[0]);
    EXPECT_EQ(expected, dir.get("rw.bin"));
}

TEST(FileDataSinkTest, WriteAndSeekFailuresCarryTheSystemText)
{
    if (::access("/dev/full", W_OK) == 0)
    {
        FileDataSink full(Utils::wide("/dev/full").c_str(), false, 0);
        unsigned char bytes[8] = {};
        try
        {
            full.write(bytes, 8);
            FAIL() << "wrote to a full device";
        }
        catch (Exceptions::IOError const & e)
        {
            EXPECT_EQ("writeResult == howMuch: Error writing to file. No space left on device",
                      std::string(Utils::narrow(e.message()).c_str()));
        }
        EXPECT_EQ(0u, full.absoluteOffset());
    }

    // A pipe cannot seek.
    int ends[2];
    ASSERT_EQ(0, ::pipe(ends));
    std::string pipePath = "/proc/self/fd/" + std::to_string(ends[1]);
    if (std::filesystem::exists(pipePath))
    {
        FileDataSink pipe(Utils::wide(pipePath.c_str()).c_str(), false, -1);
        try
        {
            pipe.seek(0);
            FAIL() << "seeked a pipe";
        }
        catch (Exceptions::IOError const & e)
        {
            EXPECT_EQ("Platform::fileSeek (file_, position): Error seeking. Illegal seek", std::string(Utils::narrow(e.message()).c_str()));
            EXPECT_EQ(26, e.errorCode());
        }
    }
    ::close(ends[0]);
    ::close(ends[1]);
}

// A buffer of the size asked holds what is written until it is full or flushed: the runtime's
// default of a few KiB would send each piece to the system on its own.
TEST(FileDataSinkTest, TheBufferOfTheSizeAskedHoldsTheWrites)
{
    ScratchDirectory dir;
    ASSERT_TRUE(dir.ok());
    std::vector<unsigned char> const bytes = patternBytes(60000);
    FileDataSink sink(dir.widePath("held.bin").c_str(), false, 1 << 20);
    for (int i = 0; i < 10; ++i)
        sink.write(bytes.data(), bytes.size());
    EXPECT_EQ(0u, std::filesystem::file_size(dir.path("held.bin")));
    sink.flush();
    EXPECT_EQ(600000u, std::filesystem::file_size(dir.path("held.bin")));
}
