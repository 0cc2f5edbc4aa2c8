#pragma once
// Opens a file held in memory and reads all of it the way a checker would: the partitions found
// forward, backward, through the footer pointer and the RIP, every partition's metadata, index
// segments and body packets, the final metadata with its validation queries, the edit units of
// every package through an essence reader, and the whole stream once more through the
// sequential reader. Used by the sweep test and by the whole-file
// fuzz target. Only exceptions of the library's family are caught; anything else escapes.

#include <cstddef>
#include <string>

namespace VellumTest
{
struct ReadLimits
{
    // Caps that keep a damaged but valid variant from taking long; none of them is reached by
    // a sound small file.
    unsigned maximumPartitions = 4096;
    unsigned maximumPacketsPerPartition = 1u << 16;
    unsigned maximumSequentialPackets = 1u << 17;
    unsigned maximumEditUnits = 1u << 16;
    // Whether the routes to the last partition that fall back to a scan of the whole file from
    // its end are all taken even when the first of them found no footer. Each such scan reads
    // the whole file again.
    bool repeatTailScans = true;
    // Whether the metadata of every partition met is loaded, or only the final metadata.
    bool metadataOfEveryPartition = true;
    // Whether the validation queries run over the final metadata.
    bool validateMetadata = true;
    // The two readings: random access through Reader2, and start to end through the sequential
    // reader.
    bool randomAccess = true;
    bool sequential = true;
};

struct ReadReport
{
    unsigned partitions = 0;
    unsigned metadataSets = 0;
    unsigned indexSegments = 0;
    unsigned bodyPackets = 0;
    unsigned sequentialPackets = 0;
    unsigned editUnits = 0;
    // Exceptions of the family that ended one of the steps.
    unsigned exceptions = 0;
    // The text of the first of them, for the report of a test.
    std::string firstException;
    // A walk that came back to a partition it had met, or went on past every cap: a reader that
    // would have run for ever.
    bool runaway = false;
};

ReadReport readEverything(unsigned char const * data, std::size_t size, ReadLimits const & limits = ReadLimits());
} // namespace VellumTest
