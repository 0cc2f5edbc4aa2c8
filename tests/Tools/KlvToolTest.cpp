// Runs `vellum klv` on real files and compares what it lists with a plain walk written here,
// which shares no code with the library; then its decoding of packs and index segments.

#include <gtest/gtest.h>

#include <sstream>

#include "IndexTables/IndexTestSupport.h"
#include "Support/Fixtures.h"
#include "Tools/ToolSupport.h"

using namespace VellumToolTest;

namespace
{
struct Listed
{
    unsigned long long offset;
    std::string key;
    unsigned long long length;
    std::string kind;
};

std::vector<Listed> parseListing(std::string const & out)
{
    std::vector<Listed> packets;
    std::istringstream lines(out);
    std::string line, ber, berSize, lengthWord;
    while (std::getline(lines, line))
    {
        std::istringstream fields(line);
        Listed p;
        if (!(fields >> p.offset >> p.key >> ber >> berSize >> lengthWord >> p.length))
            continue;
        std::getline(fields, p.kind);
        p.kind.erase(0, p.kind.find_first_not_of(' '));
        packets.push_back(p);
    }
    return packets;
}

// The straightforward walk: the first key behind any run-in, then BER lengths to the end.
std::vector<Listed> plainWalk(std::vector<unsigned char> const & bytes, size_t & runIn)
{
    std::vector<Listed> packets;
    size_t at = 0;
    while (at + 4 <= bytes.size() && !(bytes[at] == 0x06 && bytes[at + 1] == 0x0e && bytes[at + 2] == 0x2b))
        ++at;
    runIn = at;
    while (at + 17 <= bytes.size())
    {
        Listed p{at, "", bytes[at + 16], ""};
        for (int i = 0; i < 16; ++i)
            p.key += (i ? "." : "") + std::string(1, "0123456789abcdef"[bytes[at + i] >> 4]) +
                     "0123456789abcdef"[bytes[at + i] & 15];
        size_t berSize = 1;
        if (p.length & 0x80)
        {
            berSize = 1 + (p.length & 0x7f);
            p.length = 0;
            for (size_t i = 1; i < berSize; ++i)
                p.length = (p.length << 8) | bytes.at(at + 16 + i);
        }
        packets.push_back(p);
        at += 16 + berSize + p.length;
    }
    return packets;
}

void compareWithPlainWalk(std::string const & path)
{
    SCOPED_TRACE(path);
    std::vector<unsigned char> bytes = VellumTest::readFile(path);
    size_t runIn = 0;
    std::vector<Listed> expected = plainWalk(bytes, runIn);
    CommandRun run = runVellum("klv " + shellQuoted(path));
    ASSERT_EQ(0, run.status) << run.out.substr(0, 2000);
    std::vector<Listed> listed = parseListing(run.out);
    ASSERT_EQ(expected.size(), listed.size());
    for (size_t i = 0; i < expected.size(); ++i)
    {
        ASSERT_EQ(expected[i].offset, listed[i].offset) << "packet " << i;
        ASSERT_EQ(expected[i].key, listed[i].key) << "packet " << i;
        ASSERT_EQ(expected[i].length, listed[i].length) << "packet " << i;
    }
    EXPECT_EQ(0u, listed.front().kind.find("partition pack (header"));
    EXPECT_TRUE(has(run.out, " primer\n"));
    EXPECT_EQ(runIn != 0, has(run.out, "run-in: " + std::to_string(runIn) + " bytes\n"));
}

std::string writeTemporary(std::vector<unsigned char> const & bytes)
{
    std::string path = VellumTest::temporaryPath(".mxf");
    writeBytes(path, bytes);
    return path;
}
} // namespace

TEST(KlvTool, ListsEveryPacketLikeAPlainWalk)
{
    std::vector<std::string> files = VellumTest::sampleAndFixtureFiles();
    files.push_back(smallExample());
    for (std::string const & path : files)
        compareWithPlainWalk(path);
    // A run-in of 100 bytes is reported and every offset moves with it.
    std::vector<unsigned char> bytes = VellumTest::readFile(smallExample());
    bytes.insert(bytes.begin(), 100, 0x55);
    std::string const path = writeTemporary(bytes);
    compareWithPlainWalk(path);
    EXPECT_EQ(3u, parseListing(runVellum("klv --limit 3 " + path).out).size());
    std::remove(path.c_str());
}

TEST(KlvTool, ListsWhatItCanReadOfDamagedFiles)
{
    std::vector<unsigned char> const bytes = VellumTest::readFile(smallExample());
    size_t runIn = 0;
    std::vector<Listed> const packets = plainWalk(bytes, runIn);
    std::vector<unsigned char> garbage(bytes.begin(), bytes.begin() + long(packets[2].offset));
    garbage.insert(garbage.end(), {1, 2, 3});
    garbage.insert(garbage.end(), bytes.begin() + long(packets[2].offset), bytes.end());
    std::vector<unsigned char> badStatus = bytes;
    badStatus[6144 + 14] = 0;
    struct Case
    {
        std::vector<unsigned char> bytes;
        size_t listed;
        std::string reason;
    };
    std::vector<Case> const cases = {
        {std::vector<unsigned char>(bytes.begin(), bytes.begin() + 20000), 54,
         "the value of the essence element at offset 19456 (length 3840) runs past the end of the file (20000 bytes)"},
        {garbage, 2, "Exceeded maximum bytes to skip before finding a key."},
        {badStatus, 33, "The key defines an invalid partition status"}};
    for (Case const & c : cases)
    {
        std::string const path = writeTemporary(c.bytes);
        CommandRun run = runVellum("klv " + path);
        EXPECT_EQ(1, run.status);
        EXPECT_EQ(c.listed, parseListing(run.out).size()) << run.out;
        EXPECT_TRUE(has(run.out, "vellum: " + path + ": ")) << run.out;
        EXPECT_TRUE(has(run.out, c.reason)) << run.out;
        std::remove(path.c_str());
    }
}

TEST(KlvTool, DecodesPartitionPacksPrimerAndRip)
{
    CommandRun run = runVellum("klv --primer " + smallExample());
    ASSERT_EQ(0, run.status) << run.out;
    for (unsigned long long offset : {0, 6144, 33792})
    {
        EXPECT_TRUE(has(run.out, "this " + std::to_string(offset) + "  previous"));
        EXPECT_TRUE(has(run.out, "partition at " + std::to_string(offset) + "  body SID"));
    }
    EXPECT_TRUE(has(run.out, "footer 33792\n"));
    EXPECT_TRUE(has(run.out, "operational pattern 06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00"));
    // The Primer's table has as many lines as it has entries, one of them the instance UID.
    size_t at = run.out.find("entries ");
    ASSERT_NE(std::string::npos, at);
    EXPECT_EQ(std::stoul(run.out.substr(at + 8)), occurrences(run.out, "            tag "));
    EXPECT_TRUE(has(run.out, "tag 3c.0a  label 06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00"));
}

TEST(KlvTool, DecodesIndexSegmentsAndEntries)
{
    if (!VellumTest::sharedDir().empty())
    {
        CommandRun run = runVellum("klv --index " + VellumTest::sharedDir() + "/samples/escape-chars.mxf");
        EXPECT_TRUE(has(run.out, "index SID 129  body SID 1  edit rate 48000/1  start 0  duration 66141\n"));
        EXPECT_TRUE(has(run.out, "edit unit byte count 18  slice count 0  position table count 0\n"));
    }
    std::string path = VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf");
    if (path.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    EXPECT_FALSE(has(runVellum("klv " + path).out, "delta entries"));
    CommandRun index = runVellum("klv --index " + path);
    EXPECT_EQ(0, index.status) << index.out;
    EXPECT_TRUE(has(index.out, "index SID 2  body SID 1  edit rate 25/1  start 0  duration 50\n"));
    EXPECT_TRUE(has(index.out, "edit unit byte count 0  slice count 1  position table count absent\n"));
    EXPECT_TRUE(has(index.out, "delta entries 3  index entries 50\n"));
    EXPECT_TRUE(has(index.out, "delta 1: position table index -1  slice 0  element delta 512\n"));
    EXPECT_FALSE(has(index.out, " entry "));
    CommandRun entries = runVellum("klv " + path + " --entries");
    EXPECT_EQ(0, entries.status);
    EXPECT_EQ(50u, occurrences(entries.out, "  entry "));
    EXPECT_TRUE(has(entries.out, "entry 0: flags 0xc0 (random access, sequence header)  temporal offset 0  key frame "
                                 "offset 0  stream offset 0  slice offsets "));
    EXPECT_TRUE(has(entries.out, "entry 3: flags 0x33 (forward prediction, backward prediction, other 0x03)  temporal "
                                 "offset -2  key frame offset -3"));

    // A segment whose BodySID item is 6 bytes long.
    using namespace IndexTest;
    std::string const bad = writeTemporary(packet(currentKey(), cat(leadingItems(0, 0), item(0x3F07, {0, 0, 0, 1, 0, 0}))));
    CommandRun run = runVellum("klv --index " + bad);
    std::remove(bad.c_str());
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(has(run.out, "Invalid data size in Local Value. Value still contains data to be read.")) << run.out;
}
