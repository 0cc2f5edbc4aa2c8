// Index table segments of a Generic Container: delta entries from the layout, one entry per
// content package, and the choice of which segments a partition carries.

#include "GenericContainer/DefaultIndexTableGenerator.h"

#include "Exceptions/Exceptions.h"
#include "IndexTables/DeltaEntry.h"
#include "IndexTables/IndexEntry.h"
#include "IndexTables/IndexTableSegment.h"
#include "Templates/SharedPtr.h"
#include "Types/Integers.h"
#include "Types/Rational.h"

namespace Vellum
{
namespace GenericContainer
{
using IndexTables::DeltaEntry;
using IndexTables::IndexTableSegment;
using namespace MXFIO;

namespace
{
// A segment stops growing above this size, so that its local sets keep their 16-bit lengths.
uint64 const SEGMENT_SIZE_LIMIT = 64512;

typedef Templates::SharedPtr<IndexTableSegment> SegmentPtr;
typedef Templates::list<SegmentPtr> Segments;

bool withSlices(IndexTableSegmentType type)
{
    return type == IndexSegmentConstantWithSlices || type == IndexSegmentVariableWithSlices;
}
} // namespace

struct DefaultIndexTableGenerator::Impl
{
    Impl()
        : bodySID(0), indexSID(0), bodyStrategy(IndexTableGenerationNone), closingStrategy(IndexTableGenerationNone),
          lastWritten(nullptr), hasLastWritten(false), isConstant(false), segmentType(IndexSegmentChoose),
          position(0), hasEntryDetail(false), initialized(false)
    {
    }

    void configure();
    void frameWrappedSetup(IndexTableSegment & segment);
    void clipWrappedSetup(IndexTableSegment & segment);
    bool noStrategy() const { return bodyStrategy == IndexTableGenerationNone && closingStrategy == IndexTableGenerationNone; }
    // The segments that a partition of that strategy carries now.
    void chosen(IndexTableGeneration strategy, Templates::vector<IndexTableSegment *> & out) const;

    uint32 bodySID;
    uint32 indexSID;
    IndexTableGeneration bodyStrategy;
    IndexTableGeneration closingStrategy;
    Segments segments;
    IndexTableSegment const * lastWritten;
    bool hasLastWritten;
    bool isConstant;
    IndexTableSegmentType segmentType;
    uint64 position;
    Templates::auto_ptr<IndexSegmentInfo> info;
    bool hasEntryDetail;
    bool initialized;
};

void DefaultIndexTableGenerator::Impl::configure()
{
    if (info.get() == nullptr || initialized)
        return;
    initialized = true;
    bool allConstant = true;
    for (unsigned i = 0; i < info->indexEntryDataCount(); ++i)
        allConstant = allConstant && info->indexEntryData(i).entryByteCount != 0;
    if (info->wrapKind() == IndexSegmentInfo::ClipWrapped && segmentType == IndexSegmentChoose)
        segmentType = allConstant ? IndexSegmentConstant : IndexSegmentVariable;
    if (segmentType == IndexSegmentChoose)
        segmentType = allConstant ? IndexSegmentConstantWithDeltas : IndexSegmentVariable;
    else if (segmentType == IndexSegmentChooseWithSlices)
        segmentType = allConstant ? IndexSegmentConstantWithSlices : IndexSegmentVariableWithSlices;
    else
    {
        isConstant = segmentType <= IndexSegmentConstantWithSlices;
        return;
    }
    if (info->extendedTable())
    {
        if (segmentType == IndexSegmentConstantWithDeltas)
            segmentType = IndexSegmentVariable;
        else if (segmentType == IndexSegmentConstantWithSlices)
            segmentType = IndexSegmentVariableWithSlices;
    }
    else if (info->indexEntryDataCount() == 1 && allConstant)
        segmentType = IndexSegmentConstant;
    isConstant = segmentType <= IndexSegmentConstantWithSlices;
}

void DefaultIndexTableGenerator::Impl::frameWrappedSetup(IndexTableSegment & segment)
{
    unsigned const count = info->indexEntryDataCount();
    if (count == 0)
        return;
    unsigned char slice = 0, posTable = 0;
    uint32 delta = 0;
    int64 itemBytes = 0;
    uint32 total = 0;
    bool anyVariable = false;
    bool const detailed = segmentType >= IndexSegmentVariable;
    for (unsigned i = 0; i < count; ++i)
    {
        IndexSegmentInfo::IndexEntryData const & d = info->indexEntryData(i);
        uint32 size = d.entryByteCount;
        bool const isVariable = size == 0;
        anyVariable = anyVariable || isVariable;
        signed char const pos = d.containsTemporalDependencies ? -1 : d.usesPosTable ? posTable + 1 : 0;
        if (segmentType != IndexSegmentConstant)
        {
            segment.addDeltaEntry(segment.deltaEntryCount(), DeltaEntry(pos, slice, delta));
            segment.sliceCount(slice);
            if (pos > 0 && detailed)
                segment.posTableCount(static_cast<unsigned char>(posTable + 1));
        }
        if (withSlices(segmentType) && d.hasFiller)
        {
            if (d.isCBE)
                segment.addDeltaEntry(segment.deltaEntryCount(),
                                      DeltaEntry(0, slice, delta + info->klLength() + d.boundedEditUnitSize));
            else
            {
                ++slice;
                delta = 0;
                segment.addDeltaEntry(segment.deltaEntryCount(), DeltaEntry(0, slice, 0));
                segment.sliceCount(slice);
                size = 0;
            }
        }
        itemBytes += size;
        if (d.padToItemEnd)
        {
            int64 const padded = d.itemByteCount != 0 ? d.itemByteCount : int64(info->paddedSize());
            size = static_cast<uint32>(size + (padded - itemBytes));
            itemBytes = 0;
        }
        delta += size;
        if (detailed)
            hasEntryDetail = true;
        if (isVariable || d.usesPosTable)
        {
            delta = 0;
            ++slice;
            if (detailed && pos > 0)
                ++posTable;
        }
        total += size;
    }
    if (anyVariable)
        segment.editUnitByteCount(info->paddedSize());
    else
        segment.editUnitByteCount(info->paddedSize() != 0 ? info->paddedSize() : total);
}

void DefaultIndexTableGenerator::Impl::clipWrappedSetup(IndexTableSegment & segment)
{
    unsigned const count = info->indexEntryDataCount();
    THROW_UNLESS_TEXT(NotImplemented, count <= 1, "count <= 1",
                      "Cannot generate IndexTables for more then one Clip wrapped element. Please use OP1b or "
                      "higher or discard indexTables.");
    if (count == 0)
        return;
    IndexSegmentInfo::IndexEntryData const & d = info->indexEntryData(0);
    signed char const pos = d.containsTemporalDependencies ? -1 : d.usesPosTable ? 1 : 0;
    bool const detailed = segmentType >= IndexSegmentVariable;
    if (segmentType != IndexSegmentConstant)
    {
        segment.addDeltaEntry(0, DeltaEntry(pos, 0, 0));
        segment.sliceCount(0);
        if (pos > 0 && detailed)
            segment.posTableCount(1);
    }
    if (detailed)
        hasEntryDetail = true;
    if (d.entryByteCount != 0)
        segment.editUnitByteCount(d.entryByteCount);
}

void DefaultIndexTableGenerator::Impl::chosen(IndexTableGeneration strategy,
                                              Templates::vector<IndexTableSegment *> & out) const
{
    if (strategy == IndexTableGenerationNone)
        return;
    bool const all = isConstant || strategy == IndexTableGenerationAll || !hasLastWritten;
    bool behind = all;
    for (Segments::const_iterator it = segments.begin(); it != segments.end(); ++it)
    {
        IndexTableSegment * segment = it->get();
        if (behind && (isConstant || segment->indexEntryCount() != 0))
            out.push_back(segment);
        if (segment == lastWritten)
            behind = true;
    }
}

DefaultIndexTableGenerator::DefaultIndexTableGenerator() : impl_(new Impl) {}

DefaultIndexTableGenerator::~DefaultIndexTableGenerator() {}

void DefaultIndexTableGenerator::setupIndexSegments(IndexSegmentInfo const & info)
{
    THROW_UNLESS_TEXT(InvalidState, impl_->info.get() == nullptr, "indexSegmentInfo_.get () == 0",
                      "DefaultIndexTableGenerator was already configured.");
    impl_->info.reset(new IndexSegmentInfo(info));
}

void DefaultIndexTableGenerator::indexStrategies(IndexTableGeneration body, IndexTableGeneration closing,
                                                 IndexTableSegmentType type)
{
    THROW_UNLESS_TEXT(InvalidState, !impl_->initialized, "!initialized_", "Unable to configue Index Segment that was already used.");
    impl_->bodyStrategy = body;
    impl_->closingStrategy = closing;
    impl_->segmentType = type;
}

void DefaultIndexTableGenerator::updateIndex()
{
    Impl & d = *impl_;
    d.configure();
    if (d.noStrategy() || (d.isConstant && !d.segments.empty()))
        return;
    if (!d.segments.empty())
    {
        IndexTableSegment & last = *d.segments.back();
        last.indexDuration(int64(d.position) - last.indexStartPosition().value());
    }
    THROW_UNLESS_TEXT(InvalidState, d.info.get() != nullptr, "indexSegmentInfo_.get () != 0",
                      "Default implementation of IndexTableGenerator was already configured.");
    SegmentPtr segment(new IndexTableSegment(4));
    segment->bodySID(d.bodySID);
    segment->indexSID(d.indexSID);
    Templates::Rational<int> const & rate = d.info->indexRate();
    segment->indexEditRate(Types::Rational(rate));
    segment->indexStartPosition(int64(d.position));
    segment->indexDuration(int64(0));
    segment->editUnitByteCount(0);
    if (d.info->wrapKind() == IndexSegmentInfo::ClipWrapped)
        d.clipWrappedSetup(*segment);
    else
        d.frameWrappedSetup(*segment);
    if (!d.isConstant && !d.segments.empty() && d.segments.back()->indexEntryCount() == 0)
    {
        if (d.segments.back().get() == d.lastWritten)
            d.lastWritten = nullptr, d.hasLastWritten = false;
        d.segments.pop_back();
    }
    if (d.bodyStrategy == IndexTableGenerationNotWritten && d.closingStrategy == IndexTableGenerationNotWritten &&
        d.hasLastWritten)
        while (d.segments.front().get() != d.lastWritten)
            d.segments.pop_front();
    d.segments.push_back(segment);
}

uint64 DefaultIndexTableGenerator::rawIndexByteCount(bool closing) const
{
    Impl & d = *impl_;
    d.configure();
    if (!closing && d.isConstant && d.hasLastWritten && d.bodyStrategy == IndexTableGenerationNotWritten)
        return 0;
    Templates::vector<IndexTableSegment *> segments;
    d.chosen(closing ? d.closingStrategy : d.bodyStrategy, segments);
    uint64 bytes = 0;
    for (IndexTableSegment * segment : segments)
        bytes += segment->serializedSize();
    return bytes;
}

void DefaultIndexTableGenerator::writeIndexSegments(bool closing, DataIO::DataSink & sink)
{
    Impl & d = *impl_;
    d.configure();
    Templates::vector<IndexTableSegment *> segments;
    d.chosen(closing ? d.closingStrategy : d.bodyStrategy, segments);
    for (IndexTableSegment * segment : segments)
    {
        segment->serialize(sink);
        d.lastWritten = segment;
        d.hasLastWritten = true;
    }
}

void DefaultIndexTableGenerator::indexSID(unsigned int sid) { impl_->indexSID = sid; }

void DefaultIndexTableGenerator::bodySID(unsigned int sid) { impl_->bodySID = sid; }

IndexTableSegmentType DefaultIndexTableGenerator::indexSegmentType() const
{
    impl_->configure();
    return impl_->segmentType;
}

bool DefaultIndexTableGenerator::indexesAfterEndOfEssence() const
{
    impl_->configure();
    switch (impl_->closingStrategy)
    {
    case IndexTableGenerationNone: return false;
    case IndexTableGenerationNotWritten:
    case IndexTableGenerationAll: return true;
    }
    return !impl_->isConstant;
}

void DefaultIndexTableGenerator::currentContentInfo(uint64 position, uint64)
{
    impl_->configure();
    impl_->position = position;
}

unsigned char DefaultIndexTableGenerator::posTableCount() const
{
    impl_->configure();
    openFirstSegment();
    if (!impl_->hasEntryDetail || impl_->segments.empty())
        return 0;
    Types::UInt8 const * count = impl_->segments.back()->posTableCount();
    return count != nullptr ? count->value() : 0;
}

unsigned char DefaultIndexTableGenerator::sliceCount() const
{
    impl_->configure();
    openFirstSegment();
    if (!impl_->hasEntryDetail || impl_->segments.empty())
        return 0;
    Types::UInt8 const * count = impl_->segments.back()->sliceCount();
    return count != nullptr ? count->value() : 0;
}

// Entries are shaped by the segment that takes them: the first one is opened on demand when no
// partition has asked for one yet.
void DefaultIndexTableGenerator::openFirstSegment() const
{
    if (impl_->segments.empty() && !impl_->noStrategy() && impl_->info.get() != nullptr)
        const_cast<DefaultIndexTableGenerator *>(this)->updateIndex();
}

bool DefaultIndexTableGenerator::isCurrentFull() const
{
    return !impl_->segments.empty() && impl_->segments.back()->serializedSize() > SEGMENT_SIZE_LIMIT;
}

void DefaultIndexTableGenerator::writeIndexEntry(IndexTables::IndexEntry const & entry)
{
    Impl & d = *impl_;
    d.configure();
    if (d.isConstant || d.noStrategy())
        return;
    if (d.segments.empty() || isCurrentFull())
        updateIndex();
    IndexTableSegment & last = *d.segments.back();
    last.addIndexEntry(last.indexEntryCount(), entry);
}
} // namespace GenericContainer
} // namespace Vellum
