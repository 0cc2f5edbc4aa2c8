#include "DataIO/EmptyBlock.h"

#include <new>

#include "DataIO/Memory/MemoryBlock.h"

namespace Vellum
{
namespace DataIO
{
namespace
{
// A readable address for begin() and end() of empty windows; nothing is ever stored here.
unsigned char noBytes[1] = {0};
} // namespace

EmptyBlock & EmptyBlock::instance()
{
    // Built in place and never destroyed: slices in static objects may still point to it while
    // the process ends.
    alignas(EmptyBlock) static unsigned char storage[sizeof(EmptyBlock)];
    static EmptyBlock * block = new (storage) EmptyBlock;
    return *block;
}

unsigned char const * EmptyBlock::data() const
{
    return noBytes;
}

unsigned char * EmptyBlock::data()
{
    return noBytes;
}

BlockHolder EmptyBlock::create(uint64 size)
{
    return Memory::MemoryBlockFactory::instance().create(size);
}
} // namespace DataIO
} // namespace Vellum
