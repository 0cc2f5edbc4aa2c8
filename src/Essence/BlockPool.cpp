#include "Essence/BlockPool.h"

#include "Exceptions/Exceptions.h"
#include "Platform/Synchronization.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Essence
{
struct BlockPool::State
{
    VELLUM_CLASS_ALLOCATION
    State(uint64 size, unsigned k) : blockSize(size), keep(k) {}
    ~State()
    {
        for (unsigned char * buffer : free)
            Platform::malloc_alloc::deallocate(buffer, blockSize);
    }

    unsigned char * take()
    {
        {
            Platform::Synchronization::ScopedLock lock(mutex);
            if (!free.empty())
            {
                unsigned char * buffer = free.back();
                free.pop_back();
                return buffer;
            }
        }
        void * p = Platform::malloc_alloc::allocate(blockSize);
        THROW_UNLESS(BadAlloc, p != nullptr, "Error allocating memory for a pooled block");
        return static_cast<unsigned char *>(p);
    }

    void giveBack(unsigned char * buffer)
    {
        {
            Platform::Synchronization::ScopedLock lock(mutex);
            if (free.size() < keep)
            {
                free.push_back(buffer);
                return;
            }
        }
        Platform::malloc_alloc::deallocate(buffer, blockSize);
    }

    uint64 blockSize;
    unsigned keep;
    Platform::Synchronization::Mutex mutex;
    Templates::vector<unsigned char *> free;
};

namespace
{
class PooledBlock : public DataIO::Block
{
public:
    PooledBlock(Templates::SharedPtr<BlockPool::State> const & pool, uint64 size)
        : pool_(pool), data_(pool->take()), size_(size), references_(1)
    {
    }

    unsigned char const * data() const override { return data_; }
    unsigned char * data() override { return data_; }
    uint64 size() const override { return size_; }
    void addReference() override { Platform::Synchronization::interlockedIncrement(references_); }
    void release() override
    {
        if (Platform::Synchronization::interlockedDecrement(references_) == 0)
            delete this;
    }
    DataIO::BlockHolder create(uint64 size) override;

    // A block too large for the pool.
    class PlainBlock;

private:
    ~PooledBlock() override { pool_->giveBack(data_); }

    Templates::SharedPtr<BlockPool::State> pool_;
    unsigned char * data_;
    uint64 size_;
    int references_;
};

class PooledBlock::PlainBlock : public DataIO::Block
{
public:
    explicit PlainBlock(uint64 size)
        : data_(static_cast<unsigned char *>(Platform::malloc_alloc::allocate(size))), size_(size), references_(1)
    {
        THROW_UNLESS(BadAlloc, data_ != nullptr, "Error allocating memory for a block");
    }
    unsigned char const * data() const override { return data_; }
    unsigned char * data() override { return data_; }
    uint64 size() const override { return size_; }
    void addReference() override { Platform::Synchronization::interlockedIncrement(references_); }
    void release() override
    {
        if (Platform::Synchronization::interlockedDecrement(references_) == 0)
            delete this;
    }
    DataIO::BlockHolder create(uint64 size) override { return DataIO::BlockHolder(new PlainBlock(size)); }

private:
    ~PlainBlock() override { Platform::malloc_alloc::deallocate(data_, size_); }

    unsigned char * data_;
    uint64 size_;
    int references_;
};
DataIO::BlockHolder PooledBlock::create(uint64 size)
{
    if (size > pool_->blockSize)
        return DataIO::BlockHolder(new PlainBlock(size));
    return DataIO::BlockHolder(new PooledBlock(pool_, size));
}
} // namespace

BlockPool::BlockPool(uint64 blockSize, unsigned keep) : state_(new State(blockSize, keep)) {}

BlockPool::~BlockPool() {}

DataIO::BlockHolder BlockPool::create(uint64 size)
{
    if (size > state_->blockSize)
        return DataIO::BlockHolder(new PooledBlock::PlainBlock(size));
    return DataIO::BlockHolder(new PooledBlock(state_, size));
}
} // namespace Essence
} // namespace Vellum
