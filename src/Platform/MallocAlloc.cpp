#include "Platform/MallocAlloc.h"

#include "Platform/Services.h"

namespace Vellum
{
namespace Platform
{
void * malloc_alloc::allocate(uint64 size)
{
    return Services::MemoryManager::allocate(size);
}

void malloc_alloc::deallocate(void * p, uint64)
{
    Services::MemoryManager::deallocate(p);
}

void * malloc_alloc::reallocate(void * p, uint64, uint64 newSize)
{
    return Services::MemoryManager::reallocate(p, newSize);
}
} // namespace Platform
} // namespace Vellum
