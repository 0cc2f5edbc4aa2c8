#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/MaterialPackage.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourceClip.h"
#include "Metadata/Structural/StructuralComponent.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "MetaMetadata/StandardDictionary.h"
#include "MXFIO/ContentStorageReader.h"
#include "MXFIO/EssenceReader.h"
#include "MXFIO/Reader2.h"
#include "Support/Fixtures.h"
#include "Support/Md5.h"
#include "Support/Mxf.h"
#include "Support/Process.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Utils/Text.h"

using namespace Vellum;
using DataIO::Memory::MemoryDataSource;
using MXFIO::EssenceReader;
using MXFIO::Reader2;

namespace
{
typedef std::vector<unsigned char> Bytes;
typedef Templates::Rational<int64> Time;

using VellumTest::dictionary;

// What was read of one kind of stream.
struct Stream
{
    std::vector<std::string> md5;
    std::vector<Time> positions;
    std::vector<Time> durations;
    std::vector<int64> samples;
    std::vector<int64> preCharge;
    std::vector<uint64> sizes;
};

// "v" for picture items, "a" for sound items.
std::string kindOf(unsigned int trackNumber)
{
    unsigned int item = trackNumber >> 24;
    if (item == 0x15 || item == 0x05)
        return "v";
    if (item == 0x16 || item == 0x06)
        return "a";
    return "d";
}

void take(EssenceReader::ElementEditUnit & unit, std::map<std::string, Stream> & streams)
{
    Stream & stream = streams[kindOf(unit.trackNumber)];
    KLV::Value & value = unit.element.packet->value();
    Bytes bytes(static_cast<size_t>(value.remaining()));
    uint64 got = value.read(bytes.data(), bytes.size());
    stream.md5.push_back(VellumTest::md5Hex(bytes.data(), static_cast<size_t>(got)));
    stream.positions.push_back(unit.position);
    stream.durations.push_back(unit.duration);
    stream.samples.push_back(unit.element.samples);
    stream.preCharge.push_back(unit.element.preCharge);
    stream.sizes.push_back(got);
}

std::map<std::string, Stream> readAll(EssenceReader & reader, size_t limit = 100000)
{
    std::map<std::string, Stream> streams;
    EssenceReader::ElementEditUnit unit;
    for (size_t i = 0; i < limit && reader.nextElementEditUnit(65536, unit); ++i)
    {
        EXPECT_NE(unit.element.packet.get(), nullptr);
        if (unit.element.packet.get() == 0)
            break;
        take(unit, streams);
    }
    EXPECT_EQ(unit.element.packet.get(), nullptr) << "a false read still left a packet";
    return streams;
}

// One file opened through its metadata.
struct Opened
{
    explicit Opened(Bytes content)
        : bytes(std::move(content)), source(bytes.data(), bytes.size()), reader(source, dictionary(), 65536), preface(0)
    {
        MXFIO::Partition * partition = reader.firstPartitionWithFinalMetadata();
        metadata = partition->metadata();
        preface = Metadata::Structural::findPreface(*metadata);
    }

    Metadata::Structural::GenericPackage & material()
    {
        Metadata::Structural::ContentStorage * storage = preface->contentStorage();
        for (unsigned i = 0; i < storage->packagesCount(); ++i)
            if (dynamic_cast<Metadata::Structural::MaterialPackage *>(storage->package(i)) != 0)
                return *storage->package(i);
        ADD_FAILURE() << "no material package";
        return *storage->package(0);
    }

    Metadata::Structural::GenericPackage * filePackage()
    {
        Metadata::Structural::ContentStorage * storage = preface->contentStorage();
        for (unsigned i = 0; i < storage->packagesCount(); ++i)
        {
            Metadata::Structural::GenericPackage * package = storage->package(i);
            if (package->packageUID() != 0 && storage->essenceContainerData(*package->packageUID()) != 0)
                return package;
        }
        return 0;
    }

    Bytes bytes;
    MemoryDataSource source;
    Reader2 reader;
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    Metadata::Structural::Preface * preface;
};

#define REQUIRE_FIXTURE(path, name)                                                               \
    std::string path = VellumTest::ffmpegFixture(name);                                           \
    if (path.empty())                                                                             \
    GTEST_SKIP() << "ffmpeg is not installed: the essence reading tests need its files"

// The ground truth of one file from ffprobe and ffmpeg.
struct Truth
{
    explicit Truth(std::string const & path)
        : videoCount(VellumTest::ffprobePackets(path, "v", "stream_index").size()),
          audioCount(VellumTest::ffprobePackets(path, "a", "stream_index").size())
    {
        VellumTest::FramePackets pictures = VellumTest::frameMd5(path, "v");
        video = pictures.md5;
        videoPts = pictures.pts;
        audio = VellumTest::frameMd5(path, "a").md5;
    }
    // The hash of the picture shown at frame n.
    std::string shownAt(long n) const
    {
        for (size_t i = 0; i < videoPts.size(); ++i)
            if (videoPts[i] == n)
                return video[i];
        return "none";
    }
    // The file position of the picture shown at frame n.
    size_t storedIndexOf(long n) const
    {
        for (size_t i = 0; i < videoPts.size(); ++i)
            if (videoPts[i] == n)
                return i;
        return videoPts.size();
    }
    size_t videoCount;
    size_t audioCount;
    std::vector<std::string> video;
    std::vector<long> videoPts;
    std::vector<std::string> audio;
};

void expectWholeEssence(std::string const & name, std::map<std::string, Stream> & streams, Truth const & truth)
{
    SCOPED_TRACE(name);
    ASSERT_GT(truth.videoCount, 0u);
    EXPECT_EQ(streams["v"].md5.size(), truth.videoCount);
    EXPECT_EQ(streams["a"].md5.size(), truth.audioCount);
    EXPECT_EQ(streams["v"].md5, truth.video);
    if (truth.audio.size() == truth.audioCount)
    {
        EXPECT_EQ(streams["a"].md5, truth.audio);
    }
}

// The material package's track whose clip leads to an element of this item type (0x15 picture,
// 0x16 sound).
Metadata::Structural::TimelineTrack * materialTrack(Opened & file, unsigned int itemType)
{
    Metadata::Structural::GenericPackage & material = file.material();
    Metadata::Structural::GenericPackage * source = file.filePackage();
    for (unsigned i = 0; source != 0 && i < material.tracksCount(); ++i)
    {
        auto * track = dynamic_cast<Metadata::Structural::TimelineTrack *>(material.track(i));
        if (track == 0 || track->sequence() == 0 || track->sequence()->structuralComponentsCount() == 0)
            continue;
        auto * clip = dynamic_cast<Metadata::Structural::SourceClip *>(track->sequence()->structuralComponent(0));
        if (clip == 0 || clip->sourceTrackID() == 0)
            continue;
        Metadata::Structural::Track * sourceTrack = source->track(*clip->sourceTrackID());
        if (sourceTrack != 0 && sourceTrack->trackNumber() != 0 && sourceTrack->trackNumber()->value() >> 24 == itemType)
            return track;
    }
    return 0;
}

// Gives the material package's sound track of an ffmpeg file (which counts it in frames) an edit
// rate of 48000, with its clip of 48000 units a second: 1920 samples in each 25 fps unit.
void soundAt48000(Opened & file, int64 frames)
{
    Metadata::Structural::TimelineTrack * track = materialTrack(file, 0x16);
    ASSERT_NE(track, nullptr);
    Types::Rational rate(48000, 1);
    track->editRate(&rate);
    Types::Length length(frames * 1920);
    track->sequence()->duration(&length);
    for (unsigned c = 0; c < track->sequence()->structuralComponentsCount(); ++c)
        track->sequence()->structuralComponent(c)->duration(&length);
}
} // namespace

TEST(MXFIOEssenceReader, ReadsEveryEditUnitAsFfmpegSeesIt)
{
    REQUIRE_FIXTURE(probe, "op1a-mpeg2-pcm.mxf");
    for (std::string name : {"op1a-mpeg2-pcm.mxf", "op1a-mpeg2-pcm-2997.mxf", "opatom-dnxhd.mxf", "d10.mxf"})
    {
        std::string path = VellumTest::ffmpegFixture(name);
        Truth truth(path);
        Opened file(VellumTest::readFile(path));
        EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
        std::map<std::string, Stream> streams = readAll(reader);
        expectWholeEssence(name, streams, truth);

        // Units of one track follow each other without gaps, and the reader ends past the last.
        for (auto & entry : streams)
        {
            Stream & stream = entry.second;
            for (size_t i = 1; i < stream.positions.size(); ++i)
            {
                Time expected = stream.positions[i - 1];
                expected += stream.durations[i - 1];
                EXPECT_EQ(stream.positions[i], expected) << name << " " << entry.first << " unit " << i;
            }
        }
        EXPECT_GT(reader.duration(), Time(0));
        EXPECT_GE(reader.position(), reader.duration() - Time(1, 10)) << name;

        // After a rewind the same units come out again.
        reader.rewind();
        EXPECT_EQ(reader.position(), Time(0));
        std::map<std::string, Stream> again = readAll(reader);
        EXPECT_EQ(again["v"].md5, streams["v"].md5) << name;
        EXPECT_EQ(again["a"].md5, streams["a"].md5) << name;
    }
}

TEST(MXFIOEssenceReader, SoundFollowsTheFiveFrameSequenceAt2997)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm-2997.mxf");
    Opened file(VellumTest::readFile(path));
    EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
    std::map<std::string, Stream> streams = readAll(reader);
    Stream & sound = streams["a"];
    ASSERT_EQ(sound.sizes.size(), 60u);
    uint64 total = 0;
    for (size_t i = 0; i < sound.sizes.size(); ++i)
    {
        // 16-bit mono, two bytes a sample: 1601 or 1602 samples in each frame.
        EXPECT_TRUE(sound.sizes[i] == 2 * 1601 || sound.sizes[i] == 2 * 1602) << i << ": " << sound.sizes[i];
        // The sound track runs at the frame rate: one unit a frame, lasting a frame.
        EXPECT_EQ(sound.durations[i], Time(1001, 30000)) << i;
        EXPECT_EQ(sound.positions[i], Time(int64(i) * 1001, 30000)) << i;
        total += sound.sizes[i];
    }
    // Sixty frames last 60 * 1001 / 30000 s: 96096 samples.
    EXPECT_EQ(total, 2u * 96096u);
    ASSERT_EQ(streams["v"].durations.size(), 60u);
    for (size_t i = 0; i < streams["v"].durations.size(); ++i)
        EXPECT_EQ(streams["v"].durations[i], Time(1001, 30000));
    EXPECT_EQ(reader.duration(), Time(60 * 1001, 30000));
}

TEST(MXFIOEssenceReader, TracksAreInterleavedByTime)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Truth truth(path);
    Opened file(VellumTest::readFile(path));
    soundAt48000(file, 50);
    EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
    // The sound track has the shorter edit period: it is the master and comes first.
    Templates::vector<Metadata::Structural::TimelineTrack *> tracks = reader.essenceTracks();
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(tracks[0]->editRate()->value(), Templates::Rational<int>(48000));
    EXPECT_EQ(tracks[1]->editRate()->value(), Templates::Rational<int>(25));
    Templates::vector<unsigned int> ids = reader.essenceTrackIDs();
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_EQ(ids[0], tracks[0]->trackID()->value());
    EXPECT_EQ(ids[1], tracks[1]->trackID()->value());
    EXPECT_EQ(&reader.package(), &file.material());
    EXPECT_EQ(reader.duration(), Time(2));

    EssenceReader::ElementEditUnit unit;
    std::map<unsigned int, Time> ends;
    std::map<std::string, Stream> streams;
    while (reader.nextElementEditUnit(65536, unit))
    {
        // Each read takes the track that is furthest behind.
        for (auto & other : ends)
        {
            if (other.first != unit.trackID)
            {
                EXPECT_LE(unit.position, other.second);
            }
        }
        Time end = unit.position;
        end += unit.duration;
        ends[unit.trackID] = end;
        EXPECT_EQ(unit.element.units, 1u);
        if (unit.trackID == ids[0])
        {
            EXPECT_EQ(unit.element.samples, 1920);
            EXPECT_EQ(unit.duration, Time(1, 25));
        }
        take(unit, streams);
    }
    EXPECT_EQ(ends[ids[0]], Time(2));
    EXPECT_EQ(ends[ids[1]], Time(2));
    EXPECT_EQ(streams["v"].md5, truth.video);
    EXPECT_EQ(streams["a"].md5, truth.audio);
}

TEST(MXFIOEssenceReader, TracksOfTwoRatesSeekTogether)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Truth truth(path);
    Opened file(VellumTest::readFile(path));
    soundAt48000(file, 50);
    EssenceReader reader(file.reader, *file.preface, file.material(), false, false);

    // Half a second is unit 12 of the 25 track and sample 24000 of the 48000 one, which lies in
    // the sound of content package 12.
    ASSERT_TRUE(reader.seek(Time(1, 2)));
    EXPECT_EQ(reader.position(), Time(1, 2));
    EssenceReader::ElementEditUnit unit;
    std::map<std::string, Stream> streams;
    while (streams["v"].md5.empty() || streams["a"].md5.empty())
    {
        ASSERT_TRUE(reader.nextElementEditUnit(65536, unit));
        if (unit.element.preCharge == 0)
            take(unit, streams);
    }
    // The picture shown at frame 12, read where the file holds it.
    EXPECT_EQ(streams["v"].md5[0], truth.shownAt(12));
    EXPECT_EQ(streams["v"].positions[0], Time(static_cast<int64>(truth.storedIndexOf(12)), 25));
    EXPECT_EQ(streams["a"].md5[0], truth.audio[12]);
    EXPECT_EQ(streams["a"].positions[0], Time(24000 - 960, 48000));
    EXPECT_EQ(streams["a"].samples[0], 1920);

    // Past the end of both, and before the start.
    EXPECT_FALSE(reader.seek(Time(2)));
    EXPECT_FALSE(reader.seek(Time(-1, 25)));
    // A seek fails on a sound track made shorter, while the picture is still positioned.
    Opened shorter(VellumTest::readFile(path));
    soundAt48000(shorter, 25);
    EssenceReader partial(shorter.reader, *shorter.preface, shorter.material(), false, false);
    EXPECT_FALSE(partial.seek(Time(3, 2)));
    std::map<std::string, Stream> rest = readAll(partial);
    EXPECT_TRUE(rest["a"].md5.empty());
    ASSERT_FALSE(rest["v"].md5.empty());
    // From the picture shown at frame 37 on, in file order.
    std::vector<std::string> tail(truth.video.begin() + static_cast<long>(truth.storedIndexOf(37)), truth.video.end());
    EXPECT_EQ(rest["v"].md5, tail);
}

TEST(MXFIOEssenceReader, SeeksInSeconds)
{
    REQUIRE_FIXTURE(probe, "op1a-mpeg2-pcm.mxf");
    for (std::string name : {"op1a-mpeg2-pcm.mxf", "op1a-mpeg2-pcm-2997.mxf"})
    {
        SCOPED_TRACE(name);
        std::string path = VellumTest::ffmpegFixture(name);
        Truth truth(path);
        ASSERT_EQ(truth.audio.size(), truth.video.size());
        Opened file(VellumTest::readFile(path));
        EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
        Time frame = name == "op1a-mpeg2-pcm.mxf" ? Time(1, 25) : Time(1001, 30000);
        long frames = static_cast<long>(truth.video.size());

        // Seek to frame n: the picture shown at n comes out first, as stored, and the sound of
        // content package n; the order of seeks does not matter.
        for (long n : {0L, 7L, 13L, 25L, 36L, frames - 1, 3L, 1L})
        {
            SCOPED_TRACE(n);
            ASSERT_TRUE(reader.seek(frame * Time(n)));
            EXPECT_EQ(reader.position(), frame * Time(n));
            EssenceReader::ElementEditUnit unit;
            std::map<std::string, Stream> streams;
            while (streams["v"].md5.empty() || streams["a"].md5.empty())
            {
                ASSERT_TRUE(reader.nextElementEditUnit(65536, unit));
                take(unit, streams);
            }
            EXPECT_EQ(streams["v"].md5[0], truth.shownAt(n));
            EXPECT_EQ(streams["v"].preCharge[0], 0);
            EXPECT_EQ(streams["v"].positions[0], frame * Time(static_cast<int64>(truth.storedIndexOf(n))));
            EXPECT_EQ(streams["a"].md5[0], truth.audio[static_cast<size_t>(n)]);
            EXPECT_EQ(streams["a"].positions[0], frame * Time(n));
        }

        // Out of range: nothing there, and a later valid seek still works.
        EXPECT_FALSE(reader.seek(Time(-1)));
        EXPECT_FALSE(reader.seek(reader.duration()));
        EXPECT_FALSE(reader.seek(Time(60)));
        ASSERT_TRUE(reader.seek(frame * Time(20)));
        std::map<std::string, Stream> after = readAll(reader);
        std::vector<std::string> sound(truth.audio.begin() + 20, truth.audio.end());
        EXPECT_EQ(after["a"].md5, sound);
        ASSERT_FALSE(after["v"].md5.empty());
        EXPECT_EQ(after["v"].md5[0], truth.shownAt(20));
        EXPECT_EQ(after["v"].md5.back(), truth.video.back());
    }
}

TEST(MXFIOEssenceReader, SeeksInClipWrappedAndIntraFiles)
{
    REQUIRE_FIXTURE(probe, "opatom-dnxhd.mxf");
    for (std::string name : {"opatom-dnxhd.mxf", "d10.mxf"})
    {
        SCOPED_TRACE(name);
        std::string path = VellumTest::ffmpegFixture(name);
        Truth truth(path);
        Opened file(VellumTest::readFile(path));
        EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
        for (size_t n = truth.video.size(); n-- > 0;)
        {
            ASSERT_TRUE(reader.seek(Time(static_cast<int64>(n), 25))) << n;
            EssenceReader::ElementEditUnit unit;
            std::map<std::string, Stream> streams;
            while (streams["v"].md5.empty())
            {
                ASSERT_TRUE(reader.nextElementEditUnit(65536, unit)) << n;
                take(unit, streams);
            }
            EXPECT_EQ(streams["v"].md5[0], truth.video[n]) << n;
            EXPECT_EQ(streams["v"].preCharge[0], 0) << n;
        }
        EXPECT_FALSE(reader.seek(Time(static_cast<int64>(truth.video.size()), 25)));
    }
}

TEST(MXFIOEssenceReader, ReadsInFileOrder)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Truth truth(path);
    Opened file(VellumTest::readFile(path));
    EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
    ASSERT_TRUE(reader.indexTableHandlingMode(MXFIO::FileOrder));
    std::vector<std::string> order;
    std::map<std::string, Stream> streams;
    EssenceReader::ElementEditUnit unit;
    while (reader.nextElementEditUnit(65536, unit))
    {
        order.push_back(kindOf(unit.trackNumber));
        take(unit, streams);
    }
    EXPECT_EQ(streams["v"].md5, truth.video);
    EXPECT_EQ(streams["a"].md5, truth.audio);
    // The file holds picture then sound in each content package.
    ASSERT_GE(order.size(), 4u);
    EXPECT_EQ(order[0], "v");
    EXPECT_EQ(order[1], "a");
    EXPECT_EQ(order[2], "v");
    EXPECT_EQ(reader.position(), Time(2));
}

TEST(MXFIOEssenceReader, ReadsASourcePackageDirectly)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Truth truth(path);
    Opened file(VellumTest::readFile(path));
    Metadata::Structural::GenericPackage * package = file.filePackage();
    ASSERT_NE(package, nullptr);
    EssenceReader reader(file.reader, *file.preface, *package, false, false);
    std::map<std::string, Stream> streams = readAll(reader);
    expectWholeEssence("file package", streams, truth);
}


TEST(MXFIOEssenceReader, FollowsTheClipsOfATrack)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Truth truth(path);
    Opened file(VellumTest::readFile(path));
    Metadata::Structural::TimelineTrack * picture = materialTrack(file, 0x15);
    ASSERT_NE(picture, nullptr);
    Metadata::Structural::Sequence * sequence = picture->sequence();
    auto * first = dynamic_cast<Metadata::Structural::SourceClip *>(sequence->structuralComponent(0));
    ASSERT_NE(first, nullptr);
    // Frames 0 to 19 of the file, then frames 30 to 39.
    Types::Length twenty(20);
    first->duration(&twenty);
    Metadata::Structural::SourceClip * second = Metadata::Structural::addSourceClip(
        *file.metadata, sequence, *first->dataDefinition(), 30, 10);
    second->sourcePackageID(first->sourcePackageID());
    second->sourceTrackID(first->sourceTrackID());
    Types::Length thirty(30);
    sequence->duration(&thirty);

    EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
    std::map<std::string, Stream> streams = readAll(reader);
    std::vector<std::string> expected(truth.video.begin(), truth.video.begin() + 20);
    expected.insert(expected.end(), truth.video.begin() + 30, truth.video.begin() + 40);
    EXPECT_EQ(streams["v"].md5, expected);
    EXPECT_EQ(streams["a"].md5, truth.audio);
    // The second clip follows the first on the track's time line.
    ASSERT_EQ(streams["v"].positions.size(), 30u);
    EXPECT_EQ(streams["v"].positions[20], Time(20, 25));
    EXPECT_EQ(streams["v"].positions[29], Time(29, 25));

    // One second into the track is frame 5 of the second clip: frame 35 of the file.
    ASSERT_TRUE(reader.seek(Time(1)));
    EssenceReader::ElementEditUnit unit;
    std::map<std::string, Stream> after;
    while (after["v"].md5.empty() || after["a"].md5.empty())
    {
        ASSERT_TRUE(reader.nextElementEditUnit(65536, unit));
        take(unit, after);
    }
    EXPECT_EQ(after["v"].md5[0], truth.shownAt(35));
    EXPECT_EQ(after["a"].md5[0], truth.audio[25]);
    // Behind the end of the picture track but inside the sound: false, and the sound reads on.
    EXPECT_FALSE(reader.seek(Time(6, 5)));
    std::map<std::string, Stream> rest = readAll(reader);
    EXPECT_TRUE(rest["v"].md5.empty());
    EXPECT_EQ(rest["a"].md5, std::vector<std::string>(truth.audio.begin() + 30, truth.audio.end()));
}

TEST(MXFIOEssenceReader, OpenEndedClipsRunToTheEndOfTheContainer)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Truth truth(path);
    Opened file(VellumTest::readFile(path));
    Types::Length open(-1);
    for (unsigned int itemType : {0x15u, 0x16u})
    {
        Metadata::Structural::TimelineTrack * track = materialTrack(file, itemType);
        ASSERT_NE(track, nullptr);
        track->sequence()->structuralComponent(0)->duration(&open);
    }
    EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
    EXPECT_EQ(reader.duration(), Time(2));
    std::map<std::string, Stream> streams = readAll(reader);
    expectWholeEssence("open ended", streams, truth);
}

TEST(MXFIOEssenceReader, APackageWithoutEssenceTracksIsRefused)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Opened file(VellumTest::readFile(path));
    Metadata::Structural::GenericPackage & material = file.material();
    while (material.tracksCount() > 0)
        material.removeTrack(0);
    try
    {
        EssenceReader reader(file.reader, *file.preface, material, false, false);
        FAIL() << "a package without tracks was accepted";
    }
    catch (Exceptions::InvalidValue const & e)
    {
        EXPECT_EQ(std::string(Utils::narrow(e.message()).c_str()),
                  "!(masterEditPeriod_ == 0): Package does not have valid Essence Tracks.");
        EXPECT_EQ(e.errorCode(), int(Exceptions::InvalidValue::ERROR_CODE));
    }
}

TEST(MXFIOEssenceReader, ReadsWhatADamagedFileStillHolds)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Truth truth(path);
    Bytes original = VellumTest::readFile(path);
    std::vector<size_t> bodies = VellumTest::partitionsOfKind(original, 0x03);
    std::vector<size_t> footers = VellumTest::partitionsOfKind(original, 0x04);
    ASSERT_FALSE(bodies.empty());
    ASSERT_EQ(footers.size(), 1u);

    // Reads a damaged copy; a cut copy gives a whole prefix of the units (the last perhaps short).
    auto readWhole = [&](std::string const & what, Bytes bytes, bool cut) {
        SCOPED_TRACE(what);
        try
        {
            Opened file(std::move(bytes));
            EssenceReader reader(file.reader, *file.preface, file.material(), false, false);
            std::map<std::string, Stream> streams = readAll(reader);
            if (!cut)
                return expectWholeEssence(what, streams, truth);
            ASSERT_GT(streams["v"].md5.size(), 5u);
            EXPECT_LT(streams["v"].md5.size(), truth.video.size());
            for (size_t i = 0; i + 1 < streams["v"].md5.size(); ++i)
                EXPECT_EQ(streams["v"].md5[i], truth.video[i]) << i;
            for (size_t i = 0; i + 1 < streams["a"].md5.size(); ++i)
                EXPECT_EQ(streams["a"].md5[i], truth.audio[i]) << i;
        }
        catch (Exceptions::BaseException const & e)
        {
            ADD_FAILURE() << e.whatUtf8().c_str();
        }
    };

    // No Random Index Pack at the end.
    std::vector<VellumTest::KlvItem> items = VellumTest::klvWalk(original);
    ASSERT_EQ(items.back().key[13], 0x11);
    readWhole("without RIP", Bytes(original.begin(), original.begin() + long(items.back().offset)), false);
    // A run-in of 100 bytes in front of the header.
    Bytes runIn(100, 0x00);
    runIn.insert(runIn.end(), original.begin(), original.end());
    readWhole("with run-in", runIn, false);
    // The header names a body partition as the footer.
    Bytes copy = original;
    VellumTest::patchBE(copy, items[0].valueOffset + 24, bodies[0], 8);
    readWhole("footer offset on a body partition", copy, false);
    // Cut after the first body partition: no footer, no index, no RIP.
    readWhole("cut after the body", Bytes(original.begin(), original.begin() + long(footers[0])), false);
    // Cut inside the first body partition: what lies before the cut is read.
    size_t cut = bodies[0] + (footers[0] - bodies[0]) / 2;
    readWhole("cut inside the body", Bytes(original.begin(), original.begin() + long(cut)), true);
}

namespace
{
// The track number of the file package's element of this item type, or 0.
unsigned int elementOf(Opened & file, unsigned int itemType)
{
    Metadata::Structural::GenericPackage * source = file.filePackage();
    for (unsigned i = 0; source != 0 && i < source->tracksCount(); ++i)
    {
        Metadata::Structural::Track * track = source->track(i);
        if (track->trackNumber() != 0 && track->trackNumber()->value() >> 24 == itemType)
            return track->trackNumber()->value();
    }
    return 0;
}

std::string readHash(MXFIO::ElementReader & element, MXFIO::ElementData & data)
{
    if (!element.read(65536, data) || data.packet.get() == 0)
        return "nothing";
    KLV::Value & value = data.packet->value();
    Bytes bytes(static_cast<size_t>(value.remaining()));
    uint64 got = value.read(bytes.data(), bytes.size());
    return VellumTest::md5Hex(bytes.data(), static_cast<size_t>(got));
}
} // namespace

TEST(MXFIOElementReader, SeeksThreeWaysAndStopsAtTheClipEnd)
{
    REQUIRE_FIXTURE(path, "op1a-mpeg2-pcm.mxf");
    Truth truth(path);
    Opened file(VellumTest::readFile(path));
    Metadata::Structural::GenericPackage * source = file.filePackage();
    ASSERT_NE(source, nullptr);
    MXFIO::ContentStorageReader container(file.reader,
                                          *file.preface->contentStorage()->essenceContainerData(*source->packageUID()),
                                          false, false, Templates::SharedPtr<MXFIO::ContentStorageProfile>());
    unsigned int number = elementOf(file, 0x15);
    ASSERT_NE(number, 0u);
    // A clip of frames 10 to 29 of the container.
    Templates::auto_ptr<MXFIO::ElementReader> element =
        container.elementReader(number, 10, 20, Types::Rational(25, 1));
    EXPECT_FALSE(element->clipWrapped());
    EXPECT_EQ(element->duration(), 20);
    EXPECT_EQ(element->startPosition(), 10);
    EXPECT_EQ(element->trackNumber(), number);
    EXPECT_EQ(element->key(), MXFIO::trackNumber2Key(number));
    EXPECT_EQ(element->editRate(), Templates::Rational<int>(25));

    MXFIO::ElementData data;
    element->rewind();
    EXPECT_EQ(element->position(), Time(0));
    EXPECT_EQ(readHash(*element, data), truth.video[10]);
    EXPECT_EQ(data.samples, 1);
    EXPECT_EQ(data.units, 1u);
    EXPECT_TRUE(data.hasIndexInfo);
    EXPECT_EQ(element->lastPosition(), Time(0));
    EXPECT_EQ(element->position(), Time(1, 25));

    // An absolute unit of the container, as stored; a unit of the clip in container units and
    // one in the element's units, both for the picture shown there.
    EXPECT_TRUE(element->seekAbsolute(3));
    EXPECT_EQ(readHash(*element, data), truth.video[3]);
    EXPECT_TRUE(element->seekContainerUnits(5));
    EXPECT_EQ(readHash(*element, data), truth.shownAt(15));
    EXPECT_TRUE(element->seek(7));
    EXPECT_EQ(readHash(*element, data), truth.shownAt(17));
    EXPECT_FALSE(element->seek(20));
    EXPECT_FALSE(element->seek(-1));

    // The clip ends after frame 29: the read after it gives no packet.
    EXPECT_TRUE(element->seekAbsolute(28));
    EXPECT_EQ(readHash(*element, data), truth.video[28]);
    EXPECT_EQ(readHash(*element, data), truth.video[29]);
    EXPECT_EQ(readHash(*element, data), "nothing");
    EXPECT_EQ(data.packet.get(), nullptr);

    // A track number that differs only in the element count reads the same element.
    Templates::auto_ptr<MXFIO::ElementReader> counted =
        container.elementReader((number & 0xFF00FFFFu) | 0x00070000u, 0, 50, Types::Rational(25, 1));
    counted->rewind();
    EXPECT_EQ(readHash(*counted, data), truth.video[0]);
    EXPECT_TRUE(counted->seekAbsolute(49));
    EXPECT_EQ(readHash(*counted, data), truth.video[49]);
    EXPECT_EQ(readHash(*counted, data), "nothing");
}

TEST(MXFIOElementReader, HandsOutTheEditUnitsOfAWrappedClip)
{
    REQUIRE_FIXTURE(path, "opatom-dnxhd.mxf");
    Truth truth(path);
    Opened file(VellumTest::readFile(path));
    Metadata::Structural::GenericPackage * source = file.filePackage();
    ASSERT_NE(source, nullptr);
    MXFIO::ContentStorageReader container(file.reader,
                                          *file.preface->contentStorage()->essenceContainerData(*source->packageUID()),
                                          false, false, Templates::SharedPtr<MXFIO::ContentStorageProfile>());
    unsigned int number = elementOf(file, 0x15);
    ASSERT_NE(number, 0u);
    ASSERT_EQ(truth.video.size(), 5u);
    Templates::auto_ptr<MXFIO::ElementReader> element = container.elementReader(number, 0, 5, Types::Rational(25, 1));
    EXPECT_TRUE(element->clipWrapped());
    MXFIO::ElementData data;
    element->rewind();
    for (size_t i = 0; i < 5; ++i)
    {
        EXPECT_EQ(readHash(*element, data), truth.video[i]) << i;
        EXPECT_EQ(data.samples, 1);
    }
    EXPECT_EQ(readHash(*element, data), "nothing");
    EXPECT_TRUE(element->seek(3));
    EXPECT_EQ(readHash(*element, data), truth.video[3]);
    EXPECT_TRUE(element->seekAbsolute(1));
    EXPECT_EQ(readHash(*element, data), truth.video[1]);
    EXPECT_FALSE(element->seek(5));
    EXPECT_FALSE(element->seekAbsolute(-1));
}
