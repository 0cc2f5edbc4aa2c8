// The constructors, visits and accessors of SourceClip.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/SourceClip.h"

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
SourceClip::SourceClip(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : StructuralComponent(StructuralMetadataKeys::sourceClip(), metaMetadataSet, owner)
{
}

SourceClip::SourceClip(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : StructuralComponent(key, metaMetadataSet, owner)
{
}

SourceClip::~SourceClip() {}

void SourceClip::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void SourceClip::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void SourceClip::sourcePackageID(Types::UMID32 const * value) { Accessors::setValue<Types::UMID32>(*this, StructuralMetadataULs::sourcePackageID(), value); }
Types::UMID32 const * SourceClip::sourcePackageID() const { return Accessors::value<Types::UMID32>(*this, StructuralMetadataULs::sourcePackageID()); }

void SourceClip::sourceTrackID(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::sourceTrackID(), value); }
Types::UInt32 const * SourceClip::sourceTrackID() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::sourceTrackID()); }

void SourceClip::startPosition(Types::Position const * value) { Accessors::setValue<Types::Position>(*this, StructuralMetadataULs::startPosition(), value); }
Types::Position const * SourceClip::startPosition() const { return Accessors::value<Types::Position>(*this, StructuralMetadataULs::startPosition()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
