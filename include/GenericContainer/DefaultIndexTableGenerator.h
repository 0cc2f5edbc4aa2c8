#pragma once
// The index generator of every container unless the host installs its own: turns the layout into
// delta entries, collects one entry per content package into segments (a new segment when one
// nears the 16-bit limit of its local sets) and writes them when a partition asks.

#include "GenericContainer/GenericContainerIndexTableGenerator.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace GenericContainer
{
class DefaultIndexTableGenerator : public GenericContainerIndexTableGenerator
{
public:
    DefaultIndexTableGenerator();
    ~DefaultIndexTableGenerator() override;

    void updateIndex() override;
    uint64 rawIndexByteCount(bool closing) const override;
    void writeIndexSegments(bool closing, DataIO::DataSink & sink) override;
    void indexSID(unsigned int sid) override;
    void bodySID(unsigned int sid) override;
    void indexStrategies(MXFIO::IndexTableGeneration body, MXFIO::IndexTableGeneration closing,
                         MXFIO::IndexTableSegmentType type) override;
    MXFIO::IndexTableSegmentType indexSegmentType() const override;
    bool indexesAfterEndOfEssence() const override;

    void setupIndexSegments(IndexSegmentInfo const & info) override;
    void currentContentInfo(uint64 position, uint64 streamOffset) override;
    unsigned char posTableCount() const override;
    unsigned char sliceCount() const override;
    void writeIndexEntry(IndexTables::IndexEntry const & entry) override;

protected:
    // The last segment's serialized size is above the limit.
    bool isCurrentFull() const;

private:
    void openFirstSegment() const;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace GenericContainer
} // namespace Vellum
