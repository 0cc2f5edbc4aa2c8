// One index entry per content package, with the long-GOP arithmetic of temporal and key frame
// offsets.

#include "GenericContainer/IndexEntryBuilder.h"

#include "GenericContainer/GenericContainerIndexTableGenerator.h"
#include "IndexTables/IndexEntry.h"

namespace Vellum
{
namespace GenericContainer
{
using IndexTables::IndexEntry;
using Templates::Rational;

struct IndexEntryBuilder::Impl
{
    Impl()
        : slicesLeft(0), posTablesLeft(0), keyFrameDistance(-1), generator(nullptr), openGop(false),
          openGopOffset(0), reorderSpan(0), reorderStep(0)
    {
    }

    void keyFrameOffsets(IndexEntry & entry, uint64 position);
    signed char temporalOffset(IndexEntry const & entry, signed char temporalReference);

    Templates::auto_ptr<IndexEntry> entry;
    unsigned char slicesLeft;
    unsigned char posTablesLeft;
    signed char keyFrameDistance;
    GenericContainerIndexTableGenerator * generator;
    bool openGop;
    signed char openGopOffset;
    signed char reorderSpan;
    signed char reorderStep;
};

namespace
{
// The flags of a picture of an open group that refers back past its own key frame.
unsigned char const OPEN_GOP_BACK_REFERENCE_FLAGS = 59;
}

IndexEntryBuilder::IndexEntryBuilder() : impl_(new Impl) {}

IndexEntryBuilder::~IndexEntryBuilder() {}

void IndexEntryBuilder::indexTableGenerator(MXFIO::IndexTableGenerator * generator)
{
    impl_->generator = dynamic_cast<GenericContainerIndexTableGenerator *>(generator);
}

IndexTables::IndexEntry const * IndexEntryBuilder::currentEntry() const { return impl_->entry.get(); }

void IndexEntryBuilder::prepareNewEntry(uint64 streamOffset)
{
    if (impl_->generator == nullptr)
        return;
    impl_->entry.reset(new IndexEntry(streamOffset));
    impl_->slicesLeft = impl_->generator->sliceCount();
    impl_->posTablesLeft = impl_->generator->posTableCount();
}

void IndexEntryBuilder::processIndexEntryTemporalOffset(uint64 position, bool usesPosTable,
                                                        Rational<int64> const & temporalOffset,
                                                        Rational<int64> const & processed,
                                                        Rational<int64> const & target, Rational<int> const & rate)
{
    if (impl_->generator == nullptr || impl_->entry.get() == nullptr || !usesPosTable)
        return;
    --impl_->posTablesLeft;
    Rational<int64> const begin =
        Rational<int64>(int64(position)) / Rational<int64>(rate.numerator(), rate.denominator());
    Rational<int64> const sum = processed + temporalOffset;
    Rational<int64> const value = sum < target ? sum - begin : Rational<int64>(0, 1);
    IndexEntry & entry = *impl_->entry;
    entry.addPosTable(entry.posTableCount(),
                      Rational<int>(static_cast<int>(value.numerator()), static_cast<int>(value.denominator())));
}

void IndexEntryBuilder::processAnalyzerIndexEntrySliceOffset(bool isVariable, unsigned int fill,
                                                             unsigned int & sliceOffset)
{
    if (impl_->generator == nullptr || impl_->entry.get() == nullptr || !isVariable)
        return;
    if (impl_->slicesLeft != 0)
    {
        --impl_->slicesLeft;
        IndexEntry & entry = *impl_->entry;
        bool const endsBeforeFiller = impl_->generator->indexSegmentType() == MXFIO::IndexSegmentVariableWithSlices;
        entry.addSliceOffset(entry.sliceOffsetCount(), endsBeforeFiller ? sliceOffset - fill : sliceOffset);
    }
    sliceOffset = 0;
}

void IndexEntryBuilder::Impl::keyFrameOffsets(IndexEntry & e, uint64 position)
{
    bool const predicted = e.forwardPrediction() || e.backwardPrediction();
    if (predicted && !e.sequenceHeader())
    {
        --keyFrameDistance;
        if (openGop && e.backwardPrediction())
        {
            e.keyFrameOffset(static_cast<signed char>(keyFrameDistance + openGopOffset));
            if (openGopOffset == reorderStep + keyFrameDistance)
            {
                e.keyFrameOffset(static_cast<signed char>(e.keyFrameOffset() - 1));
                e.flags(OPEN_GOP_BACK_REFERENCE_FLAGS);
            }
        }
        else
        {
            openGop = false;
            e.keyFrameOffset(keyFrameDistance);
        }
        return;
    }
    e.keyFrameOffset(0);
    if (!e.randomAccess())
    {
        openGop = true;
        if (position > 1)
            openGopOffset = static_cast<signed char>(keyFrameDistance - 1);
    }
    else
        openGop = false;
    keyFrameDistance = 0;
}

signed char IndexEntryBuilder::Impl::temporalOffset(IndexEntry const & e, signed char temporalReference)
{
    if (temporalReference == -keyFrameDistance)
        return 0;
    if (e.backwardPrediction())
    {
        if (reorderStep != reorderSpan)
        {
            ++reorderStep;
            return 1;
        }
        return static_cast<signed char>(-reorderSpan);
    }
    reorderStep = 1;
    reorderSpan = static_cast<signed char>(keyFrameDistance + temporalReference);
    return temporalReference != keyFrameDistance ? 1 : 0;
}

void IndexEntryBuilder::processAnalyzerIndexEntry(uint64 position, bool temporalDependencies, unsigned char flags,
                                                  signed char temporalReference)
{
    if (impl_->generator == nullptr || impl_->entry.get() == nullptr || !temporalDependencies)
        return;
    IndexEntry & entry = *impl_->entry;
    entry.flags(flags);
    impl_->keyFrameOffsets(entry, position);
    entry.temporalOffset(impl_->temporalOffset(entry, temporalReference));
}

void IndexEntryBuilder::appendIndexEntry()
{
    if (impl_->generator == nullptr || impl_->entry.get() == nullptr)
        return;
    impl_->generator->writeIndexEntry(*impl_->entry);
}
} // namespace GenericContainer
} // namespace Vellum
