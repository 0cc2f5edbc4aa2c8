#pragma once
// Keeps Generation UIDs true: gathers the sets that were created or changed, and on commit()
// gives each the ThisGenerationUID of an Identification, which it makes and adds to the Preface
// unless one was given.

#include "Metadata/Listeners/CommitableListener.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
class GenerationUIDWriterListener : public CommitableListener
{
public:
    VELLUM_CLASS_ALLOCATION
    GenerationUIDWriterListener();
    ~GenerationUIDWriterListener() override;

    // The Identification (a Structural::Identification) whose ThisGenerationUID the next
    // commit() hands out; null lets commit() make one.
    void setIdentification(MetadataSet * identification);
    // Forgets the Identification, so that the next commit() makes a new one.
    void reset();
    void commit() override;

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

private:
    GenerationUIDWriterListener(GenerationUIDWriterListener const &) = delete;
    GenerationUIDWriterListener & operator=(GenerationUIDWriterListener const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
