#include "Platform/FixedSizeAllocator.h"

#include "Platform/Services.h"

namespace Vellum
{
namespace Platform
{
namespace
{
void * createSliceAllocator()
{
    return new FixedSizeAllocator_T<48>;
}

FixedSizeAllocator_T<48> * sliceAllocator_ = nullptr;
} // namespace

FixedSizeAllocator_T<48> & sliceAllocator()
{
    FixedSizeAllocator_T<48> * pool = __atomic_load_n(&sliceAllocator_, __ATOMIC_ACQUIRE);
    if (pool == nullptr)
    {
        pool = static_cast<FixedSizeAllocator_T<48> *>(
            Services::MemoryManager::registerObject("tarn_memory_manager_slice_name", &createSliceAllocator));
        __atomic_store_n(&sliceAllocator_, pool, __ATOMIC_RELEASE);
    }
    return *pool;
}
} // namespace Platform
} // namespace Vellum
