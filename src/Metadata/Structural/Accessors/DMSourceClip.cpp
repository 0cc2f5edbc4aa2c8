// The constructors, visits and accessors of DMSourceClip.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/DMSourceClip.h"

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
DMSourceClip::DMSourceClip(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : SourceClip(StructuralMetadataKeys::dmSourceClip(), metaMetadataSet, owner)
{
}

DMSourceClip::~DMSourceClip() {}

void DMSourceClip::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void DMSourceClip::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

unsigned int DMSourceClip::dmSourceClipTrackIDsCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::dmSourceClipTrackIDs()); }
Types::UInt32 const * DMSourceClip::dmSourceClipTrackID(unsigned int index) const { return Accessors::member<Types::UInt32>(*this, StructuralMetadataULs::dmSourceClipTrackIDs(), index); }
void DMSourceClip::appendDMSourceClipTrackID(Types::UInt32 const & value) { Accessors::appendMember(*this, StructuralMetadataULs::dmSourceClipTrackIDs(), value); }
void DMSourceClip::removeDMSourceClipTrackID(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::dmSourceClipTrackIDs(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
