// Reads the input from start to end with the sequential reader, which parses every partition
// pack, metadata region, index segment and RIP on its way.
#include "FuzzSupport.h"

#include "MXFIO/SequentialReader.h"
#include "MetaMetadata/StandardDictionary.h"

using namespace Vellum;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    static Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    DataIO::Memory::MemoryDataSource source(data, size);
    MXFIO::SequentialReader reader(source, dictionary);
    VellumFuzz::guarded([&] {
        for (unsigned count = 0; count < 100000 && reader.next(65536); ++count)
        {
        }
    });
    return 0;
}
