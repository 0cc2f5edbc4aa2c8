#pragma once
// Reference-counted blocks of bytes: the storage under every slice of essence.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"

namespace Vellum
{
namespace DataIO
{
class Block;

// Holds one reference to a block. Made from a pointer it takes over a reference that the
// caller already owns; copies add a reference, the destructor gives one back.
class BlockHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    BlockHolder() : block_(nullptr) {}
    explicit BlockHolder(Block * block) : block_(block) {}
    BlockHolder(BlockHolder const & other);
    BlockHolder(BlockHolder && other) noexcept : block_(other.block_) { other.block_ = nullptr; }
    BlockHolder & operator=(BlockHolder const & other);
    BlockHolder & operator=(BlockHolder && other) noexcept;
    ~BlockHolder();

    Block * block() const { return block_; }
    Block * operator->() const { return block_; }
    // Hands the pointer and its reference out; the holder is empty afterwards.
    Block * release()
    {
        Block * block = block_;
        block_ = nullptr;
        return block;
    }

private:
    Block * block_;
};

// A run of bytes that ends when its last reference goes.
class Block
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual unsigned char const * data() const = 0;
    virtual unsigned char * data() = 0;
    // Capacity in bytes.
    virtual uint64 size() const = 0;
    virtual void addReference() = 0;
    // Gives a reference back; the last one destroys the block.
    virtual void release() = 0;
    // A new block of the same family.
    virtual BlockHolder create(uint64 size) = 0;

protected:
    Block() {}
    virtual ~Block() {}

private:
    Block(Block const &) = delete;
    Block & operator=(Block const &) = delete;
};

class BlockFactory
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~BlockFactory() {}
    virtual BlockHolder create(uint64 size) = 0;
};

inline BlockHolder::BlockHolder(BlockHolder const & other) : block_(other.block_)
{
    if (block_ != nullptr)
        block_->addReference();
}

inline BlockHolder & BlockHolder::operator=(BlockHolder const & other)
{
    if (other.block_ != nullptr)
        other.block_->addReference();
    Block * old = block_;
    block_ = other.block_;
    if (old != nullptr)
        old->release();
    return *this;
}

inline BlockHolder & BlockHolder::operator=(BlockHolder && other) noexcept
{
    if (this != &other)
    {
        Block * old = block_;
        block_ = other.block_;
        other.block_ = nullptr;
        if (old != nullptr)
            old->release();
    }
    return *this;
}

inline BlockHolder::~BlockHolder()
{
    if (block_ != nullptr)
        block_->release();
}
} // namespace DataIO
} // namespace Vellum
