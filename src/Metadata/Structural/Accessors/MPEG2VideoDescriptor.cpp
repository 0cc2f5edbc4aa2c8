// The constructors, visits and accessors of MPEG2VideoDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/MPEG2VideoDescriptor.h"

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
MPEG2VideoDescriptor::MPEG2VideoDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : CDCIEssenceDescriptor(StructuralMetadataKeys::mpeg2VideoDescriptor(), metaMetadataSet, owner)
{
}

MPEG2VideoDescriptor::~MPEG2VideoDescriptor() {}

void MPEG2VideoDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void MPEG2VideoDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void MPEG2VideoDescriptor::bitRate(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::bitRate(), value); }
Types::UInt32 const * MPEG2VideoDescriptor::bitRate() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::bitRate()); }

void MPEG2VideoDescriptor::bPictureCount(Types::UInt16 const * value) { Accessors::setValue<Types::UInt16>(*this, StructuralMetadataULs::bPictureCount(), value); }
Types::UInt16 const * MPEG2VideoDescriptor::bPictureCount() const { return Accessors::value<Types::UInt16>(*this, StructuralMetadataULs::bPictureCount()); }

void MPEG2VideoDescriptor::closedGOP(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::closedGOP(), value); }
Types::Boolean const * MPEG2VideoDescriptor::closedGOP() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::closedGOP()); }

void MPEG2VideoDescriptor::codedContentType(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::codedContentType(), value); }
Types::UInt8 const * MPEG2VideoDescriptor::codedContentType() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::codedContentType()); }

void MPEG2VideoDescriptor::constantBFrames(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::constantBFrames(), value); }
Types::Boolean const * MPEG2VideoDescriptor::constantBFrames() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::constantBFrames()); }

void MPEG2VideoDescriptor::identicalGOP(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::identicalGOP(), value); }
Types::Boolean const * MPEG2VideoDescriptor::identicalGOP() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::identicalGOP()); }

void MPEG2VideoDescriptor::lowDelay(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::lowDelay(), value); }
Types::Boolean const * MPEG2VideoDescriptor::lowDelay() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::lowDelay()); }

void MPEG2VideoDescriptor::maxGOP(Types::UInt16 const * value) { Accessors::setValue<Types::UInt16>(*this, StructuralMetadataULs::maxGOP(), value); }
Types::UInt16 const * MPEG2VideoDescriptor::maxGOP() const { return Accessors::value<Types::UInt16>(*this, StructuralMetadataULs::maxGOP()); }

void MPEG2VideoDescriptor::profileAndLevel(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::profileAndLevel(), value); }
Types::UInt8 const * MPEG2VideoDescriptor::profileAndLevel() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::profileAndLevel()); }

void MPEG2VideoDescriptor::singleSequence(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::singleSequence(), value); }
Types::Boolean const * MPEG2VideoDescriptor::singleSequence() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::singleSequence()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
