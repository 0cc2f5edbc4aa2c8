#include "KLV/Packet.h"

namespace Vellum
{
namespace KLV
{
struct Packet::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(Key const & k, unsigned char ber, uint64 len, DataIO::DataSource & source, uint64 keyOffset)
        : key(k), berLength(ber), length(len), value(source, len), keyAbsoluteOffset(keyOffset)
    {
    }

    Key key;
    unsigned char berLength;
    uint64 length;
    Value value;
    uint64 keyAbsoluteOffset;
};

Packet::Packet(Key const & key, unsigned char berLength, uint64 length, DataIO::DataSource & source,
               uint64 keyAbsoluteOffset)
    : impl_(new Impl(key, berLength, length, source, keyAbsoluteOffset))
{
}

Packet::~Packet() = default;

Key const & Packet::key() const
{
    return impl_->key;
}

void Packet::key(Key const & key)
{
    impl_->key = key;
}

unsigned char Packet::berLength() const
{
    return impl_->berLength;
}

uint64 Packet::length() const
{
    return impl_->length;
}

Value & Packet::value()
{
    return impl_->value;
}

Value const & Packet::value() const
{
    return impl_->value;
}

uint64 Packet::keyAbsoluteOffset() const
{
    return impl_->keyAbsoluteOffset;
}

uint64 Packet::klvLength() const
{
    return 16 + uint64(impl_->berLength) + impl_->length;
}
} // namespace KLV
} // namespace Vellum
