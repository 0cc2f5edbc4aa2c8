#pragma once
// Describes the date and time item of an SMPTE 331M system item.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/FileDescriptor.h"
#include "Types/Boolean.h"
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
// Described by the set DateTimeDescriptor.
class SMPTE331MTimeDateItemDescriptor : public FileDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::smpte331MTimeDateItemDescriptor(); `metaMetadataSet` must describe that key.
    SMPTE331MTimeDateItemDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~SMPTE331MTimeDateItemDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::dateTimeDropFrame(): null when empty.
    void dateTimeDropFrame(Types::Boolean const * value);
    Types::Boolean const * dateTimeDropFrame() const;
    // StructuralMetadataULs::dateTimeEmbeded(): null when empty.
    void dateTimeEmbeded(Types::Boolean const * value);
    Types::Boolean const * dateTimeEmbeded() const;
    // StructuralMetadataULs::dateTimeKind(): null when empty.
    void dateTimeKind(Types::UniversalLabel const * value);
    Types::UniversalLabel const * dateTimeKind() const;
    // StructuralMetadataULs::dateTimeRate(): null when empty.
    void dateTimeRate(Types::Rational const * value);
    Types::Rational const * dateTimeRate() const;

private:
    SMPTE331MTimeDateItemDescriptor(SMPTE331MTimeDateItemDescriptor const &) = delete;
    SMPTE331MTimeDateItemDescriptor & operator=(SMPTE331MTimeDateItemDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
