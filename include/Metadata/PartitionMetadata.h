#pragma once
// The header metadata of one partition: its sets, its dark packets, its Primer (through the
// partition dictionary), the listeners that hear of every change, and the strong reference
// graph from the Preface down. Readers call load() for each packet; writers build sets with
// createMetadataSet() and write them with serialize().

#include "DataIO/DataSink.h"
#include "KLV/Key.h"
#include "Metadata/MetadataSetOwner.h"
#include "Metadata/PartitionMetadataListener.h"
#include "Packs/PartitionPack.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace KLV
{
class Packet;
} // namespace KLV

namespace Types
{
class SimpleDataType;
} // namespace Types

namespace Metadata
{
class DarkMetadataSet;
class Element;
class MetadataSet;
class PartitionDictionary;

namespace Listeners
{
class MetadataIndexListener;
} // namespace Listeners

class PartitionMetadata : public MetadataSetOwner
{
public:
    VELLUM_CLASS_ALLOCATION
    enum SerializationOrder
    {
        // The Preface, then every other set in key order.
        PrefaceThenKeys = 0,
        // Down the strong references from the Preface, depth first; orphans behind.
        ForwardDepthFirst = 1,
        // Down the strong references, each set's children together.
        ForwardLevelFirst = 2,
        // As ForwardDepthFirst, after the packages and tracks are tidied.
        ForwardDepthFirstTidied = 3,
        // After tidying; children ahead of their parents.
        BackwardReferences = 4,
        // As BackwardReferences, with the private sets (key byte 8 of 15) ahead of all others.
        BackwardReferencesPrivateFirst = 5
    };

    typedef Templates::multimap<KLV::Key, MetadataSet *> MetadataSets;
    typedef MetadataSets::iterator iterator;
    typedef MetadataSets::const_iterator const_iterator;
    typedef Templates::list<DarkMetadataSet *> DarkMetadataSets;
    typedef DarkMetadataSets::iterator dark_iterator;
    typedef DarkMetadataSets::const_iterator const_dark_iterator;

    // Takes the dictionary over. A DefaultMetadataIndexListener is made and listens from the
    // start.
    explicit PartitionMetadata(Templates::auto_ptr<PartitionDictionary> dictionary);
    ~PartitionMetadata() override;

    // Building and reading.

    // Parses one packet of header metadata. Null when it became a dark set (a key that is
    // neither in the dictionary nor a local set); a local set with an unknown key is kept with
    // all its items as invalid elements.
    MetadataSet * load(KLV::Packet & packet);
    // A new set of that kind, with a new instance UID. A key that the dictionary does not know
    // throws NotFound.
    MetadataSet * createMetadataSet(KLV::Key const & key);
    // Removes and deletes the set with that instance UID; false when there is none. Dark sets
    // are not searched. References to it from other sets stay as they are.
    bool removeMetadataSet(Types::UUID const & instanceUID);
    void addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet> set);

    // Every set of that key, in order of insertion.
    Templates::vector<MetadataSet *> find(KLV::Key const & key) const;
    // Every set whose element `label` holds a value equal to `value`, through the index listener;
    // empty for a label that it does not index.
    Templates::vector<MetadataSet *> find(Types::UniversalLabel const & label,
                                          Types::SimpleDataType const & value) const override;
    // Appends each set that holds a strong reference to `set`, once for each such reference;
    // returns the number appended.
    unsigned int parentSets(MetadataSet * set, Templates::vector<MetadataSet *> & out);
    unsigned int parentSets(MetadataSet const * set, Templates::vector<MetadataSet const *> & out) const;

    iterator begin();
    iterator end();
    const_iterator begin() const;
    const_iterator end() const;
    dark_iterator darkBegin();
    dark_iterator darkEnd();
    const_dark_iterator darkBegin() const;
    const_dark_iterator darkEnd() const;
    // The number of sets, dark ones not counted.
    uint64 size() const;

    PartitionDictionary const & partitionDictionary() const override;
    PartitionDictionary & partitionDictionary() override;

    // Listeners.

    // A listener is held once, however often it is added. With `replay` it hears at once of
    // every set and every value already present.
    void addMetadataListener(Templates::SharedPtr<PartitionMetadataListener> listener, bool replay);
    // Without any callback.
    void removeMetadataListener(Templates::SharedPtr<PartitionMetadataListener> listener);
    // Replaces the index listener; an empty pointer brings a new DefaultMetadataIndexListener.
    void setMetadataIndexListener(Templates::SharedPtr<Listeners::MetadataIndexListener> listener);

    // Writing.

    // Gives every element, empty or not, a local tag in the Primer.
    void generateLocalTags();
    // Bytes that serialize() writes (without the dark sets and invalid elements unless
    // `withDark`); with `withPrimer`, the local tags are generated first.
    uint64 serializedSize(bool withDark, bool withPrimer);
    // Writes the sets in `order`: orders past BackwardReferencesPrivateFirst write nothing.
    void serialize(DataIO::DataSink & sink, bool withDark, SerializationOrder order, bool withPrimer);
    void serializeForwardReferences(DataIO::DataSink & sink, bool withDark, bool depthFirst, bool withPrimer);
    // The Preface, the sets reachable from it by strong references, then the others (the
    // orphans) in key order; returns the number of orphans.
    unsigned int calculateSerializationOrder(Templates::vector<MetadataSet const *> & list, bool withInvalid,
                                             bool depthFirst) const;

    // Validation: each calls the set's query of that name for every set in key order.
    void openElements(Templates::vector<Element *> & out) const;
    void incompleteElements(Templates::vector<Element *> & out) const;
    void possiblyOpenElements(Templates::vector<Element *> & out) const;
    void possiblyIncompleteElements(Templates::vector<Element *> & out) const;
    void possiblyForbiddenElements(Templates::vector<Element *> & out) const;
    void getSemanticsValidationElements(Templates::vector<Element *> & out) const;

    // What the sets announce, passed on to every listener.
    void addedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                      Types::BaseType & value) override;
    void updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                        Types::Collection const & oldValue, Types::Collection & newValue) override;
    void updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                        Types::SimpleDataType const & oldValue, Types::SimpleDataType & newValue) override;
    void updatedElementCollection(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                                  Types::Collection const & collection, unsigned int index,
                                  Types::BaseType * member) override;
    void removedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement, Element & element,
                        Types::BaseType const & oldValue) override;
    // The clone enters the partition as a created set.
    void metadataSetCloned(MetadataSet const & source, MetadataSet & clone, bool deep) override;

private:
    PartitionMetadata(PartitionMetadata const &) = delete;
    PartitionMetadata & operator=(PartitionMetadata const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// The status that a partition pack should carry for this metadata: complete when no element
// is incomplete, closed only when `closed` is asked and no element is open.
Packs::PartitionPack::PartitionStatus verifyPartitionMetadataStatus(PartitionMetadata const & metadata, bool closed);

// Appends the sets that `set` references strongly, in label order (then those of its invalid
// elements, with `withInvalid`). A reference to a set already in `visited` throws InvalidFormat.
void getChildStrongReferences(PartitionMetadata const & metadata, MetadataSet const & set,
                              Templates::vector<MetadataSet const *> & out, Templates::set<Types::UUID> & visited,
                              bool withInvalid);
// The same down the whole tree below `set`: depth first, or each set's children together.
void getChildStrongReferencesRecursive(PartitionMetadata const & metadata, MetadataSet const & set,
                                       Templates::vector<MetadataSet const *> & out,
                                       Templates::set<Types::UUID> & visited, bool withInvalid, bool depthFirst);
} // namespace Metadata
} // namespace Vellum
