// The text values: UTF16String and ISO7String.
#include "Types/ISO7String.h"
#include "Types/UTF16String.h"

#include "Exceptions/Exceptions.h"
#include "Templates/Containers.h"
#include "Types/ValueBytes.h"
#include "Types/ValueHandleImpl.h"

namespace Vellum
{
namespace Types
{
namespace
{
uint64 const largestString = 0xFFFFFFFFu;
} // namespace

// The wire bytes, followed by room for a terminator of two zero bytes, and the units in the
// host's order, zero-terminated.
struct UTF16String::Impl
{
    VELLUM_CLASS_ALLOCATION
    Templates::vector<unsigned char> wire;
    Templates::wstring text;

    explicit Impl(KLV::Value & value)
    {
        uint64 const available = value.remaining();
        THROW_UNLESS_TEXT(InvalidLength, available <= largestString, "source.remaining () <= 0xFFFFFFFF",
                          "UTF-16 data must fit 32 bits.");
        THROW_UNLESS_TEXT(InvalidFormat, available % sizeof(Platform::UInt16) == 0,
                          "source.remaining () % sizeof (Platform::UInt16) == 0",
                          "UTF-16 data must have a even number of bytes.");
        ValueBytes::readRemaining(value, wire);
        text.reserve(wire.size() / 2);
        for (std::size_t i = 0; i + 1 < wire.size(); i += 2)
            text.push_back(static_cast<unsigned short>((wire[i] << 8) | wire[i + 1]));
        wire.push_back(0);
        wire.push_back(0);
    }

    explicit Impl(unsigned short const * units)
    {
        if (units != nullptr)
            text = units;
        wire.reserve(2 * text.size() + 2);
        for (unsigned short unit : text)
        {
            wire.push_back(static_cast<unsigned char>(unit >> 8));
            wire.push_back(static_cast<unsigned char>(unit & 0xFF));
        }
        wire.push_back(0);
        wire.push_back(0);
    }

    unsigned char const * rawBuffer() const { return wire.data(); }
    unsigned short size() const { return static_cast<unsigned short>(wire.size() - 2); }
};

UTF16String::UTF16String(KLV::Value & value) : impl_(new Impl(value)) {}

UTF16String::UTF16String(unsigned short const * text) : impl_(new Impl(text)) {}

unsigned short const * UTF16String::value() const
{
    return impl_->text.c_str();
}

unsigned int UTF16String::size() const
{
    return static_cast<unsigned int>(impl_->wire.size() - 2);
}

unsigned int UTF16String::stringLength() const
{
    return static_cast<unsigned int>(impl_->text.size());
}

VELLUM_DEFINE_VALUE_HANDLE(UTF16String)

// The wire bytes followed by a zero byte, so that they read as a terminated text.
struct ISO7String::Impl
{
    VELLUM_CLASS_ALLOCATION
    Templates::vector<unsigned char> wire;

    explicit Impl(KLV::Value & value)
    {
        THROW_UNLESS_TEXT(InvalidLength, value.remaining() <= largestString, "source.remaining () <= 0xFFFFFFFF",
                          "ISO 7-bit data must fit 32 bits.");
        ValueBytes::readRemaining(value, wire);
        wire.push_back(0);
    }

    explicit Impl(char const * characters)
    {
        if (characters != nullptr)
            for (; *characters != 0; ++characters)
                wire.push_back(static_cast<unsigned char>(*characters));
        wire.push_back(0);
    }

    unsigned char const * rawBuffer() const { return wire.data(); }
    unsigned short size() const { return static_cast<unsigned short>(wire.size() - 1); }
};

ISO7String::ISO7String(KLV::Value & value) : impl_(new Impl(value)) {}

ISO7String::ISO7String(char const * text) : impl_(new Impl(text)) {}

char const * ISO7String::value() const
{
    return reinterpret_cast<char const *>(impl_->wire.data());
}

unsigned int ISO7String::size() const
{
    return static_cast<unsigned int>(impl_->wire.size() - 1);
}

unsigned int ISO7String::stringLength() const
{
    return static_cast<unsigned int>(impl_->wire.size() - 1);
}

VELLUM_DEFINE_VALUE_HANDLE(ISO7String)
} // namespace Types
} // namespace Vellum
