#pragma once
// A listener that gathers changes and acts on them when its holder calls commit().

#include "Metadata/PartitionMetadataListener.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
class CommitableListener : public PartitionMetadataListener
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual void commit() = 0;
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
