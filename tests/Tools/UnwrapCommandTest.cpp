// Runs `vellum unwrap` on ffmpeg-made files and compares each track file with what ffmpeg copies
// out of the same file.

#include <gtest/gtest.h>

#include <dirent.h>
#include <numeric>
#include <sstream>

#include "Support/Fixtures.h"
#include "Tools/ToolSupport.h"

using namespace VellumToolTest;

namespace
{
// The files in a folder whose names end in one of the extensions.
std::vector<std::string> filesEndingIn(std::string const & directory, std::vector<std::string> const & extensions)
{
    std::vector<std::string> found;
    DIR * dir = ::opendir(directory.c_str());
    if (!dir)
        return found;
    while (dirent * entry = ::readdir(dir))
    {
        std::string name = entry->d_name;
        for (std::string const & extension : extensions)
            if (name.size() > extension.size() && name.compare(name.size() - extension.size(), extension.size(), extension) == 0)
                found.push_back(directory + "/" + name);
    }
    ::closedir(dir);
    return found;
}

void removeAll(std::string const & directory) { runCommand("rm -rf " + shellQuoted(directory)); }

std::vector<unsigned char> ffmpegCopy(std::string const & path, std::string const & map, std::string const & format)
{
    std::string out = VellumTest::temporaryPath("." + format);
    runCommand("ffmpeg -v error -nostdin -y -i " + shellQuoted(path) + " -map " + map + " -c copy -f " + format + " " +
               shellQuoted(out));
    std::vector<unsigned char> bytes = VellumTest::readFile(out);
    std::remove(out.c_str());
    return bytes;
}

// Byte sizes of the video packets, as ffprobe lists them.
std::vector<size_t> videoPacketSizes(std::string const & path)
{
    CommandRun run = runCommand("ffprobe -v error -select_streams v -show_entries packet=size -of csv=p=0 " +
                                shellQuoted(path));
    std::vector<size_t> sizes;
    std::istringstream lines(run.out);
    std::string line;
    while (std::getline(lines, line))
        if (!line.empty())
            sizes.push_back(size_t(std::stoull(line)));
    return sizes;
}

// A track of a fixture, the file it is written to, and how ffmpeg copies the same out.
struct Track
{
    char const * fixture;
    std::vector<std::string> extensions;
    char const * map;
    char const * format; // ffmpeg's muxer for the elementary stream
};

Track const TRACKS[] = {{"op1a-mpeg2-pcm.mxf", {".m2v"}, "0:v", "mpeg2video"},
                        {"op1a-mpeg2-open-gop.mxf", {".m2v"}, "0:v", "mpeg2video"},
                        {"d10.mxf", {".m2v"}, "0:v", "mpeg2video"},
                        {"opatom-dnxhd.mxf", {".vc3"}, "0:v", "rawvideo"},
                        {"op1a-mpeg2-pcm.mxf", {".aes3", ".pcm"}, "0:a", "s16le"},
                        {"opatom-pcm.mxf", {".aes3", ".pcm"}, "0:a", "s24le"}};
} // namespace

TEST(UnwrapTool, EachTrackIsByteIdenticalToFfmpegsCopy)
{
    for (Track const & track : TRACKS)
    {
        SCOPED_TRACE(std::string(track.fixture) + " " + track.map);
        std::string path = VellumTest::ffmpegFixture(track.fixture);
        if (path.empty())
            GTEST_SKIP() << "ffmpeg is not installed";
        std::string dir = VellumTest::temporaryPath("-unwrap");
        CommandRun run = runVellum("unwrap " + shellQuoted(path) + " " + shellQuoted(dir + "/deeper"));
        EXPECT_EQ(run.status, 0) << run.out;
        std::vector<std::string> files = filesEndingIn(dir + "/deeper", track.extensions);
        ASSERT_EQ(files.size(), 1u) << run.out;
        std::vector<unsigned char> expected = ffmpegCopy(path, track.map, track.format);
        ASSERT_FALSE(expected.empty());
        EXPECT_TRUE(VellumTest::readFile(files[0]) == expected);
        // The summary names each file with its packets (for pictures, ffprobe's) and bytes.
        std::string const packets =
            track.map[2] == 'v' ? std::to_string(videoPacketSizes(path).size()) + " packets, " : " packets, ";
        EXPECT_TRUE(has(run.out, packets + std::to_string(expected.size()) + " bytes\n")) << run.out;
        EXPECT_TRUE(has(run.out, files[0] + ": ")) << run.out;
        removeAll(dir);
    }
}

TEST(UnwrapTool, ARangeOfIntraFramesIsThoseFramesAndOneTrackIsOneFile)
{
    for (char const * name : {"d10.mxf", "opatom-dnxhd.mxf"})
    {
        SCOPED_TRACE(name);
        std::string path = VellumTest::ffmpegFixture(name);
        if (path.empty())
            GTEST_SKIP() << "ffmpeg is not installed";
        std::vector<unsigned char> all = ffmpegCopy(path, "0:v", std::string(name) == "d10.mxf" ? "mpeg2video" : "rawvideo");
        std::vector<size_t> sizes = videoPacketSizes(path);
        ASSERT_GE(sizes.size(), 5u);
        size_t const from = std::accumulate(sizes.begin(), sizes.begin() + 3, size_t(0));
        size_t const length = std::accumulate(sizes.begin() + 3, sizes.begin() + 5, size_t(0));
        ASSERT_LE(from + length, all.size());

        std::string dir = VellumTest::temporaryPath("-unwrap");
        CommandRun run = runVellum("unwrap " + shellQuoted(path) + " " + shellQuoted(dir) + " --track 2 --range 3:2");
        EXPECT_EQ(run.status, 0) << run.out;
        std::vector<std::string> files = filesEndingIn(dir, {".m2v", ".vc3", ".bin", ".aes3", ".pcm"});
        ASSERT_EQ(files.size(), 1u) << run.out;
        EXPECT_NE(files[0].find("/track-2."), std::string::npos);
        std::vector<unsigned char> written = VellumTest::readFile(files[0]);
        EXPECT_TRUE(written == std::vector<unsigned char>(all.begin() + long(from), all.begin() + long(from + length)))
            << written.size() << " bytes written, " << length << " expected";

        // A range that starts past the end writes nothing and fails.
        CommandRun past = runVellum("unwrap " + shellQuoted(path) + " " + shellQuoted(dir + "/past") + " --range " +
                                    std::to_string(sizes.size()) + ":1");
        EXPECT_EQ(past.status, 1) << past.out;
        EXPECT_TRUE(filesEndingIn(dir + "/past", {".m2v", ".vc3"}).empty());
        // A range that is no range, and a track that is not there.
        for (char const * wrong : {" --range 3", " --track x", " --range 3:x", " --track 9"})
            EXPECT_EQ(2, runVellum("unwrap " + shellQuoted(path) + " " + shellQuoted(dir) + wrong).status) << wrong;
        EXPECT_TRUE(has(runVellum("unwrap " + shellQuoted(path) + " " + shellQuoted(dir) + " --track 9").out,
                        "the package has no essence track 9 (its tracks: 2)"));
        removeAll(dir);
    }
}
