#pragma once
// The state and behaviour shared by SimpleElement and ReferenceElement: one value, checked,
// announced and replaced.

#include <type_traits>
#include <utility>

#include "Exceptions/Exceptions.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaElement.h"
#include "Metadata/Element.h"
#include "Metadata/ElementSupport.h"
#include "Types/Factories/BaseTypeFactory.h"
#include "Types/SimpleDataType.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
template <class ElementClass, class ValueClass>
struct SimpleElement_impl
{
    VELLUM_CLASS_ALLOCATION
    Templates::auto_ptr<ValueClass> value;
    Element::MetaAttributePtr attribute;
    MetadataSet & metadataSet;
    ElementClass & element;

    SimpleElement_impl(Templates::auto_ptr<ValueClass> initial, Element::MetaAttributePtr const & metaAttribute,
                       MetadataSet & owningSet, ElementClass & self)
        : value(std::move(initial)), attribute(metaAttribute), metadataSet(owningSet), element(self)
    {
    }

    // The value as a ValueClass, taken from `from`; null, with `from` untouched, when it is none.
    static Templates::auto_ptr<ValueClass> narrow(Templates::auto_ptr<Types::SimpleDataType> & from)
    {
        if constexpr (std::is_same<ValueClass, Types::SimpleDataType>::value)
            return std::move(from);
        else
        {
            ValueClass const * typed = from.get() != nullptr ? ElementSupport::asReference(*from) : nullptr;
            if (typed == nullptr)
                return Templates::auto_ptr<ValueClass>();
            from.release();
            return Templates::auto_ptr<ValueClass>(const_cast<ValueClass *>(typed));
        }
    }

    Types::Identifiers::Identifier elementType() const
    {
        MetaMetadata::MetaElement const * metaElement = ElementSupport::metaElementOf(attribute.get());
        if (metaElement != nullptr)
            return metaElement->dataType();
        return std::is_same<ValueClass, Types::SimpleDataType>::value ? Types::Identifiers::Unknown
                                                                       : Types::Identifiers::StrongReference;
    }

    [[noreturn]] void throwInvalidType(Types::SimpleDataType const & newValue) const
    {
        VELLUM_THROW(InvalidChange, Utils::wide("Setting value with an invalid type. Value Type of new value: ") +
                                        ElementSupport::typeName(ElementSupport::identifierOf(newValue)) +
                                        Utils::wide(" Value type of element") +
                                        ElementSupport::typeName(elementType()));
    }

    // The value's type must be the schema's, where the schema says one.
    void checkType(Types::SimpleDataType const & newValue) const
    {
        MetaMetadata::MetaElement const * metaElement = ElementSupport::metaElementOf(attribute.get());
        if (metaElement != nullptr && ElementSupport::identifierOf(newValue) != metaElement->dataType())
            throwInvalidType(newValue);
    }

    // Only a Required element refuses to lose its value.
    void checkClear(bool allowClear) const
    {
        if (!allowClear &&
            ElementSupport::requiredStatusOf(attribute.get()) == MetaMetadata::AttributeRequiredStatus::Required)
            VELLUM_THROW(InvalidChange, ElementSupport::valueMessage(attribute.get(), "' is required according to Schema"));
    }

    // Announces the change, then makes it.
    void replace(Templates::auto_ptr<ValueClass> newValue)
    {
        ElementSupport::announceValue(metadataSet, attribute.get(), element, value.get(), newValue.get());
        value = std::move(newValue);
    }

    void setTyped(Templates::auto_ptr<ValueClass> newValue, bool allowClear)
    {
        if (newValue.get() != nullptr)
            checkType(*newValue);
        else
            checkClear(allowClear);
        replace(std::move(newValue));
    }

    // The same for a value that may be of another class than the element holds.
    void setAny(Templates::auto_ptr<Types::SimpleDataType> newValue, bool allowClear)
    {
        if (newValue.get() == nullptr)
        {
            checkClear(allowClear);
            replace(Templates::auto_ptr<ValueClass>());
            return;
        }
        checkType(*newValue);
        Templates::auto_ptr<ValueClass> typed = narrow(newValue);
        if (typed.get() == nullptr)
            throwInvalidType(*newValue);
        replace(std::move(typed));
    }

    // From a file: no schema check, but the attribute must be the schema's own.
    void load(KLV::Value & source)
    {
        MetaMetadata::MetaAttribute const * metaAttribute = ElementSupport::metaAttributeOf(attribute.get());
        if (metaAttribute == nullptr)
            VELLUM_THROW(InvalidMetaAttribute, "ReferenceElement can not be changed because there is no metaAttribute.");
        Templates::auto_ptr<Types::SimpleDataType> made =
            Types::Factories::BaseTypeFactory::instance().create(source, metaAttribute->metaElement().dataType());
        Templates::auto_ptr<ValueClass> typed = narrow(made);
        if (typed.get() == nullptr)
            VELLUM_THROW(InvalidMetaAttribute,
                         "Trying to set a value to a ReferenceElement that differs from its MetaAttribute information");
        replace(std::move(typed));
    }

    uint64 totalLength() const { return value.get() != nullptr ? value->serializedSize() : 0; }

    // A copy of the value for a clone.
    Templates::auto_ptr<ValueClass> copyOfValue() const
    {
        if (value.get() == nullptr)
            return Templates::auto_ptr<ValueClass>();
        Templates::auto_ptr<Types::SimpleDataType> copy = value->clone();
        return narrow(copy);
    }
};
} // namespace Metadata
} // namespace Vellum
