#pragma once
// The committed layout of a Generic Container: one AnalyzerEntry for each element in content
// package order, and everything else a worker needs. A multiplexer fills it and hands a copy to
// its worker.

#include "GenericContainer/EssenceAnalyzer.h"
#include "GenericContainer/TimecodeInfo.h"
#include "KLV/Key.h"
#include "Metadata/PartitionMetadata.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"
#include "Templates/SharedPtr.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
class SourcePackage;
}
}

namespace GenericContainer
{
struct AnalyzerEntry
{
    VELLUM_CLASS_ALLOCATION

    AnalyzerEntry();

    Templates::SharedPtr<EssenceAnalyzer> analyzer;
    // The element key after proposeKey; all zeros until set.
    KLV::Key key;
    // Seconds already taken from the analyzer.
    Templates::Rational<int64> processedDuration;
    // The constant bytes of this element in each content package, key, length and filler
    // included; 0 for a variable element.
    uint32 entryByteCount;
    // Seconds by which the analyzer's first unit lies behind the start of the container.
    Templates::Rational<int64> temporalOffset;
    // The element needs a position table entry in the index.
    bool usesPosTable;
    bool isSystemItem;
    // The bytes of a finished clip; 0 in frame wrapping.
    uint64 clipByteCount;
    // The worker pads up to the item's fixed size behind this element.
    bool padToItemEnd;
    // A filler follows this element.
    bool hasFiller;
    // The item's fixed size when padding by item; 0 when none.
    int32 itemByteCount;
};

typedef Templates::list<AnalyzerEntry> AnalyzerEntries;

struct ContainerData
{
    VELLUM_CLASS_ALLOCATION

    ContainerData(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, Templates::Rational<int> const & rate,
                  unsigned int kagSize, Types::UniversalLabel const & essenceContainer,
                  Metadata::Structural::SourcePackage * package);

    void defaultStartTimecode(bool force, unsigned char hours, unsigned char minutes, unsigned char seconds,
                              unsigned char frames);
    void suppressTimecodeDiscontinuities(bool suppress);
    void generateTimecodeTrack(bool generate);

    // Every entry has a fixed size.
    bool allEntriesConstant() const;

    // The header metadata to extend; empty when the package was given directly.
    Templates::SharedPtr<Metadata::PartitionMetadata> partitionMetadata;
    // The file package; not owned.
    Metadata::Structural::SourcePackage * sourcePackage;
    Templates::Rational<int> packageRate;
    unsigned int kagSize;
    // The first analyzer added, or the system analyzer once there is one: its units drive the
    // timecode track.
    EssenceAnalyzer * primaryAnalyzer;
    Templates::SharedPtr<EssenceAnalyzer> systemAnalyzer;
    // In content package order.
    AnalyzerEntries entries;
    // The index needs position tables.
    bool extendedIndex;
    Types::UniversalLabel essenceContainer;
    bool indexFillPackets;
    bool multiplexAllEssence;
    // Padded sizes: -1 for none; an edit unit size of 0 or less is none as well.
    int32 editUnitPaddedSize;
    int32 systemItemPaddedSize;
    int32 compoundItemPaddedSize;
    int32 pictureItemPaddedSize;
    int32 soundItemPaddedSize;
    int32 dataItemPaddedSize;
    TimecodeInfo timecodeInfo;
};
} // namespace GenericContainer
} // namespace Vellum
