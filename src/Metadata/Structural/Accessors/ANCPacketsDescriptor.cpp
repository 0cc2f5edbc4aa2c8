// The constructors, visits and accessors of ANCPacketsDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/ANCPacketsDescriptor.h"

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
ANCPacketsDescriptor::ANCPacketsDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericDataEssenceDescriptor(StructuralMetadataKeys::ancPacketsDescriptor(), metaMetadataSet, owner)
{
}

ANCPacketsDescriptor::~ANCPacketsDescriptor() {}

void ANCPacketsDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void ANCPacketsDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
