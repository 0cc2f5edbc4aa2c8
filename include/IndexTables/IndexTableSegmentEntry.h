#pragma once
// The common root of the two kinds of entries that an index table segment holds in its arrays.

#include "DataIO/DataSink.h"
#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace IndexTables
{
class IndexTableSegmentEntry
{
public:
    virtual ~IndexTableSegmentEntry() {}
    // Writes the entry as it stands in its array on the wire.
    virtual void serialize(DataIO::DataSink & sink) const = 0;
    // The bytes that serialize writes.
    virtual unsigned short serializedSize() const = 0;

protected:
    IndexTableSegmentEntry() {}
    IndexTableSegmentEntry(IndexTableSegmentEntry const &) {}
    IndexTableSegmentEntry & operator=(IndexTableSegmentEntry const &) { return *this; }
};
} // namespace IndexTables
} // namespace Vellum
