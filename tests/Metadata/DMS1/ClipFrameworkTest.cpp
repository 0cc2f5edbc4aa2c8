// A DMS-1 clip framework over a track.

#include <gtest/gtest.h>

#include "Metadata/DMS1/ClipFramework.h"
#include "Metadata/DMS1/DMS1MetadataKeys.h"
#include "Metadata/DMS1/DMS1MetadataULs.h"
#include "Metadata/Structural/HeaderBuilding.h"
#include "Metadata/Structural/HeaderLoading.h"
#include "Metadata/Structural/SubclassHelpers.h"
#include "Metadata/Structural/Accessors.h"
#include "Types/ISO7String.h"

using namespace Vellum;
using namespace Vellum::StructuralTest;
using namespace Vellum::Metadata::Structural;

TEST(DMS1ClipFramework, DescribesATrackOnADescriptiveTrackOfItsPackage)
{
    BuiltHeader h = buildHeader(250);
    Types::UMID64 const extended;
    Metadata::MetadataSet * framework = Metadata::DMS1::createClipFramework(
        *h.metadata, h.sourcePicture, "A-042", Metadata::DMS1::StillClipKind, &extended);
    ASSERT_NE(nullptr, framework);
    EXPECT_EQ(Metadata::DMS1::DMS1MetadataKeys::clipFramework(), framework->key());
    Types::UTF16String const * kind = Accessors::value<Types::UTF16String>(*framework, Metadata::DMS1::DMS1MetadataULs::clipKind());
    ASSERT_NE(nullptr, kind);
    EXPECT_EQ("Still", n(kind->value()));
    Types::ISO7String const * number = Accessors::value<Types::ISO7String>(*framework, Metadata::DMS1::DMS1MetadataULs::clipNumber());
    ASSERT_NE(nullptr, number);
    EXPECT_EQ(std::string("A-042"), number->value());
    EXPECT_NE(nullptr, Accessors::value<Types::UMID64>(*framework, Metadata::DMS1::DMS1MetadataULs::extendedClipID()));

    // A fourth track, after the highest track ID, over the same span.
    ASSERT_EQ(4u, h.source->tracksCount());
    TimelineTrack * track = metadataSetAs<TimelineTrack>(h.source->track(3u));
    ASSERT_NE(nullptr, track);
    EXPECT_EQ(4u, track->trackID()->value());
    EXPECT_EQ(25, track->editRate()->numerator());
    EXPECT_FALSE(isEssenceTrack(track));
    Sequence * sequence = track->sequence();
    EXPECT_EQ(DataDefinitionULs::descriptiveMetadata(), *sequence->dataDefinition());
    EXPECT_EQ(250, sequence->duration()->value());
    ASSERT_EQ(1u, sequence->structuralComponentsCount());
    DMSegment * segment = metadataSetAs<DMSegment>(sequence->structuralComponent(0));
    ASSERT_NE(nullptr, segment);
    EXPECT_EQ(framework, segment->dmFramework());
    EXPECT_EQ(250, segment->duration()->value());
    ASSERT_EQ(1u, segment->dmSegmentTrackIDsCount());
    EXPECT_EQ(2u, segment->dmSegmentTrackID(0)->value());

    // The framework is written and read back under the segment.
    LoadedHeader loaded = loadHeader(headerOnlyFile(*h.metadata));
    ASSERT_TRUE(loaded.metadata.get() != nullptr);
    EXPECT_EQ(0u, loaded.skipped);
    EXPECT_EQ(1u, loaded.metadata->find(Metadata::DMS1::DMS1MetadataKeys::clipFramework()).size());
    Templates::vector<Metadata::MetadataSet const *> order;
    EXPECT_EQ(0u, loaded.metadata->calculateSerializationOrder(order, false, true));
}
