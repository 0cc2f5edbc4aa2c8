#include "Utils/Text.h"

#include "Platform/Platform.h"

namespace Vellum
{
namespace Utils
{
Templates::wstring wide(char const * text)
{
    return Platform::stringToWstring(text);
}

Templates::wstring wide(Templates::string const & text)
{
    return Platform::stringToWstring(text.c_str());
}

Templates::string narrow(Templates::wstring const & text)
{
    return Platform::wstringToString(text.c_str());
}

Templates::string narrow(unsigned short const * text)
{
    return Platform::wstringToString(text);
}

Templates::wstring decimal(int64 value)
{
    Templates::wstring text;
    uint64 magnitude = value < 0 ? uint64(0) - uint64(value) : uint64(value);
    text = decimal(magnitude);
    if (value < 0)
        text.insert(text.begin(), static_cast<unsigned short>('-'));
    return text;
}

Templates::wstring decimal(uint64 value)
{
    unsigned short digits[24];
    unsigned n = 0;
    do
    {
        digits[n++] = static_cast<unsigned short>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    Templates::wstring text;
    while (n != 0)
        text.push_back(digits[--n]);
    return text;
}

Templates::wstring hexadecimal(uint64 value, unsigned digits)
{
    static char const hex[] = "0123456789abcdef";
    unsigned short buffer[16];
    unsigned n = 0;
    do
    {
        buffer[n++] = static_cast<unsigned short>(hex[value & 0xF]);
        value >>= 4;
    } while (value != 0);
    Templates::wstring text;
    for (unsigned i = n; i < digits; ++i)
        text.push_back('0');
    while (n != 0)
        text.push_back(buffer[--n]);
    return text;
}
} // namespace Utils
} // namespace Vellum
