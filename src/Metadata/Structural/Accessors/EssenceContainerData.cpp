// The constructors, visits and accessors of EssenceContainerData.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/EssenceContainerData.h"

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
EssenceContainerData::EssenceContainerData(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(StructuralMetadataKeys::essenceContainerData(), metaMetadataSet, owner)
{
}

EssenceContainerData::~EssenceContainerData() {}

void EssenceContainerData::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void EssenceContainerData::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void EssenceContainerData::bodySID(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::bodySID(), value); }
Types::UInt32 const * EssenceContainerData::bodySID() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::bodySID()); }

void EssenceContainerData::indexSID(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::indexSID(), value); }
Types::UInt32 const * EssenceContainerData::indexSID() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::indexSID()); }

void EssenceContainerData::linkedPackageUID(Types::UMID32 const * value) { Accessors::setValue<Types::UMID32>(*this, StructuralMetadataULs::linkedPackageUID(), value); }
Types::UMID32 const * EssenceContainerData::linkedPackageUID() const { return Accessors::value<Types::UMID32>(*this, StructuralMetadataULs::linkedPackageUID()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
