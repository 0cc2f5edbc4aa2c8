#include "DataIO/Memory/MemoryDataSource.h"

#include <cstring>

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace DataIO
{
namespace Memory
{
namespace
{
uint64 const LARGEST_SINK = 0xFFFFFFFFull;
}

MemoryDataSource::MemoryDataSource(unsigned char const * data, uint64 size)
    : data_(data, data + size), size_(size), position_(0)
{
}

MemoryDataSource::~MemoryDataSource() {}

uint64 MemoryDataSource::absoluteOffset() const
{
    return position_;
}

bool MemoryDataSource::endOfStream() const
{
    return remaining() == 0;
}

uint64 MemoryDataSource::read(unsigned char * buffer, uint64 size)
{
    uint64 n = size < remaining() ? size : remaining();
    if (n != 0)
        std::memcpy(buffer, data_.data() + position_, size_t(n));
    position_ += n;
    return n;
}

uint64 MemoryDataSource::skip(uint64 size)
{
    uint64 n = size < remaining() ? size : remaining();
    position_ += n;
    return n;
}

uint64 MemoryDataSource::remaining() const
{
    return size_ - position_;
}

void MemoryDataSource::discard()
{
    position_ = size_;
}

uint64 MemoryDataSource::seek(uint64 position)
{
    position_ = position < size_ ? position : size_;
    return position_;
}

MemoryDataSink::MemoryDataSink() {}

MemoryDataSink::MemoryDataSink(uint64 reserve)
{
    if (reserve > LARGEST_SINK)
        throw Exceptions::IOError("Type size exceeded", __FILE__, __LINE__);
    data_.reserve(size_t(reserve));
}

MemoryDataSink::~MemoryDataSink() {}

void MemoryDataSink::write(unsigned char const * data, uint64 size)
{
    if (size > LARGEST_SINK - data_.size())
        throw Exceptions::IOError("Type size exceeded", __FILE__, __LINE__);
    if (size == 0)
        return;
    // Geometric growth: many small writes stay cheap.
    data_.insert(data_.end(), data, data + size);
}

uint64 MemoryDataSink::absoluteOffset() const
{
    return data_.size();
}

unsigned char const * MemoryDataSink::rawBuffer() const
{
    return data_.empty() ? nullptr : data_.data();
}

uint64 MemoryDataSink::serializedSize() const
{
    return data_.size();
}
} // namespace Memory
} // namespace DataIO
} // namespace Vellum
