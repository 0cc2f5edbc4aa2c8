#pragma once
// Describes the physical source of essence.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericDescriptor.h"

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
// Described by the set PhysicalDescriptor.
class PhysicalDescriptor : public GenericDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    ~PhysicalDescriptor() override;

protected:
    PhysicalDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    PhysicalDescriptor(PhysicalDescriptor const &) = delete;
    PhysicalDescriptor & operator=(PhysicalDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
