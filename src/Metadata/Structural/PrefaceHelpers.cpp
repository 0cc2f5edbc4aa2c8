// The Preface of a partition, its labels, and where the essence of the source packages is.

#include "Metadata/Structural/PrefaceHelpers.h"

#include "Exceptions/Exceptions.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/EssenceContainerData.h"
#include "Metadata/Structural/MultipleDescriptor.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralAssert.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace
{
bool hasLocator(GenericDescriptor const * descriptor) { return descriptor && descriptor->locatorsCount() > 0; }

// A file descriptor with locators, or a multiple descriptor with a sub-descriptor that has some.
bool describesLocatedEssence(GenericDescriptor const * descriptor)
{
    if (metadataSetAs<FileDescriptor>(descriptor) && hasLocator(descriptor))
        return true;
    MultipleDescriptor const * multiple = metadataSetAs<MultipleDescriptor>(descriptor);
    if (!multiple)
        return false;
    for (unsigned int i = 0, n = multiple->subDescriptorUIDsCount(); i < n; ++i)
        if (hasLocator(multiple->subDescriptorUID(i)))
            return true;
    return false;
}
} // namespace

Preface * findPreface(PartitionMetadata const & metadata)
{
    Templates::vector<MetadataSet *> found = metadata.find(StructuralMetadataKeys::preface());
    Preface * preface = found.empty() ? nullptr : metadataSetAs<Preface>(found.front());
    if (!preface)
        VELLUM_THROW(NotFound, "Didn't find MetadataSet with specified key.");
    return preface;
}

Types::UniversalLabel const * operationalPattern(PartitionMetadata const & metadata)
{
    return findPreface(metadata)->operationalPattern();
}

Templates::vector<Types::UniversalLabel> essenceContainers(PartitionMetadata const & metadata)
{
    Preface const * preface = findPreface(metadata);
    Templates::vector<Types::UniversalLabel> labels;
    for (unsigned int i = 0, n = preface->essenceContainersCount(); i < n; ++i)
        if (Types::UniversalLabel const * label = preface->essenceContainer(i))
            labels.push_back(*label);
    return labels;
}

bool isExternalEssence(PartitionMetadata const & metadata, SourcePackage const & package)
{
    if (!describesLocatedEssence(package.descriptor()))
        return false;
    ContentStorage const * contentStorage = findPreface(metadata)->contentStorage();
    VELLUM_STRUCTURAL_ASSERT(contentStorage != 0, "Preface has no ContentStorage");
    VELLUM_STRUCTURAL_ASSERT_TEXT(package.packageUID() != 0, "package.packageUID () != 0", "Package has no packageUID");
    EssenceContainerData const * data = contentStorage->essenceContainerData(*package.packageUID());
    if (!data || !data->bodySID())
        return true;
    return data->bodySID()->value() == 0;
}

bool hasExternalEssence(PartitionMetadata const & metadata)
{
    for (PartitionMetadata::const_iterator i = metadata.begin(); i != metadata.end(); ++i)
    {
        SourcePackage const * package = metadataSetAs<SourcePackage>(static_cast<MetadataSet const *>(i->second));
        if (package && isExternalEssence(metadata, *package))
            return true;
    }
    return false;
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
