#include "ByteCoders/BCD.h"

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace ByteCoders
{
void encodeBCD(unsigned char * out, int value)
{
    THROW_UNLESS(InvalidValue, value >= 0, "A BCD value cannot be negative");
    unsigned rest = unsigned(value) % 1000000u;
    for (int i = 2; i >= 0; --i)
    {
        unsigned low = rest % 10;
        rest /= 10;
        unsigned high = rest % 10;
        rest /= 10;
        out[i] = static_cast<unsigned char>((high << 4) | low);
    }
}

void decodeBCD(unsigned char const * in, unsigned short size, int & out)
{
    THROW_UNLESS(InvalidValue, size <= 4, "At most four BCD bytes fit in an int");
    int value = 0;
    for (unsigned i = 0; i < size; ++i)
    {
        unsigned high = in[i] >> 4;
        unsigned low = in[i] & 0x0F;
        if (high > 9 || low > 9)
            VELLUM_THROW(InvalidFormat, "Invalid BCD digit");
        value = value * 100 + int(high * 10 + low);
    }
    out = value;
}
} // namespace ByteCoders
} // namespace Vellum
