#pragma once
// The process-wide services the library leans on: raw memory, objects shared by name across
// every module of a process, named counters and a 16-bit random number.

#include "Platform/Types.h"

namespace Vellum
{
namespace Platform
{
namespace Services
{
namespace MemoryManager
{
void * allocate(uint64 size);
void deallocate(void * p);
void * reallocate(void * p, uint64 newSize);

// One object per name for the whole process: the first caller's creator builds it, every
// later caller gets the same pointer. The object lives until the process ends.
typedef void * (*Creator)();
void * registerObject(char const * name, Creator creator);
} // namespace MemoryManager

namespace Counting
{
class Counter
{
public:
    // The process-wide counter of that name, created at 0 on first use.
    static Counter & counter(char const * name);
    // The following integer: 1 after a reset, then 2, 3, ...
    int64 next();
    void reset();

private:
    Counter();
    Counter(Counter const &) = delete;
    Counter & operator=(Counter const &) = delete;
    int64 value_;
};
} // namespace Counting

// A 16-bit random value.
unsigned short randomNumber();
} // namespace Services
} // namespace Platform
} // namespace Vellum
