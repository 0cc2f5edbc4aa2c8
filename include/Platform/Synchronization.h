#pragma once
// Locks and atomic counts.

#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Platform
{
namespace Synchronization
{
// Atomic count up and down; each gives the new value.
inline int interlockedIncrement(int & value)
{
    return __atomic_add_fetch(&value, 1, __ATOMIC_ACQ_REL);
}
inline int interlockedDecrement(int & value)
{
    return __atomic_sub_fetch(&value, 1, __ATOMIC_ACQ_REL);
}
// Atomically stores a value and gives the one it replaced.
inline int interlockedExchange(int & target, int value)
{
    return __atomic_exchange_n(&target, value, __ATOMIC_ACQ_REL);
}

class ScopedLock;

// A recursive lock: the thread that holds it may take it again.
class Mutex
{
public:
    VELLUM_CLASS_ALLOCATION
    Mutex();
    ~Mutex();
    Mutex(Mutex const &) = delete;
    Mutex & operator=(Mutex const &) = delete;

private:
    friend class ScopedLock;
    void lock();
    void unlock();
    struct CriticalSection;
    Templates::auto_ptr<CriticalSection> section_;
};

class ScopedLock
{
public:
    explicit ScopedLock(Mutex & mutex) : mutex_(mutex) { mutex_.lock(); }
    ~ScopedLock() { mutex_.unlock(); }
    ScopedLock(ScopedLock const &) = delete;
    ScopedLock & operator=(ScopedLock const &) = delete;

private:
    Mutex & mutex_;
};

// Gives the rest of the time slice to another thread.
void yieldThread();
// The operating system's id of the calling thread.
uint64 currentThreadId();
} // namespace Synchronization
} // namespace Platform
} // namespace Vellum
