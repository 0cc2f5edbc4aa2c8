#include "Types/References.h"

#include "KLV/Value.h"
#include "Types/IdentifierSupport.h"
#include "Types/UUIDImpl.h"

namespace Vellum
{
namespace Types
{
// StrongReference

struct StrongReference::Impl : public UUID::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(unsigned char const * bytes) : UUID::Impl(bytes) {}
};

StrongReference::StrongReference() : impl_(new Impl) {}

StrongReference::StrongReference(unsigned char const * bytes) : impl_(new Impl(bytes)) {}

StrongReference::StrongReference(UUID const & target) : impl_(new Impl(target.rawBuffer())) {}

StrongReference::StrongReference(KLV::Value & value) : impl_(IdentifierSupport::fromValue<Impl>(value)) {}

StrongReference::StrongReference(unsigned short const * text, StringRepresentationEncodingType kind)
    : impl_(IdentifierSupport::fromText<Impl>(text, kind))
{
}

StrongReference::StrongReference(StrongReference const & other) : Reference(other), impl_(new Impl(other.impl_->value_)) {}

StrongReference & StrongReference::operator=(StrongReference const & other)
{
    if (this != &other)
        std::memcpy(impl_->value_, other.impl_->value_, SIZE);
    return *this;
}

StrongReference::~StrongReference() = default;

unsigned char const * StrongReference::rawBuffer() const
{
    return impl_->value_;
}

unsigned short StrongReference::serializedSize() const
{
    return SIZE;
}

Templates::auto_ptr<SimpleDataType> StrongReference::clone() const
{
    return Templates::auto_ptr<SimpleDataType>(new StrongReference(*this));
}

unsigned short StrongReference::size() const
{
    return SIZE;
}

Templates::wstring StrongReference::toString(StringRepresentationEncodingType kind) const
{
    return IdentifierSupport::toText(*impl_, kind);
}

UUID StrongReference::uuid() const
{
    return UUID(impl_->value_);
}

bool operator==(StrongReference const & a, StrongReference const & b)
{
    return IdentifierSupport::equal<StrongReference::SIZE>(a.rawBuffer(), b.rawBuffer());
}

bool operator!=(StrongReference const & a, StrongReference const & b)
{
    return !(a == b);
}

bool operator<(StrongReference const & a, StrongReference const & b)
{
    return IdentifierSupport::less<StrongReference::SIZE>(a.rawBuffer(), b.rawBuffer());
}

// WeakReference

struct WeakReference::Impl : public UUID::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(unsigned char const * bytes) : UUID::Impl(bytes) {}
};

WeakReference::WeakReference() : impl_(new Impl) {}

WeakReference::WeakReference(unsigned char const * bytes) : impl_(new Impl(bytes)) {}

WeakReference::WeakReference(UUID const & target) : impl_(new Impl(target.rawBuffer())) {}

WeakReference::WeakReference(KLV::Value & value) : impl_(IdentifierSupport::fromValue<Impl>(value)) {}

WeakReference::WeakReference(unsigned short const * text, StringRepresentationEncodingType kind)
    : impl_(IdentifierSupport::fromText<Impl>(text, kind))
{
}

WeakReference::WeakReference(WeakReference const & other) : Reference(other), impl_(new Impl(other.impl_->value_)) {}

WeakReference & WeakReference::operator=(WeakReference const & other)
{
    if (this != &other)
        std::memcpy(impl_->value_, other.impl_->value_, SIZE);
    return *this;
}

WeakReference::~WeakReference() = default;

unsigned char const * WeakReference::rawBuffer() const
{
    return impl_->value_;
}

unsigned short WeakReference::serializedSize() const
{
    return SIZE;
}

Templates::auto_ptr<SimpleDataType> WeakReference::clone() const
{
    return Templates::auto_ptr<SimpleDataType>(new WeakReference(*this));
}

unsigned short WeakReference::size() const
{
    return SIZE;
}

Templates::wstring WeakReference::toString(StringRepresentationEncodingType kind) const
{
    return IdentifierSupport::toText(*impl_, kind);
}

UUID WeakReference::uuid() const
{
    return UUID(impl_->value_);
}

bool operator==(WeakReference const & a, WeakReference const & b)
{
    return IdentifierSupport::equal<WeakReference::SIZE>(a.rawBuffer(), b.rawBuffer());
}

bool operator!=(WeakReference const & a, WeakReference const & b)
{
    return !(a == b);
}

bool operator<(WeakReference const & a, WeakReference const & b)
{
    return IdentifierSupport::less<WeakReference::SIZE>(a.rawBuffer(), b.rawBuffer());
}
} // namespace Types
} // namespace Vellum
