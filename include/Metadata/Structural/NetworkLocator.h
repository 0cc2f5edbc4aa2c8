#pragma once
// Locates essence by a URL.
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
// Described by the set NetworkLocator.
class NetworkLocator : public Locator
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::networkLocator(); `metaMetadataSet` must describe that key.
    NetworkLocator(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~NetworkLocator() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::urlString(): null when empty.
    void urlString(Types::UTF16String const * value);
    Types::UTF16String const * urlString() const;

private:
    NetworkLocator(NetworkLocator const &) = delete;
    NetworkLocator & operator=(NetworkLocator const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
