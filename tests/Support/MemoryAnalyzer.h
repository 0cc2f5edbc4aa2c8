#pragma once
// Analyzers over frames held in memory, for tests of containers and writers: each frame is a
// block of its own, handed out as one slice, so a test can see that the bytes that leave a
// container are the analyzer's own. Also a header metadata with a Preface and a Content Storage
// to build packages in.

#include <memory>
#include <vector>

#include "DataIO/Block.h"
#include "GenericContainer/EssenceAnalyzer.h"
#include "GenericContainer/MetadataBuilder.h"
#include "Metadata/PartitionMetadata.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
class SourcePackage;
class TimelineTrack;
}
}
}

namespace VellumTest
{
namespace GC = Vellum::GenericContainer;

// What a memory stream is and how it answers the analyzer interface.
struct MemoryStream
{
    // The frames, each a block of its own.
    std::vector<Vellum::DataIO::BlockHolder> frames;
    Vellum::Templates::Rational<int> editRate{25, 1};
    // One duration for each frame, in seconds; empty: 1 / editRate each.
    std::vector<Vellum::Templates::Rational<int>> durations;
    // One flag byte and temporal reference for each frame; empty: 128 and 0.
    std::vector<unsigned char> flags;
    std::vector<signed char> temporalReferences;
    unsigned char itemType = 0x15;
    unsigned char elementType = 0x01;
    bool cbe = false;
    unsigned int boundedSize = 0;
    bool temporalDependencies = false;
    unsigned int requiredKAG = 1;
    bool preloadResult = true;
    // Answered by done() while frames remain: a stream that stops early.
    bool claimsMore = false;
    Vellum::Templates::Rational<int> preCharge{0, 1};
};

// Frames of `sizes` bytes; byte i of frame n is (n * 7 + i) & 0xFF.
std::vector<Vellum::DataIO::BlockHolder> makeFrames(std::vector<unsigned int> const & sizes);
// The essence container label of uncompressed pictures, frame wrapped.
Vellum::Types::UniversalLabel testContainerLabel();
// A header metadata of the standard dictionary with a Preface and an empty Content Storage.
Vellum::Templates::SharedPtr<Vellum::Metadata::PartitionMetadata> newHeaderMetadata();

// Describes a memory stream: one essence track and a descriptor, durations brought up to date at
// the end.
class MemoryTrackBuilder : public GC::MetadataBuilder
{
public:
    MemoryTrackBuilder(Vellum::Metadata::PartitionMetadata & metadata,
                       Vellum::Metadata::Structural::SourcePackage * package, unsigned int trackNumber,
                       unsigned int trackId, Vellum::Templates::Rational<int> const & editRate);
    void describe(GC::EssenceAnalyzer::EssenceAnalyzerType kind);
    // `units` edit units were delivered.
    void delivered(std::size_t units) { currentPosition_ = static_cast<Vellum::int64>(units) - 1; }
};

template <class Kind>
class MemoryAnalyzer : public Kind
{
public:
    explicit MemoryAnalyzer(MemoryStream const & stream) : stream_(stream) {}

    Vellum::Templates::Rational<int> editRate() const override { return stream_.editRate; }
    void editRate(Vellum::Templates::Rational<int> const & rate) override { packageRate_ = rate; }
    Vellum::uint64 maximumToSkip() const override { return 0; }
    void maximumToSkip(Vellum::uint64) override {}
    bool preload() override { return stream_.preloadResult; }
    bool setMetadata(Vellum::Metadata::PartitionMetadata & metadata,
                     Vellum::Metadata::Structural::SourcePackage * package, unsigned int trackNumber,
                     unsigned int trackId) override;
    bool nextEditUnit(GC::EditUnit & unit) override;
    bool finalize() override;
    Vellum::Types::UniversalLabel universalLabel() const override { return testContainerLabel(); }
    bool isCBE() const override { return stream_.cbe; }
    void boundedEditUnitSize(int size) override { stream_.boundedSize = static_cast<unsigned int>(size); }
    unsigned int boundedEditUnitSize() const override { return stream_.boundedSize; }
    bool containsTemporalDependencies() const override { return stream_.temporalDependencies; }
    Vellum::Utils::TimeCode currentTimeCode() const override { return Vellum::Utils::TimeCode(); }
    unsigned char itemTypeIdentifier() const override { return stream_.itemType; }
    unsigned char essenceElementType() const override { return stream_.elementType; }
    unsigned int requiredKAGSize() const override { return stream_.requiredKAG; }
    bool done() override { return next_ >= stream_.frames.size() && !stream_.claimsMore; }
    Vellum::Templates::Rational<int> getPreChargeDuration() const override { return stream_.preCharge; }

    // What the container told the analyzer.
    Vellum::Templates::Rational<int> packageRate() const { return packageRate_; }
    unsigned int trackNumber() const { return trackNumber_; }
    unsigned int trackId() const { return trackId_; }
    std::size_t delivered() const { return next_; }

private:
    MemoryStream stream_;
    std::size_t next_ = 0;
    Vellum::Templates::Rational<int> packageRate_;
    unsigned int trackNumber_ = 0;
    unsigned int trackId_ = 0;
    std::unique_ptr<MemoryTrackBuilder> builder_;
};

typedef MemoryAnalyzer<GC::PictureAnalyzer> MemoryPicture;
typedef MemoryAnalyzer<GC::SoundAnalyzer> MemorySound;
typedef MemoryAnalyzer<GC::DataAnalyzer> MemoryData;
typedef MemoryAnalyzer<GC::CompoundAnalyzer> MemoryCompound;
typedef MemoryAnalyzer<GC::SystemAnalyzer> MemorySystem;

// A stream of `count` frames of `size` bytes each at 25/1, constant size.
MemoryStream constantStream(unsigned int count, unsigned int size);
} // namespace VellumTest
