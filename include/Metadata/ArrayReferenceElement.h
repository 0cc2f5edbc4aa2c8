#pragma once
// An element that holds an ordered array of references to other sets.

#include "Metadata/CollectionReferenceElement.h"
#include "Metadata/ReferenceHolder.h"
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
class ArrayReferenceElement : public CollectionReferenceElement, public ReferenceHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Takes the value, which may be null, with no check and no announcement.
    ArrayReferenceElement(Templates::auto_ptr<Types::Array> value, MetaAttributePtr attribute, MetadataSet & set);
    ~ArrayReferenceElement() override;

    Types::Reference const & at(unsigned int index) const override;
    int size() const override;
    Types::Collection const * value() const override;
    void set(Templates::auto_ptr<Types::Collection> value) override;
    void append(MetadataSet * target) override;
    void appendUnverifiedReference(Templates::auto_ptr<Types::Reference> reference) override;
    void remove(unsigned int index) override;
    // Puts a reference to `target` before member `index` (at the end for size()).
    void insertAt(unsigned int index, MetadataSet * target);
    // The same with a reference whose target is not looked at.
    void insertUnverifiedReferenceAt(unsigned int index, Templates::auto_ptr<Types::Reference> reference);

    void load(KLV::Value & value) override;
    MetaAttributePtr metaAttribute() const override;
    MetadataSet & metadataSet() const override;
    bool empty() const override;
    uint64 totalLength() const override;
    void accept(Visitors::NonConstElementVisitor & visitor) override;
    void accept(Visitors::ElementVisitor & visitor) const override;
    Templates::auto_ptr<Element> clone(MetadataSet & target) const override;

private:
    ArrayReferenceElement(ArrayReferenceElement const & other, MetadataSet & set);
    void serializeValue(DataIO::DataSink & sink) const override;
    Templates::auto_ptr<Types::SimpleDataType> referenceTo(MetadataSet const * target) const;
    void checkUnverified(Types::Reference const * reference) const;

    typedef CollectionElement_impl<ArrayReferenceElement, Types::Array> Impl;
    friend struct CollectionElement_impl<ArrayReferenceElement, Types::Array>;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
