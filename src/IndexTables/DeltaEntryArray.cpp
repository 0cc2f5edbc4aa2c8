#include "IndexTables/DeltaEntryArray.h"

#include "Exceptions/Exceptions.h"
#include "IndexTables/EntryArrays.h"
#include "KLV/Value.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace IndexTables
{
namespace
{
char const BEYOND_END[] = "Trying to access a element beyond the end of data";

Templates::auto_ptr<DeltaEntry> readDeltaEntry(KLV::Value & value)
{
    return Templates::auto_ptr<DeltaEntry>(new DeltaEntry(value));
}
} // namespace

struct DeltaEntryArray::Impl
{
    VELLUM_CLASS_ALLOCATION
    Detail::OwnedEntries<DeltaEntry> entries;
    uint32 elementSize;
};

DeltaEntryArray::DeltaEntryArray() : impl_(new Impl)
{
    impl_->elementSize = DeltaEntry::SIZE;
}

DeltaEntryArray::DeltaEntryArray(KLV::Value & value) : impl_(new Impl)
{
    Detail::ArrayHeader header = Detail::readArrayHeader(value);
    Detail::readEntries(value, header, DeltaEntry::SIZE, impl_->entries, &readDeltaEntry);
    // The entries were read by their own layout: an array that has some is of their size.
    impl_->elementSize = header.count == 0 ? header.elementSize : static_cast<uint32>(DeltaEntry::SIZE);
}

DeltaEntryArray::DeltaEntryArray(DeltaEntryArray const & other) : impl_(new Impl(*other.impl_)) {}

DeltaEntryArray & DeltaEntryArray::operator=(DeltaEntryArray const & other)
{
    if (this != &other)
    {
        Detail::OwnedEntries<DeltaEntry> copy(other.impl_->entries);
        impl_->entries.swap(copy);
        impl_->elementSize = other.impl_->elementSize;
    }
    return *this;
}

DeltaEntryArray::~DeltaEntryArray() = default;

uint64 DeltaEntryArray::serializedSize() const
{
    return 8 + static_cast<uint64>(impl_->entries.entries.size()) * impl_->elementSize;
}

void DeltaEntryArray::serialize(DataIO::DataSink & sink) const
{
    Detail::writeArrayHeader(sink, impl_->entries.entries.size(), impl_->elementSize);
    for (Templates::auto_ptr<DeltaEntry> const & entry : impl_->entries.entries)
        entry->serialize(sink);
}

void DeltaEntryArray::append(DeltaEntry const & entry)
{
    if (entry.serializedSize() != impl_->elementSize)
        VELLUM_THROW(InvalidElement, "Trying to append an invalid entry.");
    impl_->entries.append(entry);
}

void DeltaEntryArray::insertAt(unsigned int position, DeltaEntry const & entry)
{
    if (entry.serializedSize() != impl_->elementSize)
        VELLUM_THROW(InvalidElement, "Trying to append an invalid entry.");
    if (position > impl_->entries.entries.size())
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    impl_->entries.insert(position, entry);
}

void DeltaEntryArray::remove(unsigned int position)
{
    if (position >= impl_->entries.entries.size())
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    impl_->entries.remove(position);
}

DeltaEntry & DeltaEntryArray::at(unsigned int position)
{
    if (position >= impl_->entries.entries.size())
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    return *impl_->entries.entries[position];
}

DeltaEntry const & DeltaEntryArray::at(unsigned int position) const
{
    if (position >= impl_->entries.entries.size())
        VELLUM_THROW(IndexOutOfBounds, BEYOND_END);
    return *impl_->entries.entries[position];
}

unsigned int DeltaEntryArray::size() const { return static_cast<unsigned int>(impl_->entries.entries.size()); }

unsigned int DeltaEntryArray::elementSize() const { return impl_->elementSize; }
} // namespace IndexTables
} // namespace Vellum
