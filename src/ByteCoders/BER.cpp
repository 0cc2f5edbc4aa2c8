#include "ByteCoders/BER.h"

#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace ByteCoders
{
namespace
{
// 0x80 is the indefinite form, 0xFF is reserved: neither has a place in KLV.
void checkFirstByte(unsigned char first)
{
    if (first == 0x80 || first == 0xFF)
    {
        Templates::wstring text = Utils::wide("Invalid BER size: 0x");
        text += Utils::hexadecimal(first, 2);
        VELLUM_THROW(InvalidFormat, text);
    }
}
} // namespace

unsigned char calculateBERSize(uint64 length)
{
    if (length <= 0x7F)
        return 1;
    // Counts the bytes of the length while it stays positive as a signed number.
    int64 rest = int64(length);
    unsigned char bytes = 0;
    while (rest > 0)
    {
        rest >>= 8;
        ++bytes;
    }
    return static_cast<unsigned char>(1 + bytes);
}

void codeBER(uint64 value, unsigned char size, unsigned char * out)
{
    if (size == 0 || size > 9)
        VELLUM_THROW(InvalidFormat, "Invalid BER size");
    if (size == 1)
    {
        out[0] = static_cast<unsigned char>(value & 0xFF);
        return;
    }
    out[0] = static_cast<unsigned char>((size - 1) | 0x80);
    for (unsigned i = size - 1; i >= 1; --i)
    {
        out[i] = static_cast<unsigned char>(value & 0xFF);
        value >>= 8;
    }
}

unsigned char decodeBERSize(unsigned char first)
{
    checkFirstByte(first);
    if ((first & 0x80) != 0)
        return static_cast<unsigned char>((first & 0x7F) + 1);
    return 1;
}

void decodeBER(unsigned char const * in, unsigned char size, uint64 & out)
{
    if (size == 0 || size > 9)
        VELLUM_THROW(InvalidFormat, "Invalid BER size");
    checkFirstByte(in[0]);
    if (size == 1)
    {
        out = in[0];
        return;
    }
    uint64 value = 0;
    for (unsigned i = 1; i < size; ++i)
        value = (value << 8) | in[i];
    out = value;
}
} // namespace ByteCoders
} // namespace Vellum
