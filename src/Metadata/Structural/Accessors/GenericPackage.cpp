// The constructors, visits and accessors of GenericPackage.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericPackage.h"

#include "Metadata/Structural/Track.h"
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
GenericPackage::GenericPackage(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(key, metaMetadataSet, owner)
{
}

GenericPackage::~GenericPackage() {}

void GenericPackage::packageCreationDate(Types::Timestamp const * value) { Accessors::setValue<Types::Timestamp>(*this, StructuralMetadataULs::packageCreationDate(), value); }
Types::Timestamp const * GenericPackage::packageCreationDate() const { return Accessors::value<Types::Timestamp>(*this, StructuralMetadataULs::packageCreationDate()); }

void GenericPackage::packageModifiedDate(Types::Timestamp const * value) { Accessors::setValue<Types::Timestamp>(*this, StructuralMetadataULs::packageModifiedDate(), value); }
Types::Timestamp const * GenericPackage::packageModifiedDate() const { return Accessors::value<Types::Timestamp>(*this, StructuralMetadataULs::packageModifiedDate()); }

void GenericPackage::packageName(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::packageName(), value); }
Types::UTF16String const * GenericPackage::packageName() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::packageName()); }

void GenericPackage::packageUID(Types::UMID32 const * value) { Accessors::setValue<Types::UMID32>(*this, StructuralMetadataULs::packageUID(), value); }
Types::UMID32 const * GenericPackage::packageUID() const { return Accessors::value<Types::UMID32>(*this, StructuralMetadataULs::packageUID()); }

unsigned int GenericPackage::tracksCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::tracks()); }
Track * GenericPackage::track(unsigned int index) const { return Accessors::targetAt<Track>(*this, StructuralMetadataULs::tracks(), index); }
void GenericPackage::appendTrack(Track * target) { Accessors::appendTarget(*this, StructuralMetadataULs::tracks(), target); }
void GenericPackage::addTrack(unsigned int index, Track * target) { Accessors::insertTarget(*this, StructuralMetadataULs::tracks(), index, target); }
void GenericPackage::removeTrack(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::tracks(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
