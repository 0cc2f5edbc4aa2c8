// The constructors, visits and accessors of DMSegment.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/DMSegment.h"

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
DMSegment::DMSegment(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : StructuralComponent(StructuralMetadataKeys::dmSegment(), metaMetadataSet, owner)
{
}

DMSegment::~DMSegment() {}

void DMSegment::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void DMSegment::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void DMSegment::dmFramework(MetadataSet const * target) { Accessors::setTarget(*this, StructuralMetadataULs::dmFramework(), target); }
MetadataSet * DMSegment::dmFramework() const { return Accessors::target<MetadataSet>(*this, StructuralMetadataULs::dmFramework()); }

unsigned int DMSegment::dmSegmentTrackIDsCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::dmSegmentTrackIDs()); }
Types::UInt32 const * DMSegment::dmSegmentTrackID(unsigned int index) const { return Accessors::member<Types::UInt32>(*this, StructuralMetadataULs::dmSegmentTrackIDs(), index); }
void DMSegment::appendDMSegmentTrackID(Types::UInt32 const & value) { Accessors::appendMember(*this, StructuralMetadataULs::dmSegmentTrackIDs(), value); }
void DMSegment::removeDMSegmentTrackID(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::dmSegmentTrackIDs(), index); }

void DMSegment::eventComment(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::eventComment(), value); }
Types::UTF16String const * DMSegment::eventComment() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::eventComment()); }

void DMSegment::eventStartPosition(Types::Position const * value) { Accessors::setValue<Types::Position>(*this, StructuralMetadataULs::eventStartPosition(), value); }
Types::Position const * DMSegment::eventStartPosition() const { return Accessors::value<Types::Position>(*this, StructuralMetadataULs::eventStartPosition()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
