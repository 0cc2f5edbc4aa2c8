// Finding a track of a package by its ID.

#include "Metadata/Structural/GenericPackage.h"

#include "Metadata/Structural/Track.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
Track * GenericPackage::track(Types::UInt32 const & trackID) const
{
    for (unsigned int i = 0, n = tracksCount(); i < n; ++i)
    {
        Track * candidate = track(i);
        Types::UInt32 const * id = candidate ? candidate->trackID() : nullptr;
        if (id && id->value() == trackID.value())
            return candidate;
    }
    return nullptr;
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
