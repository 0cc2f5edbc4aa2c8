#include "MXFIO/WriterSupport.h"

#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
Metadata::Structural::Preface const * prefaceOf(Metadata::PartitionMetadata const * metadata)
{
    if (metadata == nullptr)
        return nullptr;
    Templates::vector<Metadata::MetadataSet *> found =
        metadata->find(Metadata::Structural::StructuralMetadataKeys::preface());
    return found.empty() ? nullptr : Metadata::Structural::metadataSetAs<Metadata::Structural::Preface>(found.front());
}
} // namespace

Types::UniversalLabel packOperationalPattern(Metadata::PartitionMetadata const * metadata)
{
    Metadata::Structural::Preface const * preface = prefaceOf(metadata);
    Types::UniversalLabel const * label = preface != nullptr ? preface->operationalPattern() : nullptr;
    return label != nullptr ? *label : Types::UniversalLabel();
}

Templates::auto_ptr<Types::Batch> packEssenceContainers(Metadata::PartitionMetadata const * metadata)
{
    Templates::auto_ptr<Types::Batch> labels(new Types::Batch(16));
    Metadata::Structural::Preface const * preface = prefaceOf(metadata);
    for (unsigned int i = 0, n = preface != nullptr ? preface->essenceContainersCount() : 0; i < n; ++i)
        if (Types::UniversalLabel const * label = preface->essenceContainer(i))
            labels->append(label->clone());
    return labels;
}
} // namespace MXFIO
} // namespace Vellum
