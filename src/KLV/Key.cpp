#include "KLV/Key.h"

#include <cstring>
#include <ostream>

#include "Exceptions/Exceptions.h"
#include "KLV/FixedLengthIdentificationType.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Value.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace KLV
{
namespace
{
// OID form of a key: 1.3.53.2 stands for the five bytes 06 0e 2b 34 02.
unsigned const OID_PREFIX[] = {1, 3, 53, 2};
unsigned char const OID_FIXED_BYTES[] = {0x06, 0x0e, 0x2b, 0x34, 0x02};
unsigned const OID_FIRST_BYTE = 5;
} // namespace

struct Key::Impl : public FixedLengthIdentificationType<Key::SIZE>
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(unsigned char const * bytes) : FixedLengthIdentificationType<Key::SIZE>(bytes) {}

    void loadFromString(unsigned short const * text, Types::StringRepresentationEncodingType kind) override
    {
        if (kind != Types::OID && kind != Types::TypeDefault)
            VELLUM_THROW(InvalidFormat, unknownLoadFormText("Key"));
        loadFromStringOID(text, value_, SIZE, OID_PREFIX, 4, OID_FIXED_BYTES, 5);
    }

    Templates::wstring toString(Types::StringRepresentationEncodingType kind) const override
    {
        if (kind != Types::OID && kind != Types::TypeDefault)
            VELLUM_THROW(InvalidFormat, unknownRenderFormText("Key"));
        return toStringOID(value_, OID_PREFIX, 4, OID_FIRST_BYTE, SIZE);
    }
};

Key::Key(unsigned char const * bytes)
{
    std::memcpy(bytes_, bytes, SIZE);
}

Key::Key(Value & value)
{
    value.readValue(bytes_, SIZE);
}

Key::Key(unsigned short const * text, Types::StringRepresentationEncodingType kind)
{
    Impl parsed;
    if (kind == Types::Dotted)
        parsed.loadFromStringDotted(text);
    else
        parsed.loadFromString(text, kind);
    std::memcpy(bytes_, parsed.value_, SIZE);
}

Key::Key(Key const & other)
{
    std::memcpy(bytes_, other.bytes_, SIZE);
}

Key & Key::operator=(Key const & other)
{
    std::memcpy(bytes_, other.bytes_, SIZE);
    return *this;
}

Key::~Key() = default;

unsigned char Key::lengthFieldLength() const
{
    if (!isLocalSet(*this))
        return 0;
    unsigned char bits = bytes_[5] & 0x60;
    if (bits == 0x60)
        return 4;
    return static_cast<unsigned char>(bytes_[5] >> 5);
}

unsigned char Key::localTagFieldLength() const
{
    if (!isLocalSet(*this))
        return 0;
    unsigned char bits = bytes_[5] & 0x18;
    if (bits == 0x18)
        return 4;
    if (bits == 0x10)
        return 2;
    return 1;
}

Templates::wstring Key::toString(Types::StringRepresentationEncodingType kind) const
{
    if (kind == Types::Dotted)
        return Impl(bytes_).toStringDotted();
    return Impl(bytes_).toString(kind);
}

unsigned char const * Key::rawBuffer() const
{
    return bytes_;
}

unsigned char Key::operator[](unsigned index) const
{
    if (index >= SIZE)
        VELLUM_THROW(IndexOutOfBounds, "Index out of bounds");
    return bytes_[index];
}

unsigned char & Key::operator[](unsigned index)
{
    if (index >= SIZE)
        VELLUM_THROW(IndexOutOfBounds, "Index out of bounds");
    return bytes_[index];
}

bool operator==(Key const & a, Key const & b)
{
    return std::memcmp(a.rawBuffer(), b.rawBuffer(), Key::SIZE) == 0;
}

bool operator!=(Key const & a, Key const & b)
{
    return !(a == b);
}

bool operator<(Key const & a, Key const & b)
{
    return std::memcmp(a.rawBuffer(), b.rawBuffer(), Key::SIZE) < 0;
}

std::ostream & operator<<(std::ostream & stream, Key const & key)
{
    return stream << Utils::narrow(key.toString(Types::Dotted));
}
} // namespace KLV
} // namespace Vellum
