#pragma once
// A RIFF chunk of a Wave file that the descriptor keeps as it is.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"
#include "Types/DataStream.h"
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
// Described by the set RIFFChunk.
class UnknownChunkSet : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::unknownChunkSet(); `metaMetadataSet` must describe that key.
    UnknownChunkSet(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~UnknownChunkSet() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::chunckData(): null when empty.
    void chunckData(Types::DataStream const * value);
    Types::DataStream const * chunckData() const;
    // StructuralMetadataULs::chunkID(): null when empty.
    void chunkID(Types::UInt32 const * value);
    Types::UInt32 const * chunkID() const;
    // StructuralMetadataULs::chunkLength(): null when empty.
    void chunkLength(Types::UInt32 const * value);
    Types::UInt32 const * chunkLength() const;

private:
    UnknownChunkSet(UnknownChunkSet const &) = delete;
    UnknownChunkSet & operator=(UnknownChunkSet const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
