#pragma once
// Chooses the element class that fits an attribute of the schema. Every element made here is
// empty.

#include "Platform/MallocAlloc.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace MetaMetadata
{
class AbstractMetaAttribute;
class MetaAttribute;
class MetaElement;
} // namespace MetaMetadata

namespace Metadata
{
class Element;
class MetadataSet;

class ElementFactory
{
public:
    VELLUM_CLASS_ALLOCATION
    // By the element: an array or batch of references or of values, a single reference, or a
    // simple element. A collection of another dataType gives null.
    static Element * create(Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> attribute, MetadataSet & set,
                            MetaMetadata::MetaElement const & element);
    // By the attribute's element.
    static Element * create(Templates::SharedPtr<MetaMetadata::MetaAttribute> attribute, MetadataSet & set);
    // By the element of a MetaAttribute or MisplacedAttribute; a SimpleElement for an
    // UnknownAttribute.
    static Element * create(Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> attribute, MetadataSet & set);
};
} // namespace Metadata
} // namespace Vellum
