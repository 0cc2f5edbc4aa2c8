#pragma once
// Describes sound essence: sampling rate, channels, bits and coding.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/FileDescriptor.h"
#include "Types/Boolean.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
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
// Described by the set SoundDescriptor.
class GenericSoundEssenceDescriptor : public FileDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::genericSoundEssenceDescriptor(); `metaMetadataSet` must describe that key.
    GenericSoundEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~GenericSoundEssenceDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::audioRefLevel(): null when empty.
    void audioRefLevel(Types::Int8 const * value);
    Types::Int8 const * audioRefLevel() const;
    // StructuralMetadataULs::audioSamplingRate(): null when empty.
    void audioSamplingRate(Types::Rational const * value);
    Types::Rational const * audioSamplingRate() const;
    // StructuralMetadataULs::channelCount(): null when empty.
    void channelCount(Types::UInt32 const * value);
    Types::UInt32 const * channelCount() const;
    // StructuralMetadataULs::dialNorm(): null when empty.
    void dialNorm(Types::Int8 const * value);
    Types::Int8 const * dialNorm() const;
    // StructuralMetadataULs::electroSpatialFormulation(): null when empty.
    void electroSpatialFormulation(Types::UInt8 const * value);
    Types::UInt8 const * electroSpatialFormulation() const;
    // StructuralMetadataULs::lockedUnlocked(): null when empty.
    void lockedUnlocked(Types::Boolean const * value);
    Types::Boolean const * lockedUnlocked() const;
    // StructuralMetadataULs::quantizationBits(): null when empty.
    void quantizationBits(Types::UInt32 const * value);
    Types::UInt32 const * quantizationBits() const;
    // StructuralMetadataULs::soundEssenceCompression(): null when empty.
    void soundEssenceCompression(Types::UniversalLabel const * value);
    Types::UniversalLabel const * soundEssenceCompression() const;

protected:
    GenericSoundEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    GenericSoundEssenceDescriptor(GenericSoundEssenceDescriptor const &) = delete;
    GenericSoundEssenceDescriptor & operator=(GenericSoundEssenceDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
