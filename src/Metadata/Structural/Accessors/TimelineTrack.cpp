// The constructors, visits and accessors of TimelineTrack.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TimelineTrack.h"

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
TimelineTrack::TimelineTrack(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : Track(StructuralMetadataKeys::timelineTrack(), metaMetadataSet, owner)
{
}

TimelineTrack::~TimelineTrack() {}

void TimelineTrack::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void TimelineTrack::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void TimelineTrack::editRate(Types::Rational const * value) { Accessors::setValue<Types::Rational>(*this, StructuralMetadataULs::editRate(), value); }
Types::Rational const * TimelineTrack::editRate() const { return Accessors::value<Types::Rational>(*this, StructuralMetadataULs::editRate()); }

void TimelineTrack::origin(Types::Position const * value) { Accessors::setValue<Types::Position>(*this, StructuralMetadataULs::origin(), value); }
Types::Position const * TimelineTrack::origin() const { return Accessors::value<Types::Position>(*this, StructuralMetadataULs::origin()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
