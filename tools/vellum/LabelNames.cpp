#include "LabelNames.h"

#include <cstring>
#include <map>

namespace VellumTool
{
namespace
{
struct LabelRow
{
    char const * hex;
    char const * name;
};

LabelRow const LABELS[] = {
#include "LabelTable.inc"
};

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c - 'A' + 10;
}

// The 16 bytes as a map key, with byte 7 cleared.
std::string maskedKey(unsigned char const * bytes)
{
    std::string key(reinterpret_cast<char const *>(bytes), 16);
    key[7] = 0;
    return key;
}

std::map<std::string, std::string> const & table()
{
    static std::map<std::string, std::string> const names = [] {
        std::map<std::string, std::string> m;
        for (LabelRow const & row : LABELS)
        {
            unsigned char bytes[16];
            for (unsigned i = 0; i < 16; ++i)
                bytes[i] = static_cast<unsigned char>(hexDigit(row.hex[2 * i]) * 16 + hexDigit(row.hex[2 * i + 1]));
            m.insert(std::make_pair(maskedKey(bytes), std::string(row.name)));
        }
        return m;
    }();
    return names;
}
} // namespace

std::string labelName(unsigned char const * label)
{
    std::map<std::string, std::string> const & names = table();
    unsigned char bytes[16];
    std::memcpy(bytes, label, 16);
    // Drop qualifier bytes from the end until a known node answers; the first 12 bytes stay.
    for (int last = 15; last >= 12; --last)
    {
        std::map<std::string, std::string>::const_iterator found = names.find(maskedKey(bytes));
        if (found != names.end())
            return found->second;
        bytes[last] = 0;
    }
    return std::string();
}

} // namespace VellumTool
