#pragma once
// Whoever owns metadata sets: hears of every change to their elements before it is made, takes
// note of clones, finds sets by the value of an element and holds the partition's tags.

#include "Platform/MallocAlloc.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaElement;
} // namespace MetaMetadata

namespace Types
{
class BaseType;
class Collection;
class SimpleDataType;
class UniversalLabel;
} // namespace Types

namespace Metadata
{
class Element;
class MetadataSet;
class PartitionDictionary;

class MetadataSetOwner
{
public:
    VELLUM_CLASS_ALLOCATION
    MetadataSetOwner() = default;
    virtual ~MetadataSetOwner() {}
    MetadataSetOwner(MetadataSetOwner const &) = delete;
    MetadataSetOwner & operator=(MetadataSetOwner const &) = delete;

    // The element description is null for an element of an UnknownAttribute.
    // An element got a value where it had none.
    virtual void addedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                              Types::BaseType & newValue) = 0;
    // A whole collection is replaced by another.
    virtual void updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                                Types::Collection const & oldValue, Types::Collection & newValue) = 0;
    // A simple value or a reference is replaced by another.
    virtual void updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                                Types::SimpleDataType const & oldValue, Types::SimpleDataType & newValue) = 0;
    // A member goes in at `index` (`newMember` non-null) or the one at `index` goes (null).
    virtual void updatedElementCollection(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                          Element & element, Types::Collection const & collection,
                                          unsigned int index, Types::BaseType * newMember) = 0;
    // An element loses its value.
    virtual void removedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                                Types::BaseType const & oldValue) = 0;

    // `clone` was made from `source` and is now this owner's; its elements follow.
    virtual void metadataSetCloned(MetadataSet const & source, MetadataSet & clone, bool deep) = 0;

    // The sets whose element `label` holds a value equal to `value`.
    virtual Templates::vector<MetadataSet *> find(Types::UniversalLabel const & label,
                                                  Types::SimpleDataType const & value) const = 0;

    virtual PartitionDictionary const & partitionDictionary() const = 0;
    virtual PartitionDictionary & partitionDictionary() = 0;
};
} // namespace Metadata
} // namespace Vellum
