#pragma once
// Partition writers: each knows one stream of a file (or none) and appends its partition packs,
// header metadata, index table segments and essence to a chain that the caller drains. The layout
// of a partition is: the pack, then KAG alignment; the header metadata with its Primer, a fill
// item up to HeaderByteCount; the index table segments, aligned; then the essence.

#include "DataIO/Chain.h"
#include "DataIO/DataSink.h"
#include "Metadata/PartitionMetadata.h"
#include "MXFIO/FutureUpdater.h"
#include "MXFIO/IndexTableGenerator.h"
#include "Packs/PartitionPack.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"
#include "Templates/SharedPtr.h"
#include "Types/Collection.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace GenericContainer
{
class Source;
}

namespace Metadata
{
namespace Structural
{
class ContentStorage;
}
}

namespace MXFIO
{
// The pack written and the bytes that it takes with its alignment.
typedef Templates::pair<Templates::SharedPtr<Packs::PartitionPack>, uint64> WrittenPartition;

// Everything a partition is made of, as the caller asked for it.
struct PartitionRequest
{
    Metadata::PartitionMetadata * metadata;
    Packs::PartitionPack::PartitionKind kind;
    Packs::PartitionPack::PartitionStatus status;
    uint64 thisPartition;
    uint64 previousPartition;
    uint64 footerPartition;
    Types::UniversalLabel operationalPattern;
    Templates::auto_ptr<Types::Batch> essenceContainers;
    bool writeMetadata;
    bool writeIndex;
    bool writeEssence;
    bool footerIndex;
    uint64 runInSize;
};

class AbstractPartitionWriter
{
public:
    VELLUM_CLASS_ALLOCATION

    enum Status
    {
        // No partition has been written yet.
        NoPartitionWritten = 0,
        // Essence is being written.
        WritingEssence = 1,
        // Nothing more to write.
        Finished = 2
    };

    AbstractPartitionWriter() {}
    virtual ~AbstractPartitionWriter() {}

    virtual unsigned int bodySID() const = 0;
    virtual unsigned int indexSID() const = 0;
    // Essence bytes written so far: the BodyOffset of the next partition.
    virtual uint64 bodyOffset() const = 0;
    // The HeaderByteCount that a partition carrying this metadata gets.
    virtual uint64 headerByteCount(Metadata::PartitionMetadata & metadata) const = 0;
    // The IndexByteCount of the next partition (of the closing one with `footerIndex`).
    virtual uint64 indexByteCount(bool footerIndex) const = 0;
    // Appends the pack, and the metadata and index asked for, to `chain`.
    virtual WrittenPartition writePartition(Metadata::PartitionMetadata * metadata, Packs::PartitionPack::PartitionKind kind,
                                            Packs::PartitionPack::PartitionStatus status, uint64 thisPartition,
                                            uint64 previousPartition, uint64 footerPartition,
                                            Types::UniversalLabel const & operationalPattern,
                                            Templates::auto_ptr<Types::Batch> essenceContainers, bool writeMetadata,
                                            bool writeIndex, bool writeEssence, bool footerIndex, uint64 runInSize,
                                            DataIO::Chain & chain) = 0;
    // Appends the next essence to `chain`. `atBoundary` says whether a partition may start behind
    // it, `updater` receives a patch to apply later, `duration` grows by the seconds written.
    virtual Status writeData(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<FutureUpdater> & updater,
                             Templates::Rational<int64> & duration) = 0;
    virtual Status status() const = 0;
    virtual unsigned int kagSize() const = 0;
    virtual void kagSize(unsigned int size) = 0;

private:
    AbstractPartitionWriter(AbstractPartitionWriter const &) = delete;
    AbstractPartitionWriter & operator=(AbstractPartitionWriter const &) = delete;
};

// Writes partition packs; alone it writes partitions without metadata, index or essence.
class CommonPartitionWriter : public AbstractPartitionWriter
{
public:
    CommonPartitionWriter();
    ~CommonPartitionWriter() override;

    unsigned int bodySID() const override;
    unsigned int indexSID() const override;
    uint64 bodyOffset() const override;
    uint64 headerByteCount(Metadata::PartitionMetadata & metadata) const override;
    uint64 indexByteCount(bool footerIndex) const override;
    WrittenPartition writePartition(Metadata::PartitionMetadata * metadata, Packs::PartitionPack::PartitionKind kind,
                                    Packs::PartitionPack::PartitionStatus status, uint64 thisPartition,
                                    uint64 previousPartition, uint64 footerPartition,
                                    Types::UniversalLabel const & operationalPattern,
                                    Templates::auto_ptr<Types::Batch> essenceContainers, bool writeMetadata,
                                    bool writeIndex, bool writeEssence, bool footerIndex, uint64 runInSize,
                                    DataIO::Chain & chain) override;
    // Writes nothing: asks for a boundary, clears the updater, and says Finished.
    Status writeData(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<FutureUpdater> & updater,
                     Templates::Rational<int64> & duration) override;
    // Finished after its one partition.
    Status status() const override;
    unsigned int kagSize() const override;
    void kagSize(unsigned int size) override;

    bool partitionWritten() const { return partitionWritten_; }
    bool footerWritten() const { return footerWritten_; }

protected:
    // Serialises the pack and aligns behind it; gives the bytes written.
    virtual uint64 writePartitionPack(Packs::PartitionPack const & pack, DataIO::DataSink & sink);
    // Writes the partition head to `sink`; `packSize` receives the size of the aligned pack.
    virtual Templates::SharedPtr<Packs::PartitionPack> doWritePartition(PartitionRequest & request,
                                                                        DataIO::DataSink & sink, uint64 & packSize);
    Templates::SharedPtr<Packs::PartitionPack> createPartitionPack(PartitionRequest & request);

private:
    bool partitionWritten_;
    bool footerWritten_;
    unsigned int kagSize_;
};

// Adds header metadata with spare room and the index of a stream.
class BasePartitionWriter : public CommonPartitionWriter
{
public:
    BasePartitionWriter();
    ~BasePartitionWriter() override;

    // Metadata size, grown by the spare space up to the maximum space, then aligned.
    uint64 headerByteCount(Metadata::PartitionMetadata & metadata) const override;

    // Kind 2 at offset 0, no footer index.
    WrittenPartition writeHeader(Metadata::PartitionMetadata * metadata, Packs::PartitionPack::PartitionStatus status,
                                 uint64 footerPartition, bool writeMetadata, bool writeIndex, bool writeEssence,
                                 uint64 runInSize, DataIO::Chain & chain);
    // Kind 3, without run-in.
    WrittenPartition writeBody(Metadata::PartitionMetadata * metadata, Packs::PartitionPack::PartitionStatus status,
                               uint64 thisPartition, uint64 previousPartition, uint64 footerPartition,
                               bool writeMetadata, bool writeIndex, bool writeEssence, bool footerIndex,
                               DataIO::Chain & chain);
    // Kind 4, pointing at itself, with the closing index and no essence.
    WrittenPartition writeFooter(Metadata::PartitionMetadata * metadata, Packs::PartitionPack::PartitionStatus status,
                                 uint64 thisPartition, uint64 previousPartition, bool writeMetadata, bool writeIndex,
                                 DataIO::Chain & chain);

    // The next four do nothing here.
    virtual void updateIndex();
    virtual void writeIndexSegments(bool footerIndex, DataIO::DataSink & sink);
    virtual void updateEssenceContainerData(Metadata::PartitionMetadata & metadata,
                                            Metadata::Structural::ContentStorage * contentStorage);
    virtual void finalizeEssenceMetadata();
    virtual Metadata::PartitionMetadata::SerializationOrder serializationOrder() const;
    virtual void serializationOrder(Metadata::PartitionMetadata::SerializationOrder order);
    // Whether the stream's index follows its essence (false here).
    virtual bool indexesAfterEndOfEssence() const;
    // The alignment of the footer's pack when it is not below kagSize(); 0 for none.
    virtual void endOfFooterKAGSize(unsigned int size);
    virtual unsigned int endOfFooterKAGSize() const;

    void metadataSpareSpace(uint64 bytes);
    uint64 metadataSpareSpace() const;
    void metadataMaximumSpace(uint64 bytes);
    uint64 metadataMaximumSpace() const;

protected:
    uint64 writePartitionPack(Packs::PartitionPack const & pack, DataIO::DataSink & sink) override;
    Templates::SharedPtr<Packs::PartitionPack> doWritePartition(PartitionRequest & request, DataIO::DataSink & sink,
                                                                uint64 & packSize) override;

private:
    unsigned int endOfFooterKAGSize_;
    uint64 spareSpace_;
    uint64 maximumSpace_;
    Metadata::PartitionMetadata::SerializationOrder serializationOrder_;
};

// Writes one Generic Container: its essence, and its index through the source's generator.
class PartitionWriter : public BasePartitionWriter
{
public:
    // `countOnly`: the essence is counted in BodyOffset but not put in the chain. Throws
    // InvalidState when the source has no index generator.
    PartitionWriter(Templates::auto_ptr<GenericContainer::Source> source, unsigned int bodySID, unsigned int indexSID,
                    IndexTableGeneration bodyGeneration, IndexTableGeneration closingGeneration, bool countOnly,
                    IndexTableSegmentType segmentType);
    ~PartitionWriter() override;

    GenericContainer::Source & source() const;

    unsigned int bodySID() const override;
    unsigned int indexSID() const override;
    uint64 bodyOffset() const override;
    uint64 indexByteCount(bool footerIndex) const override;
    Status writeData(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<FutureUpdater> & updater,
                     Templates::Rational<int64> & duration) override;
    Status status() const override;
    // The source's KAG until the closing partition is written, then the writer's own.
    unsigned int kagSize() const override;
    using BasePartitionWriter::kagSize;

    void updateIndex() override;
    void writeIndexSegments(bool footerIndex, DataIO::DataSink & sink) override;
    // Adds the Essence Container Data of the source's package to the Content Storage.
    void updateEssenceContainerData(Metadata::PartitionMetadata & metadata,
                                    Metadata::Structural::ContentStorage * contentStorage) override;
    void finalizeEssenceMetadata() override;
    bool indexesAfterEndOfEssence() const override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
