// The constructors, visits and accessors of ContentStorage.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/ContentStorage.h"

#include "Metadata/Structural/EssenceContainerData.h"
#include "Metadata/Structural/GenericPackage.h"
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
ContentStorage::ContentStorage(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(StructuralMetadataKeys::contentStorage(), metaMetadataSet, owner)
{
}

ContentStorage::~ContentStorage() {}

void ContentStorage::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void ContentStorage::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

unsigned int ContentStorage::essenceContainerDataCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::essenceContainerData()); }
EssenceContainerData * ContentStorage::essenceContainerData(unsigned int index) const { return Accessors::targetAt<EssenceContainerData>(*this, StructuralMetadataULs::essenceContainerData(), index); }
void ContentStorage::appendEssenceContainerData(EssenceContainerData * target) { Accessors::appendTarget(*this, StructuralMetadataULs::essenceContainerData(), target); }
void ContentStorage::removeEssenceContainerData(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::essenceContainerData(), index); }

unsigned int ContentStorage::packagesCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::packages()); }
GenericPackage * ContentStorage::package(unsigned int index) const { return Accessors::targetAt<GenericPackage>(*this, StructuralMetadataULs::packages(), index); }
void ContentStorage::appendPackage(GenericPackage * target) { Accessors::appendTarget(*this, StructuralMetadataULs::packages(), target); }
void ContentStorage::removePackage(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::packages(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
