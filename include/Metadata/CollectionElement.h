#pragma once
// An element that holds an array or a batch of plain values.

#include "Metadata/Element.h"

namespace Vellum
{
namespace Types
{
class Collection;
class SimpleDataType;
} // namespace Types

namespace Metadata
{
class CollectionElement : public Element
{
public:
    VELLUM_CLASS_ALLOCATION

    // Member `index`; past the end or without a value throws IndexOutOfBounds.
    virtual Types::SimpleDataType const & at(unsigned int index) const = 0;
    // The number of members, 0 without a value.
    virtual int size() const = 0;
    // Null when empty.
    virtual Types::Collection const * value() const = 0;
    // Puts `value` in place of the old one, within the schema's limits; null clears the element.
    virtual void set(Templates::auto_ptr<Types::Collection> value) = 0;
    // Adds a member at the end, making the collection if there is none yet.
    virtual void append(Templates::auto_ptr<Types::SimpleDataType> member) = 0;
    // Removes member `index`; the last one leaves an empty collection.
    virtual void remove(unsigned int index) = 0;

protected:
    CollectionElement() {}
};
} // namespace Metadata
} // namespace Vellum
