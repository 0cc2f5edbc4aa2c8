#include "MXFIO/PullCreator.h"

#include <algorithm>

#include "DataIO/ChainDataSinkAdapter.h"
#include "Exceptions/Exceptions.h"
#include "GenericContainer/Source.h"
#include "GenericStream/Source.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "MXFIO/SourceHandlers.h"
#include "MXFIO/WriterSupport.h"
#include "Packs/RandomIndexPack.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
using Packs::PartitionPack;
typedef Templates::Rational<int64> Seconds;
typedef Templates::map<unsigned int, Templates::auto_ptr<BaseSourceHandler>> Handlers;
typedef Templates::list<Templates::auto_ptr<GenericContainer::Source>> ConsumeOnlySources;

uint64 const RIP_BLOCK_SIZE = 1024;

Metadata::Structural::ContentStorage * contentStorageOf(Metadata::PartitionMetadata & metadata)
{
    Templates::vector<Metadata::MetadataSet *> found =
        metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    Metadata::Structural::Preface * preface =
        found.empty() ? nullptr : Metadata::Structural::metadataSetAs<Metadata::Structural::Preface>(found.front());
    return preface != nullptr ? preface->contentStorage() : nullptr;
}
} // namespace

unsigned int DefaultSIDGenerator::bodySID(unsigned int source)
{
    return 2 * source - 1;
}

unsigned int DefaultSIDGenerator::indexSID(unsigned int source)
{
    return 2 * source;
}

struct PullCreator::Impl
{
    Impl(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, uint64 spare, uint64 maximum, uint64 runIn);

    void checkNotStarted() const;
    void start(PartitionPack::PartitionStatus status, DataIO::Chain & chain);
    void consume();
    void essence(PartitionPack::PartitionStatus status, DataIO::Chain & chain);
    void sourceEnded();
    void essenceFinished();
    void footer(PartitionPack::PartitionStatus status, DataIO::Chain & chain);
    void writeHeader(PartitionPack::PartitionStatus status, DataIO::Chain & chain);
    void writeBody(PartitionPack::PartitionStatus status, DataIO::Chain & chain);
    bool metadataDue();
    void nextSource();
    Handlers::iterator firstSource();
    Status afterHeaderOrConsumption() const;
    void dropCurrent();
    // The offset (from the end of the run-in) at which the chain's next byte lands.
    uint64 offset(DataIO::Chain const & chain) const { return bytesWritten + chain.data_size() - unitStart; }
    void partitionWritten(uint64 at, WrittenPartition const & written);

    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    uint64 spareSpace;
    uint64 maximumSpace;
    bool writeRIP;
    bool footerHasMetadata;
    unsigned int repetitionPeriod;
    unsigned int repetitionCounter;
    unsigned int editUnitsPerPartition;
    bool headerHasEssence;
    Seconds multiplexPeriod;
    uint64 runInSize;
    bool runInKagAligned;
    Metadata::PartitionMetadata::SerializationOrder order;
    Packs::RandomIndexPack rip;
    uint64 previousPartition;
    Status status;
    bool newPartitionWanted;
    bool essenceDone;
    Handlers handlers;
    Handlers::iterator current;
    ConsumeOnlySources consumeOnly;
    ConsumeOnlySources::iterator currentConsumeOnly;
    Templates::vector<CreatorListener *> listeners;
    uint64 bytesWritten;
    Templates::auto_ptr<AbstractSIDGenerator> sidGenerator;
    unsigned int sourceCounter;
    bool partitionAllowed;
    unsigned int nonEssenceKAGSize;
    bool firstContainerForHeaderIndex;
    // The writer of the partitions without a stream; kept for the footer when its handler has
    // gone.
    Templates::SharedPtr<BasePartitionWriter> baseWriter;
    bool started;
    bool failed;
    uint64 unitStart;
};

PullCreator::Impl::Impl(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, uint64 spare, uint64 maximum,
                        uint64 runIn)
    : metadata(metadata), spareSpace(spare), maximumSpace(maximum), writeRIP(true), footerHasMetadata(true),
      repetitionPeriod(0), repetitionCounter(0), editUnitsPerPartition(0), headerHasEssence(true),
      multiplexPeriod(0, 1), runInSize(runIn), runInKagAligned(false), order(Metadata::PartitionMetadata::PrefaceThenKeys),
      previousPartition(0), status(BeforeHeader), newPartitionWanted(false), essenceDone(false), bytesWritten(0),
      sidGenerator(new DefaultSIDGenerator), sourceCounter(0), partitionAllowed(true), nonEssenceKAGSize(1),
      firstContainerForHeaderIndex(false), baseWriter(new BasePartitionWriter), started(false), failed(false),
      unitStart(0)
{
    baseWriter->metadataSpareSpace(spare);
    baseWriter->metadataMaximumSpace(maximum);
    handlers[0].reset(new GenericContainerSourceHandler(baseWriter));
    current = handlers.begin();
    currentConsumeOnly = consumeOnly.begin();
}

void PullCreator::Impl::checkNotStarted() const
{
    THROW_UNLESS(InvalidState, !started, "Sources must be added before the first nextUnit.");
}

PullCreator::PullCreator(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, uint64 spareSpace,
                         uint64 maximumSpace, uint64 runInSize)
    : impl_(new Impl(metadata, spareSpace, maximumSpace, runInSize))
{
}

PullCreator::~PullCreator() {}

unsigned int PullCreator::addEssenceContainer(Templates::auto_ptr<GenericContainer::Source> source,
                                              IndexTableGeneration bodyGeneration,
                                              IndexTableGeneration closingGeneration, bool consumeOnly,
                                              IndexTableSegmentType segmentType)
{
    impl_->checkNotStarted();
    THROW_UNLESS(InvalidValue, source.get() != nullptr, "The essence container source must be valid object!");
    if (consumeOnly)
    {
        impl_->consumeOnly.push_back(std::move(source));
        return 0;
    }
    unsigned int const counter = impl_->sourceCounter + 1;
    unsigned int const currentBodySID = impl_->sidGenerator->bodySID(counter);
    THROW_UNLESS(InvalidValue, currentBodySID > 0, "BodySID value must be greater than 0!");
    unsigned int const currentIndexSID = impl_->sidGenerator->indexSID(counter);
    THROW_UNLESS(InvalidValue, currentIndexSID > 0, "IndexSID value must be greater than 0!");
    THROW_UNLESS(InvalidValue, impl_->handlers.count(currentBodySID) == 0, "BodySID value is already in use!");
    Templates::SharedPtr<BasePartitionWriter> writer(new PartitionWriter(
        std::move(source), currentBodySID, currentIndexSID, bodyGeneration, closingGeneration, false, segmentType));
    writer->metadataSpareSpace(impl_->spareSpace);
    writer->metadataMaximumSpace(impl_->maximumSpace);
    writer->serializationOrder(impl_->order);
    impl_->handlers[currentBodySID].reset(new GenericContainerSourceHandler(writer));
    impl_->sourceCounter = counter;
    return currentBodySID;
}

unsigned int PullCreator::addGenericStream(Templates::auto_ptr<GenericStream::Source> source, unsigned int kagSize)
{
    impl_->checkNotStarted();
    THROW_UNLESS(InvalidValue, source.get() != nullptr, "The generic stream source must be valid object!");
    unsigned int const counter = impl_->sourceCounter + 1;
    unsigned int const currentBodySID = impl_->sidGenerator->bodySID(counter);
    THROW_UNLESS(InvalidValue, currentBodySID > 0, "BodySID value must be greater than 0!");
    THROW_UNLESS(InvalidValue, impl_->handlers.count(currentBodySID) == 0, "BodySID value is already in use!");
    Templates::SharedPtr<GenericStreamPartitionWriter> writer(
        new GenericStreamPartitionWriter(std::move(source), currentBodySID));
    if (kagSize != 0)
        writer->kagSize(kagSize);
    impl_->handlers[currentBodySID].reset(new GenericStreamSourceHandler(writer));
    impl_->sourceCounter = counter;
    return currentBodySID;
}

Templates::vector<GenericContainer::Source const *> PullCreator::creatorSources() const
{
    Templates::vector<GenericContainer::Source const *> sources;
    for (Handlers::const_iterator it = impl_->handlers.begin(); it != impl_->handlers.end(); ++it)
        if (PartitionWriter const * writer = dynamic_cast<PartitionWriter const *>(&it->second->writer()))
            sources.push_back(&writer->source());
    for (ConsumeOnlySources::const_iterator it = impl_->consumeOnly.begin(); it != impl_->consumeOnly.end(); ++it)
        sources.push_back(it->get());
    return sources;
}

PullCreator::Status PullCreator::nextUnit(PartitionPack::PartitionStatus partitionStatus, DataIO::Chain & chain)
{
    Impl & impl = *impl_;
    THROW_UNLESS(InvalidState, !impl.failed, "The creator stopped at a failure: its output is incomplete.");
    impl.started = true;
    impl.unitStart = chain.data_size();
    // A failure leaves the creator between two states: no later call may build on it.
    impl.failed = true;
    switch (impl.status)
    {
    case BeforeHeader:
        impl.start(partitionStatus, chain);
        break;
    case ConsumingSources:
        impl.consume();
        break;
    case EssenceWriting:
        impl.essence(partitionStatus, chain);
        break;
    case FooterNext:
        impl.footer(partitionStatus, chain);
        break;
    case Finished:
        break;
    }
    impl.failed = false;
    impl.bytesWritten += chain.data_size() - impl.unitStart;
    return impl.status;
}

PullCreator::Status PullCreator::nextUnit(bool closed, DataIO::Chain & chain)
{
    PartitionPack::PartitionStatus partitionStatus = PartitionPack::ClosedComplete;
    if (impl_->status == BeforeHeader || impl_->status == FooterNext)
    {
        if (impl_->metadata.get() != nullptr)
            partitionStatus = Metadata::verifyPartitionMetadataStatus(*impl_->metadata, closed);
    }
    else if (impl_->status == EssenceWriting)
        partitionStatus = closed ? PartitionPack::ClosedIncomplete : PartitionPack::OpenIncomplete;
    return nextUnit(partitionStatus, chain);
}

PullCreator::Status PullCreator::status() const
{
    return impl_->status;
}

// Setters.

void PullCreator::metadataSpareSpace(uint64 bytes)
{
    impl_->spareSpace = bytes;
    impl_->baseWriter->metadataSpareSpace(bytes);
}

void PullCreator::metadataMaximumSpace(uint64 bytes)
{
    impl_->maximumSpace = bytes;
    impl_->baseWriter->metadataMaximumSpace(bytes);
}

void PullCreator::writeRIP(bool write)
{
    impl_->writeRIP = write;
}

void PullCreator::footerHasMetadata(bool has)
{
    impl_->footerHasMetadata = has;
}

void PullCreator::metadataRepetitionPeriod(unsigned int period)
{
    impl_->repetitionPeriod = period;
    impl_->repetitionCounter = period;
}

void PullCreator::masterEditUnitsPerPartition(unsigned int editUnits)
{
    impl_->editUnitsPerPartition = editUnits;
}

void PullCreator::headerPartitionHasEssence(bool has)
{
    impl_->headerHasEssence = has;
}

void PullCreator::partitionMultiplexPeriod(Templates::Rational<int64> const & period)
{
    impl_->multiplexPeriod = period;
}

void PullCreator::runInKagAligned(bool aligned)
{
    impl_->runInKagAligned = aligned;
}

bool PullCreator::runInKagAligned() const
{
    return impl_->runInKagAligned;
}

uint64 PullCreator::runInSize() const
{
    return impl_->runInSize;
}

void PullCreator::serializationOrder(Metadata::PartitionMetadata::SerializationOrder order)
{
    impl_->order = order;
    for (Handlers::iterator it = impl_->handlers.begin(); it != impl_->handlers.end(); ++it)
        if (BasePartitionWriter * writer = it->second->basePartitionWriter())
            writer->serializationOrder(order);
}

Metadata::PartitionMetadata::SerializationOrder PullCreator::serializationOrder() const
{
    return impl_->order;
}

void PullCreator::sidGenerator(Templates::auto_ptr<AbstractSIDGenerator> sidGenerator)
{
    THROW_UNLESS_TEXT(InvalidValue, sidGenerator.get() != 0, "sidGenerator.get () != 0",
                      "SID Generator must be valid object!");
    impl_->sidGenerator = std::move(sidGenerator);
}

void PullCreator::nonEssenceKAGSize(unsigned int size)
{
    impl_->nonEssenceKAGSize = size;
}

void PullCreator::footerKagAlignSize(unsigned int size)
{
    impl_->nonEssenceKAGSize = size;
}

void PullCreator::useFirstContainerForIndexTableGenerationOnHeader(bool use)
{
    impl_->firstContainerForHeaderIndex = use;
}

void PullCreator::addListener(CreatorListener * listener)
{
    if (std::find(impl_->listeners.begin(), impl_->listeners.end(), listener) == impl_->listeners.end())
        impl_->listeners.push_back(listener);
}

void PullCreator::removeListener(CreatorListener * listener)
{
    impl_->listeners.erase(std::remove(impl_->listeners.begin(), impl_->listeners.end(), listener),
                           impl_->listeners.end());
}

Templates::SharedPtr<Metadata::PartitionMetadata> PullCreator::metadata() const
{
    return impl_->metadata;
}

uint64 PullCreator::bytesWritten() const
{
    return impl_->bytesWritten;
}

// The steps of nextUnit.

Handlers::iterator PullCreator::Impl::firstSource()
{
    Handlers::iterator first = handlers.begin();
    if (handlers.size() > 1)
        ++first;
    return first;
}

PullCreator::Status PullCreator::Impl::afterHeaderOrConsumption() const
{
    return handlers.size() <= 1 ? FooterNext : EssenceWriting;
}

void PullCreator::Impl::partitionWritten(uint64 at, WrittenPartition const & written)
{
    rip.add(written.first->bodySID(), at);
    previousPartition = at;
    for (Templates::vector<CreatorListener *>::iterator it = listeners.begin(); it != listeners.end(); ++it)
        (*it)->partitionWritten(at, written.first, written.second);
}

void PullCreator::Impl::start(PartitionPack::PartitionStatus partitionStatus, DataIO::Chain & chain)
{
    current = firstSource();
    currentConsumeOnly = consumeOnly.begin();
    if (metadata.get() != nullptr)
    {
        Metadata::Structural::ContentStorage * storage = contentStorageOf(*metadata);
        if (storage != nullptr && storage->essenceContainerDataCount() == 0)
            for (Handlers::iterator it = handlers.begin(); it != handlers.end(); ++it)
                it->second->updateEssenceContainerData(*metadata, storage);
    }
    writeHeader(partitionStatus, chain);
    newPartitionWanted = !headerHasEssence;
    status = !consumeOnly.empty() ? ConsumingSources : afterHeaderOrConsumption();
    if (!headerHasEssence)
        nextSource();
}

void PullCreator::Impl::writeHeader(PartitionPack::PartitionStatus partitionStatus, DataIO::Chain & chain)
{
    Handlers::iterator chosen = handlers.begin();
    if (headerHasEssence || firstContainerForHeaderIndex)
        for (Handlers::iterator it = firstSource(); it != handlers.end(); ++it)
            if (it->first != 0 && dynamic_cast<PartitionWriter *>(&it->second->writer()) != nullptr)
            {
                chosen = it;
                break;
            }
    bool const hasEssence = chosen->first != 0 && headerHasEssence;
    BasePartitionWriter * writer = chosen->second->basePartitionWriter();
    uint64 const at = offset(chain);
    WrittenPartition written = writer->writeHeader(metadata.get(), partitionStatus, 0, true, true, hasEssence,
                                                   runInKagAligned ? runInSize : 0, chain);
    partitionWritten(at, written);
    if (hasEssence)
        current = chosen;
}

void PullCreator::Impl::consume()
{
    if (currentConsumeOnly == consumeOnly.end())
    {
        status = afterHeaderOrConsumption();
        return;
    }
    GenericContainer::Source & source = **currentConsumeOnly;
    DataIO::Chain scratch;
    bool more = true;
    while (scratch.empty() && more)
    {
        bool atBoundary = true;
        Templates::SharedPtr<FutureUpdater> updater;
        Seconds duration(0, 1);
        more = source.next(scratch, atBoundary, updater, duration);
    }
    if (!more || source.done())
    {
        source.finalize();
        ++currentConsumeOnly;
    }
}

bool PullCreator::Impl::metadataDue()
{
    if (metadata.get() == nullptr || repetitionPeriod == 0)
        return false;
    if (repetitionCounter > 1)
    {
        --repetitionCounter;
        return false;
    }
    repetitionCounter = repetitionPeriod;
    return true;
}

void PullCreator::Impl::writeBody(PartitionPack::PartitionStatus partitionStatus, DataIO::Chain & chain)
{
    BaseSourceHandler & handler = *current->second;
    bool const writeEssence = current->first != 0 && !essenceDone;
    uint64 const at = offset(chain);
    WrittenPartition written = handler.writePartition(metadata.get(), partitionStatus, at, previousPartition,
                                                      metadataDue(), writeEssence, essenceDone, chain);
    handler.editUnits = 0;
    partitionWritten(at, written);
}

void PullCreator::Impl::dropCurrent()
{
    current = handlers.erase(current);
    if (current == handlers.end())
        current = handlers.begin();
    if (handlers.size() <= 1)
        status = FooterNext;
}

void PullCreator::Impl::essence(PartitionPack::PartitionStatus partitionStatus, DataIO::Chain & chain)
{
    if (newPartitionWanted && partitionAllowed)
    {
        writeBody(partitionStatus, chain);
        if (!essenceDone)
            newPartitionWanted = false;
        else
            dropCurrent();
        return;
    }
    BaseSourceHandler & handler = *current->second;
    Templates::SharedPtr<FutureUpdater> updater;
    uint64 const at = offset(chain);
    handler.writeData(chain, partitionAllowed, updater);
    if (updater.get() != nullptr)
        for (Templates::vector<CreatorListener *>::iterator it = listeners.begin(); it != listeners.end(); ++it)
            (*it)->updaterProduced(at, updater);
    if (handler.writer().status() == AbstractPartitionWriter::Finished)
    {
        sourceEnded();
        return;
    }
    if (editUnitsPerPartition != 0 && handler.editUnits >= editUnitsPerPartition)
    {
        newPartitionWanted = true;
        handler.editUnits = 0;
    }
    if (multiplexPeriod == Seconds(0, 1) || handler.position < multiplexPeriod)
        return;
    nextSource();
}

void PullCreator::Impl::sourceEnded()
{
    current->second->finish();
    Handlers::iterator const ended = current;
    nextSource();
    newPartitionWanted = true;
    if (current == ended)
        essenceFinished();
}

void PullCreator::Impl::essenceFinished()
{
    for (Handlers::iterator it = handlers.begin(); it != handlers.end();)
        if (it->first != 0 && !it->second->hasWorkAfterEssence())
            it = handlers.erase(it);
        else
            ++it;
    if (handlers.size() > 1)
        handlers.erase(handlers.begin());
    essenceDone = true;
    partitionAllowed = true;
    current = handlers.begin();
    // The last stream with work left closes the file: its index goes to the footer.
    if (handlers.size() <= 1)
        status = FooterNext;
}

void PullCreator::Impl::nextSource()
{
    if (handlers.size() <= 1)
        return;
    Handlers::iterator it = current;
    for (size_t step = 0, steps = 2 * handlers.size(); step < steps; ++step)
    {
        ++it;
        if (it == handlers.end())
            it = firstSource();
        if (it->second->writer().status() == AbstractPartitionWriter::Finished)
            continue;
        if (it != current)
        {
            // The rest of the leaving source's turn is carried into its next one.
            if (multiplexPeriod != Seconds(0, 1) && !(current->second->position < multiplexPeriod))
                current->second->position -= multiplexPeriod;
            current = it;
            current->second->editUnits = 0;
            newPartitionWanted = true;
        }
        return;
    }
}

void PullCreator::Impl::footer(PartitionPack::PartitionStatus partitionStatus, DataIO::Chain & chain)
{
    BasePartitionWriter * writer = handlers.empty() ? nullptr : current->second->basePartitionWriter();
    if (writer == nullptr)
        writer = baseWriter.get();
    writer->kagSize(nonEssenceKAGSize);
    uint64 const at = offset(chain);
    WrittenPartition written =
        writer->writeFooter(metadata.get(), partitionStatus, at, previousPartition, footerHasMetadata, true, chain);
    partitionWritten(at, written);
    if (writeRIP)
    {
        DataIO::ChainDataSinkAdapter sink(chain, offset(chain), RIP_BLOCK_SIZE);
        rip.serialize(sink);
    }
    status = Finished;
}
} // namespace MXFIO
} // namespace Vellum
