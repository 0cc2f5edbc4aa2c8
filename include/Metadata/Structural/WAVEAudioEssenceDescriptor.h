#pragma once
// Describes Wave PCM audio essence with its Broadcast Wave fields.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericSoundEssenceDescriptor.h"
#include "Types/DataStream.h"
#include "Types/Integers.h"
#include "Types/Timestamp.h"
#include "Types/UniversalLabel.h"

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
// Described by the set WAVEPCMDescriptor.
class WAVEAudioEssenceDescriptor : public GenericSoundEssenceDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::waveAudioEssenceDescriptor(); `metaMetadataSet` must describe that key.
    WAVEAudioEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~WAVEAudioEssenceDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::avgBps(): null when empty.
    void avgBps(Types::UInt32 const * value);
    Types::UInt32 const * avgBps() const;
    // StructuralMetadataULs::blockAlign(): null when empty.
    void blockAlign(Types::UInt16 const * value);
    Types::UInt16 const * blockAlign() const;
    // StructuralMetadataULs::channelAssignment(): null when empty.
    void channelAssignment(Types::UniversalLabel const * value);
    Types::UniversalLabel const * channelAssignment() const;
    // StructuralMetadataULs::peakChannels(): null when empty.
    void peakChannels(Types::UInt32 const * value);
    Types::UInt32 const * peakChannels() const;
    // StructuralMetadataULs::peakEnvelopeBlockSize(): null when empty.
    void peakEnvelopeBlockSize(Types::UInt32 const * value);
    Types::UInt32 const * peakEnvelopeBlockSize() const;
    // StructuralMetadataULs::peakEnvelopeData(): null when empty.
    void peakEnvelopeData(Types::DataStream const * value);
    Types::DataStream const * peakEnvelopeData() const;
    // StructuralMetadataULs::peakEnvelopeFormat(): null when empty.
    void peakEnvelopeFormat(Types::UInt32 const * value);
    Types::UInt32 const * peakEnvelopeFormat() const;
    // StructuralMetadataULs::peakEnvelopeTimestamp(): null when empty.
    void peakEnvelopeTimestamp(Types::Timestamp const * value);
    Types::Timestamp const * peakEnvelopeTimestamp() const;
    // StructuralMetadataULs::peakEnvelopeVersion(): null when empty.
    void peakEnvelopeVersion(Types::UInt32 const * value);
    Types::UInt32 const * peakEnvelopeVersion() const;
    // StructuralMetadataULs::peakFrames(): null when empty.
    void peakFrames(Types::UInt32 const * value);
    Types::UInt32 const * peakFrames() const;
    // StructuralMetadataULs::peakOfPeaksPosition(): null when empty.
    void peakOfPeaksPosition(Types::Position const * value);
    Types::Position const * peakOfPeaksPosition() const;
    // StructuralMetadataULs::pointsPerPeakValue(): null when empty.
    void pointsPerPeakValue(Types::UInt32 const * value);
    Types::UInt32 const * pointsPerPeakValue() const;
    // StructuralMetadataULs::sequenceOffset(): null when empty.
    void sequenceOffset(Types::UInt8 const * value);
    Types::UInt8 const * sequenceOffset() const;

protected:
    WAVEAudioEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    WAVEAudioEssenceDescriptor(WAVEAudioEssenceDescriptor const &) = delete;
    WAVEAudioEssenceDescriptor & operator=(WAVEAudioEssenceDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
