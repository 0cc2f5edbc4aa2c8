// The constructors, visits and accessors of Sequence.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/Sequence.h"

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
Sequence::Sequence(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(StructuralMetadataKeys::sequence(), metaMetadataSet, owner)
{
}

Sequence::~Sequence() {}

void Sequence::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void Sequence::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void Sequence::dataDefinition(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::dataDefinition(), value); }
Types::UniversalLabel const * Sequence::dataDefinition() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::dataDefinition()); }

void Sequence::duration(Types::Length const * value) { Accessors::setValue<Types::Length>(*this, StructuralMetadataULs::duration(), value); }
Types::Length const * Sequence::duration() const { return Accessors::value<Types::Length>(*this, StructuralMetadataULs::duration()); }

unsigned int Sequence::structuralComponentsCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::structuralComponents()); }
StructuralComponent * Sequence::structuralComponent(unsigned int index) const { return Accessors::targetAt<StructuralComponent>(*this, StructuralMetadataULs::structuralComponents(), index); }
void Sequence::appendStructuralComponent(StructuralComponent * target) { Accessors::appendTarget(*this, StructuralMetadataULs::structuralComponents(), target); }
void Sequence::addStructuralComponent(unsigned int index, StructuralComponent * target) { Accessors::insertTarget(*this, StructuralMetadataULs::structuralComponents(), index, target); }
void Sequence::removeStructuralComponent(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::structuralComponents(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
