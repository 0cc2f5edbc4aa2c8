#include "Utils/Padding.h"

#include <cstring>

#include "ByteCoders/BER.h"
#include "Exceptions/Exceptions.h"
#include "KLV/KeyConstants.h"

namespace Vellum
{
namespace Utils
{
namespace
{
uint64 const ZERO_BLOCK_SIZE = 65536;
unsigned const KEY_SIZE = 16;

// The zeros of every fill value come from here, so that no fill needs an allocation.
unsigned char const * zeroBlock()
{
    static unsigned char const zeros[ZERO_BLOCK_SIZE] = {};
    return zeros;
}

// Can a BER field of `berLength` bytes carry `length`?
bool lengthFits(uint64 length, unsigned char berLength)
{
    if (berLength == 1)
        return length <= 0x7F;
    if (berLength >= 9)
        return true;
    return (length >> (8 * (berLength - 1))) == 0;
}
} // namespace

void writeFillKLV(DataIO::DataSink & sink, uint64 totalSize, unsigned char berLength)
{
    if (berLength == 0 || totalSize < uint64(KEY_SIZE) + berLength)
        VELLUM_THROW(InvalidValue, "Is not possible to make a KLV Fill item which is less than 17 bytes in length");
    uint64 valueLength = totalSize - KEY_SIZE - berLength;
    THROW_UNLESS(InvalidValue, lengthFits(valueLength, berLength),
                 "The length of the fill item does not fit in its BER length field");

    // Key and length go out in one write; codeBER refuses a length field over 9 bytes before
    // anything is written.
    unsigned char head[KEY_SIZE + 9];
    ByteCoders::codeBER(valueLength, berLength, head + KEY_SIZE);
    std::memcpy(head, KLV::fillItemKey().rawBuffer(), KEY_SIZE);
    sink.write(head, KEY_SIZE + berLength);

    unsigned char const * zeros = zeroBlock();
    while (valueLength != 0)
    {
        uint64 piece = valueLength < ZERO_BLOCK_SIZE ? valueLength : ZERO_BLOCK_SIZE;
        sink.write(zeros, piece);
        valueLength -= piece;
    }
}

uint64 alignBytes(unsigned kag, uint64 position, unsigned minimum)
{
    uint64 k = kag == 0 ? 1 : kag;
    uint64 rest = position % k;
    if (rest == 0)
        return 0;
    uint64 fill = k - rest;
    if (fill < minimum)
        fill += (uint64(minimum) + k - 1) / k * k;
    return fill;
}

void kagAlign(DataIO::DataSink & sink, unsigned int kag, unsigned char berLength)
{
    uint64 fill = alignBytes(kag, sink.absoluteOffset(), unsigned(berLength) + KEY_SIZE);
    if (fill != 0)
        writeFillKLV(sink, fill, berLength);
}
} // namespace Utils
} // namespace Vellum
