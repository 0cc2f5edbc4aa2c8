// What every command shares: --help, usage errors, the report of a file that cannot be read, and
// `vellum check`'s two forms of output (the findings themselves are FileChecker's tests).

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Support/Fixtures.h"
#include "Tools/ToolSupport.h"

using namespace VellumToolTest;

TEST(ToolCommandLine, EveryCommandHelpsRefusesWrongUseAndReportsAMissingFileAlike)
{
    struct Command
    {
        std::string name, wrongUse, missingFile;
    };
    std::vector<Command> const commands = {{"info", "info", "info /nonexistent/file.mxf"},
                                           {"klv", "klv --limit x f.mxf", "klv /nonexistent/file.mxf"},
                                           {"meta", "meta a.mxf b.mxf", "meta /nonexistent/file.mxf --json"},
                                           {"check", "check --bogus f.mxf", "check /nonexistent/file.mxf"},
                                           {"unwrap", "unwrap f.mxf", "unwrap /nonexistent/file.mxf /tmp/x"},
                                           {"dict", "dict Preface Sequence", ""}};
    for (Command const & c : commands)
    {
        SCOPED_TRACE(c.name);
        CommandRun help = runVellum(c.name + " --help");
        EXPECT_EQ(0, help.status);
        EXPECT_TRUE(has(help.out, "Usage: vellum " + c.name)) << help.out;
        CommandRun wrong = runVellum(c.wrongUse);
        EXPECT_EQ(2, wrong.status) << wrong.out;
        EXPECT_TRUE(has(wrong.out, "Run with --help for more information.")) << wrong.out;
        if (c.missingFile.empty())
            continue;
        CommandRun missing = runVellum(c.missingFile);
        EXPECT_EQ(1, missing.status);
        EXPECT_EQ(0u, missing.out.find("vellum: /nonexistent/file.mxf: "));
        EXPECT_TRUE(has(missing.out, "Error opening: '/nonexistent/file.mxf'")) << missing.out;
        EXPECT_FALSE(has(missing.out, ".cpp:")) << missing.out;
    }
    EXPECT_EQ(2, runVellum("").status);
    EXPECT_EQ(2, runVellum("nosuchcommand").status);
    EXPECT_EQ(0u, runVellum("--version").out.find("vellum "));
}

TEST(ToolCommandLine, CheckPrintsOneLineAFindingOrJson)
{
    CommandRun run = runVellum("check " + smallExample());
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(smallExample() + ": no findings\n", run.out);

    // Without its RIP the file has one finding; a name with a quote is escaped in JSON.
    std::vector<unsigned char> bytes = VellumTest::readFile(smallExample());
    bytes.resize(34816);
    std::string const path = VellumTest::temporaryPath("-\"quoted\".mxf");
    writeBytes(path, bytes);
    run = runVellum("check " + shellQuoted(path));
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("       34816  rip-missing: the file has a footer partition but no random index pack\n" + path +
                  ": 1 finding\n",
              run.out);
    run = runVellum("check --json " + shellQuoted(path));
    EXPECT_EQ(1, run.status);
    nlohmann::json const json = nlohmann::json::parse(run.out);
    EXPECT_EQ(path, json["file"]);
    ASSERT_EQ(1u, json["findings"].size());
    EXPECT_EQ(nlohmann::json({{"offset", 34816},
                              {"code", "rip-missing"},
                              {"message", "the file has a footer partition but no random index pack"}}),
              json["findings"][0]);
    std::remove(path.c_str());
}
