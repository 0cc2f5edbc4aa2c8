#include "Metadata/BatchElement.h"

#include "Metadata/CollectionElement_impl.h"
#include "Metadata/ElementVisitor.h"
#include "Types/Collection.h"

namespace Vellum
{
namespace Metadata
{
BatchElement::BatchElement(Templates::auto_ptr<Types::Batch> value, MetaAttributePtr attribute, MetadataSet & set)
    : ValueHolder(ElementSupport::valueHolderOf(attribute.get())), impl_(new Impl(std::move(value), attribute, set, *this))
{
}

BatchElement::BatchElement(BatchElement const & other, MetadataSet & set)
    : CollectionElement(), ValueHolder(other),
      impl_(new Impl(other.impl_->copyOfValue(), other.impl_->attribute, set, *this))
{
}

BatchElement::~BatchElement() = default;

int BatchElement::size() const
{
    return impl_->size();
}

Types::Collection const * BatchElement::value() const
{
    return impl_->value.get();
}

void BatchElement::set(Templates::auto_ptr<Types::Collection> value)
{
    impl_->set(std::move(value));
}

void BatchElement::remove(unsigned int index)
{
    impl_->remove(index);
}

Types::SimpleDataType const & BatchElement::at(unsigned int index) const
{
    return impl_->at(index);
}

void BatchElement::append(Templates::auto_ptr<Types::SimpleDataType> member)
{
    if (member.get() != nullptr)
        checkIfValueIsInEnumeration(*member);
    impl_->append(std::move(member));
}

void BatchElement::load(KLV::Value & value)
{
    impl_->load(value);
}

Element::MetaAttributePtr BatchElement::metaAttribute() const
{
    return impl_->attribute;
}

MetadataSet & BatchElement::metadataSet() const
{
    return impl_->metadataSet;
}

bool BatchElement::empty() const
{
    return impl_->value.get() == nullptr;
}

uint64 BatchElement::totalLength() const
{
    return impl_->totalLength();
}

void BatchElement::accept(Visitors::NonConstElementVisitor & visitor)
{
    visitor.visit(*this);
}

void BatchElement::accept(Visitors::ElementVisitor & visitor) const
{
    visitor.visit(*this);
}

Templates::auto_ptr<Element> BatchElement::clone(MetadataSet & target) const
{
    Templates::auto_ptr<BatchElement> copy(new BatchElement(*this, target));
    if (copy->impl_->value.get() != nullptr)
        ElementSupport::announceAdded(target, copy->impl_->attribute.get(), *copy, *copy->impl_->value);
    return Templates::auto_ptr<Element>(copy.release());
}

void BatchElement::serializeValue(DataIO::DataSink & sink) const
{
    impl_->serializeValue(sink);
}
} // namespace Metadata
} // namespace Vellum
