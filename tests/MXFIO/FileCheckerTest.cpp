// FileChecker over consistent files, over the samples that really are inconsistent, and over
// copies of the example and of an ffmpeg file damaged one way at a time. The damage is placed
// with a plain KLV walk of the test's own.

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "MXFIO/FileChecker.h"
#include "Support/Fixtures.h"
#include "Utils/Text.h"

namespace
{
using namespace Vellum;
typedef std::vector<unsigned char> Bytes;

struct Klv
{
    std::uint64_t offset, valueOffset, length;
    std::uint64_t end() const { return valueOffset + length; }
    bool keyIs(Bytes const & b, Bytes const & prefix) const
    {
        for (size_t i = 0; i < prefix.size(); ++i)
            if (i != 7 && b[offset + i] != prefix[i])
                return false;
        return true;
    }
};

// The packets from the start of the file, as far as whole packets go.
std::vector<Klv> packets(Bytes const & b)
{
    std::vector<Klv> found;
    for (std::uint64_t at = 0; at + 17 <= b.size();)
    {
        Klv k{at, at + 17, b[at + 16]};
        if (k.length >= 0x80)
        {
            unsigned const n = k.length & 0x7f;
            k.length = 0;
            for (unsigned i = 0; i < n && at + 17 + i < b.size(); ++i)
                k.length = (k.length << 8) | b[at + 17 + i];
            k.valueOffset += n;
        }
        if (k.valueOffset > b.size() || k.length > b.size() - k.valueOffset)
            break;
        found.push_back(k);
        at = k.end();
    }
    return found;
}

Bytes const PACK = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01};
Bytes const PREFACE = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f};
Bytes const CONTAINER_DATA = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x23};
Bytes const SEGMENT = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x10, 0x01};
Bytes const ESSENCE = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01, 0x0d, 0x01, 0x03, 0x01};

// Where the damage goes: partitions, the RIP, the Preface, the EssenceContainerData, the last index
// segment, the first essence element with more than two bytes.
struct CheckedLayout
{
    std::vector<Klv> partitions;
    Klv rip{0, 0, 0}, preface{0, 0, 0}, containerData{0, 0, 0}, segment{0, 0, 0}, essence{0, 0, 0};
    std::uint64_t size = 0;

    explicit CheckedLayout(Bytes const & b) : size(b.size())
    {
        for (Klv const & k : packets(b))
        {
            bool const pack = k.keyIs(b, PACK);
            if (pack && b[k.offset + 13] >= 2 && b[k.offset + 13] <= 4)
                partitions.push_back(k);
            if (pack && b[k.offset + 13] == 0x11)
                rip = k;
            if (k.keyIs(b, PREFACE))
                preface = k;
            if (k.keyIs(b, SEGMENT))
                segment = k;
            if (k.keyIs(b, CONTAINER_DATA))
                containerData = k;
            if (k.keyIs(b, ESSENCE) && b[k.offset + 12] != 0x04 && b[k.offset + 12] != 0x14 && k.length > 2 &&
                essence.length == 0)
                essence = k;
        }
    }
    Klv const & header() const { return partitions.front(); }
    Klv const & body() const { return partitions[1]; }
    Klv const & footer() const { return partitions.back(); }
};

void put(Bytes & b, std::uint64_t at, std::uint64_t value, unsigned size)
{
    for (unsigned i = 0; i < size; ++i)
        b[at + i] = static_cast<unsigned char>(value >> (8 * (size - 1 - i)));
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

// The value offset of the item with `tag` in a local set of 2-byte tags and lengths, or 0.
std::uint64_t item(Bytes const & b, Klv const & k, unsigned tag)
{
    for (std::uint64_t at = k.valueOffset; at + 4 <= k.end(); at += 4 + ((b[at + 2] << 8) | b[at + 3]))
        if (unsigned((b[at] << 8) | b[at + 1]) == tag)
            return at + 4;
    return 0;
}

// A finding as "offset code: message"; rows that expect "offset code" compare that much.
std::vector<std::string> check(std::string const & path, bool withMessages)
{
    std::vector<std::string> found;
    for (MXFIO::Finding const & f : MXFIO::FileChecker(Utils::wide(path.c_str()).c_str()).run())
        found.push_back(std::to_string(f.offset) + " " + f.code +
                        (withMessages ? std::string(": ") + Utils::narrow(f.message).c_str() : std::string()));
    return found;
}

std::vector<std::string> checkCopy(Bytes const & bytes, bool withMessages)
{
    std::string const path = VellumTest::temporaryPath(".mxf");
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const *>(bytes.data()), std::streamsize(bytes.size()));
    std::vector<std::string> found = check(path, withMessages);
    std::remove(path.c_str());
    return found;
}

std::string at(std::uint64_t offset, char const * code) { return std::to_string(offset) + " " + code; }

// A damage and the findings it gives, placed by the layout.
struct Damage
{
    char const * name;
    std::function<void(Bytes &, CheckedLayout const &)> damage;
    std::function<std::vector<std::string>(CheckedLayout const &)> expected;
};

std::vector<Damage> const DAMAGES = {
    {"half an essence element",
     [](Bytes & b, CheckedLayout const & l) { b.resize(l.essence.valueOffset + l.essence.length / 2); },
     [](CheckedLayout const & l) {
         return std::vector<std::string>{at(0, "footer-pointer"), at(l.body().offset, "footer-pointer"),
                                         at(l.essence.offset, "truncated")};
     }},
    // The reader, that trusts the pointers to the footer, cannot walk to it or back from it.
    {"cut inside the footer pack", [](Bytes & b, CheckedLayout const & l) { b.resize(l.footer().valueOffset + 30); },
     [](CheckedLayout const & l) {
         return std::vector<std::string>{at(0, "footer-pointer"), at(0, "reader-backward"),
                                         at(l.body().offset, "footer-pointer"), at(l.body().offset, "reader-forward"),
                                         at(l.footer().offset, "truncated")};
     }},
    {"cut inside a key", [](Bytes & b, CheckedLayout const & l) { b.resize(l.footer().end() + 10); },
     [](CheckedLayout const & l) {
         return std::vector<std::string>{at(l.footer().end(), "truncated"), at(l.footer().end() + 10, "rip-missing")};
     }},
    {"no RIP", [](Bytes & b, CheckedLayout const & l) { b.resize(l.rip.offset); },
     [](CheckedLayout const & l) { return std::vector<std::string>{at(l.rip.offset, "rip-missing")}; }},
    {"footer pointer at the body",
     [](Bytes & b, CheckedLayout const & l) { put(b, l.header().valueOffset + FOOTER_PARTITION, l.body().offset, 8); },
     [](CheckedLayout const & l) {
         return std::vector<std::string>{at(0, "footer-pointer"), at(l.footer().offset, "reader-footer")};
     }},
    {"footer pointer inside the footer",
     [](Bytes & b, CheckedLayout const & l) { put(b, l.header().valueOffset + FOOTER_PARTITION, l.footer().offset + 20, 8); },
     [](CheckedLayout const & l) {
         return std::vector<std::string>{at(0, "footer-pointer"), at(l.footer().offset, "reader-footer")};
     }},
    {"footer pointer past the end",
     [](Bytes & b, CheckedLayout const & l) { put(b, l.header().valueOffset + FOOTER_PARTITION, l.size + 1000, 8); },
     [](CheckedLayout const &) { return std::vector<std::string>{at(0, "footer-pointer")}; }},
    {"the footer's own pointer 0, the body's too",
     [](Bytes & b, CheckedLayout const & l) {
         put(b, l.footer().valueOffset + FOOTER_PARTITION, 0, 8);
         put(b, l.body().valueOffset + FOOTER_PARTITION, 0, 8);
     },
     [](CheckedLayout const & l) { return std::vector<std::string>{at(l.footer().offset, "footer-pointer")}; }},
    {"a dangling ContentStorage reference",
     [](Bytes & b, CheckedLayout const & l) { b[item(b, l.preface, 0x3b03) + 15] ^= 0xff; },
     [](CheckedLayout const & l) { return std::vector<std::string>{at(l.preface.offset, "dangling-reference")}; }},
    {"no ContentStorage reference",
     [](Bytes & b, CheckedLayout const & l) { put(b, item(b, l.preface, 0x3b03) - 4, 0xfff0, 2); },
     [](CheckedLayout const & l) { return std::vector<std::string>{at(l.preface.offset, "required-missing")}; }},
    {"no ContentStorage reference in an open header",
     [](Bytes & b, CheckedLayout const & l) {
         put(b, item(b, l.preface, 0x3b03) - 4, 0xfff0, 2);
         b[l.header().offset + 14] = 0x03;
     },
     [](CheckedLayout const &) { return std::vector<std::string>{}; }},
    {"a partition pack of status 0", [](Bytes & b, CheckedLayout const & l) { b[l.body().offset + 14] = 0; },
     [](CheckedLayout const & l) {
         // Without the body's BodySID the metadata and the index name an essence container of none.
         return std::vector<std::string>{at(0, "reader-forward"), at(l.containerData.offset, "container-data"),
                                         at(l.body().offset, "partition-unreadable"),
                                         at(l.footer().offset, "reader-backward"),
                                         at(l.segment.offset, "index-beyond-essence")};
     }},
};

std::vector<std::string> damageSubjects()
{
    std::vector<std::string> files{std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf"};
    std::string fixture = VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf");
    if (!fixture.empty())
        files.push_back(fixture);
    return files;
}

std::string joined(std::vector<std::string> const & lines)
{
    std::string all;
    for (std::string const & line : lines)
        all += line + "\n";
    return all;
}
} // namespace

TEST(FileChecker, FindsNothingInConsistentFiles)
{
    std::vector<std::string> files{std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf"};
    if (!VellumTest::sharedDir().empty())
        files.push_back(VellumTest::sharedDir() + "/samples/escape-chars.mxf");
    for (std::string const & path : VellumTest::ffmpegFixtureFiles())
        files.push_back(path);
    for (std::string const & path : files)
        EXPECT_EQ("", joined(check(path, true))) << path;
    EXPECT_EQ("0 file-unreadable", joined(check("/nonexistent/file.mxf", false)).substr(0, 17));
}

TEST(FileChecker, ReportsWhatTheSamplesGetWrong)
{
    VELLUM_REQUIRE_SHARED();
    // The header metadata describes sound in BodySID 2, but the file's body was left out.
    EXPECT_EQ("2618 container-data: EssenceContainerData names BodySID 2, but no partition carries that body SID\n",
              joined(check(VellumTest::sharedDir() + "/samples/utf8_embedded_text.mxf", true)));
    // Twelve TaggedValueDefinition sets of the embedded dictionary lack their required
    // TaggedValueParentProperties; nothing else is wrong.
    std::vector<std::string> found = check(VellumTest::sharedDir() + "/samples/indirect.mxf", true);
    ASSERT_EQ(12u, found.size()) << joined(found);
    EXPECT_EQ("88790 required-missing: TaggedValueDefinition urn:uuid:96cc8443-794a-47ec-887f-5c1801ead453: the "
              "required TaggedValueParentProperties is missing",
              found[0]);
    for (std::string const & f : found)
        EXPECT_NE(std::string::npos, f.find("required-missing: TaggedValueDefinition ")) << f;
}

TEST(FileChecker, ReportsEachDamageWhereItIs)
{
    for (std::string const & path : damageSubjects())
    {
        Bytes const bytes = VellumTest::readFile(path);
        CheckedLayout const layout(bytes);
        ASSERT_GE(layout.partitions.size(), 3u) << path;
        ASSERT_NE(0u, layout.rip.length * layout.preface.length * layout.essence.length) << path;
        for (Damage const & d : DAMAGES)
        {
            Bytes damaged = bytes;
            d.damage(damaged, layout);
            EXPECT_EQ(joined(d.expected(layout)), joined(checkCopy(damaged, false))) << path << ": " << d.name;
        }
    }
}

// The example's damage, with the full text of each finding.
TEST(FileChecker, SaysWhatIsWrongInWords)
{
    Bytes const bytes = VellumTest::readFile(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf");
    CheckedLayout const l(bytes);
    ASSERT_EQ(3u, l.partitions.size());
    ASSERT_EQ(34304u, l.segment.offset);
    std::uint64_t const entries = item(bytes, l.segment, 0x3f0a);
    std::uint64_t const entrySize = (bytes[entries + 6] << 8) | bytes[entries + 7];
    struct Case
    {
        std::function<void(Bytes &)> damage;
        std::string expected;
    };
    std::vector<Case> const cases = {
        {[&](Bytes & b) {
             put(b, l.body().valueOffset + THIS_PARTITION, 6000, 8);
             put(b, l.footer().valueOffset + PREVIOUS_PARTITION, 0, 8);
             put(b, l.rip.valueOffset + 12, 7, 4);             // the body's entry: BodySID 7
             put(b, l.rip.valueOffset + 28, 33792 + 8, 8);     // the footer's: next to the footer
         },
         "6144 this-partition: ThisPartition is 6000, but the partition stands at 6144\n"
         "33792 previous-partition: PreviousPartition is 0, but the partition before it stands at 6144\n"
         "33792 rip-incomplete: the footer partition at 33792 is missing from the random index pack\n"
         "34816 rip-body-sid: the entry for the partition at 6144 gives BodySID 7, but the partition has BodySID 1\n"
         "34816 rip-entry: the entry for offset 33800 (BodySID 0) does not point at a partition (inside the footer "
         "partition at 33792)\n"},
        // The header metadata ends at 5913 with 211 bytes of fill behind it, the footer's index
        // segment at 34526 with 270. The reader, sent a byte into the body pack, steps over it.
        {[&](Bytes & b) {
             put(b, l.header().valueOffset + HEADER_BYTE_COUNT, 5633, 8);
             put(b, l.footer().valueOffset + INDEX_BYTE_COUNT, 300, 8);
         },
         "0 header-byte-count: HeaderByteCount is 5633, but the header metadata takes 5401 bytes (5632 with the fill "
         "around them)\n"
         "0 reader-forward: the reader's walk forward stops: next == 0 || next -> partitionPack ().previousPartition "
         "() <= current -> partitionPack ().thisPartition (): The Partition Pack has an invalid PreviousPartition "
         "value\n"
         "33792 index-byte-count: IndexByteCount is 300, but the index table segments take 222 bytes (868 with the "
         "fill around them)\n"},
        {[&](Bytes & b) {
             put(b, l.header().valueOffset + HEADER_BYTE_COUNT, 0, 8);
             put(b, l.footer().valueOffset + INDEX_BYTE_COUNT, 0, 8);
         },
         "0 header-byte-count: HeaderByteCount is 0, but the partition holds 5401 bytes of header metadata\n"
         "33792 index-byte-count: IndexByteCount is 0, but the partition holds 222 bytes of index table segments\n"},
        {[&](Bytes & b) { put(b, l.header().valueOffset + KAG, 1000, 4); },
         "512 kag-alignment: the header metadata stands 512 bytes behind its partition pack, off the KAG of 1000\n"},
        // Entry 3 of 5 claims a stream offset far behind the essence (6656 up to 33792).
        {[&](Bytes & b) { put(b, entries + 8 + 3 * entrySize + 3, 1000000, 8); },
         "34304 index-beyond-essence: index entry 3 has StreamOffset 1000000, but the essence of BodySID 1 holds "
         "27136 bytes\n"},
        // The body moves to BodySID 5: the metadata and the index name a container no partition carries.
        {[&](Bytes & b) { put(b, l.body().valueOffset + BODY_SID, 5, 4); },
         "5824 container-data: EssenceContainerData names BodySID 1, but no partition carries that body SID\n"
         "34304 index-beyond-essence: index entry 4 has StreamOffset 22016, but the essence of BodySID 1 holds 0 "
         "bytes\n"
         "34816 rip-body-sid: the entry for the partition at 6144 gives BodySID 1, but the partition has BodySID 5\n"},
        {[&](Bytes & b) { b.resize(l.essence.valueOffset + 2); },
         "0 footer-pointer: FooterPartition is 33792, but the file has no footer partition (past the end of the "
         "file)\n6144 footer-pointer: FooterPartition is 33792, but the file has no footer partition (past the end "
         "of the file)\n" +
             std::to_string(l.essence.offset) + " truncated: the value of the essence element (length " +
             std::to_string(l.essence.length) + ") runs past the end of the file (" +
             std::to_string(l.essence.valueOffset + 2) + " bytes)\n"},
    };
    for (Case const & c : cases)
    {
        Bytes damaged = bytes;
        c.damage(damaged);
        EXPECT_EQ(c.expected, joined(checkCopy(damaged, true)));
    }
}
