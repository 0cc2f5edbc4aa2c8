// The constructors, visits and accessors of SourcePackage.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/SourcePackage.h"

#include "Metadata/Structural/GenericDescriptor.h"
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
SourcePackage::SourcePackage(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericPackage(StructuralMetadataKeys::sourcePackage(), metaMetadataSet, owner)
{
}

SourcePackage::~SourcePackage() {}

void SourcePackage::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void SourcePackage::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void SourcePackage::descriptor(GenericDescriptor const * target) { Accessors::setTarget(*this, StructuralMetadataULs::descriptor(), target); }
GenericDescriptor * SourcePackage::descriptor() const { return Accessors::target<GenericDescriptor>(*this, StructuralMetadataULs::descriptor()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
