#pragma once
// A track with an edit rate and an origin.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/Track.h"
#include "Types/Integers.h"
#include "Types/Rational.h"

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
// Described by the set TimelineTrack.
class TimelineTrack : public Track
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::timelineTrack(); `metaMetadataSet` must describe that key.
    TimelineTrack(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~TimelineTrack() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::editRate(): null when empty.
    virtual void editRate(Types::Rational const * value);
    virtual Types::Rational const * editRate() const;
    // StructuralMetadataULs::origin(): null when empty.
    virtual void origin(Types::Position const * value);
    virtual Types::Position const * origin() const;

private:
    TimelineTrack(TimelineTrack const &) = delete;
    TimelineTrack & operator=(TimelineTrack const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
