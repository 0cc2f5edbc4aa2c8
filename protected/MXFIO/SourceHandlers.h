#pragma once
// A source handler binds one partition writer of a PullCreator to its progress: the seconds it
// has written in its turn and the edit units since its last partition.

#include "MXFIO/GenericStreamPartitionWriter.h"
#include "MXFIO/PartitionWriter.h"

namespace Vellum
{
namespace MXFIO
{
class BaseSourceHandler
{
public:
    VELLUM_CLASS_ALLOCATION
    explicit BaseSourceHandler(Templates::SharedPtr<AbstractPartitionWriter> writer);
    virtual ~BaseSourceHandler();

    // A body partition of this handler's stream.
    virtual WrittenPartition writePartition(Metadata::PartitionMetadata * metadata,
                                            Packs::PartitionPack::PartitionStatus status, uint64 thisPartition,
                                            uint64 previousPartition, bool writeMetadata, bool writeEssence,
                                            bool footerIndex, DataIO::Chain & chain) = 0;
    virtual void updateEssenceContainerData(Metadata::PartitionMetadata & metadata,
                                            Metadata::Structural::ContentStorage * contentStorage) = 0;
    // The stream has ended.
    virtual void finish() = 0;
    // Whether a partition is still to be written once all essence has gone out.
    virtual bool hasWorkAfterEssence() const = 0;
    // The writer's writeData, counting seconds and edit units.
    virtual AbstractPartitionWriter::Status writeData(DataIO::Chain & chain, bool & atBoundary,
                                                      Templates::SharedPtr<FutureUpdater> & updater);

    AbstractPartitionWriter & writer() const { return *writer_; }
    // The writer as one that writes headers and footers, or null.
    virtual BasePartitionWriter * basePartitionWriter() const { return nullptr; }

    Templates::Rational<int64> position;
    unsigned int editUnits;

private:
    BaseSourceHandler(BaseSourceHandler const &) = delete;
    BaseSourceHandler & operator=(BaseSourceHandler const &) = delete;

    Templates::SharedPtr<AbstractPartitionWriter> writer_;
};

// Over a BasePartitionWriter, or a PartitionWriter of a Generic Container.
class GenericContainerSourceHandler : public BaseSourceHandler
{
public:
    explicit GenericContainerSourceHandler(Templates::SharedPtr<BasePartitionWriter> writer);

    WrittenPartition writePartition(Metadata::PartitionMetadata * metadata,
                                    Packs::PartitionPack::PartitionStatus status, uint64 thisPartition,
                                    uint64 previousPartition, bool writeMetadata, bool writeEssence, bool footerIndex,
                                    DataIO::Chain & chain) override;
    void updateEssenceContainerData(Metadata::PartitionMetadata & metadata,
                                    Metadata::Structural::ContentStorage * contentStorage) override;
    void finish() override;
    bool hasWorkAfterEssence() const override;
    BasePartitionWriter * basePartitionWriter() const override { return base_.get(); }

private:
    Templates::SharedPtr<BasePartitionWriter> base_;
};

class GenericStreamSourceHandler : public BaseSourceHandler
{
public:
    explicit GenericStreamSourceHandler(Templates::SharedPtr<GenericStreamPartitionWriter> writer);

    WrittenPartition writePartition(Metadata::PartitionMetadata * metadata,
                                    Packs::PartitionPack::PartitionStatus status, uint64 thisPartition,
                                    uint64 previousPartition, bool writeMetadata, bool writeEssence, bool footerIndex,
                                    DataIO::Chain & chain) override;
    void updateEssenceContainerData(Metadata::PartitionMetadata & metadata,
                                    Metadata::Structural::ContentStorage * contentStorage) override;
    void finish() override;
    bool hasWorkAfterEssence() const override;

private:
    Templates::SharedPtr<GenericStreamPartitionWriter> stream_;
};
} // namespace MXFIO
} // namespace Vellum
