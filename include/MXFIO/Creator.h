#pragma once
// A PullCreator that writes into a sink, remembers where every partition pack and every pending
// patch went, and afterwards goes back over the file: rewrites partition packs with their final
// status and footer offset, header metadata into its reserved space, and clip KLV lengths.

#include "DataIO/DataSink.h"
#include "MXFIO/PullCreator.h"

namespace Vellum
{
namespace MXFIO
{
class Creator : public PullCreator
{
public:
    struct PackField
    {
        Templates::SharedPtr<Packs::PartitionPack> pack;
        // The pack with its alignment.
        uint64 size;
    };
    typedef Templates::map<uint64, PackField> PartitionPacks;

    // Whatever the sink holds already is the run-in.
    Creator(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, DataIO::DataSink & sink, uint64 spareSpace,
            uint64 maximumSpace);
    ~Creator() override;

    // nextUnit into a chain of its own, written to the sink. After a failure of the sink every
    // later call throws InvalidState: the file ends where the sink stopped.
    Status writeUnit(Packs::PartitionPack::PartitionStatus partitionStatus);
    Status writeUnit(bool closed);

    // Rewrites the pack at `offset` (from the end of the run-in) with that status and the footer
    // offset, and the metadata behind it in its reserved space. False, and the file unchanged,
    // when the metadata no longer fits. InvalidValue for an offset that is no pack's;
    // OperationNotAllowed on a sink that cannot seek.
    bool updatePartition(uint64 offset, Packs::PartitionPack::PartitionStatus partitionStatus);
    bool updatePartition(uint64 offset, bool closed);
    // Applies the pending patches in offset order.
    void finishWork(DataIO::RandomAccessDataSink & sink);

    PartitionPacks const & partitionPacks() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
