#pragma once
// The analyzer of PCM sound, from a Wave file (RIFF "fmt " and "data" chunks, plain PCM or
// WAVE_FORMAT_EXTENSIBLE, other chunks such as "bext" stepped over) or from raw samples of a given
// layout. Its edit units follow the picture rate of the container: 1920 samples at 25 frames per
// second and 48 kHz, the five-frame sequence 1602, 1601, 1602, 1601, 1602 at 30000/1001.

#include "DataIO/DataSource.h"
#include "DataIO/SliceSource.h"
#include "Essence/Analyzers/BasicAnalyzer.h"
#include "Essence/StreamBuffer.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Essence
{
namespace Analyzers
{
struct PCMFormat
{
    PCMFormat() : channels(0), bitsPerSample(0), samplingRate(0) {}
    PCMFormat(unsigned c, unsigned b, uint32 r) : channels(c), bitsPerSample(b), samplingRate(r) {}

    unsigned channels;
    unsigned bitsPerSample;
    uint32 samplingRate;

    // Bytes of one sample of every channel.
    unsigned blockAlign() const { return channels * ((bitsPerSample + 7) / 8); }
    uint32 averageBytesPerSecond() const { return samplingRate * blockAlign(); }
};

// Where the samples of a Wave file lie.
struct WaveLayout
{
    PCMFormat format;
    uint64 dataPosition;
    // The size that the data chunk announces; 0 or 0xFFFFFFFF: up to the end of the file.
    uint64 dataSize;
};

// Reads the chunks of a Wave file up to its data chunk, which is left in the buffer. Throws
// InvalidFormat for a file that is no Wave file of PCM sound.
WaveLayout readWaveHeader(StreamBuffer & buffer);

// The samples of edit unit `index` at `samplingRate` and `editRate`: the samples up to each
// unit's end are rounded to the nearest whole sample.
uint32 samplesOfUnit(uint64 index, uint32 samplingRate, Templates::Rational<int> const & editRate);

class PCMAnalyzer : public BasicAnalyzer<GenericContainer::SoundAnalyzer>
{
public:
    VELLUM_CLASS_ALLOCATION
    // A Wave file. The edit rate is the picture rate of the container, told through editRate();
    // `editRate` stands until then.
    PCMAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, Templates::Rational<int> const & editRate);
    PCMAnalyzer(Templates::SharedPtr<DataIO::DataSource> source, Templates::Rational<int> const & editRate);
    // Raw samples of that layout, little-endian as in a Wave file.
    PCMAnalyzer(Templates::SharedPtr<DataIO::DataSource> source, PCMFormat const & format,
                Templates::Rational<int> const & editRate);
    ~PCMAnalyzer() override;

    // Takes the container's picture rate.
    void editRate(Templates::Rational<int> const & rate) override;
    using BasicAnalyzer<GenericContainer::SoundAnalyzer>::editRate;
    bool preload() override;
    bool nextEditUnit(GenericContainer::EditUnit & unit) override;

    PCMFormat const & format() const;

protected:
    Metadata::Structural::FileDescriptor * makeDescriptor(Metadata::PartitionMetadata & metadata) override;
    Types::UniversalLabel const & dataDefinition() const override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;

    void setUp();
};
} // namespace Analyzers
} // namespace Essence
} // namespace Vellum
