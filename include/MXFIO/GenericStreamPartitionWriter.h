#pragma once
// Writes a Generic Stream: body partitions of status 17, without metadata or index, that carry
// the KLV data of a host's stream under their own body SID.

#include "MXFIO/PartitionWriter.h"

namespace Vellum
{
namespace GenericStream
{
class Source;
}

namespace MXFIO
{
class GenericStreamPartitionWriter : public CommonPartitionWriter
{
public:
    GenericStreamPartitionWriter(Templates::auto_ptr<GenericStream::Source> source, unsigned int bodySID);
    ~GenericStreamPartitionWriter() override;

    GenericStream::Source & source() const;

    // A body partition of status 17 with essence.
    WrittenPartition writeGenericStreamPartition(uint64 thisPartition, uint64 previousPartition,
                                                 uint64 footerPartition, Types::UniversalLabel const & operationalPattern,
                                                 Templates::auto_ptr<Types::Batch> essenceContainers,
                                                 bool writeEssence, DataIO::Chain & chain);
    // Refuses metadata, a run-in, a kind other than body and a partition without essence, by
    // InvalidValue.
    WrittenPartition writePartition(Metadata::PartitionMetadata * metadata, Packs::PartitionPack::PartitionKind kind,
                                    Packs::PartitionPack::PartitionStatus status, uint64 thisPartition,
                                    uint64 previousPartition, uint64 footerPartition,
                                    Types::UniversalLabel const & operationalPattern,
                                    Templates::auto_ptr<Types::Batch> essenceContainers, bool writeMetadata,
                                    bool writeIndex, bool writeEssence, bool footerIndex, uint64 runInSize,
                                    DataIO::Chain & chain) override;

    unsigned int bodySID() const override;
    uint64 bodyOffset() const override;
    Status writeData(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<FutureUpdater> & updater,
                     Templates::Rational<int64> & duration) override;
    Status status() const override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
