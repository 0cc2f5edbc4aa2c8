#pragma once
// One metadata set: its key, an element for every attribute that its description holds, the
// items of a file that the description does not provide for, and the owner that hears of every
// change. Parses itself from a local set packet and writes itself back.

#include "KLV/Key.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace DataIO
{
class DataSink;
} // namespace DataIO

namespace KLV
{
class Packet;
} // namespace KLV

namespace MetaMetadata
{
class AbstractMetaAttribute;
class MetaMetadataSet;
} // namespace MetaMetadata

namespace Types
{
class UUID;
} // namespace Types

namespace Metadata
{
class Element;
class MetadataSetOwner;
class PartitionDictionary;

namespace Visitors
{
class MetadataSetVisitor;
class NonConstMetadataSetVisitor;
} // namespace Visitors

class MetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    // The elements by label; the set owns them.
    typedef Templates::map<Types::UniversalLabel, Element *> Elements;
    typedef Elements::iterator iterator;
    typedef Elements::const_iterator const_iterator;

    // Creates an empty element for each attribute of `metaMetadataSet`, which may be null (then
    // the set has no elements). A description with another key throws InvalidMetadataSet.
    // Neither the description nor the owner is owned.
    MetadataSet(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet,
                MetadataSetOwner * owner);
    virtual ~MetadataSet();

    // Reads the local items of the packet's value into the elements; what cannot be tied to an
    // element of this set is kept on the invalid list. `strictPrimer` makes the first attempt at
    // each tag believe the Primer only where it agrees with the static tags.
    virtual void load(KLV::Packet & packet, PartitionDictionary const & dictionary, bool strictPrimer);

    // May be null.
    virtual MetaMetadata::MetaMetadataSet const * metaMetadataSet() const;
    virtual KLV::Key const & key() const;
    // The value of the InstanceUID element, or of an invalid one of that label; null when none.
    virtual Types::UUID const * instanceUID() const;
    // The element of the label; a label that the description does not hold throws NotFound.
    virtual Element const & find(Types::UniversalLabel const & label) const;
    virtual Element & find(Types::UniversalLabel const & label);
    // The number of valid elements, empty ones included.
    virtual uint64 size() const;
    // Key, BER length and the non-empty elements in label order; the invalid ones behind them
    // when `includeInvalid`.
    virtual void serialize(DataIO::DataSink & sink, PartitionDictionary const & dictionary,
                           bool includeInvalid) const;
    virtual uint64 serializedSize(bool includeInvalid) const;
    virtual void accept(Visitors::NonConstMetadataSetVisitor & visitor);
    virtual void accept(Visitors::MetadataSetVisitor & visitor) const;

    // May be null.
    MetadataSetOwner * owner() const;
    // Width of the BER length field: 4 for a new set, what the packet had after load. Items that
    // have outgrown it are written with the shortest width that holds their length.
    unsigned char berLength() const;
    void berLength(unsigned char width);

    // The valid elements in label order.
    iterator begin();
    iterator end();
    const_iterator begin() const;
    const_iterator end() const;

    // The invalid elements in the order they were found.
    Element ** invalidBegin();
    Element ** invalidEnd();
    Element * const * invalidBegin() const;
    Element * const * invalidEnd() const;
    unsigned int invalidSize() const;
    // Appends an empty element for the attribute to the invalid list.
    Element * createInvalidElement(Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> attribute);
    // Takes the element off the invalid list and destroys it; one not on the list throws NotFound.
    void removedInvalidElement(Element const * element);

    // A new set of the same key for `owner` (the own owner if null), with copies of the elements
    // and a new instance UID. `deep` clones the sets behind strong references as well; a shallow
    // clone holds no references.
    MetadataSet * clone(bool deep, MetadataSetOwner * owner = 0) const;

    // Validation: each appends the valid elements, in label order, that answer the question.
    // Required or EncoderRequired, no semantics validation, empty.
    void openElements(Templates::vector<Element *> & elements) const;
    // BestEffort, no semantics validation, empty or holding the distinguished value.
    void incompleteElements(Templates::vector<Element *> & elements) const;
    // Semantics validation, empty.
    void possiblyOpenElements(Templates::vector<Element *> & elements) const;
    // Semantics validation, holding the distinguished value.
    void possiblyIncompleteElements(Templates::vector<Element *> & elements) const;
    // Semantics validation, not empty.
    void possiblyForbiddenElements(Templates::vector<Element *> & elements) const;
    // Semantics validation, empty or holding the distinguished value.
    void getSemanticsValidationElements(Templates::vector<Element *> & elements) const;

private:
    MetadataSet(MetadataSet const &) = delete;
    MetadataSet & operator=(MetadataSet const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
