// `vellum klv --index` and `--entries` on files with index segments.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include "IndexTables/IndexTestSupport.h"
#include "Support/Fixtures.h"

namespace
{
struct ToolOutput
{
    int status;
    std::string out;
};

ToolOutput vellum(std::string const & arguments)
{
    std::string command = std::string(VELLUM_TOOL_PATH) + " " + arguments + " 2>&1";
    ToolOutput run{0, std::string()};
    FILE * pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return ToolOutput{-1, std::string()};
    std::array<char, 65536> buffer;
    std::size_t got;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), pipe)) != 0)
        run.out.append(buffer.data(), got);
    int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::size_t count(std::string const & text, std::string const & what)
{
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++n;
    return n;
}
} // namespace

TEST(KlvIndexTool, PrintsSegmentsAndEntries)
{
    std::string path = VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf");
    if (path.empty())
        GTEST_SKIP() << "ffmpeg is not installed";

    ToolOutput plain = vellum("klv '" + path + "'");
    EXPECT_EQ(0, plain.status);
    EXPECT_EQ(std::string::npos, plain.out.find("delta entries"));

    ToolOutput index = vellum("klv --index '" + path + "'");
    EXPECT_EQ(0, index.status) << index.out;
    EXPECT_NE(std::string::npos, index.out.find("index SID 2  body SID 1  edit rate 25/1  start 0  duration 50\n"));
    EXPECT_NE(std::string::npos, index.out.find("edit unit byte count 0  slice count 1  position table count absent\n"));
    EXPECT_NE(std::string::npos, index.out.find("delta entries 3  index entries 50\n"));
    EXPECT_NE(std::string::npos, index.out.find("delta 1: position table index -1  slice 0  element delta 512\n"));
    EXPECT_EQ(0u, count(index.out, " entry "));

    ToolOutput entries = vellum("klv '" + path + "' --entries");
    EXPECT_EQ(0, entries.status);
    EXPECT_EQ(50u, count(entries.out, "  entry "));
    EXPECT_NE(std::string::npos,
              entries.out.find("entry 0: flags 0xc0 (random access, sequence header)  temporal offset 0  key frame "
                               "offset 0  stream offset 0  slice offsets "));
    EXPECT_NE(std::string::npos, entries.out.find("entry 3: flags 0x33 (forward prediction, backward prediction, "
                                                  "other 0x03)  temporal offset -2  key frame offset -3"));
    EXPECT_NE(std::string::npos, entries.out.find("entry 10: flags 0x40 (sequence header)  temporal offset 1"));
}

TEST(KlvIndexTool, ConstantBitRateSampleAndDamagedSegment)
{
    if (!VellumTest::sharedDir().empty())
    {
        ToolOutput run = vellum("klv --index '" + VellumTest::sharedDir() + "/samples/escape-chars.mxf'");
        EXPECT_EQ(0, run.status);
        EXPECT_NE(std::string::npos, run.out.find("index SID 129  body SID 1  edit rate 48000/1  start 0  duration "
                                                  "66141\n"));
        EXPECT_NE(std::string::npos, run.out.find("edit unit byte count 18  slice count 0  position table count 0\n"));
    }

    // A segment whose BodySID item is 6 bytes long.
    using namespace IndexTest;
    Bytes bad = packet(currentKey(), cat(leadingItems(0, 0), item(0x3F07, {0, 0, 0, 1, 0, 0})));
    std::string path = VellumTest::temporaryPath(".mxf");
    {
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<char const *>(bad.data()), static_cast<std::streamsize>(bad.size()));
    }
    ToolOutput run = vellum("klv --index '" + path + "'");
    std::remove(path.c_str());
    EXPECT_EQ(1, run.status);
    EXPECT_NE(std::string::npos,
              run.out.find("Invalid data size in Local Value. Value still contains data to be read."));
}
