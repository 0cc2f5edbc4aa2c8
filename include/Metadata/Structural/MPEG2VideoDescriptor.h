#pragma once
// Describes MPEG-2 video essence.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/CDCIEssenceDescriptor.h"
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
// Described by the set MPEGVideoDescriptor.
class MPEG2VideoDescriptor : public CDCIEssenceDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::mpeg2VideoDescriptor(); `metaMetadataSet` must describe that key.
    MPEG2VideoDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~MPEG2VideoDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::bitRate(): null when empty.
    void bitRate(Types::UInt32 const * value);
    Types::UInt32 const * bitRate() const;
    // StructuralMetadataULs::bPictureCount(): null when empty.
    void bPictureCount(Types::UInt16 const * value);
    Types::UInt16 const * bPictureCount() const;
    // StructuralMetadataULs::closedGOP(): null when empty.
    void closedGOP(Types::Boolean const * value);
    Types::Boolean const * closedGOP() const;
    // StructuralMetadataULs::codedContentType(): null when empty.
    void codedContentType(Types::UInt8 const * value);
    Types::UInt8 const * codedContentType() const;
    // StructuralMetadataULs::constantBFrames(): null when empty.
    void constantBFrames(Types::Boolean const * value);
    Types::Boolean const * constantBFrames() const;
    // StructuralMetadataULs::identicalGOP(): null when empty.
    void identicalGOP(Types::Boolean const * value);
    Types::Boolean const * identicalGOP() const;
    // StructuralMetadataULs::lowDelay(): null when empty.
    void lowDelay(Types::Boolean const * value);
    Types::Boolean const * lowDelay() const;
    // StructuralMetadataULs::maxGOP(): null when empty.
    void maxGOP(Types::UInt16 const * value);
    Types::UInt16 const * maxGOP() const;
    // StructuralMetadataULs::profileAndLevel(): null when empty.
    void profileAndLevel(Types::UInt8 const * value);
    Types::UInt8 const * profileAndLevel() const;
    // StructuralMetadataULs::singleSequence(): null when empty.
    void singleSequence(Types::Boolean const * value);
    Types::Boolean const * singleSequence() const;

private:
    MPEG2VideoDescriptor(MPEG2VideoDescriptor const &) = delete;
    MPEG2VideoDescriptor & operator=(MPEG2VideoDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
