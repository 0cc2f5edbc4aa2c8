#pragma once
// Describes ANC packets carried as data essence.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericDataEssenceDescriptor.h"

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
// Described by the set ANCDataDescriptor.
class ANCPacketsDescriptor : public GenericDataEssenceDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::ancPacketsDescriptor(); `metaMetadataSet` must describe that key.
    ANCPacketsDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~ANCPacketsDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

private:
    ANCPacketsDescriptor(ANCPacketsDescriptor const &) = delete;
    ANCPacketsDescriptor & operator=(ANCPacketsDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
