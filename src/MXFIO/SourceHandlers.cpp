#include "MXFIO/SourceHandlers.h"

#include "MXFIO/WriterSupport.h"

namespace Vellum
{
namespace MXFIO
{
BaseSourceHandler::BaseSourceHandler(Templates::SharedPtr<AbstractPartitionWriter> writer)
    : position(0, 1), editUnits(0), writer_(writer)
{
}

BaseSourceHandler::~BaseSourceHandler() {}

AbstractPartitionWriter::Status BaseSourceHandler::writeData(DataIO::Chain & chain, bool & atBoundary,
                                                             Templates::SharedPtr<FutureUpdater> & updater)
{
    uint64 const before = chain.data_size();
    Templates::Rational<int64> duration(0, 1);
    AbstractPartitionWriter::Status status = writer_->writeData(chain, atBoundary, updater, duration);
    position += duration;
    if (chain.data_size() != before || duration != Templates::Rational<int64>(0, 1))
        ++editUnits;
    return status;
}

GenericContainerSourceHandler::GenericContainerSourceHandler(Templates::SharedPtr<BasePartitionWriter> writer)
    : BaseSourceHandler(writer), base_(writer)
{
}

WrittenPartition GenericContainerSourceHandler::writePartition(Metadata::PartitionMetadata * metadata,
                                                               Packs::PartitionPack::PartitionStatus status,
                                                               uint64 thisPartition, uint64 previousPartition,
                                                               bool writeMetadata, bool writeEssence, bool footerIndex,
                                                               DataIO::Chain & chain)
{
    return base_->writeBody(metadata, status, thisPartition, previousPartition, 0, writeMetadata, true, writeEssence,
                            footerIndex, chain);
}

void GenericContainerSourceHandler::updateEssenceContainerData(Metadata::PartitionMetadata & metadata,
                                                               Metadata::Structural::ContentStorage * contentStorage)
{
    base_->updateEssenceContainerData(metadata, contentStorage);
}

void GenericContainerSourceHandler::finish()
{
    base_->finalizeEssenceMetadata();
}

bool GenericContainerSourceHandler::hasWorkAfterEssence() const
{
    return base_->indexesAfterEndOfEssence();
}

GenericStreamSourceHandler::GenericStreamSourceHandler(Templates::SharedPtr<GenericStreamPartitionWriter> writer)
    : BaseSourceHandler(writer), stream_(writer)
{
}

WrittenPartition GenericStreamSourceHandler::writePartition(Metadata::PartitionMetadata * metadata,
                                                            Packs::PartitionPack::PartitionStatus, uint64 thisPartition,
                                                            uint64 previousPartition, bool, bool writeEssence, bool,
                                                            DataIO::Chain & chain)
{
    return stream_->writeGenericStreamPartition(thisPartition, previousPartition, 0, packOperationalPattern(metadata),
                                                packEssenceContainers(metadata), writeEssence, chain);
}

void GenericStreamSourceHandler::updateEssenceContainerData(Metadata::PartitionMetadata &,
                                                            Metadata::Structural::ContentStorage *)
{
}

void GenericStreamSourceHandler::finish() {}

bool GenericStreamSourceHandler::hasWorkAfterEssence() const
{
    return false;
}
} // namespace MXFIO
} // namespace Vellum
