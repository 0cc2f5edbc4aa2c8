#include "Types/ValueBytes.h"

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Types
{
namespace ValueBytes
{
namespace
{
// The largest piece read at once, and so the most that a false length can make us allocate ahead.
uint64 const pieceSize = 1 << 20;

// Reads up to `wanted` bytes; gives false when the source ran dry first.
bool readInto(KLV::Value & value, Templates::vector<unsigned char> & out, uint64 wanted)
{
    uint64 done = 0;
    while (done < wanted)
    {
        uint64 piece = wanted - done < pieceSize ? wanted - done : pieceSize;
        std::size_t start = out.size();
        out.resize(start + static_cast<std::size_t>(piece));
        uint64 got = value.read(out.data() + start, piece);
        out.resize(start + static_cast<std::size_t>(got));
        if (got == 0)
            return false;
        done += got;
    }
    return true;
}
} // namespace

void readRemaining(KLV::Value & value, Templates::vector<unsigned char> & out)
{
    if (!readInto(value, out, value.remaining()))
        throw Exceptions::InvalidLength(out.data(), out.size(), "Invalid data size in Value", __FILE__, __LINE__);
}

void readAvailable(KLV::Value & value, Templates::vector<unsigned char> & out)
{
    readInto(value, out, value.remaining());
}
} // namespace ValueBytes
} // namespace Types
} // namespace Vellum
