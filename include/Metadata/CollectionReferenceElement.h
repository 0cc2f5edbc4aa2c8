#pragma once
// An element that holds an array or a batch of references to other sets.

#include "Metadata/Element.h"

namespace Vellum
{
namespace Types
{
class Collection;
class Reference;
} // namespace Types

namespace Metadata
{
class CollectionReferenceElement : public Element
{
public:
    VELLUM_CLASS_ALLOCATION

    // Member `index`; past the end or without a value throws IndexOutOfBounds.
    virtual Types::Reference const & at(unsigned int index) const = 0;
    // The number of members, 0 without a value.
    virtual int size() const = 0;
    // Null when empty.
    virtual Types::Collection const * value() const = 0;
    // Puts `value` in place of the old one, within the schema's limits; null clears the element.
    virtual void set(Templates::auto_ptr<Types::Collection> value) = 0;
    // Adds a reference to `target` at the end; the target must be of a kind the schema allows.
    virtual void append(MetadataSet * target) = 0;
    // Adds a reference at the end whose target is not looked at.
    virtual void appendUnverifiedReference(Templates::auto_ptr<Types::Reference> reference) = 0;
    // Removes member `index`; the last one leaves an empty collection.
    virtual void remove(unsigned int index) = 0;

protected:
    CollectionReferenceElement() {}
};
} // namespace Metadata
} // namespace Vellum
