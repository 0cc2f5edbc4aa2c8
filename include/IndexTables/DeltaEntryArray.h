#pragma once
// The DeltaEntryArray item of a segment: NumberOfEntries (UInt32), EntrySize (UInt32), then the
// delta entries one behind the other.

#include "DataIO/DataSink.h"
#include "IndexTables/DeltaEntry.h"
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
class DeltaEntryArray
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty array of element size 6.
    DeltaEntryArray();
    // Reads a whole array value. A header that ends early, a count of entries that the value
    // cannot hold, and an entry that ends early throw InvalidLength.
    explicit DeltaEntryArray(KLV::Value & value);
    DeltaEntryArray(DeltaEntryArray const & other);
    DeltaEntryArray & operator=(DeltaEntryArray const & other);
    virtual ~DeltaEntryArray();

    // 8 + size() * elementSize().
    virtual uint64 serializedSize() const;
    // The count, the element size and the entries.
    virtual void serialize(DataIO::DataSink & sink) const;

    // Both copy the entry. An entry of another size than elementSize() throws InvalidElement;
    // insertAt accepts a position up to size(), a greater one throws IndexOutOfBounds.
    void append(DeltaEntry const & entry);
    void insertAt(unsigned int position, DeltaEntry const & entry);
    // A position at or past size() throws IndexOutOfBounds.
    void remove(unsigned int position);
    DeltaEntry & at(unsigned int position);
    DeltaEntry const & at(unsigned int position) const;

    unsigned int size() const;
    unsigned int elementSize() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace IndexTables
} // namespace Vellum
