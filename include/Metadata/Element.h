#pragma once
// One property of one metadata set: a slot that knows its schema description and its set, and
// may hold a value. Every change is checked against the schema and announced to the set's owner
// before it is made.

#include "MetaMetadata/AbstractMetaAttribute.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace DataIO
{
class DataSink;
} // namespace DataIO

namespace KLV
{
class Value;
} // namespace KLV

namespace Metadata
{
class MetadataSet;
class MetadataSetOwner;
class PartitionDictionary;

// The generic implementations behind the concrete classes: one for single values, one for arrays
// and batches.
template <class ElementClass, class ValueClass>
struct SimpleElement_impl;
template <class ElementClass, class CollectionClass>
struct CollectionElement_impl;

namespace Visitors
{
class ElementVisitor;
class NonConstElementVisitor;
} // namespace Visitors

class Element
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> MetaAttributePtr;

    virtual ~Element() {}

    // Reads a value from a file's item, by the type the schema gives, without the schema
    // checks, and puts it in place of the old one. Needs a MetaAttribute.
    virtual void load(KLV::Value & value) = 0;
    virtual MetaAttributePtr metaAttribute() const = 0;
    virtual MetadataSet & metadataSet() const = 0;
    // No value object. A collection with no members is not empty.
    virtual bool empty() const = 0;
    // The size of the value on the wire; 0 without a value.
    virtual uint64 totalLength() const = 0;
    virtual void accept(Visitors::NonConstElementVisitor & visitor) = 0;
    virtual void accept(Visitors::ElementVisitor & visitor) const = 0;
    // Writes tag, length and value as a local item, nothing when empty. The length field is 1, 2
    // or 4 bytes wide by `lengthSize`; any other width writes no length field at all.
    virtual void serialize(DataIO::DataSink & sink, PartitionDictionary const & dictionary, int lengthSize) const;
    // The same class in `target`, with a copy of the value, announced to the target's owner.
    virtual Templates::auto_ptr<Element> clone(MetadataSet & target) const = 0;

protected:
    Element() {}

private:
    Element(Element const &) = delete;
    Element & operator=(Element const &) = delete;

    virtual void serializeValue(DataIO::DataSink & sink) const = 0;
};
} // namespace Metadata
} // namespace Vellum
