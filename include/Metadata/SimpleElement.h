#pragma once
// An element that holds one plain value.

#include "Metadata/Element.h"
#include "Metadata/ValueHolder.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Types
{
class SimpleDataType;
} // namespace Types

namespace Metadata
{
class SimpleElement : public Element, public ValueHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Takes the value, which may be null, with no check and no announcement.
    SimpleElement(Templates::auto_ptr<Types::SimpleDataType> value, MetaAttributePtr attribute, MetadataSet & set);
    ~SimpleElement() override;

    // Null when empty.
    Types::SimpleDataType const * value() const;
    // Puts `value` in place of the old one; its type must be the schema's. A null value clears
    // the element, which a Required element allows only with `allowClear`.
    void set(Templates::auto_ptr<Types::SimpleDataType> value, bool allowClear = false);

    void load(KLV::Value & value) override;
    MetaAttributePtr metaAttribute() const override;
    MetadataSet & metadataSet() const override;
    bool empty() const override;
    uint64 totalLength() const override;
    void accept(Visitors::NonConstElementVisitor & visitor) override;
    void accept(Visitors::ElementVisitor & visitor) const override;
    Templates::auto_ptr<Element> clone(MetadataSet & target) const override;

private:
    SimpleElement(SimpleElement const & other, MetadataSet & set);
    void serializeValue(DataIO::DataSink & sink) const override;

    typedef SimpleElement_impl<SimpleElement, Types::SimpleDataType> Impl;
    friend struct SimpleElement_impl<SimpleElement, Types::SimpleDataType>;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
