#include <gtest/gtest.h>

#include "Support/Mxf.h"

#include <cstring>
#include <functional>

#include "DataIO/File/FileDataSource.h"
#include "DataIO/File/FileSliceSource.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Essence/Analyzers/PCMAnalyzer.h"
#include "Essence/JPEG2000/JPEG2000Analyzer.h"
#include "Essence/MPEG/MPEG2VideoAnalyzer.h"
#include "Essence/VC3/VC3Analyzer.h"
#include "GenericContainer/Multiplexer/Mux.h"
#include "Metadata/Structural/HeaderBuilding.h"
#include "Support/ContainerDrain.h"
#include "Support/EssenceProbe.h"
#include "Support/Fixtures.h"
#include "Support/Md5.h"
#include "Support/MemoryAnalyzer.h"

using namespace Vellum;
using VellumTest::memorySource;
using Templates::Rational;
using Templates::SharedPtr;

namespace
{

SharedPtr<DataIO::SliceSource> sliceSource(std::string const & path)
{
    // Small reads: units span blocks.
    return SharedPtr<DataIO::SliceSource>(
        new DataIO::File::FileSliceSource(Utils::wide(path.c_str()).c_str(), 0x8000, 0x8000));
}

std::string labelBytes(Types::UniversalLabel const & label, unsigned from)
{
    char text[8];
    std::string out;
    for (unsigned i = from; i < 16; ++i)
    {
        std::snprintf(text, sizeof text, "%02x", label.rawBuffer()[i]);
        out += text;
    }
    return out;
}

// Drains an analyzer; gives the MD5, size, flags and temporal reference of each unit.
struct Drained
{
    std::vector<std::string> md5;
    std::vector<unsigned long long> size;
    std::vector<unsigned> flags;
    std::vector<int> temporalReference;
};

Drained drain(GenericContainer::EssenceAnalyzer & analyzer)
{
    Drained d;
    GenericContainer::EditUnit unit;
    while (analyzer.nextEditUnit(unit))
    {
        EXPECT_TRUE(unit.valid);
        EXPECT_EQ(Rational<int>(analyzer.editRate().denominator(), analyzer.editRate().numerator()), unit.duration);
        d.md5.push_back(VellumTest::chainMd5(unit.data));
        d.size.push_back(unit.data.data_size());
        d.flags.push_back(unit.flags);
        d.temporalReference.push_back(unit.temporalReference);
    }
    EXPECT_TRUE(analyzer.done());
    return d;
}

struct PictureCase
{
    char const * fixture;
    // Bytes 12 to 15 of the essence container label, and 12 to 15 of the coding label.
    char const * container;
    char const * coding;
    unsigned constantSize;
    bool temporalDependencies;
};

TEST(EssenceAnalyzers, PictureUnitsMatchFfmpeg)
{
    PictureCase const cases[] = {
        {"mpeg2-gop12.m2v", "02046001", "01011100", 0, true},
        {"mpeg2-gop15-2997.m2v", "02046001", "01011100", 0, true},
        {"mpeg2-cgop.m2v", "02046001", "01011100", 0, true},
        {"mpeg2-d10.m2v", "02010101", "01020101", 250000, false},
        {"dnxhd-1080.dnxhd", "02110100", "71130000", 188416, false},
        {"dnxhr-lb.dnxhd", "02110100", "71280000", 8192, false},
        {"jpeg2000.j2c", "020c0100", "03010100", 0, false},
    };
    for (PictureCase const & c : cases)
    {
        std::string path = VellumTest::ffmpegFixture(c.fixture);
        if (path.empty())
            GTEST_SKIP() << "ffmpeg is not installed";
        SCOPED_TRACE(c.fixture);
        std::string name = c.fixture;
        std::unique_ptr<Essence::Analyzers::BasicAnalyzer<GenericContainer::PictureAnalyzer>> analyzer;
        Types::UniversalLabel coding;
        if (name.find("mpeg2") == 0)
            analyzer.reset(new Essence::MPEG::MPEG2VideoAnalyzer(sliceSource(path)));
        else if (name.find("dnx") == 0)
            analyzer.reset(new Essence::VC3::VC3Analyzer(sliceSource(path), Rational<int>(25, 1)));
        else
            analyzer.reset(new Essence::JPEG2000::JPEG2000Analyzer(sliceSource(path), Rational<int>(25, 1)));
        ASSERT_TRUE(analyzer->preload());
        if (auto * mpeg = dynamic_cast<Essence::MPEG::MPEG2VideoAnalyzer *>(analyzer.get()))
            coding = mpeg->pictureEssenceCoding();
        else if (auto * vc3 = dynamic_cast<Essence::VC3::VC3Analyzer *>(analyzer.get()))
            coding = vc3->pictureEssenceCoding();
        else
            coding = Types::UniversalLabel();
        EXPECT_EQ(c.container, labelBytes(analyzer->universalLabel(), 12));
        if (name.find("j2c") == std::string::npos)
        {
            EXPECT_EQ(c.coding, labelBytes(coding, 12));
        }
        EXPECT_EQ(c.constantSize != 0, analyzer->isCBE());
        EXPECT_EQ(c.constantSize, analyzer->boundedEditUnitSize());
        EXPECT_EQ(c.temporalDependencies, analyzer->containsTemporalDependencies());

        Drained units = drain(*analyzer);
        std::vector<VellumTest::PacketDigest> packets =
            VellumTest::ffmpegPacketDigests(path, name.find("j2c") != std::string::npos ? "-f j2k_pipe" : "");
        ASSERT_EQ(packets.size(), units.md5.size());
        for (std::size_t i = 0; i < packets.size(); ++i)
            if (c.constantSize == 0 || packets[i].size == c.constantSize)
            {
                EXPECT_EQ(packets[i].md5, units.md5[i]) << i;
            }
        for (unsigned long long size : units.size)
            EXPECT_TRUE(c.constantSize == 0 || size == c.constantSize);
    }
}

// The index flags and temporal references of long GOP streams, against ffprobe's picture types.
TEST(EssenceAnalyzers, MPEG2IndexFlagsFollowPictureTypes)
{
    for (char const * fixture : {"mpeg2-gop12.m2v", "mpeg2-gop15-2997.m2v", "mpeg2-cgop.m2v"})
    {
        std::string path = VellumTest::ffmpegFixture(fixture);
        if (path.empty())
            GTEST_SKIP() << "ffmpeg is not installed";
        SCOPED_TRACE(fixture);
        Essence::MPEG::MPEG2VideoAnalyzer analyzer(sliceSource(path));
        Drained units = drain(analyzer);
        std::vector<VellumTest::ProbedPicture> pictures = VellumTest::ffprobePictures(path);
        ASSERT_EQ(pictures.size(), units.flags.size());
        bool closed = std::string(fixture) == "mpeg2-cgop.m2v";
        for (std::size_t i = 0; i < pictures.size(); ++i)
        {
            unsigned expected = pictures[i].type == 'P' ? 0x22 : pictures[i].type == 'B' ? 0x33
                                : closed || pictures[i].temporalReference == 0 ? 0xC0 : 0x40;
            EXPECT_EQ(expected, units.flags[i]) << i;
            EXPECT_EQ(int(pictures[i].temporalReference), units.temporalReference[i]) << i;
        }
    }
}

struct SoundCase
{
    char const * fixture;
    Rational<int> rate;
    unsigned bits;
    unsigned channels;
    std::vector<unsigned> cadence;
};

TEST(EssenceAnalyzers, PCMUnitsFollowThePictureCadence)
{
    SoundCase const cases[] = {
        {"pcm16.wav", Rational<int>(25, 1), 16, 2, {1920}},
        {"pcm16.wav", Rational<int>(30000, 1001), 16, 2, {1602, 1601, 1602, 1601, 1602}},
        {"pcm24-bext.wav", Rational<int>(60000, 1001), 24, 2, {801, 801, 800, 801, 801}},
        {"pcm24-6ch.wav", Rational<int>(25, 1), 24, 6, {1920}},
    };
    for (SoundCase const & c : cases)
    {
        std::string path = VellumTest::ffmpegFixture(c.fixture);
        if (path.empty())
            GTEST_SKIP() << "ffmpeg is not installed";
        SCOPED_TRACE(c.fixture);
        Essence::Analyzers::PCMAnalyzer analyzer(sliceSource(path), Rational<int>(1, 1));
        analyzer.editRate(c.rate);
        ASSERT_TRUE(analyzer.preload());
        unsigned align = c.channels * c.bits / 8;
        EXPECT_EQ(c.bits, analyzer.format().bitsPerSample);
        EXPECT_EQ(align, analyzer.format().blockAlign());
        EXPECT_EQ(c.cadence.size() == 1, analyzer.isCBE());
        EXPECT_EQ("02060100", labelBytes(analyzer.universalLabel(), 12));
        Drained units = drain(analyzer);
        ASSERT_EQ(units.size.size(), 48000ull * c.rate.numerator() / c.rate.denominator() / 48000);
        for (std::size_t i = 0; i < units.size.size(); ++i)
            EXPECT_EQ(c.cadence[i % c.cadence.size()] * align, units.size[i]) << i;

        // The units, end to end, are the samples that ffmpeg reads.
        std::string samples = VellumTest::commandOutput("ffmpeg -v error -i '" + path + "' -c copy -f " +
                                                        (c.bits == 16 ? "s16le" : "s24le") + " -");
        Essence::Analyzers::PCMAnalyzer again(memorySource(VellumTest::readFile(path)), c.rate);
        VellumTest::Md5 whole;
        GenericContainer::EditUnit unit;
        std::size_t total = 0;
        while (again.nextEditUnit(unit))
            for (DataIO::Slice const & slice : unit.data)
            {
                whole.update(slice.begin(), slice.size());
                total += slice.size();
            }
        EXPECT_EQ(VellumTest::md5Hex(reinterpret_cast<unsigned char const *>(samples.data()), total), whole.hex());
    }
}

std::vector<unsigned char> fixtureBytes(char const * name)
{
    std::string path = VellumTest::ffmpegFixture(name);
    return path.empty() ? std::vector<unsigned char>() : VellumTest::readFile(path);
}

// Streams that are not what they claim: an exception, never a unit of wrong bytes.
TEST(EssenceAnalyzers, BadInputIsRefused)
{
    std::vector<unsigned char> dnxhd = fixtureBytes("dnxhd-1080.dnxhd"), j2k = fixtureBytes("jpeg2000.j2c"),
                               wave = fixtureBytes("pcm16.wav");
    if (dnxhd.empty() || j2k.empty() || wave.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    dnxhd[0x2B] = 0x14; // compression ID 1300
    unsigned long long first = VellumTest::ffmpegPacketDigests(VellumTest::ffmpegFixture("jpeg2000.j2c"), "-f j2k_pipe")[0].size;
    j2k.resize(first - 2); // no EOC behind the last tile-part
    std::vector<unsigned char> shortData(wave.begin(), wave.end() - 1000);
    std::vector<unsigned char> shortFormat = wave;
    shortFormat[16] = 14; // the size of the fmt chunk
    std::vector<unsigned char> noise((1 << 20) + 64, 0x55);

    Rational<int> const rate(25, 1);
    std::vector<std::pair<char const *, std::function<void()>>> cases = {
        {"no start code", [&] { Essence::MPEG::MPEG2VideoAnalyzer(memorySource(noise)).preload(); }},
        {"unknown compression ID", [&] { Essence::VC3::VC3Analyzer(memorySource(dnxhd), rate).preload(); }},
        {"no EOC", [&] { Essence::JPEG2000::JPEG2000Analyzer(memorySource(j2k), rate).preload(); }},
        {"short fmt chunk", [&] { Essence::Analyzers::PCMAnalyzer(memorySource(shortFormat), rate).preload(); }},
        {"short data chunk", [&] {
             Essence::Analyzers::PCMAnalyzer analyzer(memorySource(shortData), rate);
             drain(analyzer);
         }},
    };
    for (auto const & c : cases)
        EXPECT_THROW(c.second(), Exceptions::InvalidFormat) << c.first;
}

// The track and descriptor that setMetadata makes, and the duration that finalize gives them.
TEST(EssenceAnalyzers, MPEG2DescriptorAndTrack)
{
    std::string path = VellumTest::ffmpegFixture("mpeg2-d10.m2v");
    if (path.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    namespace S = Metadata::Structural;
    std::unique_ptr<Metadata::PartitionMetadata> metadata = StructuralTest::newPartitionMetadata();
    StructuralTest::createSet<S::Preface>(*metadata, S::StructuralMetadataKeys::preface());
    S::SourcePackage * package = StructuralTest::createSet<S::SourcePackage>(*metadata, S::StructuralMetadataKeys::sourcePackage());
    Essence::MPEG::MPEG2VideoAnalyzer analyzer(sliceSource(path));
    ASSERT_TRUE(analyzer.preload());
    analyzer.setMetadata(*metadata, package, 0x05010101, 2);
    std::size_t count = drain(analyzer).size.size();
    analyzer.finalize();

    S::MPEG2VideoDescriptor * d = S::metadataSetAs<S::MPEG2VideoDescriptor>(package->descriptor());
    ASSERT_NE(nullptr, d);
    EXPECT_EQ(720u, d->storedWidth()->value());
    EXPECT_EQ(304u, d->storedHeight()->value());
    EXPECT_EQ(3u, d->frameLayout()->value());
    EXPECT_EQ(Rational<int>(4, 3), Rational<int>(d->aspectRatio()->numerator(), d->aspectRatio()->denominator()));
    EXPECT_EQ(0x85u, d->profileAndLevel()->value());
    EXPECT_EQ(50000000u, d->bitRate()->value());
    // Intra pictures only: groups of one picture, all alike, no B pictures.
    ASSERT_NE(nullptr, d->maxGOP());
    EXPECT_EQ(1u, d->maxGOP()->value());
    EXPECT_EQ(0u, d->bPictureCount()->value());
    EXPECT_TRUE(d->identicalGOP()->value());
    EXPECT_EQ(2u, d->linkedTrackID()->value());
    EXPECT_EQ(int64(count), d->containerDuration()->value());
    EXPECT_EQ(analyzer.universalLabel(), *d->essenceContainer());
    ASSERT_EQ(1u, package->tracksCount());
    S::TimelineTrack * track = S::metadataSetAs<S::TimelineTrack>(package->track(0));
    ASSERT_NE(nullptr, track);
    EXPECT_EQ(int64(count), track->sequence()->duration()->value());
}
} // namespace

// MPEG-2 pictures and PCM sound through the frame multiplexer: each content package holds one
// picture with the bytes ffmpeg gives for it and the sound of one picture's time.
TEST(EssenceAnalyzers, MultiplexedPicturesAndSound)
{
    std::string video = VellumTest::ffmpegFixture("mpeg2-gop12.m2v"), sound = VellumTest::ffmpegFixture("pcm16.wav");
    if (video.empty() || sound.empty())
        GTEST_SKIP() << "ffmpeg is not installed";
    GenericContainer::Multiplexer::Mux mux(VellumTest::newHeaderMetadata(), VellumTest::testContainerLabel(),
                                           Rational<int>(25, 1));
    mux.addAnalyzer(SharedPtr<GenericContainer::EssenceAnalyzer>(new Essence::MPEG::MPEG2VideoAnalyzer(sliceSource(video))),
                    false, Rational<int64>(0, 1));
    mux.addAnalyzer(SharedPtr<GenericContainer::EssenceAnalyzer>(
                        new Essence::Analyzers::PCMAnalyzer(sliceSource(sound), Rational<int>(1, 1))),
                    false, Rational<int64>(0, 1));
    Templates::auto_ptr<GenericContainer::Source> source = mux.commit();
    VellumTest::DrainedSource drained = VellumTest::drainSource(*source, [&] { source->finalize(); });
    std::vector<VellumTest::PacketDigest> packets = VellumTest::ffmpegPacketDigests(video);
    std::size_t pictures = 0, sounds = 0;
    for (VellumTest::KlvRecord const & r : VellumTest::withoutFill(VellumTest::readKlv(drained.bytes)))
    {
        unsigned char item = r.key.rawBuffer()[12];
        if (item == 0x15)
        {
            ASSERT_LT(pictures, packets.size());
            EXPECT_EQ(packets[pictures++].md5, VellumTest::md5Hex(r.value.data(), r.value.size()));
        }
        else if (item == 0x16)
        {
            EXPECT_EQ(1920u * 4, r.value.size());
            ++sounds;
        }
    }
    EXPECT_EQ(25u, sounds);
    EXPECT_GE(pictures, sounds);
}
