#pragma once
// The IndexEntryArray item of a segment: NumberOfEntries (UInt32), EntrySize (UInt32), then the
// index entries one behind the other. The size of an entry hangs on the segment's SliceCount and
// PosTableCount.

#include "DataIO/DataSink.h"
#include "IndexTables/IndexEntry.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace IndexTables
{
class IndexEntryArray
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty array of element size 11 + 4 sliceCount + 8 posTableCount.
    IndexEntryArray(unsigned char sliceCount, unsigned char posTableCount);
    // Reads a whole array value, each entry by the layout that the two counts give. A header that
    // ends early, a count of entries that the value cannot hold, and an entry that ends early
    // throw InvalidLength.
    IndexEntryArray(KLV::Value & value, unsigned char sliceCount, unsigned char posTableCount);
    IndexEntryArray(IndexEntryArray const & other);
    IndexEntryArray & operator=(IndexEntryArray const & other);
    virtual ~IndexEntryArray();

    // 8 + size() * elementSize().
    virtual uint64 serializedSize() const;
    // The count, the element size and the entries.
    virtual void serialize(DataIO::DataSink & sink) const;

    // Both copy the entry. An entry of another size than elementSize() throws InvalidElement;
    // insertAt accepts a position up to size(), a greater one throws IndexOutOfBounds.
    void append(IndexEntry const & entry);
    void insertAt(unsigned int position, IndexEntry const & entry);
    // A position at or past size() throws IndexOutOfBounds.
    void remove(unsigned int position);
    IndexEntry & at(unsigned int position);
    IndexEntry const & at(unsigned int position) const;

    unsigned int size() const;
    unsigned int elementSize() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace IndexTables
} // namespace Vellum
