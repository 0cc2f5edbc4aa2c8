#pragma once
// A commitable listener that does nothing, commit() included: a base for those that care about
// a few announcements.

#include "Metadata/Listeners/CommitableListener.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
class NullCommitableListener : public CommitableListener
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
    void commit() override {}
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
