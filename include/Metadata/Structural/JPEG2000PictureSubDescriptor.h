#pragma once
// Adds the JPEG 2000 codestream parameters to a picture descriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/SubDescriptor.h"
#include "Types/Integers.h"
#include "Types/J2KParameters.h"

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
// Described by the set JPEG2000SubDescriptor.
class JPEG2000PictureSubDescriptor : public SubDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::jpeg2000PictureSubDescriptor(); `metaMetadataSet` must describe that key.
    JPEG2000PictureSubDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~JPEG2000PictureSubDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::codingStyleDefault(): null when empty.
    void codingStyleDefault(Types::J2KCodingStyleDefault const * value);
    Types::J2KCodingStyleDefault const * codingStyleDefault() const;
    // StructuralMetadataULs::csiz(): null when empty.
    void csiz(Types::UInt16 const * value);
    Types::UInt16 const * csiz() const;
    // StructuralMetadataULs::pictureComponentSizing(): the members in order.
    unsigned int pictureComponentSizingCount() const;
    Types::J2KPictureComponent const * pictureComponentSizing(unsigned int index) const;
    void appendPictureComponentSizing(Types::J2KPictureComponent const & value);
    void addPictureComponentSizing(unsigned int index, Types::J2KPictureComponent const & value);
    void removePictureComponentSizing(unsigned int index);
    // StructuralMetadataULs::quantisationDefault(): null when empty.
    void quantisationDefault(Types::J2KQuantisationDefault const * value);
    Types::J2KQuantisationDefault const * quantisationDefault() const;
    // StructuralMetadataULs::rsiz(): null when empty.
    void rsiz(Types::UInt16 const * value);
    Types::UInt16 const * rsiz() const;
    // StructuralMetadataULs::xOsiz(): null when empty.
    void xOsiz(Types::UInt32 const * value);
    Types::UInt32 const * xOsiz() const;
    // StructuralMetadataULs::xsiz(): null when empty.
    void xsiz(Types::UInt32 const * value);
    Types::UInt32 const * xsiz() const;
    // StructuralMetadataULs::xTOsiz(): null when empty.
    void xTOsiz(Types::UInt32 const * value);
    Types::UInt32 const * xTOsiz() const;
    // StructuralMetadataULs::xTsiz(): null when empty.
    void xTsiz(Types::UInt32 const * value);
    Types::UInt32 const * xTsiz() const;
    // StructuralMetadataULs::yOsiz(): null when empty.
    void yOsiz(Types::UInt32 const * value);
    Types::UInt32 const * yOsiz() const;
    // StructuralMetadataULs::ysiz(): null when empty.
    void ysiz(Types::UInt32 const * value);
    Types::UInt32 const * ysiz() const;
    // StructuralMetadataULs::yTOsiz(): null when empty.
    void yTOsiz(Types::UInt32 const * value);
    Types::UInt32 const * yTOsiz() const;
    // StructuralMetadataULs::yTsiz(): null when empty.
    void yTsiz(Types::UInt32 const * value);
    Types::UInt32 const * yTsiz() const;

private:
    JPEG2000PictureSubDescriptor(JPEG2000PictureSubDescriptor const &) = delete;
    JPEG2000PictureSubDescriptor & operator=(JPEG2000PictureSubDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
