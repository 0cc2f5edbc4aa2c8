#pragma once
// What Material and Source Packages share: package UID, name, dates and tracks.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"
#include "Types/Integers.h"
#include "Types/Timestamp.h"
#include "Types/UMID.h"
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
class Track;

// Described by the set Package.
class GenericPackage : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    ~GenericPackage() override;

    // StructuralMetadataULs::packageCreationDate(): null when empty.
    void packageCreationDate(Types::Timestamp const * value);
    Types::Timestamp const * packageCreationDate() const;
    // StructuralMetadataULs::packageModifiedDate(): null when empty.
    void packageModifiedDate(Types::Timestamp const * value);
    Types::Timestamp const * packageModifiedDate() const;
    // StructuralMetadataULs::packageName(): null when empty.
    void packageName(Types::UTF16String const * value);
    Types::UTF16String const * packageName() const;
    // StructuralMetadataULs::packageUID(): null when empty.
    void packageUID(Types::UMID32 const * value);
    Types::UMID32 const * packageUID() const;
    // StructuralMetadataULs::tracks(): the members in order.
    unsigned int tracksCount() const;
    Track * track(unsigned int index) const;
    void appendTrack(Track * target);
    void addTrack(unsigned int index, Track * target);
    void removeTrack(unsigned int index);

    // The track whose trackID is `trackID`, or null.
    Track * track(Types::UInt32 const & trackID) const;

protected:
    GenericPackage(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    GenericPackage(GenericPackage const &) = delete;
    GenericPackage & operator=(GenericPackage const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
