#pragma once
// The state and behaviour shared by the four collection elements: an array or a batch, checked
// against the schema's limits and member type, announced and replaced whole or a member at a
// time.

#include <type_traits>
#include <utility>

#include "Exceptions/Exceptions.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaCollectionElement.h"
#include "MetaMetadata/MetaElement.h"
#include "Metadata/Element.h"
#include "Metadata/ElementSupport.h"
#include "Types/Collection.h"
#include "Types/Factories/BaseTypeFactory.h"
#include "Types/Visitors.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
template <class ElementClass, class CollectionClass>
struct CollectionElement_impl
{
    VELLUM_CLASS_ALLOCATION
    Templates::auto_ptr<CollectionClass> value;
    Element::MetaAttributePtr attribute;
    MetadataSet & metadataSet;
    ElementClass & element;

    CollectionElement_impl(Templates::auto_ptr<CollectionClass> initial,
                           Element::MetaAttributePtr const & metaAttribute, MetadataSet & owningSet,
                           ElementClass & self)
        : value(std::move(initial)), attribute(metaAttribute), metadataSet(owningSet), element(self)
    {
    }

    MetaMetadata::MetaCollectionElement const * metaCollection() const
    {
        return ElementSupport::collectionOf(ElementSupport::metaElementOf(attribute.get()));
    }

    Types::SimpleDataType const & at(unsigned int index) const
    {
        if (value.get() == nullptr || index >= value->size())
            VELLUM_THROW(IndexOutOfBounds, "Trying to access a element beyond the end of data");
        return value->at(index);
    }

    int size() const { return value.get() != nullptr ? static_cast<int>(value->size()) : 0; }

    // A collection with no members is written as an item of length 0, with no count and no size.
    uint64 totalLength() const
    {
        return value.get() != nullptr && value->size() != 0 ? value->serializedSize() : 0;
    }

    void serializeValue(DataIO::DataSink & sink) const
    {
        if (value.get() != nullptr && value->size() != 0)
            value->serialize(sink);
    }

    [[noreturn]] void throwTooFew(MetaMetadata::MetaCollectionElement const & description) const
    {
        VELLUM_THROW(InvalidChange, ElementSupport::valueMessage(attribute.get(), "': Schema does not allow less than ") +
                                        Utils::decimal(description.collectionSizeLimits().minimum) +
                                        Utils::wide(" elements in the collection."));
    }

    [[noreturn]] void throwTooMany(MetaMetadata::MetaCollectionElement const & description) const
    {
        VELLUM_THROW(InvalidChange, ElementSupport::valueMessage(attribute.get(), "': Schema only allows to add ") +
                                        Utils::decimal(description.collectionSizeLimits().maximum) +
                                        Utils::wide(" elements to this collection."));
    }

    // A whole new collection, or none.
    void set(Templates::auto_ptr<Types::Collection> newValue)
    {
        CollectionClass * typed = nullptr;
        if (newValue.get() != nullptr)
        {
            typed = Types::Visitors::getAs<CollectionClass>(*newValue);
            if (typed == nullptr)
                VELLUM_THROW(InvalidChange,
                             ElementSupport::valueMessage(attribute.get(), "': Collection can not be changed to another type!"));
        }
        MetaMetadata::MetaCollectionElement const * description = metaCollection();
        if (description != nullptr && typed != nullptr)
        {
            MetaMetadata::MetaCollectionElement::CollectionSizeLimits const limits = description->collectionSizeLimits();
            if (typed->size() < limits.minimum)
                throwTooFew(*description);
            if (typed->size() > limits.maximum)
                throwTooMany(*description);
            // Only the first member is looked at.
            if (typed->size() != 0 && ElementSupport::identifierOf(typed->at(0)) != description->dataSubType())
                VELLUM_THROW(InvalidChange,
                             ElementSupport::valueMessage(attribute.get(), "': Setting collection with an invalid Sub Type."));
        }
        ElementSupport::announceCollection(metadataSet, attribute.get(), element, value.get(), typed);
        newValue.release();
        value.reset(typed);
    }

    // Puts `member` at `index`, appending when `insert` is false. The first member of a new
    // collection fixes the size of every member.
    void add(unsigned int index, Templates::auto_ptr<Types::SimpleDataType> member, bool insert)
    {
        char const * const invalidMember = insert ? "Trying to insert an invalid element" : "Appending an invalid element";
        if (member.get() == nullptr)
            VELLUM_THROW(InvalidElement, invalidMember);
        MetaMetadata::MetaCollectionElement const * description = metaCollection();
        if (description != nullptr && ElementSupport::identifierOf(*member) != description->dataSubType())
            VELLUM_THROW(InvalidChange, ElementSupport::valueMessage(
                                            attribute.get(), "': Setting value with an invalid Sub Type in a collection."));

        Templates::auto_ptr<CollectionClass> created;
        CollectionClass * collection = value.get();
        if (collection == nullptr)
        {
            created.reset(new CollectionClass(member->serializedSize()));
            collection = created.get();
        }
        if (description != nullptr && !(collection->size() < description->collectionSizeLimits().maximum))
            throwTooMany(*description);

        // What the collection itself would refuse is refused before anyone hears of it.
        unsigned int const memberSize = member->serializedSize();
        bool const adopts = !insert && collection->size() == 0 && collection->elementSize() == 0;
        if (memberSize != collection->elementSize() && !adopts)
            VELLUM_THROW(InvalidElement, invalidMember);
        if (insert && index > collection->size())
            VELLUM_THROW(IndexOutOfBounds, "Trying to insert an element past the end of the data");

        ElementSupport::announceMember(metadataSet, attribute.get(), element, *collection, index, member.get());
        if constexpr (std::is_same<CollectionClass, Types::Array>::value)
        {
            if (insert)
                collection->insertAt(index, std::move(member));
            else
                collection->append(std::move(member));
        }
        else
            collection->append(std::move(member));
        if (created.get() != nullptr)
            value = std::move(created);
    }

    void append(Templates::auto_ptr<Types::SimpleDataType> member) { add(static_cast<unsigned int>(size()), std::move(member), false); }

    void remove(unsigned int index)
    {
        if (value.get() == nullptr || index >= value->size())
            VELLUM_THROW(IndexOutOfBounds, "Index out of bounds");
        MetaMetadata::MetaCollectionElement const * description = metaCollection();
        if (description != nullptr && !(value->size() > description->collectionSizeLimits().minimum))
            throwTooFew(*description);
        ElementSupport::announceMember(metadataSet, attribute.get(), element, *value, index, nullptr);
        value->remove(index);
    }

    // From a file: no limits, and an addition whatever was there before.
    void load(KLV::Value & source)
    {
        MetaMetadata::MetaAttribute const * metaAttribute = ElementSupport::metaAttributeOf(attribute.get());
        if (metaAttribute == nullptr)
            VELLUM_THROW(InvalidMetaAttribute, "Null Meta Attribute");
        MetaMetadata::MetaElement const & metaElement = metaAttribute->metaElement();
        MetaMetadata::MetaCollectionElement const * description = ElementSupport::collectionOf(&metaElement);
        Types::Identifiers::Identifier const memberType =
            description != nullptr ? description->dataSubType() : Types::Identifiers::Unknown;
        Templates::auto_ptr<Types::BaseType> made =
            Types::Factories::BaseTypeFactory::instance().create(source, metaElement.dataType(), memberType);
        CollectionClass * typed = made.get() != nullptr ? Types::Visitors::getAs<CollectionClass>(*made) : nullptr;
        if (typed == nullptr)
            VELLUM_THROW(InvalidChange,
                         ElementSupport::valueMessage(attribute.get(), "': Collection can not be changed to another type!"));
        ElementSupport::announceAdded(metadataSet, attribute.get(), element, *typed);
        made.release();
        value.reset(typed);
    }

    // A copy of the value for a clone.
    Templates::auto_ptr<CollectionClass> copyOfValue() const
    {
        if (value.get() == nullptr)
            return Templates::auto_ptr<CollectionClass>();
        return Templates::auto_ptr<CollectionClass>(new CollectionClass(*value));
    }
};
} // namespace Metadata
} // namespace Vellum
