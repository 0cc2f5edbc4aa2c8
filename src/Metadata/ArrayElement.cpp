#include "Metadata/ArrayElement.h"

#include "Metadata/CollectionElement_impl.h"
#include "Metadata/ElementVisitor.h"
#include "Types/Collection.h"

namespace Vellum
{
namespace Metadata
{
ArrayElement::ArrayElement(Templates::auto_ptr<Types::Array> value, MetaAttributePtr attribute, MetadataSet & set)
    : ValueHolder(ElementSupport::valueHolderOf(attribute.get())), impl_(new Impl(std::move(value), attribute, set, *this))
{
}

ArrayElement::ArrayElement(ArrayElement const & other, MetadataSet & set)
    : CollectionElement(), ValueHolder(other),
      impl_(new Impl(other.impl_->copyOfValue(), other.impl_->attribute, set, *this))
{
}

ArrayElement::~ArrayElement() = default;

int ArrayElement::size() const
{
    return impl_->size();
}

Types::Collection const * ArrayElement::value() const
{
    return impl_->value.get();
}

void ArrayElement::set(Templates::auto_ptr<Types::Collection> value)
{
    impl_->set(std::move(value));
}

void ArrayElement::remove(unsigned int index)
{
    impl_->remove(index);
}

Types::SimpleDataType const & ArrayElement::at(unsigned int index) const
{
    return impl_->at(index);
}

void ArrayElement::append(Templates::auto_ptr<Types::SimpleDataType> member)
{
    if (member.get() != nullptr)
        checkIfValueIsInEnumeration(*member);
    impl_->append(std::move(member));
}

void ArrayElement::insertAt(unsigned int index, Templates::auto_ptr<Types::SimpleDataType> member)
{
    impl_->add(index, std::move(member), true);
}

void ArrayElement::load(KLV::Value & value)
{
    impl_->load(value);
}

Element::MetaAttributePtr ArrayElement::metaAttribute() const
{
    return impl_->attribute;
}

MetadataSet & ArrayElement::metadataSet() const
{
    return impl_->metadataSet;
}

bool ArrayElement::empty() const
{
    return impl_->value.get() == nullptr;
}

uint64 ArrayElement::totalLength() const
{
    return impl_->totalLength();
}

void ArrayElement::accept(Visitors::NonConstElementVisitor & visitor)
{
    visitor.visit(*this);
}

void ArrayElement::accept(Visitors::ElementVisitor & visitor) const
{
    visitor.visit(*this);
}

Templates::auto_ptr<Element> ArrayElement::clone(MetadataSet & target) const
{
    Templates::auto_ptr<ArrayElement> copy(new ArrayElement(*this, target));
    if (copy->impl_->value.get() != nullptr)
        ElementSupport::announceAdded(target, copy->impl_->attribute.get(), *copy, *copy->impl_->value);
    return Templates::auto_ptr<Element>(copy.release());
}

void ArrayElement::serializeValue(DataIO::DataSink & sink) const
{
    impl_->serializeValue(sink);
}
} // namespace Metadata
} // namespace Vellum
