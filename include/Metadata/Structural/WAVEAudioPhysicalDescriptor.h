#pragma once
// Describes the Wave file that audio essence was imported from.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/PhysicalDescriptor.h"
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
class UnknownChunkSet;

// Described by the set BWFImportDescriptor.
class WAVEAudioPhysicalDescriptor : public PhysicalDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::waveAudioPhysicalDescriptor(); `metaMetadataSet` must describe that key.
    WAVEAudioPhysicalDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~WAVEAudioPhysicalDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::basicData(): null when empty.
    void basicData(Types::UTF16String const * value);
    Types::UTF16String const * basicData() const;
    // StructuralMetadataULs::codingHistory(): null when empty.
    void codingHistory(Types::UTF16String const * value);
    Types::UTF16String const * codingHistory() const;
    // StructuralMetadataULs::cueSheet(): null when empty.
    void cueSheet(Types::UTF16String const * value);
    Types::UTF16String const * cueSheet() const;
    // StructuralMetadataULs::endModulation(): null when empty.
    void endModulation(Types::UTF16String const * value);
    Types::UTF16String const * endModulation() const;
    // StructuralMetadataULs::fileSecurityReport(): null when empty.
    void fileSecurityReport(Types::UInt32 const * value);
    Types::UInt32 const * fileSecurityReport() const;
    // StructuralMetadataULs::fileSecurityWave(): null when empty.
    void fileSecurityWave(Types::UInt32 const * value);
    Types::UInt32 const * fileSecurityWave() const;
    // StructuralMetadataULs::operatorComment(): null when empty.
    void operatorComment(Types::UTF16String const * value);
    Types::UTF16String const * operatorComment() const;
    // StructuralMetadataULs::qualityEvent(): null when empty.
    void qualityEvent(Types::UTF16String const * value);
    Types::UTF16String const * qualityEvent() const;
    // StructuralMetadataULs::qualityParameter(): null when empty.
    void qualityParameter(Types::UTF16String const * value);
    Types::UTF16String const * qualityParameter() const;
    // StructuralMetadataULs::startModulation(): null when empty.
    void startModulation(Types::UTF16String const * value);
    Types::UTF16String const * startModulation() const;
    // StructuralMetadataULs::unknownBWFChunks(): the members in order.
    unsigned int unknownBWFChunksCount() const;
    UnknownChunkSet * unknownBWFChunk(unsigned int index) const;
    void appendUnknownBWFChunk(UnknownChunkSet * target);
    void addUnknownBWFChunk(unsigned int index, UnknownChunkSet * target);
    void removeUnknownBWFChunk(unsigned int index);

private:
    WAVEAudioPhysicalDescriptor(WAVEAudioPhysicalDescriptor const &) = delete;
    WAVEAudioPhysicalDescriptor & operator=(WAVEAudioPhysicalDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
