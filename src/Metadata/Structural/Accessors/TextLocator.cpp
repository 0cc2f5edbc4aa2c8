// The constructors, visits and accessors of TextLocator.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TextLocator.h"

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
TextLocator::TextLocator(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : Locator(StructuralMetadataKeys::textLocator(), metaMetadataSet, owner)
{
}

TextLocator::~TextLocator() {}

void TextLocator::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void TextLocator::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void TextLocator::locatorName(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::locatorName(), value); }
Types::UTF16String const * TextLocator::locatorName() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::locatorName()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
