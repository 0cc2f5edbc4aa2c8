#include "Metadata/ElementFactory.h"

#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaCollectionElement.h"
#include "MetaMetadata/MetaElement.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/ElementSupport.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Types/Collection.h"
#include "Types/SimpleDataType.h"

namespace Vellum
{
namespace Metadata
{
namespace
{
bool isReference(Types::Identifiers::Identifier type)
{
    return type == Types::Identifiers::StrongReference || type == Types::Identifiers::WeakReference;
}
} // namespace

Element * ElementFactory::create(Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> attribute,
                                 MetadataSet & set, MetaMetadata::MetaElement const & element)
{
    MetaMetadata::MetaCollectionElement const * collection = ElementSupport::collectionOf(&element);
    if (collection != nullptr)
    {
        bool const references = isReference(collection->dataSubType());
        switch (collection->dataType())
        {
        case Types::Identifiers::Array:
            if (references)
                return new ArrayReferenceElement(Templates::auto_ptr<Types::Array>(), attribute, set);
            return new ArrayElement(Templates::auto_ptr<Types::Array>(), attribute, set);
        case Types::Identifiers::Batch:
            if (references)
                return new BatchReferenceElement(Templates::auto_ptr<Types::Batch>(), attribute, set);
            return new BatchElement(Templates::auto_ptr<Types::Batch>(), attribute, set);
        default:
            return nullptr;
        }
    }
    if (isReference(element.dataType()))
        return new ReferenceElement(Templates::auto_ptr<Types::Reference>(), attribute, set);
    return new SimpleElement(Templates::auto_ptr<Types::SimpleDataType>(), attribute, set);
}

Element * ElementFactory::create(Templates::SharedPtr<MetaMetadata::MetaAttribute> attribute, MetadataSet & set)
{
    MetaMetadata::MetaElement const & element = attribute->metaElement();
    return create(Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const>(attribute), set, element);
}

Element * ElementFactory::create(Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> attribute,
                                 MetadataSet & set)
{
    MetaMetadata::MetaElement const * element = ElementSupport::metaElementOf(attribute.get());
    if (element != nullptr)
        return create(attribute, set, *element);
    return new SimpleElement(Templates::auto_ptr<Types::SimpleDataType>(), attribute, set);
}
} // namespace Metadata
} // namespace Vellum
