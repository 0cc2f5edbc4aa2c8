#include "IndexTables/EntryArrays.h"

#include "Types/WireOrder.h"

namespace Vellum
{
namespace IndexTables
{
namespace Detail
{
namespace
{
// At most this much of what stands behind the header goes into an exception.
uint64 const MAXIMUM_REPORTED_BYTES = 65536;
} // namespace

ArrayHeader readArrayHeader(KLV::Value & value)
{
    unsigned char header[8];
    uint64 got = 0;
    while (got < sizeof header)
    {
        uint64 n = value.read(header + got, sizeof header - got);
        if (n == 0)
            throw Exceptions::InvalidLength(
                header, got,
                "Invalid data size in the Index Table collection. Not enough data to read element entry size",
                __FILE__, __LINE__);
        got += n;
    }
    ArrayHeader result;
    result.count = Types::WireOrder::load<uint32>(header);
    result.elementSize = Types::WireOrder::load<uint32>(header + 4);
    uint64 remaining = value.remaining();
    if (remaining < static_cast<uint64>(result.count) * result.elementSize)
    {
        // The header and what follows it, for the report.
        uint64 reported = remaining < MAXIMUM_REPORTED_BYTES ? remaining : MAXIMUM_REPORTED_BYTES;
        Templates::vector<unsigned char> bytes(header, header + sizeof header);
        bytes.resize(static_cast<std::size_t>(sizeof header + reported));
        uint64 read = value.read(bytes.data() + sizeof header, reported);
        throw Exceptions::InvalidLength(
            bytes.data(), sizeof header + read,
            "Number of expected values differ from the size of the local KLV value field. Index Table Segment",
            __FILE__, __LINE__);
    }
    return result;
}

void writeArrayHeader(DataIO::DataSink & sink, uint64 count, uint32 elementSize)
{
    unsigned char header[8];
    Types::WireOrder::store<uint32>(header, static_cast<uint32>(count));
    Types::WireOrder::store<uint32>(header + 4, elementSize);
    sink.write(header, sizeof header);
}

void entryFailed(Exceptions::InvalidLength const * cause, char const * file, int line)
{
    char const * message = "Invalid data size in Value to create an element in the Index Table collections.";
    if (cause != nullptr)
        throw Exceptions::InvalidLength(cause->readData(), cause->readDataLength(), message, file, line);
    throw Exceptions::InvalidLength(message, file, line);
}
} // namespace Detail
} // namespace IndexTables
} // namespace Vellum
