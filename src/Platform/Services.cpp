#include "Platform/Services.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <random>
#include <string>

namespace Vellum
{
namespace Platform
{
namespace Services
{
namespace
{
// The registries live for the whole process and are never destroyed, so that objects shared
// through them stay reachable from other statics' destructors.
std::mutex & registryMutex()
{
    static std::mutex * m = new std::mutex;
    return *m;
}

std::map<std::string, void *> & objects()
{
    static std::map<std::string, void *> * m = new std::map<std::string, void *>;
    return *m;
}
} // namespace

namespace MemoryManager
{
void * allocate(uint64 size)
{
    if (size > uint64(SIZE_MAX))
        return nullptr;
    return std::malloc(size == 0 ? 1 : size_t(size));
}

void deallocate(void * p)
{
    std::free(p);
}

void * reallocate(void * p, uint64 newSize)
{
    if (newSize > uint64(SIZE_MAX))
        return nullptr;
    return std::realloc(p, newSize == 0 ? 1 : size_t(newSize));
}

void * registerObject(char const * name, Creator creator)
{
    std::lock_guard<std::mutex> guard(registryMutex());
    std::map<std::string, void *> & table = objects();
    std::map<std::string, void *>::iterator found = table.find(name);
    if (found != table.end())
        return found->second;
    void * object = creator();
    table[name] = object;
    return object;
}
} // namespace MemoryManager

namespace Counting
{
Counter::Counter() : value_(0) {}

Counter & Counter::counter(char const * name)
{
    static std::map<std::string, Counter *> * counters = new std::map<std::string, Counter *>;
    std::lock_guard<std::mutex> guard(registryMutex());
    Counter *& slot = (*counters)[name];
    if (slot == nullptr)
        slot = new Counter;
    return *slot;
}

int64 Counter::next()
{
    return __atomic_add_fetch(&value_, 1, __ATOMIC_ACQ_REL);
}

void Counter::reset()
{
    __atomic_store_n(&value_, 0, __ATOMIC_RELEASE);
}
} // namespace Counting

unsigned short randomNumber()
{
    static std::mutex * m = new std::mutex;
    static std::mt19937 * engine = nullptr;
    std::lock_guard<std::mutex> guard(*m);
    if (engine == nullptr)
    {
        std::random_device device;
        engine = new std::mt19937(device());
    }
    return static_cast<unsigned short>((*engine)() & 0xFFFF);
}
} // namespace Services
} // namespace Platform
} // namespace Vellum
