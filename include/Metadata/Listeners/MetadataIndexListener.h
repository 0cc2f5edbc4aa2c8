#pragma once
// A listener that keeps an index of element values and answers PartitionMetadata::find(label,
// value).

#include "Metadata/PartitionMetadataListener.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Types
{
class SimpleDataType;
class UniversalLabel;
} // namespace Types

namespace Metadata
{
namespace Listeners
{
class MetadataIndexListener : public PartitionMetadataListener
{
public:
    VELLUM_CLASS_ALLOCATION
    // Every set whose element `label` holds a value equal to `value`.
    virtual Templates::vector<MetadataSet *> find(Types::UniversalLabel const & label,
                                                  Types::SimpleDataType const & value) = 0;
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
