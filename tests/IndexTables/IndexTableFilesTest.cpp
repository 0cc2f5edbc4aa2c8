// Index segments of real files: the shared samples and files made with ffmpeg. Segments must
// write back byte for byte, and the GOP structure of long-GOP MPEG-2 must agree with what ffprobe
// reports of the same pictures.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "IndexTables/GOPTestSupport.h"
#include "IndexTables/IndexTableSegmentWithGOPInfo.h"
#include "KLV/Reader.h"
#include "Support/Fixtures.h"
#include "Support/Process.h"

using namespace Vellum;
using namespace Vellum::IndexTables;
using namespace IndexTest;

namespace
{
struct RawSegment
{
    uint64 offset;
    Bytes bytes;
};

// Every index segment packet of a file, as it stands there.
std::vector<RawSegment> segmentsOf(std::string const & path)
{
    std::vector<RawSegment> out;
    Bytes file = VellumTest::readFile(path);
    DataIO::Memory::MemoryDataSource source(file.data(), file.size());
    KLV::Reader reader(source);
    bool first = true;
    while (!source.endOfStream())
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, first ? 65535 : 0);
        first = false;
        if (!IndexTableSegment::isSegmentKey(p->key()))
            continue;
        uint64 at = p->keyAbsoluteOffset();
        out.push_back(RawSegment{at, Bytes(file.begin() + at, file.begin() + at + p->klvLength())});
    }
    return out;
}

void expectRoundTrips(std::string const & path, std::size_t expectedSegments)
{
    std::vector<RawSegment> segments = segmentsOf(path);
    EXPECT_EQ(expectedSegments, segments.size()) << path;
    for (RawSegment const & raw : segments)
    {
        std::unique_ptr<IndexTableSegment> segment = parse<IndexTableSegment>(raw.bytes);
        EXPECT_TRUE(segment->unknownElements().empty()) << path;
        EXPECT_EQ(raw.bytes.size(), segment->serializedSize()) << path << " at " << raw.offset;
        EXPECT_EQ(raw.bytes, written(*segment)) << path << " at " << raw.offset;
        std::unique_ptr<IndexTableSegmentWithGOPInfo> withGops = parse<IndexTableSegmentWithGOPInfo>(raw.bytes);
        EXPECT_EQ(raw.bytes, written(*withGops)) << path << " at " << raw.offset;
    }
}

// The video packets of a file in stored (coded) order: display position and key flag.
struct Picture
{
    long long pts;
    bool key;
    int display;
};

std::vector<Picture> probePictures(std::string const & path)
{
    std::vector<Picture> pictures;
    for (std::string const & line : VellumTest::ffprobePackets(path, "v:0", "pts,flags"))
    {
        std::size_t comma = line.find(',');
        if (comma != std::string::npos)
            pictures.push_back(Picture{std::atoll(line.substr(0, comma).c_str()), line.find('K', comma) != std::string::npos, 0});
    }
    // Display positions are the ranks of the presentation times.
    std::vector<long long> times;
    for (Picture const & p : pictures)
        times.push_back(p.pts);
    std::sort(times.begin(), times.end());
    for (Picture & p : pictures)
        p.display = static_cast<int>(std::lower_bound(times.begin(), times.end(), p.pts) - times.begin());
    return pictures;
}

// A segment of the entries [from, to) of `whole`, written and read back with its GOP information.
std::unique_ptr<IndexTableSegmentWithGOPInfo> part(IndexTableSegment const & whole, unsigned from, unsigned to)
{
    IndexTableSegment piece;
    piece.indexEditRate(whole.indexEditRate());
    piece.indexStartPosition(whole.indexStartPosition().value() + from);
    piece.indexDuration(static_cast<int64>(to - from));
    piece.bodySID(whole.bodySID().value());
    if (whole.sliceCount() != nullptr)
        piece.sliceCount(whole.sliceCount()->value());
    if (whole.posTableCount() != nullptr)
        piece.posTableCount(whole.posTableCount()->value());
    for (unsigned i = from; i < to; ++i)
        piece.addIndexEntry(i - from, whole.indexEntry(i));
    return parse<IndexTableSegmentWithGOPInfo>(written(piece));
}

void checkGopsAgainstFfprobe(std::string const & name)
{
    std::string path = VellumTest::ffmpegFixture(name);
    if (path.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    if (!VellumTest::haveCommand("ffprobe"))
        GTEST_SKIP() << "ffprobe is not installed";
    std::vector<Picture> pictures = probePictures(path);
    ASSERT_FALSE(pictures.empty());

    std::vector<RawSegment> raw = segmentsOf(path);
    ASSERT_EQ(1u, raw.size());
    std::unique_ptr<IndexTableSegmentWithGOPInfo> segment = parse<IndexTableSegmentWithGOPInfo>(raw[0].bytes);
    ASSERT_EQ(pictures.size(), segment->indexEntryCount());
    int n = static_cast<int>(pictures.size());

    // GOPs from ffprobe: one starts at each key picture in coded order.
    std::vector<int> keys;
    for (int s = 0; s < n; ++s)
        if (pictures[s].key)
            keys.push_back(s);
    ASSERT_GE(keys.size(), 3u);
    EXPECT_EQ(keys.front(), segment->firstKeyFramePosition());
    std::vector<int> expectedSizes;
    if (keys.front() > 0)
        expectedSizes.push_back(keys.front());
    for (std::size_t k = 0; k < keys.size(); ++k)
        expectedSizes.push_back((k + 1 < keys.size() ? keys[k + 1] : n) - keys[k]);
    std::vector<int> sizes;
    for (auto const & gop : segment->gopIndex2SizeMap())
        sizes.push_back(gop.second.size);
    EXPECT_EQ(expectedSizes, sizes);
    // ffmpeg writes 12-picture GOPs; the first holds the pictures up to the second I picture.
    EXPECT_EQ(12, sizes[1]);

    for (int s = 0; s < n; ++s)
    {
        IndexEntry const & entry = segment->indexEntry(static_cast<unsigned>(s));
        bool keyFrame = !entry.forwardPrediction() && !entry.backwardPrediction();
        EXPECT_EQ(pictures[s].key, keyFrame) << "coded picture " << s;
        // The last key picture at or before a position, in coded order.
        auto lastKeyAtOrBefore = [&](int position) {
            int g = static_cast<int>(std::upper_bound(keys.begin(), keys.end(), position) - keys.begin()) - 1;
            return g;
        };
        int g = lastKeyAtOrBefore(s);
        GOPInfo const & info = segment->gopInfo(static_cast<unsigned>(s));
        EXPECT_EQ(g < 0 ? -1 : s - keys[g], info.gopPosition) << "coded picture " << s;
        int d = pictures[s].display;
        int dg = lastKeyAtOrBefore(d);
        ASSERT_GE(dg, 0);
        EXPECT_EQ(d - keys[dg], info.displayOrderGopPosition) << "coded picture " << s << ", displayed " << d;
        EXPECT_EQ(dg + (keys.front() > 0 ? 1 : 0), info.displayOrderGopNumber) << "coded picture " << s;
    }

    // Split in two at every edit unit, GOP middles included: the same answers.
    std::vector<Answer> expected = answers(*segment);
    for (int k = 1; k < n; ++k)
    {
        std::unique_ptr<IndexTableSegmentWithGOPInfo> a = part(*segment, 0, static_cast<unsigned>(k));
        std::unique_ptr<IndexTableSegmentWithGOPInfo> b = part(*segment, static_cast<unsigned>(k),
                                                              static_cast<unsigned>(n));
        a->updateMissingInfo(nullptr, b.get());
        b->updateMissingInfo(a.get(), nullptr);
        std::vector<Answer> got = answers(*a);
        std::vector<Answer> second = answers(*b);
        got.insert(got.end(), second.begin(), second.end());
        for (int i = 0; i < n; ++i)
            EXPECT_EQ(expected[i], got[i]) << name << " split at " << k << ", unit " << i;
    }
}
} // namespace

TEST(IndexTableFiles, SampleSegmentsWriteBackUnchanged)
{
    VELLUM_REQUIRE_SHARED();
    for (std::string const & path : VellumTest::sampleFiles())
    {
        bool hasIndex = path.find("utf8_embedded_text") == std::string::npos;
        expectRoundTrips(path, hasIndex ? 1u : 0u);
    }
}

TEST(IndexTableFiles, SampleSegmentContents)
{
    VELLUM_REQUIRE_SHARED();
    std::string path = VellumTest::sharedDir() + "/samples/indirect.mxf";
    std::vector<RawSegment> raw = segmentsOf(path);
    ASSERT_EQ(1u, raw.size());
    // Nine bytes of length, one edit unit, and an entry array one longer than the duration.
    std::unique_ptr<IndexTableSegmentWithGOPInfo> segment = parse<IndexTableSegmentWithGOPInfo>(raw[0].bytes);
    EXPECT_EQ(9, segment->berLength());
    EXPECT_EQ(1, segment->indexDuration().value());
    EXPECT_EQ(2u, segment->indexEntryCount());
    EXPECT_TRUE(segment->indexEntry(0).randomAccess());
    EXPECT_EQ(0u, segment->indexEntry(0).streamOffset());
    // Both entries are key frames: two GOPs of one picture.
    ASSERT_EQ(2u, segment->gopIndex2SizeMap().size());
    EXPECT_EQ(1, segment->gopIndex2SizeMap().at(1).size);

    // Sound with a constant edit unit size and a position table count of 0.
    raw = segmentsOf(VellumTest::sharedDir() + "/samples/escape-chars.mxf");
    ASSERT_EQ(1u, raw.size());
    std::unique_ptr<IndexTableSegment> sound = parse<IndexTableSegment>(raw[0].bytes);
    ASSERT_NE(nullptr, sound->editUnitByteCount());
    EXPECT_EQ(18u, sound->editUnitByteCount()->value());
    ASSERT_NE(nullptr, sound->posTableCount());
    EXPECT_EQ(0, sound->posTableCount()->value());
    EXPECT_EQ(48000, sound->indexEditRate().numerator());
    ASSERT_NE(nullptr, sound->indexEntryArray());
    EXPECT_EQ(0u, sound->indexEntryCount());
}

TEST(IndexTableFiles, FfmpegSegmentsWriteBackUnchanged)
{
    if (VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf").empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    for (std::string const & name : VellumTest::ffmpegFixtureNames())
    {
        std::string path = VellumTest::ffmpegFixture(name);
        ASSERT_FALSE(path.empty()) << name;
        // The long file is cut into two body partitions, each with its own segment.
        expectRoundTrips(path, name == "op1a-partitions.mxf" ? 2u : 1u);
    }

    // The OP1a long-GOP file: one slice for the sound behind the picture, delta entries for both.
    std::vector<RawSegment> raw = segmentsOf(VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf"));
    std::unique_ptr<IndexTableSegment> segment = parse<IndexTableSegment>(raw[0].bytes);
    ASSERT_NE(nullptr, segment->sliceCount());
    EXPECT_EQ(1, segment->sliceCount()->value());
    EXPECT_EQ(50, segment->indexDuration().value());
    EXPECT_EQ(50u, segment->indexEntryCount());
    EXPECT_GE(segment->deltaEntryCount(), 2u);
    EXPECT_EQ(15u, segment->indexEntryArray()->elementSize());
    for (unsigned i = 1; i < segment->indexEntryCount(); ++i)
        EXPECT_GT(segment->indexEntry(i).streamOffset(), segment->indexEntry(i - 1).streamOffset());

    // The D-10 file is indexed by a constant edit unit size alone.
    raw = segmentsOf(VellumTest::ffmpegFixture("d10.mxf"));
    segment = parse<IndexTableSegment>(raw[0].bytes);
    ASSERT_NE(nullptr, segment->editUnitByteCount());
    EXPECT_GT(segment->editUnitByteCount()->value(), 0u);
    EXPECT_EQ(nullptr, segment->indexEntryArray());
}

TEST(IndexTableFiles, LongGopStructureAgreesWithFfprobe)
{
    checkGopsAgainstFfprobe("op1a-mpeg2-pcm.mxf");
}

TEST(IndexTableFiles, OpenGopStructureAgreesWithFfprobe)
{
    checkGopsAgainstFfprobe("op1a-mpeg2-open-gop.mxf");
}
