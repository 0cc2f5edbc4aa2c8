#include "MXFIO/PartitionWriter.h"

#include "DataIO/ChainDataSinkAdapter.h"
#include "Exceptions/Exceptions.h"
#include "GenericContainer/Source.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/EssenceContainerData.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Types/Integers.h"
#include "MXFIO/WriterSupport.h"
#include "Utils/Padding.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
using Packs::PartitionPack;

PartitionRequest makeRequest(Metadata::PartitionMetadata * metadata, PartitionPack::PartitionKind kind,
                             PartitionPack::PartitionStatus status, uint64 thisPartition, uint64 previousPartition,
                             uint64 footerPartition, Types::UniversalLabel const & operationalPattern,
                             Templates::auto_ptr<Types::Batch> essenceContainers, bool writeMetadata,
                             bool writeIndex, bool writeEssence, bool footerIndex, uint64 runInSize)
{
    PartitionRequest request = {metadata, kind, status, thisPartition, previousPartition, footerPartition,
                                operationalPattern, std::move(essenceContainers), writeMetadata, writeIndex,
                                writeEssence, footerIndex, runInSize};
    return request;
}

Templates::auto_ptr<Types::Batch> orEmpty(Templates::auto_ptr<Types::Batch> containers)
{
    if (containers.get() == nullptr)
        containers.reset(new Types::Batch(16));
    return containers;
}
} // namespace

// CommonPartitionWriter

CommonPartitionWriter::CommonPartitionWriter() : partitionWritten_(false), footerWritten_(false), kagSize_(1) {}

CommonPartitionWriter::~CommonPartitionWriter() {}

unsigned int CommonPartitionWriter::bodySID() const
{
    return 0;
}

unsigned int CommonPartitionWriter::indexSID() const
{
    return 0;
}

uint64 CommonPartitionWriter::bodyOffset() const
{
    return 0;
}

uint64 CommonPartitionWriter::headerByteCount(Metadata::PartitionMetadata &) const
{
    return 0;
}

uint64 CommonPartitionWriter::indexByteCount(bool) const
{
    return 0;
}

WrittenPartition CommonPartitionWriter::writePartition(
    Metadata::PartitionMetadata * metadata, PartitionPack::PartitionKind kind, PartitionPack::PartitionStatus status,
    uint64 thisPartition, uint64 previousPartition, uint64 footerPartition,
    Types::UniversalLabel const & operationalPattern, Templates::auto_ptr<Types::Batch> essenceContainers,
    bool writeMetadata, bool writeIndex, bool writeEssence, bool footerIndex, uint64 runInSize, DataIO::Chain & chain)
{
    if (footerPartition != 0 ? thisPartition == footerPartition : footerIndex)
        footerWritten_ = true;
    PartitionRequest request =
        makeRequest(metadata, kind, status, thisPartition, previousPartition, footerPartition, operationalPattern,
                    orEmpty(std::move(essenceContainers)), writeMetadata, writeIndex, writeEssence, footerIndex,
                    runInSize);
    // The partition is built aside and joins the caller's chain whole, so that a failure
    // half-way leaves the chain as it was.
    DataIO::Chain built;
    DataIO::ChainDataSinkAdapter sink(built, thisPartition + runInSize, PARTITION_BLOCK_SIZE);
    uint64 packSize = 0;
    Templates::SharedPtr<PartitionPack> pack = doWritePartition(request, sink, packSize);
    chain.push_back(built);
    return WrittenPartition(pack, packSize);
}

CommonPartitionWriter::Status CommonPartitionWriter::writeData(DataIO::Chain &, bool & atBoundary,
                                                               Templates::SharedPtr<FutureUpdater> & updater,
                                                               Templates::Rational<int64> &)
{
    atBoundary = true;
    updater.reset();
    return Finished;
}

CommonPartitionWriter::Status CommonPartitionWriter::status() const
{
    return partitionWritten_ ? Finished : NoPartitionWritten;
}

unsigned int CommonPartitionWriter::kagSize() const
{
    return kagSize_;
}

void CommonPartitionWriter::kagSize(unsigned int size)
{
    kagSize_ = size;
}

uint64 CommonPartitionWriter::writePartitionPack(PartitionPack const & pack, DataIO::DataSink & sink)
{
    uint64 const start = sink.absoluteOffset();
    pack.serialize(sink);
    Utils::kagAlign(sink, kagSize(), FILL_BER_LENGTH);
    return sink.absoluteOffset() - start;
}

Templates::SharedPtr<PartitionPack> CommonPartitionWriter::doWritePartition(PartitionRequest & request,
                                                                            DataIO::DataSink & sink,
                                                                            uint64 & packSize)
{
    if (request.status != PartitionPack::GenericStream && (!request.writeMetadata || request.metadata == nullptr))
    {
        // A partition without metadata never claims to be open.
        request.status = PartitionPack::ClosedComplete;
        request.metadata = nullptr;
    }
    Templates::SharedPtr<PartitionPack> pack = createPartitionPack(request);
    packSize = writePartitionPack(*pack, sink);
    partitionWritten_ = true;
    return pack;
}

Templates::SharedPtr<PartitionPack> CommonPartitionWriter::createPartitionPack(PartitionRequest & request)
{
    unsigned int const kag = request.runInSize != 0 ? 0 : kagSize();
    Templates::SharedPtr<PartitionPack> pack(
        new PartitionPack(Packs::buildPartitionPackKey(request.kind, request.status), kag, request.thisPartition,
                          request.writeEssence ? bodyOffset() : 0, request.operationalPattern,
                          std::move(request.essenceContainers)));
    uint64 const indexBytes = request.writeIndex ? indexByteCount(request.footerIndex) : 0;
    pack->previousPartition(request.previousPartition);
    pack->footerPartition(request.footerPartition);
    pack->bodySID(request.writeEssence ? bodySID() : 0);
    pack->indexSID(indexBytes != 0 ? indexSID() : 0);
    pack->headerByteCount(request.writeMetadata && request.metadata != nullptr ? headerByteCount(*request.metadata)
                                                                               : 0);
    pack->indexByteCount(indexBytes);
    pack->majorVersion(1);
    pack->minorVersion(2);
    return pack;
}

// BasePartitionWriter

BasePartitionWriter::BasePartitionWriter()
    : endOfFooterKAGSize_(0), spareSpace_(0), maximumSpace_(0),
      serializationOrder_(Metadata::PartitionMetadata::PrefaceThenKeys)
{
}

BasePartitionWriter::~BasePartitionWriter() {}

uint64 BasePartitionWriter::headerByteCount(Metadata::PartitionMetadata & metadata) const
{
    uint64 const size = metadata.serializedSize(true, true);
    uint64 grow = 0;
    bool capped = false;
    if (maximumSpace_ == 0)
        grow = spareSpace_;
    else if (size < maximumSpace_)
    {
        capped = maximumSpace_ - size < spareSpace_;
        grow = capped ? maximumSpace_ - size : spareSpace_;
    }
    // Room below a fill item's size could never be filled: a little more spare space, or none
    // where the maximum forbids it.
    if (grow != 0 && grow < FILL_MINIMUM)
        grow = capped ? 0 : FILL_MINIMUM;
    uint64 const grown = size + grow;
    return grown + Utils::alignBytes(kagSize(), grown, FILL_MINIMUM);
}

WrittenPartition BasePartitionWriter::writeHeader(Metadata::PartitionMetadata * metadata,
                                                  PartitionPack::PartitionStatus status, uint64 footerPartition,
                                                  bool writeMetadata, bool writeIndex, bool writeEssence,
                                                  uint64 runInSize, DataIO::Chain & chain)
{
    return writePartition(metadata, PartitionPack::HeaderPartition, status, 0, 0, footerPartition,
                          packOperationalPattern(metadata), packEssenceContainers(metadata), writeMetadata,
                          writeIndex, writeEssence, false, runInSize, chain);
}

WrittenPartition BasePartitionWriter::writeBody(Metadata::PartitionMetadata * metadata,
                                                PartitionPack::PartitionStatus status, uint64 thisPartition,
                                                uint64 previousPartition, uint64 footerPartition, bool writeMetadata,
                                                bool writeIndex, bool writeEssence, bool footerIndex,
                                                DataIO::Chain & chain)
{
    return writePartition(metadata, PartitionPack::BodyPartition, status, thisPartition, previousPartition,
                          footerPartition, packOperationalPattern(metadata), packEssenceContainers(metadata),
                          writeMetadata, writeIndex, writeEssence, footerIndex, 0, chain);
}

WrittenPartition BasePartitionWriter::writeFooter(Metadata::PartitionMetadata * metadata,
                                                  PartitionPack::PartitionStatus status, uint64 thisPartition,
                                                  uint64 previousPartition, bool writeMetadata, bool writeIndex,
                                                  DataIO::Chain & chain)
{
    return writePartition(metadata, PartitionPack::FooterPartition, status, thisPartition, previousPartition,
                          thisPartition, packOperationalPattern(metadata), packEssenceContainers(metadata),
                          writeMetadata, writeIndex, false, true, 0, chain);
}

void BasePartitionWriter::updateIndex() {}

void BasePartitionWriter::writeIndexSegments(bool, DataIO::DataSink &) {}

void BasePartitionWriter::updateEssenceContainerData(Metadata::PartitionMetadata &,
                                                     Metadata::Structural::ContentStorage *)
{
}

void BasePartitionWriter::finalizeEssenceMetadata() {}

Metadata::PartitionMetadata::SerializationOrder BasePartitionWriter::serializationOrder() const
{
    return serializationOrder_;
}

void BasePartitionWriter::serializationOrder(Metadata::PartitionMetadata::SerializationOrder order)
{
    serializationOrder_ = order;
}

bool BasePartitionWriter::indexesAfterEndOfEssence() const
{
    return false;
}

void BasePartitionWriter::endOfFooterKAGSize(unsigned int size)
{
    endOfFooterKAGSize_ = size;
}

unsigned int BasePartitionWriter::endOfFooterKAGSize() const
{
    return endOfFooterKAGSize_;
}

void BasePartitionWriter::metadataSpareSpace(uint64 bytes)
{
    spareSpace_ = bytes;
}

uint64 BasePartitionWriter::metadataSpareSpace() const
{
    return spareSpace_;
}

void BasePartitionWriter::metadataMaximumSpace(uint64 bytes)
{
    maximumSpace_ = bytes;
}

uint64 BasePartitionWriter::metadataMaximumSpace() const
{
    return maximumSpace_;
}

uint64 BasePartitionWriter::writePartitionPack(PartitionPack const & pack, DataIO::DataSink & sink)
{
    unsigned int kag = kagSize();
    if (pack.partitionKind() == PartitionPack::FooterPartition && endOfFooterKAGSize_ != 0 &&
        endOfFooterKAGSize_ >= kag)
        kag = endOfFooterKAGSize_;
    uint64 const start = sink.absoluteOffset();
    pack.serialize(sink);
    Utils::kagAlign(sink, kag, FILL_BER_LENGTH);
    return sink.absoluteOffset() - start;
}

Templates::SharedPtr<PartitionPack> BasePartitionWriter::doWritePartition(PartitionRequest & request,
                                                                          DataIO::DataSink & sink,
                                                                          uint64 & packSize)
{
    updateIndex();
    Templates::SharedPtr<PartitionPack> pack = CommonPartitionWriter::doWritePartition(request, sink, packSize);
    if (request.writeMetadata && request.metadata != nullptr)
    {
        Metadata::PartitionMetadata & metadata = *request.metadata;
        uint64 const start = sink.absoluteOffset();
        metadata.serialize(sink, true, serializationOrder_, true);
        uint64 const written = sink.absoluteOffset() - start;
        if (pack->headerByteCount() > written)
            Utils::writeFillKLV(sink, pack->headerByteCount() - written, FILL_BER_LENGTH);
        Utils::kagAlign(sink, kagSize(), FILL_BER_LENGTH);
    }
    if (request.writeIndex && pack->indexByteCount() != 0)
        writeIndexSegments(request.footerIndex, sink);
    return pack;
}

// PartitionWriter

struct PartitionWriter::Impl
{
    Impl(Templates::auto_ptr<GenericContainer::Source> source, unsigned int body, unsigned int index, bool countOnly)
        : source(std::move(source)), bodySID(body), indexSID(index), bodyOffset(0), sourceKagSize(1),
          finished(false), countOnly(countOnly), generator(nullptr)
    {
    }

    Templates::auto_ptr<GenericContainer::Source> source;
    unsigned int bodySID;
    unsigned int indexSID;
    uint64 bodyOffset;
    unsigned int sourceKagSize;
    bool finished;
    bool countOnly;
    IndexTableGenerator * generator;
    IndexTableGeneration bodyGeneration;
    IndexTableGeneration closingGeneration;
};

PartitionWriter::PartitionWriter(Templates::auto_ptr<GenericContainer::Source> source, unsigned int bodySID,
                                 unsigned int indexSID, IndexTableGeneration bodyGeneration,
                                 IndexTableGeneration closingGeneration, bool countOnly,
                                 IndexTableSegmentType segmentType)
    : impl_(new Impl(std::move(source), bodySID, indexSID, countOnly))
{
    THROW_UNLESS(InvalidValue, impl_->source.get() != nullptr, "PartitionWriter needs a GenericContainer::Source.");
    impl_->sourceKagSize = impl_->source->kagSize();
    IndexTableGenerator * indexGenerator_ = impl_->source->indexTableGenerator();
    THROW_UNLESS(InvalidState, indexGenerator_ != 0,
                 "GenericContainer::Source does not contain a valid IndexTableGenerator.");
    impl_->generator = indexGenerator_;
    impl_->bodyGeneration = bodyGeneration;
    impl_->closingGeneration = closingGeneration;
    indexGenerator_->indexSID(indexSID);
    indexGenerator_->bodySID(bodySID);
    indexGenerator_->indexStrategies(bodyGeneration, closingGeneration, segmentType);
}

PartitionWriter::~PartitionWriter() {}

GenericContainer::Source & PartitionWriter::source() const
{
    return *impl_->source;
}

unsigned int PartitionWriter::bodySID() const
{
    return impl_->bodySID;
}

unsigned int PartitionWriter::indexSID() const
{
    return impl_->indexSID;
}

uint64 PartitionWriter::bodyOffset() const
{
    return impl_->bodyOffset;
}

uint64 PartitionWriter::indexByteCount(bool footerIndex) const
{
    uint64 const raw = impl_->generator->rawIndexByteCount(footerIndex);
    unsigned int const kag = footerIndex ? BasePartitionWriter::kagSize() : impl_->sourceKagSize;
    return raw + Utils::alignBytes(kag, raw, FILL_MINIMUM);
}

PartitionWriter::Status PartitionWriter::writeData(DataIO::Chain & chain, bool & atBoundary,
                                                   Templates::SharedPtr<FutureUpdater> & updater,
                                                   Templates::Rational<int64> & duration)
{
    DataIO::Chain own;
    if (!pullData(*impl_->source, own, atBoundary, updater, duration))
        return Finished;
    impl_->bodyOffset += own.data_size();
    if (!impl_->countOnly)
        chain.push_back(own);
    return status();
}

PartitionWriter::Status PartitionWriter::status() const
{
    if (!partitionWritten())
        return NoPartitionWritten;
    return impl_->finished || impl_->source->done() ? Finished : WritingEssence;
}

unsigned int PartitionWriter::kagSize() const
{
    return footerWritten() ? BasePartitionWriter::kagSize() : impl_->sourceKagSize;
}

void PartitionWriter::updateIndex()
{
    impl_->generator->updateIndex();
}

void PartitionWriter::writeIndexSegments(bool footerIndex, DataIO::DataSink & sink)
{
    impl_->generator->writeIndexSegments(footerIndex, sink);
    Utils::kagAlign(sink, footerIndex ? BasePartitionWriter::kagSize() : impl_->sourceKagSize, FILL_BER_LENGTH);
}

void PartitionWriter::updateEssenceContainerData(Metadata::PartitionMetadata & metadata,
                                                 Metadata::Structural::ContentStorage * contentStorage)
{
    namespace S = Metadata::Structural;
    Types::UMID32 const * package = impl_->source->sourcePackage().packageUID();
    if (contentStorage == nullptr || package == nullptr || contentStorage->essenceContainerData(*package) != nullptr)
        return;
    S::EssenceContainerData * data = S::metadataSetAs<S::EssenceContainerData>(
        metadata.createMetadataSet(S::StructuralMetadataKeys::essenceContainerData()));
    Types::UInt32 const body(impl_->bodySID), index(impl_->indexSID);
    data->linkedPackageUID(package);
    data->bodySID(&body);
    if (impl_->bodyGeneration != IndexTableGenerationNone || impl_->closingGeneration != IndexTableGenerationNone)
        data->indexSID(&index);
    contentStorage->appendEssenceContainerData(data);
}

void PartitionWriter::finalizeEssenceMetadata()
{
    if (impl_->finished)
        return;
    impl_->source->finalize();
    impl_->finished = true;
}

bool PartitionWriter::indexesAfterEndOfEssence() const
{
    return impl_->generator->indexesAfterEndOfEssence();
}
} // namespace MXFIO
} // namespace Vellum
