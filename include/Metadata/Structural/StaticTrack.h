#pragma once
// A track without time.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/Track.h"

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
// Described by the set StaticTrack.
class StaticTrack : public Track
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::staticTrack(); `metaMetadataSet` must describe that key.
    StaticTrack(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~StaticTrack() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

private:
    StaticTrack(StaticTrack const &) = delete;
    StaticTrack & operator=(StaticTrack const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
