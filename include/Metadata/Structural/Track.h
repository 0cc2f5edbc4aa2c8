#pragma once
// One track of a package: its ID, number, name and sequence.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"
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
class Sequence;

// Described by the set Track.
class Track : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    ~Track() override;

    // StructuralMetadataULs::trackID(): null when empty.
    virtual void trackID(Types::UInt32 const * value);
    virtual Types::UInt32 const * trackID() const;
    // StructuralMetadataULs::trackNumber(): null when empty.
    virtual void trackNumber(Types::UInt32 const * value);
    virtual Types::UInt32 const * trackNumber() const;
    // StructuralMetadataULs::trackName(): null when empty.
    virtual void trackName(Types::UTF16String const * value);
    virtual Types::UTF16String const * trackName() const;
    // StructuralMetadataULs::sequence(): the set referred to, or null.
    virtual void sequence(Sequence const * target);
    virtual Sequence * sequence() const;

protected:
    Track(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    Track(Track const &) = delete;
    Track & operator=(Track const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
