// Runs `vellum meta` over the example and sample files and checks the tree it prints.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Support/Fixtures.h"
#include "Tools/ToolSupport.h"

using namespace VellumToolTest;

namespace
{
std::string sample(char const * name) { return VellumTest::sharedDir() + "/samples/" + name; }
} // namespace

TEST(MetaTool, PrintsTheTreeFromThePrefaceDown)
{
    VELLUM_REQUIRE_SHARED();
    CommandRun run = runVellum("meta " + sample("escape-chars.mxf"));
    ASSERT_EQ(0, run.status) << run.out;
    // Children stand below the element that refers to them, two steps further in.
    for (char const * part :
         {"\nPreface [urn:uuid:dc1102ae-c3a6-4598-9fb9-5f892bf2da5a]\n",
          "\n  ContentStorageObject: urn:uuid:b1f317b6-13f5-4c5a-b7fa-cc9b68e462ea\n"
          "    ContentStorage [urn:uuid:b1f317b6-13f5-4c5a-b7fa-cc9b68e462ea]\n",
          "OperationalPattern: 06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00 (MXFOP1a)",
          "ComponentDataDefinition: 06.0e.2b.34.04.01.01.01.01.03.02.02.02.00.00.00 (SoundEssenceTrack)",
          "TrackName: \"Sound Track\"", "EditRate: 48000/1",
          "PackageID: urn:smpte:umid:060a2b34.01010105.01010f20.13000000.d664fb8c.d4dd4c0c.b61e624d.1ac800ad",
          "FileLastModified: 2018-06-22T19:24:06.000Z", "ToolkitVersion: 2.7.19.27240.1", "FormatVersion: 1.3",
          "            WAVEAudioEssenceDescriptor [urn:uuid:d5afd00f-01ad-4c8a-981e-19119d4ee7a5]\n"})
        EXPECT_TRUE(has(run.out, part)) << part;
    EXPECT_FALSE(has(run.out, "orphans:"));
    EXPECT_FALSE(has(run.out, "dark sets:"));

    // The same as JSON.
    run = runVellum("meta " + sample("escape-chars.mxf") + " --json");
    ASSERT_EQ(0, run.status);
    nlohmann::json const json = nlohmann::json::parse(run.out);
    ASSERT_EQ(1u, json["prefaces"].size());
    nlohmann::json const & preface = json["prefaces"][0];
    EXPECT_EQ("Preface", preface["class"]);
    EXPECT_EQ("urn:uuid:dc1102ae-c3a6-4598-9fb9-5f892bf2da5a", preface["instanceUID"]);
    EXPECT_TRUE(json["orphans"].empty());
    EXPECT_TRUE(has(run.out, "\"value\": \"\\\"Sound Track\\\"\""));
}

TEST(MetaTool, MarksInvalidElementsAndOrphans)
{
    VELLUM_REQUIRE_SHARED();
    CommandRun run = runVellum("meta " + sample("indirect.mxf"));
    ASSERT_EQ(0, run.status) << run.out.substr(0, 2000);
    EXPECT_TRUE(has(run.out, "!<unknown> (unknown tag 0xfff9): 0x")) << run.out.substr(0, 2000);
    EXPECT_TRUE(has(run.out, "\norphans: "));
    EXPECT_TRUE(has(run.out, "\n  orphan "));
}

// HeaderByteCount counts from the Primer's key, whatever fill stands between it and the pack.
TEST(MetaTool, ReadsEverySetOfTheHeaderMetadata)
{
    std::vector<std::string> files = VellumTest::ffmpegFixtureFiles();
    files.push_back(smallExample());
    for (std::string const & path : files)
    {
        CommandRun run = runVellum("meta --json " + shellQuoted(path));
        ASSERT_EQ(0, run.status) << run.out;
        nlohmann::json const json = nlohmann::json::parse(run.out);
        CommandRun klv = runVellum("klv " + shellQuoted(path));
        size_t const header = klv.out.find("partition pack (body");
        size_t const footer = klv.out.find("partition pack (footer");
        std::string const headerPackets = klv.out.substr(0, std::min(header, footer));
        EXPECT_EQ(occurrences(headerPackets, "  local set\n"), json["sets"].get<size_t>()) << path;
        EXPECT_TRUE(json["skipped"].empty()) << path;
    }

    std::string const garbage = VellumTest::temporaryPath(".mxf");
    writeBytes(garbage, std::vector<unsigned char>(300, 'x'));
    CommandRun run = runVellum("meta " + garbage);
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(0u, run.out.find("vellum: " + garbage + ": ")) << run.out;
    std::remove(garbage.c_str());
}
