#include "Platform/Synchronization.h"

#include <mutex>
#include <new>
#include <pthread.h>
#include <sched.h>

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Platform
{
namespace Synchronization
{
struct Mutex::CriticalSection
{
    std::recursive_mutex mutex;
};

Mutex::Mutex() : section_(new (std::nothrow) CriticalSection)
{
    if (section_ == nullptr)
        throw Exceptions::BadAlloc("Failed to create a mutex", __FILE__, __LINE__);
}

Mutex::~Mutex() = default;

void Mutex::lock()
{
    section_->mutex.lock();
}

void Mutex::unlock()
{
    section_->mutex.unlock();
}

void yieldThread()
{
    sched_yield();
}

uint64 currentThreadId()
{
    return uint64(pthread_self());
}
} // namespace Synchronization
} // namespace Platform
} // namespace Vellum
