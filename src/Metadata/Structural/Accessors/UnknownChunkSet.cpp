// The constructors, visits and accessors of UnknownChunkSet.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/UnknownChunkSet.h"

#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Metadata/MetadataSetVisitor.h"
#include "Metadata/Structural/Accessors.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
UnknownChunkSet::UnknownChunkSet(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(StructuralMetadataKeys::unknownChunkSet(), metaMetadataSet, owner)
{
}

UnknownChunkSet::~UnknownChunkSet() {}

void UnknownChunkSet::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void UnknownChunkSet::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void UnknownChunkSet::chunckData(Types::DataStream const * value) { Accessors::setValue<Types::DataStream>(*this, StructuralMetadataULs::chunckData(), value); }
Types::DataStream const * UnknownChunkSet::chunckData() const { return Accessors::value<Types::DataStream>(*this, StructuralMetadataULs::chunckData()); }

void UnknownChunkSet::chunkID(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::chunkID(), value); }
Types::UInt32 const * UnknownChunkSet::chunkID() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::chunkID()); }

void UnknownChunkSet::chunkLength(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::chunkLength(), value); }
Types::UInt32 const * UnknownChunkSet::chunkLength() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::chunkLength()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
