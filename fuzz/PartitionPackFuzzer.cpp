// Parses the input as the value of a partition pack, and writes what was parsed again.
#include "FuzzSupport.h"

#include "DataIO/Memory/MemoryDataSource.h"
#include "Packs/PartitionPack.h"

using namespace Vellum;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    // The first byte chooses the kind and status of the pack's key.
    if (size < 1)
        return 0;
    Packs::PartitionPack::PartitionKind const kind = Packs::PartitionPack::PartitionKind(2 + data[0] % 3);
    KLV::Key const key = Packs::buildPartitionPackKey(kind, (data[0] & 4) != 0, (data[0] & 8) != 0);
    VellumFuzz::PacketOverInput input(key, data + 1, size - 1);
    VellumFuzz::guarded([&] {
        Packs::PartitionPack pack(input.packet);
        Packs::PartitionPack copy(pack);
        DataIO::Memory::MemoryDataSink sink;
        copy.serialize(sink);
        if (sink.serializedSize() != copy.serializedSize())
            __builtin_trap();
        copy.partitionKind();
        copy.isOpen();
        copy.isComplete();
        copy.isGenericStreamsPartition();
    });
    return 0;
}
