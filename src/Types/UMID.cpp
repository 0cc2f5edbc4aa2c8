#include "Types/UMID.h"

#include "Exceptions/Exceptions.h"
#include "KLV/FixedLengthIdentificationType.h"
#include "KLV/Value.h"
#include "Types/IdentifierSupport.h"

namespace Vellum
{
namespace Types
{
namespace
{
// The forms of both UMIDs: "0x" and every byte in hexadecimal.
void loadUMID(unsigned short const * text, StringRepresentationEncodingType kind, unsigned char * out,
              unsigned size, char const * typeName)
{
    if (kind != Hexadecimal && kind != TypeDefault)
        VELLUM_THROW(InvalidFormat, KLV::unknownLoadFormText(typeName));
    KLV::loadFromStringHexadecimal(text, out, size);
}

Templates::wstring renderUMID(unsigned char const * value, StringRepresentationEncodingType kind, unsigned size,
                              char const * typeName)
{
    if (kind != Hexadecimal && kind != TypeDefault)
        VELLUM_THROW(InvalidFormat, KLV::unknownRenderFormText(typeName));
    return KLV::toStringHexadecimal(value, size);
}
} // namespace

struct UMID32::Impl : public KLV::FixedLengthIdentificationType<UMID32::SIZE>
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(unsigned char const * bytes) : KLV::FixedLengthIdentificationType<UMID32::SIZE>(bytes) {}

    void loadFromString(unsigned short const * text, StringRepresentationEncodingType kind) override
    {
        loadUMID(text, kind, value_, SIZE, "UMID32");
    }

    Templates::wstring toString(StringRepresentationEncodingType kind) const override
    {
        return renderUMID(value_, kind, SIZE, "UMID32");
    }
};

struct UMID64::Impl : public KLV::FixedLengthIdentificationType<UMID64::SIZE>
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(unsigned char const * bytes) : KLV::FixedLengthIdentificationType<UMID64::SIZE>(bytes) {}

    void loadFromString(unsigned short const * text, StringRepresentationEncodingType kind) override
    {
        loadUMID(text, kind, value_, SIZE, "UMID64");
    }

    Templates::wstring toString(StringRepresentationEncodingType kind) const override
    {
        return renderUMID(value_, kind, SIZE, "UMID64");
    }
};

// UMID32

UMID32::UMID32() : impl_(new Impl) {}

UMID32::UMID32(unsigned char const * bytes) : impl_(new Impl(bytes)) {}

UMID32::UMID32(KLV::Value & value) : impl_(IdentifierSupport::fromValue<Impl>(value)) {}

UMID32::UMID32(unsigned short const * text, StringRepresentationEncodingType kind)
    : impl_(IdentifierSupport::fromText<Impl>(text, kind))
{
}

UMID32::UMID32(UMID32 const & other) : UID(other), impl_(new Impl(other.impl_->value_)) {}

UMID32 & UMID32::operator=(UMID32 const & other)
{
    if (this != &other)
        std::memcpy(impl_->value_, other.impl_->value_, SIZE);
    return *this;
}

UMID32::~UMID32() = default;

unsigned char const * UMID32::rawBuffer() const
{
    return impl_->value_;
}

unsigned short UMID32::serializedSize() const
{
    return SIZE;
}

Templates::auto_ptr<SimpleDataType> UMID32::clone() const
{
    return Templates::auto_ptr<SimpleDataType>(new UMID32(*this));
}

unsigned short UMID32::size() const
{
    return SIZE;
}

Templates::wstring UMID32::toString(StringRepresentationEncodingType kind) const
{
    return IdentifierSupport::toText(*impl_, kind);
}

bool operator==(UMID32 const & a, UMID32 const & b)
{
    return IdentifierSupport::equal<UMID32::SIZE>(a.rawBuffer(), b.rawBuffer());
}

bool operator!=(UMID32 const & a, UMID32 const & b)
{
    return !(a == b);
}

bool operator<(UMID32 const & a, UMID32 const & b)
{
    return IdentifierSupport::less<UMID32::SIZE>(a.rawBuffer(), b.rawBuffer());
}

// UMID64

UMID64::UMID64() : impl_(new Impl) {}

UMID64::UMID64(unsigned char const * bytes) : impl_(new Impl(bytes)) {}

UMID64::UMID64(KLV::Value & value) : impl_(IdentifierSupport::fromValue<Impl>(value)) {}

UMID64::UMID64(unsigned short const * text, StringRepresentationEncodingType kind)
    : impl_(IdentifierSupport::fromText<Impl>(text, kind))
{
}

UMID64::UMID64(UMID64 const & other) : UID(other), impl_(new Impl(other.impl_->value_)) {}

UMID64 & UMID64::operator=(UMID64 const & other)
{
    if (this != &other)
        std::memcpy(impl_->value_, other.impl_->value_, SIZE);
    return *this;
}

UMID64::~UMID64() = default;

unsigned char const * UMID64::rawBuffer() const
{
    return impl_->value_;
}

unsigned short UMID64::serializedSize() const
{
    return SIZE;
}

Templates::auto_ptr<SimpleDataType> UMID64::clone() const
{
    return Templates::auto_ptr<SimpleDataType>(new UMID64(*this));
}

unsigned short UMID64::size() const
{
    return SIZE;
}

Templates::wstring UMID64::toString(StringRepresentationEncodingType kind) const
{
    return IdentifierSupport::toText(*impl_, kind);
}

bool operator==(UMID64 const & a, UMID64 const & b)
{
    return IdentifierSupport::equal<UMID64::SIZE>(a.rawBuffer(), b.rawBuffer());
}

bool operator!=(UMID64 const & a, UMID64 const & b)
{
    return !(a == b);
}

bool operator<(UMID64 const & a, UMID64 const & b)
{
    return IdentifierSupport::less<UMID64::SIZE>(a.rawBuffer(), b.rawBuffer());
}
} // namespace Types
} // namespace Vellum
