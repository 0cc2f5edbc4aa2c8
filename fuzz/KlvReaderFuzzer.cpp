// Walks the input as a stream of KLV packets: keys found by the sync search, BER lengths, values
// read in pieces or skipped.
#include "FuzzSupport.h"

#include "KLV/Reader.h"

using namespace Vellum;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    DataIO::Memory::MemoryDataSource source(data, size);
    KLV::Reader reader(source);
    unsigned char buffer[256];
    for (unsigned count = 0; count < 100000; ++count)
    {
        bool const more = VellumFuzz::guarded([&] {
            uint64 skipped = 0;
            // Alternate the kinds of key search and the ways a value is left.
            if (count % 3 == 1)
                reader.peekNextKey(skipped, KLV::Reader::AnyRegistry, 4096);
            Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, count % 2 == 0 ? 65536 : 16);
            KLV::Value & value = packet->value();
            if (count % 2 == 0)
            {
                while (value.remaining() > 0 && value.read(buffer, sizeof buffer) > 0)
                {
                }
            }
            else if (value.remaining() > 0 && value.remaining() <= sizeof buffer)
            {
                value.readValue(buffer, value.remaining());
            }
        });
        if (!more || source.endOfStream())
            break;
    }
    return 0;
}
