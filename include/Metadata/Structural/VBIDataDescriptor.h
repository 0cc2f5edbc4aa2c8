#pragma once
// Describes VBI lines carried as data essence.
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
// Described by the set VBIDataDescriptor.
class VBIDataDescriptor : public GenericDataEssenceDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::vbiDataDescriptor(); `metaMetadataSet` must describe that key.
    VBIDataDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~VBIDataDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

private:
    VBIDataDescriptor(VBIDataDescriptor const &) = delete;
    VBIDataDescriptor & operator=(VBIDataDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
