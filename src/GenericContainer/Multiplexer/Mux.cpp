// The frame multiplexer: the layout of a content package, settled at commit.

#include "GenericContainer/Multiplexer/Mux.h"

#include "Exceptions/Exceptions.h"
#include "GenericContainer/ContainerBuilding.h"
#include "GenericContainer/ElementKey.h"
#include "GenericContainer/Multiplexer/FrameWorker_impl.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Utils/Padding.h"

namespace Vellum
{
namespace GenericContainer
{
namespace Multiplexer
{
using Templates::Rational;

namespace
{
unsigned char const CHOOSE_ELEMENT_NUMBER = 128;
// S436M data elements: item type, and the element types of VBI lines and ANC packets.
unsigned char const S436M_ITEM_TYPE = 0x17;
unsigned char const S436M_VBI_ELEMENT = 0x01;
unsigned char const S436M_ANC_ELEMENT = 0x02;

struct PendingEntry
{
    Templates::SharedPtr<EssenceAnalyzer> analyzer;
    bool padToKag;
    Rational<int64> temporalOffset;
    unsigned char elementNumber;
    unsigned int trackId;
};

typedef Templates::list<PendingEntry> PendingEntries;

// Whole units of the analyzer in one content package: 1 at the same or a lower rate.
int64 itemsPerPackage(EssenceAnalyzer const & analyzer, Rational<int> const & packageRate)
{
    Rational<int64> const edit(analyzer.editRate().numerator(), analyzer.editRate().denominator());
    Rational<int64> const package(packageRate.numerator(), packageRate.denominator());
    Rational<int64> const items = (edit + package - 1) / package;
    return items.numerator() / items.denominator();
}
} // namespace

struct Mux::Impl : public ContainerData
{
    Impl(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, Metadata::Structural::SourcePackage * package,
         Types::UniversalLabel const & label, Rational<int> const & rate)
        : ContainerData(metadata, rate, 1, label, package), multipleDescriptor(nullptr), firstAnalyzer(true),
          nextBaseTrackID(256), systemPadding(false), temporalReordering(false), padding(Element), klLength(20),
          useInputOrder(false), vbiDataAnalyzerExists(false), ancPacketsAnalyzerExists(false)
    {
        paddAll(-1);
    }

    void paddAll(int32 size)
    {
        editUnitPaddedSize = systemItemPaddedSize = compoundItemPaddedSize = pictureItemPaddedSize =
            soundItemPaddedSize = dataItemPaddedSize = size;
    }
    void addPending(PendingEntries & list, Templates::SharedPtr<EssenceAnalyzer> const & analyzer, bool padToKag,
                    Rational<int64> const & temporalOffset, unsigned char elementNumber, unsigned int trackId);
    unsigned char dataElementNumber(EssenceAnalyzer & analyzer, unsigned char elementNumber);
    uint32 elementSize(EssenceAnalyzer & analyzer, bool isSystem, bool & pad);
    void roundPaddedSizes();
    void buildSystemEntry();
    void buildItemEntries(PendingEntries const & list, int32 & itemSize);
    void buildEntry(PendingEntry const & pending, unsigned int index, unsigned int count, int32 itemSize);
    PendingEntries * listOf(int kind);
    int32 * itemSizeOf(int kind);

    Metadata::Structural::MultipleDescriptor * multipleDescriptor;
    bool firstAnalyzer;
    unsigned int nextBaseTrackID;
    TrackIDs trackIds;
    bool systemPadding;
    bool temporalReordering;
    PaddingKind padding;
    unsigned int klLength;
    PendingEntries compound, picture, sound, data;
    bool useInputOrder;
    Templates::list<int> kindOrder;
    Templates::set<int> kindsSeen;
    bool vbiDataAnalyzerExists;
    bool ancPacketsAnalyzerExists;
};

Mux::Mux(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, Types::UniversalLabel const & essenceContainer,
         Rational<int> const & rate)
    : impl_(new Impl(metadata, nullptr, essenceContainer, rate))
{
}

Mux::Mux(Metadata::Structural::SourcePackage * package, Types::UniversalLabel const & essenceContainer,
         Rational<int> const & rate)
    : impl_(new Impl(Templates::SharedPtr<Metadata::PartitionMetadata>(), package, essenceContainer, rate))
{
}

Mux::~Mux() {}

void Mux::addAnalyzer(Templates::SharedPtr<EssenceAnalyzer> analyzer, bool padToKag,
                      Rational<int64> const & temporalOffset)
{
    addAnalyzer(analyzer, padToKag, temporalOffset, CHOOSE_ELEMENT_NUMBER);
}

void Mux::addAnalyzer(Templates::SharedPtr<EssenceAnalyzer> analyzer, bool padToKag,
                      Rational<int64> const & temporalOffset, unsigned char elementNumber)
{
    Impl & d = *impl_;
    unsigned int const trackId = takeTrackID(d.nextBaseTrackID, d.trackIds, analyzer.get());
    int const kind = analyzer->essenceAnalyzerType();
    switch (kind)
    {
    case EssenceAnalyzer::System:
        THROW_UNLESS_TEXT(AlreadySet, d.systemAnalyzer.get() == nullptr, "system_.get () == 0",
                          "Trying to add more than one SystemAnalyzer");
        d.firstAnalyzer = false;
        d.primaryAnalyzer = analyzer.get();
        d.systemPadding = padToKag;
        d.systemAnalyzer = analyzer;
        break;
    case EssenceAnalyzer::Compound:
        THROW_UNLESS_TEXT(IndexOutOfBounds, d.compound.size() <= MAXIMUM_ITEM_COUNT,
                          "compound_.size () <= MAXIMUM_ITEM_COUNT", "Trying to add more CompoundAnalyzers than allowed");
        d.addPending(d.compound, analyzer, padToKag, temporalOffset, elementNumber, trackId);
        break;
    case EssenceAnalyzer::Picture:
        THROW_UNLESS_TEXT(IndexOutOfBounds, d.picture.size() <= MAXIMUM_ITEM_COUNT,
                          "picture_.size () <= MAXIMUM_ITEM_COUNT", "Trying to add more PictureAnalyzers than allowed");
        d.addPending(d.picture, analyzer, padToKag, temporalOffset, elementNumber, trackId);
        break;
    case EssenceAnalyzer::Sound:
        THROW_UNLESS_TEXT(IndexOutOfBounds, d.sound.size() <= MAXIMUM_ITEM_COUNT,
                          "sound_.size () <= MAXIMUM_ITEM_COUNT", "Trying to add more than SoundAnalyzers than allowed");
        d.addPending(d.sound, analyzer, padToKag, temporalOffset, elementNumber, trackId);
        break;
    case EssenceAnalyzer::Data:
        THROW_UNLESS_TEXT(IndexOutOfBounds, d.data.size() <= MAXIMUM_ITEM_COUNT, "data_.size () <= MAXIMUM_ITEM_COUNT",
                          "Trying to add more than DataAnalyzers than allowed");
        d.addPending(d.data, analyzer, padToKag, temporalOffset, d.dataElementNumber(*analyzer, elementNumber),
                     trackId);
        break;
    default: break;
    }
    if (d.kindsSeen.insert(kind).second)
        d.kindOrder.push_back(kind);
    d.kagSize = combineKAG(d.kagSize, analyzer->requiredKAGSize());
}

void Mux::Impl::addPending(PendingEntries & list, Templates::SharedPtr<EssenceAnalyzer> const & analyzer,
                           bool padToKag, Rational<int64> const & temporalOffset, unsigned char elementNumber,
                           unsigned int trackId)
{
    if (firstAnalyzer)
    {
        firstAnalyzer = false;
        primaryAnalyzer = analyzer.get();
    }
    PendingEntry entry;
    entry.analyzer = analyzer;
    entry.padToKag = padToKag;
    entry.temporalOffset = temporalOffset;
    entry.elementNumber =
        elementNumber < CHOOSE_ELEMENT_NUMBER ? elementNumber : static_cast<unsigned char>(list.size());
    entry.trackId = trackId;
    list.push_back(entry);
}

// VBI lines and ANC packets take element number 1, one of each at most; other data elements
// count from 2.
unsigned char Mux::Impl::dataElementNumber(EssenceAnalyzer & analyzer, unsigned char elementNumber)
{
    if (elementNumber < CHOOSE_ELEMENT_NUMBER)
        return elementNumber;
    bool const s436m = analyzer.itemTypeIdentifier() == S436M_ITEM_TYPE;
    if (s436m && analyzer.essenceElementType() == S436M_VBI_ELEMENT)
    {
        THROW_UNLESS_TEXT(InvalidFormat, !vbiDataAnalyzerExists, "vbiDataAnalyzerExists_ == false",
                          "There can be only one VBIDataAnalyzer per Content Package (S436M-4.2).");
        vbiDataAnalyzerExists = true;
        return 1;
    }
    if (s436m && analyzer.essenceElementType() == S436M_ANC_ELEMENT)
    {
        THROW_UNLESS_TEXT(InvalidFormat, !ancPacketsAnalyzerExists, "ancPacketsAnalyzerExists_ == false",
                          "There can be only one ANCPacketsAnalyzer per Content Package (S436M-4.2).");
        ancPacketsAnalyzerExists = true;
        return 1;
    }
    return static_cast<unsigned char>(data.size() + 2);
}

uint32 Mux::Impl::elementSize(EssenceAnalyzer & analyzer, bool isSystem, bool & pad)
{
    if (!pad && !analyzer.isCBE())
        return 0;
    uint64 const bound = analyzer.boundedEditUnitSize();
    if (bound == 0)
        return 0;
    int64 const units = itemsPerPackage(analyzer, packageRate);
    uint64 const kl = isSystem ? 0 : klLength;
    if (padding != Element)
        return units < 2 ? static_cast<uint32>(uint64(units) * bound + kl) : 0;
    uint64 size = uint64(units) * bound + kl;
    if (!analyzer.isCBE())
        size += kl;
    uint64 const fill = Utils::alignBytes(kagSize, size, static_cast<unsigned>(kl));
    if (units < 2 && fill == 0)
    {
        pad = false;
        return static_cast<uint32>(size);
    }
    pad = true;
    return static_cast<uint32>(size + fill);
}

void Mux::Impl::roundPaddedSizes()
{
    int32 * sizes[] = {&systemItemPaddedSize, &compoundItemPaddedSize, &pictureItemPaddedSize,
                       &soundItemPaddedSize, &dataItemPaddedSize, &editUnitPaddedSize};
    for (int32 * size : sizes)
        if (*size > 0)
            *size += static_cast<int32>(Utils::alignBytes(kagSize, uint64(*size), klLength));
}

void Mux::Impl::buildSystemEntry()
{
    if (systemAnalyzer.get() == nullptr)
        return;
    EssenceAnalyzer & analyzer = *systemAnalyzer;
    analyzer.editRate(packageRate);
    bool const isValid = analyzer.preload();
    THROW_UNLESS(InvalidFormat, isValid, "The essence format is invalid");
    AnalyzerEntry entry;
    entry.analyzer = systemAnalyzer;
    entry.isSystemItem = true;
    entry.entryByteCount = elementSize(analyzer, true, systemPadding);
    if (itemsPerPackage(analyzer, packageRate) > 1)
        entry.usesPosTable = extendedIndex = true;
    entry.hasFiller = systemPadding;
    if (systemItemPaddedSize > 0)
    {
        int32 const systemItemMaximumSize = systemItemPaddedSize;
        THROW_UNLESS_TEXT(InvalidFormat, static_cast<int32>(entry.entryByteCount) <= systemItemMaximumSize,
                          "static_cast <Platform::Int32> (entry.entryByteCount) <= systemItemMaximumSize",
                          "Trying to force into the GC a system Item maximum value smaller then the system Item size. "
                          "Please increate the system item maximum size");
        entry.entryByteCount = uint32(systemItemMaximumSize);
    }
    entries.push_front(entry);
}

void Mux::Impl::buildEntry(PendingEntry const & pending, unsigned int index, unsigned int count, int32 itemSize)
{
    EssenceAnalyzer & analyzer = *pending.analyzer;
    bool pad = padding == Element && pending.padToKag;
    if (prepareAnalyzer(analyzer, packageRate, temporalReordering))
    {
        THROW_UNLESS_TEXT(InvalidFormat, pending.temporalOffset.numerator() == 0,
                          "preEntry.temporalOffset.numerator () == 0",
                          "A source with temporal reordoring must start at offset zero to the essence container.");
    }
    AnalyzerEntry entry;
    entry.analyzer = pending.analyzer;
    KLV::Key const key = elementKey(analyzer.itemTypeIdentifier(), static_cast<unsigned char>(count),
                                    analyzer.essenceElementType(), pending.elementNumber);
    if (partitionMetadata.get() != nullptr)
    {
        analyzer.setMetadata(*partitionMetadata, sourcePackage, trackNumberOfKey(key), pending.trackId);
        if (sourcePackage != nullptr)
            setDescriptorWrapping(*sourcePackage, pending.trackId, false);
    }
    entry.key = analyzer.proposeKey(key);
    entry.temporalOffset = pending.temporalOffset;
    entry.entryByteCount = elementSize(analyzer, false, pad);
    if (pending.temporalOffset != Rational<int64>(0, 1))
    {
        Rational<int64> const units =
            pending.temporalOffset * Rational<int64>(packageRate.numerator(), packageRate.denominator());
        if (units.denominator() != 1)
            entry.usesPosTable = extendedIndex = true;
        if (pending.temporalOffset < Rational<int64>(0, 1))
            entry.entryByteCount = 0;
    }
    if (itemsPerPackage(analyzer, packageRate) > 1)
        entry.usesPosTable = extendedIndex = true;
    entry.padToItemEnd = index + 1 == count && padding != Element && itemSize >= 1;
    entry.hasFiller = entry.padToItemEnd || pad;
    entry.itemByteCount = itemSize > 0 ? itemSize : 0;
    entries.push_back(entry);
}

void Mux::Impl::buildItemEntries(PendingEntries const & list, int32 & itemSize)
{
    if (list.empty())
        itemSize = 0;
    unsigned int index = 0;
    for (PendingEntry const & pending : list)
        buildEntry(pending, index++, static_cast<unsigned int>(list.size()), itemSize);
}

PendingEntries * Mux::Impl::listOf(int kind)
{
    switch (kind)
    {
    case EssenceAnalyzer::Compound: return &compound;
    case EssenceAnalyzer::Picture: return &picture;
    case EssenceAnalyzer::Sound: return &sound;
    case EssenceAnalyzer::Data: return &data;
    default: return nullptr;
    }
}

int32 * Mux::Impl::itemSizeOf(int kind)
{
    switch (kind)
    {
    case EssenceAnalyzer::Compound: return &compoundItemPaddedSize;
    case EssenceAnalyzer::Picture: return &pictureItemPaddedSize;
    case EssenceAnalyzer::Sound: return &soundItemPaddedSize;
    case EssenceAnalyzer::Data: return &dataItemPaddedSize;
    default: return nullptr;
    }
}

Templates::auto_ptr<Source> Mux::commit()
{
    Impl & d = *impl_;
    d.roundPaddedSizes();
    if (d.partitionMetadata.get() != nullptr)
    {
        d.sourcePackage = createSourcePackage(
            *d.partitionMetadata, packageMaterialType(d.compound.size(), d.picture.size(), d.sound.size(), d.data.size()));
        if (d.compound.size() + d.picture.size() + d.sound.size() + d.data.size() > 1)
            d.multipleDescriptor =
                createMultipleDescriptor(*d.partitionMetadata, *d.sourcePackage, d.packageRate, d.essenceContainer);
    }
    d.buildSystemEntry();
    Templates::list<int> order;
    if (d.useInputOrder)
        order = d.kindOrder;
    else
        order = {EssenceAnalyzer::Compound, EssenceAnalyzer::Picture, EssenceAnalyzer::Sound, EssenceAnalyzer::Data};
    for (int kind : order)
        if (PendingEntries * list = d.listOf(kind))
            d.buildItemEntries(*list, *d.itemSizeOf(kind));
    if (d.padding == EditUnit && !d.entries.empty())
        d.entries.back().padToItemEnd = d.entries.back().hasFiller = true;
    return Templates::auto_ptr<Source>(new FrameWorker_impl(d));
}

void Mux::kagSize(unsigned int size) { impl_->kagSize = combineKAG(impl_->kagSize, size); }

bool Mux::nextBaseTrackID(unsigned int id)
{
    if (impl_->trackIds.find(id) != impl_->trackIds.end())
        return false;
    impl_->nextBaseTrackID = id;
    return true;
}

unsigned int Mux::nextBaseTrackID() const { return impl_->nextBaseTrackID; }

void Mux::paddToElement()
{
    impl_->padding = Element;
    impl_->paddAll(-1);
}

void Mux::paddToItem(int system, int compound, int picture, int sound, int data)
{
    impl_->padding = Item;
    impl_->systemItemPaddedSize = system;
    impl_->compoundItemPaddedSize = compound;
    impl_->pictureItemPaddedSize = picture;
    impl_->soundItemPaddedSize = sound;
    impl_->dataItemPaddedSize = data;
    impl_->editUnitPaddedSize = -1;
}

void Mux::paddToEditUnit(unsigned int size)
{
    impl_->padding = EditUnit;
    impl_->paddAll(-1);
    impl_->editUnitPaddedSize = static_cast<int32>(size);
}

Mux::PaddingKind Mux::paddingType() { return impl_->padding; }

void Mux::indexFillPackets(bool value) { impl_->indexFillPackets = value; }

void Mux::multiplexAllEssence(bool value) { impl_->multiplexAllEssence = value; }

void Mux::defaultStartTimecode(bool force, unsigned char hours, unsigned char minutes, unsigned char seconds,
                               unsigned char frames)
{
    impl_->ContainerData::defaultStartTimecode(force, hours, minutes, seconds, frames);
}

void Mux::suppressTimecodeDiscontinuities(bool value) { impl_->ContainerData::suppressTimecodeDiscontinuities(value); }

void Mux::generateTimecodeTrack(bool value) { impl_->ContainerData::generateTimecodeTrack(value); }

void Mux::useAnalyzerInputOrderToSortContainer(bool value) { impl_->useInputOrder = value; }

bool Mux::useAnalyzerInputOrderToSortContainer() const { return impl_->useInputOrder; }
} // namespace Multiplexer
} // namespace GenericContainer
} // namespace Vellum
