// The constructors, visits and accessors of CDCIEssenceDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/CDCIEssenceDescriptor.h"

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
CDCIEssenceDescriptor::CDCIEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericPictureEssenceDescriptor(StructuralMetadataKeys::cdciEssenceDescriptor(), metaMetadataSet, owner)
{
}

CDCIEssenceDescriptor::CDCIEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericPictureEssenceDescriptor(key, metaMetadataSet, owner)
{
}

CDCIEssenceDescriptor::~CDCIEssenceDescriptor() {}

void CDCIEssenceDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void CDCIEssenceDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void CDCIEssenceDescriptor::alphaSampleDepth(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::alphaSampleDepth(), value); }
Types::UInt32 const * CDCIEssenceDescriptor::alphaSampleDepth() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::alphaSampleDepth()); }

void CDCIEssenceDescriptor::blackRefLevel(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::blackRefLevel(), value); }
Types::UInt32 const * CDCIEssenceDescriptor::blackRefLevel() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::blackRefLevel()); }

void CDCIEssenceDescriptor::colorRange(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::colorRange(), value); }
Types::UInt32 const * CDCIEssenceDescriptor::colorRange() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::colorRange()); }

void CDCIEssenceDescriptor::colorSiting(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::colorSiting(), value); }
Types::UInt8 const * CDCIEssenceDescriptor::colorSiting() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::colorSiting()); }

void CDCIEssenceDescriptor::componentDepth(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::componentDepth(), value); }
Types::UInt32 const * CDCIEssenceDescriptor::componentDepth() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::componentDepth()); }

void CDCIEssenceDescriptor::horizontalSubsampling(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::horizontalSubsampling(), value); }
Types::UInt32 const * CDCIEssenceDescriptor::horizontalSubsampling() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::horizontalSubsampling()); }

void CDCIEssenceDescriptor::paddingBits(Types::Int16 const * value) { Accessors::setValue<Types::Int16>(*this, StructuralMetadataULs::paddingBits(), value); }
Types::Int16 const * CDCIEssenceDescriptor::paddingBits() const { return Accessors::value<Types::Int16>(*this, StructuralMetadataULs::paddingBits()); }

void CDCIEssenceDescriptor::reversedByteOrder(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::reversedByteOrder(), value); }
Types::Boolean const * CDCIEssenceDescriptor::reversedByteOrder() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::reversedByteOrder()); }

void CDCIEssenceDescriptor::verticalSubsampling(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::verticalSubsampling(), value); }
Types::UInt32 const * CDCIEssenceDescriptor::verticalSubsampling() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::verticalSubsampling()); }

void CDCIEssenceDescriptor::whiteRefLevel(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::whiteRefLevel(), value); }
Types::UInt32 const * CDCIEssenceDescriptor::whiteRefLevel() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::whiteRefLevel()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
