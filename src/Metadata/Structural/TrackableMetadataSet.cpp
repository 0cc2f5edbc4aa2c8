// The Generation UID of a trackable set.

#include "Metadata/Structural/TrackableMetadataSet.h"

#include "Metadata/Structural/Identification.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
Types::UUID const * TrackableMetadataSet::generation() const { return generationUID(); }

void TrackableMetadataSet::generation(Identification * identification)
{
    generationUID(identification ? identification->thisGenerationUID() : nullptr);
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
