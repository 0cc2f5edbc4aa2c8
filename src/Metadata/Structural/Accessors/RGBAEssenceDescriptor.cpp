// The constructors, visits and accessors of RGBAEssenceDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/RGBAEssenceDescriptor.h"

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
RGBAEssenceDescriptor::RGBAEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericPictureEssenceDescriptor(StructuralMetadataKeys::rgbaEssenceDescriptor(), metaMetadataSet, owner)
{
}

RGBAEssenceDescriptor::~RGBAEssenceDescriptor() {}

void RGBAEssenceDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void RGBAEssenceDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void RGBAEssenceDescriptor::alphaMaxRef(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::alphaMaxRef(), value); }
Types::UInt32 const * RGBAEssenceDescriptor::alphaMaxRef() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::alphaMaxRef()); }

void RGBAEssenceDescriptor::alphaMinRef(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::alphaMinRef(), value); }
Types::UInt32 const * RGBAEssenceDescriptor::alphaMinRef() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::alphaMinRef()); }

void RGBAEssenceDescriptor::componentMaxRef(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::componentMaxRef(), value); }
Types::UInt32 const * RGBAEssenceDescriptor::componentMaxRef() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::componentMaxRef()); }

void RGBAEssenceDescriptor::componentMinRef(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::componentMinRef(), value); }
Types::UInt32 const * RGBAEssenceDescriptor::componentMinRef() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::componentMinRef()); }

void RGBAEssenceDescriptor::palette(Types::DataValue const * value) { Accessors::setValue<Types::DataValue>(*this, StructuralMetadataULs::palette(), value); }
Types::DataValue const * RGBAEssenceDescriptor::palette() const { return Accessors::value<Types::DataValue>(*this, StructuralMetadataULs::palette()); }

void RGBAEssenceDescriptor::paletteLayout(Types::RGBALayout const * value) { Accessors::setValue<Types::RGBALayout>(*this, StructuralMetadataULs::paletteLayout(), value); }
Types::RGBALayout const * RGBAEssenceDescriptor::paletteLayout() const { return Accessors::value<Types::RGBALayout>(*this, StructuralMetadataULs::paletteLayout()); }

void RGBAEssenceDescriptor::pixelLayout(Types::RGBALayout const * value) { Accessors::setValue<Types::RGBALayout>(*this, StructuralMetadataULs::pixelLayout(), value); }
Types::RGBALayout const * RGBAEssenceDescriptor::pixelLayout() const { return Accessors::value<Types::RGBALayout>(*this, StructuralMetadataULs::pixelLayout()); }

void RGBAEssenceDescriptor::scanningDirection(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::scanningDirection(), value); }
Types::UInt8 const * RGBAEssenceDescriptor::scanningDirection() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::scanningDirection()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
