#include "Types/LocalTag.h"

#include "Exceptions/Exceptions.h"
#include "KLV/FixedLengthIdentificationType.h"
#include "KLV/Value.h"
#include "Types/IdentifierSupport.h"

namespace Vellum
{
namespace Types
{
struct LocalTag::Impl : public KLV::FixedLengthIdentificationType<LocalTag::SIZE>
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(unsigned char const * bytes) : KLV::FixedLengthIdentificationType<LocalTag::SIZE>(bytes) {}

    void loadFromString(unsigned short const * text, StringRepresentationEncodingType kind) override
    {
        if (kind != Hexadecimal && kind != TypeDefault)
            VELLUM_THROW(InvalidFormat, KLV::unknownLoadFormText("LocalTag"));
        KLV::loadFromStringHexadecimal(text, value_, SIZE);
    }

    Templates::wstring toString(StringRepresentationEncodingType kind) const override
    {
        if (kind != Hexadecimal && kind != TypeDefault)
            VELLUM_THROW(InvalidFormat, KLV::unknownRenderFormText("LocalTag"));
        return KLV::toStringHexadecimal(value_, SIZE);
    }
};

LocalTag::LocalTag() : impl_(new Impl) {}

LocalTag::LocalTag(unsigned short value) : impl_(new Impl)
{
    impl_->value_[0] = static_cast<unsigned char>(value >> 8);
    impl_->value_[1] = static_cast<unsigned char>(value & 0xFF);
}

LocalTag::LocalTag(unsigned char const * bytes) : impl_(new Impl(bytes)) {}

LocalTag::LocalTag(KLV::Value & value) : impl_(IdentifierSupport::fromValue<Impl>(value)) {}

LocalTag::LocalTag(unsigned short const * text, StringRepresentationEncodingType kind)
    : impl_(IdentifierSupport::fromText<Impl>(text, kind))
{
}

LocalTag::LocalTag(LocalTag const & other) : SimpleDataType(other), impl_(new Impl(other.impl_->value_)) {}

LocalTag & LocalTag::operator=(LocalTag const & other)
{
    if (this != &other)
        std::memcpy(impl_->value_, other.impl_->value_, SIZE);
    return *this;
}

LocalTag::~LocalTag() = default;

unsigned char const * LocalTag::rawBuffer() const
{
    return impl_->value_;
}

unsigned short LocalTag::serializedSize() const
{
    return SIZE;
}

Templates::auto_ptr<SimpleDataType> LocalTag::clone() const
{
    return Templates::auto_ptr<SimpleDataType>(new LocalTag(*this));
}

unsigned short LocalTag::size() const
{
    return SIZE;
}

Templates::wstring LocalTag::toString(StringRepresentationEncodingType kind) const
{
    return IdentifierSupport::toText(*impl_, kind);
}

unsigned short LocalTag::value() const
{
    return static_cast<unsigned short>((impl_->value_[0] << 8) | impl_->value_[1]);
}

bool LocalTag::isStaticLocalTag() const
{
    return impl_->value_[0] != 0 && impl_->value_[0] < 0x80;
}

bool operator==(LocalTag const & a, LocalTag const & b)
{
    return IdentifierSupport::equal<LocalTag::SIZE>(a.rawBuffer(), b.rawBuffer());
}

bool operator!=(LocalTag const & a, LocalTag const & b)
{
    return !(a == b);
}

bool operator<(LocalTag const & a, LocalTag const & b)
{
    return IdentifierSupport::less<LocalTag::SIZE>(a.rawBuffer(), b.rawBuffer());
}
} // namespace Types
} // namespace Vellum
