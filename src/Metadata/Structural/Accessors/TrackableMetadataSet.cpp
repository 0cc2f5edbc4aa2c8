// The constructors, visits and accessors of TrackableMetadataSet.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"

#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Metadata/MetadataSetVisitor.h"
#include "Metadata/Structural/Accessors.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
TrackableMetadataSet::TrackableMetadataSet(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : MetadataSet(key, metaMetadataSet, owner)
{
}

TrackableMetadataSet::~TrackableMetadataSet() {}

void TrackableMetadataSet::generationUID(Types::UUID const * value) { Accessors::setValue<Types::UUID>(*this, StructuralMetadataULs::generationUID(), value); }
Types::UUID const * TrackableMetadataSet::generationUID() const { return Accessors::value<Types::UUID>(*this, StructuralMetadataULs::generationUID()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
