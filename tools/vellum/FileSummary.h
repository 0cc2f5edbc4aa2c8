#pragma once
// What `vellum info` knows of a file, gathered from two independent sources: a walk over every KLV
// packet (partitions, RIP, index segments and the essence elements actually present) and the
// header metadata that the library's reader chooses as final. The disagreements between them are
// collected as warnings.

#include <cstdint>
#include <string>
#include <vector>

namespace VellumTool
{
struct PartitionFound
{
    std::uint64_t offset = 0; // of the pack's key, absolute in the file
    unsigned kind = 0;        // 2 header, 3 body, 4 footer
    unsigned status = 0;      // 1 open incomplete ... 4 closed complete
    std::uint64_t thisPartition = 0, previousPartition = 0, footerPartition = 0;
    std::uint64_t headerByteCount = 0, indexByteCount = 0;
    unsigned indexSID = 0, bodySID = 0;
    std::uint64_t bodyOffset = 0;
    unsigned kagSize = 0;
    std::string operationalPattern; // dotted label
    std::vector<std::string> essenceContainers;
    // Measured in the walk: header metadata bytes from the Primer on, index bytes from the first
    // segment on, both with their trailing fill; essence elements and their value bytes.
    std::uint64_t headerBytesFound = 0, indexBytesFound = 0;
    std::uint64_t essenceElements = 0, essenceBytes = 0;
};

struct SegmentFound
{
    std::uint64_t offset = 0;
    unsigned indexSID = 0, bodySID = 0;
    int editRateNumerator = 0, editRateDenominator = 1;
    std::int64_t startPosition = 0, duration = 0;
    std::uint32_t editUnitByteCount = 0; // 0: the segment has index entries instead
    unsigned indexEntries = 0, deltaEntries = 0;
};

// The essence elements of one track number in one essence container, as found in the body.
struct StreamFound
{
    unsigned bodySID = 0;
    std::uint32_t trackNumber = 0;
    std::uint64_t elements = 0, bytes = 0;
    std::uint64_t firstOffset = 0;
};

struct DescriptorInfo
{
    std::string className;
    unsigned linkedTrackID = 0;
    bool hasLinkedTrackID = false;
    std::string essenceContainer, essenceContainerName;
    std::string sampleRate;          // "25/1", or ""
    std::int64_t containerDuration = -1;
    bool hasContainerDuration = false;
    unsigned storedWidth = 0, storedHeight = 0; // pictures; 0 when absent
    std::string pictureCoding, pictureCodingName;
    std::string audioSamplingRate; // sound; "" when absent
    unsigned channels = 0, quantizationBits = 0, blockAlign = 0;
};

struct TrackInfo
{
    unsigned id = 0;
    std::uint32_t number = 0;
    std::string name;
    std::string kind; // picture, sound, data, timecode, descriptive metadata, other
    std::string dataDefinition;
    int editRateNumerator = 0, editRateDenominator = 0;
    std::int64_t origin = 0;
    bool hasDuration = false;
    std::int64_t duration = 0; // edit units, from the sequence
    std::string durationTimecode;
    // In the body (source package tracks with a track number): -1 when not known.
    std::int64_t elementsFound = -1, editUnitsFound = -1, bytesFound = -1;
    bool clipWrapped = false;
};

struct PackageInfo
{
    std::string kind; // "material", "source"
    std::string uid;
    std::string name;
    std::string startTimecode;
    unsigned bodySID = 0, indexSID = 0;
    bool hasEssenceContainerData = false;
    std::vector<TrackInfo> tracks;
    std::vector<DescriptorInfo> descriptors;
};

struct IdentificationInfo
{
    std::string company, product, productVersion, versionString, platform, date;
};

struct RipEntry
{
    unsigned bodySID = 0;
    std::uint64_t offset = 0; // relative to the end of the run-in
};

struct FileSummary
{
    std::string path;
    std::uint64_t fileSize = 0;
    std::uint64_t runIn = 0;
    std::uint64_t packets = 0;
    std::vector<PartitionFound> partitions;
    bool hasRip = false;
    std::vector<RipEntry> rip;
    std::vector<SegmentFound> segments;
    std::vector<StreamFound> streams;
    std::uint64_t systemItems = 0;
    std::uint64_t unknownPackets = 0;
    // Header metadata: the partition it came from, -1 when none was read.
    std::int64_t metadataPartition = -1;
    std::string operationalPattern, operationalPatternName;
    std::vector<std::string> essenceContainers, essenceContainerNames;
    std::vector<IdentificationInfo> identifications;
    std::vector<PackageInfo> packages;
    std::vector<std::string> warnings;
};

// Reads the file. Throws a library exception only when the file is not MXF at all (no partition
// pack at its start); every other fault becomes a warning.
FileSummary summarize(std::string const & path);
} // namespace VellumTool
