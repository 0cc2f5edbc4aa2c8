#pragma once
// Keeps modification dates true: gathers the sets that were changed, and on commit() gives the
// package above each (or the Preface, for what hangs under no package) the present date.

#include "Metadata/Listeners/NullCommitableListener.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
class LastModifiedDateUpdaterListener : public NullCommitableListener
{
public:
    VELLUM_CLASS_ALLOCATION
    LastModifiedDateUpdaterListener();
    ~LastModifiedDateUpdaterListener() override;

    void commit() override;

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

private:
    LastModifiedDateUpdaterListener(LastModifiedDateUpdaterListener const &) = delete;
    LastModifiedDateUpdaterListener & operator=(LastModifiedDateUpdaterListener const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
