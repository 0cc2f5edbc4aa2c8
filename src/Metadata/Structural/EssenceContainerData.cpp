// The package that an essence container's data links to.

#include "Metadata/Structural/EssenceContainerData.h"

#include "Metadata/MetadataSetOwner.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/Structural/GenericPackage.h"
#include "Metadata/Structural/StructuralVisitors.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
GenericPackage * EssenceContainerData::linkedPackage() const
{
    Types::UMID32 const * uid = linkedPackageUID();
    if (!uid || !owner())
        return nullptr;
    Templates::vector<MetadataSet *> found = owner()->find(MetadataULs::packageUID(), *uid);
    for (MetadataSet * set : found)
        if (GenericPackage * package = metadataSetAs<GenericPackage>(set))
            return package;
    return nullptr;
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
