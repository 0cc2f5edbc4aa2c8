// Content packages from the analyzers of a committed container.

#include "GenericContainer/BaseWorkerImpl.h"

#include <algorithm>
#include <cstring>

#include "ByteCoders/BER.h"
#include "DataIO/Memory/MemoryBlock.h"
#include "DataIO/Slice.h"
#include "Exceptions/Exceptions.h"
#include "GenericContainer/DefaultIndexTableGenerator.h"
#include "MXFIO/FutureUpdater.h"
#include "KLV/KeyConstants.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralComponent.h"
#include "Metadata/Structural/SubclassHelpers.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Utils/Padding.h"
#include "Utils/Time.h"

namespace Vellum
{
namespace GenericContainer
{
using Templates::Rational;
using namespace Metadata::Structural;

namespace
{
// Fill values are windows on one zero block of at least this size.
uint64 const MINIMUM_ZERO_BLOCK = 65536;

Rational<int64> wide(Rational<int> const & r) { return Rational<int64>(r.numerator(), r.denominator()); }

Templates::auto_ptr<DataIO::Slice> newSlice(uint64 size, DataIO::BlockHolder & holder)
{
    holder = DataIO::Memory::MemoryBlockFactory::instance().create(size);
    return Templates::auto_ptr<DataIO::Slice>(new DataIO::Slice(holder.block(), 0, size));
}

// A sequence's duration when it is present and known, else -1.
int64 knownDuration(TimelineTrack const * track)
{
    Sequence const * sequence = track->sequence();
    if (sequence == nullptr || sequence->duration() == nullptr)
        return -1;
    return sequence->duration()->value();
}
} // namespace

BaseWorkerImpl::BaseWorkerImpl(ContainerData const & data, IndexSegmentInfo::ContentWrapKind wrapKind)
    : wrapKind_(wrapKind), klLength_(0), position_(0), data_(data), done_(data.entries.empty()), streamOffset_(0),
      sliceOffset_(0), lastItemSliceOffset_(0), cachedDuration_(0, 1),
      timecodeHandler_(data.partitionMetadata, data.sourcePackage, data.packageRate, data.timecodeInfo),
      preCharge_(0, 1), streamEnded_(false)
{
    uint64 const zeroSize = std::max<uint64>(data_.kagSize, MINIMUM_ZERO_BLOCK);
    zeroBlock_ = DataIO::Memory::MemoryBlockFactory::instance().create(zeroSize);
    std::memset(zeroBlock_->data(), 0, zeroSize);
    for (AnalyzerEntry const & entry : data_.entries)
        preCharge_ = std::max(preCharge_, entry.analyzer->getPreChargeDuration());
    for (AnalyzerEntry const & entry : data_.entries)
        if (entry.isSystemItem)
            entry.analyzer->setPreChargeDuration(preCharge_);
    timecodeHandler_.precharge(preCharge_);
    indexTableGeneratorImpl(Templates::auto_ptr<MXFIO::IndexTableGenerator>(new DefaultIndexTableGenerator));
}

BaseWorkerImpl::~BaseWorkerImpl() {}

unsigned int BaseWorkerImpl::kagSize() const { return data_.kagSize; }

Metadata::Structural::SourcePackage & BaseWorkerImpl::sourcePackage() { return *data_.sourcePackage; }

Types::UniversalLabel const & BaseWorkerImpl::essenceContainerUL() const { return data_.essenceContainer; }

Rational<int> const & BaseWorkerImpl::packageRate() const { return data_.packageRate; }

bool BaseWorkerImpl::isCBE() const { return checkCBE(); }

bool BaseWorkerImpl::checkCBE() const { return data_.allEntriesConstant(); }

unsigned int BaseWorkerImpl::checkPaddedCBE() const
{
    if (data_.editUnitPaddedSize > 0)
        return unsigned(data_.editUnitPaddedSize);
    int32 const items[] = {data_.systemItemPaddedSize, data_.compoundItemPaddedSize, data_.pictureItemPaddedSize,
                           data_.soundItemPaddedSize, data_.dataItemPaddedSize};
    unsigned int sum = 0;
    for (int32 size : items)
    {
        if (size < 0)
            return 0;
        sum += unsigned(size);
    }
    return sum;
}

MXFIO::IndexTableGenerator * BaseWorkerImpl::indexTableGenerator() { return indexGenerator_.get(); }

void BaseWorkerImpl::indexTableGenerator(Templates::auto_ptr<MXFIO::IndexTableGenerator> generator)
{
    indexTableGeneratorImpl(std::move(generator));
}

GenericContainerIndexTableGenerator * BaseWorkerImpl::baseIndexGenerator()
{
    return dynamic_cast<GenericContainerIndexTableGenerator *>(indexGenerator_.get());
}

void BaseWorkerImpl::indexTableGeneratorImpl(Templates::auto_ptr<MXFIO::IndexTableGenerator> generator)
{
    indexGenerator_ = std::move(generator);
    indexEntryBuilder_.indexTableGenerator(indexGenerator_.get());
    GenericContainerIndexTableGenerator * generic = baseIndexGenerator();
    if (generic == nullptr)
        return;
    IndexSegmentInfo info(data_.packageRate, klLength_, checkPaddedCBE(), wrapKind_, data_.extendedIndex);
    for (AnalyzerEntry const & entry : data_.entries)
    {
        IndexSegmentInfo::IndexEntryData d;
        d.entryByteCount = entry.entryByteCount;
        d.boundedEditUnitSize = entry.analyzer->boundedEditUnitSize();
        d.itemByteCount = entry.itemByteCount;
        d.containsTemporalDependencies = entry.analyzer->containsTemporalDependencies();
        d.usesPosTable = entry.usesPosTable;
        d.hasFiller = entry.hasFiller;
        d.padToItemEnd = entry.padToItemEnd;
        d.isCBE = entry.analyzer->isCBE();
        info.indexEntryData(d);
    }
    generic->setupIndexSegments(info);
}

bool BaseWorkerImpl::next(DataIO::Chain & chain, bool & atBoundary,
                          Templates::SharedPtr<MXFIO::FutureUpdater> & updater, Rational<int64> & duration)
{
    if (cache_.data_size() == 0)
        doNextContentPackage(cache_, cachedDuration_);
    duration = cachedDuration_;
    chain.push_back(cache_);
    cachedDuration_ = Rational<int64>(0, 1);
    atBoundary = true;
    updater.reset();
    return !done();
}

bool BaseWorkerImpl::done() const
{
    if (done_)
        return true;
    if (data_.multiplexAllEssence)
    {
        bool all = true;
        for (AnalyzerEntries::const_iterator it = data_.entries.begin(); all && it != data_.entries.end(); ++it)
            if (!it->isSystemItem)
                all = it->analyzer->done();
        done_ = all;
    }
    else
        for (AnalyzerEntries::const_iterator it = data_.entries.begin(); !done_ && it != data_.entries.end(); ++it)
            done_ = it->analyzer->done();
    return done_;
}

void BaseWorkerImpl::doNextContentPackage(DataIO::Chain & chain, Rational<int64> & duration)
{
    if (done() || data_.entries.empty())
        return;
    sliceOffset_ = 0;
    lastItemSliceOffset_ = 0;
    prepareNewEntry();
    streamEnded_ = false;
    DataIO::Chain package;
    Rational<int64> packageDuration(0, 1);
    for (AnalyzerEntry & entry : data_.entries)
    {
        Rational<int64> elementDuration(0, 1);
        processAnalyzer(entry, package, elementDuration);
        packageDuration = std::max(packageDuration, elementDuration);
    }
    if (streamEnded_)
    {
        // A stream gave out inside this package: the container ends with the last whole one.
        done_ = true;
        return;
    }
    duration = packageDuration;
    if (!package.empty())
    {
        chain.push_back(package);
        streamOffset_ += chain.data_size();
        appendIndexEntry();
    }
    ++position_;
    updateContentInfo();
}

void BaseWorkerImpl::processAnalyzer(AnalyzerEntry & entry, DataIO::Chain & chain, Rational<int64> & duration)
{
    EditUnit unit;
    readItemFromAnalyzer(entry, unit);
    if (unit.valid && entry.analyzer.get() == data_.primaryAnalyzer)
        timecodeHandler_.checkTimeCode(unit, data_.packageRate);
    if (unit.duration != Rational<int>(0, 1) && !entry.isSystemItem)
        unit.data.push_front(createKLSlice(entry, unit.data.data_size(), 4));
    uint64 const size = unit.data.data_size();
    chain.push_back(unit.data);
    bool isVariable = entry.entryByteCount == 0;
    uint64 const fill = elementFill(entry, size, isVariable);
    if (fill != 0)
    {
        THROW_UNLESS_TEXT(InvalidLength, fill >= klLength_, "editUnitFillItemSize >= klLength_",
                          "Not enough size to create filler in essence.");
        createKLVFiller(fill, klLength_, chain);
    }
    processAnalyzerIndexEntrySliceOffset(isVariable, static_cast<unsigned int>(fill), sliceOffset_);
    processAnalyzerIndexEntry(position_, entry.analyzer->containsTemporalDependencies(), unit.flags,
                              unit.temporalReference);
    duration = wide(unit.duration);
}

uint64 BaseWorkerImpl::elementFill(AnalyzerEntry const & entry, uint64 size, bool & isVariable)
{
    if (entry.padToItemEnd)
    {
        sliceOffset_ += static_cast<unsigned int>(size);
        int64 const itemSize = getItemSize(entry.analyzer.get());
        int64 const used = int64(sliceOffset_) - int64(lastItemSliceOffset_);
        THROW_UNLESS_TEXT(InvalidLength, itemSize > used, "itemSize > sliceOffset_ - lastItemSliceOffset_",
                          "Trying to store more data in the Generic Container then the edit unit can hold.");
        uint64 const fill = uint64(itemSize - used);
        sliceOffset_ += static_cast<unsigned int>(fill);
        lastItemSliceOffset_ = sliceOffset_;
        return fill;
    }
    if (isVariable)
    {
        uint64 const fill = Utils::alignBytes(data_.kagSize, size, klLength_);
        sliceOffset_ += static_cast<unsigned int>(size + fill);
        return fill;
    }
    THROW_UNLESS_TEXT(InvalidLength, size <= entry.entryByteCount, "editUnitCurrentSize <= analyzerBytesPerEntry",
                      "One analyzer (CBE) has produced an edit unit larger than expected");
    sliceOffset_ += entry.entryByteCount;
    if (indexGenerator_.get() != nullptr &&
        indexGenerator_->indexSegmentType() == MXFIO::IndexSegmentVariableWithSlices)
        isVariable = !entry.analyzer->isCBE();
    return entry.entryByteCount - size;
}

int32 BaseWorkerImpl::getItemSize(EssenceAnalyzer * analyzer) const
{
    if (data_.editUnitPaddedSize > 0)
        return data_.editUnitPaddedSize;
    int32 size = 0;
    if (dynamic_cast<SystemAnalyzer *>(analyzer) != nullptr)
        size = data_.systemItemPaddedSize;
    else if (dynamic_cast<CompoundAnalyzer *>(analyzer) != nullptr)
        size = data_.compoundItemPaddedSize;
    else if (dynamic_cast<PictureAnalyzer *>(analyzer) != nullptr)
        size = data_.pictureItemPaddedSize;
    else if (dynamic_cast<SoundAnalyzer *>(analyzer) != nullptr)
        size = data_.soundItemPaddedSize;
    else if (dynamic_cast<DataAnalyzer *>(analyzer) != nullptr)
        size = data_.dataItemPaddedSize;
    return size < 1 ? 0 : size;
}

void BaseWorkerImpl::readItemFromAnalyzer(AnalyzerEntry & entry, EditUnit & unit)
{
    Rational<int64> const rate = wide(data_.packageRate);
    Rational<int64> const target = Rational<int64>(int64(position_ + 1)) / rate - Rational<int64>(1) / rate / 100;
    processIndexEntryTemporalOffset(position_, entry.usesPosTable, entry.temporalOffset, entry.processedDuration,
                                    target, data_.packageRate);
    Rational<int64> current = entry.processedDuration;
    if (entry.temporalOffset != Rational<int64>(0, 1))
        current += entry.temporalOffset;
    unit.valid = false;
    bool first = true;
    while (current < target)
    {
        EditUnit fresh;
        fetchNextEditUnitFromAnalyzer(entry, fresh, current);
        if (!fresh.valid)
        {
            streamEnded_ = true;
            return;
        }
        Rational<int64> const step = wide(fresh.duration);
        unit.data.push_back(fresh.data);
        entry.processedDuration += step;
        unit.auxiliaryCount += fresh.auxiliaryCount;
        unit.temporalReference = fresh.temporalReference;
        unit.flags = fresh.flags;
        unit.duration += fresh.duration;
        current += step;
        unit.valid = true;
        if (first && fresh.timeCode.isDefined())
            unit.timeCode = fresh.timeCode;
        first = false;
        // A unit that claims no time would hold the loop for ever.
        if (!(step > Rational<int64>(0, 1)))
            return;
    }
}

void BaseWorkerImpl::fetchNextEditUnitFromAnalyzer(AnalyzerEntry & entry, EditUnit & unit,
                                                   Rational<int64> const & current)
{
    Rational<int64> const lead = wide(preCharge_ - entry.analyzer->getPreChargeDuration());
    Rational<int> const packageStep = Rational<int>(1) / data_.packageRate;
    NullEssenceProvider * provider = dynamic_cast<NullEssenceProvider *>(entry.analyzer.get());
    if (current < lead && lead != Rational<int64>(0, 1))
    {
        Rational<int> const leadNarrow(static_cast<int>(lead.numerator()), static_cast<int>(lead.denominator()));
        unit.duration = std::min(leadNarrow, packageStep);
        if (provider != nullptr)
            provider->nullEditUnit(unit);
        unit.valid = true;
        return;
    }
    if (entry.analyzer->nextEditUnit(unit) && unit.valid)
        return;
    if (unit.valid || !data_.multiplexAllEssence)
    {
        unit.valid = false;
        return;
    }
    if (provider != nullptr)
        provider->nullEditUnit(unit);
    unit.duration = packageStep;
    unit.valid = true;
}

Templates::auto_ptr<DataIO::Slice> BaseWorkerImpl::createKLSlice(AnalyzerEntry const & entry, uint64 valueLength,
                                                                 unsigned char berBytes)
{
    DataIO::BlockHolder holder;
    Templates::auto_ptr<DataIO::Slice> slice = newSlice(KLV::Key::SIZE + berBytes, holder);
    std::memcpy(holder->data(), entry.key.rawBuffer(), KLV::Key::SIZE);
    ByteCoders::codeBER(valueLength, berBytes, holder->data() + KLV::Key::SIZE);
    return slice;
}

void BaseWorkerImpl::createKLVFiller(uint64 size, unsigned int klLength, DataIO::Chain & chain)
{
    DataIO::BlockHolder holder;
    Templates::auto_ptr<DataIO::Slice> kl = newSlice(klLength, holder);
    std::memcpy(holder->data(), KLV::fillItemKey().rawBuffer(), KLV::Key::SIZE);
    ByteCoders::codeBER(size - klLength, static_cast<unsigned char>(klLength - KLV::Key::SIZE),
                        holder->data() + KLV::Key::SIZE);
    chain.push_back(std::move(kl));
    uint64 const blockSize = zeroBlock_->size();
    for (uint64 left = size - klLength; left != 0;)
    {
        uint64 const part = std::min(left, blockSize);
        chain.push_back(Templates::auto_ptr<DataIO::Slice>(new DataIO::Slice(zeroBlock_.block(), 0, part)));
        left -= part;
    }
}

void BaseWorkerImpl::prepareNewEntry() { indexEntryBuilder_.prepareNewEntry(streamOffset_); }

void BaseWorkerImpl::appendIndexEntry() { indexEntryBuilder_.appendIndexEntry(); }

void BaseWorkerImpl::processIndexEntryTemporalOffset(uint64 position, bool usesPosTable,
                                                     Rational<int64> const & temporalOffset,
                                                     Rational<int64> const & processed, Rational<int64> const & target,
                                                     Rational<int> const & rate)
{
    indexEntryBuilder_.processIndexEntryTemporalOffset(position, usesPosTable, temporalOffset, processed, target, rate);
}

void BaseWorkerImpl::processAnalyzerIndexEntry(uint64 position, bool temporalDependencies, unsigned char flags,
                                               signed char temporalReference)
{
    indexEntryBuilder_.processAnalyzerIndexEntry(position, temporalDependencies, flags, temporalReference);
}

void BaseWorkerImpl::processAnalyzerIndexEntrySliceOffset(bool isVariable, unsigned int fill,
                                                          unsigned int & sliceOffset)
{
    indexEntryBuilder_.processAnalyzerIndexEntrySliceOffset(isVariable, fill, sliceOffset);
}

void BaseWorkerImpl::updateContentInfo()
{
    if (GenericContainerIndexTableGenerator * generator = baseIndexGenerator())
        generator->currentContentInfo(position_, streamOffset_);
}

void BaseWorkerImpl::setupTimecodeTrack(Utils::TimeCode timeCode, Rational<int> const & rate,
                                        Rational<int> const & duration)
{
    timecodeHandler_.setupTimecodeTrack(timeCode, rate, duration);
}

void BaseWorkerImpl::updateTrackOrigins()
{
    if (data_.sourcePackage == nullptr)
        return;
    Templates::list<TimelineTrack *> tracks;
    getAllTimelineTracks(*data_.sourcePackage, tracks);
    for (TimelineTrack * track : tracks)
    {
        Types::Rational const * rate = track->editRate();
        if (rate == nullptr)
            continue;
        Types::Position const origin(Utils::Time::convertSecondsToEditUnit(preCharge_, rate->value()));
        track->origin(&origin);
    }
}

void BaseWorkerImpl::finalize()
{
    for (AnalyzerEntry & entry : data_.entries)
        entry.analyzer->finalize();
    if (data_.sourcePackage != nullptr)
    {
        int64 const smallest = getSourcePackageSmallestDuration();
        if (smallest != -1)
        {
            updateSourceSourcePackageToSmallestDuration(smallest);
            return;
        }
    }
    timecodeHandler_.updateTimecodeComponent();
    timecodeHandler_.updateTimecodeSequenceDuration();
}

int64 BaseWorkerImpl::getSourcePackageSmallestDuration() const
{
    if (data_.sourcePackage == nullptr)
        return -1;
    Templates::list<TimelineTrack *> tracks;
    getAllTimelineTracks(*data_.sourcePackage, tracks);
    int64 smallest = -1;
    for (TimelineTrack const * track : tracks)
    {
        int64 const duration = knownDuration(track);
        if (duration != -1 && (smallest == -1 || duration < smallest))
            smallest = duration;
    }
    return smallest;
}

void BaseWorkerImpl::updateSourceSourcePackageToSmallestDuration(int64 duration)
{
    Templates::list<TimelineTrack *> tracks;
    getAllTimelineTracks(*data_.sourcePackage, tracks);
    for (TimelineTrack * track : tracks)
    {
        if (isTimeCodeTrack(track) && timecodeHandler_.constantTimecode())
            continue;
        Sequence * sequence = track->sequence();
        if (sequence == nullptr)
            continue;
        Types::Length const length(duration);
        sequence->duration(&length);
        unsigned int const count = sequence->structuralComponentsCount();
        if (count == 0)
            continue;
        int64 before = 0;
        for (unsigned int i = 0; i + 1 < count; ++i)
            if (Types::Length const * part = sequence->structuralComponent(i)->duration())
                before += part->value();
        Types::Length const last(duration - before);
        sequence->structuralComponent(count - 1)->duration(&last);
    }
}
} // namespace GenericContainer
} // namespace Vellum
