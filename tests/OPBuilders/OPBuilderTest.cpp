// The operational pattern builders: the label that follows from the edit, durations derived
// from the sources, the essence container list, and the aggregation of OP-Atom files.

#include <gtest/gtest.h>

#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralTestSupport.h"
#include "Metadata/Structural/Wrappings.h"
#include "OPBuilders/GenericOPBuilder.h"
#include "OPBuilders/OPAtomBuilder.h"
#include "Types/Factories/UID.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UMID.h"

namespace Vellum
{
namespace
{
namespace S = Metadata::Structural;
using OPBuilders::GenericOPBuilder;
using OPBuilders::MaterialPackageProxy;
using OPBuilders::OPAtomBuilder;
using StructuralTest::w;

Templates::wstring const company = w("Vellum"), product = w("op tests"), version = w("1.0");
Types::Timestamp const date(2025, 3, 4, 5, 6, 7, static_cast<unsigned short>(0));

std::string dotted(Types::UniversalLabel const & label)
{
    char text[64];
    unsigned char const * b = label.rawBuffer();
    std::snprintf(text, sizeof text, "%02x.%02x.%02x", b[12], b[13], b[14]);
    return text;
}

// A source package with one track per data definition, each `units` long at `rate`, and a file
// descriptor per track (a multiple descriptor above two).
S::SourcePackage * addSource(Metadata::PartitionMetadata & m, std::vector<Types::UniversalLabel> const & kinds,
                             Templates::Rational<int> const & rate, int64 units, char const * container)
{
    S::SourcePackage * source = S::metadataSetAs<S::SourcePackage>(m.createMetadataSet(S::StructuralMetadataKeys::sourcePackage()));
    Types::UMID32 const uid = Types::Factories::UID::generateBasicUMID(
        Types::Factories::UID::MaterialType(0x0f), Types::Factories::UID::MNMI_UUID, Types::Factories::UID::INMI_LOCAL);
    source->packageUID(&uid);
    Types::UniversalLabel const ul(w(container).c_str(), Types::Dotted);
    S::MultipleDescriptor * multiple = nullptr;
    if (kinds.size() > 1)
    {
        multiple = S::metadataSetAs<S::MultipleDescriptor>(m.createMetadataSet(S::StructuralMetadataKeys::multipleDescriptor()));
        multiple->essenceContainer(&S::Wrappings::multipleWrapping());
        source->descriptor(multiple);
    }
    for (size_t i = 0; i < kinds.size(); ++i)
    {
        S::TimelineTrack * track = S::createTimelineTrack(m, *source, kinds[i], static_cast<unsigned>(i + 1), 0, 0, rate, units);
        S::addSourceClip(m, track->sequence(), kinds[i], 0, units);
        S::FileDescriptor * d = S::metadataSetAs<S::FileDescriptor>(m.createMetadataSet(S::StructuralMetadataKeys::cdciEssenceDescriptor()));
        d->essenceContainer(&ul);
        if (multiple)
            multiple->appendSubDescriptorUID(d);
        else
            source->descriptor(d);
    }
    S::findPreface(m)->contentStorage()->appendPackage(source);
    return source;
}

char const * const MPEG = "06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.01";
char const * const WAVE = "06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.01.00";

std::unique_ptr<GenericOPBuilder> genericBuilder(bool external = false)
{
    return std::unique_ptr<GenericOPBuilder>(new GenericOPBuilder(StructuralTest::standardDictionary(), company.c_str(),
                                                                  product.c_str(), version.c_str(), Types::UUID(),
                                                                  nullptr, &date, external, false));
}

Utils::TimeCode const start(25, 0, 0, 0, 0, false, false);
Templates::Rational<int> const PAL(25);

struct Shape
{
    char const * name;
    void (*build)(GenericOPBuilder &);
    char const * label; // bytes 12.13.14 after update()
};

S::Track * firstTrack(S::SourcePackage * p) { return p->track(0u); }

Shape const shapes[] = {
    {"new builder", [](GenericOPBuilder &) {}, "01.01.01"},
    {"one picture clip (1a)",
     [](GenericOPBuilder & b) {
         S::SourcePackage * s = addSource(*b.metadata(), {S::DataDefinitionULs::picture()}, PAL, 50, MPEG);
         b.createMaterialPackage(start, PAL)->createTrack(0, nullptr)->addClip(s, firstTrack(s));
     },
     "01.01.01"},
    {"picture and sound in one source: qualifier bit 3",
     [](GenericOPBuilder & b) {
         S::SourcePackage * s = addSource(*b.metadata(), {S::DataDefinitionULs::picture(), S::DataDefinitionULs::audio()}, PAL, 50, MPEG);
         MaterialPackageProxy::TrackProxies out;
         b.createMaterialPackage(start, PAL)->createTracks(out, s, *s);
     },
     "01.01.09"},
    {"two tracks over two sources (1b)",
     [](GenericOPBuilder & b) {
         S::SourcePackage * a = addSource(*b.metadata(), {S::DataDefinitionULs::picture()}, PAL, 50, MPEG);
         S::SourcePackage * c = addSource(*b.metadata(), {S::DataDefinitionULs::audio()}, PAL, 50, WAVE);
         MaterialPackageProxy * mp = b.createMaterialPackage(start, PAL);
         mp->createTrack(0, nullptr)->addClip(a, firstTrack(a));
         mp->createTrack(0, nullptr)->addClip(c, firstTrack(c));
     },
     "01.02.01"},
    {"two clips in a row (2a)",
     [](GenericOPBuilder & b) {
         S::SourcePackage * a = addSource(*b.metadata(), {S::DataDefinitionULs::picture()}, PAL, 50, MPEG);
         S::SourcePackage * c = addSource(*b.metadata(), {S::DataDefinitionULs::picture()}, PAL, 20, MPEG);
         OPBuilders::TrackProxy * t = b.createMaterialPackage(start, PAL)->createTrack(0, nullptr);
         t->addClip(a, firstTrack(a));
         t->addClip(c, firstTrack(c));
     },
     "02.01.01"},
    {"a sub-clip (3a)",
     [](GenericOPBuilder & b) {
         S::SourcePackage * a = addSource(*b.metadata(), {S::DataDefinitionULs::picture()}, PAL, 50, MPEG);
         b.createMaterialPackage(start, PAL)->createTrack(0, nullptr)->addSubClip(a, firstTrack(a), 10, 20);
     },
     "03.01.01"},
    {"a sub-clip over the whole track is a clip",
     [](GenericOPBuilder & b) {
         S::SourcePackage * a = addSource(*b.metadata(), {S::DataDefinitionULs::picture()}, PAL, 50, MPEG);
         b.createMaterialPackage(start, PAL)->createTrack(0, nullptr)->addSubClip(a, firstTrack(a), 0, 50);
     },
     "01.01.01"},
    {"two material packages (1c)",
     [](GenericOPBuilder & b) {
         b.createMaterialPackage(start, PAL);
         b.createMaterialPackage(start, PAL);
     },
     "01.03.01"},
};

TEST(GenericOPBuilder, LabelFollowsTheShapeOfTheEdit)
{
    for (Shape const & shape : shapes)
    {
        SCOPED_TRACE(shape.name);
        std::unique_ptr<GenericOPBuilder> b = genericBuilder();
        shape.build(*b);
        b->update();
        EXPECT_EQ(dotted(b->currentOP()), shape.label);
        S::Preface * preface = S::findPreface(*b->metadata());
        ASSERT_NE(preface->operationalPattern(), nullptr);
        EXPECT_EQ(dotted(*preface->operationalPattern()), shape.label);
    }
}

TEST(GenericOPBuilder, ExternalEssenceSetsQualifierAndEmptiesContainers)
{
    std::unique_ptr<GenericOPBuilder> b = genericBuilder(true);
    EXPECT_EQ(dotted(b->currentOP()), "01.01.03");
    addSource(*b->metadata(), {S::DataDefinitionULs::picture()}, PAL, 5, MPEG);
    b->update();
    EXPECT_EQ(S::findPreface(*b->metadata())->essenceContainersCount(), 0u);
    b->externalEssence(false);
    b->update();
    EXPECT_EQ(dotted(b->currentOP()), "01.01.01");
    EXPECT_EQ(S::findPreface(*b->metadata())->essenceContainersCount(), 1u);
}

TEST(GenericOPBuilder, EssenceContainersAndSuppressedMultipleWrapping)
{
    std::unique_ptr<GenericOPBuilder> b = genericBuilder();
    S::SourcePackage * s = addSource(*b->metadata(), {S::DataDefinitionULs::picture(), S::DataDefinitionULs::audio()}, PAL, 5, MPEG);
    addSource(*b->metadata(), {S::DataDefinitionULs::audio()}, PAL, 5, WAVE);
    MaterialPackageProxy::TrackProxies out;
    b->createMaterialPackage(start, PAL)->createTracks(out, s, *s);
    EXPECT_EQ(out.size(), 2u);
    b->update();
    S::Preface * preface = S::findPreface(*b->metadata());
    ASSERT_EQ(preface->essenceContainersCount(), 3u);
    EXPECT_EQ(*preface->essenceContainer(0), S::Wrappings::multipleWrapping());
    b->suppressMultipleWrappingsUL(true);
    EXPECT_EQ(preface->essenceContainersCount(), 3u);
    b->update();
    ASSERT_EQ(preface->essenceContainersCount(), 2u);
    EXPECT_EQ(*preface->essenceContainer(1), Types::UniversalLabel(w(WAVE).c_str(), Types::Dotted));
}

int64 lengthOf(S::Sequence const * sequence) { return sequence->duration() ? sequence->duration()->value() : -2; }

TEST(GenericOPBuilder, DurationsRoundUpAndUnknownStaysUnknown)
{
    std::unique_ptr<GenericOPBuilder> b = genericBuilder();
    // 7 units at 25 are 0.28 s: 8.39... units at 29.97, so 9.
    S::SourcePackage * s = addSource(*b->metadata(), {S::DataDefinitionULs::picture()}, PAL, 7, MPEG);
    Templates::Rational<int> const ntsc(30000, 1001);
    MaterialPackageProxy * mp = b->createMaterialPackage(Utils::TimeCode(30, 0, 0, 0, 0, true, false), ntsc);
    OPBuilders::TrackProxy * t = mp->createTrack(0, &ntsc);
    t->addClip(s, firstTrack(s));
    b->update();
    EXPECT_EQ(lengthOf(t->track()->sequence()), 9);
    S::TimelineTrack * timecode = S::getTimecodeTrack(*mp->package());
    ASSERT_NE(timecode, nullptr);
    EXPECT_EQ(lengthOf(timecode->sequence()), 9);
    EXPECT_EQ(mp->package()->tracksCount(), 2u);
    EXPECT_EQ(mp->package()->track(0u), timecode);

    Types::Length const unknown(-1);
    S::metadataSetAs<S::SourceClip>(firstTrack(s)->sequence()->structuralComponent(0))->duration(&unknown);
    b->update();
    EXPECT_EQ(lengthOf(t->track()->sequence()), -1);
    EXPECT_EQ(lengthOf(timecode->sequence()), -1);
}

std::unique_ptr<OPAtomBuilder> atomBuilder()
{
    return std::unique_ptr<OPAtomBuilder>(new OPAtomBuilder(StructuralTest::standardDictionary(), company.c_str(),
                                                            product.c_str(), version.c_str(), Types::UUID(), nullptr, &date));
}

TEST(OPAtomBuilder, FlagsOfByte13)
{
    std::unique_ptr<OPAtomBuilder> b = atomBuilder();
    EXPECT_EQ(b->currentOP(), Types::UniversalLabel(w("06.0e.2b.34.04.01.01.02.0d.01.02.01.10.00.00.00").c_str(), Types::Dotted));
    S::SourcePackage * a = addSource(*b->metadata(), {S::DataDefinitionULs::picture()}, PAL, 5, MPEG);
    S::SourcePackage * c = addSource(*b->metadata(), {S::DataDefinitionULs::picture()}, PAL, 5, MPEG);
    MaterialPackageProxy * mp = b->createMaterialPackage(start, PAL);
    OPBuilders::TrackProxy * t = mp->createTrack(0, nullptr);
    t->addClip(a, firstTrack(a));
    b->update();
    EXPECT_EQ(dotted(b->currentOP()), "10.00.00");
    t->addClip(c, firstTrack(c));
    b->update();
    EXPECT_EQ(dotted(b->currentOP()), "10.01.00");
    mp->createTrack(0, nullptr)->addClip(c, firstTrack(c));
    b->update();
    EXPECT_EQ(dotted(b->currentOP()), "10.03.00");
    EXPECT_EQ(*S::findPreface(*b->metadata())->operationalPattern(), b->currentOP());
}

TEST(OPAtomAggregator, ThreeFilesShareOneIdentityAndListAllTracks)
{
    std::vector<std::unique_ptr<OPAtomBuilder>> builders;
    OPBuilders::OPAtomAggregator aggregator;
    aggregator.addOPAtomBuilder(nullptr);
    for (int i = 0; i < 3; ++i)
    {
        builders.push_back(atomBuilder());
        OPAtomBuilder & b = *builders.back();
        S::SourcePackage * s = addSource(*b.metadata(), {i == 0 ? S::DataDefinitionULs::picture() : S::DataDefinitionULs::audio()}, PAL, 10, MPEG);
        // A time code track behind the essence track of the source moves to the front.
        S::createTimelineTrack(*b.metadata(), *s, S::DataDefinitionULs::timecode12MInactive(), 9, 0, 0, PAL, 10);
        b.createMaterialPackage(start, PAL)->createTrack(0, nullptr)->addClip(s, firstTrack(s));
        b.topLevelFilePackage(*s);
        b.update();
        aggregator.addOPAtomBuilder(&b);
    }
    aggregator.commit();
    Types::UMID32 const * identity = nullptr;
    for (auto & b : builders)
    {
        S::ContentStorage * storage = S::findPreface(*b->metadata())->contentStorage();
        S::MaterialPackage * mp = S::metadataSetAs<S::MaterialPackage>(storage->package(1u));
        ASSERT_NE(mp, nullptr);
        identity = identity ? identity : mp->packageUID();
        EXPECT_TRUE(*identity == *mp->packageUID());
        ASSERT_EQ(mp->tracksCount(), 4u);
        for (unsigned i = 0; i < 4; ++i)
            EXPECT_EQ(mp->track(i)->trackID()->value(), i);
        S::SourcePackage * sp = S::metadataSetAs<S::SourcePackage>(storage->package(0u));
        EXPECT_EQ(sp->track(0u)->trackID()->value(), 0u);
        EXPECT_EQ(S::metadataSetAs<S::TimelineTrack>(sp->track(0u))->sequence()->dataDefinition()[0],
                  S::DataDefinitionULs::timecode12MInactive());
    }
}

TEST(OPBuildersDeathTest, WrongUseEndsWithTheAssertion)
{
    EXPECT_DEATH(
        {
            OPBuilders::OPAtomAggregator aggregator;
            std::unique_ptr<OPAtomBuilder> b = atomBuilder();
            aggregator.addOPAtomBuilder(b.get());
            aggregator.commit();
        },
        "opAtomBuilders_.size \\(\\) > 1|builders_.size\\(\\) > 1.*Can only aggregate 2 or more OPAtomBuilder's.");
    EXPECT_DEATH(
        {
            std::unique_ptr<GenericOPBuilder> b = genericBuilder();
            S::SourcePackage * s = addSource(*b->metadata(), {S::DataDefinitionULs::picture(), S::DataDefinitionULs::audio()}, PAL, 5, MPEG);
            OPBuilders::TrackProxy * t = b->createMaterialPackage(start, PAL)->createTrack(0, nullptr);
            t->addClip(s, s->track(0u));
            t->addClip(s, s->track(1u));
        },
        "Adding tracks with different Data Definitions");
}
} // namespace
} // namespace Vellum
