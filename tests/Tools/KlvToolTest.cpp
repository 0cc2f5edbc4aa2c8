// Runs `vellum klv` on real files and compares what it lists with a plain walk written here,
// which shares no code with the library.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "Support/Fixtures.h"

namespace
{
struct Listed
{
    unsigned long long offset;
    std::string key;
    unsigned long long length;
    std::string kind;
};

struct ToolRun
{
    int status;
    std::string out;
};

ToolRun runTool(std::string const & arguments)
{
    std::string command = std::string(VELLUM_TOOL_PATH) + " " + arguments + " 2>&1";
    ToolRun run{0, std::string()};
    FILE * pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return ToolRun{-1, std::string()};
    std::array<char, 65536> buffer;
    size_t got;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), pipe)) != 0)
        run.out.append(buffer.data(), got);
    int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::vector<Listed> parseListing(std::string const & out)
{
    std::vector<Listed> packets;
    std::istringstream lines(out);
    std::string line;
    while (std::getline(lines, line))
    {
        std::istringstream fields(line);
        Listed p;
        std::string ber, berSize, lengthWord;
        if (!(fields >> p.offset >> p.key >> ber >> berSize >> lengthWord >> p.length))
            continue;
        std::getline(fields, p.kind);
        p.kind.erase(0, p.kind.find_first_not_of(' '));
        packets.push_back(p);
    }
    return packets;
}

std::string hexKey(unsigned char const * b)
{
    char text[48];
    std::string key;
    for (int i = 0; i < 16; ++i)
    {
        std::snprintf(text, sizeof text, i == 0 ? "%02x" : ".%02x", b[i]);
        key += text;
    }
    return key;
}

// The straightforward walk: the first key behind any run-in, then BER lengths to the end.
std::vector<Listed> plainWalk(std::vector<unsigned char> const & bytes, unsigned long long & runIn)
{
    std::vector<Listed> packets;
    size_t at = 0;
    while (at + 4 <= bytes.size() && !(bytes[at] == 0x06 && bytes[at + 1] == 0x0e && bytes[at + 2] == 0x2b &&
                                       bytes[at + 3] == 0x34))
        ++at;
    runIn = at;
    while (at + 17 <= bytes.size())
    {
        Listed p;
        p.offset = at;
        p.key = hexKey(&bytes[at]);
        size_t lengthAt = at + 16;
        unsigned long long length = bytes[lengthAt];
        size_t berSize = 1;
        if (length & 0x80)
        {
            berSize = 1 + (length & 0x7f);
            length = 0;
            for (size_t i = 1; i < berSize; ++i)
                length = (length << 8) | bytes.at(lengthAt + i);
        }
        p.length = length;
        packets.push_back(p);
        at = lengthAt + berSize + length;
    }
    return packets;
}

void compareWithPlainWalk(std::string const & path)
{
    SCOPED_TRACE(path);
    std::vector<unsigned char> bytes = VellumTest::readFile(path);
    ASSERT_FALSE(bytes.empty());
    unsigned long long runIn = 0;
    std::vector<Listed> expected = plainWalk(bytes, runIn);
    ToolRun run = runTool("klv '" + path + "'");
    ASSERT_EQ(0, run.status) << run.out.substr(0, 2000);
    std::vector<Listed> listed = parseListing(run.out);
    ASSERT_EQ(expected.size(), listed.size());
    size_t partitions = 0;
    for (size_t i = 0; i < expected.size(); ++i)
    {
        ASSERT_EQ(expected[i].offset, listed[i].offset) << "packet " << i;
        ASSERT_EQ(expected[i].key, listed[i].key) << "packet " << i;
        ASSERT_EQ(expected[i].length, listed[i].length) << "packet " << i;
        if (listed[i].kind.compare(0, 14, "partition pack") == 0)
            ++partitions;
    }
    // Every MXF file opens with a header partition pack and holds a primer.
    EXPECT_EQ(0u, listed.front().kind.find("partition pack (header"));
    EXPECT_GE(partitions, 1u);
    EXPECT_NE(std::string::npos, run.out.find(" primer\n"));
    if (runIn != 0)
    {
        EXPECT_NE(std::string::npos, run.out.find("run-in: " + std::to_string(runIn) + " bytes"));
    }
}
} // namespace

TEST(KlvTool, ListsEverySamplePacketLikeAPlainWalk)
{
    VELLUM_REQUIRE_SHARED();
    std::vector<std::string> samples = VellumTest::sampleFiles();
    ASSERT_EQ(3u, samples.size());
    for (std::string const & path : samples)
        compareWithPlainWalk(path);
}

TEST(KlvTool, ListsEveryPacketOfFfmpegFiles)
{
    std::string op1a = VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf");
    if (op1a.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    compareWithPlainWalk(op1a);
    ToolRun run = runTool("klv '" + op1a + "'");
    // The OP1a file carries picture and sound elements, an index and a closed footer.
    EXPECT_NE(std::string::npos, run.out.find("essence element"));
    EXPECT_NE(std::string::npos, run.out.find("index segment"));
    EXPECT_NE(std::string::npos, run.out.find("partition pack (footer, closed complete)"));
    EXPECT_NE(std::string::npos, run.out.find("random index pack"));
    for (char const * name : {"opatom-dnxhd.mxf", "opatom-pcm.mxf", "d10.mxf"})
    {
        std::string path = VellumTest::ffmpegFixture(name);
        ASSERT_FALSE(path.empty()) << name;
        compareWithPlainWalk(path);
    }
}

TEST(KlvTool, LimitRunInAndDamage)
{
    std::string source = std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf";
    std::vector<unsigned char> bytes = VellumTest::readFile(source);
    ASSERT_GT(bytes.size(), 1000u);

    ToolRun limited = runTool("klv --limit 3 '" + source + "'");
    EXPECT_EQ(0, limited.status);
    EXPECT_EQ(3u, parseListing(limited.out).size());

    // A run-in of 100 bytes is reported and every offset moves with it.
    std::string withRunIn = VellumTest::temporaryPath(".mxf");
    {
        std::ofstream out(withRunIn, std::ios::binary);
        std::string runIn(100, '\x55');
        out.write(runIn.data(), runIn.size());
        out.write(reinterpret_cast<char const *>(bytes.data()), bytes.size());
    }
    ToolRun shifted = runTool("klv '" + withRunIn + "'");
    EXPECT_EQ(0, shifted.status) << shifted.out;
    EXPECT_EQ(0u, shifted.out.find("run-in: 100 bytes\n"));
    std::vector<Listed> shiftedList = parseListing(shifted.out);
    ASSERT_FALSE(shiftedList.empty());
    EXPECT_EQ(100u, shiftedList.front().offset);

    // Cut in the middle of the file: what could be read is listed, then the failure, exit 1.
    std::string cut = VellumTest::temporaryPath(".mxf");
    {
        std::ofstream out(cut, std::ios::binary);
        out.write(reinterpret_cast<char const *>(bytes.data()), bytes.size() / 2);
    }
    ToolRun damaged = runTool("klv '" + cut + "'");
    EXPECT_EQ(1, damaged.status);
    EXPECT_FALSE(parseListing(damaged.out).empty());
    EXPECT_NE(std::string::npos, damaged.out.find("vellum klv: "));

    // Garbage between two packets stops the walk with the reader's own complaint.
    std::string garbage = VellumTest::temporaryPath(".mxf");
    {
        unsigned long long runIn = 0;
        std::vector<Listed> packets = plainWalk(bytes, runIn);
        ASSERT_GT(packets.size(), 3u);
        std::ofstream out(garbage, std::ios::binary);
        out.write(reinterpret_cast<char const *>(bytes.data()), packets[2].offset);
        out.write("\x01\x02\x03", 3);
        out.write(reinterpret_cast<char const *>(bytes.data()) + packets[2].offset, bytes.size() - packets[2].offset);
    }
    ToolRun skipped = runTool("klv '" + garbage + "'");
    EXPECT_EQ(1, skipped.status);
    EXPECT_EQ(2u, parseListing(skipped.out).size());
    EXPECT_NE(std::string::npos, skipped.out.find("Exceeded maximum bytes to skip before finding a key."));

    ToolRun missing = runTool("klv /nonexistent/file.mxf");
    EXPECT_EQ(1, missing.status);
    EXPECT_NE(std::string::npos, missing.out.find("Error opening: '/nonexistent/file.mxf'"));

    std::remove(withRunIn.c_str());
    std::remove(cut.c_str());
    std::remove(garbage.c_str());
}

TEST(KlvTool, DecodesPartitionPacksPrimerAndRip)
{
    std::string source = std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf";
    ToolRun run = runTool("klv --primer '" + source + "'");
    ASSERT_EQ(0, run.status) << run.out;
    std::vector<unsigned char> bytes = VellumTest::readFile(source);
    unsigned long long runIn = 0;
    std::vector<Listed> packets = plainWalk(bytes, runIn);

    // Every partition pack's own offset and the footer offset are printed as the file holds them.
    unsigned long long footer = 0;
    std::vector<unsigned long long> partitionOffsets;
    for (Listed const & p : packets)
        if (p.key.compare(0, 38, "06.0e.2b.34.02.05.01.01.0d.01.02.01.01") == 0 && p.key[40] >= '2' &&
            p.key[40] <= '4' && p.key[39] == '0')
        {
            partitionOffsets.push_back(p.offset);
            if (p.key[40] == '4')
                footer = p.offset;
        }
    ASSERT_EQ(3u, partitionOffsets.size());
    for (unsigned long long offset : partitionOffsets)
    {
        EXPECT_NE(std::string::npos, run.out.find("this " + std::to_string(offset) + "  previous"));
        EXPECT_NE(std::string::npos, run.out.find("partition at " + std::to_string(offset) + "  body SID"));
    }
    EXPECT_NE(std::string::npos, run.out.find("footer " + std::to_string(footer) + "\n"));
    EXPECT_NE(std::string::npos, run.out.find("operational pattern 06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00"));

    // The Primer's table has as many lines as it has entries, one of them the instance UID.
    size_t at = run.out.find("entries ");
    ASSERT_NE(std::string::npos, at);
    unsigned entries = std::stoul(run.out.substr(at + 8));
    size_t tagLines = 0;
    for (size_t p = run.out.find("            tag "); p != std::string::npos; p = run.out.find("            tag ", p + 1))
        ++tagLines;
    EXPECT_EQ(entries, tagLines);
    EXPECT_NE(std::string::npos, run.out.find("tag 3c.0a  label 06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00"));

    // A partition pack with a bad status byte: the walk stops with the pack's own complaint, after
    // listing the packets before it and the damaged one.
    std::vector<unsigned char> damaged = bytes;
    damaged[partitionOffsets[1] + 14] = 0x00;
    std::string path = VellumTest::temporaryPath(".mxf");
    {
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<char const *>(damaged.data()), damaged.size());
    }
    ToolRun bad = runTool("klv '" + path + "'");
    EXPECT_EQ(1, bad.status);
    EXPECT_NE(std::string::npos, bad.out.find("vellum klv: Exception 'Vellum::Exceptions::InvalidPartitionStatus'"));
    EXPECT_NE(std::string::npos, bad.out.find("The key defines an invalid partition status"));
    std::vector<Listed> listed = parseListing(bad.out);
    ASSERT_FALSE(listed.empty());
    EXPECT_EQ(partitionOffsets[1], listed.back().offset);
    std::remove(path.c_str());
}
