#pragma once
// A source over its own copy of a memory image.

#include "DataIO/DataSink.h"
#include "DataIO/DataSource.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace DataIO
{
namespace Memory
{
class MemoryDataSource : public RandomAccessDataSource
{
public:
    // Copies the bytes: the caller may free them afterwards.
    MemoryDataSource(unsigned char const * data, uint64 size);
    ~MemoryDataSource() override;

    uint64 absoluteOffset() const override;
    bool endOfStream() const override;
    uint64 read(unsigned char * buffer, uint64 size) override;
    uint64 skip(uint64 size) override;
    uint64 remaining() const override;
    void discard() override;
    uint64 seek(uint64 position) override;

private:
    Templates::vector<unsigned char> data_;
    uint64 size_;
    uint64 position_;
};

// A sink that collects what is written in one growing buffer (at most 4 GiB).
class MemoryDataSink : public DataSink
{
public:
    MemoryDataSink();
    explicit MemoryDataSink(uint64 reserve);
    ~MemoryDataSink() override;

    void write(unsigned char const * data, uint64 size) override;
    uint64 absoluteOffset() const override;
    // The first byte; null while empty.
    unsigned char const * rawBuffer() const;
    uint64 serializedSize() const;

private:
    Templates::vector<unsigned char> data_;
};
} // namespace Memory
} // namespace DataIO
} // namespace Vellum
