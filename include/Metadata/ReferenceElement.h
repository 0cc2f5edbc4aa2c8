#pragma once
// An element that holds one strong or weak reference to another set.

#include "Metadata/Element.h"
#include "Metadata/ReferenceHolder.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Types
{
class Reference;
class SimpleDataType;
} // namespace Types

namespace Metadata
{
class ReferenceElement : public Element, public ReferenceHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Takes the value, which may be null, with no check and no announcement.
    ReferenceElement(Templates::auto_ptr<Types::Reference> value, MetaAttributePtr attribute, MetadataSet & set);
    ~ReferenceElement() override;

    // Null when empty.
    Types::Reference const * value() const;
    // Refers to `target`, which must be of a kind the schema allows; the reference is strong or
    // weak as the schema says. Null clears the element.
    void set(MetadataSet const * target);
    // Takes a reference whose type must be the schema's; the target is not looked at.
    void set(Templates::auto_ptr<Types::SimpleDataType> value);
    // Takes a reference whose target is not looked at, as a parser does before the target is
    // loaded.
    void setUnverifiedReference(Templates::auto_ptr<Types::Reference> value);

    void load(KLV::Value & value) override;
    MetaAttributePtr metaAttribute() const override;
    MetadataSet & metadataSet() const override;
    bool empty() const override;
    uint64 totalLength() const override;
    void accept(Visitors::NonConstElementVisitor & visitor) override;
    void accept(Visitors::ElementVisitor & visitor) const override;
    Templates::auto_ptr<Element> clone(MetadataSet & target) const override;

private:
    ReferenceElement(ReferenceElement const & other, MetadataSet & set);
    void serializeValue(DataIO::DataSink & sink) const override;

    typedef SimpleElement_impl<ReferenceElement, Types::Reference> Impl;
    friend struct SimpleElement_impl<ReferenceElement, Types::Reference>;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
