#pragma once
// The package that the output timeline is made of.
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
// Described by the set MaterialPackage.
class MaterialPackage : public GenericPackage
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::materialPackage(); `metaMetadataSet` must describe that key.
    MaterialPackage(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~MaterialPackage() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

private:
    MaterialPackage(MaterialPackage const &) = delete;
    MaterialPackage & operator=(MaterialPackage const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
