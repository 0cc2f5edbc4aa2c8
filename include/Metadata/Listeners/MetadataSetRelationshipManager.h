#pragma once
// Referential integrity: follows every strong and weak reference between the sets of a
// partition, refuses to let a referenced set go (unless told not to care), clears the references
// to a set that goes, and deletes whole subtrees on request.

#include "Metadata/PartitionMetadataListener.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"
#include "Types/UUID.h"

namespace Vellum
{
namespace Metadata
{
class PartitionMetadata;

namespace Listeners
{
// The elements that reference one instance UID, once for each reference (an element that
// holds the UID twice is there twice), in the order the references appeared.
class ReferenceEntry
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::vector<Element *> Sources;

    ReferenceEntry();
    ~ReferenceEntry();

    Sources const & sources() const;
    void add(Element * source);
    // Takes away one reference held by `source`; false when it holds none.
    bool remove(Element * source);
    // Takes away every reference held by `source`; returns how many there were.
    unsigned int removeAll(Element * source);
    bool empty() const;

private:
    ReferenceEntry(ReferenceEntry const &) = delete;
    ReferenceEntry & operator=(ReferenceEntry const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

class MetadataSetRelationshipManager : public PartitionMetadataListener
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::map<Types::UUID, Templates::SharedPtr<ReferenceEntry>> UUIDToReferences;
    typedef Templates::multimap<Element *, Types::UUID> ReferencesToUUID;

    // Does not own the partition. Add the manager to it with replay to learn the references
    // already there.
    explicit MetadataSetRelationshipManager(PartitionMetadata * metadata);
    ~MetadataSetRelationshipManager() override;

    // With false, a referenced set may be removed (its references are cleared all the same).
    void enforceReferentialIntegrity(bool enforce);
    // Whether nothing references the set.
    bool canDeleteMetadataSet(MetadataSet const * set) const;
    // Removes the set and, down its strong references, every set below it. False for null or
    // for a set that the partition does not hold.
    bool cascadeDelete(MetadataSet * set);
    // The set that holds the first reference to `set`, or null.
    MetadataSet * parentSet(MetadataSet * set);
    MetadataSet const * parentSet(MetadataSet const * set) const;
    // The elements of `set` that hold strong (weak) references; returns how many were added to
    // `out`.
    unsigned int metadataSetStrongRefs(MetadataSet const * set, Templates::set<Element *> & out) const;
    unsigned int metadataSetWeakRefs(MetadataSet const * set, Templates::set<Element *> & out) const;

    UUIDToReferences const & uuid2ReferencesMap() const;
    ReferencesToUUID const & references2UUIDMap() const;

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
    MetadataSetRelationshipManager(MetadataSetRelationshipManager const &) = delete;
    MetadataSetRelationshipManager & operator=(MetadataSetRelationshipManager const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
