#pragma once
// The part of an element that holds references: which kinds of set it may point at.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaElement;
class MetaReferenceHolder;
} // namespace MetaMetadata

namespace Metadata
{
class MetadataSet;

class ReferenceHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~ReferenceHolder() {}

    // The schema's holder, null when there is none.
    MetaMetadata::MetaReferenceHolder const * metaReferenceHolder() const { return metaReferenceHolder_; }

protected:
    // The holder is taken from the element, which may be null or hold no references.
    explicit ReferenceHolder(MetaMetadata::MetaElement const * element);

    // The target's key must be one of the allowed keys, else MetadataSetReferenceNotAllowed.
    // There is no notion of subclass: the schema lists every permitted key.
    void checkIfSetCanBeReferenced(MetadataSet const * target) const;

private:
    MetaMetadata::MetaElement const * metaElement_;
    MetaMetadata::MetaReferenceHolder const * metaReferenceHolder_;
};
} // namespace Metadata
} // namespace Vellum
