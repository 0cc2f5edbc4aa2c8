// The constructors, visits and accessors of StructuralComponent.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/StructuralComponent.h"

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
StructuralComponent::StructuralComponent(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(key, metaMetadataSet, owner)
{
}

StructuralComponent::~StructuralComponent() {}

void StructuralComponent::dataDefinition(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::dataDefinition(), value); }
Types::UniversalLabel const * StructuralComponent::dataDefinition() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::dataDefinition()); }

void StructuralComponent::duration(Types::Length const * value) { Accessors::setValue<Types::Length>(*this, StructuralMetadataULs::duration(), value); }
Types::Length const * StructuralComponent::duration() const { return Accessors::value<Types::Length>(*this, StructuralMetadataULs::duration()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
