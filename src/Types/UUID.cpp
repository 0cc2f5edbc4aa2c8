#include "Types/UUID.h"

#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "Types/IdentifierSupport.h"
#include "Types/UUIDImpl.h"

namespace Vellum
{
namespace Types
{
namespace
{
// "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx": a hyphen behind bytes 3, 5, 7 and 9.
unsigned const HYPHEN_AFTER[] = {3, 5, 7, 9};
unsigned const HYPHEN_COUNT = 4;
} // namespace

void UUID::Impl::loadFromString(unsigned short const * text, StringRepresentationEncodingType kind)
{
    if (kind != RFC4122 && kind != TypeDefault)
        VELLUM_THROW(InvalidFormat, KLV::unknownLoadFormText("UUID"));
    KLV::loadFromStringRFC4122(text, value_, SIZE, HYPHEN_AFTER, HYPHEN_COUNT);
}

Templates::wstring UUID::Impl::toString(StringRepresentationEncodingType kind) const
{
    if (kind != RFC4122 && kind != TypeDefault)
        VELLUM_THROW(InvalidFormat, KLV::unknownRenderFormText("UUID"));
    return KLV::toStringRFC4122(value_, SIZE, HYPHEN_AFTER, HYPHEN_COUNT);
}

UUID::UUID() : impl_(new Impl) {}

UUID::UUID(unsigned char const * bytes) : impl_(new Impl(bytes)) {}

UUID::UUID(KLV::Value & value) : impl_(IdentifierSupport::fromValue<Impl>(value)) {}

UUID::UUID(unsigned short const * text, StringRepresentationEncodingType kind)
    : impl_(IdentifierSupport::fromText<Impl>(text, kind))
{
}

UUID::UUID(UUID const & other) : UID(other), impl_(new Impl(other.impl_->value_)) {}

UUID & UUID::operator=(UUID const & other)
{
    if (this != &other)
        std::memcpy(impl_->value_, other.impl_->value_, SIZE);
    return *this;
}

UUID::~UUID() = default;

unsigned char const * UUID::rawBuffer() const
{
    return impl_->value_;
}

unsigned short UUID::serializedSize() const
{
    return SIZE;
}

Templates::auto_ptr<SimpleDataType> UUID::clone() const
{
    return Templates::auto_ptr<SimpleDataType>(new UUID(*this));
}

unsigned short UUID::size() const
{
    return SIZE;
}

Templates::wstring UUID::toString(StringRepresentationEncodingType kind) const
{
    return IdentifierSupport::toText(*impl_, kind);
}

bool operator==(UUID const & a, UUID const & b)
{
    return IdentifierSupport::equal<UUID::SIZE>(a.rawBuffer(), b.rawBuffer());
}

bool operator!=(UUID const & a, UUID const & b)
{
    return !(a == b);
}

bool operator<(UUID const & a, UUID const & b)
{
    return IdentifierSupport::less<UUID::SIZE>(a.rawBuffer(), b.rawBuffer());
}
} // namespace Types
} // namespace Vellum
