#pragma once
// Byte sinks with absolute offsets: what every writer of the library writes to.

#include "DataIO/DataSource.h"

namespace Vellum
{
namespace DataIO
{
class DataSink
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~DataSink() {}
    virtual void write(unsigned char const * data, uint64 size) = 0;
    virtual uint64 absoluteOffset() const = 0;
};

class RandomAccessDataSink : public virtual DataSink, public virtual RandomAccessible
{
};
} // namespace DataIO
} // namespace Vellum
