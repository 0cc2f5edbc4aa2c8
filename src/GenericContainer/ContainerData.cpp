// The committed layout of a container.

#include "GenericContainer/ContainerData.h"

#include "Metadata/PartitionMetadata.h"

namespace Vellum
{
namespace GenericContainer
{
namespace
{
unsigned char const NO_KEY[KLV::Key::SIZE] = {0};
}

AnalyzerEntry::AnalyzerEntry()
    : key(NO_KEY), processedDuration(0, 1), entryByteCount(0), temporalOffset(0, 1), usesPosTable(false),
      isSystemItem(false), clipByteCount(0), padToItemEnd(false), hasFiller(false), itemByteCount(0)
{
}

ContainerData::ContainerData(Templates::SharedPtr<Metadata::PartitionMetadata> metadata,
                             Templates::Rational<int> const & rate, unsigned int kag,
                             Types::UniversalLabel const & label, Metadata::Structural::SourcePackage * package)
    : partitionMetadata(metadata), sourcePackage(package), packageRate(rate), kagSize(kag), primaryAnalyzer(nullptr),
      extendedIndex(false), essenceContainer(label), indexFillPackets(false), multiplexAllEssence(false),
      editUnitPaddedSize(0), systemItemPaddedSize(0), compoundItemPaddedSize(0), pictureItemPaddedSize(0),
      soundItemPaddedSize(0), dataItemPaddedSize(0)
{
}

void ContainerData::defaultStartTimecode(bool force, unsigned char hours, unsigned char minutes,
                                         unsigned char seconds, unsigned char frames)
{
    timecodeInfo.defaultTimecodePresent = 1;
    timecodeInfo.hours = hours;
    timecodeInfo.minutes = minutes;
    timecodeInfo.seconds = seconds;
    timecodeInfo.frames = frames;
    timecodeInfo.forceDefaultTimecode = force ? 1 : 0;
}

void ContainerData::suppressTimecodeDiscontinuities(bool suppress)
{
    timecodeInfo.suppressTimecodeDiscontinuities = suppress ? 1 : 0;
}

void ContainerData::generateTimecodeTrack(bool generate)
{
    timecodeInfo.generateTimecodeTrack = generate ? 1 : 0;
}

bool ContainerData::allEntriesConstant() const
{
    for (AnalyzerEntries::const_iterator it = entries.begin(); it != entries.end(); ++it)
        if (it->entryByteCount == 0)
            return false;
    return true;
}
} // namespace GenericContainer
} // namespace Vellum
