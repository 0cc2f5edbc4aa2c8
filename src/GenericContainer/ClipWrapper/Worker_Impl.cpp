// The source of a clip wrapped container.

#include "GenericContainer/ClipWrapper/Worker_impl.h"

#include "Exceptions/Exceptions.h"
#include "KLV/KeyConstants.h"
#include "Utils/Padding.h"

namespace Vellum
{
namespace GenericContainer
{
namespace ClipWrapper
{
using Templates::Rational;

namespace
{
unsigned int const DEFAULT_CHUNK_SIZE = 4096;
}

Worker_impl::Worker_impl(ContainerData const & data, Templates::SharedPtr<DataIO::BufferSliceSource> buffer,
                         uint64 clipSize)
    : BaseWorkerImpl(data, IndexSegmentInfo::ClipWrapped), buffer_(buffer), pendingLength_(nullptr),
      chunkSize_(DEFAULT_CHUNK_SIZE), clipSize_(clipSize), klSent_(false), clipEnded_(false)
{
    klLength_ = KLV::fillItemKey().size() + 8;
    current_ = data_.entries.begin();
    if (data_.primaryAnalyzer != nullptr)
    {
        data_.primaryAnalyzer->preload();
        setupTimecodeTrack(data_.primaryAnalyzer->currentTimeCode(), data_.packageRate, Rational<int>(-1, 1));
    }
}

Worker_impl::~Worker_impl() {}

void Worker_impl::demultiplexerSource(Templates::SharedPtr<DataIO::SliceSource> source, unsigned int chunkSize)
{
    demultiplexer_ = source;
    chunkSize_ = chunkSize;
}

bool Worker_impl::done() const
{
    if (done_)
        return true;
    if (buffer_.get() == nullptr && current_ == data_.entries.end())
        return done_ = true;
    for (AnalyzerEntry const & entry : data_.entries)
        if (!entry.analyzer->done())
            return false;
    if (demultiplexer_.get() != nullptr && !demultiplexer_->endOfStream())
        return false;
    return done_ = true;
}

void Worker_impl::doNextContentPackage(DataIO::Chain & chain, Rational<int64> & duration)
{
    if (buffer_.get() != nullptr)
    {
        BaseWorkerImpl::doNextContentPackage(chain, duration);
        return;
    }
    if (done_ || current_ == data_.entries.end())
    {
        done_ = true;
        return;
    }
    sliceOffset_ = 0;
    prepareNewEntry();
    DataIO::Chain unit;
    if (!readEditUnit(unit, duration))
        return;
    chain.push_back(unit);
    processAnalyzerIndexEntrySliceOffset(data_.entries.size() >= 2, 0, sliceOffset_);
    appendIndexEntry();
    streamOffset_ += chain.data_size();
    updateContentInfo();
}

bool Worker_impl::readEditUnit(DataIO::Chain & chain, Rational<int64> & duration)
{
    AnalyzerEntry & entry = *current_;
    Rational<int64> const rate(data_.packageRate.numerator(), data_.packageRate.denominator());
    processIndexEntryTemporalOffset(position_, entry.usesPosTable, entry.temporalOffset, entry.processedDuration,
                                    Rational<int64>(int64(position_ + 1)) / rate, data_.packageRate);
    EditUnit unit;
    bool const came = entry.analyzer->nextEditUnit(unit);
    if (came && entry.analyzer.get() == data_.primaryAnalyzer)
        timecodeHandler_.checkTimeCode(unit, data_.packageRate);
    if (!came || !unit.valid)
    {
        clipEnded_ = true;
        return false;
    }
    ++position_;
    chain.push_back(unit.data);
    sliceOffset_ += entry.entryByteCount;
    processAnalyzerIndexEntrySliceOffset(true, 0, sliceOffset_);
    processAnalyzerIndexEntry(position_, entry.analyzer->containsTemporalDependencies(), unit.flags,
                              unit.temporalReference);
    duration = Rational<int64>(unit.duration.numerator(), unit.duration.denominator());
    return true;
}

bool Worker_impl::next(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<MXFIO::FutureUpdater> & updater,
                       Rational<int64> & duration)
{
    if (done_ || (buffer_.get() == nullptr && current_ == data_.entries.end()))
    {
        done_ = true;
        return false;
    }
    DataIO::Chain local;
    bool more = BaseWorkerImpl::next(local, atBoundary, updater, duration);
    if (clipSize_ != 0)
    {
        if (!klSent_ && !data_.entries.empty())
        {
            chain.push_back(createKLSlice(data_.entries.front(), clipSize_, 8));
            klSent_ = true;
        }
    }
    else if (pendingUpdater_.get() == nullptr && current_ != data_.entries.end())
    {
        pendingLength_ = new KLVLengthUpdater;
        pendingUpdater_.reset(pendingLength_);
        chain.push_back(createKLSlice(*current_, 0, 8));
        updater = pendingUpdater_;
    }
    atBoundary = false;
    if (buffer_.get() != nullptr)
        return nextFromBuffer(chain, atBoundary, more);
    chain.push_back(local);
    if (current_ != data_.entries.end() && (clipEnded_ || current_->analyzer->done()))
    {
        current_->analyzer->finalize();
        atBoundary = true;
        closeClip(chain);
        current_->clipByteCount = streamOffset_;
        streamOffset_ = 0;
        clipEnded_ = false;
        ++current_;
        if (current_ == data_.entries.end())
            more = false;
    }
    return more;
}

void Worker_impl::closeClip(DataIO::Chain & chain)
{
    if (pendingUpdater_.get() == nullptr)
        return;
    pendingLength_->kl(createKLSlice(*current_, streamOffset_, 8));
    pendingUpdater_.reset();
    pendingLength_ = nullptr;
    fillToKag(streamOffset_, chain);
}

void Worker_impl::fillToKag(uint64 length, DataIO::Chain & chain)
{
    if (data_.kagSize <= 1)
        return;
    uint64 const fill = Utils::alignBytes(data_.kagSize, klLength_ + length, klLength_);
    if (fill == 0)
        return;
    THROW_UNLESS_TEXT(InvalidLength, fill >= klLength_, "editUnitFillItemSize >= klLength_",
                      "Not enough size to create filler in essence.");
    createKLVFiller(fill, klLength_, chain);
}

void Worker_impl::moveBuffer(DataIO::Chain & chain)
{
    while (buffer_->accessible() != 0)
    {
        Templates::auto_ptr<DataIO::Slice> slice = buffer_->read(1);
        if (slice.get() == nullptr || slice->empty())
            break;
        chain.push_back(std::move(slice));
    }
}

bool Worker_impl::nextFromBuffer(DataIO::Chain & chain, bool & atBoundary, bool more)
{
    moveBuffer(chain);
    for (AnalyzerEntry const & entry : data_.entries)
        if (!entry.analyzer->done())
            return more;
    if (demultiplexer_.get() != nullptr && !demultiplexer_->endOfStream())
    {
        demultiplexer_->read(chunkSize_);
        moveBuffer(chain);
        if (!demultiplexer_->endOfStream())
            return true;
    }
    atBoundary = true;
    if (pendingUpdater_.get() != nullptr && !data_.entries.empty())
    {
        pendingLength_->kl(createKLSlice(data_.entries.front(), buffer_->absoluteOffset(), 8));
        pendingUpdater_.reset();
        pendingLength_ = nullptr;
        more = false;
    }
    fillToKag(buffer_->absoluteOffset(), chain);
    return more;
}

void Worker_impl::finalize()
{
    BaseWorkerImpl::finalize();
    if (pendingUpdater_.get() != nullptr && !data_.entries.empty())
    {
        pendingLength_->kl(createKLSlice(data_.entries.front(), streamOffset_, 8));
        pendingUpdater_.reset();
        pendingLength_ = nullptr;
    }
}
} // namespace ClipWrapper
} // namespace GenericContainer
} // namespace Vellum
