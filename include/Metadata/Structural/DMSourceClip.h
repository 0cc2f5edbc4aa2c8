#pragma once
// A source clip on a descriptive metadata track.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/SourceClip.h"
#include "Types/Integers.h"

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
// Described by the set DescriptiveClip.
class DMSourceClip : public SourceClip
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::dmSourceClip(); `metaMetadataSet` must describe that key.
    DMSourceClip(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~DMSourceClip() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::dmSourceClipTrackIDs(): the members in order.
    unsigned int dmSourceClipTrackIDsCount() const;
    Types::UInt32 const * dmSourceClipTrackID(unsigned int index) const;
    void appendDMSourceClipTrackID(Types::UInt32 const & value);
    void removeDMSourceClipTrackID(unsigned int index);

private:
    DMSourceClip(DMSourceClip const &) = delete;
    DMSourceClip & operator=(DMSourceClip const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
