#pragma once
// The package that describes stored essence, with its descriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericPackage.h"

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
class GenericDescriptor;

// Described by the set SourcePackage.
class SourcePackage : public GenericPackage
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::sourcePackage(); `metaMetadataSet` must describe that key.
    SourcePackage(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~SourcePackage() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::descriptor(): the set referred to, or null.
    void descriptor(GenericDescriptor const * target);
    GenericDescriptor * descriptor() const;

private:
    SourcePackage(SourcePackage const &) = delete;
    SourcePackage & operator=(SourcePackage const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
