#include "Metadata/ReferenceElement.h"

#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/SimpleElement_impl.h"
#include "Types/SimpleDataType.h"

namespace Vellum
{
namespace Metadata
{
ReferenceElement::ReferenceElement(Templates::auto_ptr<Types::Reference> value, MetaAttributePtr attribute,
                                   MetadataSet & set)
    : ReferenceHolder(ElementSupport::metaElementOf(attribute.get())),
      impl_(new Impl(std::move(value), attribute, set, *this))
{
}

ReferenceElement::ReferenceElement(ReferenceElement const & other, MetadataSet & set)
    : Element(), ReferenceHolder(other),
      impl_(new Impl(other.impl_->copyOfValue(), other.impl_->attribute, set, *this))
{
}

ReferenceElement::~ReferenceElement() = default;

Types::Reference const * ReferenceElement::value() const
{
    return impl_->value.get();
}

void ReferenceElement::set(MetadataSet const * target)
{
    MetaMetadata::MetaAttribute const * metaAttribute = ElementSupport::metaAttributeOf(impl_->attribute.get());
    if (metaAttribute == nullptr)
        VELLUM_THROW(InvalidMetaAttribute, "ReferenceElement can not be changed because there is no metaAttribute.");
    if (target == nullptr)
    {
        impl_->replace(Templates::auto_ptr<Types::Reference>());
        return;
    }
    checkIfSetCanBeReferenced(target);
    Templates::auto_ptr<Types::SimpleDataType> reference =
        ElementSupport::referenceTo(*target, metaAttribute->metaElement().dataType());
    impl_->replace(Impl::narrow(reference));
}

void ReferenceElement::set(Templates::auto_ptr<Types::SimpleDataType> value)
{
    impl_->setAny(std::move(value), false);
}

void ReferenceElement::setUnverifiedReference(Templates::auto_ptr<Types::Reference> value)
{
    impl_->setTyped(std::move(value), false);
}

void ReferenceElement::load(KLV::Value & value)
{
    impl_->load(value);
}

Element::MetaAttributePtr ReferenceElement::metaAttribute() const
{
    return impl_->attribute;
}

MetadataSet & ReferenceElement::metadataSet() const
{
    return impl_->metadataSet;
}

bool ReferenceElement::empty() const
{
    return impl_->value.get() == nullptr;
}

uint64 ReferenceElement::totalLength() const
{
    return impl_->totalLength();
}

void ReferenceElement::accept(Visitors::NonConstElementVisitor & visitor)
{
    visitor.visit(*this);
}

void ReferenceElement::accept(Visitors::ElementVisitor & visitor) const
{
    visitor.visit(*this);
}

Templates::auto_ptr<Element> ReferenceElement::clone(MetadataSet & target) const
{
    Templates::auto_ptr<ReferenceElement> copy(new ReferenceElement(*this, target));
    if (copy->impl_->value.get() != nullptr)
        ElementSupport::announceAdded(target, copy->impl_->attribute.get(), *copy, *copy->impl_->value);
    return Templates::auto_ptr<Element>(copy.release());
}

void ReferenceElement::serializeValue(DataIO::DataSink & sink) const
{
    if (impl_->value.get() != nullptr)
        impl_->value->serialize(sink);
}
} // namespace Metadata
} // namespace Vellum
