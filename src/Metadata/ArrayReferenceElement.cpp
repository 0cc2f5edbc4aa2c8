#include "Metadata/ArrayReferenceElement.h"

#include "Metadata/CollectionElement_impl.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/CollectionReferences.h"
#include "Metadata/MetadataSet.h"
#include "Types/Collection.h"

namespace Vellum
{
namespace Metadata
{
ArrayReferenceElement::ArrayReferenceElement(Templates::auto_ptr<Types::Array> value, MetaAttributePtr attribute, MetadataSet & set)
    : ReferenceHolder(ElementSupport::metaElementOf(attribute.get())), impl_(new Impl(std::move(value), attribute, set, *this))
{
}

ArrayReferenceElement::ArrayReferenceElement(ArrayReferenceElement const & other, MetadataSet & set)
    : CollectionReferenceElement(), ReferenceHolder(other),
      impl_(new Impl(other.impl_->copyOfValue(), other.impl_->attribute, set, *this))
{
}

ArrayReferenceElement::~ArrayReferenceElement() = default;

int ArrayReferenceElement::size() const
{
    return impl_->size();
}

Types::Collection const * ArrayReferenceElement::value() const
{
    return impl_->value.get();
}

void ArrayReferenceElement::set(Templates::auto_ptr<Types::Collection> value)
{
    impl_->set(std::move(value));
}

void ArrayReferenceElement::remove(unsigned int index)
{
    impl_->remove(index);
}

Types::Reference const & ArrayReferenceElement::at(unsigned int index) const
{
    return CollectionReferences::member(impl_->at(index));
}

void ArrayReferenceElement::append(MetadataSet * target)
{
    Templates::auto_ptr<Types::SimpleDataType> member = referenceTo(target);
    impl_->append(std::move(member));
}

void ArrayReferenceElement::appendUnverifiedReference(Templates::auto_ptr<Types::Reference> reference)
{
    checkUnverified(reference.get());
    impl_->append(std::move(reference));
}

// A reference to `target` by the schema's member type, once the target passes the schema.
Templates::auto_ptr<Types::SimpleDataType> ArrayReferenceElement::referenceTo(MetadataSet const * target) const
{
    MetaMetadata::MetaAttribute const * metaAttribute = ElementSupport::metaAttributeOf(impl_->attribute.get());
    if (metaAttribute == nullptr)
        VELLUM_THROW(InvalidMetaAttribute, "ReferenceElement can not be changed because there is no metaAttribute.");
    checkIfSetCanBeReferenced(target);
    MetaMetadata::MetaCollectionElement const * description = impl_->metaCollection();
    return ElementSupport::referenceTo(*target, description != nullptr ? description->dataSubType()
                                                                      : metaAttribute->metaElement().dataType());
}

void ArrayReferenceElement::checkUnverified(Types::Reference const * reference) const
{
    CollectionReferences::checkMemberType(impl_->metaCollection(), reference, "on a ArrayReferenceElement expecting a ");
}

void ArrayReferenceElement::insertAt(unsigned int index, MetadataSet * target)
{
    Templates::auto_ptr<Types::SimpleDataType> member = referenceTo(target);
    impl_->add(index, std::move(member), true);
}

void ArrayReferenceElement::insertUnverifiedReferenceAt(unsigned int index, Templates::auto_ptr<Types::Reference> reference)
{
    checkUnverified(reference.get());
    impl_->add(index, std::move(reference), true);
}

void ArrayReferenceElement::load(KLV::Value & value)
{
    impl_->load(value);
}

Element::MetaAttributePtr ArrayReferenceElement::metaAttribute() const
{
    return impl_->attribute;
}

MetadataSet & ArrayReferenceElement::metadataSet() const
{
    return impl_->metadataSet;
}

bool ArrayReferenceElement::empty() const
{
    return impl_->value.get() == nullptr;
}

uint64 ArrayReferenceElement::totalLength() const
{
    return impl_->totalLength();
}

void ArrayReferenceElement::accept(Visitors::NonConstElementVisitor & visitor)
{
    visitor.visit(*this);
}

void ArrayReferenceElement::accept(Visitors::ElementVisitor & visitor) const
{
    visitor.visit(*this);
}

Templates::auto_ptr<Element> ArrayReferenceElement::clone(MetadataSet & target) const
{
    Templates::auto_ptr<ArrayReferenceElement> copy(new ArrayReferenceElement(*this, target));
    if (copy->impl_->value.get() != nullptr)
        ElementSupport::announceAdded(target, copy->impl_->attribute.get(), *copy, *copy->impl_->value);
    return Templates::auto_ptr<Element>(copy.release());
}

void ArrayReferenceElement::serializeValue(DataIO::DataSink & sink) const
{
    impl_->serializeValue(sink);
}
} // namespace Metadata
} // namespace Vellum
