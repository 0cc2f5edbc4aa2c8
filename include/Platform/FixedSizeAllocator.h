#pragma once
// A pool of cells of N bytes behind a spin lock, for objects made at the rate of essence packets.

#include "Platform/MallocAlloc.h"
#include "Platform/Synchronization.h"

namespace Vellum
{
namespace Platform
{
template <unsigned N>
class FixedSizeAllocator_T
{
public:
    VELLUM_CLASS_ALLOCATION
    FixedSizeAllocator_T() : free_(nullptr), lock_(0) {}

    virtual ~FixedSizeAllocator_T()
    {
        while (free_ != nullptr)
        {
            Cell * next = free_->next;
            malloc_alloc::deallocate(free_, N);
            free_ = next;
        }
    }

    virtual void * allocate()
    {
        lock();
        void * cell;
        if (free_ == nullptr)
        {
            unlock();
            cell = malloc_alloc::allocate(N);
            if (cell == nullptr)
                outOfMemory();
            return cell;
        }
        cell = free_;
        free_ = free_->next;
        unlock();
        return cell;
    }

    virtual void deallocate(void * p)
    {
        if (p == nullptr)
            return;
        Cell * cell = static_cast<Cell *>(p);
        lock();
        cell->next = free_;
        free_ = cell;
        unlock();
    }

    // Cells waiting in the free list.
    uint64 freeCount()
    {
        lock();
        uint64 n = 0;
        for (Cell * c = free_; c != nullptr; c = c->next)
            ++n;
        unlock();
        return n;
    }

private:
    static_assert(N >= sizeof(void *), "a cell must hold the free list link");
    struct Cell
    {
        Cell * next;
    };
    enum
    {
        LOCKED = 1098733
    };

    void lock()
    {
        while (Synchronization::interlockedExchange(lock_, LOCKED) != 0)
            Synchronization::yieldThread();
    }
    void unlock() { Synchronization::interlockedExchange(lock_, 0); }

    FixedSizeAllocator_T(FixedSizeAllocator_T const &) = delete;
    FixedSizeAllocator_T & operator=(FixedSizeAllocator_T const &) = delete;

    Cell * free_;
    int lock_;
};

// The process-wide pool of 48-byte cells that DataIO::Slice objects live in, shared by name with
// every module of the process.
FixedSizeAllocator_T<48> & sliceAllocator();
} // namespace Platform
} // namespace Vellum
