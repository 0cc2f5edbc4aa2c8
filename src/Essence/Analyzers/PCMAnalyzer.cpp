#include "Essence/Analyzers/PCMAnalyzer.h"

#include <cstring>

#include "Exceptions/Exceptions.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/WAVEAudioEssenceDescriptor.h"
#include "Types/Integers.h"
#include "Types/Rational.h"

namespace Vellum
{
namespace Essence
{
namespace Analyzers
{
using Templates::Rational;

namespace
{
uint32 le16(unsigned char const * p)
{
    return uint32(p[0]) | (uint32(p[1]) << 8);
}

uint32 le32(unsigned char const * p)
{
    return le16(p) | (le16(p + 2) << 16);
}

unsigned char const extensiblePCM[16] = {0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00,
                                         0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

PCMFormat readFormatChunk(StreamBuffer & buffer, uint64 position, uint32 size)
{
    THROW_UNLESS(InvalidFormat, size >= 16, "The Wave format chunk is too short");
    unsigned char b[40];
    uint32 n = size < sizeof b ? size : uint32(sizeof b);
    THROW_UNLESS(InvalidFormat, buffer.copy(position, n, b), "The Wave file ends inside its format chunk");
    uint32 tag = le16(b);
    if (tag == 0xFFFE)
    {
        THROW_UNLESS(InvalidFormat, size >= 40, "The Wave extensible format chunk is too short");
        tag = std::memcmp(b + 24, extensiblePCM, sizeof extensiblePCM) == 0 ? 1 : 0;
    }
    THROW_UNLESS(InvalidFormat, tag == 1, "The Wave file holds no PCM sound");
    PCMFormat format(le16(b + 2), le16(b + 14), le32(b + 4));
    THROW_UNLESS(InvalidFormat,
                 format.channels != 0 && format.bitsPerSample != 0 && format.bitsPerSample <= 32 &&
                     format.samplingRate != 0 && le16(b + 12) == format.blockAlign(),
                 "The Wave format chunk is invalid");
    return format;
}
} // namespace

WaveLayout readWaveHeader(StreamBuffer & buffer)
{
    unsigned char riff[12];
    THROW_UNLESS(InvalidFormat,
                 buffer.copy(0, sizeof riff, riff) && std::memcmp(riff, "RIFF", 4) == 0 &&
                     std::memcmp(riff + 8, "WAVE", 4) == 0,
                 "The stream is no RIFF WAVE file");
    WaveLayout layout;
    bool haveFormat = false;
    for (uint64 position = 12;;)
    {
        unsigned char chunk[8];
        THROW_UNLESS(InvalidFormat, buffer.skipTo(position) && buffer.copy(position, sizeof chunk, chunk),
                     "The Wave file ends before its data chunk");
        uint32 size = le32(chunk + 4);
        if (std::memcmp(chunk, "fmt ", 4) == 0)
        {
            layout.format = readFormatChunk(buffer, position + 8, size);
            haveFormat = true;
        }
        else if (std::memcmp(chunk, "data", 4) == 0)
        {
            THROW_UNLESS(InvalidFormat, haveFormat, "The Wave data chunk comes before the format chunk");
            layout.dataPosition = position + 8;
            layout.dataSize = size;
            return layout;
        }
        // Chunks are padded to an even size.
        position += 8 + uint64(size) + (size & 1);
    }
}

uint32 samplesOfUnit(uint64 index, uint32 samplingRate, Rational<int> const & editRate)
{
    uint64 const numerator = uint64(editRate.numerator());
    uint64 const perUnit = uint64(samplingRate) * uint64(editRate.denominator());
    uint64 const before = (2 * index * perUnit + numerator) / (2 * numerator);
    uint64 const after = (2 * (index + 1) * perUnit + numerator) / (2 * numerator);
    return uint32(after - before);
}

struct PCMAnalyzer::Impl
{
    VELLUM_CLASS_ALLOCATION
    template <class Source>
    Impl(Templates::SharedPtr<Source> source, bool w)
        : buffer(source), wave(w), preloaded(false), position(0), dataEnd(~uint64(0))
    {
    }

    StreamBuffer buffer;
    bool wave;
    bool preloaded;
    PCMFormat format;
    uint64 position;
    // Behind the last byte that the data chunk announces; all ones for a stream read to its end.
    uint64 dataEnd;
};

PCMAnalyzer::PCMAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, Rational<int> const & editRate)
    : impl_(new Impl(source, true))
{
    editRate_ = editRate;
}

PCMAnalyzer::PCMAnalyzer(Templates::SharedPtr<DataIO::DataSource> source, Rational<int> const & editRate)
    : impl_(new Impl(source, true))
{
    editRate_ = editRate;
}

PCMAnalyzer::PCMAnalyzer(Templates::SharedPtr<DataIO::DataSource> source, PCMFormat const & format,
                         Rational<int> const & editRate)
    : impl_(new Impl(source, false))
{
    THROW_UNLESS(InvalidValue, format.channels != 0 && format.bitsPerSample != 0 && format.bitsPerSample <= 32 &&
                                   format.samplingRate != 0,
                 "The PCM layout is invalid");
    impl_->format = format;
    editRate_ = editRate;
}

PCMAnalyzer::~PCMAnalyzer() {}

void PCMAnalyzer::editRate(Rational<int> const & rate)
{
    // The rate of units already handed out stays.
    if (units_ != 0 || rate.numerator() <= 0 || rate.denominator() <= 0)
        return;
    editRate_ = rate;
    if (impl_->preloaded)
        setUp();
}

bool PCMAnalyzer::preload()
{
    if (impl_->preloaded)
        return true;
    checkEditRate();
    if (impl_->wave)
    {
        WaveLayout layout = readWaveHeader(impl_->buffer);
        impl_->format = layout.format;
        impl_->position = layout.dataPosition;
        if (layout.dataSize != 0 && layout.dataSize != 0xFFFFFFFF)
            impl_->dataEnd = layout.dataPosition + layout.dataSize;
    }
    impl_->preloaded = true;
    setUp();
    return true;
}

void PCMAnalyzer::setUp()
{
    unsigned char const container[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x01,
                                         0x0D, 0x01, 0x03, 0x01, 0x02, 0x06, 0x01, 0x00};
    containerLabel_ = label(container);
    itemType_ = GC_SOUND_ITEM;
    elementType_ = WAVE_FRAME_WRAPPED;
    uint64 const perUnit = uint64(impl_->format.samplingRate) * uint64(editRate_.denominator());
    uint64 const numerator = uint64(editRate_.numerator());
    uint64 const largest = (perUnit + numerator - 1) / numerator * impl_->format.blockAlign();
    constantSize_ = perUnit % numerator == 0 ? unsigned(largest) : 0;
    bound_ = unsigned(largest);
}

bool PCMAnalyzer::nextEditUnit(GenericContainer::EditUnit & unit)
{
    unit.valid = false;
    unit.data.clear();
    if (done_ || !preload())
        return false;
    uint64 const end =
        impl_->position + uint64(samplesOfUnit(units_, impl_->format.samplingRate, editRate_)) * impl_->format.blockAlign();
    uint64 const available = end < impl_->dataEnd ? end : impl_->dataEnd;
    if (!impl_->buffer.fill(available))
    {
        THROW_UNLESS(InvalidFormat, impl_->dataEnd == ~uint64(0), "The Wave data chunk is shorter than its header says");
        return endUnit(unit, false);
    }
    // The samples of a last unit that the stream doesn't fill are not given.
    if (end > impl_->dataEnd)
        return endUnit(unit, false);
    impl_->buffer.chain(impl_->position, end, unit.data);
    impl_->buffer.release(end);
    impl_->position = end;
    return endUnit(unit, true);
}

PCMFormat const & PCMAnalyzer::format() const
{
    return impl_->format;
}

Metadata::Structural::FileDescriptor * PCMAnalyzer::makeDescriptor(Metadata::PartitionMetadata & metadata)
{
    using namespace Metadata::Structural;
    WAVEAudioEssenceDescriptor * d = metadataSetAs<WAVEAudioEssenceDescriptor>(
        metadata.createMetadataSet(StructuralMetadataKeys::waveAudioEssenceDescriptor()));
    THROW_UNLESS(InvalidMetadataSet, d != nullptr, "The dictionary has no Wave audio descriptor");
    PCMFormat const & f = impl_->format;
    Types::Rational const rate(int(f.samplingRate), 1);
    Types::UInt32 const channels(f.channels), bits(f.bitsPerSample), average(f.averageBytesPerSecond());
    Types::UInt16 const align(Platform::UInt16(f.blockAlign()));
    d->audioSamplingRate(&rate);
    d->channelCount(&channels);
    d->quantizationBits(&bits);
    d->blockAlign(&align);
    d->avgBps(&average);
    return d;
}

Types::UniversalLabel const & PCMAnalyzer::dataDefinition() const
{
    return Metadata::Structural::DataDefinitionULs::audio();
}
} // namespace Analyzers
} // namespace Essence
} // namespace Vellum
