// Runs `vellum check` over consistent files and over copies damaged one way at a time, and
// checks the findings it prints.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "Support/Fixtures.h"

namespace
{
typedef std::vector<unsigned char> Bytes;

struct ToolRun
{
    int status;
    std::string out;
};

ToolRun runCheck(std::string const & arguments)
{
    std::string command = std::string(VELLUM_TOOL_PATH) + " check " + arguments + " 2>&1";
    ToolRun run{-1, std::string()};
    FILE * pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    std::array<char, 65536> buffer;
    size_t got;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
        run.out.append(buffer.data(), got);
    int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

bool has(std::string const & text, std::string const & part) { return text.find(part) != std::string::npos; }

// The line that the text output gives for a finding at `offset` with `code`.
std::string line(std::uint64_t offset, char const * code)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%12llu  ", static_cast<unsigned long long>(offset));
    return std::string(buffer) + code + ": ";
}

// The number of findings the text output ends with.
std::string count(std::string const & path, unsigned findings)
{
    return path + ": " + std::to_string(findings) + (findings == 1 ? " finding\n" : " findings\n");
}

std::string smallExample() { return std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf"; }

// A walk of the test's own over the packets of a file.
struct Klv
{
    std::uint64_t offset;
    std::uint64_t valueOffset;
    std::uint64_t length;
    std::uint64_t end() const { return valueOffset + length; }
};

std::vector<Klv> packets(Bytes const & bytes)
{
    std::vector<Klv> found;
    std::uint64_t at = 0;
    while (at + 17 <= bytes.size())
    {
        Klv klv{at, 0, 0};
        std::uint64_t p = at + 16;
        unsigned char first = bytes[p++];
        if (first < 0x80)
            klv.length = first;
        else
        {
            unsigned n = first & 0x7f;
            if (n > 8 || p + n > bytes.size())
                break;
            for (unsigned i = 0; i < n; ++i)
                klv.length = (klv.length << 8) | bytes[p++];
        }
        klv.valueOffset = p;
        if (klv.length > bytes.size() - p)
            break;
        found.push_back(klv);
        at = klv.end();
    }
    return found;
}

bool keyIs(Bytes const & bytes, Klv const & klv, std::vector<unsigned char> const & prefix)
{
    for (size_t i = 0; i < prefix.size(); ++i)
        if (i != 7 && bytes[klv.offset + i] != prefix[i])
            return false;
    return true;
}

// Partition packs (kind 2, 3 or 4 in byte 13).
bool isPartition(Bytes const & bytes, Klv const & klv)
{
    return keyIs(bytes, klv, {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01}) &&
           bytes[klv.offset + 13] >= 2 && bytes[klv.offset + 13] <= 4;
}

bool isEssence(Bytes const & bytes, Klv const & klv)
{
    return keyIs(bytes, klv, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01, 0x0d, 0x01, 0x03, 0x01}) &&
           bytes[klv.offset + 12] != 0x04 && bytes[klv.offset + 12] != 0x14;
}

std::vector<Klv> partitions(Bytes const & bytes)
{
    std::vector<Klv> found;
    for (Klv const & klv : packets(bytes))
        if (isPartition(bytes, klv))
            found.push_back(klv);
    return found;
}

std::uint64_t getU64(Bytes const & bytes, std::uint64_t at)
{
    std::uint64_t value = 0;
    for (unsigned i = 0; i < 8; ++i)
        value = (value << 8) | bytes[at + i];
    return value;
}

void putU64(Bytes & bytes, std::uint64_t at, std::uint64_t value)
{
    for (unsigned i = 0; i < 8; ++i)
        bytes[at + i] = static_cast<unsigned char>(value >> (56 - 8 * i));
}

void putU32(Bytes & bytes, std::uint64_t at, std::uint32_t value)
{
    for (unsigned i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

// Fields of a partition pack, by their offset in the value.
enum PackField
{
    KAG = 4,
    THIS_PARTITION = 8,
    PREVIOUS_PARTITION = 16,
    FOOTER_PARTITION = 24,
    HEADER_BYTE_COUNT = 32,
    INDEX_BYTE_COUNT = 40,
    BODY_SID = 60
};

// The value offset of the item of a local set (2-byte tags and lengths) with `tag`, or 0.
std::uint64_t item(Bytes const & bytes, Klv const & klv, unsigned tag)
{
    std::uint64_t at = klv.valueOffset;
    while (at + 4 <= klv.end())
    {
        unsigned const t = (bytes[at] << 8) | bytes[at + 1];
        unsigned const length = (bytes[at + 2] << 8) | bytes[at + 3];
        if (t == tag)
            return at + 4;
        at += 4 + length;
    }
    return 0;
}

std::string writeCopy(Bytes const & bytes)
{
    std::string path = VellumTest::temporaryPath(".mxf");
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<char const *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path;
}

// The files to damage: the example, and an ffmpeg file when ffmpeg is there.
std::vector<std::string> damageSubjects()
{
    std::vector<std::string> files{smallExample()};
    std::string fixture = VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf");
    if (!fixture.empty())
        files.push_back(fixture);
    return files;
}
} // namespace

TEST(CheckTool, FindsNothingInConsistentFiles)
{
    std::vector<std::string> files{smallExample()};
    if (!VellumTest::sharedDir().empty())
        files.push_back(VellumTest::sharedDir() + "/samples/escape-chars.mxf");
    for (std::string const & path : VellumTest::ffmpegFixtureFiles())
        files.push_back(path);
    for (std::string const & path : files)
    {
        ToolRun run = runCheck(path);
        EXPECT_EQ(0, run.status) << run.out;
        EXPECT_EQ(path + ": no findings\n", run.out);
        run = runCheck("--json " + path);
        EXPECT_EQ(0, run.status) << run.out;
        EXPECT_EQ("{\"file\": \"" + path + "\", \"findings\": []}\n", run.out);
    }
}

// Two of the samples really are inconsistent, and say so.
TEST(CheckTool, ReportsWhatTheSamplesGetWrong)
{
    VELLUM_REQUIRE_SHARED();
    // The header metadata describes sound essence in BodySID 2, but the file holds no essence at
    // all: its body was left out.
    std::string path = VellumTest::sharedDir() + "/samples/utf8_embedded_text.mxf";
    ToolRun run = runCheck(path);
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(line(2618, "container-data") +
                  "EssenceContainerData names BodySID 2, but no partition carries that body SID\n" + count(path, 1),
              run.out);

    // The embedded dictionary of the editor's file holds twelve TaggedValueDefinition sets without
    // their TaggedValueParentProperties, which the registers make required. Nothing else is wrong:
    // the Root's reference to the MetaDictionary resolves, and the essence value and the footer's
    // index segment lie on their KAG grid.
    path = VellumTest::sharedDir() + "/samples/indirect.mxf";
    run = runCheck(path);
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(has(run.out, line(88790, "required-missing") +
                                 "TaggedValueDefinition urn:uuid:96cc8443-794a-47ec-887f-5c1801ead453: the required "
                                 "TaggedValueParentProperties is missing\n"))
        << run.out;
    size_t lines = 0;
    size_t tagged = 0;
    for (size_t at = 0; (at = run.out.find('\n', at)) != std::string::npos; ++at)
        ++lines;
    for (size_t at = 0; (at = run.out.find("TaggedValueParentProperties is missing", at)) != std::string::npos; ++at)
        ++tagged;
    EXPECT_EQ(12u, tagged);
    EXPECT_EQ(13u, lines) << run.out;
    EXPECT_TRUE(has(run.out, count(path, 12)));
}

TEST(CheckTool, ReportsAFileCutShort)
{
    for (std::string const & path : damageSubjects())
    {
        Bytes const bytes = VellumTest::readFile(path);
        std::vector<Klv> const all = packets(bytes);
        std::vector<Klv> const parts = partitions(bytes);
        ASSERT_GE(parts.size(), 3u) << path;

        // In the body: half of an essence element.
        Klv essence{0, 0, 0};
        for (Klv const & klv : all)
            if (isEssence(bytes, klv) && klv.length > 2 && essence.length == 0)
                essence = klv;
        ASSERT_NE(0u, essence.length) << path;
        std::string cut = writeCopy(Bytes(bytes.begin(), bytes.begin() + essence.valueOffset + essence.length / 2));
        ToolRun run = runCheck(cut);
        EXPECT_EQ(1, run.status);
        EXPECT_TRUE(has(run.out, line(essence.offset, "truncated") + "the value of the essence element (length " +
                                     std::to_string(essence.length) + ") runs past the end of the file (" +
                                     std::to_string(essence.valueOffset + essence.length / 2) + " bytes)\n"))
            << run.out;
        // The header still names a footer that is not there.
        EXPECT_TRUE(has(run.out, line(0, "footer-pointer"))) << run.out;
        std::remove(cut.c_str());

        // In the footer: inside its partition pack, and inside the key of the packet behind it.
        Klv const & footer = parts.back();
        cut = writeCopy(Bytes(bytes.begin(), bytes.begin() + footer.valueOffset + 30));
        run = runCheck(cut);
        EXPECT_EQ(1, run.status);
        EXPECT_TRUE(has(run.out, line(footer.offset, "truncated") + "the value of the partition pack (length " +
                                     std::to_string(footer.length) + ") runs past the end of the file"))
            << run.out;
        std::remove(cut.c_str());
        cut = writeCopy(Bytes(bytes.begin(), bytes.begin() + footer.end() + 10));
        run = runCheck(cut);
        EXPECT_EQ(1, run.status);
        EXPECT_TRUE(has(run.out, line(footer.end(), "truncated") +
                                     "the file ends inside the key or length of a packet (10 bytes left)\n"))
            << run.out;
        std::remove(cut.c_str());
    }
}

TEST(CheckTool, ReportsAMissingRandomIndexPack)
{
    for (std::string const & path : damageSubjects())
    {
        Bytes bytes = VellumTest::readFile(path);
        std::vector<Klv> const all = packets(bytes);
        ASSERT_FALSE(all.empty());
        ASSERT_EQ(0x11, bytes[all.back().offset + 13]) << "the last packet is not the RIP";
        bytes.resize(all.back().offset);
        std::string cut = writeCopy(bytes);
        ToolRun run = runCheck("--json " + cut);
        EXPECT_EQ(1, run.status);
        EXPECT_EQ("{\"file\": \"" + cut + "\", \"findings\": [\n  {\"offset\": " + std::to_string(bytes.size()) +
                      ", \"code\": \"rip-missing\", \"message\": \"the file has a footer partition but no random "
                      "index pack\"}\n]}\n",
                  run.out);
        std::remove(cut.c_str());
    }
}

TEST(CheckTool, ReportsWrongFooterPointers)
{
    for (std::string const & path : damageSubjects())
    {
        Bytes const bytes = VellumTest::readFile(path);
        std::vector<Klv> const parts = partitions(bytes);
        ASSERT_GE(parts.size(), 3u) << path;
        Klv const & header = parts.front();
        Klv const & body = parts[1];
        Klv const & footer = parts.back();
        std::string const footerAt = std::to_string(footer.offset);
        // The reader believes a pointer into the file and then finds no footer; one past the
        // end marks a file cut short to it, and it turns to the RIP.
        struct Case
        {
            std::uint64_t pointer;
            std::string what;
            bool readerLosesFooter;
        };
        std::vector<Case> const cases{
            {body.offset, "the body partition", true},
            {body.offset + 100, "inside the body partition at " + std::to_string(body.offset), true},
            {footer.offset + 20, "inside the footer partition at " + footerAt, true},
            {bytes.size() + 1000, "past the end of the file", false},
        };
        for (Case const & c : cases)
        {
            Bytes damaged = bytes;
            putU64(damaged, header.valueOffset + FOOTER_PARTITION, c.pointer);
            std::string copy = writeCopy(damaged);
            ToolRun run = runCheck(copy);
            EXPECT_EQ(1, run.status);
            std::string expected = line(0, "footer-pointer") + "FooterPartition is " + std::to_string(c.pointer) +
                                   ", but the footer partition stands at " + footerAt + " (" + c.what + ")\n";
            if (c.readerLosesFooter)
                expected += line(footer.offset, "reader-footer") + "the reader does not find the footer partition at " +
                            footerAt + "\n";
            EXPECT_EQ(expected + count(copy, c.readerLosesFooter ? 2 : 1), run.out);
            std::remove(copy.c_str());
        }
        // The footer's own pointer may not be left at 0; a body partition's may.
        Bytes damaged = bytes;
        putU64(damaged, footer.valueOffset + FOOTER_PARTITION, 0);
        putU64(damaged, body.valueOffset + FOOTER_PARTITION, 0);
        std::string copy = writeCopy(damaged);
        ToolRun run = runCheck(copy);
        EXPECT_EQ(line(footer.offset, "footer-pointer") + "FooterPartition is 0, but the footer partition stands at " +
                      footerAt + " (the header partition)\n" + count(copy, 1),
                  run.out);
        std::remove(copy.c_str());
    }
}

TEST(CheckTool, ReportsABrokenPartitionChainAndRandomIndexPack)
{
    Bytes const bytes = VellumTest::readFile(smallExample());
    std::vector<Klv> const parts = partitions(bytes);
    ASSERT_EQ(3u, parts.size());
    Klv const & body = parts[1];
    Klv const & footer = parts[2];
    Klv const rip = packets(bytes).back();

    Bytes damaged = bytes;
    putU64(damaged, body.valueOffset + THIS_PARTITION, 6000);
    putU64(damaged, footer.valueOffset + PREVIOUS_PARTITION, 0);
    // The RIP's second entry: SID 1 at 6144 becomes SID 7; its third points next to the footer.
    putU32(damaged, rip.valueOffset + 12, 7);
    putU64(damaged, rip.valueOffset + 24 + 4, footer.offset + 8);
    std::string copy = writeCopy(damaged);
    ToolRun run = runCheck(copy);
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(line(6144, "this-partition") + "ThisPartition is 6000, but the partition stands at 6144\n" +
                  line(33792, "previous-partition") +
                  "PreviousPartition is 0, but the partition before it stands at 6144\n" +
                  line(33792, "rip-incomplete") + "the footer partition at 33792 is missing from the random index pack\n" +
                  line(34816, "rip-body-sid") +
                  "the entry for the partition at 6144 gives BodySID 7, but the partition has BodySID 1\n" +
                  line(34816, "rip-entry") +
                  "the entry for offset 33800 (BodySID 0) does not point at a partition (inside the footer partition "
                  "at 33792)\n" +
                  count(copy, 5),
              run.out);
    std::remove(copy.c_str());

    // A partition pack that cannot be read: a status of 0.
    damaged = bytes;
    damaged[body.offset + 14] = 0;
    copy = writeCopy(damaged);
    run = runCheck(copy);
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(has(run.out, line(6144, "partition-unreadable") + "the partition pack cannot be read: "))
        << run.out;
    std::remove(copy.c_str());
}

TEST(CheckTool, ReportsWrongByteCountsAndAlignment)
{
    Bytes const bytes = VellumTest::readFile(smallExample());
    std::vector<Klv> const parts = partitions(bytes);
    ASSERT_EQ(3u, parts.size());
    Klv const & header = parts[0];
    Klv const & footer = parts[2];
    ASSERT_EQ(5632u, getU64(bytes, header.valueOffset + HEADER_BYTE_COUNT));

    Bytes damaged = bytes;
    putU64(damaged, header.valueOffset + HEADER_BYTE_COUNT, 5633);
    putU64(damaged, footer.valueOffset + INDEX_BYTE_COUNT, 300);
    std::string copy = writeCopy(damaged);
    ToolRun run = runCheck(copy);
    EXPECT_EQ(1, run.status);
    // The header metadata ends at 5913 (behind it 211 bytes of fill up to the body partition),
    // the footer's index segment at 34526 (270 bytes of fill up to the RIP). The reader, sent a
    // byte into the body partition pack, steps over that partition.
    EXPECT_EQ(line(0, "header-byte-count") +
                  "HeaderByteCount is 5633, but the header metadata takes 5401 bytes (5632 with the fill around them)\n" +
                  line(0, "reader-forward") +
                  "the reader's walk forward stops: next == 0 || next -> partitionPack ().previousPartition () <= "
                  "current -> partitionPack ().thisPartition (): The Partition Pack has an invalid PreviousPartition "
                  "value\n" +
                  line(33792, "index-byte-count") +
                  "IndexByteCount is 300, but the index table segments take 222 bytes (868 with the fill around them)\n" +
                  count(copy, 3),
              run.out);
    std::remove(copy.c_str());

    // Counts of 0 for what is there.
    damaged = bytes;
    putU64(damaged, header.valueOffset + HEADER_BYTE_COUNT, 0);
    putU64(damaged, footer.valueOffset + INDEX_BYTE_COUNT, 0);
    copy = writeCopy(damaged);
    run = runCheck(copy);
    EXPECT_TRUE(has(run.out, line(0, "header-byte-count") +
                                 "HeaderByteCount is 0, but the partition holds 5401 bytes of header metadata\n"))
        << run.out;
    EXPECT_TRUE(has(run.out, line(33792, "index-byte-count") +
                                 "IndexByteCount is 0, but the partition holds 222 bytes of index table segments\n"))
        << run.out;
    std::remove(copy.c_str());

    // A KAG of 1000 puts none of the regions on the grid.
    damaged = bytes;
    putU32(damaged, header.valueOffset + KAG, 1000);
    copy = writeCopy(damaged);
    run = runCheck(copy);
    EXPECT_EQ(line(512, "kag-alignment") +
                  "the header metadata stands 512 bytes behind its partition pack, off the KAG of 1000\n" +
                  count(copy, 1),
              run.out);
    std::remove(copy.c_str());
}

TEST(CheckTool, ReportsDanglingReferencesAndMissingElements)
{
    for (std::string const & path : damageSubjects())
    {
        Bytes const bytes = VellumTest::readFile(path);
        Klv preface{0, 0, 0};
        for (Klv const & klv : packets(bytes))
            if (keyIs(bytes, klv,
                      {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f}))
                preface = klv;
        ASSERT_NE(0u, preface.length) << path;
        std::uint64_t const contentStorage = item(bytes, preface, 0x3b03);
        ASSERT_NE(0u, contentStorage) << path;

        // The Preface's ContentStorage reference points nowhere.
        Bytes damaged = bytes;
        damaged[contentStorage + 15] ^= 0xff;
        std::string copy = writeCopy(damaged);
        ToolRun run = runCheck(copy);
        EXPECT_EQ(1, run.status);
        EXPECT_TRUE(has(run.out, line(preface.offset, "dangling-reference") + "Preface urn:uuid:")) << run.out;
        EXPECT_TRUE(has(run.out, ": ContentStorageObject refers to urn:uuid:")) << run.out;
        EXPECT_TRUE(has(run.out, ", which is not in the partition\n")) << run.out;
        std::remove(copy.c_str());

        // Without its tag the Preface lacks a required element.
        damaged = bytes;
        damaged[contentStorage - 4] = 0xff;
        damaged[contentStorage - 3] = 0xf0;
        copy = writeCopy(damaged);
        run = runCheck(copy);
        EXPECT_EQ(1, run.status);
        EXPECT_TRUE(has(run.out, line(preface.offset, "required-missing") + "Preface urn:uuid:")) << run.out;
        EXPECT_TRUE(has(run.out, ": the required ContentStorageObject is missing\n")) << run.out;
        std::remove(copy.c_str());

        // In an open partition the writer may not have filled everything yet.
        damaged[partitions(bytes).front().offset + 14] = 0x03;
        copy = writeCopy(damaged);
        run = runCheck(copy);
        EXPECT_EQ(0, run.status) << run.out;
        std::remove(copy.c_str());
    }
}

TEST(CheckTool, ReportsIndexEntriesBeyondTheEssenceAndContainersWithoutEssence)
{
    Bytes const bytes = VellumTest::readFile(smallExample());
    std::vector<Klv> const all = packets(bytes);
    Klv segment{0, 0, 0};
    for (Klv const & klv : all)
        if (keyIs(bytes, klv, {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x10, 0x01}))
            segment = klv;
    ASSERT_EQ(34304u, segment.offset);
    std::uint64_t const entries = item(bytes, segment, 0x3f0a);
    ASSERT_NE(0u, entries);
    std::uint64_t const size = (bytes[entries + 4] << 24) | (bytes[entries + 5] << 16) | (bytes[entries + 6] << 8) |
                               bytes[entries + 7];
    // Entry 3 of 5 claims a stream offset far behind the essence, which runs from the first
    // system item at 6656 up to the footer at 33792.
    Bytes damaged = bytes;
    putU64(damaged, entries + 8 + 3 * size + 3, 1000000);
    std::string copy = writeCopy(damaged);
    ToolRun run = runCheck(copy);
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(line(34304, "index-beyond-essence") +
                  "index entry 3 has StreamOffset 1000000, but the essence of BodySID 1 holds 27136 bytes\n" +
                  count(copy, 1),
              run.out);
    std::remove(copy.c_str());

    // The body partition moves to BodySID 5: the header's EssenceContainerData and the index
    // both name a container that no partition carries.
    std::vector<Klv> const parts = partitions(bytes);
    damaged = bytes;
    putU32(damaged, parts[1].valueOffset + BODY_SID, 5);
    copy = writeCopy(damaged);
    run = runCheck(copy);
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(has(run.out, "  container-data: EssenceContainerData names BodySID 1, but no partition carries that body SID\n"))
        << run.out;
    EXPECT_TRUE(has(run.out, line(34304, "index-beyond-essence") +
                                 "index entry 4 has StreamOffset 22016, but the essence of BodySID 1 holds 0 bytes\n"))
        << run.out;
    EXPECT_TRUE(has(run.out, line(34816, "rip-body-sid"))) << run.out;
    std::remove(copy.c_str());
}

TEST(CheckTool, RefusesWrongUse)
{
    EXPECT_EQ(2, runCheck("").status);
    EXPECT_EQ(2, runCheck("--json").status);
    EXPECT_EQ(2, runCheck("--bogus " + smallExample()).status);
    EXPECT_EQ(2, runCheck(smallExample() + " " + smallExample()).status);
    ToolRun run = runCheck("/nonexistent/file.mxf");
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(has(run.out, line(0, "file-unreadable"))) << run.out;
}
