// The constructors, visits and accessors of GenericDataEssenceDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericDataEssenceDescriptor.h"

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
GenericDataEssenceDescriptor::GenericDataEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : FileDescriptor(StructuralMetadataKeys::genericDataEssenceDescriptor(), metaMetadataSet, owner)
{
}

GenericDataEssenceDescriptor::GenericDataEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : FileDescriptor(key, metaMetadataSet, owner)
{
}

GenericDataEssenceDescriptor::~GenericDataEssenceDescriptor() {}

void GenericDataEssenceDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void GenericDataEssenceDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void GenericDataEssenceDescriptor::dataEssenceCoding(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::dataEssenceCoding(), value); }
Types::UniversalLabel const * GenericDataEssenceDescriptor::dataEssenceCoding() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::dataEssenceCoding()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
