// The constructors, visits and accessors of StaticTrack.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/StaticTrack.h"

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
StaticTrack::StaticTrack(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : Track(StructuralMetadataKeys::staticTrack(), metaMetadataSet, owner)
{
}

StaticTrack::~StaticTrack() {}

void StaticTrack::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void StaticTrack::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
