// The typed accessors of the structural classes over sets of the built-in dictionary.

#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "Metadata/Structural/StructuralTestSupport.h"

#include "MetaMetadata/MetaMetadataSet.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Metadata/Structural/SubclassHelpers.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UMID.h"
#include "Types/UTF16String.h"
#include "Types/UniversalLabel.h"

using namespace Vellum;
using namespace Vellum::Metadata;
using namespace Vellum::Metadata::Structural;
using namespace Vellum::StructuralTest;
namespace Keys = Vellum::Metadata::Structural::StructuralMetadataKeys;
namespace ULs = Vellum::Metadata::Structural::StructuralMetadataULs;

namespace
{
Types::UMID32 umid(unsigned char last)
{
    unsigned char bytes[32] = {0x06, 0x0a, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05, 0x01, 0x01, 0x0f, 0x20, 0x13};
    bytes[31] = last;
    return Types::UMID32(bytes);
}
} // namespace

TEST(StructuralAccessors, InitializeGivesEachConcreteKeyItsClass)
{
    SetOwner owner;
    EXPECT_TRUE(owner.create<Preface>(Keys::preface()) && owner.create<MPEG2VideoDescriptor>(Keys::mpeg2VideoDescriptor()) &&
                owner.create<AES3AudioEssenceDescriptor>(Keys::aes3AudioEssenceDescriptor()) &&
                owner.create<DMSourceClip>(Keys::dmSourceClip()) &&
                owner.create<WAVEAudioPhysicalDescriptor>(Keys::waveAudioPhysicalDescriptor()) &&
                owner.create<UnknownChunkSet>(Keys::unknownChunkSet()));
    // Sets without a class of their own stay plain sets.
    MetadataSet * context = owner.create(Keys::cryptographicContext());
    EXPECT_EQ(nullptr, metadataSetAs<TrackableMetadataSet>(context));
    EXPECT_EQ(context, metadataSetAs<MetadataSet>(context));
    // A second call changes nothing.
    initialize();
    EXPECT_NE(nullptr, owner.create<Sequence>(Keys::sequence()));
}

TEST(StructuralAccessors, DowncastsFollowTheClassTree)
{
    SetOwner owner;
    MetadataSet * set = owner.create(Keys::mpeg2VideoDescriptor());
    EXPECT_TRUE(metadataSetAs<CDCIEssenceDescriptor>(set) && metadataSetAs<GenericPictureEssenceDescriptor>(set) &&
                metadataSetAs<FileDescriptor>(set) && metadataSetAs<GenericDescriptor>(set) &&
                metadataSetAs<TrackableMetadataSet>(set));
    EXPECT_FALSE(metadataSetAs<RGBAEssenceDescriptor>(set) || metadataSetAs<GenericSoundEssenceDescriptor>(set));
    MetadataSet const * constSet = set;
    EXPECT_EQ(static_cast<MetadataSet const *>(set), metadataSetAs<FileDescriptor>(constSet));
    EXPECT_EQ(nullptr, metadataSetAs<Track>(constSet));
    EXPECT_EQ(nullptr, metadataSetAs<Track>(static_cast<MetadataSet *>(nullptr)));

    // Identification is no trackable set; a source clip on a descriptive track is a source clip.
    EXPECT_EQ(nullptr, metadataSetAs<TrackableMetadataSet>(owner.create(Keys::identification())));
    EXPECT_NE(nullptr, metadataSetAs<SourceClip>(owner.create(Keys::dmSourceClip())));
    EXPECT_NE(nullptr, metadataSetAs<StructuralComponent>(owner.create(Keys::timecodeComponent())));
}

TEST(StructuralAccessors, SimpleValuesAreCopiedInAndReadBackThroughTheElement)
{
    SetOwner owner;
    TimelineTrack * track = owner.create<TimelineTrack>(Keys::timelineTrack());
    ASSERT_NE(nullptr, track);
    // Every element begins empty.
    EXPECT_FALSE(track->editRate() || track->trackName() || track->sequence());

    int const before = owner.announcements;
    Types::Rational rate(25, 1);
    track->editRate(&rate);
    rate = Types::Rational(30000, 1001);
    ASSERT_NE(nullptr, track->editRate());
    EXPECT_EQ(1, track->editRate()->denominator());
    EXPECT_EQ(before + 1, owner.announcements);
    track->editRate(&rate);
    EXPECT_EQ(1001, track->editRate()->denominator());
    EXPECT_EQ(before + 2, owner.announcements);

    // Through a base class pointer the virtual accessors reach the same elements.
    Track * base = track;
    Types::UInt32 const id(7);
    base->trackID(&id);
    EXPECT_EQ(7u, track->trackID()->value());
    Types::UTF16String const name(w("Picture").c_str());
    base->trackName(&name);
    EXPECT_EQ("Picture", n(track->trackName()->value()));

    // An optional element clears; a required one refuses and keeps its value.
    base->trackName(nullptr);
    EXPECT_EQ(nullptr, track->trackName());
    EXPECT_EQ(thrown<Exceptions::InvalidChange>("Value 'EditRate' is required according to Schema"),
              thrownBy([&] { track->editRate(nullptr); }));
    EXPECT_EQ(1001, track->editRate()->denominator());
}

TEST(StructuralAccessors, ALabelThatTheSchemaLacksIsNotFound)
{
    SetOwner owner;
    MetaMetadata::MetaMetadataSet bare(Keys::timelineTrack());
    bare.addMetaAttribute(MetaMetadata::MetaMetadataSet(*standardDictionary()->find(Keys::timelineTrack()))
                              .findMetaAttribute(Metadata::MetadataULs::instanceUID()));
    TimelineTrack track(&bare, &owner);
    std::string const expected = "No element with this Universal Label was found: " + n(ULs::editRate().toString());
    EXPECT_EQ(thrown<Exceptions::NotFound>(expected), thrownBy([&] { track.editRate(); }));
    Types::Rational const rate(25, 1);
    EXPECT_EQ(Exceptions::NotFound::ERROR_CODE, thrownBy([&] { track.editRate(&rate); }).code);
}

TEST(StructuralAccessors, ReferencesFindTheirTargetThroughTheOwner)
{
    SetOwner owner;
    Preface * preface = owner.create<Preface>(Keys::preface());
    ContentStorage * storage = owner.create<ContentStorage>(Keys::contentStorage());
    SourcePackage * package = owner.create<SourcePackage>(Keys::sourcePackage());
    TimelineTrack * track = owner.create<TimelineTrack>(Keys::timelineTrack());
    Sequence * sequence = owner.create<Sequence>(Keys::sequence());

    preface->contentStorage(storage);
    EXPECT_EQ(storage, preface->contentStorage());
    preface->primaryPackage(package);
    EXPECT_EQ(static_cast<GenericPackage *>(package), preface->primaryPackage());
    track->sequence(sequence);
    EXPECT_EQ(sequence, track->sequence());

    // The generic form: a kind of set that the schema does not allow there is refused, and the
    // element keeps its target; a label that the holder's schema lacks is passed over.
    EXPECT_EQ(Exceptions::MetadataSetReferenceNotAllowed::ERROR_CODE,
              thrownBy([&] { setReferencedMetadataSet(track, ULs::sequence(), package); }).code);
    EXPECT_EQ(sequence, track->sequence());
    setReferencedMetadataSet(track, ULs::contentStorage(), storage);
    setReferencedMetadataSet(nullptr, ULs::sequence(), sequence);
    setReferencedMetadataSet(preface, ULs::primaryPackage(), nullptr);
    EXPECT_EQ(nullptr, preface->primaryPackage());

    // A getter narrows to its class: a target of another class reads as null.
    package->appendTrack(track);
    EXPECT_EQ(static_cast<Track *>(track), package->track(0u));
    EXPECT_EQ(nullptr, metadataSetAs<EventTrack>(package->track(0u)));
}

TEST(StructuralAccessors, CollectionsOfReferences)
{
    SetOwner owner;
    SourcePackage * package = owner.create<SourcePackage>(Keys::sourcePackage());
    EXPECT_EQ(0u, package->tracksCount());
    TimelineTrack * first = owner.create<TimelineTrack>(Keys::timelineTrack());
    EventTrack * second = owner.create<EventTrack>(Keys::eventTrack());
    StaticTrack * third = owner.create<StaticTrack>(Keys::staticTrack());
    package->appendTrack(first);
    package->appendTrack(third);
    package->addTrack(1, second);
    ASSERT_EQ(3u, package->tracksCount());
    EXPECT_EQ(static_cast<Track *>(second), package->track(1u));
    EXPECT_EQ(static_cast<Track *>(third), package->track(2u));
    package->removeTrack(0);
    ASSERT_EQ(2u, package->tracksCount());
    EXPECT_EQ(static_cast<Track *>(second), package->track(0u));
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, thrownBy([&] { package->track(2u); }).code);
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, thrownBy([&] { package->removeTrack(5); }).code);

    // Batches append only; members read back by index.
    ContentStorage * storage = owner.create<ContentStorage>(Keys::contentStorage());
    MaterialPackage * material = owner.create<MaterialPackage>(Keys::materialPackage());
    storage->appendPackage(material);
    storage->appendPackage(package);
    ASSERT_EQ(2u, storage->packagesCount());
    EXPECT_EQ(static_cast<GenericPackage *>(package), storage->package(1u));
    storage->removePackage(0);
    storage->removePackage(0);
    EXPECT_EQ(0u, storage->packagesCount());
    EXPECT_FALSE(storage->find(ULs::packages()).empty());
}

TEST(StructuralAccessors, CollectionsOfValues)
{
    SetOwner owner;
    Preface * preface = owner.create<Preface>(Keys::preface());
    EXPECT_EQ(0u, preface->essenceContainersCount());
    preface->appendEssenceContainer(ULs::bodySID());
    preface->appendEssenceContainer(ULs::indexSID());
    ASSERT_EQ(2u, preface->essenceContainersCount());
    EXPECT_EQ(ULs::indexSID(), *preface->essenceContainer(1));
    preface->removeEssenceContainer(0);
    ASSERT_EQ(1u, preface->essenceContainersCount());
    EXPECT_EQ(ULs::indexSID(), *preface->essenceContainer(0));
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, thrownBy([&] { preface->essenceContainer(1); }).code);

    GenericPictureEssenceDescriptor * picture =
        owner.create<GenericPictureEssenceDescriptor>(Keys::cdciEssenceDescriptor());
    picture->appendVideoLineMap(Types::Int32(21));
    picture->appendVideoLineMap(Types::Int32(584));
    picture->addVideoLineMap(0, Types::Int32(7));
    ASSERT_EQ(3u, picture->videoLineMapCount());
    EXPECT_EQ(7, picture->videoLineMap(0)->value());
    EXPECT_EQ(584, picture->videoLineMap(2)->value());
}

TEST(StructuralAccessors, FindingByIdentifier)
{
    SetOwner owner;
    ContentStorage * storage = owner.create<ContentStorage>(Keys::contentStorage());
    MaterialPackage * material = owner.create<MaterialPackage>(Keys::materialPackage());
    SourcePackage * source = owner.create<SourcePackage>(Keys::sourcePackage());
    EssenceContainerData * data = owner.create<EssenceContainerData>(Keys::essenceContainerData());
    Types::UMID32 const materialUID = umid(1), sourceUID = umid(2);
    material->packageUID(&materialUID);
    source->packageUID(&sourceUID);
    storage->appendPackage(material);
    storage->appendPackage(source);
    storage->appendEssenceContainerData(data);

    EXPECT_EQ(static_cast<GenericPackage *>(material), storage->package(materialUID));
    EXPECT_EQ(nullptr, storage->package(umid(3)));
    EXPECT_EQ(nullptr, storage->essenceContainerData(sourceUID));
    EXPECT_EQ(nullptr, data->linkedPackage());
    data->linkedPackageUID(&sourceUID);
    EXPECT_EQ(data, storage->essenceContainerData(sourceUID));
    EXPECT_EQ(static_cast<GenericPackage *>(source), data->linkedPackage());

    TimelineTrack * track = owner.create<TimelineTrack>(Keys::timelineTrack());
    Types::UInt32 const id(2);
    track->trackID(&id);
    source->appendTrack(owner.create<StaticTrack>(Keys::staticTrack()));
    source->appendTrack(track);
    EXPECT_EQ(static_cast<Track *>(track), source->track(Types::UInt32(2)));
    EXPECT_EQ(nullptr, source->track(Types::UInt32(1)));
}

TEST(StructuralAccessors, GenerationFollowsTheIdentification)
{
    SetOwner owner;
    Identification * identification = owner.create<Identification>(Keys::identification());
    Sequence * sequence = owner.create<Sequence>(Keys::sequence());
    // An identification without a generation clears.
    sequence->generation(identification);
    EXPECT_EQ(nullptr, sequence->generation());
    Types::UUID const generation = Types::Factories::UID::generateUUID();
    identification->thisGenerationUID(&generation);
    sequence->generation(identification);
    ASSERT_NE(nullptr, sequence->generation());
    EXPECT_EQ(generation, *sequence->generation());
    sequence->generation(nullptr);
    EXPECT_EQ(nullptr, sequence->generation());
}
