// Dark metadata sets keep a packet whole; the set factory chooses the class of a set by its key.

#include <gtest/gtest.h>

#include "Metadata/DarkMetadataSet.h"
#include "Metadata/MetadataSetTestSupport.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Types/Unknown.h"

using namespace Vellum;
using namespace Vellum::MetadataSetTest;

namespace
{
KLV::Key darkKey()
{
    // Byte 5 of 0x13: no usable length field inside; a private key of this kind.
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x13, 0x01, 0x01,
                               0x0e, 0x7c, 0x01, 0x00, 0x00, 0x00, 0x00, 0x01};
    return KLV::Key(bytes);
}

Bytes serializedDark(Metadata::DarkMetadataSet const & set)
{
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

// A set class of a test creator, which counts what it makes.
class MarkedSet : public Metadata::MetadataSet
{
public:
    MarkedSet(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * description, Metadata::MetadataSetOwner * owner)
        : Metadata::MetadataSet(key, description, owner)
    {
        ++made;
    }
    static int made;
};
int MarkedSet::made = 0;

Metadata::MetadataSet * makeMarked(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * description,
                                   Metadata::MetadataSetOwner * owner)
{
    return new MarkedSet(key, description, owner);
}
} // namespace

TEST(DarkMetadataSet, KeepsThePacketAsItWas)
{
    Bytes value = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (unsigned berLength : {1u, 4u, 8u})
    {
        Bytes packet = KLVTest::packet(bytesOf(darkKey()), value, berLength);
        DataIO::Memory::MemoryDataSource source(packet.data(), packet.size());
        KLV::Reader reader(source);
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> read = reader.nextKLV(skipped, 0);
        Metadata::DarkMetadataSet set(*read);
        EXPECT_EQ(darkKey(), set.key());
        EXPECT_EQ(berLength, set.berLength());
        EXPECT_EQ(value, bytesOf(set.value()));
        EXPECT_EQ(packet, serializedDark(set));
        EXPECT_EQ(packet.size(), set.serializedSize());
    }
}

TEST(DarkMetadataSet, FromKeyWidthAndValue)
{
    Bytes value = {0xaa, 0xbb, 0xcc};
    DataIO::Memory::MemoryDataSource source(value.data(), value.size());
    KLV::Value klvValue(source, value.size());
    Metadata::DarkMetadataSet set(darkKey(), 2, klvValue);
    EXPECT_EQ(cat(bytesOf(darkKey()), Bytes{0x81, 0x03, 0xaa, 0xbb, 0xcc}), serializedDark(set));
    EXPECT_EQ(21u, set.serializedSize());

    // A new value, and none.
    unsigned char longer[200] = {0};
    longer[199] = 0x5a;
    set.value(Templates::auto_ptr<Types::Unknown>(new Types::Unknown(longer, sizeof longer)));
    Bytes written = serializedDark(set);
    ASSERT_EQ(16u + 2 + 200, written.size());
    EXPECT_EQ(Bytes({0x81, 200}), Bytes(written.begin() + 16, written.begin() + 18));
    EXPECT_EQ(0x5a, written.back());
    set.value(Templates::auto_ptr<Types::Unknown>());
    EXPECT_EQ(cat(bytesOf(darkKey()), Bytes{0x81, 0x00}), serializedDark(set));
}

TEST(DarkMetadataSet, AValueCutShortThrows)
{
    // The packet claims more than the source holds.
    Bytes packet = cat(bytesOf(darkKey()), Bytes{0x10, 1, 2, 3});
    DataIO::Memory::MemoryDataSource source(packet.data(), packet.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> read = reader.nextKLV(skipped, 0);
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, thrownBy([&] { Metadata::DarkMetadataSet set(*read); }).code);
}

TEST(MetadataSetFactory, MakesPlainSetsUnlessACreatorIsRegistered)
{
    Metadata::MetadataSetFactory & factory = Metadata::MetadataSetFactory::instance();
    KLV::Key key = darkKey();
    key[15] = 0x77;
    TestOwner owner;

    std::unique_ptr<Metadata::MetadataSet> plain(factory.create(key, nullptr, &owner));
    EXPECT_EQ(key, plain->key());
    EXPECT_EQ(&owner, plain->owner());

    int before = MarkedSet::made;
    EXPECT_TRUE(factory.registerCreator(key, &makeMarked));
    std::unique_ptr<Metadata::MetadataSet> marked(factory.create(key, nullptr, &owner));
    EXPECT_EQ(before + 1, MarkedSet::made);
    EXPECT_NE(nullptr, dynamic_cast<MarkedSet *>(marked.get()));
    EXPECT_EQ(&owner, marked->owner());

    // Other keys are not affected; the description is passed on.
    KLV::Key const & identification = Metadata::Structural::StructuralMetadataKeys::identification();
    MetaMetadata::MetaMetadataSet const * description = standardDictionary()->find(identification);
    std::unique_ptr<Metadata::MetadataSet> other(factory.create(identification, description, nullptr));
    EXPECT_EQ(before + 1, MarkedSet::made);
    EXPECT_EQ(description, other->metaMetadataSet());
    EXPECT_EQ(description->metaAttributeCount(), other->size());

    // A key and a description that disagree throw through the factory too.
    EXPECT_EQ(Exceptions::InvalidMetadataSet::ERROR_CODE, thrownBy([&] { delete factory.create(key, description, nullptr); }).code);

    EXPECT_TRUE(factory.registerCreator(key, nullptr));
    std::unique_ptr<Metadata::MetadataSet> again(factory.create(key, nullptr, nullptr));
    EXPECT_EQ(before + 1, MarkedSet::made);
}
