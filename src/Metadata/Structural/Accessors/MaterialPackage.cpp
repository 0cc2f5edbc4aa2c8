// The constructors, visits and accessors of MaterialPackage.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/MaterialPackage.h"

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
MaterialPackage::MaterialPackage(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericPackage(StructuralMetadataKeys::materialPackage(), metaMetadataSet, owner)
{
}

MaterialPackage::~MaterialPackage() {}

void MaterialPackage::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void MaterialPackage::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
