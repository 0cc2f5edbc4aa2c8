// Runs `vellum dict` and checks what it lists against the built-in dictionary.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace
{
struct ToolRun
{
    int status;
    std::string out;
};

ToolRun runDict(std::string const & arguments)
{
    std::string command = std::string(VELLUM_TOOL_PATH) + " dict " + arguments + " 2>&1";
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

std::vector<std::string> linesOf(std::string const & text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line))
        lines.push_back(line);
    return lines;
}

bool hasLine(std::vector<std::string> const & lines, std::vector<std::string> const & parts)
{
    for (std::string const & line : lines)
    {
        bool all = true;
        for (std::string const & part : parts)
            all = all && line.find(part) != std::string::npos;
        if (all)
            return true;
    }
    return false;
}
} // namespace

TEST(DictTool, ListsTheSetsWithTheirKeys)
{
    ToolRun run = runDict("");
    ASSERT_EQ(0, run.status) << run.out;
    std::vector<std::string> lines = linesOf(run.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(hasLine(lines, {"06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00", "Preface"}));
    EXPECT_TRUE(hasLine(lines, {"06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.28.00", "CDCIDescriptor"}));
    EXPECT_TRUE(hasLine(lines, {"06.0e.2b.34.02.53.01.01.0d.01.04.01.01.01.02.00", "ClipFramework"}));
    // One line for each set, then the count and the register snapshot.
    EXPECT_EQ(0u, lines.back().find(std::to_string(lines.size() - 1) + " sets; registers: Groups.xml sha256:"))
        << lines.back();
}

TEST(DictTool, ListsTheAttributesOfOneSet)
{
    ToolRun run = runDict("Preface");
    ASSERT_EQ(0, run.status) << run.out;
    std::vector<std::string> lines = linesOf(run.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(0u, lines[0].find("Preface  06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00  "));
    EXPECT_TRUE(hasLine(lines, {"06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00", "3c0a", "Opt", "InstanceID", "UUID"}));
    EXPECT_TRUE(hasLine(lines, {"3b02", "Req", "FileLastModified", "TimestampType"}));
    EXPECT_TRUE(hasLine(lines, {"3b03", "Req", "ContentStorageObject", "StrongReference -> ContentStorage"}));
    EXPECT_TRUE(hasLine(lines, {"3b0a", "Req", "EssenceContainers", "Batch of UL"}));
    EXPECT_TRUE(hasLine(lines, {"3b06", "IdentificationList", "Array of StrongReference -> Identification"}));
    EXPECT_TRUE(hasLine(lines, {" - ", "IsRIPPresent", "Boolean"}));

    // Case does not matter when the name is unambiguous; a key names its set too.
    ToolRun folded = runDict("preface");
    EXPECT_EQ(0, folded.status);
    EXPECT_EQ(run.out, folded.out);
    ToolRun byKey = runDict("06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00");
    EXPECT_EQ(0, byKey.status);
    EXPECT_EQ(run.out, byKey.out);

    ToolRun unknown = runDict("NoSuchSet");
    EXPECT_EQ(1, unknown.status);
    EXPECT_NE(std::string::npos, unknown.out.find("no set named 'NoSuchSet'"));
    EXPECT_EQ(2, runDict("Preface Sequence").status);
}
