#pragma once
// Shared ownership with an atomic use count kept on the heap beside the object.

#include <utility>

#include "Platform/MallocAlloc.h"
#include "Platform/Synchronization.h"

namespace Vellum
{
namespace Templates
{
// Tag of the counting policy: a 4-byte count changed with interlocked operations.
struct LockedCounter
{
};

template <class T, class Counter = LockedCounter>
class SharedPtr
{
public:
    typedef void (*Deallocator)(void *, uint64);
    typedef T element_type;

    SharedPtr() : object_(nullptr), owned_(false), count_(newCounter()), deallocator_(&Platform::malloc_alloc::deallocate) {}

    explicit SharedPtr(T * object, bool owned = true)
        : object_(object), owned_(owned), count_(nullptr), deallocator_(&Platform::malloc_alloc::deallocate)
    {
        try
        {
            count_ = newCounter();
        }
        catch (...)
        {
            if (owned)
                delete object;
            throw;
        }
    }

    SharedPtr(SharedPtr const & other)
        : object_(other.object_), owned_(other.owned_), count_(other.count_), deallocator_(other.deallocator_)
    {
        Platform::Synchronization::interlockedIncrement(*count_);
    }

    // From a pointer to a derived class: shares the same count.
    template <class U>
    SharedPtr(SharedPtr<U, Counter> const & other)
        : object_(other.get()), owned_(other.owned()), count_(other.pn()), deallocator_(other.deallocator())
    {
        Platform::Synchronization::interlockedIncrement(*count_);
    }

    ~SharedPtr() { cleanup(); }

    SharedPtr & operator=(SharedPtr const & other)
    {
        Platform::Synchronization::interlockedIncrement(*other.count_);
        T * oldObject = object_;
        bool oldOwned = owned_;
        int * oldCount = count_;
        Deallocator oldDeallocator = deallocator_;
        object_ = other.object_;
        owned_ = other.owned_;
        count_ = other.count_;
        deallocator_ = other.deallocator_;
        release(oldObject, oldOwned, oldCount, oldDeallocator);
        return *this;
    }

    T * get() const { return object_; }
    T & operator*() const { return *object_; }
    T * operator->() const { return object_; }
    int use_count() const { return __atomic_load_n(count_, __ATOMIC_ACQUIRE); }
    bool unique() const { return use_count() == 1; }
    bool owned() const { return owned_; }
    int * pn() const { return count_; }
    Deallocator deallocator() const { return deallocator_; }

    void swap(SharedPtr & other)
    {
        std::swap(object_, other.object_);
        std::swap(owned_, other.owned_);
        std::swap(count_, other.count_);
        std::swap(deallocator_, other.deallocator_);
    }

    // Lets go of the object and starts afresh with a count of its own.
    void reset()
    {
        int * fresh = newCounter();
        T * oldObject = object_;
        bool oldOwned = owned_;
        int * oldCount = count_;
        Deallocator oldDeallocator = deallocator_;
        object_ = nullptr;
        owned_ = false;
        count_ = fresh;
        deallocator_ = &Platform::malloc_alloc::deallocate;
        release(oldObject, oldOwned, oldCount, oldDeallocator);
    }

    void reset(T * object)
    {
        SharedPtr temporary(object, true);
        swap(temporary);
    }

private:
    static int * newCounter()
    {
        void * p = Platform::malloc_alloc::allocate(sizeof(int));
        if (p == nullptr)
            Platform::outOfMemory();
        int * count = static_cast<int *>(p);
        *count = 1;
        return count;
    }

    static void release(T * object, bool owned, int * count, Deallocator deallocator)
    {
        if (count == nullptr || Platform::Synchronization::interlockedDecrement(*count) != 0)
            return;
        if (owned && object != nullptr)
            delete object;
        if (deallocator != nullptr)
            deallocator(count, sizeof(int));
    }

    void cleanup() { release(object_, owned_, count_, deallocator_); }

    T * object_;
    bool owned_;
    int * count_;
    Deallocator deallocator_;
};

template <class T, class C>
bool operator==(SharedPtr<T, C> const & a, SharedPtr<T, C> const & b)
{
    return a.get() == b.get();
}
template <class T, class C>
bool operator!=(SharedPtr<T, C> const & a, SharedPtr<T, C> const & b)
{
    return a.get() != b.get();
}
} // namespace Templates
} // namespace Vellum
