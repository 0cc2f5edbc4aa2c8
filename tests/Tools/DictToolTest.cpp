// Runs `vellum dict` and checks what it lists against the built-in dictionary.

#include <gtest/gtest.h>

#include <sstream>

#include "Tools/ToolSupport.h"

using namespace VellumToolTest;

namespace
{
// Whether one line of the text holds every part.
bool hasLine(std::string const & text, std::vector<std::string> const & parts)
{
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line))
    {
        bool all = true;
        for (std::string const & part : parts)
            all = all && has(line, part);
        if (all)
            return true;
    }
    return false;
}
} // namespace

TEST(DictTool, ListsTheSetsWithTheirKeys)
{
    CommandRun run = runVellum("dict");
    ASSERT_EQ(0, run.status) << run.out;
    EXPECT_TRUE(hasLine(run.out, {"06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00", "Preface"}));
    EXPECT_TRUE(hasLine(run.out, {"06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.28.00", "CDCIDescriptor"}));
    EXPECT_TRUE(hasLine(run.out, {"06.0e.2b.34.02.53.01.01.0d.01.04.01.01.01.02.00", "ClipFramework"}));
    // One line for each set, then the count and the register snapshot.
    size_t const lines = occurrences(run.out, "\n");
    EXPECT_TRUE(has(run.out, "\n" + std::to_string(lines - 1) + " sets; registers: Groups.xml sha256:")) << lines;
}

TEST(DictTool, ListsTheAttributesOfOneSet)
{
    CommandRun run = runVellum("dict Preface");
    ASSERT_EQ(0, run.status) << run.out;
    EXPECT_EQ(0u, run.out.find("Preface  06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00  "));
    EXPECT_TRUE(hasLine(run.out, {"06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00", "3c0a", "Opt", "InstanceID", "UUID"}));
    EXPECT_TRUE(hasLine(run.out, {"3b02", "Req", "FileLastModified", "TimestampType"}));
    EXPECT_TRUE(hasLine(run.out, {"3b03", "Req", "ContentStorageObject", "StrongReference -> ContentStorage"}));
    EXPECT_TRUE(hasLine(run.out, {"3b0a", "Req", "EssenceContainers", "Batch of UL"}));
    EXPECT_TRUE(hasLine(run.out, {"3b06", "IdentificationList", "Array of StrongReference -> Identification"}));
    EXPECT_TRUE(hasLine(run.out, {" - ", "IsRIPPresent", "Boolean"}));
    // Case does not matter when the name is unambiguous; a key names its set too.
    EXPECT_EQ(run.out, runVellum("dict preface").out);
    EXPECT_EQ(run.out, runVellum("dict 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00").out);
    CommandRun unknown = runVellum("dict NoSuchSet");
    EXPECT_EQ(1, unknown.status);
    EXPECT_TRUE(has(unknown.out, "no set named 'NoSuchSet'"));
}
