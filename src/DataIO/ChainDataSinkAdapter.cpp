#include "DataIO/ChainDataSinkAdapter.h"

#include <cstring>

#include "DataIO/Memory/MemoryBlock.h"

namespace Vellum
{
namespace DataIO
{
ChainDataSinkAdapter::ChainDataSinkAdapter(Chain & target, uint64 absoluteOffset, uint64 blockSize)
    : factory_(Memory::MemoryBlockFactory::instance()), target_(target), absoluteOffset_(absoluteOffset),
      blockSize_(blockSize), used_(blockSize), current_()
{
}

ChainDataSinkAdapter::ChainDataSinkAdapter(BlockFactory & factory, Chain & target, uint64 absoluteOffset,
                                           uint64 blockSize)
    : factory_(factory), target_(target), absoluteOffset_(absoluteOffset), blockSize_(blockSize),
      used_(blockSize), current_()
{
}

ChainDataSinkAdapter::~ChainDataSinkAdapter() {}

void ChainDataSinkAdapter::write(unsigned char const * data, uint64 size)
{
    if (size == 0)
        return;
    if (blockSize_ == 0 || current_.block() == nullptr || used_ + size > blockSize_)
    {
        // A new block becomes current: of its own size for large writes.
        current_ = factory_.create(size > blockSize_ ? size : blockSize_);
        used_ = 0;
    }
    // The window continues the chain's last slice when that one ends where the block's used
    // part ends; push_back then grows it instead of adding a slice.
    Templates::auto_ptr<Slice> slice(new Slice(current_.block(), used_, size));
    std::memcpy(current_->data() + used_, data, size_t(size));
    target_.push_back(std::move(slice));
    absoluteOffset_ += size;
    used_ += size;
}

uint64 ChainDataSinkAdapter::absoluteOffset() const
{
    return absoluteOffset_;
}
} // namespace DataIO
} // namespace Vellum
