// Runs `vellum info` on the sample files, on ffmpeg-made files and on damaged copies, and checks
// what it says against independent sources: the RegXML renderings beside the samples, ffprobe's
// packet counts, and the damage the test itself did.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>

#include "Support/Fixtures.h"
#include "Tools/ToolSupport.h"

using namespace VellumToolTest;

namespace
{
// ---------------------------------------------------------------------------------------------
// A small XML tree: element names without their prefix, text, children.

struct XmlNode
{
    std::string name;
    std::string text;
    std::vector<XmlNode> children;

    XmlNode const * child(std::string const & n) const
    {
        for (XmlNode const & c : children)
            if (c.name == n)
                return &c;
        return nullptr;
    }
    std::string childText(std::string const & n) const
    {
        XmlNode const * c = child(n);
        return c ? c->text : std::string();
    }
};

std::string localName(std::string const & tag)
{
    size_t end = tag.find_first_of(" \t\r\n/>");
    std::string name = tag.substr(0, end);
    size_t colon = name.find(':');
    return colon == std::string::npos ? name : name.substr(colon + 1);
}

// Enough XML for the renderings: elements, attributes skipped, text, no CDATA.
XmlNode parseXml(std::string const & xml)
{
    XmlNode root;
    std::vector<XmlNode *> open{&root};
    size_t at = 0;
    while (at < xml.size())
    {
        size_t lt = xml.find('<', at);
        if (lt == std::string::npos)
            break;
        if (lt > at)
            open.back()->text += xml.substr(at, lt - at);
        size_t gt = xml.find('>', lt);
        if (gt == std::string::npos)
            break;
        std::string tag = xml.substr(lt + 1, gt - lt - 1);
        at = gt + 1;
        if (tag.empty() || tag[0] == '?' || tag[0] == '!')
            continue;
        if (tag[0] == '/')
        {
            if (open.size() > 1)
                open.pop_back();
            continue;
        }
        open.back()->children.push_back(XmlNode{localName(tag), std::string(), {}});
        if (tag.back() != '/')
            open.push_back(&open.back()->children.back());
    }
    return root;
}

void findAll(XmlNode const & node, std::string const & name, std::vector<XmlNode const *> & out)
{
    for (XmlNode const & c : node.children)
    {
        if (c.name == name)
            out.push_back(&c);
        findAll(c, name, out);
    }
}

std::string readText(std::string const & path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

std::string trimmed(std::string const & text)
{
    size_t b = text.find_first_not_of(" \t\r\n");
    size_t e = text.find_last_not_of(" \t\r\n");
    return b == std::string::npos ? std::string() : text.substr(b, e - b + 1);
}

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

// One track as both sides describe it.
struct TrackFacts
{
    std::string id, number, editRate, origin, duration;
    bool operator==(TrackFacts const & o) const
    {
        return id == o.id && number == o.number && editRate == o.editRate && origin == o.origin &&
               duration == o.duration;
    }
};

std::ostream & operator<<(std::ostream & out, TrackFacts const & t)
{
    return out << "{id " << t.id << ", number " << t.number << ", edit rate " << t.editRate << ", origin " << t.origin
               << ", duration " << t.duration << "}";
}

typedef std::map<std::string, std::vector<TrackFacts>> PackageFacts; // package UID -> tracks

PackageFacts factsFromRegXml(std::string const & path)
{
    XmlNode root = parseXml(readText(path));
    PackageFacts facts;
    std::vector<XmlNode const *> packages;
    findAll(root, "MaterialPackage", packages);
    findAll(root, "SourcePackage", packages);
    for (XmlNode const * package : packages)
    {
        std::vector<TrackFacts> & tracks = facts[lower(trimmed(package->childText("PackageID")))];
        XmlNode const * list = package->child("PackageTracks");
        if (!list)
            continue;
        for (XmlNode const & track : list->children)
        {
            if (track.name != "TimelineTrack")
                continue;
            TrackFacts t;
            t.id = trimmed(track.childText("TrackID"));
            t.number = trimmed(track.childText("EssenceTrackNumber"));
            if (t.number.empty())
                t.number = "0";
            t.editRate = trimmed(track.childText("EditRate"));
            t.origin = trimmed(track.childText("Origin"));
            if (t.origin.empty())
                t.origin = "0";
            XmlNode const * segment = track.child("TrackSegment");
            XmlNode const * sequence = segment ? segment->child("Sequence") : nullptr;
            t.duration = sequence ? trimmed(sequence->childText("ComponentLength")) : std::string();
            tracks.push_back(t);
        }
    }
    return facts;
}

PackageFacts factsFromJson(Json const & info)
{
    PackageFacts facts;
    Json const & packages = info["packages"];
    for (Json const & package : packages.items)
    {
        std::vector<TrackFacts> & tracks = facts[lower(package["uid"].text)];
        for (Json const & track : package["tracks"].items)
            tracks.push_back(TrackFacts{track["id"].text, track["number"].text, track["editRate"].text,
                                        track["origin"].text, track["duration"].isNull() ? "" : track["duration"].text});
    }
    return facts;
}

Json infoJson(std::string const & path, int * status = nullptr)
{
    CommandRun run = runVellum("info --json " + shellQuoted(path));
    if (status)
        *status = run.status;
    Json json;
    EXPECT_TRUE(JsonParser(run.out).parse(json)) << run.out;
    return json;
}

std::vector<std::string> warnings(Json const & info)
{
    std::vector<std::string> all;
    for (Json const & w : info["warnings"].items)
        all.push_back(w.text);
    return all;
}

bool anyWarningContains(Json const & info, std::string const & part)
{
    for (std::string const & w : warnings(info))
        if (w.find(part) != std::string::npos)
            return true;
    return false;
}

std::string joined(std::vector<std::string> const & lines)
{
    std::string all;
    for (std::string const & l : lines)
        all += l + "\n";
    return all;
}

void writeFile(std::string const & path, std::vector<unsigned char> const & bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<char const *>(bytes.data()), std::streamsize(bytes.size()));
}

uint64_t get64(std::vector<unsigned char> const & b, size_t at)
{
    uint64_t v = 0;
    for (size_t i = 0; i < 8; ++i)
        v = (v << 8) | b[at + i];
    return v;
}

void put64(std::vector<unsigned char> & b, size_t at, uint64_t v)
{
    for (int i = 7; i >= 0; --i, v >>= 8)
        b[at + size_t(i)] = static_cast<unsigned char>(v & 0xff);
}

// Where the value of the packet at `key` begins.
size_t valueStart(std::vector<unsigned char> const & b, size_t key)
{
    unsigned char ber = b[key + 16];
    return key + 17 + ((ber & 0x80) ? (ber & 0x7f) : 0);
}
} // namespace

TEST(InfoTool, PackagesAndTracksEqualTheRegXmlRenderings)
{
    std::vector<std::string> samples = VellumTest::sampleFiles();
    if (samples.empty())
        GTEST_SKIP() << "the shared samples folder is absent (../shared/samples)";
    for (std::string const & sample : samples)
    {
        SCOPED_TRACE(sample);
        std::string rendering = sample.substr(0, sample.size() - 4) + ".regxml.xml";
        PackageFacts expected = factsFromRegXml(rendering);
        ASSERT_FALSE(expected.empty()) << rendering;
        int status = -1;
        Json info = infoJson(sample, &status);
        EXPECT_EQ(status, 0);
        PackageFacts found = factsFromJson(info);
        EXPECT_EQ(found.size(), expected.size());
        for (auto const & package : expected)
        {
            SCOPED_TRACE(package.first);
            ASSERT_EQ(found.count(package.first), 1u);
            EXPECT_EQ(found[package.first], package.second);
        }
        EXPECT_FALSE(info["operationalPattern"]["name"].isNull());
        EXPECT_FALSE(info["identifications"].items.empty());
    }
}

TEST(InfoTool, EditUnitsFoundEqualFfprobePacketCounts)
{
    if (!haveCommand("ffprobe"))
        GTEST_SKIP() << "ffprobe is not installed";
    for (std::string const & name : VellumTest::ffmpegFixtureNames())
    {
        SCOPED_TRACE(name);
        std::string path = VellumTest::ffmpegFixture(name);
        if (path.empty())
            GTEST_SKIP() << "ffmpeg is not installed";
        // One line per stream: its kind and its packet count.
        CommandRun probe = runCommand("ffprobe -v error -count_packets -show_entries stream=codec_type,nb_read_packets "
                                      "-of csv=p=0 " + shellQuoted(path));
        ASSERT_EQ(probe.status, 0);
        std::multimap<std::string, long long> packets;
        std::istringstream lines(probe.out);
        std::string line;
        while (std::getline(lines, line))
        {
            size_t comma = line.find(',');
            if (comma != std::string::npos)
                packets.insert(std::make_pair(line.substr(0, comma) == "video" ? "picture" : "sound",
                                              std::stoll(line.substr(comma + 1))));
        }
        ASSERT_FALSE(packets.empty()) << probe.out;

        int status = -1;
        Json info = infoJson(path, &status);
        EXPECT_EQ(status, 0);
        EXPECT_TRUE(warnings(info).empty()) << joined(warnings(info));
        unsigned compared = 0;
        for (Json const & package : info["packages"].items)
            for (Json const & track : package["tracks"].items)
            {
                Json const & found = track["found"];
                if (found.isNull())
                    continue;
                // ffmpeg hands a clip of sound out in packets of its own size: only the
                // pictures and frame-wrapped sound are counted alike.
                if (track["kind"].text == "sound" && found["clipWrapped"].text == "true")
                    continue;
                auto range = packets.equal_range(track["kind"].text);
                ASSERT_NE(range.first, range.second) << track["kind"].text;
                EXPECT_EQ(found["editUnits"].number(), range.first->second) << "track " << track["id"].text;
                packets.erase(range.first);
                ++compared;
            }
        // A file of sound alone is only checked for its warnings.
        if (name != "opatom-pcm.mxf")
        {
            EXPECT_GE(compared, 1u);
        }
    }
}

TEST(InfoTool, DamagedCopiesGiveWarningsAndExitCodeZero)
{
    std::string path = VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf");
    if (path.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    std::vector<unsigned char> const file = VellumTest::readFile(path);
    Json whole = infoJson(path);
    ASSERT_EQ(whole["partitions"].items.size(), 3u);
    uint64_t const body = uint64_t(whole["partitions"][1]["offset"].number());
    uint64_t const footer = uint64_t(whole["partitions"][2]["offset"].number());
    EXPECT_EQ(whole["partitions"][0]["kind"].text, "header");
    EXPECT_EQ(whole["partitions"][2]["kind"].text, "footer");
    EXPECT_EQ(whole["rip"].items.size(), 3u);
    EXPECT_EQ(whole["runIn"].number(), 0);

    std::string const copy = VellumTest::temporaryPath(".mxf");
    int status = -1;
    {
        // Cut in the middle of the body: no footer, no RIP, fewer edit units than the durations.
        std::vector<unsigned char> cut(file.begin(), file.begin() + long(body + (footer - body) / 2));
        writeFile(copy, cut);
        Json info = infoJson(copy, &status);
        EXPECT_EQ(status, 0);
        std::string all = joined(warnings(info));
        EXPECT_TRUE(anyWarningContains(info, "the file has no footer partition")) << all;
        EXPECT_TRUE(anyWarningContains(info, "the file has no random index pack")) << all;
        EXPECT_TRUE(anyWarningContains(info, "runs past the end of the file")) << all;
        EXPECT_TRUE(anyWarningContains(info, "the header partition at offset 0 points at a footer at " +
                                                 std::to_string(footer) + ", but the file has no footer"))
            << all;
        EXPECT_TRUE(anyWarningContains(info, "of the source package has a duration of 50 edit units, but")) << all;
        EXPECT_FALSE(info["packages"].items.empty());
    }
    {
        // Without its RIP.
        uint64_t ripLength = (uint64_t(file[file.size() - 4]) << 24) | (uint64_t(file[file.size() - 3]) << 16) |
                             (uint64_t(file[file.size() - 2]) << 8) | file[file.size() - 1];
        ASSERT_LT(ripLength, file.size());
        writeFile(copy, std::vector<unsigned char>(file.begin(), file.end() - long(ripLength)));
        Json info = infoJson(copy, &status);
        EXPECT_EQ(status, 0);
        EXPECT_TRUE(info["rip"].isNull());
        EXPECT_EQ(warnings(info), std::vector<std::string>{"the file has no random index pack"});
    }
    {
        // A run-in of 100 bytes: every offset in the packs is still right.
        std::vector<unsigned char> runIn(file.size() + 100, 0);
        std::copy(file.begin(), file.end(), runIn.begin() + 100);
        writeFile(copy, runIn);
        Json info = infoJson(copy, &status);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(info["runIn"].number(), 100);
        EXPECT_EQ(info["partitions"][1]["offset"].number(), (long long)(body + 100));
        EXPECT_TRUE(warnings(info).empty()) << joined(warnings(info));
    }
    {
        // The header's footer pointer at the body partition; the RIP also lists a partition that
        // is not there.
        std::vector<unsigned char> bad = file;
        put64(bad, valueStart(bad, 0) + 24, body);
        // The last entry of the RIP: body SID and offset, in front of the pack's length.
        size_t const lastEntry = file.size() - 4 - 12;
        ASSERT_EQ(get64(bad, lastEntry + 4), footer);
        put64(bad, lastEntry + 4, footer + 8);
        writeFile(copy, bad);
        Json info = infoJson(copy, &status);
        EXPECT_EQ(status, 0);
        std::string all = joined(warnings(info));
        EXPECT_TRUE(anyWarningContains(info, "the header partition at offset 0 points at a footer at " +
                                                 std::to_string(body) + ", but the footer is at " +
                                                 std::to_string(footer)))
            << all;
        EXPECT_TRUE(anyWarningContains(info, "the random index pack lists a partition at " + std::to_string(footer + 8) +
                                                 " (body SID 0) that is not there"))
            << all;
        EXPECT_TRUE(anyWarningContains(info, "the footer partition at offset " + std::to_string(footer) +
                                                 " is missing from the random index pack"))
            << all;
    }
    {
        // Not MXF at all: exit code 1 and a message.
        writeFile(copy, std::vector<unsigned char>(1000, 0x20));
        CommandRun run = runVellum("info " + shellQuoted(copy) + " 2>&1");
        EXPECT_EQ(run.status, 1);
        EXPECT_NE(run.out.find("vellum info: "), std::string::npos) << run.out;
    }
    std::remove(copy.c_str());
    EXPECT_EQ(runVellum("info 2>/dev/null").status, 2);
    EXPECT_EQ(runVellum("info a b 2>/dev/null").status, 2);
}

TEST(InfoTool, SummarisesTheExampleFileReadably)
{
    CommandRun run = runVellum(shellQuoted(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf").insert(0, "info "));
    EXPECT_EQ(run.status, 0);
    for (char const * line :
         {"operational pattern: MXF OP1a SingleItem SinglePackage MultiTrack Stream Internal",
          "essence container: MXF-GC Frame-wrapped MPEG-ES VideoStream-0 SID", "random index pack: 3 entries",
          "  track 2  picture    number 15010500  edit rate 25/1  origin 0  duration 5 (00:00:00:05)",
          "    found: 5 edit units in 5 elements, 2485 bytes", "index table segments: 1"})
        EXPECT_NE(run.out.find(line), std::string::npos) << line << "\n" << run.out;
    EXPECT_EQ(run.out.find("warning:"), std::string::npos) << run.out;
}
