// The constructors, visits and accessors of MultipleDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/MultipleDescriptor.h"

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
MultipleDescriptor::MultipleDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : FileDescriptor(StructuralMetadataKeys::multipleDescriptor(), metaMetadataSet, owner)
{
}

MultipleDescriptor::~MultipleDescriptor() {}

void MultipleDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void MultipleDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

unsigned int MultipleDescriptor::subDescriptorUIDsCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::subDescriptorUIDs()); }
GenericDescriptor * MultipleDescriptor::subDescriptorUID(unsigned int index) const { return Accessors::targetAt<GenericDescriptor>(*this, StructuralMetadataULs::subDescriptorUIDs(), index); }
void MultipleDescriptor::appendSubDescriptorUID(GenericDescriptor * target) { Accessors::appendTarget(*this, StructuralMetadataULs::subDescriptorUIDs(), target); }
void MultipleDescriptor::addSubDescriptorUID(unsigned int index, GenericDescriptor * target) { Accessors::insertTarget(*this, StructuralMetadataULs::subDescriptorUIDs(), index, target); }
void MultipleDescriptor::removeSubDescriptorUID(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::subDescriptorUIDs(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
