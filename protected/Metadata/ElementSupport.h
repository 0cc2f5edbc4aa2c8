#pragma once
// What the element classes share: reading their schema attribute, the texts of their messages,
// and the announcements to the owner of their set.

#include "Metadata/Element.h"
#include "MetaMetadata/AttributeRequiredStatus.h"
#include "Templates/Containers.h"
#include "Types/Identifiers.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaAttribute;
class MetaCollectionElement;
class MetaElement;
class MetaValueHolder;
} // namespace MetaMetadata

namespace Types
{
class BaseType;
class Collection;
class Reference;
class SimpleDataType;
} // namespace Types

namespace Metadata
{
class MetadataSetOwner;

namespace ElementSupport
{
// The attribute as a MetaAttribute, or null for a misplaced or unknown one.
MetaMetadata::MetaAttribute const * metaAttributeOf(MetaMetadata::AbstractMetaAttribute const * attribute);
// The element of a MetaAttribute or MisplacedAttribute; null for an UnknownAttribute.
MetaMetadata::MetaElement const * metaElementOf(MetaMetadata::AbstractMetaAttribute const * attribute);
// The element as a collection description, or null.
MetaMetadata::MetaCollectionElement const * collectionOf(MetaMetadata::MetaElement const * element);
// The permitted values of a simple element or collection of plain values, or null.
MetaMetadata::MetaValueHolder const * valueHolderOf(MetaMetadata::AbstractMetaAttribute const * attribute);
// Required, EncoderRequired, ... of a MetaAttribute; Optional for anything else.
MetaMetadata::AttributeRequiredStatus::Status requiredStatusOf(MetaMetadata::AbstractMetaAttribute const * attribute);
// The property "name" of the element, or "<unknown>".
Templates::wstring displayName(MetaMetadata::AbstractMetaAttribute const * attribute);
// "Value '<name>'" and what follows.
Templates::wstring valueMessage(MetaMetadata::AbstractMetaAttribute const * attribute, char const * tail);
Templates::wstring typeName(Types::Identifiers::Identifier identifier);
Types::Identifiers::Identifier identifierOf(Types::BaseType const & value);

// Every announcement is skipped when the set has no owner.
// A whole value changes: updated, added or removed as old and new value are there or not.
void announceValue(MetadataSet & set, MetaMetadata::AbstractMetaAttribute const * attribute, Element & element,
                   Types::SimpleDataType const * oldValue, Types::SimpleDataType * newValue);
void announceCollection(MetadataSet & set, MetaMetadata::AbstractMetaAttribute const * attribute, Element & element,
                        Types::Collection const * oldValue, Types::Collection * newValue);
// A value appears whatever was there before: loading and cloning.
void announceAdded(MetadataSet & set, MetaMetadata::AbstractMetaAttribute const * attribute, Element & element,
                   Types::BaseType & newValue);
// A member goes in at `index` (non-null) or the one there goes (null).
void announceMember(MetadataSet & set, MetaMetadata::AbstractMetaAttribute const * attribute, Element & element,
                    Types::Collection const & collection, unsigned int index, Types::BaseType * newMember);

// A reference to `target` of type `type` (StrongReference or WeakReference). Another type
// throws InvalidMetaAttribute.
Templates::auto_ptr<Types::SimpleDataType> referenceTo(MetadataSet const & target, Types::Identifiers::Identifier type);

// The value as a reference, or null when it is none.
Types::Reference const * asReference(Types::SimpleDataType const & value);
} // namespace ElementSupport
} // namespace Metadata
} // namespace Vellum
