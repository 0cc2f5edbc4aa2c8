#pragma once
// Describes RGBA picture essence.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericPictureEssenceDescriptor.h"
#include "Types/DataValue.h"
#include "Types/Integers.h"
#include "Types/RGBALayout.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaMetadataSet;
} // namespace MetaMetadata

namespace Metadata
{
class MetadataSetOwner;

namespace Visitors
{
class MetadataSetVisitor;
class NonConstMetadataSetVisitor;
} // namespace Visitors

namespace Structural
{
// Described by the set RGBADescriptor.
class RGBAEssenceDescriptor : public GenericPictureEssenceDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::rgbaEssenceDescriptor(); `metaMetadataSet` must describe that key.
    RGBAEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~RGBAEssenceDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::alphaMaxRef(): null when empty.
    void alphaMaxRef(Types::UInt32 const * value);
    Types::UInt32 const * alphaMaxRef() const;
    // StructuralMetadataULs::alphaMinRef(): null when empty.
    void alphaMinRef(Types::UInt32 const * value);
    Types::UInt32 const * alphaMinRef() const;
    // StructuralMetadataULs::componentMaxRef(): null when empty.
    void componentMaxRef(Types::UInt32 const * value);
    Types::UInt32 const * componentMaxRef() const;
    // StructuralMetadataULs::componentMinRef(): null when empty.
    void componentMinRef(Types::UInt32 const * value);
    Types::UInt32 const * componentMinRef() const;
    // StructuralMetadataULs::palette(): null when empty.
    void palette(Types::DataValue const * value);
    Types::DataValue const * palette() const;
    // StructuralMetadataULs::paletteLayout(): null when empty.
    void paletteLayout(Types::RGBALayout const * value);
    Types::RGBALayout const * paletteLayout() const;
    // StructuralMetadataULs::pixelLayout(): null when empty.
    void pixelLayout(Types::RGBALayout const * value);
    Types::RGBALayout const * pixelLayout() const;
    // StructuralMetadataULs::scanningDirection(): null when empty.
    void scanningDirection(Types::UInt8 const * value);
    Types::UInt8 const * scanningDirection() const;

private:
    RGBAEssenceDescriptor(RGBAEssenceDescriptor const &) = delete;
    RGBAEssenceDescriptor & operator=(RGBAEssenceDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
