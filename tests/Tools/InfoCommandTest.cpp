// Runs `vellum info` on the sample files, on ffmpeg-made files and on damaged copies, and checks
// what it says against independent sources: the RegXML renderings beside the samples, ffprobe's
// packet counts, and the damage the test itself did.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "Support/Fixtures.h"
#include "Tools/ToolSupport.h"

#include <nlohmann/json.hpp>

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

// Enough XML for the renderings: elements named without their prefix, attributes skipped, text.
XmlNode parseXml(std::string const & xml)
{
    XmlNode root;
    std::vector<XmlNode *> open{&root};
    for (size_t at = 0, lt, gt; (lt = xml.find('<', at)) != std::string::npos && (gt = xml.find('>', lt)) != std::string::npos;
         at = gt + 1)
    {
        open.back()->text += xml.substr(at, lt - at);
        std::string const tag = xml.substr(lt + 1, gt - lt - 1);
        if (tag.empty() || tag[0] == '?' || tag[0] == '!')
            continue;
        if (tag[0] == '/' && open.size() > 1)
            open.pop_back();
        if (tag[0] == '/')
            continue;
        std::string const name = tag.substr(0, tag.find_first_of(" \t\r\n/>"));
        open.back()->children.push_back(XmlNode{name.substr(name.find(':') + 1), std::string(), {}});
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

// One track as both sides describe it: "id number editRate origin duration".
typedef std::string TrackFacts;
typedef std::map<std::string, std::vector<TrackFacts>> PackageFacts; // package UID -> tracks

PackageFacts factsFromRegXml(std::string const & path)
{
    std::vector<unsigned char> const bytes = VellumTest::readFile(path);
    XmlNode root = parseXml(std::string(bytes.begin(), bytes.end()));
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
            std::string const number = trimmed(track.childText("EssenceTrackNumber"));
            std::string const origin = trimmed(track.childText("Origin"));
            XmlNode const * segment = track.child("TrackSegment");
            XmlNode const * sequence = segment ? segment->child("Sequence") : nullptr;
            tracks.push_back(trimmed(track.childText("TrackID")) + " " + (number.empty() ? "0" : number) + " " +
                             trimmed(track.childText("EditRate")) + " " + (origin.empty() ? "0" : origin) + " " +
                             (sequence ? trimmed(sequence->childText("ComponentLength")) : std::string()));
        }
    }
    return facts;
}

using Json = nlohmann::json;

PackageFacts factsFromJson(Json const & info)
{
    PackageFacts facts;
    for (Json const & package : info["packages"])
    {
        std::vector<TrackFacts> & tracks = facts[lower(package["uid"].get<std::string>())];
        for (Json const & t : package["tracks"])
            tracks.push_back(t["id"].dump() + " " + t["number"].dump() + " " + t["editRate"].get<std::string>() + " " +
                             t["origin"].dump() + " " + (t["duration"].is_null() ? "" : t["duration"].dump()));
    }
    return facts;
}

Json infoJson(std::string const & path, int * status = nullptr)
{
    CommandRun run = runVellum("info --json " + shellQuoted(path));
    if (status)
        *status = run.status;
    return Json::parse(run.out);
}

std::string warnings(Json const & info)
{
    std::string all;
    for (Json const & w : info["warnings"])
        all += w.get<std::string>() + "\n";
    return all;
}

// The big-endian number of `size` bytes at `at`, and writing one.
std::uint64_t get(std::vector<unsigned char> const & b, size_t at, unsigned size)
{
    std::uint64_t v = 0;
    for (unsigned i = 0; i < size; ++i)
        v = (v << 8) | b[at + i];
    return v;
}

void put64(std::vector<unsigned char> & b, size_t at, std::uint64_t v)
{
    for (int i = 7; i >= 0; --i, v >>= 8)
        b[at + size_t(i)] = static_cast<unsigned char>(v & 0xff);
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
        EXPECT_EQ(expected, factsFromJson(info));
        EXPECT_FALSE(info["operationalPattern"]["name"].is_null());
        EXPECT_FALSE(info["identifications"].empty());
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
        EXPECT_EQ("", warnings(info));
        unsigned compared = 0;
        for (Json const & package : info["packages"])
            for (Json const & track : package["tracks"])
            {
                if (!track.contains("found"))
                    continue;
                Json const & found = track["found"];
                std::string const kind = track["kind"];
                // ffmpeg hands a clip of sound out in packets of its own size: only the
                // pictures and frame-wrapped sound are counted alike.
                if (kind == "sound" && found["clipWrapped"] == true)
                    continue;
                auto range = packets.equal_range(kind);
                ASSERT_NE(range.first, range.second) << kind;
                EXPECT_EQ(found["editUnits"], range.first->second) << "track " << track["id"];
                packets.erase(range.first);
                ++compared;
            }
        // A file of sound alone is only checked for its warnings.
        EXPECT_TRUE(compared >= 1u || name == "opatom-pcm.mxf");
    }
}

// The warnings are the findings of the check, in its words, with the disagreements of the
// metadata and the essence found.
TEST(InfoTool, DamagedCopiesGiveWarningsAndExitCodeZero)
{
    std::string path = VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf");
    if (path.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    std::vector<unsigned char> const file = VellumTest::readFile(path);
    Json whole = infoJson(path);
    ASSERT_EQ(whole["partitions"].size(), 3u);
    std::uint64_t const body = whole["partitions"][1]["offset"], footer = whole["partitions"][2]["offset"];
    std::string const B = std::to_string(body), F = std::to_string(footer);
    EXPECT_EQ(whole["partitions"][0]["kind"], "header");
    EXPECT_EQ(whole["partitions"][2]["kind"], "footer");
    EXPECT_EQ(whole["rip"].size(), 3u);
    EXPECT_EQ(whole["runIn"], 0);
    std::uint64_t const rip = file.size() - get(file, file.size() - 4, 4);
    size_t const headerValue = 17 + ((file[16] & 0x80) ? (file[16] & 0x7f) : 0);
    ASSERT_EQ(get(file, file.size() - 4 - 12 + 4, 8), footer);

    std::vector<unsigned char> cut(file.begin(), file.begin() + long(body + (footer - body) / 2));
    std::vector<unsigned char> noRip(file.begin(), file.begin() + long(rip));
    std::vector<unsigned char> runIn(file.size() + 100, 0);
    std::copy(file.begin(), file.end(), runIn.begin() + 100);
    // The header's footer pointer at the body; the RIP's last entry next to the footer.
    std::vector<unsigned char> pointers = file;
    put64(pointers, headerValue + 24, body);
    put64(pointers, file.size() - 4 - 12 + 4, footer + 8);
    struct Case
    {
        std::vector<unsigned char> const & bytes;
        std::vector<std::string> warnings; // the start of each
    };
    std::vector<Case> const cases = {
        {cut,
         {"footer-pointer at 0: FooterPartition is " + F + ", but the file has no footer partition (past the end",
          "footer-pointer at " + B + ": FooterPartition is " + F, "truncated at ",
          "track 2 (number 0x15010500) of the source package has a duration of 50 edit units, but ",
          "track 3 (number 0x16010300) of the source package has a duration of 50 edit units, but "}},
        {noRip, {"rip-missing at " + std::to_string(rip) + ": the file has a footer partition but no random index pack"}},
        {runIn, {}},
        {pointers,
         {"footer-pointer at 0: FooterPartition is " + B + ", but the footer partition stands at " + F +
              " (the body partition)",
          "rip-incomplete at " + F + ": the footer partition at " + F + " is missing from", "reader-footer at " + F,
          "rip-entry at " + std::to_string(rip) + ": the entry for offset " + std::to_string(footer + 8) +
              " (BodySID 0) does not point at a partition (inside the footer partition at " + F + ")"}}};
    std::string const copy = VellumTest::temporaryPath(".mxf");
    for (Case const & c : cases)
    {
        writeBytes(copy, c.bytes);
        int status = -1;
        Json info = infoJson(copy, &status);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(info["runIn"], &c.bytes == &runIn ? 100 : 0);
        ASSERT_EQ(info["warnings"].size(), c.warnings.size()) << warnings(info);
        for (size_t i = 0; i < c.warnings.size(); ++i)
            EXPECT_EQ(0u, info["warnings"][i].get<std::string>().find(c.warnings[i])) << warnings(info);
        EXPECT_FALSE(info["packages"].empty());
    }
    writeBytes(copy, std::vector<unsigned char>(1000, 0x20));
    CommandRun run = runVellum("info " + shellQuoted(copy));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "vellum: " + copy + ": no partition pack was found: this is not an MXF file\n");
    std::remove(copy.c_str());
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

namespace
{
// A descriptor of a class the library has no class of its own for (an MGA sound descriptor) is a
// file descriptor by the register's class tree: it describes its track.
TEST(InfoTool, DescriptorsOfRegisteredSubclassesDescribeTheirTracks)
{
    std::string const path = VellumTest::sharedDir() + "/interop/ph-sadm.mxf";
    if (!std::ifstream(path).good())
        GTEST_SKIP() << path << " is not here";
    Json const info = infoJson(path);
    Json const * sound = nullptr;
    for (Json const & package : info["packages"])
        for (Json const & d : package["descriptors"])
            if (d["linkedTrackID"] == 2)
                sound = &d;
    ASSERT_NE(nullptr, sound) << info.dump(1);
    EXPECT_EQ("06.0e.2b.34.04.01.01.0d.0d.01.03.01.02.25.02.00", (*sound)["essenceContainer"]["label"]);
    EXPECT_EQ(5, (*sound)["channels"]);
    EXPECT_EQ("48000/1", (*sound)["audioSamplingRate"]);
}
} // namespace
