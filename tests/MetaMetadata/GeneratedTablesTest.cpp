// The committed dictionary tables are what the generator makes from the registers beside the
// project: a register update or a hand edit of a table shows here.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "Support/Fixtures.h"

TEST(GeneratedTables, MatchTheRegisters)
{
    VELLUM_REQUIRE_SHARED();
    if (std::system("command -v python3 >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "python3 is not installed";
    std::string root = VellumTest::temporaryPath("-generated");
    std::string source = VELLUM_SOURCE_DIR;
    std::string command = "mkdir -p '" + root + "/src/MetaMetadata' '" + root + "/src/Metadata' '" + root +
                          "/tests/MetaMetadata' && python3 '" + source + "/tools/generate_dictionary.py' --registers '" +
                          VellumTest::sharedDir() + "/registers' --root '" + root + "' >/dev/null";
    ASSERT_EQ(0, std::system(command.c_str()));
    for (char const * table : {"src/MetaMetadata/StandardDictionaryTables.inc", "src/Metadata/NamedConstantsTable.inc",
                               "tests/MetaMetadata/StandardRegisterTestTable.inc"})
    {
        std::vector<unsigned char> made = VellumTest::readFile(root + "/" + table);
        std::vector<unsigned char> committed = VellumTest::readFile(source + "/" + table);
        EXPECT_FALSE(made.empty()) << table;
        EXPECT_TRUE(made == committed) << table << " differs from what the generator makes";
    }
    std::system(("rm -rf '" + root + "'").c_str());
}
