// The abstract description of a value, and the two holders: of permitted values, of reference targets.

#include "MetaMetadata/MetaElement.h"

#include "MetaMetadata/MetaCollection.h"
#include "MetaMetadata/MetaReferenceCollection.h"
#include "MetaMetadata/MetaReferenceElement.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MetaMetadata
{
struct MetaElement::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(Types::UniversalLabel const & l, Types::Identifiers::Identifier t) : label(l), dataType(t) {}
    Types::UniversalLabel label;
    Types::Identifiers::Identifier dataType;
};

MetaElement::MetaElement(Types::UniversalLabel const & label, Types::Identifiers::Identifier dataType)
    : PropertyMap(), impl_(new Impl(label, dataType))
{
}

MetaElement::MetaElement(MetaElement const & other) : PropertyMap(other), impl_(new Impl(*other.impl_)) {}

MetaElement & MetaElement::operator=(MetaElement const & other)
{
    if (this != &other)
    {
        Impl copy(*other.impl_);
        PropertyMap::operator=(other);
        *impl_ = copy;
    }
    return *this;
}

MetaElement::~MetaElement() = default;

Types::UniversalLabel const & MetaElement::universalLabel() const { return impl_->label; }

Types::Identifiers::Identifier MetaElement::dataType() const { return impl_->dataType; }

bool operator==(MetaElement const & a, MetaElement const & b)
{
    return a.dataType() == b.dataType() && a.universalLabel() == b.universalLabel() &&
           static_cast<PropertyMap const &>(a) == static_cast<PropertyMap const &>(b);
}

bool operator!=(MetaElement const & a, MetaElement const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

struct MetaValueHolder::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(Enumeration const & e) : enumeration(e) {}
    Enumeration enumeration;
};

MetaValueHolder::MetaValueHolder() : impl_(new Impl) {}

MetaValueHolder::MetaValueHolder(Enumeration const & enumeration) : impl_(new Impl(enumeration)) {}

MetaValueHolder::MetaValueHolder(MetaValueHolder const & other) : impl_(new Impl(*other.impl_)) {}

MetaValueHolder & MetaValueHolder::operator=(MetaValueHolder const & other)
{
    if (this != &other)
        impl_->enumeration = other.impl_->enumeration;
    return *this;
}

MetaValueHolder::~MetaValueHolder() = default;

MetaValueHolder::Enumeration MetaValueHolder::enumeration() const { return impl_->enumeration; }

bool operator==(MetaValueHolder const &, MetaValueHolder const &) { return true; }

bool operator!=(MetaValueHolder const & a, MetaValueHolder const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

struct MetaReferenceHolder::Impl
{
    VELLUM_CLASS_ALLOCATION
    explicit Impl(Keys const & a) : allowed(a) {}
    Keys allowed;
};

MetaReferenceHolder::MetaReferenceHolder(Types::UniversalLabel const &, Keys const & allowed)
    : impl_(new Impl(allowed))
{
}

MetaReferenceHolder::MetaReferenceHolder(MetaReferenceHolder const & other) : impl_(new Impl(*other.impl_)) {}

MetaReferenceHolder & MetaReferenceHolder::operator=(MetaReferenceHolder const & other)
{
    if (this != &other)
    {
        Keys copy(other.impl_->allowed);
        impl_->allowed.swap(copy);
    }
    return *this;
}

MetaReferenceHolder::~MetaReferenceHolder() = default;

void MetaReferenceHolder::addAllowedMetadataSet(KLV::Key const & key) { impl_->allowed.push_back(key); }

MetaReferenceHolder::Keys MetaReferenceHolder::allowedMetadataSets() const { return impl_->allowed; }

bool operator==(MetaReferenceHolder const & a, MetaReferenceHolder const & b)
{
    return a.allowedMetadataSets() == b.allowedMetadataSets();
}

bool operator!=(MetaReferenceHolder const & a, MetaReferenceHolder const & b) { return !(a == b); }
} // namespace MetaMetadata
} // namespace Vellum
