#pragma once
// The engine behind every Generic Container source: turns the analyzers of a committed container
// into content packages (key and length in front of each element, fill items where the layout
// demands them), one index entry per package, and keeps the track durations.

#include "DataIO/Block.h"
#include "DataIO/Chain.h"
#include "GenericContainer/ContainerData.h"
#include "GenericContainer/IndexEntryBuilder.h"
#include "GenericContainer/IndexSegmentInfo.h"
#include "GenericContainer/Source.h"
#include "GenericContainer/TimecodeHandler.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
class Slice;
}

namespace GenericContainer
{
class GenericContainerIndexTableGenerator;

class BaseWorkerImpl : public Source
{
public:
    BaseWorkerImpl(ContainerData const & data, IndexSegmentInfo::ContentWrapKind wrapKind);
    ~BaseWorkerImpl() override;

    bool next(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<MXFIO::FutureUpdater> & updater,
              Templates::Rational<int64> & duration) override;
    bool done() const override;
    unsigned int kagSize() const override;
    void finalize() override;
    Metadata::Structural::SourcePackage & sourcePackage() override;
    Types::UniversalLabel const & essenceContainerUL() const override;
    Templates::Rational<int> const & packageRate() const override;
    bool isCBE() const override;
    MXFIO::IndexTableGenerator * indexTableGenerator() override;
    void indexTableGenerator(Templates::auto_ptr<MXFIO::IndexTableGenerator> generator) override;

    // Every element has a fixed size.
    bool checkCBE() const;
    // The padded size of a whole edit unit: the edit unit size, or the sum of the five item sizes
    // when all are set; 0 otherwise.
    unsigned int checkPaddedCBE() const;

protected:
    // Appends one content package and the seconds it covers.
    virtual void doNextContentPackage(DataIO::Chain & chain, Templates::Rational<int64> & duration);

    // The key of the entry and a BER length of `valueLength` in exactly `berBytes` bytes.
    Templates::auto_ptr<DataIO::Slice> createKLSlice(AnalyzerEntry const & entry, uint64 valueLength,
                                                     unsigned char berBytes);
    // One fill item of `size` bytes in all, its value made of slices of the zero block.
    void createKLVFiller(uint64 size, unsigned int klLength, DataIO::Chain & chain);
    void prepareNewEntry();
    void appendIndexEntry();
    void processIndexEntryTemporalOffset(uint64 position, bool usesPosTable,
                                         Templates::Rational<int64> const & temporalOffset,
                                         Templates::Rational<int64> const & processed,
                                         Templates::Rational<int64> const & target, Templates::Rational<int> const & rate);
    void processAnalyzerIndexEntry(uint64 position, bool temporalDependencies, unsigned char flags,
                                   signed char temporalReference);
    void processAnalyzerIndexEntrySliceOffset(bool isVariable, unsigned int fill, unsigned int & sliceOffset);
    // The generator when it is a Generic Container one, else null.
    GenericContainerIndexTableGenerator * baseIndexGenerator();
    void updateContentInfo();
    void setupTimecodeTrack(Utils::TimeCode timeCode, Templates::Rational<int> const & rate,
                            Templates::Rational<int> const & duration);
    // Every timeline track starts behind the pre-charge, at its own edit rate.
    void updateTrackOrigins();
    void indexTableGeneratorImpl(Templates::auto_ptr<MXFIO::IndexTableGenerator> generator);
    // Takes as many of the analyzer's units as fall into the current package.
    void readItemFromAnalyzer(AnalyzerEntry & entry, EditUnit & unit);

    IndexSegmentInfo::ContentWrapKind wrapKind_;
    unsigned int klLength_;
    uint64 position_;
    ContainerData data_;
    mutable bool done_;
    uint64 streamOffset_;
    unsigned int sliceOffset_;
    unsigned int lastItemSliceOffset_;
    Templates::Rational<int64> cachedDuration_;
    TimecodeHandler timecodeHandler_;
    Templates::auto_ptr<MXFIO::IndexTableGenerator> indexGenerator_;
    IndexEntryBuilder indexEntryBuilder_;
    DataIO::BlockHolder zeroBlock_;
    DataIO::Chain cache_;
    Templates::Rational<int> preCharge_;
    // A stream gave out while the current package was being made.
    bool streamEnded_;

private:
    int32 getItemSize(EssenceAnalyzer * analyzer) const;
    void fetchNextEditUnitFromAnalyzer(AnalyzerEntry & entry, EditUnit & unit, Templates::Rational<int64> const & current);
    void processAnalyzer(AnalyzerEntry & entry, DataIO::Chain & chain, Templates::Rational<int64> & duration);
    // The fill behind one element, by the layout; adds to sliceOffset_.
    uint64 elementFill(AnalyzerEntry const & entry, uint64 size, bool & isVariable);
    int64 getSourcePackageSmallestDuration() const;
    void updateSourceSourcePackageToSmallestDuration(int64 duration);
};
} // namespace GenericContainer
} // namespace Vellum
