#pragma once
// Where essence outside the file is found.
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
// Described by the set Locator.
class Locator : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    ~Locator() override;

protected:
    Locator(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    Locator(Locator const &) = delete;
    Locator & operator=(Locator const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
