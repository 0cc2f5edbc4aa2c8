// The collection description and the four concrete descriptions of values, with the checks of
// their constructors.

#include "MetaMetadata/MetaCollectionElement.h"

#include "Exceptions/Exceptions.h"
#include "MetaMetadata/MetaCollection.h"
#include "MetaMetadata/MetaReferenceCollection.h"
#include "MetaMetadata/MetaReferenceElement.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace MetaMetadata
{
namespace
{
using Types::Identifiers::Identifier;

bool isCollection(Identifier type) { return type == Types::Identifiers::Array || type == Types::Identifiers::Batch; }

bool isReference(Identifier type)
{
    return type == Types::Identifiers::StrongReference || type == Types::Identifiers::WeakReference;
}

[[noreturn]] void refuse(char const * text, Identifier type)
{
    VELLUM_THROW(InvalidMetaElement, Utils::wide(text) + Types::Identifiers::identifierToString(type));
}

// Runs before the collection's own state is made, so that a refusal leaves nothing behind.
MetaCollectionElement::CollectionSizeLimits const & checkedLimits(MetaCollectionElement::CollectionSizeLimits const & limits,
                                                                  Identifier dataType)
{
    if (!isCollection(dataType))
        refuse("Tried to create a MetaCollectionElement derived class with dataType: ", dataType);
    if (limits.maximum < limits.minimum)
        VELLUM_THROW(InvalidMetaElement,
                     Utils::wide("Tried to create a MetaCollectionElement derived class with invalid limits: [") +
                         Utils::decimal(limits.minimum) + Utils::wide(";") + Utils::decimal(limits.maximum) +
                         Utils::wide("]"));
    return limits;
}
} // namespace

// ---------------------------------------------------------------------------------------------

struct MetaCollectionElement::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(CollectionSizeLimits const & l, Identifier s) : limits(l), dataSubType(s) {}
    CollectionSizeLimits limits;
    Identifier dataSubType;
};

MetaCollectionElement::MetaCollectionElement(Types::UniversalLabel const & label, CollectionSizeLimits limits,
                                             Identifier dataType, Identifier dataSubType)
    : MetaElement(label, dataType), impl_(new Impl(checkedLimits(limits, dataType), dataSubType))
{
}

MetaCollectionElement::MetaCollectionElement(MetaCollectionElement const & other)
    : MetaElement(other), impl_(new Impl(*other.impl_))
{
}

MetaCollectionElement & MetaCollectionElement::operator=(MetaCollectionElement const & other)
{
    if (this != &other)
    {
        MetaElement::operator=(other);
        *impl_ = *other.impl_;
    }
    return *this;
}

MetaCollectionElement::~MetaCollectionElement() = default;

MetaCollectionElement::CollectionSizeLimits MetaCollectionElement::collectionSizeLimits() const
{
    return impl_->limits;
}

Identifier MetaCollectionElement::dataSubType() const { return impl_->dataSubType; }

bool operator==(MetaCollectionElement::CollectionSizeLimits const & a,
                MetaCollectionElement::CollectionSizeLimits const & b)
{
    return a.minimum == b.minimum && a.maximum == b.maximum;
}

bool operator==(MetaCollectionElement const & a, MetaCollectionElement const & b)
{
    return static_cast<MetaElement const &>(a) == static_cast<MetaElement const &>(b);
}

bool operator!=(MetaCollectionElement const & a, MetaCollectionElement const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

MetaSimpleElement::MetaSimpleElement(Types::UniversalLabel const & label, Identifier dataType)
    : MetaElement(label, dataType), MetaValueHolder()
{
    if (isCollection(dataType) || isReference(dataType))
        refuse("Tried to create a MetaSimpleElement with dataType: ", dataType);
}

MetaSimpleElement::MetaSimpleElement(Types::UniversalLabel const & label, Enumeration const & enumeration,
                                     Identifier dataType)
    : MetaElement(label, dataType), MetaValueHolder(enumeration)
{
    if (isCollection(dataType) || isReference(dataType))
        refuse("Tried to create a MetaSimpleElement with dataType: ", dataType);
}

MetaSimpleElement::MetaSimpleElement(MetaSimpleElement const & other) : MetaElement(other), MetaValueHolder(other) {}

MetaSimpleElement & MetaSimpleElement::operator=(MetaSimpleElement const & other)
{
    MetaElement::operator=(other);
    MetaValueHolder::operator=(other);
    return *this;
}

MetaSimpleElement::~MetaSimpleElement() {}

void MetaSimpleElement::accept(Visitors::NonConstMetaElementVisitor & visitor) { visitor.visit(*this); }

void MetaSimpleElement::accept(Visitors::MetaElementVisitor & visitor) const { visitor.visit(*this); }

bool operator==(MetaSimpleElement const & a, MetaSimpleElement const & b)
{
    return static_cast<MetaElement const &>(a) == static_cast<MetaElement const &>(b) &&
           static_cast<MetaValueHolder const &>(a) == static_cast<MetaValueHolder const &>(b);
}

bool operator!=(MetaSimpleElement const & a, MetaSimpleElement const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

MetaReferenceElement::MetaReferenceElement(Types::UniversalLabel const & label, Keys const & allowed,
                                           Identifier dataType)
    : MetaElement(label, dataType), MetaReferenceHolder(label, allowed)
{
    if (!isReference(dataType))
        refuse("Tried to create a MetaReferenceElement with dataType: ", dataType);
}

MetaReferenceElement::MetaReferenceElement(MetaReferenceElement const & other)
    : MetaElement(other), MetaReferenceHolder(other)
{
}

MetaReferenceElement & MetaReferenceElement::operator=(MetaReferenceElement const & other)
{
    MetaElement::operator=(other);
    MetaReferenceHolder::operator=(other);
    return *this;
}

MetaReferenceElement::~MetaReferenceElement() {}

void MetaReferenceElement::accept(Visitors::NonConstMetaElementVisitor & visitor) { visitor.visit(*this); }

void MetaReferenceElement::accept(Visitors::MetaElementVisitor & visitor) const { visitor.visit(*this); }

bool operator==(MetaReferenceElement const & a, MetaReferenceElement const & b)
{
    return static_cast<MetaElement const &>(a) == static_cast<MetaElement const &>(b) &&
           static_cast<MetaReferenceHolder const &>(a) == static_cast<MetaReferenceHolder const &>(b);
}

bool operator!=(MetaReferenceElement const & a, MetaReferenceElement const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

MetaCollection::MetaCollection(Types::UniversalLabel const & label, CollectionSizeLimits limits, Identifier dataType,
                               Identifier dataSubType)
    : MetaCollectionElement(label, limits, dataType, dataSubType), MetaValueHolder()
{
    if (isCollection(dataSubType) || isReference(dataSubType))
        refuse("Tried to create a MetaCollection with dataSubType: ", dataSubType);
}

MetaCollection::MetaCollection(Types::UniversalLabel const & label, CollectionSizeLimits limits,
                               Enumeration const & enumeration, Identifier dataType, Identifier dataSubType)
    : MetaCollectionElement(label, limits, dataType, dataSubType), MetaValueHolder(enumeration)
{
    if (isCollection(dataSubType) || isReference(dataSubType))
        refuse("Tried to create a MetaCollection with dataSubType: ", dataSubType);
}

MetaCollection::MetaCollection(MetaCollection const & other) : MetaCollectionElement(other), MetaValueHolder(other) {}

MetaCollection & MetaCollection::operator=(MetaCollection const & other)
{
    MetaCollectionElement::operator=(other);
    MetaValueHolder::operator=(other);
    return *this;
}

MetaCollection::~MetaCollection() {}

void MetaCollection::accept(Visitors::NonConstMetaElementVisitor & visitor) { visitor.visit(*this); }

void MetaCollection::accept(Visitors::MetaElementVisitor & visitor) const { visitor.visit(*this); }

bool operator==(MetaCollection const & a, MetaCollection const & b)
{
    return static_cast<MetaCollectionElement const &>(a) == static_cast<MetaCollectionElement const &>(b) &&
           static_cast<MetaValueHolder const &>(a) == static_cast<MetaValueHolder const &>(b);
}

bool operator!=(MetaCollection const & a, MetaCollection const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

MetaReferenceCollection::MetaReferenceCollection(Types::UniversalLabel const & label, CollectionSizeLimits limits,
                                                 Keys const & allowed, Identifier dataType, Identifier dataSubType)
    : MetaCollectionElement(label, limits, dataType, dataSubType), MetaReferenceHolder(label, allowed)
{
    if (!isReference(dataSubType))
        refuse("Tried to create a MetaReferenceCollection with dataType: ", dataSubType);
}

MetaReferenceCollection::MetaReferenceCollection(MetaReferenceCollection const & other)
    : MetaCollectionElement(other), MetaReferenceHolder(other)
{
}

MetaReferenceCollection & MetaReferenceCollection::operator=(MetaReferenceCollection const & other)
{
    MetaCollectionElement::operator=(other);
    MetaReferenceHolder::operator=(other);
    return *this;
}

MetaReferenceCollection::~MetaReferenceCollection() {}

void MetaReferenceCollection::accept(Visitors::NonConstMetaElementVisitor & visitor) { visitor.visit(*this); }

void MetaReferenceCollection::accept(Visitors::MetaElementVisitor & visitor) const { visitor.visit(*this); }

bool operator==(MetaReferenceCollection const & a, MetaReferenceCollection const & b)
{
    return static_cast<MetaCollectionElement const &>(a) == static_cast<MetaCollectionElement const &>(b) &&
           static_cast<MetaReferenceHolder const &>(a) == static_cast<MetaReferenceHolder const &>(b);
}

bool operator!=(MetaReferenceCollection const & a, MetaReferenceCollection const & b) { return !(a == b); }
} // namespace MetaMetadata
} // namespace Vellum
