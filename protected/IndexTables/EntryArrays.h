#pragma once
// What the two entry arrays of a segment share: owning a vector of entries, reading the array
// header, and reading the entries behind it.

#include <utility>

#include "DataIO/DataSink.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace IndexTables
{
namespace Detail
{
// A vector of entries that deletes them, the last first.
template <class Entry>
class OwnedEntries
{
public:
    OwnedEntries() {}
    OwnedEntries(OwnedEntries const & other)
    {
        entries.reserve(other.entries.size());
        for (Templates::auto_ptr<Entry> const & entry : other.entries)
            append(*entry);
    }
    OwnedEntries & operator=(OwnedEntries const &) = delete;
    ~OwnedEntries() { clear(); }

    void clear()
    {
        while (!entries.empty())
            entries.pop_back();
    }
    void swap(OwnedEntries & other) { entries.swap(other.entries); }

    // Copies the entry; a failure leaves the vector as it was.
    void insert(unsigned int position, Entry const & entry)
    {
        Templates::auto_ptr<Entry> copy(new Entry(entry));
        entries.insert(entries.begin() + position, std::move(copy));
    }
    void append(Entry const & entry) { insert(static_cast<unsigned int>(entries.size()), entry); }
    void remove(unsigned int position) { entries.erase(entries.begin() + position); }

    Templates::vector<Templates::auto_ptr<Entry>> entries;
};

struct ArrayHeader
{
    uint32 count;
    uint32 elementSize;
};

// Reads the count and the element size, and checks that the value holds count times element
// size bytes. Failures throw InvalidLength with the bytes read.
ArrayHeader readArrayHeader(KLV::Value & value);

// Writes the count and the element size.
void writeArrayHeader(DataIO::DataSink & sink, uint64 count, uint32 elementSize);

// The failure of one entry, rethrown as a failure of the array.
[[noreturn]] void entryFailed(Exceptions::InvalidLength const * cause, char const * file, int line);

// Reads header.count entries made by `make(value)`, each by its own layout of at least
// `minimumEntrySize` bytes. Room is reserved only for as many entries as the value can hold.
template <class Entry, class Make>
void readEntries(KLV::Value & value, ArrayHeader const & header, unsigned minimumEntrySize,
                 OwnedEntries<Entry> & out, Make make)
{
    uint64 fit = value.remaining() / minimumEntrySize;
    out.entries.reserve(static_cast<std::size_t>(fit < header.count ? fit : header.count));
    for (uint32 i = 0; i < header.count; ++i)
    {
        Templates::auto_ptr<Entry> entry;
        try
        {
            entry = make(value);
        }
        catch (Exceptions::InvalidLength const & e)
        {
            entryFailed(&e, __FILE__, __LINE__);
        }
        catch (Exceptions::NotEnoughData const &)
        {
            entryFailed(nullptr, __FILE__, __LINE__);
        }
        out.entries.push_back(std::move(entry));
    }
}
} // namespace Detail
} // namespace IndexTables
} // namespace Vellum
