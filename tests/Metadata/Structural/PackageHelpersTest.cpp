// Tracks, descriptors, spans and time codes of packages; building tracks and clips.

#include <gtest/gtest.h>

#include "Metadata/Structural/HeaderBuilding.h"
#include "Metadata/Structural/NullValues.h"
#include "Metadata/Structural/SubclassHelpers.h"

using namespace Vellum;
using namespace Vellum::StructuralTest;
using namespace Vellum::Metadata::Structural;
namespace Keys = Vellum::Metadata::Structural::StructuralMetadataKeys;

TEST(StructuralPackageHelpers, CreatedTracksAndClipsCarryWhatTheyWereGiven)
{
    BuiltHeader h = buildHeader(250);
    TimelineTrack * track = h.sourcePicture;
    EXPECT_EQ(0x15010500u, track->trackNumber()->value());
    EXPECT_EQ(25, track->editRate()->numerator());
    Sequence * sequence = track->sequence();
    ASSERT_NE(nullptr, sequence);
    EXPECT_EQ(DataDefinitionULs::picture(), *sequence->dataDefinition());
    // The clip's duration is not added to the sequence's.
    EXPECT_EQ(250, sequence->duration()->value());
    ASSERT_EQ(1u, sequence->structuralComponentsCount());
    SourceClip * clip = metadataSetAs<SourceClip>(sequence->structuralComponent(0));
    ASSERT_NE(nullptr, clip);
    EXPECT_EQ(250, clip->duration()->value());
    EXPECT_EQ(DistiguishedValue::nullUMID32(), *clip->sourcePackageID());
    // Tracks go to the end of the package, in order.
    ASSERT_EQ(3u, h.source->tracksCount());
    EXPECT_EQ(static_cast<Track *>(h.sourcePicture), h.source->track(1u));
    EXPECT_EQ(static_cast<Track *>(h.sourceSound), h.source->track(2u));

    SourceClip * second = addSourceClip(*h.metadata, sequence, DataDefinitionULs::picture(), 250, 100);
    EXPECT_EQ(250, second->startPosition()->value());
    EXPECT_EQ(250, sequence->duration()->value());
}

TEST(StructuralPackageHelpers, TracksByKind)
{
    BuiltHeader h = buildHeader(250);
    Templates::list<TimelineTrack *> all, essence;
    getAllTimelineTracks(*h.material, all);
    getAllEssenceTracks(*h.material, essence);
    ASSERT_EQ(3u, all.size());
    ASSERT_EQ(2u, essence.size());
    EXPECT_EQ(h.materialPicture, essence.front());
    EXPECT_EQ(h.materialSound, essence.back());
    EXPECT_EQ(h.materialTimecode, getTimecodeTrack(*h.material));

    // Static and event tracks are no timeline tracks; a package without a time code has none.
    h.material->appendTrack(createSet<StaticTrack>(*h.metadata, Keys::staticTrack()));
    all.clear();
    getAllTimelineTracks(*h.material, all);
    EXPECT_EQ(3u, all.size());
    MaterialPackage * bare = createSet<MaterialPackage>(*h.metadata, Keys::materialPackage());
    EXPECT_EQ(nullptr, getTimecodeTrack(*bare));
    EXPECT_FALSE(startTimecode(*bare).isDefined());
    EXPECT_FALSE(packageDurationAsTimeCode(*bare).isDefined());
    EXPECT_EQ(Templates::Rational<int64>(0), packageDurationInSeconds(*bare));
}

TEST(StructuralPackageHelpers, DescriptorsOfTracks)
{
    BuiltHeader h = buildHeader(250);
    EXPECT_EQ(static_cast<FileDescriptor *>(h.picture), fileDescriptorForTrack(*h.source, 2));
    EXPECT_EQ(static_cast<FileDescriptor *>(h.sound), fileDescriptorForTrack(*h.source, 3));
    EXPECT_EQ(nullptr, fileDescriptorForTrack(*h.source, 1));
    ASSERT_NE(nullptr, essenceULOfTrack(*h.source, h.sourcePicture));
    EXPECT_EQ(mpegContainer(), *essenceULOfTrack(*h.source, h.sourcePicture));
    EXPECT_EQ(waveContainer(), *essenceULOfTrack(*h.source, h.sourceSound));
    EXPECT_EQ(nullptr, essenceULOfTrack(*h.source, nullptr));

    // Without a linked track, a descriptor is found by the kind of the track's data.
    h.sound->linkedTrackID(nullptr);
    EXPECT_EQ(nullptr, fileDescriptorForTrack(*h.source, 3));
    EXPECT_EQ(waveContainer(), *essenceULOfTrack(*h.source, h.sourceSound));

    // A single file descriptor without a linked track describes the one track of its package.
    SourcePackage * single = createSet<SourcePackage>(*h.metadata, Keys::sourcePackage());
    WAVEAudioEssenceDescriptor * wave =
        createSet<WAVEAudioEssenceDescriptor>(*h.metadata, Keys::waveAudioEssenceDescriptor());
    single->descriptor(wave);
    EXPECT_EQ(nullptr, fileDescriptorForTrack(*single, 1));
    TimelineTrack * only = createTimelineTrack(*h.metadata, *single, DataDefinitionULs::audio(), 1, 0, 0,
                                               Templates::Rational<int>(48000), 10);
    EXPECT_EQ(static_cast<FileDescriptor *>(wave), fileDescriptorForTrack(*single, 1));
    EXPECT_EQ(static_cast<FileDescriptor *>(wave), fileDescriptorForTrack(*single, 9));
    createTimelineTrack(*h.metadata, *single, DataDefinitionULs::audio(), 2, 0, 0, Templates::Rational<int>(48000), 10);
    EXPECT_EQ(nullptr, fileDescriptorForTrack(*single, 1));
    EXPECT_EQ(nullptr, essenceULOfTrack(*single, only));

    // A track without an ID has no essence label.
    TimelineTrack * nameless = createSet<TimelineTrack>(*h.metadata, Keys::timelineTrack());
    EXPECT_EQ(nullptr, essenceULOfTrack(*h.source, nameless));
}

TEST(StructuralPackageHelpers, BoundsAndDurations)
{
    BuiltHeader h = buildHeader(250);
    Templates::Rational<int64> start, end;
    ASSERT_TRUE(trackBoundsInSeconds(h.materialSound, start, end));
    EXPECT_EQ(Templates::Rational<int64>(0), start);
    EXPECT_EQ(Templates::Rational<int64>(10), end);

    Types::Position const origin(50);
    h.materialPicture->origin(&origin);
    ASSERT_TRUE(trackBoundsInSeconds(h.materialPicture, start, end));
    EXPECT_EQ(Templates::Rational<int64>(2), start);
    EXPECT_EQ(Templates::Rational<int64>(12), end);
    EXPECT_EQ(Templates::Rational<int64>(10), packageDurationInSeconds(*h.material));

    // Each missing part makes it false: no track, a duration of -1, no sequence, no edit rate
    // or one with a denominator of 0.
    EXPECT_FALSE(trackBoundsInSeconds(nullptr, start, end));
    Types::Length const unknown(-1);
    h.materialSound->sequence()->duration(&unknown);
    EXPECT_FALSE(trackBoundsInSeconds(h.materialSound, start, end));
    TimelineTrack * track = createSet<TimelineTrack>(*h.metadata, Keys::timelineTrack());
    EXPECT_FALSE(trackBoundsInSeconds(track, start, end));
    Sequence * sequence = createSet<Sequence>(*h.metadata, Keys::sequence());
    Types::Length const ten(10);
    sequence->duration(&ten);
    track->sequence(sequence);
    track->origin(&origin);
    EXPECT_FALSE(trackBoundsInSeconds(track, start, end));
    Types::Rational const undefined(25, 0);
    track->editRate(&undefined);
    EXPECT_FALSE(trackBoundsInSeconds(track, start, end));
    Types::Rational const rate(30000, 1001);
    track->editRate(&rate);
    ASSERT_TRUE(trackBoundsInSeconds(track, start, end));
    EXPECT_EQ(Templates::Rational<int64>(50 * 1001, 30000), start);
}

TEST(StructuralPackageHelpers, TimeCodesOfAPackage)
{
    BuiltHeader h = buildHeader(250);
    auto text = [](Utils::TimeCode const & tc) { return n(tc.toString(true, true)); };
    EXPECT_EQ("01:00:00:00", text(startTimecode(*h.material)));
    EXPECT_EQ(25, startTimecode(*h.material).frameRate());
    EXPECT_EQ("00:00:10:00", text(packageDurationAsTimeCode(*h.material)));
    EXPECT_FALSE(isDropFrame(h.materialTimecode));

    // Drop frame at 30000/1001: 17982 frames are ten minutes.
    MaterialPackage * ntsc = createSet<MaterialPackage>(*h.metadata, Keys::materialPackage());
    TimelineTrack * timecode = addTimecodeTrack(*h.metadata, *ntsc, 1, 107892, 17982, true);
    EXPECT_TRUE(isDropFrame(timecode));
    EXPECT_EQ(30, startTimecode(*ntsc).frameRate());
    EXPECT_EQ("01:00:00:00 (DF)", text(startTimecode(*ntsc)));
    EXPECT_EQ("00:10:00:00 (DF)", text(packageDurationAsTimeCode(*ntsc)));
}
