// The Preface of a partition and where the essence of its source packages is.

#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "Metadata/Structural/HeaderBuilding.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Metadata/Structural/SubclassHelpers.h"

using namespace Vellum;
using namespace Vellum::StructuralTest;
using namespace Vellum::Metadata::Structural;
namespace Keys = Vellum::Metadata::Structural::StructuralMetadataKeys;

namespace
{
NetworkLocator * locator(Metadata::PartitionMetadata & metadata)
{
    NetworkLocator * made = createSet<NetworkLocator>(metadata, Keys::networkLocator());
    Types::UTF16String const url(w("file:///essence.mxf").c_str());
    made->urlString(&url);
    return made;
}
} // namespace

TEST(StructuralPrefaceHelpers, ThePrefaceAndItsLabels)
{
    std::unique_ptr<Metadata::PartitionMetadata> empty = newPartitionMetadata();
    EXPECT_EQ(thrown<Exceptions::NotFound>("Didn't find MetadataSet with specified key."),
              thrownBy([&] { findPreface(*empty); }));
    EXPECT_EQ(Exceptions::NotFound::ERROR_CODE, thrownBy([&] { operationalPattern(*empty); }).code);

    BuiltHeader h = buildHeader(25);
    EXPECT_EQ(h.preface, findPreface(*h.metadata));
    ASSERT_NE(nullptr, operationalPattern(*h.metadata));
    EXPECT_EQ(op1a(), *operationalPattern(*h.metadata));
    EXPECT_EQ((Templates::vector<Types::UniversalLabel>{Wrappings::multipleWrapping(), mpegContainer(), waveContainer()}),
              essenceContainers(*h.metadata));
}

TEST(StructuralPrefaceHelpers, ExternalEssence)
{
    BuiltHeader h = buildHeader(25);
    // A multiple descriptor with no locators anywhere: inside.
    EXPECT_FALSE(isExternalEssence(*h.metadata, *h.source));
    EXPECT_FALSE(hasExternalEssence(*h.metadata));

    // A locator on a sub-descriptor, with a body SID of 1: still inside.
    h.sound->appendLocator(locator(*h.metadata));
    EXPECT_FALSE(isExternalEssence(*h.metadata, *h.source));
    // A body SID of 0: outside.
    Types::UInt32 const zero(0);
    h.containerData->bodySID(&zero);
    EXPECT_TRUE(isExternalEssence(*h.metadata, *h.source));
    EXPECT_TRUE(hasExternalEssence(*h.metadata));
    // No body SID at all, or no essence container data for the package: outside.
    h.containerData->bodySID(nullptr);
    EXPECT_TRUE(isExternalEssence(*h.metadata, *h.source));
    Types::UInt32 const one(1);
    h.containerData->bodySID(&one);
    h.storage->removeEssenceContainerData(0);
    EXPECT_TRUE(isExternalEssence(*h.metadata, *h.source));

    // A plain file descriptor with a locator and essence in the file: inside.
    SourcePackage * other = createSet<SourcePackage>(*h.metadata, Keys::sourcePackage());
    Types::UMID32 const uid = *h.material->packageUID();
    other->packageUID(&uid);
    WAVEAudioEssenceDescriptor * wave = createSet<WAVEAudioEssenceDescriptor>(*h.metadata, Keys::waveAudioEssenceDescriptor());
    wave->appendLocator(locator(*h.metadata));
    other->descriptor(wave);
    EssenceContainerData * data = createSet<EssenceContainerData>(*h.metadata, Keys::essenceContainerData());
    data->linkedPackageUID(&uid);
    data->bodySID(&one);
    h.storage->appendEssenceContainerData(data);
    EXPECT_FALSE(isExternalEssence(*h.metadata, *other));
    // A package without a descriptor is never external.
    SourcePackage * bare = createSet<SourcePackage>(*h.metadata, Keys::sourcePackage());
    EXPECT_FALSE(isExternalEssence(*h.metadata, *bare));
}

TEST(StructuralPrefaceHelpersDeathTest, APackageWithoutUIDOrAPrefaceWithoutContentStorageIsAWrongUse)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            BuiltHeader h = buildHeader(5);
            h.picture->appendLocator(locator(*h.metadata));
            SourcePackage * bare = createSet<SourcePackage>(*h.metadata, Keys::sourcePackage());
            bare->descriptor(createSet<MultipleDescriptor>(*h.metadata, Keys::multipleDescriptor()));
            metadataSetAs<MultipleDescriptor>(bare->descriptor())->appendSubDescriptorUID(h.picture);
            isExternalEssence(*h.metadata, *bare);
        },
        "package.packageUID \\(\\) != 0: Package has no packageUID");
    EXPECT_DEATH(
        {
            BuiltHeader h = buildHeader(5);
            h.picture->appendLocator(locator(*h.metadata));
            setReferencedMetadataSet(h.preface, StructuralMetadataULs::contentStorage(), nullptr);
            isExternalEssence(*h.metadata, *h.source);
        },
        "contentStorage != 0: Preface has no ContentStorage");
}
