#include "Metadata/ElementSupport.h"

#include "Exceptions/Exceptions.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaCollectionElement.h"
#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataSetOwner.h"
#include "Types/Collection.h"
#include "Types/References.h"
#include "Types/Visitors.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace ElementSupport
{
namespace
{
// Reads what the three kinds of attribute carry.
class AttributeReader : public MetaMetadata::AbstractMetaAttributeVisitor
{
public:
    AttributeReader() : metaAttribute(nullptr), metaElement(nullptr) {}

    void visit(MetaMetadata::UnknownAttribute const &) override {}
    void visit(MetaMetadata::MisplacedAttribute const & attribute) override { metaElement = &attribute.metaElement(); }
    void visit(MetaMetadata::MetaAttribute const & attribute) override
    {
        metaAttribute = &attribute;
        metaElement = &attribute.metaElement();
    }

    MetaMetadata::MetaAttribute const * metaAttribute;
    MetaMetadata::MetaElement const * metaElement;
};

AttributeReader read(MetaMetadata::AbstractMetaAttribute const * attribute)
{
    AttributeReader reader;
    if (attribute != nullptr)
        attribute->accept(reader);
    return reader;
}

MetaMetadata::MetaElement const * metaElementForAnnouncement(MetaMetadata::AbstractMetaAttribute const * attribute)
{
    return read(attribute).metaElement;
}

// Finds a reference among the values by its base class.
class ReferenceFinder : public Types::Visitors::DelegateToBaseVisitor
{
public:
    ReferenceFinder() : reference(nullptr) {}
    using Types::Visitors::DelegateToBaseVisitor::visit;
    void visit(Types::Reference const & value) override { reference = &value; }

    Types::Reference const * reference;
};
} // namespace

MetaMetadata::MetaAttribute const * metaAttributeOf(MetaMetadata::AbstractMetaAttribute const * attribute)
{
    return read(attribute).metaAttribute;
}

MetaMetadata::MetaElement const * metaElementOf(MetaMetadata::AbstractMetaAttribute const * attribute)
{
    return read(attribute).metaElement;
}

MetaMetadata::MetaCollectionElement const * collectionOf(MetaMetadata::MetaElement const * element)
{
    if (element == nullptr)
        return nullptr;
    MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaCollectionElement> visitor;
    element->accept(visitor);
    return visitor.value();
}

MetaMetadata::MetaValueHolder const * valueHolderOf(MetaMetadata::AbstractMetaAttribute const * attribute)
{
    MetaMetadata::MetaElement const * element = metaElementOf(attribute);
    if (element == nullptr)
        return nullptr;
    // A simple element does not reach the visit of its holder base: ask for it by its own class.
    MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaValueHolder> holder;
    element->accept(holder);
    if (holder.value() != nullptr)
        return holder.value();
    MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaSimpleElement> simple;
    element->accept(simple);
    return simple.value();
}

MetaMetadata::AttributeRequiredStatus::Status requiredStatusOf(MetaMetadata::AbstractMetaAttribute const * attribute)
{
    MetaMetadata::MetaAttribute const * metaAttribute = metaAttributeOf(attribute);
    return metaAttribute != nullptr ? metaAttribute->requiredStatus() : MetaMetadata::AttributeRequiredStatus::Optional;
}

Templates::wstring displayName(MetaMetadata::AbstractMetaAttribute const * attribute)
{
    MetaMetadata::MetaElement const * element = metaElementOf(attribute);
    if (element != nullptr)
    {
        static Templates::wstring const nameProperty = Utils::wide("name");
        MetaMetadata::PropertyMap::const_iterator found = element->propertiesBegin();
        for (; found != element->propertiesEnd(); ++found)
            if (found->first == nameProperty)
                return found->second;
    }
    return Utils::wide("<unknown>");
}

Templates::wstring valueMessage(MetaMetadata::AbstractMetaAttribute const * attribute, char const * tail)
{
    return Utils::wide("Value '") + displayName(attribute) + Utils::wide(tail);
}

Templates::wstring typeName(Types::Identifiers::Identifier identifier)
{
    return Templates::wstring(Types::Identifiers::identifierToString(identifier));
}

Types::Identifiers::Identifier identifierOf(Types::BaseType const & value)
{
    Types::Visitors::GetIdentifierVisitor visitor;
    value.accept(visitor);
    return visitor.identifier();
}

void announceValue(MetadataSet & set, MetaMetadata::AbstractMetaAttribute const * attribute, Element & element,
                   Types::SimpleDataType const * oldValue, Types::SimpleDataType * newValue)
{
    MetadataSetOwner * owner = set.owner();
    if (owner == nullptr)
        return;
    MetaMetadata::MetaElement const * metaElement = metaElementForAnnouncement(attribute);
    if (newValue != nullptr && oldValue != nullptr)
        owner->updatedElement(set, metaElement, element, *oldValue, *newValue);
    else if (newValue != nullptr)
        owner->addedElement(set, metaElement, element, *newValue);
    else if (oldValue != nullptr)
        owner->removedElement(set, metaElement, element, *oldValue);
}

void announceCollection(MetadataSet & set, MetaMetadata::AbstractMetaAttribute const * attribute, Element & element,
                        Types::Collection const * oldValue, Types::Collection * newValue)
{
    MetadataSetOwner * owner = set.owner();
    if (owner == nullptr)
        return;
    MetaMetadata::MetaElement const * metaElement = metaElementForAnnouncement(attribute);
    if (newValue != nullptr && oldValue != nullptr)
        owner->updatedElement(set, metaElement, element, *oldValue, *newValue);
    else if (newValue != nullptr)
        owner->addedElement(set, metaElement, element, *newValue);
    else if (oldValue != nullptr)
        owner->removedElement(set, metaElement, element, *oldValue);
}

void announceAdded(MetadataSet & set, MetaMetadata::AbstractMetaAttribute const * attribute, Element & element,
                   Types::BaseType & newValue)
{
    MetadataSetOwner * owner = set.owner();
    if (owner != nullptr)
        owner->addedElement(set, metaElementForAnnouncement(attribute), element, newValue);
}

void announceMember(MetadataSet & set, MetaMetadata::AbstractMetaAttribute const * attribute, Element & element,
                    Types::Collection const & collection, unsigned int index, Types::BaseType * newMember)
{
    MetadataSetOwner * owner = set.owner();
    if (owner != nullptr)
        owner->updatedElementCollection(set, metaElementForAnnouncement(attribute), element, collection, index,
                                        newMember);
}

Templates::auto_ptr<Types::SimpleDataType> referenceTo(MetadataSet const & target, Types::Identifiers::Identifier type)
{
    if (type != Types::Identifiers::StrongReference && type != Types::Identifiers::WeakReference)
        VELLUM_THROW(InvalidMetaAttribute,
                     "Trying to set a value to a ReferenceElement that differs from its MetaAttribute information");
    Types::UUID const * uid = target.instanceUID();
    if (uid == nullptr)
        VELLUM_THROW(InvalidValue, "The set to refer to has no instance UID");
    if (type == Types::Identifiers::StrongReference)
        return Templates::auto_ptr<Types::SimpleDataType>(new Types::StrongReference(*uid));
    return Templates::auto_ptr<Types::SimpleDataType>(new Types::WeakReference(*uid));
}

Types::Reference const * asReference(Types::SimpleDataType const & value)
{
    ReferenceFinder finder;
    value.accept(finder);
    return finder.reference;
}
} // namespace ElementSupport
} // namespace Metadata
} // namespace Vellum
