#include "DataIO/Memory/MemoryBlock.h"

namespace Vellum
{
namespace DataIO
{
namespace Memory
{
MemoryBlockFactory & MemoryBlockFactory::instance()
{
    return Singleton<MemoryBlockFactory>::instance();
}

BlockHolder MemoryBlockFactory::create(uint64 size)
{
    return BlockHolder(new MemoryBlock(this, size));
}

void MemoryBlockFactory::reuse(MemoryBlock * block)
{
    delete block;
}
} // namespace Memory
} // namespace DataIO
} // namespace Vellum
