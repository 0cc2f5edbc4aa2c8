#include "Metadata/BatchReferenceElement.h"

#include "Metadata/CollectionElement_impl.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/CollectionReferences.h"
#include "Metadata/MetadataSet.h"
#include "Types/Collection.h"

namespace Vellum
{
namespace Metadata
{
BatchReferenceElement::BatchReferenceElement(Templates::auto_ptr<Types::Batch> value, MetaAttributePtr attribute, MetadataSet & set)
    : ReferenceHolder(ElementSupport::metaElementOf(attribute.get())), impl_(new Impl(std::move(value), attribute, set, *this))
{
}

BatchReferenceElement::BatchReferenceElement(BatchReferenceElement const & other, MetadataSet & set)
    : CollectionReferenceElement(), ReferenceHolder(other),
      impl_(new Impl(other.impl_->copyOfValue(), other.impl_->attribute, set, *this))
{
}

BatchReferenceElement::~BatchReferenceElement() = default;

int BatchReferenceElement::size() const
{
    return impl_->size();
}

Types::Collection const * BatchReferenceElement::value() const
{
    return impl_->value.get();
}

void BatchReferenceElement::set(Templates::auto_ptr<Types::Collection> value)
{
    impl_->set(std::move(value));
}

void BatchReferenceElement::remove(unsigned int index)
{
    impl_->remove(index);
}

Types::Reference const & BatchReferenceElement::at(unsigned int index) const
{
    return CollectionReferences::member(impl_->at(index));
}

void BatchReferenceElement::append(MetadataSet * target)
{
    Templates::auto_ptr<Types::SimpleDataType> member = referenceTo(target);
    impl_->append(std::move(member));
}

void BatchReferenceElement::appendUnverifiedReference(Templates::auto_ptr<Types::Reference> reference)
{
    checkUnverified(reference.get());
    impl_->append(std::move(reference));
}

// A reference to `target` by the schema's member type, once the target passes the schema.
Templates::auto_ptr<Types::SimpleDataType> BatchReferenceElement::referenceTo(MetadataSet const * target) const
{
    MetaMetadata::MetaAttribute const * metaAttribute = ElementSupport::metaAttributeOf(impl_->attribute.get());
    if (metaAttribute == nullptr)
        VELLUM_THROW(InvalidMetaAttribute, "ReferenceElement can not be changed because there is no metaAttribute.");
    checkIfSetCanBeReferenced(target);
    MetaMetadata::MetaCollectionElement const * description = impl_->metaCollection();
    return ElementSupport::referenceTo(*target, description != nullptr ? description->dataSubType()
                                                                      : metaAttribute->metaElement().dataType());
}

void BatchReferenceElement::checkUnverified(Types::Reference const * reference) const
{
    CollectionReferences::checkMemberType(impl_->metaCollection(), reference, "on a BatchReferenceElement expecting a ");
}

void BatchReferenceElement::load(KLV::Value & value)
{
    impl_->load(value);
}

Element::MetaAttributePtr BatchReferenceElement::metaAttribute() const
{
    return impl_->attribute;
}

MetadataSet & BatchReferenceElement::metadataSet() const
{
    return impl_->metadataSet;
}

bool BatchReferenceElement::empty() const
{
    return impl_->value.get() == nullptr;
}

uint64 BatchReferenceElement::totalLength() const
{
    return impl_->totalLength();
}

void BatchReferenceElement::accept(Visitors::NonConstElementVisitor & visitor)
{
    visitor.visit(*this);
}

void BatchReferenceElement::accept(Visitors::ElementVisitor & visitor) const
{
    visitor.visit(*this);
}

Templates::auto_ptr<Element> BatchReferenceElement::clone(MetadataSet & target) const
{
    Templates::auto_ptr<BatchReferenceElement> copy(new BatchReferenceElement(*this, target));
    if (copy->impl_->value.get() != nullptr)
        ElementSupport::announceAdded(target, copy->impl_->attribute.get(), *copy, *copy->impl_->value);
    return Templates::auto_ptr<Element>(copy.release());
}

void BatchReferenceElement::serializeValue(DataIO::DataSink & sink) const
{
    impl_->serializeValue(sink);
}
} // namespace Metadata
} // namespace Vellum
