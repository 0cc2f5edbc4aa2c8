// The constructors, visits and accessors of GenericSoundEssenceDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericSoundEssenceDescriptor.h"

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
GenericSoundEssenceDescriptor::GenericSoundEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : FileDescriptor(StructuralMetadataKeys::genericSoundEssenceDescriptor(), metaMetadataSet, owner)
{
}

GenericSoundEssenceDescriptor::GenericSoundEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : FileDescriptor(key, metaMetadataSet, owner)
{
}

GenericSoundEssenceDescriptor::~GenericSoundEssenceDescriptor() {}

void GenericSoundEssenceDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void GenericSoundEssenceDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void GenericSoundEssenceDescriptor::audioRefLevel(Types::Int8 const * value) { Accessors::setValue<Types::Int8>(*this, StructuralMetadataULs::audioRefLevel(), value); }
Types::Int8 const * GenericSoundEssenceDescriptor::audioRefLevel() const { return Accessors::value<Types::Int8>(*this, StructuralMetadataULs::audioRefLevel()); }

void GenericSoundEssenceDescriptor::audioSamplingRate(Types::Rational const * value) { Accessors::setValue<Types::Rational>(*this, StructuralMetadataULs::audioSamplingRate(), value); }
Types::Rational const * GenericSoundEssenceDescriptor::audioSamplingRate() const { return Accessors::value<Types::Rational>(*this, StructuralMetadataULs::audioSamplingRate()); }

void GenericSoundEssenceDescriptor::channelCount(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::channelCount(), value); }
Types::UInt32 const * GenericSoundEssenceDescriptor::channelCount() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::channelCount()); }

void GenericSoundEssenceDescriptor::dialNorm(Types::Int8 const * value) { Accessors::setValue<Types::Int8>(*this, StructuralMetadataULs::dialNorm(), value); }
Types::Int8 const * GenericSoundEssenceDescriptor::dialNorm() const { return Accessors::value<Types::Int8>(*this, StructuralMetadataULs::dialNorm()); }

void GenericSoundEssenceDescriptor::electroSpatialFormulation(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::electroSpatialFormulation(), value); }
Types::UInt8 const * GenericSoundEssenceDescriptor::electroSpatialFormulation() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::electroSpatialFormulation()); }

void GenericSoundEssenceDescriptor::lockedUnlocked(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::lockedUnlocked(), value); }
Types::Boolean const * GenericSoundEssenceDescriptor::lockedUnlocked() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::lockedUnlocked()); }

void GenericSoundEssenceDescriptor::quantizationBits(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::quantizationBits(), value); }
Types::UInt32 const * GenericSoundEssenceDescriptor::quantizationBits() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::quantizationBits()); }

void GenericSoundEssenceDescriptor::soundEssenceCompression(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::soundEssenceCompression(), value); }
Types::UniversalLabel const * GenericSoundEssenceDescriptor::soundEssenceCompression() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::soundEssenceCompression()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
