#pragma once
// Who wrote or changed the file: company, product, versions, platform and date.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/MetadataSet.h"
#include "Types/ProductVersion.h"
#include "Types/Timestamp.h"
#include "Types/UTF16String.h"
#include "Types/UUID.h"

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
// Described by the set Identification.
class Identification : public MetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::identification(); `metaMetadataSet` must describe that key.
    Identification(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~Identification() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::companyName(): null when empty.
    void companyName(Types::UTF16String const * value);
    Types::UTF16String const * companyName() const;
    // StructuralMetadataULs::generationUID(): null when empty.
    void generationUID(Types::UUID const * value);
    Types::UUID const * generationUID() const;
    // StructuralMetadataULs::modifiedDate(): null when empty.
    void modifiedDate(Types::Timestamp const * value);
    Types::Timestamp const * modifiedDate() const;
    // StructuralMetadataULs::platform(): null when empty.
    void platform(Types::UTF16String const * value);
    Types::UTF16String const * platform() const;
    // StructuralMetadataULs::productName(): null when empty.
    void productName(Types::UTF16String const * value);
    Types::UTF16String const * productName() const;
    // StructuralMetadataULs::productUID(): null when empty.
    void productUID(Types::UUID const * value);
    Types::UUID const * productUID() const;
    // StructuralMetadataULs::productVersion(): null when empty.
    void productVersion(Types::ProductVersion const * value);
    Types::ProductVersion const * productVersion() const;
    // StructuralMetadataULs::thisGenerationUID(): null when empty.
    void thisGenerationUID(Types::UUID const * value);
    Types::UUID const * thisGenerationUID() const;
    // StructuralMetadataULs::toolkitVersion(): null when empty.
    void toolkitVersion(Types::ProductVersion const * value);
    Types::ProductVersion const * toolkitVersion() const;
    // StructuralMetadataULs::versionString(): null when empty.
    void versionString(Types::UTF16String const * value);
    Types::UTF16String const * versionString() const;

private:
    Identification(Identification const &) = delete;
    Identification & operator=(Identification const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
