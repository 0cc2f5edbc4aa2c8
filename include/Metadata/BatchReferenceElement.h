#pragma once
// An element that holds an unordered batch of references to other sets.

#include "Metadata/CollectionReferenceElement.h"
#include "Metadata/ReferenceHolder.h"
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
class BatchReferenceElement : public CollectionReferenceElement, public ReferenceHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Takes the value, which may be null, with no check and no announcement.
    BatchReferenceElement(Templates::auto_ptr<Types::Batch> value, MetaAttributePtr attribute, MetadataSet & set);
    ~BatchReferenceElement() override;

    Types::Reference const & at(unsigned int index) const override;
    int size() const override;
    Types::Collection const * value() const override;
    void set(Templates::auto_ptr<Types::Collection> value) override;
    void append(MetadataSet * target) override;
    void appendUnverifiedReference(Templates::auto_ptr<Types::Reference> reference) override;
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
    BatchReferenceElement(BatchReferenceElement const & other, MetadataSet & set);
    void serializeValue(DataIO::DataSink & sink) const override;
    Templates::auto_ptr<Types::SimpleDataType> referenceTo(MetadataSet const * target) const;
    void checkUnverified(Types::Reference const * reference) const;

    typedef CollectionElement_impl<BatchReferenceElement, Types::Batch> Impl;
    friend struct CollectionElement_impl<BatchReferenceElement, Types::Batch>;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
