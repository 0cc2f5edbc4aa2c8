#pragma once
// Describes colour difference picture essence.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericPictureEssenceDescriptor.h"
#include "Types/Boolean.h"
#include "Types/Integers.h"

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
// Described by the set CDCIDescriptor.
class CDCIEssenceDescriptor : public GenericPictureEssenceDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::cdciEssenceDescriptor(); `metaMetadataSet` must describe that key.
    CDCIEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~CDCIEssenceDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::alphaSampleDepth(): null when empty.
    void alphaSampleDepth(Types::UInt32 const * value);
    Types::UInt32 const * alphaSampleDepth() const;
    // StructuralMetadataULs::blackRefLevel(): null when empty.
    void blackRefLevel(Types::UInt32 const * value);
    Types::UInt32 const * blackRefLevel() const;
    // StructuralMetadataULs::colorRange(): null when empty.
    void colorRange(Types::UInt32 const * value);
    Types::UInt32 const * colorRange() const;
    // StructuralMetadataULs::colorSiting(): null when empty.
    void colorSiting(Types::UInt8 const * value);
    Types::UInt8 const * colorSiting() const;
    // StructuralMetadataULs::componentDepth(): null when empty.
    void componentDepth(Types::UInt32 const * value);
    Types::UInt32 const * componentDepth() const;
    // StructuralMetadataULs::horizontalSubsampling(): null when empty.
    void horizontalSubsampling(Types::UInt32 const * value);
    Types::UInt32 const * horizontalSubsampling() const;
    // StructuralMetadataULs::paddingBits(): null when empty.
    void paddingBits(Types::Int16 const * value);
    Types::Int16 const * paddingBits() const;
    // StructuralMetadataULs::reversedByteOrder(): null when empty.
    void reversedByteOrder(Types::Boolean const * value);
    Types::Boolean const * reversedByteOrder() const;
    // StructuralMetadataULs::verticalSubsampling(): null when empty.
    void verticalSubsampling(Types::UInt32 const * value);
    Types::UInt32 const * verticalSubsampling() const;
    // StructuralMetadataULs::whiteRefLevel(): null when empty.
    void whiteRefLevel(Types::UInt32 const * value);
    Types::UInt32 const * whiteRefLevel() const;

protected:
    CDCIEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    CDCIEssenceDescriptor(CDCIEssenceDescriptor const &) = delete;
    CDCIEssenceDescriptor & operator=(CDCIEssenceDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
