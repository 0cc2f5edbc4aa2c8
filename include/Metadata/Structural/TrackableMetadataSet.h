#pragma once
// A set that carries the Generation UID of the Identification that last changed it.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/MetadataSet.h"
#include "Types/UUID.h"

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
class Identification;

// Described by the set InterchangeObject.
class TrackableMetadataSet : public MetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    ~TrackableMetadataSet() override;

    // StructuralMetadataULs::generationUID(): null when empty.
    void generationUID(Types::UUID const * value);
    Types::UUID const * generationUID() const;

    // The Generation UID, or null.
    virtual Types::UUID const * generation() const;
    // Sets the Generation UID to the identification's thisGenerationUID; null clears it.
    virtual void generation(Identification * identification);

protected:
    TrackableMetadataSet(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    TrackableMetadataSet(TrackableMetadataSet const &) = delete;
    TrackableMetadataSet & operator=(TrackableMetadataSet const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
