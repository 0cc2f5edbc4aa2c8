// The constructors, visits and accessors of Track.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/Track.h"

#include "Metadata/Structural/Sequence.h"
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
Track::Track(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(key, metaMetadataSet, owner)
{
}

Track::~Track() {}

void Track::trackID(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::trackID(), value); }
Types::UInt32 const * Track::trackID() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::trackID()); }

void Track::trackNumber(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::trackNumber(), value); }
Types::UInt32 const * Track::trackNumber() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::trackNumber()); }

void Track::trackName(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::trackName(), value); }
Types::UTF16String const * Track::trackName() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::trackName()); }

void Track::sequence(Sequence const * target) { Accessors::setTarget(*this, StructuralMetadataULs::sequence(), target); }
Sequence * Track::sequence() const { return Accessors::target<Sequence>(*this, StructuralMetadataULs::sequence()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
