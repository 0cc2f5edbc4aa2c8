// The constructors, visits and accessors of TimecodeComponent.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TimecodeComponent.h"

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
TimecodeComponent::TimecodeComponent(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : StructuralComponent(StructuralMetadataKeys::timecodeComponent(), metaMetadataSet, owner)
{
}

TimecodeComponent::~TimecodeComponent() {}

void TimecodeComponent::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void TimecodeComponent::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void TimecodeComponent::dropFrame(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::dropFrame(), value); }
Types::Boolean const * TimecodeComponent::dropFrame() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::dropFrame()); }

void TimecodeComponent::roundedTimecodeBase(Types::UInt16 const * value) { Accessors::setValue<Types::UInt16>(*this, StructuralMetadataULs::roundedTimecodeBase(), value); }
Types::UInt16 const * TimecodeComponent::roundedTimecodeBase() const { return Accessors::value<Types::UInt16>(*this, StructuralMetadataULs::roundedTimecodeBase()); }

void TimecodeComponent::startTimecode(Types::Position const * value) { Accessors::setValue<Types::Position>(*this, StructuralMetadataULs::startTimecode(), value); }
Types::Position const * TimecodeComponent::startTimecode() const { return Accessors::value<Types::Position>(*this, StructuralMetadataULs::startTimecode()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
