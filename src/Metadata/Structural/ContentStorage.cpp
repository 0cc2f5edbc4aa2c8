// Finding a package, or an essence container's data, by the UMID of its package.

#include "Metadata/Structural/ContentStorage.h"

#include "Metadata/Structural/EssenceContainerData.h"
#include "Metadata/Structural/GenericPackage.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
GenericPackage * ContentStorage::package(Types::UMID32 const & packageUID) const
{
    for (unsigned int i = 0, n = packagesCount(); i < n; ++i)
    {
        GenericPackage * candidate = package(i);
        Types::UMID32 const * uid = candidate ? candidate->packageUID() : nullptr;
        if (uid && *uid == packageUID)
            return candidate;
    }
    return nullptr;
}

EssenceContainerData * ContentStorage::essenceContainerData(Types::UMID32 const & linkedPackageUID) const
{
    for (unsigned int i = 0, n = essenceContainerDataCount(); i < n; ++i)
    {
        EssenceContainerData * candidate = essenceContainerData(i);
        Types::UMID32 const * uid = candidate ? candidate->linkedPackageUID() : nullptr;
        if (uid && *uid == linkedPackageUID)
            return candidate;
    }
    return nullptr;
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
