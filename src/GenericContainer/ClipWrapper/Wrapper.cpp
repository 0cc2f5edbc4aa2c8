// The clip wrapper: one KLV packet per stream, settled at commit.

#include "GenericContainer/ClipWrapper/Wrapper.h"

#include "Exceptions/Exceptions.h"
#include "GenericContainer/ClipWrapper/Worker_impl.h"
#include "GenericContainer/ContainerBuilding.h"
#include "GenericContainer/ElementKey.h"
#include "Metadata/Structural/SourcePackage.h"

namespace Vellum
{
namespace GenericContainer
{
namespace ClipWrapper
{
using Templates::Rational;

namespace
{
unsigned char const CHOOSE_ELEMENT_NUMBER = 128;
// In buffer mode the element is a data element of number 0, whatever the analyzer says.
unsigned char const BUFFER_ITEM_TYPE = 0x17;

struct PendingEntry
{
    Templates::SharedPtr<EssenceAnalyzer> analyzer;
    unsigned char elementNumber;
};

typedef Templates::list<PendingEntry> PendingEntries;
} // namespace

struct Wrapper::Impl : public ContainerData
{
    Impl(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, Metadata::Structural::SourcePackage * package,
         Types::UniversalLabel const & label, Rational<int> const & rate,
         Templates::SharedPtr<DataIO::BufferSliceSource> b, uint64 size)
        : ContainerData(metadata, rate, 1, label, package), firstAnalyzer(true), nextBaseTrackID(256),
          temporalReordering(false), buffer(b), chunkSize(0), clipSize(size)
    {
    }

    void addPending(PendingEntries & list, Templates::SharedPtr<EssenceAnalyzer> const & analyzer,
                    unsigned char elementNumber);
    void buildEntry(PendingEntry const & pending, unsigned int count);

    bool firstAnalyzer;
    unsigned int nextBaseTrackID;
    TrackIDs trackIds;
    Templates::map<EssenceAnalyzer *, unsigned int> analyzerTracks;
    bool temporalReordering;
    Templates::SharedPtr<DataIO::BufferSliceSource> buffer;
    Templates::SharedPtr<DataIO::SliceSource> demultiplexer;
    unsigned int chunkSize;
    uint64 clipSize;
    PendingEntries compound, picture, sound, data;
};

Wrapper::Wrapper(Templates::SharedPtr<Metadata::PartitionMetadata> metadata,
                 Types::UniversalLabel const & essenceContainer, Rational<int> const & rate,
                 Templates::SharedPtr<DataIO::BufferSliceSource> buffer, uint64 clipSize)
    : impl_(new Impl(metadata, nullptr, essenceContainer, rate, buffer, clipSize))
{
}

Wrapper::Wrapper(Metadata::Structural::SourcePackage * package, Types::UniversalLabel const & essenceContainer,
                 Rational<int> const & rate, Templates::SharedPtr<DataIO::BufferSliceSource> buffer, uint64 clipSize)
    : impl_(new Impl(Templates::SharedPtr<Metadata::PartitionMetadata>(), package, essenceContainer, rate, buffer,
                     clipSize))
{
}

Wrapper::~Wrapper() {}

void Wrapper::addAnalyzer(Templates::SharedPtr<EssenceAnalyzer> analyzer)
{
    addAnalyzer(analyzer, CHOOSE_ELEMENT_NUMBER);
}

void Wrapper::addAnalyzer(Templates::SharedPtr<EssenceAnalyzer> analyzer, unsigned char elementNumber)
{
    Impl & d = *impl_;
    EssenceAnalyzer * a = analyzer.get();
    THROW_UNLESS_TEXT(InvalidElement, dynamic_cast<SystemAnalyzer *>(a) == nullptr,
                      "dynamic_cast <SystemAnalyzer*> (analyzer.get ()) == 0", "Trying to add a SystemAnalyzer");
    d.analyzerTracks[a] = takeTrackID(d.nextBaseTrackID, d.trackIds, a);
    if (dynamic_cast<CompoundAnalyzer *>(a) != nullptr)
    {
        THROW_UNLESS_TEXT(IndexOutOfBounds, d.compound.size() <= MAXIMUM_ITEM_COUNT,
                          "this -> compound_.size () <= MAXIMUM_ITEM_COUNT",
                          "Trying to add more CompoundAnalyzers than allowed");
        d.addPending(d.compound, analyzer, elementNumber);
    }
    else if (dynamic_cast<PictureAnalyzer *>(a) != nullptr)
    {
        THROW_UNLESS_TEXT(IndexOutOfBounds, d.picture.size() <= MAXIMUM_ITEM_COUNT,
                          "this -> picture_.size () <= MAXIMUM_ITEM_COUNT",
                          "Trying to add more PictureAnalyzers than allowed");
        d.addPending(d.picture, analyzer, elementNumber);
    }
    else if (dynamic_cast<SoundAnalyzer *>(a) != nullptr)
    {
        THROW_UNLESS_TEXT(IndexOutOfBounds, d.sound.size() <= MAXIMUM_ITEM_COUNT,
                          "this -> sound_.size () <= MAXIMUM_ITEM_COUNT",
                          "Trying to add more than SoundAnalyzers than allowed");
        d.addPending(d.sound, analyzer, elementNumber);
    }
    else if (dynamic_cast<DataAnalyzer *>(a) != nullptr)
    {
        THROW_UNLESS_TEXT(IndexOutOfBounds, d.data.size() <= MAXIMUM_ITEM_COUNT,
                          "this -> data_.size () <= MAXIMUM_ITEM_COUNT", "Trying to add more DataAnalyzers than allowed");
        d.addPending(d.data, analyzer, elementNumber);
    }
    d.kagSize = combineKAG(d.kagSize, analyzer->requiredKAGSize());
}

void Wrapper::Impl::addPending(PendingEntries & list, Templates::SharedPtr<EssenceAnalyzer> const & analyzer,
                               unsigned char elementNumber)
{
    if (firstAnalyzer)
    {
        firstAnalyzer = false;
        primaryAnalyzer = analyzer.get();
    }
    PendingEntry entry;
    entry.analyzer = analyzer;
    entry.elementNumber =
        elementNumber < CHOOSE_ELEMENT_NUMBER ? elementNumber : static_cast<unsigned char>(list.size());
    list.push_back(entry);
}

void Wrapper::Impl::buildEntry(PendingEntry const & pending, unsigned int count)
{
    EssenceAnalyzer & analyzer = *pending.analyzer;
    if (prepareAnalyzer(analyzer, packageRate, temporalReordering))
        extendedIndex = true;
    bool const bufferMode = buffer.get() != nullptr;
    AnalyzerEntry entry;
    entry.analyzer = pending.analyzer;
    entry.key = elementKey(bufferMode ? BUFFER_ITEM_TYPE : analyzer.itemTypeIdentifier(),
                           static_cast<unsigned char>(count), analyzer.essenceElementType(),
                           bufferMode ? 0 : pending.elementNumber);
    if (partitionMetadata.get() != nullptr)
    {
        Templates::map<EssenceAnalyzer *, unsigned int>::const_iterator found = analyzerTracks.find(&analyzer);
        unsigned int const trackId = found != analyzerTracks.end() ? found->second
                                                                  : takeTrackID(nextBaseTrackID, trackIds, &analyzer);
        analyzer.setMetadata(*partitionMetadata, sourcePackage, trackNumberOfKey(entry.key), trackId);
        if (sourcePackage != nullptr && !bufferMode)
            setDescriptorWrapping(*sourcePackage, trackId, true);
    }
    entry.entryByteCount = bufferMode || !analyzer.isCBE() ? 0 : analyzer.boundedEditUnitSize();
    if (!bufferMode && entry.entryByteCount == 0)
        extendedIndex = true;
    entries.push_back(entry);
}

Templates::auto_ptr<Source> Wrapper::commit()
{
    Impl & d = *impl_;
    if (d.partitionMetadata.get() != nullptr)
    {
        d.sourcePackage = createSourcePackage(
            *d.partitionMetadata, packageMaterialType(d.compound.size(), d.picture.size(), d.sound.size(), d.data.size()));
        if (d.compound.size() + d.picture.size() + d.sound.size() + d.data.size() > 1)
            createMultipleDescriptor(*d.partitionMetadata, *d.sourcePackage, d.packageRate, d.essenceContainer);
    }
    for (PendingEntries const * list : {&d.compound, &d.picture, &d.sound, &d.data})
        for (PendingEntry const & pending : *list)
            d.buildEntry(pending, static_cast<unsigned int>(list->size()));
    Worker_impl * worker = new Worker_impl(d, d.buffer, d.clipSize);
    Templates::auto_ptr<Source> source(worker);
    if (d.demultiplexer.get() != nullptr)
        worker->demultiplexerSource(d.demultiplexer, d.chunkSize);
    return source;
}

void Wrapper::demultiplexerSource(Templates::SharedPtr<DataIO::SliceSource> source, unsigned int chunkSize)
{
    impl_->demultiplexer = source;
    impl_->chunkSize = chunkSize;
}

void Wrapper::kagSize(unsigned int size) { impl_->kagSize = combineKAG(impl_->kagSize, size); }

void Wrapper::defaultStartTimecode(bool force, unsigned char hours, unsigned char minutes, unsigned char seconds,
                                   unsigned char frames)
{
    impl_->ContainerData::defaultStartTimecode(force, hours, minutes, seconds, frames);
}

void Wrapper::suppressTimecodeDiscontinuities(bool value) { impl_->ContainerData::suppressTimecodeDiscontinuities(value); }

void Wrapper::generateTimecodeTrack(bool value) { impl_->ContainerData::generateTimecodeTrack(value); }

bool Wrapper::nextBaseTrackID(unsigned int id)
{
    if (impl_->trackIds.find(id) != impl_->trackIds.end())
        return false;
    impl_->nextBaseTrackID = id;
    return true;
}

unsigned int Wrapper::nextBaseTrackID() const { return impl_->nextBaseTrackID; }
} // namespace ClipWrapper
} // namespace GenericContainer
} // namespace Vellum
