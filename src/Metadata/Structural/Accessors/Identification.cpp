// The constructors, visits and accessors of Identification.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/Identification.h"

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
Identification::Identification(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : MetadataSet(StructuralMetadataKeys::identification(), metaMetadataSet, owner)
{
}

Identification::~Identification() {}

void Identification::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void Identification::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void Identification::companyName(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::companyName(), value); }
Types::UTF16String const * Identification::companyName() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::companyName()); }

void Identification::generationUID(Types::UUID const * value) { Accessors::setValue<Types::UUID>(*this, StructuralMetadataULs::generationUID(), value); }
Types::UUID const * Identification::generationUID() const { return Accessors::value<Types::UUID>(*this, StructuralMetadataULs::generationUID()); }

void Identification::modifiedDate(Types::Timestamp const * value) { Accessors::setValue<Types::Timestamp>(*this, StructuralMetadataULs::modifiedDate(), value); }
Types::Timestamp const * Identification::modifiedDate() const { return Accessors::value<Types::Timestamp>(*this, StructuralMetadataULs::modifiedDate()); }

void Identification::platform(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::platform(), value); }
Types::UTF16String const * Identification::platform() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::platform()); }

void Identification::productName(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::productName(), value); }
Types::UTF16String const * Identification::productName() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::productName()); }

void Identification::productUID(Types::UUID const * value) { Accessors::setValue<Types::UUID>(*this, StructuralMetadataULs::productUID(), value); }
Types::UUID const * Identification::productUID() const { return Accessors::value<Types::UUID>(*this, StructuralMetadataULs::productUID()); }

void Identification::productVersion(Types::ProductVersion const * value) { Accessors::setValue<Types::ProductVersion>(*this, StructuralMetadataULs::productVersion(), value); }
Types::ProductVersion const * Identification::productVersion() const { return Accessors::value<Types::ProductVersion>(*this, StructuralMetadataULs::productVersion()); }

void Identification::thisGenerationUID(Types::UUID const * value) { Accessors::setValue<Types::UUID>(*this, StructuralMetadataULs::thisGenerationUID(), value); }
Types::UUID const * Identification::thisGenerationUID() const { return Accessors::value<Types::UUID>(*this, StructuralMetadataULs::thisGenerationUID()); }

void Identification::toolkitVersion(Types::ProductVersion const * value) { Accessors::setValue<Types::ProductVersion>(*this, StructuralMetadataULs::toolkitVersion(), value); }
Types::ProductVersion const * Identification::toolkitVersion() const { return Accessors::value<Types::ProductVersion>(*this, StructuralMetadataULs::toolkitVersion()); }

void Identification::versionString(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::versionString(), value); }
Types::UTF16String const * Identification::versionString() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::versionString()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
