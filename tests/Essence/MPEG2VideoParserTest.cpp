#include <gtest/gtest.h>

#include "Support/Mxf.h"

#include "DataIO/File/FileDataSource.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Essence/MPEG/MPEG2VideoParser.h"
#include "Exceptions/Exceptions.h"
#include "Support/EssenceProbe.h"
#include "Support/Fixtures.h"
#include "Utils/Text.h"

using namespace Vellum;
using VellumTest::memorySource;
using Essence::MPEG::MPEG2Frame;

namespace
{
Templates::SharedPtr<DataIO::DataSource> fileSource(std::string const & path)
{
    return Templates::SharedPtr<DataIO::DataSource>(new DataIO::File::FileDataSource(Utils::wide(path.c_str()).c_str(), 0));
}


struct StreamCase
{
    char const * name;
    int rateNumerator;
    int rateDenominator;
};

// Blocks of 64 KiB: many frames span two of them.
TEST(MPEG2VideoParser, FramesMatchFfmpegPacketsAndPictures)
{
    for (StreamCase c : {StreamCase{"mpeg2-gop12.m2v", 25, 1}, StreamCase{"mpeg2-gop15-2997.m2v", 30000, 1001},
                         StreamCase{"mpeg2-cgop.m2v", 25, 1}, StreamCase{"mpeg2-d10.m2v", 25, 1}})
    {
        std::string path = VellumTest::ffmpegFixture(c.name);
        if (path.empty())
            GTEST_SKIP() << "ffmpeg is not installed";
        SCOPED_TRACE(c.name);
        std::vector<VellumTest::PacketDigest> packets = VellumTest::ffmpegPacketDigests(path);
        std::vector<VellumTest::ProbedPicture> pictures = VellumTest::ffprobePictures(path);
        ASSERT_EQ(packets.size(), pictures.size());

        Essence::StreamBuffer buffer(fileSource(path), 0x10000);
        Essence::MPEG::MPEG2VideoParser parser(buffer);
        MPEG2Frame frame;
        std::size_t count = 0, spanning = 0;
        for (DataIO::Chain data; parser.next(frame, &data); data.clear(), ++count)
        {
            ASSERT_LT(count, packets.size());
            EXPECT_EQ(packets[count].md5, VellumTest::chainMd5(data)) << count;
            EXPECT_EQ(" IPB"[frame.codingType], pictures[count].type) << count;
            EXPECT_EQ(frame.temporalReference, pictures[count].temporalReference) << count;
            EXPECT_EQ(frame.sequenceHeader, frame.codingType == Essence::MPEG::I_PICTURE) << count;
            spanning += data.slice_count() > 1;
        }
        EXPECT_EQ(packets.size(), count);
        EXPECT_GT(spanning, 0u);
        EXPECT_EQ(parser.sequence().frameRate(), Templates::Rational<int>(c.rateNumerator, c.rateDenominator));
    }
}

TEST(MPEG2VideoParser, SequenceHeaderOfD10)
{
    std::string path = VellumTest::ffmpegFixture("mpeg2-d10.m2v");
    if (path.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    Essence::StreamBuffer buffer(fileSource(path));
    Essence::MPEG::MPEG2VideoParser parser(buffer);
    MPEG2Frame frame;
    ASSERT_TRUE(parser.next(frame, nullptr));
    Essence::MPEG::MPEG2SequenceInfo const & s = parser.sequence();
    EXPECT_EQ(720u, s.width);
    EXPECT_EQ(608u, s.height);
    EXPECT_EQ(0x85u, s.profileAndLevel);
    EXPECT_EQ(2u, s.chromaFormat);
    EXPECT_EQ(50000000u, s.bitRate());
    EXPECT_FALSE(s.progressiveSequence);
    EXPECT_EQ(250000u, frame.size);
}

// A stream cut inside its last frame ends at the frame before; a stream that is no MPEG-2 video
// is refused.
TEST(MPEG2VideoParser, TruncatedAndForeignStreams)
{
    std::string path = VellumTest::ffmpegFixture("mpeg2-gop12.m2v");
    if (path.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    std::vector<unsigned char> bytes = VellumTest::readFile(path);
    std::vector<VellumTest::PacketDigest> packets = VellumTest::ffmpegPacketDigests(path);
    unsigned long long lastSize = packets.back().size;
    bytes.resize(bytes.size() - lastSize / 2);
    Essence::StreamBuffer buffer(memorySource(bytes));
    Essence::MPEG::MPEG2VideoParser parser(buffer);
    MPEG2Frame frame;
    std::size_t count = 0;
    while (parser.next(frame, nullptr))
        ++count;
    EXPECT_EQ(packets.size() - 1, count);

    std::vector<unsigned char> noise((1 << 20) + 100, 0x55);
    Essence::StreamBuffer noiseBuffer(memorySource(noise));
    Essence::MPEG::MPEG2VideoParser noiseParser(noiseBuffer);
    EXPECT_THROW(noiseParser.next(frame, nullptr), Exceptions::InvalidFormat);
}
} // namespace
