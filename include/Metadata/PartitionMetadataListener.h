#pragma once
// What hears of every change to the metadata of a partition: sets created and removed, and each
// element's value added, replaced, changed member by member or taken away. Each element
// announcement comes before the change, with the old value still in place.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace KLV
{
class Key;
} // namespace KLV

namespace Types
{
class BaseType;
class Collection;
class SimpleDataType;
} // namespace Types

namespace MetaMetadata
{
class MetaElement;
} // namespace MetaMetadata

namespace Metadata
{
class Element;
class MetadataSet;

class PartitionMetadataListener
{
public:
    VELLUM_CLASS_ALLOCATION
    PartitionMetadataListener() = default;
    virtual ~PartitionMetadataListener() {}
    PartitionMetadataListener(PartitionMetadataListener const &) = delete;
    PartitionMetadataListener & operator=(PartitionMetadataListener const &) = delete;

    // Sees the key of each set that is loaded or created, and may change it.
    virtual void metadataSetKey(KLV::Key & key) = 0;
    // The set has entered the partition.
    virtual void createdMetadataSet(MetadataSet * set) = 0;
    // The set is about to leave the partition; it is still whole.
    virtual void removedMetadataSet(MetadataSet * set) = 0;

    // The element is about to take a value where it had none. `metaElement` is null for an
    // element that the schema does not know.
    virtual void addedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                              Types::BaseType const & value) = 0;
    // A collection is about to replace another.
    virtual void updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                                Types::Collection const & oldValue, Types::Collection const & newValue) = 0;
    // A simple value is about to replace another.
    virtual void updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                                Types::SimpleDataType const & oldValue, Types::SimpleDataType const & newValue) = 0;
    // Member `index` of the collection is about to be inserted (`member` non-null) or removed
    // (`member` null).
    virtual void updatedElementCollection(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                          Element & element, Types::Collection const & collection, unsigned int index,
                                          Types::BaseType const * member) = 0;
    // The element is about to lose its value.
    virtual void removedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                                Types::BaseType const & oldValue) = 0;
};
} // namespace Metadata
} // namespace Vellum
