// Runs `vellum meta` over the example and sample files and checks the tree it prints.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include "Support/Fixtures.h"

namespace
{
struct ToolRun
{
    int status;
    std::string out;
};

ToolRun runMeta(std::string const & arguments)
{
    std::string command = std::string(VELLUM_TOOL_PATH) + " meta " + arguments + " 2>&1";
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

std::string sample(char const * name) { return VellumTest::sharedDir() + "/samples/" + name; }
} // namespace

TEST(MetaTool, PrintsTheTreeFromThePrefaceDown)
{
    VELLUM_REQUIRE_SHARED();
    ToolRun run = runMeta(sample("escape-chars.mxf"));
    ASSERT_EQ(0, run.status) << run.out;
    EXPECT_TRUE(has(run.out, "\nPreface [urn:uuid:dc1102ae-c3a6-4598-9fb9-5f892bf2da5a]\n")) << run.out;
    // Children stand below the element that refers to them, two steps further in.
    EXPECT_TRUE(has(run.out, "\n  ContentStorageObject: urn:uuid:b1f317b6-13f5-4c5a-b7fa-cc9b68e462ea\n"
                             "    ContentStorage [urn:uuid:b1f317b6-13f5-4c5a-b7fa-cc9b68e462ea]\n"));
    EXPECT_TRUE(has(run.out, "OperationalPattern: 06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00 (MXFOP1a)"));
    EXPECT_TRUE(has(run.out, "ComponentDataDefinition: 06.0e.2b.34.04.01.01.01.01.03.02.02.02.00.00.00 (SoundEssenceTrack)"));
    EXPECT_TRUE(has(run.out, "TrackName: \"Sound Track\""));
    EXPECT_TRUE(has(run.out, "EditRate: 48000/1"));
    EXPECT_TRUE(has(run.out, "PackageID: urn:smpte:umid:060a2b340101010501010f2013000000d664fb8cd4dd4c0cb61e624d1ac800ad"));
    EXPECT_TRUE(has(run.out, "FileLastModified: 2018-06-22T19:24:06.000Z"));
    EXPECT_TRUE(has(run.out, "ToolkitVersion: 2.7.19.27240.1"));
    EXPECT_TRUE(has(run.out, "FormatVersion: 1.3"));
    EXPECT_TRUE(has(run.out, "            WAVEAudioEssenceDescriptor [urn:uuid:d5afd00f-01ad-4c8a-981e-19119d4ee7a5]\n"));
    EXPECT_FALSE(has(run.out, "orphans:"));
    EXPECT_FALSE(has(run.out, "dark sets:"));
}

TEST(MetaTool, MarksInvalidElementsAndOrphans)
{
    VELLUM_REQUIRE_SHARED();
    ToolRun run = runMeta(sample("indirect.mxf"));
    ASSERT_EQ(0, run.status) << run.out.substr(0, 2000);
    EXPECT_TRUE(has(run.out, "!<unknown> (unknown tag 0xfff9): 0x")) << run.out.substr(0, 2000);
    EXPECT_TRUE(has(run.out, "\norphans: "));
    EXPECT_TRUE(has(run.out, "\n  orphan "));
}

TEST(MetaTool, GivesTheSameAsJson)
{
    VELLUM_REQUIRE_SHARED();
    ToolRun run = runMeta(sample("escape-chars.mxf") + " --json");
    ASSERT_EQ(0, run.status) << run.out;
    EXPECT_EQ('{', run.out.front());
    EXPECT_TRUE(has(run.out, "\"class\": \"Preface\""));
    EXPECT_TRUE(has(run.out, "\"instanceUID\": \"urn:uuid:dc1102ae-c3a6-4598-9fb9-5f892bf2da5a\""));
    EXPECT_TRUE(has(run.out, "{\"name\": \"TrackName\", \"value\": \"\\\"Sound Track\\\"\"}"));
    EXPECT_TRUE(has(run.out, "\"orphans\": []"));
    int depth = 0;
    bool inString = false;
    for (size_t i = 0; i < run.out.size(); ++i)
    {
        char c = run.out[i];
        if (inString)
        {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
            continue;
        }
        if (c == '"')
            inString = true;
        else if (c == '{' || c == '[')
            ++depth;
        else if (c == '}' || c == ']')
            --depth;
        ASSERT_GE(depth, 0);
    }
    EXPECT_EQ(0, depth);
    EXPECT_FALSE(inString);
}

TEST(MetaTool, ReadsTheExampleFile)
{
    ToolRun run = runMeta(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf");
    ASSERT_EQ(0, run.status) << run.out;
    EXPECT_TRUE(has(run.out, "\nPreface [urn:uuid:"));
    EXPECT_TRUE(has(run.out, "SourcePackage [urn:uuid:"));
    EXPECT_TRUE(has(run.out, "MaterialPackage [urn:uuid:"));
}

TEST(MetaTool, RefusesWhatItCannotRead)
{
    ToolRun usage = runMeta("");
    EXPECT_EQ(2, usage.status);
    EXPECT_TRUE(has(usage.out, "usage: vellum meta FILE [--json]"));
    EXPECT_EQ(2, runMeta("a.mxf b.mxf").status);

    ToolRun missing = runMeta("/nonexistent/file.mxf");
    EXPECT_EQ(1, missing.status);
    EXPECT_TRUE(has(missing.out, "vellum meta: "));

    std::string path = VellumTest::temporaryPath(".mxf");
    {
        std::ofstream out(path, std::ios::binary);
        out << std::string(300, 'x');
    }
    ToolRun garbage = runMeta(path);
    EXPECT_EQ(1, garbage.status);
    EXPECT_TRUE(has(garbage.out, "vellum meta: "));
    std::remove(path.c_str());
}
