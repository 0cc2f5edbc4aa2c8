#pragma once
// Assembles a whole file from essence sources: the host adds sources, then calls nextUnit until
// the status is Finished; each call appends a bounded piece of the file to a chain that the host
// drains. The creator decides when partitions start, which source writes next, what each
// partition holds, and when the file ends.

#include "DataIO/Chain.h"
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

namespace Vellum
{
namespace GenericContainer
{
class Source;
}
namespace GenericStream
{
class Source;
}

namespace MXFIO
{
// Hands out the body and index SIDs of the n-th source added (n from 1).
class AbstractSIDGenerator
{
public:
    VELLUM_CLASS_ALLOCATION
    AbstractSIDGenerator() {}
    virtual ~AbstractSIDGenerator() {}
    virtual unsigned int bodySID(unsigned int source) = 0;
    virtual unsigned int indexSID(unsigned int source) = 0;

private:
    AbstractSIDGenerator(AbstractSIDGenerator const &) = delete;
    AbstractSIDGenerator & operator=(AbstractSIDGenerator const &) = delete;
};

// Body SID 2n - 1 and index SID 2n: the first source has 1 and 2, the second 3 and 4.
class DefaultSIDGenerator : public AbstractSIDGenerator
{
public:
    unsigned int bodySID(unsigned int source) override;
    unsigned int indexSID(unsigned int source) override;
};

// Hears where partition packs and patches went; offsets count from the end of the run-in.
class CreatorListener
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~CreatorListener() {}
    virtual void partitionWritten(uint64 offset, Templates::SharedPtr<Packs::PartitionPack> pack,
                                  uint64 packSize) = 0;
    virtual void updaterProduced(uint64 offset, Templates::SharedPtr<FutureUpdater> updater) = 0;
};

class PullCreator
{
public:
    VELLUM_CLASS_ALLOCATION

    enum Status
    {
        // The header partition comes next.
        BeforeHeader = 0,
        // Consume-only sources are being drained.
        ConsumingSources = 1,
        EssenceWriting = 2,
        // The footer partition comes next.
        FooterNext = 3,
        Finished = 4
    };

    // `runInSize`: bytes that precede the header partition in the file.
    PullCreator(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, uint64 spareSpace, uint64 maximumSpace,
                uint64 runInSize);
    virtual ~PullCreator();

    // Sources must be added before the first nextUnit (InvalidState otherwise). Gives the body
    // SID, or 0 for a consume-only source, which is drained and finished but never written.
    unsigned int addEssenceContainer(Templates::auto_ptr<GenericContainer::Source> source,
                                     IndexTableGeneration bodyGeneration, IndexTableGeneration closingGeneration,
                                     bool consumeOnly, IndexTableSegmentType segmentType);
    // A Generic Stream in partitions of its own; `kagSize` 0 keeps the source's KAG.
    unsigned int addGenericStream(Templates::auto_ptr<GenericStream::Source> source, unsigned int kagSize);
    Templates::vector<GenericContainer::Source const *> creatorSources() const;

    // Appends the next piece of the file to `chain`; `partitionStatus` is the status of a
    // partition written by this call that carries metadata.
    Status nextUnit(Packs::PartitionPack::PartitionStatus partitionStatus, DataIO::Chain & chain);
    // The status from the metadata: closed when `closed` is asked and nothing is open.
    Status nextUnit(bool closed, DataIO::Chain & chain);
    Status status() const;

    void metadataSpareSpace(uint64 bytes);
    void metadataMaximumSpace(uint64 bytes);
    void writeRIP(bool write);
    void footerHasMetadata(bool has);
    // Body partitions repeat the metadata every `period` partitions; 0 never.
    void metadataRepetitionPeriod(unsigned int period);
    // A new body partition after so many edit units of a source; 0 for no limit.
    void masterEditUnitsPerPartition(unsigned int editUnits);
    void headerPartitionHasEssence(bool has);
    // The seconds that each source writes in its turn; 0 lets one source write to its end.
    void partitionMultiplexPeriod(Templates::Rational<int64> const & period);
    void runInKagAligned(bool aligned);
    bool runInKagAligned() const;
    uint64 runInSize() const;
    void serializationOrder(Metadata::PartitionMetadata::SerializationOrder order);
    Metadata::PartitionMetadata::SerializationOrder serializationOrder() const;
    // InvalidValue for a null generator.
    void sidGenerator(Templates::auto_ptr<AbstractSIDGenerator> sidGenerator);
    // The KAG of the partitions without essence, the footer's among them.
    void nonEssenceKAGSize(unsigned int size);
    void footerKagAlignSize(unsigned int size);
    void useFirstContainerForIndexTableGenerationOnHeader(bool use);

    void addListener(CreatorListener * listener);
    void removeListener(CreatorListener * listener);

    Templates::SharedPtr<Metadata::PartitionMetadata> metadata() const;
    // Bytes handed out so far, the run-in not counted.
    uint64 bytesWritten() const;

private:
    PullCreator(PullCreator const &) = delete;
    PullCreator & operator=(PullCreator const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
