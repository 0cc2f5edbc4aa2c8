#pragma once
// A small schema for the element tests, an owner that writes down what it hears, and helpers to
// reach the elements of a set by class.

#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/MetaCollection.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/MetaReferenceCollection.h"
#include "MetaMetadata/MetaReferenceElement.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "Metadata/Element.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataSetOwner.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionDictionary.h"
#include "Packs/PrimerPack.h"
#include "Types/Collection.h"

namespace Vellum
{
namespace ElementTest
{
using MetaMetadataTest::label;
using MetaMetadataTest::n;
using MetaMetadataTest::setKey;
using MetaMetadataTest::Thrown;
using MetaMetadataTest::thrown;
using MetaMetadataTest::thrownBy;
using MetaMetadataTest::w;
using KLVTest::cat;
typedef std::vector<unsigned char> Bytes;

// Labels of the parent set's attributes.
enum
{
    Count = 1,      // UInt32, Req
    Width = 2,      // UInt16, E/req
    Target = 3,     // strong reference to a child set
    Weak = 4,       // weak reference to a child or a far set
    Pair = 5,       // array of exactly two UInt32
    Labels = 6,     // batch of one to three labels
    Children = 7,   // array of at most two strong references to child sets
    Links = 8,      // batch of weak references to child sets
    Text = 9,       // UTF-16 string
    Numbers = 10,   // array of UInt16, no limits
    Nameless = 11,  // UInt8, Req, no name property
    Misfit = 12     // a UInt16 known to the dictionary but in no set
};

// Parent sets have key 1, children key 2, far sets key 3; all three have an InstanceUID.
class Schema
{
public:
    Schema() : dictionary(new MetaMetadata::Dictionary()), parent(setKey(1)), child(setKey(2)), far(setKey(3))
    {
        using namespace MetaMetadata;
        using namespace Types::Identifiers;
        typedef MetaCollectionElement::CollectionSizeLimits Limits;
        MetaReferenceHolder::Keys children(1, setKey(2));
        MetaReferenceHolder::Keys childOrFar(children);
        childOrFar.push_back(setKey(4));

        add(&parent, Count, "Count", new MetaSimpleElement(label(Count), UInt32), AttributeRequiredStatus::Required);
        add(&parent, Width, "Width", new MetaSimpleElement(label(Width), UInt16), AttributeRequiredStatus::EncoderRequired);
        add(&parent, Target, "Target", new MetaReferenceElement(label(Target), children, StrongReference));
        add(&parent, Weak, "Weak", new MetaReferenceElement(label(Weak), childOrFar, WeakReference));
        add(&parent, Pair, "Pair", new MetaCollection(label(Pair), Limits(2, 2), Array, UInt32));
        add(&parent, Labels, "Labels", new MetaCollection(label(Labels), Limits(1, 3), Batch, UL));
        add(&parent, Children, "Children",
            new MetaReferenceCollection(label(Children), Limits(0, 2), children, Array, StrongReference));
        add(&parent, Links, "Links", new MetaReferenceCollection(label(Links), Limits(), children, Batch, WeakReference));
        add(&parent, Text, "Text", new MetaSimpleElement(label(Text), UTF16CharString));
        add(&parent, Numbers, "Numbers", new MetaCollection(label(Numbers), Limits(), Array, UInt16));
        add(&parent, Nameless, nullptr, new MetaSimpleElement(label(Nameless), UInt8), AttributeRequiredStatus::Required);
        add(nullptr, Misfit, "Misfit", new MetaSimpleElement(label(Misfit), UInt16));
        for (MetaMetadataSet * set : {&parent, &child, &far})
        {
            addInstanceUID(*set);
            dictionary->add(set->key(), *set);
        }
        dictionary->add(Types::LocalTag(static_cast<unsigned short>(0x3c0a)), Metadata::MetadataULs::instanceUID());
    }

    MetaMetadata::MetaElement const & element(unsigned char which) const
    {
        return *dictionary->findMetaElement(label(which));
    }

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    MetaMetadata::MetaMetadataSet parent;
    MetaMetadata::MetaMetadataSet child;
    MetaMetadata::MetaMetadataSet far;

private:
    void add(MetaMetadata::MetaMetadataSet * set, unsigned char which, char const * name, MetaMetadata::MetaElement * made,
             MetaMetadata::AttributeRequiredStatus::Status status = MetaMetadata::AttributeRequiredStatus::Optional)
    {
        if (name != nullptr)
            made->addProperty(w("name").c_str(), w(name).c_str());
        dictionary->add(label(which), Templates::auto_ptr<MetaMetadata::MetaElement>(made));
        if (set != nullptr)
            set->addMetaAttribute(MetaMetadataTest::attribute(*made, status));
    }

    void addInstanceUID(MetaMetadata::MetaMetadataSet & set)
    {
        MetaMetadata::MetaElement const * known = dictionary->findMetaElement(Metadata::MetadataULs::instanceUID());
        if (known == nullptr)
        {
            MetaMetadata::MetaElement * made =
                new MetaMetadata::MetaSimpleElement(Metadata::MetadataULs::instanceUID(), Types::Identifiers::UUID);
            made->addProperty(w("name").c_str(), w("InstanceUID").c_str());
            dictionary->add(Metadata::MetadataULs::instanceUID(), Templates::auto_ptr<MetaMetadata::MetaElement>(made));
            known = made;
        }
        set.addMetaAttribute(MetaMetadataTest::attribute(*known, MetaMetadata::AttributeRequiredStatus::Required));
    }
};

// Writes down every announcement, with the length the element had at that moment; can be told
// to refuse one.
class RecordingOwner : public Metadata::MetadataSetOwner
{
public:
    explicit RecordingOwner(Templates::SharedPtr<MetaMetadata::Dictionary> const & dictionary)
        : refuse(false), dictionary_(dictionary, Templates::auto_ptr<Packs::PrimerPack>())
    {
    }

    void addedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const * metaElement, Metadata::Element & element,
                      Types::BaseType &) override
    {
        record("added", metaElement, element);
    }
    void updatedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const * metaElement,
                        Metadata::Element & element, Types::Collection const &, Types::Collection &) override
    {
        record("updated collection", metaElement, element);
    }
    void updatedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const * metaElement,
                        Metadata::Element & element, Types::SimpleDataType const &, Types::SimpleDataType &) override
    {
        record("updated", metaElement, element);
    }
    void updatedElementCollection(Metadata::MetadataSet &, MetaMetadata::MetaElement const * metaElement,
                                  Metadata::Element & element, Types::Collection const & collection,
                                  unsigned int index, Types::BaseType * newMember) override
    {
        record(std::string(newMember != nullptr ? "insert " : "erase ") + std::to_string(index) + " of " +
                   std::to_string(collection.size()),
               metaElement, element);
    }
    void removedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const * metaElement,
                        Metadata::Element & element, Types::BaseType const &) override
    {
        record("removed", metaElement, element);
    }
    void metadataSetCloned(Metadata::MetadataSet const &, Metadata::MetadataSet &, bool) override {}
    Templates::vector<Metadata::MetadataSet *> find(Types::UniversalLabel const &,
                                                    Types::SimpleDataType const &) const override
    {
        return Templates::vector<Metadata::MetadataSet *>();
    }
    Metadata::PartitionDictionary const & partitionDictionary() const override { return dictionary_; }
    Metadata::PartitionDictionary & partitionDictionary() override { return dictionary_; }

    // Each entry: what, the element's name (or "null" without a MetaElement), "@" and the
    // element's length before the change ("-" when empty).
    std::vector<std::string> events;
    // Throws InvalidState from the next announcement, after writing it down.
    bool refuse;

private:
    void record(std::string const & what, MetaMetadata::MetaElement const * metaElement, Metadata::Element & element)
    {
        std::string name = "null";
        if (metaElement != nullptr)
        {
            name = "nameless";
            for (auto it = metaElement->propertiesBegin(); it != metaElement->propertiesEnd(); ++it)
                if (it->first == w("name"))
                    name = n(it->second);
        }
        std::string length = element.empty() ? "-" : std::to_string(element.totalLength());
        events.push_back(what + " " + name + " @" + length);
        if (refuse)
        {
            refuse = false;
            VELLUM_THROW(InvalidState, "refused");
        }
    }

    Metadata::PartitionDictionary dictionary_;
};

// The element of the label as its concrete class; fails the test when it is another.
template <class T>
T & as(Metadata::MetadataSet & set, Types::UniversalLabel const & which)
{
    Metadata::Visitors::GetNonConstElementVisitor<T> visitor;
    set.find(which).accept(visitor);
    if (visitor.value() == nullptr)
        throw std::logic_error("element of another class");
    return *visitor.value();
}

template <class T>
T & as(Metadata::MetadataSet & set, unsigned char which)
{
    return as<T>(set, label(which));
}

// What the element writes as a local item.
inline Bytes written(Metadata::Element const & element, Metadata::PartitionDictionary const & dictionary, int lengthSize)
{
    DataIO::Memory::MemoryDataSink sink;
    element.serialize(sink, dictionary, lengthSize);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

// Loads the element from the bytes as from a file's item.
inline void loadFrom(Metadata::Element & element, Bytes const & bytes)
{
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Value value(source, bytes.size());
    element.load(value);
}
} // namespace ElementTest
} // namespace Vellum
