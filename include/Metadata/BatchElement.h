#pragma once
// An element that holds an unordered batch of plain values: members are appended, never inserted.

#include "Metadata/CollectionElement.h"
#include "Metadata/ValueHolder.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Types
{
class Batch;
class Collection;
class Reference;
class SimpleDataType;
} // namespace Types

namespace Metadata
{
class BatchElement : public CollectionElement, public ValueHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Takes the value, which may be null, with no check and no announcement.
    BatchElement(Templates::auto_ptr<Types::Batch> value, MetaAttributePtr attribute, MetadataSet & set);
    ~BatchElement() override;

    Types::SimpleDataType const & at(unsigned int index) const override;
    int size() const override;
    Types::Collection const * value() const override;
    void set(Templates::auto_ptr<Types::Collection> value) override;
    void append(Templates::auto_ptr<Types::SimpleDataType> member) override;
    void remove(unsigned int index) override;

    void load(KLV::Value & value) override;
    MetaAttributePtr metaAttribute() const override;
    MetadataSet & metadataSet() const override;
    bool empty() const override;
    uint64 totalLength() const override;
    void accept(Visitors::NonConstElementVisitor & visitor) override;
    void accept(Visitors::ElementVisitor & visitor) const override;
    Templates::auto_ptr<Element> clone(MetadataSet & target) const override;

private:
    BatchElement(BatchElement const & other, MetadataSet & set);
    void serializeValue(DataIO::DataSink & sink) const override;

    typedef CollectionElement_impl<BatchElement, Types::Batch> Impl;
    friend struct CollectionElement_impl<BatchElement, Types::Batch>;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
