#pragma once
// The clip-wrapping builder of a Generic Container: each essence stream becomes one KLV packet,
// one stream behind the other. The essence comes from the analyzers' edit units, or, when a
// buffer is given, from whatever the buffer holds (only the first stream is written then).

#include "DataIO/BufferSliceSource.h"
#include "DataIO/SliceSource.h"
#include "GenericContainer/EssenceAnalyzer.h"
#include "GenericContainer/Source.h"
#include "Metadata/PartitionMetadata.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
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
namespace ClipWrapper
{
class Wrapper
{
public:
    VELLUM_CLASS_ALLOCATION

    enum
    {
        MAXIMUM_ITEM_COUNT = 127
    };

    // A Source Package is created in `metadata` at commit. `clipSize` is the value length of the
    // clip when known, else 0.
    Wrapper(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, Types::UniversalLabel const & essenceContainer,
            Templates::Rational<int> const & rate, Templates::SharedPtr<DataIO::BufferSliceSource> buffer,
            uint64 clipSize);
    Wrapper(Metadata::Structural::SourcePackage * package, Types::UniversalLabel const & essenceContainer,
            Templates::Rational<int> const & rate, Templates::SharedPtr<DataIO::BufferSliceSource> buffer,
            uint64 clipSize);
    ~Wrapper();

    void addAnalyzer(Templates::SharedPtr<EssenceAnalyzer> analyzer);
    void addAnalyzer(Templates::SharedPtr<EssenceAnalyzer> analyzer, unsigned char elementNumber);
    Templates::auto_ptr<Source> commit();

    // A source that is read in chunks to fill the buffer.
    void demultiplexerSource(Templates::SharedPtr<DataIO::SliceSource> source, unsigned int chunkSize);
    void kagSize(unsigned int size);
    void defaultStartTimecode(bool force, unsigned char hours, unsigned char minutes, unsigned char seconds,
                              unsigned char frames);
    void suppressTimecodeDiscontinuities(bool value);
    void generateTimecodeTrack(bool value);
    bool nextBaseTrackID(unsigned int id);
    unsigned int nextBaseTrackID() const;

private:
    Wrapper(Wrapper const &) = delete;
    Wrapper & operator=(Wrapper const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace ClipWrapper
} // namespace GenericContainer
} // namespace Vellum
