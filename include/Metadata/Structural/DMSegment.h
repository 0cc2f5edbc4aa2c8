#pragma once
// A segment of descriptive metadata over a stretch of the described tracks.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/StructuralComponent.h"
#include "Types/Integers.h"
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
// Described by the set DescriptiveMarker.
class DMSegment : public StructuralComponent
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::dmSegment(); `metaMetadataSet` must describe that key.
    DMSegment(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~DMSegment() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::dmFramework(): the set referred to, or null.
    void dmFramework(MetadataSet const * target);
    MetadataSet * dmFramework() const;
    // StructuralMetadataULs::dmSegmentTrackIDs(): the members in order.
    unsigned int dmSegmentTrackIDsCount() const;
    Types::UInt32 const * dmSegmentTrackID(unsigned int index) const;
    void appendDMSegmentTrackID(Types::UInt32 const & value);
    void removeDMSegmentTrackID(unsigned int index);
    // StructuralMetadataULs::eventComment(): null when empty.
    void eventComment(Types::UTF16String const * value);
    Types::UTF16String const * eventComment() const;
    // StructuralMetadataULs::eventStartPosition(): null when empty.
    void eventStartPosition(Types::Position const * value);
    Types::Position const * eventStartPosition() const;

private:
    DMSegment(DMSegment const &) = delete;
    DMSegment & operator=(DMSegment const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
