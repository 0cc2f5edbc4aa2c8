#include "MXFIO/Seeker.h"

#include "Exceptions/Exceptions.h"
#include "KLV/KeyPredicates.h"
#include "Types/Integers.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
// The stream offsets learnt while reading that a Seeker keeps at most.
size_t const MAX_LEARNT_OFFSETS = 1 << 16;
// The element number of a track number: the element count (byte 2) does not tell elements apart.
unsigned int elementNumber(unsigned int trackNumber)
{
    return trackNumber & 0xFF00FFFFu;
}

// The item type (byte 0) of the system items of the Generic Container.
bool isSystemItem(unsigned int trackNumber)
{
    unsigned int const itemType = trackNumber >> 24;
    return itemType == 0x04 || itemType == 0x14;
}

// Puts the source back where it stood when a query began, so that a look-up from within a read
// leaves that read undisturbed.
class SourcePositionKeeper
{
public:
    explicit SourcePositionKeeper(DataIO::RandomAccessDataSource & source)
        : source_(source), position_(source.absoluteOffset())
    {
    }
    ~SourcePositionKeeper()
    {
        try
        {
            if (source_.absoluteOffset() != position_)
                source_.seek(position_);
        }
        catch (...)
        {
        }
    }
    SourcePositionKeeper(SourcePositionKeeper const &) = delete;
    SourcePositionKeeper & operator=(SourcePositionKeeper const &) = delete;

private:
    DataIO::RandomAccessDataSource & source_;
    uint64 position_;
};

// The entry of the edit unit in the segment, or null when the segment has none for it.
IndexTables::IndexEntry const * entryOf(IndexTables::IndexTableSegment const & segment, int64 editUnit)
{
    int64 const start = segment.indexStartPosition().value();
    if (editUnit < start)
        return nullptr;
    uint64 const row = uint64(editUnit - start);
    if (row >= segment.indexEntryCount())
        return nullptr;
    return &segment.indexEntry((unsigned int)row);
}
} // namespace

struct Seeker::Impl
{
    VELLUM_CLASS_ALLOCATION

    Impl(DataIO::RandomAccessDataSource & s, Templates::auto_ptr<IndexTableProvider> ip,
         Templates::auto_ptr<PartitionProvider> pp, unsigned int ebc, uint64 size, int64 duration)
        : source(s), indexProvider(std::move(ip)), partitionProvider(std::move(pp)), editUnitByteCount(ebc),
          containerSize(size), containerDuration(duration), bytesPerEditUnit(-1)
    {
    }

    // The average of bytes per edit unit over the whole container; computed on first need.
    Templates::Rational<int64> const & average()
    {
        if (bytesPerEditUnit < 0)
        {
            if (containerDuration <= 0)
                bytesPerEditUnit = Templates::Rational<int64>(0, 1);
            else
                bytesPerEditUnit = Templates::Rational<int64>(int64(containerSize), containerDuration);
        }
        return bytesPerEditUnit;
    }

    // The element number to look for: a number mapped to another goes there first.
    unsigned int mapped(unsigned int trackNumber) const
    {
        Templates::map<unsigned int, unsigned int>::const_iterator alternate = alternates.find(elementNumber(trackNumber));
        return alternate == alternates.end() ? elementNumber(trackNumber) : alternate->second;
    }

    DataIO::RandomAccessDataSource & source;
    Templates::auto_ptr<IndexTableProvider> indexProvider;
    Templates::auto_ptr<PartitionProvider> partitionProvider;
    unsigned int editUnitByteCount;
    uint64 containerSize;
    int64 containerDuration;
    Templates::Rational<int64> bytesPerEditUnit;
    // Element number -> position of the element in a content package.
    Templates::map<unsigned int, unsigned int> elements_;
    Templates::map<unsigned int, unsigned int> alternates;
    // Stream offsets of edit units met while reading.
    Templates::map<int64, uint64> learnt;
};

Seeker::Seeker(DataIO::RandomAccessDataSource & source, Templates::auto_ptr<IndexTableProvider> indexProvider,
               Templates::auto_ptr<PartitionProvider> partitionProvider, unsigned int editUnitByteCount,
               uint64 containerSize, int64 containerDuration)
    : impl_(new Impl(source, std::move(indexProvider), std::move(partitionProvider), editUnitByteCount, containerSize,
                     containerDuration))
{
}

Seeker::~Seeker() = default;

IndexTableProvider & Seeker::indexProvider()
{
    return *impl_->indexProvider;
}

PartitionProvider & Seeker::partitionProvider()
{
    return *impl_->partitionProvider;
}

void Seeker::indexProvider(Templates::auto_ptr<IndexTableProvider> provider)
{
    THROW_UNLESS(InvalidValue, provider.get () != 0, "An index table provider is required.");
    impl_->indexProvider = std::move(provider);
}

void Seeker::partitionProvider(Templates::auto_ptr<PartitionProvider> provider)
{
    THROW_UNLESS(InvalidValue, provider.get () != 0, "A partition provider is required.");
    impl_->partitionProvider = std::move(provider);
}

bool Seeker::streamOffset(int64 editUnit, uint64 & offset)
{
    if (editUnit < 0)
        return false;
    // Constant bytes per edit unit: no index needs to be read.
    if (impl_->editUnitByteCount != 0)
    {
        offset = uint64(editUnit) * impl_->editUnitByteCount;
        return true;
    }
    SourcePositionKeeper keeper(impl_->source);
    IndexTableSegmentPtr segment = impl_->indexProvider->segment(editUnit);
    if (segment.get() != nullptr)
    {
        if (IndexTables::IndexEntry const * entry = entryOf(*segment, editUnit))
        {
            offset = entry->streamOffset();
            return true;
        }
        Types::UInt32 const * count = segment->editUnitByteCount();
        if (count != nullptr && count->value() != 0 && segment->indexEntryCount() == 0)
        {
            offset = uint64(editUnit) * count->value();
            return true;
        }
    }
    if (impl_->indexProvider->beyondTable(editUnit))
        return false;
    Templates::map<int64, uint64>::const_iterator known = impl_->learnt.find(editUnit);
    if (known != impl_->learnt.end())
    {
        offset = known->second;
        return true;
    }
    // Nothing tells: estimate from the average size of an edit unit.
    Templates::Rational<int64> estimate = impl_->average();
    estimate *= editUnit;
    offset = uint64(estimate.numerator() / estimate.denominator());
    return true;
}

bool Seeker::elementStreamOffset(int64 editUnit, unsigned int trackNumber, uint64 & offset)
{
    if (impl_->elements_.empty())
        return false;
    unsigned int const number = impl_->mapped(trackNumber);
    Templates::map<unsigned int, unsigned int> const & elements_ = impl_->elements_;
    Templates::map<unsigned int, unsigned int>::const_iterator it = elements_.find(number);
    THROW_UNLESS(KeyNotFound, it != elements_.end (), "Track number not in Essence container");
    if (editUnit < 0)
        return false;
    SourcePositionKeeper keeper(impl_->source);
    IndexTableSegmentPtr segment = impl_->indexProvider->segment(editUnit);
    if (segment.get() == nullptr)
        return false;
    IndexTables::IndexEntry const * entry = entryOf(*segment, editUnit);
    if (entry == nullptr)
    {
        // A segment of constant edit unit size has no entries: the unit starts at a multiple of
        // the size, and the delta entry places the element in it.
        Types::UInt32 const * count = segment->editUnitByteCount();
        if (segment->indexEntryCount() != 0 || count == nullptr || count->value() == 0)
            return false;
        uint64 delta = 0;
        if (it->second < segment->deltaEntryCount())
            delta = segment->deltaEntry(it->second).elementDelta();
        else if (it->second != 0)
            return false;
        offset = uint64(editUnit) * count->value() + delta;
        return true;
    }
    unsigned int slice = 0;
    unsigned int delta = 0;
    if (it->second < segment->deltaEntryCount())
    {
        IndexTables::DeltaEntry const & deltaEntry = segment->deltaEntry(it->second);
        slice = deltaEntry.slice();
        delta = deltaEntry.elementDelta();
    }
    else if (it->second != 0)
        return false;
    if (slice > entry->sliceOffsetCount())
        return false;
    offset = entry->streamOffset() + delta;
    if (slice != 0)
        offset += entry->sliceOffset((unsigned char)(slice - 1));
    return true;
}

Partition * Seeker::partition(uint64 streamOffset, int64 editUnit)
{
    SourcePositionKeeper keeper(impl_->source);
    return impl_->partitionProvider->partition(streamOffset, editUnit);
}

bool Seeker::editUnitInfo(int64 editUnit, EditUnitInfo & info)
{
    if (editUnit < 0 || impl_->editUnitByteCount != 0)
        return false;
    SourcePositionKeeper keeper(impl_->source);
    IndexTableSegmentPtr segment = impl_->indexProvider->segment(editUnit);
    if (segment.get() == nullptr)
        return false;
    IndexTables::IndexEntry const * entry = entryOf(*segment, editUnit);
    if (entry == nullptr)
        return false;
    info.temporalOffset = entry->temporalOffset();
    info.keyFrameOffset = entry->keyFrameOffset();
    info.flags = entry->flags();
    info.streamOffset = entry->streamOffset();
    return true;
}

int64 Seeker::reorderedEditUnit(int64 editUnit)
{
    EditUnitInfo info;
    if (!editUnitInfo(editUnit, info))
        return editUnit;
    return editUnit + info.temporalOffset;
}

bool Seeker::hasIndex()
{
    if (impl_->editUnitByteCount != 0)
        return true;
    SourcePositionKeeper keeper(impl_->source);
    return impl_->indexProvider->segment(0).get() != nullptr;
}

void Seeker::elements(Templates::vector<unsigned int> const & trackNumbers)
{
    // The packets of one system item (its pack and the sets behind it) are one element of the
    // content package, as the index's delta entries count them.
    Templates::map<unsigned int, unsigned int> table;
    unsigned int index = 0;
    for (size_t i = 0; i < trackNumbers.size(); ++i)
    {
        if (i != 0 && !(isSystemItem(trackNumbers[i]) && isSystemItem(trackNumbers[i - 1])))
            ++index;
        table.insert(Templates::pair<unsigned int const, unsigned int>(elementNumber(trackNumbers[i]), index));
    }
    impl_->elements_.swap(table);
}

void Seeker::alternateTrackNumber(unsigned int trackNumber, unsigned int mappedTo)
{
    Templates::map<unsigned int, unsigned int> const & elements_ = impl_->elements_;
    Templates::map<unsigned int, unsigned int>::const_iterator element = elements_.find(elementNumber(mappedTo));
    THROW_UNLESS(KeyNotFound, element != elements_.end (), "Track number not in Essence container");
    impl_->alternates[elementNumber(trackNumber)] = elementNumber(mappedTo);
}

bool Seeker::trackNumberExists(unsigned int trackNumber) const
{
    return impl_->elements_.find(impl_->mapped(trackNumber)) != impl_->elements_.end();
}

unsigned int Seeker::elementIndex(unsigned int trackNumber) const
{
    Templates::map<unsigned int, unsigned int> const & elements_ = impl_->elements_;
    Templates::map<unsigned int, unsigned int>::const_iterator element = elements_.find(impl_->mapped(trackNumber));
    THROW_UNLESS(KeyNotFound, element != elements_.end (), "Track number not in Essence container");
    return element->second;
}

void Seeker::learnStreamOffset(int64 editUnit, uint64 offset)
{
    // A constant size places every unit already. Otherwise the most recent units are kept, so
    // that memory stays flat however long the file read.
    if (editUnit < 0 || impl_->editUnitByteCount != 0)
        return;
    impl_->learnt[editUnit] = offset;
    if (impl_->learnt.size() > MAX_LEARNT_OFFSETS)
        impl_->learnt.erase(impl_->learnt.begin());
}

void Seeker::containerSize(uint64 size, int64 duration)
{
    impl_->containerSize = size;
    impl_->containerDuration = duration;
    impl_->bytesPerEditUnit = Templates::Rational<int64>(-1);
}

void Seeker::checkClipWrappedPacket(KLV::Key const & key) const
{
    THROW_UNLESS(InvalidFormat, !KLV::isFillItem (key), "Expected Essence KLV on clip-wrapped body partition");
}
} // namespace MXFIO
} // namespace Vellum
