// The constructors, visits and accessors of Preface.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/Preface.h"

#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/GenericPackage.h"
#include "Metadata/Structural/Identification.h"
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
Preface::Preface(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(StructuralMetadataKeys::preface(), metaMetadataSet, owner)
{
}

Preface::~Preface() {}

void Preface::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void Preface::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void Preface::contentStorage(ContentStorage const * target) { Accessors::setTarget(*this, StructuralMetadataULs::contentStorage(), target); }
ContentStorage * Preface::contentStorage() const { return Accessors::target<ContentStorage>(*this, StructuralMetadataULs::contentStorage()); }

unsigned int Preface::dmSchemesCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::dmSchemes()); }
Types::UniversalLabel const * Preface::dmScheme(unsigned int index) const { return Accessors::member<Types::UniversalLabel>(*this, StructuralMetadataULs::dmSchemes(), index); }
void Preface::appendDMScheme(Types::UniversalLabel const & value) { Accessors::appendMember(*this, StructuralMetadataULs::dmSchemes(), value); }
void Preface::removeDMScheme(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::dmSchemes(), index); }

unsigned int Preface::essenceContainersCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::essenceContainers()); }
Types::UniversalLabel const * Preface::essenceContainer(unsigned int index) const { return Accessors::member<Types::UniversalLabel>(*this, StructuralMetadataULs::essenceContainers(), index); }
void Preface::appendEssenceContainer(Types::UniversalLabel const & value) { Accessors::appendMember(*this, StructuralMetadataULs::essenceContainers(), value); }
void Preface::removeEssenceContainer(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::essenceContainers(), index); }

unsigned int Preface::identificationsCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::identificationList()); }
Identification * Preface::identification(unsigned int index) const { return Accessors::targetAt<Identification>(*this, StructuralMetadataULs::identificationList(), index); }
void Preface::appendIdentification(Identification * target) { Accessors::appendTarget(*this, StructuralMetadataULs::identificationList(), target); }
void Preface::addIdentification(unsigned int index, Identification * target) { Accessors::insertTarget(*this, StructuralMetadataULs::identificationList(), index, target); }
void Preface::removeIdentification(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::identificationList(), index); }

void Preface::lastModifiedDate(Types::Timestamp const * value) { Accessors::setValue<Types::Timestamp>(*this, StructuralMetadataULs::lastModifiedDate(), value); }
Types::Timestamp const * Preface::lastModifiedDate() const { return Accessors::value<Types::Timestamp>(*this, StructuralMetadataULs::lastModifiedDate()); }

void Preface::objectModelVersion(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::objectModelVersion(), value); }
Types::UInt32 const * Preface::objectModelVersion() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::objectModelVersion()); }

void Preface::operationalPattern(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::operationalPattern(), value); }
Types::UniversalLabel const * Preface::operationalPattern() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::operationalPattern()); }

void Preface::primaryPackage(GenericPackage const * target) { Accessors::setTarget(*this, StructuralMetadataULs::primaryPackage(), target); }
GenericPackage * Preface::primaryPackage() const { return Accessors::target<GenericPackage>(*this, StructuralMetadataULs::primaryPackage()); }

void Preface::version(Types::VersionType const * value) { Accessors::setValue<Types::VersionType>(*this, StructuralMetadataULs::version(), value); }
Types::VersionType const * Preface::version() const { return Accessors::value<Types::VersionType>(*this, StructuralMetadataULs::version()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
