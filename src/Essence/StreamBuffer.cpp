#include "Essence/StreamBuffer.h"

#include <cstring>

#include "Essence/BlockPool.h"
#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Essence
{
namespace
{
uint64 blockSizeOr(uint64 size)
{
    return size != 0 ? size : uint64(StreamBuffer::DEFAULT_BLOCK_SIZE);
}
} // namespace

StreamBuffer::StreamBuffer(Templates::SharedPtr<DataIO::SliceSource> source, uint64 blockSize)
    : slices_(source), blockSize_(blockSizeOr(blockSize)), begin_(0), end_(0), exhausted_(false)
{
}

StreamBuffer::StreamBuffer(Templates::SharedPtr<DataIO::DataSource> source, uint64 blockSize)
    : bytes_(source), blockSize_(blockSizeOr(blockSize)), begin_(0), end_(0), exhausted_(false)
{
    pool_ = Templates::SharedPtr<DataIO::BlockFactory>(new BlockPool(blockSize_));
}

StreamBuffer::~StreamBuffer() {}

bool StreamBuffer::readBlock()
{
    if (exhausted_)
        return false;
    Templates::auto_ptr<DataIO::Slice> slice;
    if (slices_.get() != nullptr)
    {
        // A slice source may hand out short or empty pieces before its end.
        while (!slices_->endOfStream())
        {
            slice = slices_->read(blockSize_);
            if (!slice->empty())
                break;
        }
    }
    else
    {
        DataIO::BlockHolder block = pool_->create(blockSize_);
        uint64 got = 0;
        while (got < blockSize_)
        {
            uint64 n = bytes_->read(block->data() + got, blockSize_ - got);
            if (n == 0)
                break;
            got += n;
        }
        if (got != 0)
            slice.reset(new DataIO::Slice(block.block(), 0, got));
    }
    if (slice.get() == nullptr || slice->empty())
    {
        exhausted_ = true;
        return false;
    }
    starts_.push_back(end_);
    end_ += slice->size();
    blocks_.push_back(std::move(slice));
    return true;
}

bool StreamBuffer::fill(uint64 end)
{
    while (end_ < end)
        if (!readBlock())
            return false;
    return true;
}

std::size_t StreamBuffer::blockOf(uint64 position) const
{
    THROW_UNLESS(IndexOutOfBounds, position >= begin_ && position < end_, "The stream position is not buffered");
    std::size_t i = blocks_.size() - 1;
    while (starts_[i] > position)
        --i;
    return i;
}

unsigned char const * StreamBuffer::piece(uint64 position, uint64 & size) const
{
    std::size_t i = blockOf(position);
    uint64 within = position - starts_[i];
    size = blocks_[i]->size() - within;
    return blocks_[i]->begin() + within;
}

unsigned char StreamBuffer::at(uint64 position) const
{
    uint64 size = 0;
    return *piece(position, size);
}

bool StreamBuffer::copy(uint64 position, uint64 size, unsigned char * out)
{
    if (!fill(position + size))
        return false;
    while (size != 0)
    {
        uint64 available = 0;
        unsigned char const * p = piece(position, available);
        uint64 n = available < size ? available : size;
        std::memcpy(out, p, n);
        out += n;
        position += n;
        size -= n;
    }
    return true;
}

void StreamBuffer::chain(uint64 from, uint64 to, DataIO::Chain & out) const
{
    while (from < to)
    {
        std::size_t i = blockOf(from);
        DataIO::Slice const & block = *blocks_[i];
        uint64 within = from - starts_[i];
        uint64 n = block.size() - within;
        if (n > to - from)
            n = to - from;
        out.push_back(Templates::auto_ptr<DataIO::Slice>(
            new DataIO::Slice(block.block(), block.offset() + within, n)));
        from += n;
    }
}

void StreamBuffer::release(uint64 position)
{
    std::size_t drop = 0;
    while (drop < blocks_.size() && starts_[drop] + blocks_[drop]->size() <= position)
        ++drop;
    if (drop == 0)
        return;
    blocks_.erase(blocks_.begin(), blocks_.begin() + drop);
    starts_.erase(starts_.begin(), starts_.begin() + drop);
    begin_ = blocks_.empty() ? end_ : starts_.front();
}
bool StreamBuffer::skipTo(uint64 position)
{
    release(position);
    while (end_ <= position)
    {
        release(end_);
        if (!readBlock())
            return false;
    }
    release(position);
    return true;
}
} // namespace Essence
} // namespace Vellum
