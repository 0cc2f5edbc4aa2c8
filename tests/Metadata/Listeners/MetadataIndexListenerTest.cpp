// The value index: what PartitionMetadata::find(label, value) answers after loads, creations,
// changes and removals.

#include <gtest/gtest.h>

#include "Metadata/BatchElement.h"
#include "Metadata/Listeners/BaseMetadataIndexListener.h"
#include "Metadata/Listeners/DefaultMetadataIndexListener.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionMetadataTestSupport.h"
#include "Support/Fixtures.h"

using namespace Vellum;
using namespace Vellum::PartitionMetadataTest;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using Metadata::Listeners::BaseMetadataIndexListener;
using Metadata::Listeners::DefaultMetadataIndexListener;

namespace
{
// Indexes track IDs and the essence containers of the Preface, a batch.
class TrackAndContainerIndex : public BaseMetadataIndexListener
{
public:
    bool isIndexed(Types::UniversalLabel const & label) override
    {
        return label == ULs::trackID() || label == ULs::essenceContainers();
    }
};

// The sets whose InstanceUID element holds a value.
std::vector<MetadataSet *> withInstanceUID(PartitionMetadata & metadata)
{
    std::vector<MetadataSet *> sets;
    for (PartitionMetadata::iterator it = metadata.begin(); it != metadata.end(); ++it)
    {
        try
        {
            if (!it->second->find(Metadata::MetadataULs::instanceUID()).empty())
                sets.push_back(it->second);
        }
        catch (Exceptions::NotFound const &)
        {
        }
    }
    return sets;
}
} // namespace

TEST(MetadataIndexListener, FindsAfterLoadCreateAndRemove)
{
    Bytes const file = VellumTest::readFile(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf");
    LoadReport report;
    MetadataPtr metadata = loadHeader(file, report);
    std::vector<MetadataSet *> const loaded = withInstanceUID(*metadata);
    ASSERT_GT(loaded.size(), 5u);
    for (MetadataSet * set : loaded)
    {
        Templates::vector<MetadataSet *> found = metadata->find(Metadata::MetadataULs::instanceUID(), uidOf(*set));
        ASSERT_EQ(1u, found.size());
        EXPECT_EQ(set, found.front());
    }

    // The search value is compared by its bytes, whatever object holds them.
    Types::UUID const copy(uidOf(*loaded.front()).rawBuffer());
    EXPECT_EQ(1u, metadata->find(Metadata::MetadataULs::instanceUID(), copy).size());
    // A label that is not indexed finds nothing.
    EXPECT_TRUE(metadata->find(ULs::generationUID(), copy).empty());

    MetadataSet * created = metadata->createMetadataSet(Keys::sequence());
    EXPECT_EQ(created, metadata->find(Metadata::MetadataULs::instanceUID(), uidOf(*created)).front());

    // Removing a set takes its values out of the index with it.
    for (MetadataSet * set : {loaded.front(), created})
    {
        Types::UUID const uid = uidOf(*set);
        ASSERT_TRUE(metadata->removeMetadataSet(uid));
        EXPECT_TRUE(metadata->find(Metadata::MetadataULs::instanceUID(), uid).empty());
    }
}

TEST(MetadataIndexListener, FollowsChangedValues)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    Templates::vector<MetadataSet *> found = metadata->find(ULs::trackID(), Types::UInt32(2));
    ASSERT_EQ(1u, found.size());
    EXPECT_EQ(h.timecodeTrack, found.front());

    setValue(*h.timecodeTrack, ULs::trackID(), Types::UInt32(7));
    EXPECT_TRUE(metadata->find(ULs::trackID(), Types::UInt32(2)).empty());
    EXPECT_EQ(h.timecodeTrack, metadata->find(ULs::trackID(), Types::UInt32(7)).front());

    simple(*h.timecodeTrack, ULs::trackID()).set(Templates::auto_ptr<Types::SimpleDataType>(), true);
    EXPECT_TRUE(metadata->find(ULs::trackID(), Types::UInt32(7)).empty());

    // Package UIDs are indexed too; linked package UIDs and this generation UIDs as well.
    Types::SimpleDataType const * packageUID = simple(*h.material, ULs::packageUID()).value();
    ASSERT_NE(nullptr, packageUID);
    EXPECT_EQ(h.material, metadata->find(ULs::packageUID(), *packageUID).front());
    Types::SimpleDataType const * generation = simple(*h.identification, ULs::thisGenerationUID()).value();
    ASSERT_NE(nullptr, generation);
    EXPECT_EQ(h.identification, metadata->find(ULs::thisGenerationUID(), *generation).front());
}

TEST(MetadataIndexListener, EqualValuesAndCollectionsAndReplacement)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    Templates::SharedPtr<TrackAndContainerIndex> index(new TrackAndContainerIndex);
    metadata->setMetadataIndexListener(index);

    // The new index heard of everything there already; track 1 of both packages, in key order
    // and then in order of insertion.
    Templates::vector<MetadataSet *> found = metadata->find(ULs::trackID(), Types::UInt32(1));
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ(h.pictureTrack, found[0]);
    EXPECT_EQ(h.soundTrack, found[1]);
    // Instance UIDs are not in this index.
    EXPECT_TRUE(metadata->find(Metadata::MetadataULs::instanceUID(), uidOf(*h.preface)).empty());

    // Members of a collection are not indexed, even for a label that is.
    uint64 const before = index->indexSize();
    Metadata::Element & containers = h.preface->find(ULs::essenceContainers());
    Metadata::Visitors::GetNonConstElementVisitor<Metadata::BatchElement> batch;
    containers.accept(batch);
    ASSERT_NE(nullptr, batch.value());
    batch.value()->append(Templates::auto_ptr<Types::SimpleDataType>(new Types::UniversalLabel(ULs::trackID())));
    EXPECT_EQ(before, index->indexSize());
    EXPECT_TRUE(metadata->find(ULs::essenceContainers(), ULs::trackID()).empty());

    // An empty pointer brings back the default index, which learns what is there.
    metadata->setMetadataIndexListener(Templates::SharedPtr<Metadata::Listeners::MetadataIndexListener>());
    EXPECT_EQ(h.preface, metadata->find(Metadata::MetadataULs::instanceUID(), uidOf(*h.preface)).front());
    // The old index is no listener any more: a new track ID does not reach it.
    uint64 const detached = index->indexSize();
    setValue(*metadata->createMetadataSet(Keys::staticTrack()), ULs::trackID(), Types::UInt32(9));
    EXPECT_EQ(detached, index->indexSize());

    DefaultMetadataIndexListener defaults;
    EXPECT_TRUE(defaults.isIndexed(ULs::linkedPackageUID()));
    EXPECT_FALSE(defaults.isIndexed(ULs::trackNumber()));
}
