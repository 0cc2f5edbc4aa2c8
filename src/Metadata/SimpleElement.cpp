#include "Metadata/SimpleElement.h"

#include "Metadata/ElementVisitor.h"
#include "Metadata/SimpleElement_impl.h"

namespace Vellum
{
namespace Metadata
{
SimpleElement::SimpleElement(Templates::auto_ptr<Types::SimpleDataType> value, MetaAttributePtr attribute,
                             MetadataSet & set)
    : ValueHolder(ElementSupport::valueHolderOf(attribute.get())), impl_(new Impl(std::move(value), attribute, set, *this))
{
}

SimpleElement::SimpleElement(SimpleElement const & other, MetadataSet & set)
    : Element(), ValueHolder(other), impl_(new Impl(other.impl_->copyOfValue(), other.impl_->attribute, set, *this))
{
}

SimpleElement::~SimpleElement() = default;

Types::SimpleDataType const * SimpleElement::value() const
{
    return impl_->value.get();
}

void SimpleElement::set(Templates::auto_ptr<Types::SimpleDataType> value, bool allowClear)
{
    if (value.get() != nullptr)
        checkIfValueIsInEnumeration(*value);
    impl_->setTyped(std::move(value), allowClear);
}

void SimpleElement::load(KLV::Value & value)
{
    impl_->load(value);
}

Element::MetaAttributePtr SimpleElement::metaAttribute() const
{
    return impl_->attribute;
}

MetadataSet & SimpleElement::metadataSet() const
{
    return impl_->metadataSet;
}

bool SimpleElement::empty() const
{
    return impl_->value.get() == nullptr;
}

uint64 SimpleElement::totalLength() const
{
    return impl_->totalLength();
}

void SimpleElement::accept(Visitors::NonConstElementVisitor & visitor)
{
    visitor.visit(*this);
}

void SimpleElement::accept(Visitors::ElementVisitor & visitor) const
{
    visitor.visit(*this);
}

Templates::auto_ptr<Element> SimpleElement::clone(MetadataSet & target) const
{
    Templates::auto_ptr<SimpleElement> copy(new SimpleElement(*this, target));
    if (copy->impl_->value.get() != nullptr)
        ElementSupport::announceAdded(target, copy->impl_->attribute.get(), *copy, *copy->impl_->value);
    return Templates::auto_ptr<Element>(copy.release());
}

void SimpleElement::serializeValue(DataIO::DataSink & sink) const
{
    if (impl_->value.get() != nullptr)
        impl_->value->serialize(sink);
}
} // namespace Metadata
} // namespace Vellum
