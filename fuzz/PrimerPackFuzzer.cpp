// Parses the input as the value of a Primer pack, looks every entry up, and writes it again.
#include "FuzzSupport.h"

#include "Packs/PrimerPack.h"

using namespace Vellum;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    VellumFuzz::PacketOverInput input(Packs::PrimerPack::key(), data, size);
    VellumFuzz::guarded([&] {
        Packs::PrimerPack primer(input.packet);
        for (unsigned i = 0; i < primer.count(); ++i)
        {
            Packs::PrimerPack::Entry const entry = primer.at(i);
            primer.find(entry.first);
            primer.find(entry.second);
        }
        for (unsigned i = 0; i < primer.countDuplicates(); ++i)
            primer.atDuplicates(i);
        DataIO::Memory::MemoryDataSink sink;
        primer.serialize(sink);
        if (sink.serializedSize() != primer.serializedSize())
            __builtin_trap();
    });
    return 0;
}
