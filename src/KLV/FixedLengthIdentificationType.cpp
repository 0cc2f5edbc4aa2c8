#include "KLV/FixedLengthIdentificationType.h"

#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace KLV
{
namespace
{
char const HEX_DIGITS[] = "0123456789abcdef";
// Keeps a long run of digits from overflowing; anything above 255 is refused anyway.
unsigned const ELEMENT_CAP = 100000;

std::size_t textLength(unsigned short const * text)
{
    return text == nullptr ? 0 : Templates::char_traits<unsigned short>::length(text);
}

int hexDigitValue(unsigned short c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Reads the hexadecimal pair at text[0..1].
unsigned char hexPair(unsigned short const * text)
{
    int high = hexDigitValue(text[0]);
    int low = hexDigitValue(text[1]);
    if (high < 0 || low < 0)
        VELLUM_THROW(InvalidLabel, "Label contains non Hexadecimal characters");
    return static_cast<unsigned char>((high << 4) | low);
}

void appendHexPair(Templates::wstring & text, unsigned char byte)
{
    text.push_back(static_cast<unsigned short>(HEX_DIGITS[byte >> 4]));
    text.push_back(static_cast<unsigned short>(HEX_DIGITS[byte & 0x0F]));
}

// How many separators stand behind the byte at `index`.
unsigned hyphensAfter(unsigned index, unsigned const * hyphenAfter, unsigned hyphenCount)
{
    unsigned count = 0;
    for (unsigned h = 0; h < hyphenCount; ++h)
        if (hyphenAfter[h] == index)
            ++count;
    return count;
}

// Walks the "."-separated decimal elements of an OID text.
class OIDElements
{
public:
    explicit OIDElements(unsigned short const * text)
        : text_(text), length_(textLength(text)), position_(0), more_(length_ != 0)
    {
    }

    bool more() const { return more_; }

    // The next element; false when it is empty or holds something other than decimal digits.
    bool next(unsigned & value)
    {
        bool valid = true;
        std::size_t start = position_;
        value = 0;
        while (position_ < length_ && text_[position_] != '.')
        {
            unsigned short c = text_[position_++];
            if (c < '0' || c > '9')
                valid = false;
            else if (value < ELEMENT_CAP)
                value = value * 10 + (c - '0');
        }
        if (position_ == start)
            valid = false;
        // A "." promises one more element, even an empty one.
        more_ = position_ < length_;
        if (more_)
            ++position_;
        return valid;
    }

private:
    unsigned short const * text_;
    std::size_t length_;
    std::size_t position_;
    bool more_;
};
} // namespace

FixedLengthIdentificationTypeBase::~FixedLengthIdentificationTypeBase() {}

void FixedLengthIdentificationTypeBase::loadFromString(unsigned short const *, Types::StringRepresentationEncodingType)
{
    VELLUM_THROW(InvalidValue, "Can't retrieve in the requested type for the given StringRepresentationEncodingType");
}

Templates::wstring FixedLengthIdentificationTypeBase::toString(Types::StringRepresentationEncodingType) const
{
    VELLUM_THROW(InvalidValue, "Can't represent the requested type in the given StringRepresentationEncodingType");
}

Templates::wstring toStringOID(unsigned char const * value, unsigned const * prefix, unsigned prefixCount,
                               unsigned from, unsigned to)
{
    Templates::wstring text;
    for (unsigned i = 0; i < prefixCount; ++i)
    {
        if (i != 0)
            text.push_back('.');
        text += Utils::decimal(prefix[i]);
    }
    // Zero bytes wait here until a non-zero byte shows that they are not at the end.
    Templates::wstring pendingZeros;
    for (unsigned i = from; i < to; ++i)
    {
        if (value[i] == 0)
        {
            pendingZeros.push_back('.');
            pendingZeros.push_back('0');
            continue;
        }
        text += pendingZeros;
        pendingZeros.clear();
        text.push_back('.');
        text += Utils::decimal(unsigned(value[i]));
    }
    return text;
}

void loadFromStringOID(unsigned short const * text, unsigned char * out, unsigned size, unsigned const * prefix,
                       unsigned prefixCount, unsigned char const * fixedBytes, unsigned fixedCount)
{
    OIDElements elements(text);
    unsigned element = 0;
    for (unsigned i = 0; i < prefixCount; ++i)
    {
        if (!elements.more())
            VELLUM_THROW(InvalidLength, "Not enough data");
        if (!elements.next(element) || element != prefix[i])
            VELLUM_THROW(InvalidLabel, "OID contains initial values not according to type");
    }
    Templates::vector<unsigned char> bytes(size, 0);
    for (unsigned i = 0; i < fixedCount && i < size; ++i)
        bytes[i] = fixedBytes[i];
    for (unsigned i = fixedCount; i < size && elements.more(); ++i)
    {
        if (!elements.next(element) || element > 255)
            VELLUM_THROW(InvalidLabel, "OID contains values not in [0 - 255].");
        bytes[i] = static_cast<unsigned char>(element);
    }
    if (elements.more())
        VELLUM_THROW(InvalidLength, "OID contains more elements than expected");
    if (size != 0)
        std::memcpy(out, bytes.data(), size);
}

Templates::wstring toStringHexadecimal(unsigned char const * value, unsigned size)
{
    Templates::wstring text;
    text.reserve(2 + 2 * std::size_t(size));
    text.push_back('0');
    text.push_back('x');
    for (unsigned i = 0; i < size; ++i)
        appendHexPair(text, value[i]);
    return text;
}

void loadFromStringHexadecimal(unsigned short const * text, unsigned char * out, unsigned size)
{
    if (textLength(text) != 2 * std::size_t(size) + 2)
        VELLUM_THROW(InvalidLength, "Not enough data");
    if (text[0] != '0' || text[1] != 'x')
        VELLUM_THROW(InvalidLabel, "Expecting 0x in the start of the plain hexadecimal string representation");
    Templates::vector<unsigned char> bytes(size, 0);
    for (unsigned i = 0; i < size; ++i)
        bytes[i] = hexPair(text + 2 + 2 * std::size_t(i));
    if (size != 0)
        std::memcpy(out, bytes.data(), size);
}

Templates::wstring toStringRFC4122(unsigned char const * value, unsigned size, unsigned const * hyphenAfter,
                                   unsigned hyphenCount)
{
    Templates::wstring text;
    text.reserve(2 * std::size_t(size) + hyphenCount);
    for (unsigned i = 0; i < size; ++i)
    {
        appendHexPair(text, value[i]);
        unsigned count = hyphensAfter(i, hyphenAfter, hyphenCount);
        for (unsigned h = 0; h < count; ++h)
            text.push_back('-');
    }
    return text;
}

void loadFromStringRFC4122(unsigned short const * text, unsigned char * out, unsigned size,
                           unsigned const * hyphenAfter, unsigned hyphenCount)
{
    if (textLength(text) != 2 * std::size_t(size) + hyphenCount)
        VELLUM_THROW(InvalidLength, "Not enough data");
    Templates::vector<unsigned char> bytes(size, 0);
    std::size_t position = 0;
    for (unsigned i = 0; i < size; ++i)
    {
        bytes[i] = hexPair(text + position);
        position += 2;
        unsigned count = hyphensAfter(i, hyphenAfter, hyphenCount);
        for (unsigned h = 0; h < count; ++h)
        {
            // Any separator will do, as long as it cannot be read as a digit.
            if (hexDigitValue(text[position]) >= 0)
                VELLUM_THROW(InvalidLabel, "Expections an separator that was not a hexadecimal character");
            ++position;
        }
    }
    if (size != 0)
        std::memcpy(out, bytes.data(), size);
}

Templates::wstring toStringDotted(unsigned char const * value, unsigned size)
{
    Templates::wstring text;
    text.reserve(3 * std::size_t(size));
    for (unsigned i = 0; i < size; ++i)
    {
        if (i != 0)
            text.push_back('.');
        appendHexPair(text, value[i]);
    }
    return text;
}

void loadFromStringDotted(unsigned short const * text, unsigned char * out, unsigned size)
{
    if (size == 0 || textLength(text) != 3 * std::size_t(size) - 1)
        VELLUM_THROW(InvalidLength, "Not enough data");
    Templates::vector<unsigned char> bytes(size, 0);
    // The separators between the pairs are not looked at.
    for (unsigned i = 0; i < size; ++i)
        bytes[i] = hexPair(text + 3 * std::size_t(i));
    std::memcpy(out, bytes.data(), size);
}

Templates::wstring unknownLoadFormText(char const * typeName)
{
    Templates::wstring text = Utils::wide("Don't know how to initialize ");
    text += Utils::wide(typeName);
    text += Utils::wide(" in the given string representation format");
    return text;
}

Templates::wstring unknownRenderFormText(char const * typeName)
{
    Templates::wstring text = Utils::wide("Don't know how to represent ");
    text += Utils::wide(typeName);
    text += Utils::wide(" in the given string representation format");
    return text;
}
} // namespace KLV
} // namespace Vellum
