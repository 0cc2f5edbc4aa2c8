#include "IndexTables/DeltaEntry.h"

#include <cstring>

#include "KLV/Value.h"
#include "Types/WireOrder.h"

namespace Vellum
{
namespace IndexTables
{
// The entry's bytes in wire order.
struct DeltaEntry::Impl
{
    VELLUM_CLASS_ALLOCATION
    unsigned char bytes[SIZE];
};

DeltaEntry::DeltaEntry(signed char posTableIndex, unsigned char slice, unsigned int elementDelta) : impl_(new Impl)
{
    impl_->bytes[0] = static_cast<unsigned char>(posTableIndex);
    impl_->bytes[1] = slice;
    Types::WireOrder::store<uint32>(impl_->bytes + 2, elementDelta);
}

DeltaEntry::DeltaEntry(KLV::Value & value) : impl_(new Impl)
{
    value.readValue(impl_->bytes, SIZE);
}

DeltaEntry::DeltaEntry(DeltaEntry const & other) : IndexTableSegmentEntry(other), impl_(new Impl(*other.impl_)) {}

DeltaEntry & DeltaEntry::operator=(DeltaEntry const & other)
{
    std::memcpy(impl_->bytes, other.impl_->bytes, SIZE);
    return *this;
}

DeltaEntry::~DeltaEntry() = default;

void DeltaEntry::serialize(DataIO::DataSink & sink) const { sink.write(impl_->bytes, SIZE); }

unsigned short DeltaEntry::serializedSize() const { return SIZE; }

signed char DeltaEntry::posTableIndex() const { return static_cast<signed char>(impl_->bytes[0]); }

unsigned char DeltaEntry::slice() const { return impl_->bytes[1]; }

unsigned int DeltaEntry::elementDelta() const { return Types::WireOrder::load<uint32>(impl_->bytes + 2); }
} // namespace IndexTables
} // namespace Vellum
