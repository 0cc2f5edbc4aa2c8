#pragma once
// A listener that does nothing: a base for listeners that care about a few announcements.

#include "Metadata/PartitionMetadataListener.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
class NullMetadataListener : public PartitionMetadataListener
{
public:
    VELLUM_CLASS_ALLOCATION
    void metadataSetKey(KLV::Key &) override {}
    void createdMetadataSet(MetadataSet *) override {}
    void removedMetadataSet(MetadataSet *) override {}
    void addedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element &, Types::BaseType const &) override
    {
    }
    void updatedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element &, Types::Collection const &,
                        Types::Collection const &) override
    {
    }
    void updatedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element &, Types::SimpleDataType const &,
                        Types::SimpleDataType const &) override
    {
    }
    void updatedElementCollection(MetadataSet &, MetaMetadata::MetaElement const *, Element &,
                                  Types::Collection const &, unsigned int, Types::BaseType const *) override
    {
    }
    void removedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element &, Types::BaseType const &) override
    {
    }
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
