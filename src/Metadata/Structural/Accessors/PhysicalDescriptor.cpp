// The constructors, visits and accessors of PhysicalDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/PhysicalDescriptor.h"

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
PhysicalDescriptor::PhysicalDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericDescriptor(key, metaMetadataSet, owner)
{
}

PhysicalDescriptor::~PhysicalDescriptor() {}

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
