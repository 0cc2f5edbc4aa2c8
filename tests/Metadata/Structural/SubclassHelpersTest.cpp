// The kind of a track by the data definition of its sequence.

#include <gtest/gtest.h>

#include "Metadata/Structural/HeaderBuilding.h"
#include "Metadata/Structural/SubclassHelpers.h"

using namespace Vellum;
using namespace Vellum::StructuralTest;
using namespace Vellum::Metadata::Structural;

TEST(StructuralSubclassHelpers, DataDefinitions)
{
    EXPECT_TRUE(isEssenceDataDefinition(DataDefinitionULs::picture()));
    EXPECT_TRUE(isEssenceDataDefinition(DataDefinitionULs::audio()));
    EXPECT_TRUE(isEssenceDataDefinition(DataDefinitionULs::data()));
    EXPECT_FALSE(isEssenceDataDefinition(DataDefinitionULs::auxiliaryData()));
    EXPECT_FALSE(isEssenceDataDefinition(DataDefinitionULs::descriptiveMetadata()));
    EXPECT_FALSE(isEssenceDataDefinition(DataDefinitionULs::timecode12MInactive()));
    EXPECT_TRUE(isTimecodeDataDefinition(DataDefinitionULs::timecode12MInactive()));
    EXPECT_TRUE(isTimecodeDataDefinition(DataDefinitionULs::timecode12MActive()));
    EXPECT_TRUE(isTimecodeDataDefinition(DataDefinitionULs::timecode309M()));
    EXPECT_FALSE(isTimecodeDataDefinition(DataDefinitionULs::picture()));
    EXPECT_FALSE(isTimecodeDataDefinition(DataDefinitionULs::parsedText()));
}

TEST(StructuralSubclassHelpers, TracksByTheirSequence)
{
    std::unique_ptr<Metadata::PartitionMetadata> metadata = newPartitionMetadata();
    SourcePackage * package = createSet<SourcePackage>(*metadata, StructuralMetadataKeys::sourcePackage());
    Templates::Rational<int> const rate(25);
    TimelineTrack * datecode = createTimelineTrack(*metadata, *package, DataDefinitionULs::timecode309M(), 1, 0, 0, rate, 5);
    TimelineTrack * data = createTimelineTrack(*metadata, *package, DataDefinitionULs::data(), 2, 0, 0, rate, 5);
    TimelineTrack * descriptive =
        createTimelineTrack(*metadata, *package, DataDefinitionULs::descriptiveMetadata(), 3, 0, 0, rate, 5);
    EXPECT_TRUE(isTimeCodeTrack(datecode));
    EXPECT_FALSE(isEssenceTrack(datecode));
    EXPECT_TRUE(isEssenceTrack(data));
    EXPECT_FALSE(isTimeCodeTrack(data));
    EXPECT_FALSE(isEssenceTrack(descriptive));
    EXPECT_FALSE(isTimeCodeTrack(descriptive));
    EXPECT_EQ(datecode, getTimecodeTrack(*package));

    // No track, no sequence, no data definition: neither kind, and no drop frame.
    EXPECT_FALSE(isEssenceTrack(nullptr));
    EXPECT_FALSE(isTimeCodeTrack(nullptr));
    EXPECT_FALSE(isDropFrame(nullptr));
    TimelineTrack * bare = createSet<TimelineTrack>(*metadata, StructuralMetadataKeys::timelineTrack());
    EXPECT_FALSE(isEssenceTrack(bare));
    EXPECT_FALSE(isTimeCodeTrack(bare));
    EXPECT_FALSE(isDropFrame(bare));
    bare->sequence(createSet<Sequence>(*metadata, StructuralMetadataKeys::sequence()));
    EXPECT_FALSE(isTimeCodeTrack(bare));
    // A time code track whose sequence holds no time code component is not drop frame.
    EXPECT_FALSE(isDropFrame(datecode));
}
