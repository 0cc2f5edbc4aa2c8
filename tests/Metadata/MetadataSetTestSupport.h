#pragma once
// Helpers of the metadata set tests: an owner that records what it hears, builders of local set
// packets, and parsing and writing of one set.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "KLV/KLVTestSupport.h"
#include "Support/ThrownCompare.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/DarkParsedGroup.h"
#include "Metadata/Element.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataSetFactory.h"
#include "Metadata/MetadataSetOwner.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionDictionary.h"
#include "Packs/PrimerPack.h"
#include "Types/Collection.h"
#include "Types/LocalTag.h"
#include "Types/SimpleDataType.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MetadataSetTest
{
using KLVTest::Bytes;
using KLVTest::cat;
using KLVTest::n;
using KLVTest::Thrown;
using KLVTest::thrown;
using KLVTest::thrownBy;
using KLVTest::w;

// The built-in dictionary, made once for all tests.
inline Templates::SharedPtr<MetaMetadata::Dictionary> standardDictionary()
{
    static Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    return dictionary;
}

inline std::string nameOf(MetaMetadata::MetaElement const * element)
{
    if (element == nullptr)
        return "<unknown>";
    try
    {
        return n(element->getProperty(w("name").c_str()));
    }
    catch (Exceptions::BaseException const &)
    {
        return "<unknown>";
    }
}

// Owns sets, records every announcement as "<kind> <element name>", finds sets by instance UID.
class TestOwner : public Metadata::MetadataSetOwner
{
public:
    explicit TestOwner(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = standardDictionary(),
                       Packs::PrimerPack * primer = nullptr)
        : dictionary_(dictionary, Templates::auto_ptr<Packs::PrimerPack>(primer != nullptr ? primer : new Packs::PrimerPack))
    {
    }
    ~TestOwner() override
    {
        for (Metadata::MetadataSet * set : sets)
            delete set;
    }

    void addedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const * element, Metadata::Element &,
                      Types::BaseType &) override
    {
        events.push_back("added " + nameOf(element));
    }
    void updatedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const * element, Metadata::Element &,
                        Types::Collection const &, Types::Collection &) override
    {
        events.push_back("updated " + nameOf(element));
    }
    void updatedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const * element, Metadata::Element &,
                        Types::SimpleDataType const &, Types::SimpleDataType &) override
    {
        events.push_back("updated " + nameOf(element));
    }
    void updatedElementCollection(Metadata::MetadataSet &, MetaMetadata::MetaElement const * element,
                                  Metadata::Element &, Types::Collection const &, unsigned int,
                                  Types::BaseType *) override
    {
        events.push_back("member " + nameOf(element));
    }
    void removedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const * element, Metadata::Element &,
                        Types::BaseType const &) override
    {
        events.push_back("removed " + nameOf(element));
    }
    void metadataSetCloned(Metadata::MetadataSet const & source, Metadata::MetadataSet & clone, bool deep) override
    {
        events.push_back(deep ? "cloned deep" : "cloned");
        clones.push_back(std::make_pair(&source, &clone));
        sets.push_back(&clone);
    }
    // Only look-ups by instance UID are needed here.
    Templates::vector<Metadata::MetadataSet *> find(Types::UniversalLabel const & label,
                                                    Types::SimpleDataType const & value) const override
    {
        Templates::vector<Metadata::MetadataSet *> found;
        if (label != Metadata::MetadataULs::instanceUID())
            return found;
        for (Metadata::MetadataSet * set : sets)
        {
            Types::UUID const * uid = set->instanceUID();
            if (uid != nullptr && value.serializedSize() == Types::UUID::SIZE &&
                std::equal(uid->rawBuffer(), uid->rawBuffer() + Types::UUID::SIZE, value.rawBuffer()))
                found.push_back(set);
        }
        return found;
    }
    Metadata::PartitionDictionary const & partitionDictionary() const override { return dictionary_; }
    Metadata::PartitionDictionary & partitionDictionary() override { return dictionary_; }

    // Takes a set over, so that find() sees it.
    Metadata::MetadataSet * adopt(Metadata::MetadataSet * set)
    {
        sets.push_back(set);
        return set;
    }

    std::vector<std::string> events;
    std::vector<Metadata::MetadataSet *> sets;
    std::vector<std::pair<Metadata::MetadataSet const *, Metadata::MetadataSet *>> clones;

private:
    Metadata::PartitionDictionary dictionary_;
};

inline Bytes bytesOf(Types::SimpleDataType const & value)
{
    return Bytes(value.rawBuffer(), value.rawBuffer() + value.serializedSize());
}

inline Bytes bytesOf(KLV::Key const & key)
{
    return Bytes(key.rawBuffer(), key.rawBuffer() + KLV::Key::SIZE);
}

// One local item with a two-byte length.
inline Bytes item(unsigned short tag, Bytes const & value)
{
    Bytes out;
    out.push_back(static_cast<unsigned char>(tag >> 8));
    out.push_back(static_cast<unsigned char>(tag));
    out.push_back(static_cast<unsigned char>(value.size() >> 8));
    out.push_back(static_cast<unsigned char>(value.size()));
    return cat(out, value);
}

// A whole set packet.
inline Bytes setPacket(KLV::Key const & key, Bytes const & items, unsigned berLength = 4)
{
    return KLVTest::packet(bytesOf(key), items, berLength);
}

inline Bytes uuidBytes(unsigned char first)
{
    Bytes out(16);
    for (unsigned i = 0; i < 16; ++i)
        out[i] = static_cast<unsigned char>(first + i);
    return out;
}

// Reads the first packet of `bytes` and parses it into a set made as the partition metadata
// does: by the dictionary's description, or as a dark parsed group for an unknown key.
inline std::unique_ptr<Metadata::MetadataSet> parseSet(Bytes const & bytes, Metadata::PartitionDictionary const & dictionary,
                                                       Metadata::MetadataSetOwner * owner, bool strict = true)
{
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
    MetaMetadata::MetaMetadataSet const * description = dictionary.dictionary()->find(packet->key());
    std::unique_ptr<Metadata::MetadataSet> set(
        description != nullptr ? Metadata::MetadataSetFactory::instance().create(packet->key(), description, owner)
                               : new Metadata::DarkParsedGroup(packet->key(), owner));
    set->load(*packet, dictionary, strict);
    return set;
}

inline Bytes serialized(Metadata::MetadataSet const & set, Metadata::PartitionDictionary const & dictionary,
                        bool includeInvalid)
{
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink, dictionary, includeInvalid);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

// The label that the dictionary gives a static tag.
inline Types::UniversalLabel labelOfTag(unsigned short tag)
{
    Types::UniversalLabel const * label = standardDictionary()->find(Types::LocalTag(tag));
    return label != nullptr ? *label : Types::UniversalLabel();
}
} // namespace MetadataSetTest
} // namespace Vellum
