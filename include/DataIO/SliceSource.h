#pragma once
// Streams of slices: a SliceSource hands them out, a SliceSink takes them.

#include "DataIO/Slice.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
class SliceSource
{
public:
    VELLUM_CLASS_ALLOCATION
    SliceSource() = default;
    virtual ~SliceSource() {}
    SliceSource(SliceSource const &) = delete;
    SliceSource & operator=(SliceSource const &) = delete;
    // The next bytes: possibly fewer or more than asked for, and an empty slice at the end.
    virtual Templates::auto_ptr<Slice> read(uint64 size) = 0;
    virtual uint64 absoluteOffset() const = 0;
    virtual bool endOfStream() const = 0;
    // Gives the bytes actually skipped.
    virtual uint64 skip(uint64 size) = 0;
};

class SliceSink
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~SliceSink() {}
    virtual void write(Templates::auto_ptr<Slice> slice) = 0;
};
} // namespace DataIO
} // namespace Vellum
