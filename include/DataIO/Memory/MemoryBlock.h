#pragma once
// Blocks on the library's heap, and the factory that makes them.

#include "DataIO/Block.h"
#include "Exceptions/Exceptions.h"
#include "Platform/Initializer.h"
#include "Platform/Synchronization.h"

namespace Vellum
{
namespace DataIO
{
namespace Memory
{
class MemoryBlockFactory;

// Where the bytes of a memory block come from.
struct MallocBlockConfig
{
    static void * allocate(uint64 size) { return Platform::malloc_alloc::allocate(size); }
    static void deallocate(void * p, uint64 size) { Platform::malloc_alloc::deallocate(p, size); }
};

template <class MemoryBlockConfig>
class BaseMemoryBlock_T : public Block
{
public:
    BaseMemoryBlock_T(MemoryBlockFactory * factory, uint64 size);

    unsigned char const * data() const override { return data_; }
    unsigned char * data() override { return data_; }
    uint64 size() const override { return size_; }
    void addReference() override { Platform::Synchronization::interlockedIncrement(references_); }
    void release() override
    {
        if (Platform::Synchronization::interlockedDecrement(references_) == 0)
            delete this;
    }
    BlockHolder create(uint64 size) override;

protected:
    ~BaseMemoryBlock_T() override { MemoryBlockConfig::deallocate(data_, size_); }

private:
    MemoryBlockFactory * factory_;
    int references_;
    uint64 size_;
    unsigned char * data_;
};

class MemoryBlock : public BaseMemoryBlock_T<MallocBlockConfig>
{
public:
    MemoryBlock(MemoryBlockFactory * factory, uint64 size) : BaseMemoryBlock_T<MallocBlockConfig>(factory, size) {}

protected:
    friend class MemoryBlockFactory;
    ~MemoryBlock() override {}
};

// Makes MemoryBlocks. There is one, reached through instance().
class MemoryBlockFactory : public BlockFactory
{
public:
    static MemoryBlockFactory & instance();

    BlockHolder create(uint64 size) override;
    // Takes back a block that nobody references any more. There is no pool yet: it is deleted.
    void reuse(MemoryBlock * block);

private:
    friend class Singleton<MemoryBlockFactory>;
    MemoryBlockFactory() {}
    ~MemoryBlockFactory() override {}
    MemoryBlockFactory(MemoryBlockFactory const &) = delete;
    MemoryBlockFactory & operator=(MemoryBlockFactory const &) = delete;
};

template <class MemoryBlockConfig>
BaseMemoryBlock_T<MemoryBlockConfig>::BaseMemoryBlock_T(MemoryBlockFactory * factory, uint64 size)
    : factory_(factory), references_(1), size_(size), data_(nullptr)
{
    data_ = static_cast<unsigned char *>(MemoryBlockConfig::allocate(size));
    THROW_UNLESS(BadAlloc, data_ != 0, "Error allocating memory for a BaseMemoryBlock_T");
}

template <class MemoryBlockConfig>
BlockHolder BaseMemoryBlock_T<MemoryBlockConfig>::create(uint64 size)
{
    return factory_ != nullptr ? factory_->create(size) : MemoryBlockFactory::instance().create(size);
}
} // namespace Memory
} // namespace DataIO
} // namespace Vellum
