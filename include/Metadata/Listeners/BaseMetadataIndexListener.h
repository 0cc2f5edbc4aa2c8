#pragma once
// The value index: for each indexed label, the sets by the values of their elements. The index
// points at the values that the elements hold, and follows every announcement, old value out
// and new value in. Members of collections are not indexed.

#include "Metadata/Listeners/MetadataIndexListener.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Types/SimpleDataType.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
class BaseMetadataIndexListener : public MetadataIndexListener
{
public:
    VELLUM_CLASS_ALLOCATION
    // A value with its size and first eight bytes (big-endian, zero-padded) kept beside it, so
    // that most comparisons need not reach the value itself.
    struct ValueKey
    {
        explicit ValueKey(Types::SimpleDataType const & value);
        unsigned short size;
        uint64 head;
        Types::SimpleDataType const * value;
    };
    // Orders values by their serialised size, then by their bytes.
    struct ValueLess
    {
        bool operator()(ValueKey const & a, ValueKey const & b) const;
    };
    // For one label, the sets by value; equal values stay in the order they came in.
    typedef Templates::multimap<ValueKey, MetadataSet *, ValueLess> ValueIndex;
    // The value indexes by label: a value is compared with the values of its own label only.
    typedef Templates::map<Types::UniversalLabel, ValueIndex> Index;

    BaseMetadataIndexListener();
    ~BaseMetadataIndexListener() override;

    // All sets with that label and value, in key order. The value is compared by size and
    // bytes.
    Templates::vector<MetadataSet *> find(Types::UniversalLabel const & label,
                                          Types::SimpleDataType const & value) override;
    // Whether the values of `label` go into the index.
    virtual bool isIndexed(Types::UniversalLabel const & label) = 0;

    void metadataSetKey(KLV::Key & key) override;
    void createdMetadataSet(MetadataSet * set) override;
    void removedMetadataSet(MetadataSet * set) override;
    void addedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                      Types::BaseType const & value) override;
    void updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                        Types::Collection const & oldValue, Types::Collection const & newValue) override;
    void updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                        Types::SimpleDataType const & oldValue, Types::SimpleDataType const & newValue) override;
    void updatedElementCollection(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                                  Types::Collection const & collection, unsigned int index,
                                  Types::BaseType const * member) override;
    void removedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                        Types::BaseType const & oldValue) override;

    // The number of values in the index.
    uint64 indexSize() const;

private:
    BaseMetadataIndexListener(BaseMetadataIndexListener const &) = delete;
    BaseMetadataIndexListener & operator=(BaseMetadataIndexListener const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
