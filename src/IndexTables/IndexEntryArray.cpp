#include "IndexTables/IndexEntryArray.h"

#include "Exceptions/Exceptions.h"
#include "IndexTables/EntryArrays.h"
#include "KLV/Value.h"

namespace Vellum
{
namespace IndexTables
{
namespace
{
uint32 entrySize(unsigned char sliceCount, unsigned char posTableCount)
{
    return IndexEntry::FIXED_SIZE + 4u * sliceCount + 8u * posTableCount;
}
} // namespace

struct IndexEntryArray::Impl
{
    VELLUM_CLASS_ALLOCATION
    Detail::OwnedEntries<IndexEntry> entries;
    uint32 elementSize;
};

IndexEntryArray::IndexEntryArray(unsigned char sliceCount, unsigned char posTableCount) : impl_(new Impl)
{
    impl_->elementSize = entrySize(sliceCount, posTableCount);
}

IndexEntryArray::IndexEntryArray(KLV::Value & value, unsigned char sliceCount, unsigned char posTableCount)
    : impl_(new Impl)
{
    uint32 layoutSize = entrySize(sliceCount, posTableCount);
    Detail::ArrayHeader header = Detail::readArrayHeader(value);
    Detail::readEntries(value, header, layoutSize, impl_->entries, [=](KLV::Value & v) {
        return Templates::auto_ptr<IndexEntry>(new IndexEntry(v, sliceCount, posTableCount));
    });
    // The entries were read by their own layout: an array that has some is of their size.
    impl_->elementSize = header.count == 0 ? header.elementSize : layoutSize;
}

IndexEntryArray::IndexEntryArray(IndexEntryArray const & other) : impl_(new Impl(*other.impl_)) {}

IndexEntryArray & IndexEntryArray::operator=(IndexEntryArray const & other)
{
    if (this != &other)
    {
        Detail::OwnedEntries<IndexEntry> copy(other.impl_->entries);
        impl_->entries.swap(copy);
        impl_->elementSize = other.impl_->elementSize;
    }
    return *this;
}

IndexEntryArray::~IndexEntryArray() = default;

uint64 IndexEntryArray::serializedSize() const
{
    return 8 + static_cast<uint64>(impl_->entries.entries.size()) * impl_->elementSize;
}

void IndexEntryArray::serialize(DataIO::DataSink & sink) const
{
    Detail::writeArrayHeader(sink, impl_->entries.entries.size(), impl_->elementSize);
    for (Templates::auto_ptr<IndexEntry> const & entry : impl_->entries.entries)
        entry->serialize(sink);
}

void IndexEntryArray::append(IndexEntry const & entry)
{
    if (entry.serializedSize() != impl_->elementSize)
        VELLUM_THROW(InvalidElement, "Trying to append an invalid element");
    impl_->entries.append(entry);
}

void IndexEntryArray::insertAt(unsigned int position, IndexEntry const & entry)
{
    if (entry.serializedSize() != impl_->elementSize)
        VELLUM_THROW(InvalidElement, "TRying to insert an invalid element");
    if (position > impl_->entries.entries.size())
        VELLUM_THROW(IndexOutOfBounds, "Trying to insert an element beyond the end of the data");
    impl_->entries.insert(position, entry);
}

void IndexEntryArray::remove(unsigned int position)
{
    if (position >= impl_->entries.entries.size())
        VELLUM_THROW(IndexOutOfBounds, "Trying to remove an element beyond the end of the data");
    impl_->entries.remove(position);
}

IndexEntry & IndexEntryArray::at(unsigned int position)
{
    if (position >= impl_->entries.entries.size())
        VELLUM_THROW(IndexOutOfBounds, "Trying to access an element beyond the end of the data");
    return *impl_->entries.entries[position];
}

IndexEntry const & IndexEntryArray::at(unsigned int position) const
{
    if (position >= impl_->entries.entries.size())
        VELLUM_THROW(IndexOutOfBounds, "IndexEntryArray::at() IndexOutOfBonds");
    return *impl_->entries.entries[position];
}

unsigned int IndexEntryArray::size() const { return static_cast<unsigned int>(impl_->entries.entries.size()); }

unsigned int IndexEntryArray::elementSize() const { return impl_->elementSize; }
} // namespace IndexTables
} // namespace Vellum
