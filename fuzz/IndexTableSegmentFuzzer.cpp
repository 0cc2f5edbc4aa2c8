// Parses the input as the value of an index table segment, reads every entry, and writes it again.
#include "FuzzSupport.h"

#include "IndexTables/IndexTableSegment.h"

using namespace Vellum;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    VellumFuzz::PacketOverInput input(IndexTables::IndexTableSegment::key(), data, size);
    VellumFuzz::guarded([&] {
        IndexTables::IndexTableSegment segment(input.packet);
        for (unsigned i = 0; i < segment.deltaEntryCount(); ++i)
            segment.deltaEntry(i);
        for (unsigned i = 0; i < segment.indexEntryCount(); ++i)
            segment.indexEntry(i);
        DataIO::Memory::MemoryDataSink sink;
        segment.serialize(sink);
        if (sink.serializedSize() != segment.serializedSize())
            __builtin_trap();
    });
    return 0;
}
