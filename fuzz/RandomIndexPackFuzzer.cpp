// Parses the input as the value of a Random Index Pack, and writes it again.
#include "FuzzSupport.h"

#include "Packs/RandomIndexPack.h"

using namespace Vellum;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    VellumFuzz::PacketOverInput input(Packs::RandomIndexPack::key(), data, size);
    VellumFuzz::guarded([&] {
        Packs::RandomIndexPack rip(input.packet);
        for (auto const & entry : rip.sidIndexedMap())
            rip.find(entry.first);
        DataIO::Memory::MemoryDataSink sink;
        rip.serialize(sink);
        if (sink.serializedSize() != rip.serializedSize())
            __builtin_trap();
    });
    return 0;
}
