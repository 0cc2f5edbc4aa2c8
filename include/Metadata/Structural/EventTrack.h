#pragma once
// A track of events at an edit rate of its own.
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
// Described by the set EventTrack.
class EventTrack : public Track
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::eventTrack(); `metaMetadataSet` must describe that key.
    EventTrack(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~EventTrack() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::eventEditRate(): null when empty.
    void eventEditRate(Types::Rational const * value);
    Types::Rational const * eventEditRate() const;
    // StructuralMetadataULs::eventOrigin(): null when empty.
    void eventOrigin(Types::Position const * value);
    Types::Position const * eventOrigin() const;

private:
    EventTrack(EventTrack const &) = delete;
    EventTrack & operator=(EventTrack const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
