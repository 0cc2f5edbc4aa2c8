#include "IndexTables/IndexEntry.h"

#include <cstring>

#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "Templates/Containers.h"
#include "Types/WireOrder.h"

namespace Vellum
{
namespace IndexTables
{
namespace
{
// The largest entry: 255 slice offsets and 255 position table entries.
unsigned const MAXIMUM_ENTRY_SIZE = IndexEntry::FIXED_SIZE + 4 * 255 + 8 * 255;

char const BEYOND_END[] = "Trying to access a element beyond the end of data";
} // namespace

// The fixed part in wire order; slice offsets and position table entries as native numbers.
// Position table entries keep their two numbers as read: a rational would put them in lowest
// terms and change the bytes written back.
struct IndexEntry::Impl
{
    VELLUM_CLASS_ALLOCATION
    typedef Templates::pair<int32, int32> RawRational;

    unsigned char fixed[FIXED_SIZE];
    Templates::vector<uint32> sliceOffsets;
    Templates::vector<RawRational> posTable;

    void setFlag(unsigned char bit, bool set)
    {
        if (set)
            fixed[2] = static_cast<unsigned char>(fixed[2] | bit);
        else
            fixed[2] = static_cast<unsigned char>(fixed[2] & ~bit);
    }
};

IndexEntry::IndexEntry(uint64 streamOffset) : impl_(new Impl)
{
    impl_->fixed[0] = 0;
    impl_->fixed[1] = 0;
    impl_->fixed[2] = RANDOM_ACCESS;
    Types::WireOrder::store<uint64>(impl_->fixed + 3, streamOffset);
}

IndexEntry::IndexEntry(signed char temporalOffset, signed char keyFrameOffset, bool randomAccess, bool sequenceHeader,
                       bool forwardPrediction, bool backwardPrediction, uint64 streamOffset)
    : impl_(new Impl)
{
    impl_->fixed[0] = static_cast<unsigned char>(temporalOffset);
    impl_->fixed[1] = static_cast<unsigned char>(keyFrameOffset);
    impl_->fixed[2] = 0;
    impl_->setFlag(RANDOM_ACCESS, randomAccess);
    impl_->setFlag(SEQUENCE_HEADER, sequenceHeader);
    impl_->setFlag(FORWARD_PREDICTION, forwardPrediction);
    impl_->setFlag(BACKWARD_PREDICTION, backwardPrediction);
    Types::WireOrder::store<uint64>(impl_->fixed + 3, streamOffset);
}

IndexEntry::IndexEntry(KLV::Value & value, unsigned char sliceCount, unsigned char posTableCount) : impl_(new Impl)
{
    unsigned char bytes[MAXIMUM_ENTRY_SIZE];
    unsigned size = FIXED_SIZE + 4u * sliceCount + 8u * posTableCount;
    value.readValue(bytes, size);
    std::memcpy(impl_->fixed, bytes, FIXED_SIZE);
    unsigned char const * p = bytes + FIXED_SIZE;
    impl_->sliceOffsets.reserve(sliceCount);
    for (unsigned i = 0; i < sliceCount; ++i, p += 4)
        impl_->sliceOffsets.push_back(Types::WireOrder::load<uint32>(p));
    impl_->posTable.reserve(posTableCount);
    for (unsigned i = 0; i < posTableCount; ++i, p += 8)
        impl_->posTable.push_back(
            Impl::RawRational(Types::WireOrder::load<int32>(p), Types::WireOrder::load<int32>(p + 4)));
}

IndexEntry::IndexEntry(IndexEntry const & other) : IndexTableSegmentEntry(other), impl_(new Impl(*other.impl_)) {}

IndexEntry & IndexEntry::operator=(IndexEntry const & other)
{
    if (this != &other)
    {
        Impl copy(*other.impl_);
        std::memcpy(impl_->fixed, copy.fixed, FIXED_SIZE);
        impl_->sliceOffsets.swap(copy.sliceOffsets);
        impl_->posTable.swap(copy.posTable);
    }
    return *this;
}

IndexEntry::~IndexEntry() = default;

void IndexEntry::serialize(DataIO::DataSink & sink) const
{
    unsigned char bytes[MAXIMUM_ENTRY_SIZE];
    std::memcpy(bytes, impl_->fixed, FIXED_SIZE);
    unsigned char * p = bytes + FIXED_SIZE;
    for (uint32 offset : impl_->sliceOffsets)
    {
        Types::WireOrder::store<uint32>(p, offset);
        p += 4;
    }
    for (Impl::RawRational const & r : impl_->posTable)
    {
        Types::WireOrder::store<int32>(p, r.first);
        Types::WireOrder::store<int32>(p + 4, r.second);
        p += 8;
    }
    sink.write(bytes, static_cast<uint64>(p - bytes));
}

unsigned short IndexEntry::serializedSize() const
{
    return static_cast<unsigned short>(FIXED_SIZE + 4 * impl_->sliceOffsets.size() + 8 * impl_->posTable.size());
}

signed char IndexEntry::temporalOffset() const { return static_cast<signed char>(impl_->fixed[0]); }

void IndexEntry::temporalOffset(signed char offset) { impl_->fixed[0] = static_cast<unsigned char>(offset); }

signed char IndexEntry::keyFrameOffset() const { return static_cast<signed char>(impl_->fixed[1]); }

void IndexEntry::keyFrameOffset(signed char offset) { impl_->fixed[1] = static_cast<unsigned char>(offset); }

uint64 IndexEntry::streamOffset() const { return Types::WireOrder::load<uint64>(impl_->fixed + 3); }

void IndexEntry::streamOffset(uint64 offset) { Types::WireOrder::store<uint64>(impl_->fixed + 3, offset); }

unsigned char IndexEntry::flags() const { return impl_->fixed[2]; }

void IndexEntry::flags(unsigned char flags) { impl_->fixed[2] = flags; }

bool IndexEntry::randomAccess() const { return (impl_->fixed[2] & RANDOM_ACCESS) != 0; }

void IndexEntry::randomAccess(bool set) { impl_->setFlag(RANDOM_ACCESS, set); }

bool IndexEntry::sequenceHeader() const { return (impl_->fixed[2] & SEQUENCE_HEADER) != 0; }

void IndexEntry::sequenceHeader(bool set) { impl_->setFlag(SEQUENCE_HEADER, set); }

bool IndexEntry::forwardPrediction() const { return (impl_->fixed[2] & FORWARD_PREDICTION) != 0; }

void IndexEntry::forwardPrediction(bool set) { impl_->setFlag(FORWARD_PREDICTION, set); }

bool IndexEntry::backwardPrediction() const { return (impl_->fixed[2] & BACKWARD_PREDICTION) != 0; }

void IndexEntry::backwardPrediction(bool set) { impl_->setFlag(BACKWARD_PREDICTION, set); }

void IndexEntry::addSliceOffset(unsigned char position, unsigned int offset)
{
    if (position > impl_->sliceOffsets.size() || impl_->sliceOffsets.size() >= 255)
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    impl_->sliceOffsets.insert(impl_->sliceOffsets.begin() + position, offset);
}

unsigned int IndexEntry::sliceOffset(unsigned char position) const
{
    if (position >= impl_->sliceOffsets.size())
        VELLUM_THROW(IndexOutOfBounds, "Trying to access a element beyond the end of data.");
    return impl_->sliceOffsets[position];
}

void IndexEntry::removeSliceOffset(unsigned char position)
{
    if (position >= impl_->sliceOffsets.size())
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    impl_->sliceOffsets.erase(impl_->sliceOffsets.begin() + position);
}

unsigned char IndexEntry::sliceOffsetCount() const { return static_cast<unsigned char>(impl_->sliceOffsets.size()); }

void IndexEntry::addPosTable(unsigned char position, Templates::Rational<int> const & offset)
{
    if (position > impl_->posTable.size() || impl_->posTable.size() >= 255)
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    impl_->posTable.insert(impl_->posTable.begin() + position,
                           Impl::RawRational(offset.numerator(), offset.denominator()));
}

Templates::Rational<int> IndexEntry::posTable(unsigned char position) const
{
    if (position >= impl_->posTable.size())
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    Impl::RawRational const & r = impl_->posTable[position];
    return Templates::Rational<int>(r.first, r.second);
}

void IndexEntry::removePosTable(unsigned char position)
{
    if (position >= impl_->posTable.size())
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    impl_->posTable.erase(impl_->posTable.begin() + position);
}

unsigned char IndexEntry::posTableCount() const { return static_cast<unsigned char>(impl_->posTable.size()); }
} // namespace IndexTables
} // namespace Vellum
