// The kind of a track by the data definition of its sequence.

#include <gtest/gtest.h>

#include "Metadata/Structural/HeaderBuilding.h"
#include "Metadata/Structural/SubclassHelpers.h"

using namespace Vellum;
using namespace Vellum::StructuralTest;
using namespace Vellum::Metadata::Structural;

TEST(StructuralSubclassHelpers, DataDefinitions)
{
    namespace DD = DataDefinitionULs;
    struct Row
    {
        Types::UniversalLabel const & label;
        bool essence, timecode;
    } const rows[] = {{DD::picture(), true, false},          {DD::audio(), true, false},
                      {DD::data(), true, false},             {DD::auxiliaryData(), false, false},
                      {DD::descriptiveMetadata(), false, false}, {DD::timecode12MInactive(), false, true},
                      {DD::timecode12MActive(), false, true}, {DD::timecode309M(), false, true},
                      {DD::parsedText(), false, false}};
    for (Row const & row : rows)
    {
        EXPECT_EQ(row.essence, isEssenceDataDefinition(row.label)) << n(row.label.toString());
        EXPECT_EQ(row.timecode, isTimecodeDataDefinition(row.label)) << n(row.label.toString());
    }
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
    EXPECT_TRUE(isTimeCodeTrack(datecode) && !isEssenceTrack(datecode));
    EXPECT_TRUE(isEssenceTrack(data) && !isTimeCodeTrack(data));
    EXPECT_FALSE(isEssenceTrack(descriptive) || isTimeCodeTrack(descriptive));
    EXPECT_EQ(datecode, getTimecodeTrack(*package));

    // No track, no sequence, no data definition: neither kind, and no drop frame.
    EXPECT_FALSE(isEssenceTrack(nullptr) || isTimeCodeTrack(nullptr) || isDropFrame(nullptr));
    TimelineTrack * bare = createSet<TimelineTrack>(*metadata, StructuralMetadataKeys::timelineTrack());
    EXPECT_FALSE(isEssenceTrack(bare) || isTimeCodeTrack(bare) || isDropFrame(bare));
    bare->sequence(createSet<Sequence>(*metadata, StructuralMetadataKeys::sequence()));
    EXPECT_FALSE(isTimeCodeTrack(bare));
    // A time code track whose sequence holds no time code component is not drop frame.
    EXPECT_FALSE(isDropFrame(datecode));
}
