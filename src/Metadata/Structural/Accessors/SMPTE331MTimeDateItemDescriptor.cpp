// The constructors, visits and accessors of SMPTE331MTimeDateItemDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/SMPTE331MTimeDateItemDescriptor.h"

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
SMPTE331MTimeDateItemDescriptor::SMPTE331MTimeDateItemDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : FileDescriptor(StructuralMetadataKeys::smpte331MTimeDateItemDescriptor(), metaMetadataSet, owner)
{
}

SMPTE331MTimeDateItemDescriptor::~SMPTE331MTimeDateItemDescriptor() {}

void SMPTE331MTimeDateItemDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void SMPTE331MTimeDateItemDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void SMPTE331MTimeDateItemDescriptor::dateTimeDropFrame(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::dateTimeDropFrame(), value); }
Types::Boolean const * SMPTE331MTimeDateItemDescriptor::dateTimeDropFrame() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::dateTimeDropFrame()); }

void SMPTE331MTimeDateItemDescriptor::dateTimeEmbeded(Types::Boolean const * value) { Accessors::setValue<Types::Boolean>(*this, StructuralMetadataULs::dateTimeEmbeded(), value); }
Types::Boolean const * SMPTE331MTimeDateItemDescriptor::dateTimeEmbeded() const { return Accessors::value<Types::Boolean>(*this, StructuralMetadataULs::dateTimeEmbeded()); }

void SMPTE331MTimeDateItemDescriptor::dateTimeKind(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::dateTimeKind(), value); }
Types::UniversalLabel const * SMPTE331MTimeDateItemDescriptor::dateTimeKind() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::dateTimeKind()); }

void SMPTE331MTimeDateItemDescriptor::dateTimeRate(Types::Rational const * value) { Accessors::setValue<Types::Rational>(*this, StructuralMetadataULs::dateTimeRate(), value); }
Types::Rational const * SMPTE331MTimeDateItemDescriptor::dateTimeRate() const { return Accessors::value<Types::Rational>(*this, StructuralMetadataULs::dateTimeRate()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
