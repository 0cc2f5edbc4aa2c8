#pragma once
// What every partition of a file offers: its pack, its header metadata and whether its body has
// been read to the end.
#include "Metadata/PartitionMetadata.h"
#include "Packs/PartitionPack.h"
#include "Platform/MallocAlloc.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace MXFIO
{
class AbstractPartition
{
public:
    VELLUM_CLASS_ALLOCATION
    AbstractPartition() = default;
    virtual ~AbstractPartition() {}
    AbstractPartition(AbstractPartition const &) = delete;
    AbstractPartition & operator=(AbstractPartition const &) = delete;
    virtual Templates::SharedPtr<Metadata::PartitionMetadata> metadata() = 0;
    virtual Packs::PartitionPack const & partitionPack() const = 0;
    virtual bool partitionEnded() const = 0;
};
} // namespace MXFIO
} // namespace Vellum
