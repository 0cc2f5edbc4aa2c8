#pragma once
// Wraps elementary streams into MXF files from end to end: the streams' analyzers go into a frame
// multiplexer or a clip wrapper, a creator writes the partitions (a body partition every few
// seconds, index segments with each and a complete index in the footer, the Random Index Pack),
// an operational pattern builder makes the Material Package, and the second pass closes every
// partition with the final header metadata. OP1a writes one file; OP-Atom one file per stream,
// aggregated so that all share one Material Package identity.

#include <functional>

#include "GenericContainer/EssenceAnalyzer.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"
#include "Templates/SharedPtr.h"
#include "Utils/SMPTETimeCode.h"

namespace Vellum
{
namespace MetaMetadata
{
class Dictionary;
}

namespace OPBuilders
{
class FileWrapper
{
public:
    VELLUM_CLASS_ALLOCATION

    struct Options
    {
        Options();
        // One file per stream instead of one file for all.
        bool opAtom;
        // Each stream as one KLV packet instead of one element per edit unit; OP-Atom files always are.
        bool clipWrap;
        // Seconds of essence in a body partition; 0 puts all essence in one.
        Templates::Rational<int64> partitionSeconds;
        // KLV alignment grid of the essence; 1 for none.
        unsigned int kagSize;
        // The start of the time code track; undefined is 00:00:00:00.
        Utils::TimeCode start;
        // Room kept behind the header metadata for its final version.
        uint64 metadataSpareSpace;
        // The name of the Material Package; none when empty.
        Templates::wstring packageName;
    };

    // Told the edit units written so far (of the master stream of the file being written).
    typedef std::function<void(uint64 editUnits)> Progress;

    FileWrapper(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, Options const & options);
    ~FileWrapper();

    // Streams are wrapped in the order they are added; the first picture stream sets the rate,
    // else the first stream.
    void addStream(Templates::SharedPtr<GenericContainer::EssenceAnalyzer> analyzer, Templates::wstring const & name);
    // Writes OP1a to the file `target`, or OP-Atom into the folder `target` (which must exist) as
    // one file per stream named after it. Gives the paths written.
    Templates::vector<Templates::wstring> write(Templates::wstring const & target, Progress const & progress);

    struct Impl;

private:
    FileWrapper(FileWrapper const &) = delete;
    FileWrapper & operator=(FileWrapper const &) = delete;

    Templates::auto_ptr<Impl> impl_;
};
} // namespace OPBuilders
} // namespace Vellum
