#pragma once
// Locates essence by a name meant for people.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/Locator.h"
#include "Types/UTF16String.h"

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
// Described by the set TextLocator.
class TextLocator : public Locator
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::textLocator(); `metaMetadataSet` must describe that key.
    TextLocator(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~TextLocator() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::locatorName(): null when empty.
    void locatorName(Types::UTF16String const * value);
    Types::UTF16String const * locatorName() const;

private:
    TextLocator(TextLocator const &) = delete;
    TextLocator & operator=(TextLocator const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
