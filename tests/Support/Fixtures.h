#pragma once
// Where the tests find their files: the shared sample folder beside the project, and small files
// made with ffmpeg on first use. Tests that need either skip with a message when it is absent.

#include <string>
#include <vector>

namespace VellumTest
{
// The shared folder (VELLUM_SHARED_DIR in the environment, else the one beside the project), or ""
// when it is not there.
std::string sharedDir();
// Paths of the sample MXF files in the shared folder (empty when absent).
std::vector<std::string> sampleFiles();
// Makes (once, cached in the build tree) and gives the path of a fixture made with ffmpeg, or ""
// when ffmpeg is not installed.
std::string ffmpegFixture(std::string const & name);
// Every ffmpeg fixture name.
std::vector<std::string> ffmpegFixtureNames();
// The paths of every ffmpeg fixture, made on first use (empty when ffmpeg is not installed).
std::vector<std::string> ffmpegFixtureFiles();
// The samples followed by the ffmpeg fixtures: each of them that is there.
std::vector<std::string> sampleAndFixtureFiles();
// The whole content of a file.
std::vector<unsigned char> readFile(std::string const & path);
// A fresh temporary path for the calling test.
std::string temporaryPath(std::string const & suffix);
} // namespace VellumTest

#define VELLUM_REQUIRE_SHARED()                                                                   \
    do                                                                                            \
    {                                                                                             \
        if (::VellumTest::sharedDir().empty())                                                    \
            GTEST_SKIP() << "the shared samples folder is absent (../shared/samples)";            \
    } while (false)
