#include "Types/UniversalLabel.h"

#include <cstring>

#include "Exceptions/Exceptions.h"
#include "KLV/FixedLengthIdentificationType.h"
#include "KLV/Key.h"
#include "KLV/Value.h"
#include "Types/IdentifierSupport.h"

namespace Vellum
{
namespace Types
{
namespace
{
// OID form of a label: 1.3.53 stands for the four bytes 06 0e 2b 34, the numbers that follow
// are bytes 4 to 15.
unsigned const OID_PREFIX[] = {1, 3, 53};
unsigned const OID_PREFIX_COUNT = 3;
unsigned char const OID_FIXED_BYTES[] = {0x06, 0x0e, 0x2b, 0x34};
unsigned const OID_FIXED_COUNT = 4;
unsigned const OID_FIRST_BYTE = 4;
} // namespace

struct UniversalLabel::Impl : public KLV::FixedLengthIdentificationType<UniversalLabel::SIZE>
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(unsigned char const * bytes) : KLV::FixedLengthIdentificationType<UniversalLabel::SIZE>(bytes) {}

    void loadFromString(unsigned short const * text, StringRepresentationEncodingType kind) override
    {
        if (kind != OID && kind != TypeDefault)
            VELLUM_THROW(InvalidFormat, KLV::unknownLoadFormText("UniversalLabel"));
        KLV::loadFromStringOID(text, value_, SIZE, OID_PREFIX, OID_PREFIX_COUNT, OID_FIXED_BYTES, OID_FIXED_COUNT);
    }

    Templates::wstring toString(StringRepresentationEncodingType kind) const override
    {
        if (kind != OID && kind != TypeDefault)
            VELLUM_THROW(InvalidFormat, KLV::unknownRenderFormText("UniversalLabel"));
        return KLV::toStringOID(value_, OID_PREFIX, OID_PREFIX_COUNT, OID_FIRST_BYTE, SIZE);
    }
};

UniversalLabel::UniversalLabel()
{
    std::memset(bytes_, 0, SIZE);
}

UniversalLabel::UniversalLabel(unsigned char const * bytes)
{
    std::memcpy(bytes_, bytes, SIZE);
}

UniversalLabel::UniversalLabel(KLV::Key const & key)
{
    std::memcpy(bytes_, key.rawBuffer(), SIZE);
}

UniversalLabel::UniversalLabel(KLV::Value & value)
{
    value.readValue(bytes_, SIZE);
}

UniversalLabel::UniversalLabel(unsigned short const * text, StringRepresentationEncodingType kind)
{
    Templates::auto_ptr<Impl> const parsed = IdentifierSupport::fromText<Impl>(text, kind);
    std::memcpy(bytes_, parsed->value_, SIZE);
}

UniversalLabel::UniversalLabel(UniversalLabel const & other) : UID(other)
{
    std::memcpy(bytes_, other.bytes_, SIZE);
}

UniversalLabel & UniversalLabel::operator=(UniversalLabel const & other)
{
    if (this != &other)
        std::memcpy(bytes_, other.bytes_, SIZE);
    return *this;
}

UniversalLabel::~UniversalLabel() = default;

unsigned char const * UniversalLabel::rawBuffer() const
{
    return bytes_;
}

unsigned short UniversalLabel::serializedSize() const
{
    return SIZE;
}

Templates::auto_ptr<SimpleDataType> UniversalLabel::clone() const
{
    return Templates::auto_ptr<SimpleDataType>(new UniversalLabel(*this));
}

unsigned short UniversalLabel::size() const
{
    return SIZE;
}

Templates::wstring UniversalLabel::toString(StringRepresentationEncodingType kind) const
{
    return IdentifierSupport::toText(Impl(bytes_), kind);
}

bool operator==(UniversalLabel const & a, UniversalLabel const & b)
{
    return IdentifierSupport::equal<UniversalLabel::SIZE>(a.rawBuffer(), b.rawBuffer());
}

bool operator!=(UniversalLabel const & a, UniversalLabel const & b)
{
    return !(a == b);
}

bool operator<(UniversalLabel const & a, UniversalLabel const & b)
{
    return IdentifierSupport::less<UniversalLabel::SIZE>(a.rawBuffer(), b.rawBuffer());
}
} // namespace Types
} // namespace Vellum
