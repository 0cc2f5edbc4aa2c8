#pragma once
// An element that holds an ordered array of plain values.

#include "Metadata/CollectionElement.h"
#include "Metadata/ValueHolder.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Types
{
class Array;
class Collection;
class Reference;
class SimpleDataType;
} // namespace Types

namespace Metadata
{
class ArrayElement : public CollectionElement, public ValueHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Takes the value, which may be null, with no check and no announcement.
    ArrayElement(Templates::auto_ptr<Types::Array> value, MetaAttributePtr attribute, MetadataSet & set);
    ~ArrayElement() override;

    Types::SimpleDataType const & at(unsigned int index) const override;
    int size() const override;
    Types::Collection const * value() const override;
    void set(Templates::auto_ptr<Types::Collection> value) override;
    void append(Templates::auto_ptr<Types::SimpleDataType> member) override;
    void remove(unsigned int index) override;
    // Puts a member before member `index` (at the end for size()).
    void insertAt(unsigned int index, Templates::auto_ptr<Types::SimpleDataType> member);

    void load(KLV::Value & value) override;
    MetaAttributePtr metaAttribute() const override;
    MetadataSet & metadataSet() const override;
    bool empty() const override;
    uint64 totalLength() const override;
    void accept(Visitors::NonConstElementVisitor & visitor) override;
    void accept(Visitors::ElementVisitor & visitor) const override;
    Templates::auto_ptr<Element> clone(MetadataSet & target) const override;

private:
    ArrayElement(ArrayElement const & other, MetadataSet & set);
    void serializeValue(DataIO::DataSink & sink) const override;

    typedef CollectionElement_impl<ArrayElement, Types::Array> Impl;
    friend struct CollectionElement_impl<ArrayElement, Types::Array>;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
