#include "MXFIO/Creator.h"

#include "DataIO/ChainDataSinkAdapter.h"
#include "DataIO/ChainSinkDataAdapter.h"
#include "Exceptions/Exceptions.h"
#include "MXFIO/WriterSupport.h"
#include "Utils/Padding.h"

namespace Vellum
{
namespace MXFIO
{
using Packs::PartitionPack;

struct Creator::Impl : public CreatorListener
{
    Impl(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, DataIO::DataSink & sink)
        : metadata(metadata), sink(sink), footerOffset(0),
          randomAccess(dynamic_cast<DataIO::RandomAccessDataSink *>(&sink)), runIn(sink.absoluteOffset()),
          failed(false), updaterWithoutSeek(false)
    {
    }

    void partitionWritten(uint64 offset, Templates::SharedPtr<PartitionPack> pack, uint64 packSize) override
    {
        if (offsetPartitionPacksMap_.count(offset) != 0)
            return;
        PackField field = {pack, packSize};
        offsetPartitionPacksMap_[offset] = field;
        if (pack->partitionKind() == PartitionPack::FooterPartition)
            footerOffset = offset;
    }

    void updaterProduced(uint64 offset, Templates::SharedPtr<FutureUpdater> updater) override
    {
        if (randomAccess == nullptr)
            updaterWithoutSeek = true;
        if (updaters.count(offset) == 0)
            updaters[offset] = updater;
    }

    Status write(DataIO::Chain & chain, Status status);
    bool metadataFits(PartitionPack const & pack, uint64 & metadataSize) const;
    void serializeMetadata(PartitionPack const & pack, uint64 metadataSize, uint64 start,
                           Metadata::PartitionMetadata::SerializationOrder order, DataIO::Chain & out) const;

    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    DataIO::DataSink & sink;
    PartitionPacks offsetPartitionPacksMap_;
    Templates::map<uint64, Templates::SharedPtr<FutureUpdater>> updaters;
    uint64 footerOffset;
    DataIO::RandomAccessDataSink * randomAccess;
    uint64 runIn;
    bool failed;
    bool updaterWithoutSeek;
};

Creator::Creator(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, DataIO::DataSink & sink,
                 uint64 spareSpace, uint64 maximumSpace)
    : PullCreator(metadata, spareSpace, maximumSpace, sink.absoluteOffset()), impl_(new Impl(metadata, sink))
{
    addListener(impl_.get());
}

Creator::~Creator() {}

Creator::Status Creator::Impl::write(DataIO::Chain & chain, Status status)
{
    // Nothing of a unit reaches the sink when the unit cannot be made right later.
    failed = true;
    THROW_UNLESS(OperationNotAllowed, !updaterWithoutSeek,
                 "Clip wrapped essence needs a sink that can seek to patch its length.");
    DataIO::ChainSinkDataAdapter(sink).write(chain);
    failed = false;
    return status;
}

Creator::Status Creator::writeUnit(PartitionPack::PartitionStatus partitionStatus)
{
    THROW_UNLESS(InvalidState, !impl_->failed, "The creator stopped at a failure: its output is incomplete.");
    DataIO::Chain chain;
    Status const status = nextUnit(partitionStatus, chain);
    return impl_->write(chain, status);
}

Creator::Status Creator::writeUnit(bool closed)
{
    THROW_UNLESS(InvalidState, !impl_->failed, "The creator stopped at a failure: its output is incomplete.");
    DataIO::Chain chain;
    Status const status = nextUnit(closed, chain);
    return impl_->write(chain, status);
}

bool Creator::Impl::metadataFits(PartitionPack const & pack, uint64 & metadataSize) const
{
    metadataSize = metadata->serializedSize(true, true);
    uint64 const needed = metadataSize + Utils::alignBytes(pack.kagSize(), metadataSize, FILL_MINIMUM);
    if (needed > pack.headerByteCount())
        return false;
    uint64 const rest = pack.headerByteCount() - metadataSize;
    return rest == 0 || rest >= FILL_MINIMUM;
}

void Creator::Impl::serializeMetadata(PartitionPack const & pack, uint64 metadataSize, uint64 start,
                                      Metadata::PartitionMetadata::SerializationOrder order,
                                      DataIO::Chain & out) const
{
    DataIO::ChainDataSinkAdapter chainSink(out, start, PARTITION_BLOCK_SIZE);
    metadata->serialize(chainSink, true, order, true);
    if (pack.headerByteCount() > metadataSize)
        Utils::writeFillKLV(chainSink, pack.headerByteCount() - metadataSize, FILL_BER_LENGTH);
    Utils::kagAlign(chainSink, pack.kagSize(), FILL_BER_LENGTH);
}

bool Creator::updatePartition(uint64 offset, PartitionPack::PartitionStatus partitionStatus)
{
    PartitionPacks::iterator it = impl_->offsetPartitionPacksMap_.find(offset);
    THROW_UNLESS_TEXT(InvalidValue, it != impl_->offsetPartitionPacksMap_.end(),
                      "it != impl_ -> offsetPartitionPacksMap_.end ()", "Invalid partition offset");
    THROW_UNLESS(OperationNotAllowed, impl_->randomAccess != nullptr,
                 "Rewriting a partition needs a sink that can seek.");
    PartitionPack pack(*it->second.pack);
    bool const hasMetadata = pack.headerByteCount() != 0 && impl_->metadata.get() != nullptr;
    // Without metadata a pack keeps its status: it never claims to be open.
    if (hasMetadata)
        pack.key(Packs::buildPartitionPackKey(pack.partitionKind(), partitionStatus));
    pack.footerPartition(impl_->footerOffset);
    uint64 metadataSize = 0;
    if (hasMetadata && !impl_->metadataFits(pack, metadataSize))
        return false;

    uint64 const start = offset == 0 && runInKagAligned() ? impl_->runIn : 0;
    DataIO::Chain packChain;
    DataIO::ChainDataSinkAdapter packSink(packChain, start + offset, PARTITION_BLOCK_SIZE);
    pack.serialize(packSink);
    uint64 const gap = it->second.size - packChain.data_size();
    if (it->second.size < packChain.data_size() || (gap != 0 && gap < FILL_MINIMUM))
        return false;
    if (gap != 0)
        Utils::writeFillKLV(packSink, gap, FILL_BER_LENGTH);
    DataIO::Chain metadataChain;
    if (hasMetadata)
        impl_->serializeMetadata(pack, metadataSize, packSink.absoluteOffset(), serializationOrder(), metadataChain);

    DataIO::RandomAccessDataSink & sink = *impl_->randomAccess;
    uint64 const end = sink.absoluteOffset();
    sink.seek(impl_->runIn + offset);
    DataIO::ChainSinkDataAdapter(sink).write(packChain);
    DataIO::ChainSinkDataAdapter(sink).write(metadataChain);
    sink.seek(end);
    *it->second.pack = pack;
    return true;
}

bool Creator::updatePartition(uint64 offset, bool closed)
{
    PartitionPack::PartitionStatus status = PartitionPack::ClosedComplete;
    if (impl_->metadata.get() != nullptr)
        status = Metadata::verifyPartitionMetadataStatus(*impl_->metadata, closed);
    return updatePartition(offset, status);
}

void Creator::finishWork(DataIO::RandomAccessDataSink & sink)
{
    if (impl_->updaters.empty())
        return;
    uint64 const end = sink.absoluteOffset();
    typedef Templates::map<uint64, Templates::SharedPtr<FutureUpdater>> Updaters;
    for (Updaters::iterator it = impl_->updaters.begin(); it != impl_->updaters.end(); ++it)
    {
        if (!it->second->pending())
            continue;
        DataIO::Chain patch;
        uint64 const at = it->second->apply(impl_->runIn + it->first, patch);
        sink.seek(at);
        DataIO::ChainSinkDataAdapter(sink).write(patch);
    }
    sink.seek(end);
}

Creator::PartitionPacks const & Creator::partitionPacks() const
{
    return impl_->offsetPartitionPacksMap_;
}
} // namespace MXFIO
} // namespace Vellum
