#pragma once
// A small Generic Container source for the writer tests: frame wrapped (or clip wrapped) sound
// elements of known bytes, a constant-size index generator, and the header metadata of a file
// with one Source Package per source under one Material Package.

#include <memory>
#include <string>
#include <vector>

#include "DataIO/DataSink.h"
#include "GenericContainer/Source.h"
#include "Metadata/PartitionMetadata.h"
#include "MetaMetadata/Dictionary.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
class MaterialPackage;
class Preface;
class SourceClip;
class SourcePackage;
}
}
}

namespace VellumTest
{
using namespace Vellum;

Templates::SharedPtr<MetaMetadata::Dictionary> writerDictionary();

// The value of element `unit` of source `source`: `size` bytes of a pattern of both.
std::vector<unsigned char> elementBytes(unsigned source, unsigned unit, unsigned size);

struct TestSourceOptions
{
    unsigned units = 10;
    // Value bytes of one element: 1920 stereo samples of 24 bits, one frame at 25 per second.
    unsigned size = 11520;
    unsigned kag = 1;
    // One big KLV packet whose length is patched later.
    bool clip = false;
    // Index segments of the body partitions and of the closing partition.
    MXFIO::IndexTableGeneration bodyIndex = MXFIO::IndexTableGenerationNone;
    MXFIO::IndexTableGeneration closingIndex = MXFIO::IndexTableGenerationAll;
};

// Header metadata: a Preface, its Content Storage, a Material Package; sources add their own
// Source Package and a Material Package track.
struct TestHeader
{
    TestHeader();
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    Metadata::Structural::Preface * preface;
    Metadata::Structural::MaterialPackage * material;
    unsigned sources;
};

class TestContainerSource : public GenericContainer::Source
{
public:
    TestContainerSource(TestHeader & header, TestSourceOptions const & options);
    ~TestContainerSource() override;

    bool next(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<MXFIO::FutureUpdater> & updater,
              Templates::Rational<int64> & duration) override;
    bool done() const override;
    unsigned int kagSize() const override;
    void finalize() override;
    Metadata::Structural::SourcePackage & sourcePackage() override;
    Types::UniversalLabel const & essenceContainerUL() const override;
    Templates::Rational<int> const & packageRate() const override;
    bool isCBE() const override;
    MXFIO::IndexTableGenerator * indexTableGenerator() override;
    void indexTableGenerator(Templates::auto_ptr<MXFIO::IndexTableGenerator> generator) override;

    unsigned number() const { return number_; }
    bool finalized() const { return finalized_; }

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
    unsigned number_;
    unsigned produced_;
    bool finalized_;
};

// A sink over memory that can seek, and that fails with IOError once `failAfter` bytes are in.
class TestMemorySink : public DataIO::RandomAccessDataSink
{
public:
    explicit TestMemorySink(uint64 failAfter = ~uint64(0)) : position_(0), failAfter_(failAfter) {}
    void write(unsigned char const * data, uint64 size) override;
    uint64 absoluteOffset() const override { return position_; }
    uint64 seek(uint64 position) override;
    std::vector<unsigned char> bytes;

private:
    uint64 position_;
    uint64 failAfter_;
};

// A sink that cannot seek.
class TestStreamSink : public DataIO::DataSink
{
public:
    void write(unsigned char const * data, uint64 size) override { bytes.insert(bytes.end(), data, data + size); }
    uint64 absoluteOffset() const override { return bytes.size(); }
    std::vector<unsigned char> bytes;
};

} // namespace VellumTest
