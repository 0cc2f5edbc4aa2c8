#pragma once
// Describes picture essence: sizes, layout, aspect ratio and coding.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/FileDescriptor.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/SignalStandard.h"
#include "Types/UniversalLabel.h"

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
// Described by the set PictureDescriptor.
class GenericPictureEssenceDescriptor : public FileDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::genericPictureEssenceDescriptor(); `metaMetadataSet` must describe that key.
    GenericPictureEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~GenericPictureEssenceDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::activeFormatDescriptor(): null when empty.
    void activeFormatDescriptor(Types::UInt8 const * value);
    Types::UInt8 const * activeFormatDescriptor() const;
    // StructuralMetadataULs::alphaTransparency(): null when empty.
    void alphaTransparency(Types::UInt8 const * value);
    Types::UInt8 const * alphaTransparency() const;
    // StructuralMetadataULs::aspectRatio(): null when empty.
    void aspectRatio(Types::Rational const * value);
    Types::Rational const * aspectRatio() const;
    // StructuralMetadataULs::captureGamma(): null when empty.
    void captureGamma(Types::UniversalLabel const * value);
    Types::UniversalLabel const * captureGamma() const;
    // StructuralMetadataULs::displayF2Offset(): null when empty.
    void displayF2Offset(Types::Int32 const * value);
    Types::Int32 const * displayF2Offset() const;
    // StructuralMetadataULs::displayHeight(): null when empty.
    void displayHeight(Types::UInt32 const * value);
    Types::UInt32 const * displayHeight() const;
    // StructuralMetadataULs::displayWidth(): null when empty.
    void displayWidth(Types::UInt32 const * value);
    Types::UInt32 const * displayWidth() const;
    // StructuralMetadataULs::displayXOffset(): null when empty.
    void displayXOffset(Types::Int32 const * value);
    Types::Int32 const * displayXOffset() const;
    // StructuralMetadataULs::displayYOffset(): null when empty.
    void displayYOffset(Types::Int32 const * value);
    Types::Int32 const * displayYOffset() const;
    // StructuralMetadataULs::fieldDominance(): null when empty.
    void fieldDominance(Types::UInt8 const * value);
    Types::UInt8 const * fieldDominance() const;
    // StructuralMetadataULs::frameLayout(): null when empty.
    void frameLayout(Types::UInt8 const * value);
    Types::UInt8 const * frameLayout() const;
    // StructuralMetadataULs::imageAlignmentOffset(): null when empty.
    void imageAlignmentOffset(Types::UInt32 const * value);
    Types::UInt32 const * imageAlignmentOffset() const;
    // StructuralMetadataULs::imageEndOffset(): null when empty.
    void imageEndOffset(Types::UInt32 const * value);
    Types::UInt32 const * imageEndOffset() const;
    // StructuralMetadataULs::imageStartOffset(): null when empty.
    void imageStartOffset(Types::UInt32 const * value);
    Types::UInt32 const * imageStartOffset() const;
    // StructuralMetadataULs::pictureEssenceCoding(): null when empty.
    void pictureEssenceCoding(Types::UniversalLabel const * value);
    Types::UniversalLabel const * pictureEssenceCoding() const;
    // StructuralMetadataULs::sampledHeight(): null when empty.
    void sampledHeight(Types::UInt32 const * value);
    Types::UInt32 const * sampledHeight() const;
    // StructuralMetadataULs::sampledWidth(): null when empty.
    void sampledWidth(Types::UInt32 const * value);
    Types::UInt32 const * sampledWidth() const;
    // StructuralMetadataULs::sampledXOffset(): null when empty.
    void sampledXOffset(Types::Int32 const * value);
    Types::Int32 const * sampledXOffset() const;
    // StructuralMetadataULs::sampledYOffset(): null when empty.
    void sampledYOffset(Types::Int32 const * value);
    Types::Int32 const * sampledYOffset() const;
    // StructuralMetadataULs::signalStandard(): null when empty.
    void signalStandard(Types::SignalStandard const * value);
    Types::SignalStandard const * signalStandard() const;
    // StructuralMetadataULs::storedF2Offset(): null when empty.
    void storedF2Offset(Types::Int32 const * value);
    Types::Int32 const * storedF2Offset() const;
    // StructuralMetadataULs::storedHeight(): null when empty.
    void storedHeight(Types::UInt32 const * value);
    Types::UInt32 const * storedHeight() const;
    // StructuralMetadataULs::storedWidth(): null when empty.
    void storedWidth(Types::UInt32 const * value);
    Types::UInt32 const * storedWidth() const;
    // StructuralMetadataULs::videoLineMap(): the members in order.
    unsigned int videoLineMapCount() const;
    Types::Int32 const * videoLineMap(unsigned int index) const;
    void appendVideoLineMap(Types::Int32 const & value);
    void addVideoLineMap(unsigned int index, Types::Int32 const & value);
    void removeVideoLineMap(unsigned int index);

protected:
    GenericPictureEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    GenericPictureEssenceDescriptor(GenericPictureEssenceDescriptor const &) = delete;
    GenericPictureEssenceDescriptor & operator=(GenericPictureEssenceDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
