// The constructors, visits and accessors of WAVEAudioPhysicalDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/WAVEAudioPhysicalDescriptor.h"

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
WAVEAudioPhysicalDescriptor::WAVEAudioPhysicalDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : PhysicalDescriptor(StructuralMetadataKeys::waveAudioPhysicalDescriptor(), metaMetadataSet, owner)
{
}

WAVEAudioPhysicalDescriptor::~WAVEAudioPhysicalDescriptor() {}

void WAVEAudioPhysicalDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void WAVEAudioPhysicalDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void WAVEAudioPhysicalDescriptor::basicData(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::basicData(), value); }
Types::UTF16String const * WAVEAudioPhysicalDescriptor::basicData() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::basicData()); }

void WAVEAudioPhysicalDescriptor::codingHistory(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::codingHistory(), value); }
Types::UTF16String const * WAVEAudioPhysicalDescriptor::codingHistory() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::codingHistory()); }

void WAVEAudioPhysicalDescriptor::cueSheet(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::cueSheet(), value); }
Types::UTF16String const * WAVEAudioPhysicalDescriptor::cueSheet() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::cueSheet()); }

void WAVEAudioPhysicalDescriptor::endModulation(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::endModulation(), value); }
Types::UTF16String const * WAVEAudioPhysicalDescriptor::endModulation() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::endModulation()); }

void WAVEAudioPhysicalDescriptor::fileSecurityReport(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::fileSecurityReport(), value); }
Types::UInt32 const * WAVEAudioPhysicalDescriptor::fileSecurityReport() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::fileSecurityReport()); }

void WAVEAudioPhysicalDescriptor::fileSecurityWave(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::fileSecurityWave(), value); }
Types::UInt32 const * WAVEAudioPhysicalDescriptor::fileSecurityWave() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::fileSecurityWave()); }

void WAVEAudioPhysicalDescriptor::operatorComment(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::operatorComment(), value); }
Types::UTF16String const * WAVEAudioPhysicalDescriptor::operatorComment() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::operatorComment()); }

void WAVEAudioPhysicalDescriptor::qualityEvent(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::qualityEvent(), value); }
Types::UTF16String const * WAVEAudioPhysicalDescriptor::qualityEvent() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::qualityEvent()); }

void WAVEAudioPhysicalDescriptor::qualityParameter(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::qualityParameter(), value); }
Types::UTF16String const * WAVEAudioPhysicalDescriptor::qualityParameter() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::qualityParameter()); }

void WAVEAudioPhysicalDescriptor::startModulation(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::startModulation(), value); }
Types::UTF16String const * WAVEAudioPhysicalDescriptor::startModulation() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::startModulation()); }

unsigned int WAVEAudioPhysicalDescriptor::unknownBWFChunksCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::unknownBWFChunks()); }
UnknownChunkSet * WAVEAudioPhysicalDescriptor::unknownBWFChunk(unsigned int index) const { return Accessors::targetAt<UnknownChunkSet>(*this, StructuralMetadataULs::unknownBWFChunks(), index); }
void WAVEAudioPhysicalDescriptor::appendUnknownBWFChunk(UnknownChunkSet * target) { Accessors::appendTarget(*this, StructuralMetadataULs::unknownBWFChunks(), target); }
void WAVEAudioPhysicalDescriptor::addUnknownBWFChunk(unsigned int index, UnknownChunkSet * target) { Accessors::insertTarget(*this, StructuralMetadataULs::unknownBWFChunks(), index, target); }
void WAVEAudioPhysicalDescriptor::removeUnknownBWFChunk(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::unknownBWFChunks(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
