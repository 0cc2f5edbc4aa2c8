#pragma once
// A descriptor that adds to another descriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"

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
// Described by the set SubDescriptor.
class SubDescriptor : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    ~SubDescriptor() override;

protected:
    SubDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    SubDescriptor(SubDescriptor const &) = delete;
    SubDescriptor & operator=(SubDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
