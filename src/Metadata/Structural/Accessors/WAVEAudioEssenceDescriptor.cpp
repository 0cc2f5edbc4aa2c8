// The constructors, visits and accessors of WAVEAudioEssenceDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/WAVEAudioEssenceDescriptor.h"

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
WAVEAudioEssenceDescriptor::WAVEAudioEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericSoundEssenceDescriptor(StructuralMetadataKeys::waveAudioEssenceDescriptor(), metaMetadataSet, owner)
{
}

WAVEAudioEssenceDescriptor::WAVEAudioEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericSoundEssenceDescriptor(key, metaMetadataSet, owner)
{
}

WAVEAudioEssenceDescriptor::~WAVEAudioEssenceDescriptor() {}

void WAVEAudioEssenceDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void WAVEAudioEssenceDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void WAVEAudioEssenceDescriptor::avgBps(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::avgBps(), value); }
Types::UInt32 const * WAVEAudioEssenceDescriptor::avgBps() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::avgBps()); }

void WAVEAudioEssenceDescriptor::blockAlign(Types::UInt16 const * value) { Accessors::setValue<Types::UInt16>(*this, StructuralMetadataULs::blockAlign(), value); }
Types::UInt16 const * WAVEAudioEssenceDescriptor::blockAlign() const { return Accessors::value<Types::UInt16>(*this, StructuralMetadataULs::blockAlign()); }

void WAVEAudioEssenceDescriptor::channelAssignment(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::channelAssignment(), value); }
Types::UniversalLabel const * WAVEAudioEssenceDescriptor::channelAssignment() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::channelAssignment()); }

void WAVEAudioEssenceDescriptor::peakChannels(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::peakChannels(), value); }
Types::UInt32 const * WAVEAudioEssenceDescriptor::peakChannels() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::peakChannels()); }

void WAVEAudioEssenceDescriptor::peakEnvelopeBlockSize(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::peakEnvelopeBlockSize(), value); }
Types::UInt32 const * WAVEAudioEssenceDescriptor::peakEnvelopeBlockSize() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::peakEnvelopeBlockSize()); }

void WAVEAudioEssenceDescriptor::peakEnvelopeData(Types::DataStream const * value) { Accessors::setValue<Types::DataStream>(*this, StructuralMetadataULs::peakEnvelopeData(), value); }
Types::DataStream const * WAVEAudioEssenceDescriptor::peakEnvelopeData() const { return Accessors::value<Types::DataStream>(*this, StructuralMetadataULs::peakEnvelopeData()); }

void WAVEAudioEssenceDescriptor::peakEnvelopeFormat(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::peakEnvelopeFormat(), value); }
Types::UInt32 const * WAVEAudioEssenceDescriptor::peakEnvelopeFormat() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::peakEnvelopeFormat()); }

void WAVEAudioEssenceDescriptor::peakEnvelopeTimestamp(Types::Timestamp const * value) { Accessors::setValue<Types::Timestamp>(*this, StructuralMetadataULs::peakEnvelopeTimestamp(), value); }
Types::Timestamp const * WAVEAudioEssenceDescriptor::peakEnvelopeTimestamp() const { return Accessors::value<Types::Timestamp>(*this, StructuralMetadataULs::peakEnvelopeTimestamp()); }

void WAVEAudioEssenceDescriptor::peakEnvelopeVersion(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::peakEnvelopeVersion(), value); }
Types::UInt32 const * WAVEAudioEssenceDescriptor::peakEnvelopeVersion() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::peakEnvelopeVersion()); }

void WAVEAudioEssenceDescriptor::peakFrames(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::peakFrames(), value); }
Types::UInt32 const * WAVEAudioEssenceDescriptor::peakFrames() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::peakFrames()); }

void WAVEAudioEssenceDescriptor::peakOfPeaksPosition(Types::Position const * value) { Accessors::setValue<Types::Position>(*this, StructuralMetadataULs::peakOfPeaksPosition(), value); }
Types::Position const * WAVEAudioEssenceDescriptor::peakOfPeaksPosition() const { return Accessors::value<Types::Position>(*this, StructuralMetadataULs::peakOfPeaksPosition()); }

void WAVEAudioEssenceDescriptor::pointsPerPeakValue(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::pointsPerPeakValue(), value); }
Types::UInt32 const * WAVEAudioEssenceDescriptor::pointsPerPeakValue() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::pointsPerPeakValue()); }

void WAVEAudioEssenceDescriptor::sequenceOffset(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::sequenceOffset(), value); }
Types::UInt8 const * WAVEAudioEssenceDescriptor::sequenceOffset() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::sequenceOffset()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
