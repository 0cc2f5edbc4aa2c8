// The constructors, visits and accessors of VBIDataDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/VBIDataDescriptor.h"

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
VBIDataDescriptor::VBIDataDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericDataEssenceDescriptor(StructuralMetadataKeys::vbiDataDescriptor(), metaMetadataSet, owner)
{
}

VBIDataDescriptor::~VBIDataDescriptor() {}

void VBIDataDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void VBIDataDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
