// The constructors, visits and accessors of EventTrack.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/EventTrack.h"

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
EventTrack::EventTrack(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : Track(StructuralMetadataKeys::eventTrack(), metaMetadataSet, owner)
{
}

EventTrack::~EventTrack() {}

void EventTrack::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void EventTrack::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void EventTrack::eventEditRate(Types::Rational const * value) { Accessors::setValue<Types::Rational>(*this, StructuralMetadataULs::eventEditRate(), value); }
Types::Rational const * EventTrack::eventEditRate() const { return Accessors::value<Types::Rational>(*this, StructuralMetadataULs::eventEditRate()); }

void EventTrack::eventOrigin(Types::Position const * value) { Accessors::setValue<Types::Position>(*this, StructuralMetadataULs::eventOrigin(), value); }
Types::Position const * EventTrack::eventOrigin() const { return Accessors::value<Types::Position>(*this, StructuralMetadataULs::eventOrigin()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
