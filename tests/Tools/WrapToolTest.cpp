// vellum wrap end to end: elementary streams made by ffmpeg go into MXF files that the library,
// ffmpeg, MediaInfo and GStreamer read back with the same pictures and samples.

#include <gtest/gtest.h>

#include <cstdlib>

#include "Support/Fixtures.h"
#include "Support/Process.h"

namespace
{
using namespace VellumTest;

struct WrapCase
{
    char const * name;
    // ffmpeg's arguments that make the picture stream, and the length of the sound beside it
    // (none when empty).
    char const * picture;
    char const * sound;
    char const * options;
    char const * duration; // MediaInfo's duration in milliseconds
};

// Runs ffmpeg over a test source into `out`.
void make(std::string const & arguments, std::string const & out)
{
    ASSERT_EQ(0, runCommand("ffmpeg -v error -nostdin -y " + arguments + " " + shellQuoted(out)).status) << arguments;
}

std::string vellum(std::string const & arguments) { return std::string(VELLUM_TOOL_PATH) + " " + arguments; }

std::string mediainfo(std::string const & path, std::string const & inform)
{
    std::string out = runCommand("mediainfo --Inform=" + shellQuoted(inform) + " " + shellQuoted(path)).out;
    return out.substr(0, out.find_last_not_of("\r\n") + 1);
}

// The samples of the first sound stream as raw little-endian PCM, hashed.
std::string soundHash(std::string const & path)
{
    return runCommand("ffmpeg -v error -nostdin -i " + shellQuoted(path) + " -map 0:a:0 -f s16le - | md5sum").out;
}

TEST(WrapTool, StreamsComeBackFromEveryReader)
{
    if (!haveCommand("ffmpeg") || !haveCommand("mediainfo"))
        GTEST_SKIP() << "ffmpeg or mediainfo is not installed";
    std::string const pal = "-f lavfi -i testsrc=size=176x144:rate=25 ";
    WrapCase const cases[] = {
        {"MPEG-2 long GOP and PCM at 25", "-t 2 -c:v mpeg2video -g 12 -bf 2 -f mpeg2video", "2", "--partition-seconds 1", "2000"},
        {"MPEG-2 long GOP and PCM at 30000/1001",
         "-f lavfi -i testsrc=size=352x240:rate=30000/1001 -t 1.001 -c:v mpeg2video -g 15 -bf 2 -f mpeg2video", "1.001", "",
         "1001"},
        {"D-10", "-f lavfi -i testsrc=size=720x608:rate=25 -t 0.4 -vf format=yuv422p -c:v mpeg2video -g 1 -b:v 50M "
                 "-minrate 50M -maxrate 50M -bufsize 2000000 -rc_init_occupancy 2000000 -flags +ildct+ilme -top 1 "
                 "-f mpeg2video", "0.4", "", "400"},
        {"VC-3", "-f lavfi -i testsrc=size=1920x1080:rate=25 -t 0.2 -c:v dnxhd -b:v 36M -pix_fmt yuv422p -f dnxhd", "",
         "--rate 25", "200"},
        {"JPEG 2000", "-t 0.4 -pix_fmt yuv422p -c:v jpeg2000 -format j2k -f rawvideo", "", "--rate 25 --kag 512", "400"},
        {"JPEG 2000 RGB", "-t 0.2 -pix_fmt rgb24 -c:v jpeg2000 -format j2k -f rawvideo", "", "--rate 25", "200"},
    };
    for (WrapCase const & c : cases)
    {
        SCOPED_TRACE(c.name);
        std::string const picture = temporaryPath(".es"), sound = temporaryPath(".wav"), out = temporaryPath(".mxf");
        std::string const picturePrefix = std::string(c.picture).compare(0, 2, "-t") == 0 ? pal : "";
        make(picturePrefix + c.picture, picture);
        std::string inputs = shellQuoted(picture);
        if (*c.sound != 0)
        {
            make(std::string("-f lavfi -i sine=frequency=1000:sample_rate=48000 -ac 2 -c:a pcm_s16le -t ") + c.sound, sound);
            inputs += " " + shellQuoted(sound);
        }
        ASSERT_EQ(0, runCommand(vellum("wrap " + shellQuoted(out) + " " + inputs + " " + c.options)).status);
        EXPECT_EQ(0, runCommand(vellum("check " + shellQuoted(out))).status);
        FramePackets const wrapped = frameMd5(out, "v");
        EXPECT_FALSE(wrapped.md5.empty());
        EXPECT_EQ(frameMd5(picture, "v").md5, wrapped.md5);
        if (*c.sound != 0)
        {
            EXPECT_EQ(soundHash(sound), soundHash(out));
        }
        EXPECT_EQ("OP-1a", mediainfo(out, "General;%Format_Profile%"));
        EXPECT_EQ(c.duration, mediainfo(out, "General;%Duration%"));
        if (std::string(c.picture).find("rgb24") != std::string::npos)
        {
            EXPECT_EQ("RGB", mediainfo(out, "Video;%ColorSpace%"));
        }
        if (haveCommand("gst-discoverer-1.0"))
        {
            EXPECT_NE(std::string::npos, runCommand("gst-discoverer-1.0 " + shellQuoted(out)).out.find("Duration: 0:00:0"))
                << "GStreamer does not read " << out;
        }
        for (std::string const & file : {picture, sound, out})
            std::remove(file.c_str());
    }
}

TEST(WrapTool, OPAtomFilesShareOneMaterialPackage)
{
    if (!haveCommand("ffmpeg") || !haveCommand("mediainfo"))
        GTEST_SKIP() << "ffmpeg or mediainfo is not installed";
    std::string const folder = temporaryPath("-atom");
    ASSERT_EQ(0, runCommand(vellum("wrap " + shellQuoted(folder) + " --opatom " +
                                   shellQuoted(ffmpegFixture("mpeg2-gop12.m2v")) + " " +
                                   shellQuoted(ffmpegFixture("pcm16.wav"))))
                     .status);
    std::string uid;
    for (char const * file : {"/1-mpeg2-gop12.mxf", "/2-pcm16.mxf"})
    {
        std::string const path = folder + file;
        SCOPED_TRACE(path);
        EXPECT_EQ(0, runCommand(vellum("check " + shellQuoted(path))).status);
        EXPECT_EQ("OP-Atom", mediainfo(path, "General;%Format_Profile%"));
        std::string const info = runCommand(vellum("info " + shellQuoted(path))).out;
        std::string const material = info.substr(info.find("material package "), 90);
        uid = uid.empty() ? material : uid;
        EXPECT_EQ(uid, material);
        EXPECT_EQ(0, runCommand("ffprobe -v error " + shellQuoted(path)).status);
    }
    EXPECT_EQ(frameMd5(ffmpegFixture("mpeg2-gop12.m2v"), "v").md5, frameMd5(folder + "/1-mpeg2-gop12.mxf", "v").md5);
    runCommand("rm -rf " + shellQuoted(folder));
}
} // namespace

namespace
{
TEST(WrapTool, RewrapWritesEveryLayoutThatReadersTakeBack)
{
    std::string const in = ffmpegFixture("op1a-mpeg2-pcm.mxf");
    if (in.empty() || !haveCommand("mediainfo"))
        GTEST_SKIP() << "ffmpeg or mediainfo is not installed";
    struct Layout
    {
        char const * options;
        char const * file; // the file to look at, below the output
        char const * profile;
    } const layouts[] = {{"", "", "OP-1a"}, {"--clip-wrap", "", "OP-1b"}, {"--opatom", "/track-2.mxf", "OP-Atom"}};
    for (Layout const & layout : layouts)
    {
        SCOPED_TRACE(layout.options);
        std::string const out = temporaryPath(".mxf");
        ASSERT_EQ(0, runCommand(vellum("rewrap " + shellQuoted(in) + " " + shellQuoted(out) + " " + layout.options)).status);
        std::string const path = out + layout.file;
        EXPECT_EQ(0, runCommand(vellum("check " + shellQuoted(path))).status);
        EXPECT_EQ(layout.profile, mediainfo(path, "General;%Format_Profile%"));
        EXPECT_EQ(frameMd5(in, "v").md5, frameMd5(path, "v").md5);
        // GStreamer tells the duration of frame-wrapped files only (of ffmpeg's clips neither).
        if (*layout.options == 0 && haveCommand("gst-discoverer-1.0"))
        {
            EXPECT_NE(std::string::npos, runCommand("gst-discoverer-1.0 " + shellQuoted(path)).out.find("Duration: 0:00:02"));
        }
        runCommand("rm -rf " + shellQuoted(out));
    }
    EXPECT_EQ(1, runCommand(vellum("rewrap " + shellQuoted(ffmpegFixture("d10.mxf")) + " /tmp/none.mxf --clip-wrap")).status);
}
} // namespace
