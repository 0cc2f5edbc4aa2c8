#pragma once
// Byte streams with absolute offsets: what every reader of the library reads from.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"

namespace Vellum
{
namespace DataIO
{
// A stream read forward. Offsets are absolute in the underlying medium.
class DataSource
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~DataSource() {}
    virtual uint64 absoluteOffset() const = 0;
    virtual bool endOfStream() const = 0;
    // Gives the bytes actually read: a short count at the end of the data is not an error.
    virtual uint64 read(unsigned char * buffer, uint64 size) = 0;
    // Gives the bytes actually skipped.
    virtual uint64 skip(uint64 size) = 0;
};

// A stream that knows how much is left.
class BoundedDataSource : public DataSource
{
public:
    virtual uint64 remaining() const = 0;
    // Skips all that remains.
    virtual void discard() = 0;
};

class RandomAccessible
{
public:
    virtual ~RandomAccessible() {}
    // Gives the position reached.
    virtual uint64 seek(uint64 position) = 0;
};

class RandomAccessDataSource : public virtual BoundedDataSource, public virtual RandomAccessible
{
};

// Kept for hosts that feed live streams; no class of the library derives from it.
class StreamingDataSource
{
public:
    virtual ~StreamingDataSource() {}
};
} // namespace DataIO
} // namespace Vellum
