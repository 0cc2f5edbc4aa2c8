// Metadata sets: construction from the schema, parsing of local items and the resolution of their
// tags, invalid elements, writing back in label order, the instance UID.

#include <gtest/gtest.h>

#include <algorithm>

#include "Metadata/BatchElement.h"
#include "Metadata/DMS1/DMS1MetadataULs.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSetTestSupport.h"
#include "Support/ThrownCompare.h"
#include "Metadata/MetadataSetVisitor.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Types/Timestamp.h"
#include "Types/UMID.h"
#include "Types/Unknown.h"
#include "Types/Visitors.h"

using namespace Vellum;
using namespace Vellum::MetadataSetTest;
namespace Keys = Vellum::Metadata::Structural::StructuralMetadataKeys;
namespace ULs = Vellum::Metadata::Structural::StructuralMetadataULs;

namespace
{
// Static tags of the Identification set.
unsigned short const companyNameTag = 0x3c01;
unsigned short const productNameTag = 0x3c02;
unsigned short const productUIDTag = 0x3c05;
unsigned short const modificationDateTag = 0x3c06;
unsigned short const thisGenerationTag = 0x3c09;
unsigned short const instanceUIDTag = 0x3c0a;
// A Preface's LastModifiedDate: a Timestamp that Identification does not hold.
unsigned short const lastModifiedDateTag = 0x3b02;

Bytes utf16(char const * text)
{
    Bytes out;
    for (char const * c = text; *c != 0; ++c)
    {
        out.push_back(0);
        out.push_back(static_cast<unsigned char>(*c));
    }
    return out;
}

Bytes timestampBytes() { return Bytes{0x07, 0xe8, 0x03, 0x1f, 0x0c, 0x22, 0x38, 0x02}; }

MetaMetadata::MetaMetadataSet const & description(KLV::Key const & key)
{
    MetaMetadata::MetaMetadataSet const * set = standardDictionary()->find(key);
    if (set == nullptr)
        throw std::runtime_error("no description for a structural key");
    return *set;
}

Types::UniversalLabel labelOf(unsigned char last)
{
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01,
                               0x0e, 0x7e, 0x00, 0x00, 0x00, 0x00, 0x00, last};
    return Types::UniversalLabel(bytes);
}

KLV::Key unknownSetKey(unsigned char byte5 = 0x53)
{
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, byte5, 0x01, 0x01,
                               0x0e, 0x7e, 0x01, 0x00, 0x00, 0x00, 0x00, 0x01};
    return KLV::Key(bytes);
}

// The attribute of an element, classified.
struct AttributeKind : MetaMetadata::AbstractMetaAttributeVisitor
{
    std::string kind;
    int reason = -1;
    unsigned short tag = 0;
    void visit(MetaMetadata::UnknownAttribute const & a) override
    {
        kind = "unknown";
        reason = a.reason();
        tag = a.localTag().value();
    }
    void visit(MetaMetadata::MisplacedAttribute const &) override { kind = "misplaced"; }
    void visit(MetaMetadata::MetaAttribute const &) override { kind = "meta"; }
};

AttributeKind kindOf(Metadata::Element const & element)
{
    AttributeKind kind;
    element.metaAttribute()->accept(kind);
    return kind;
}

Types::SimpleDataType const * simpleValue(Metadata::Element const & element)
{
    Metadata::Visitors::GetElementVisitor<Metadata::SimpleElement> simple;
    element.accept(simple);
    return simple.value() == nullptr ? nullptr : simple.value()->value();
}

// Adds the static tags of `tags` to the owner's Primer, as a file would list them.
void listInPrimer(TestOwner & owner, std::vector<unsigned short> const & tags)
{
    for (unsigned short tag : tags)
        owner.partitionDictionary().primer().add(Types::LocalTag(tag), labelOfTag(tag));
}
} // namespace

TEST(MetadataSet, HasAnEmptyElementForEachAttributeOfItsDescription)
{
    MetaMetadata::MetaMetadataSet const & identification = description(Keys::identification());
    Metadata::MetadataSet set(Keys::identification(), &identification, nullptr);
    EXPECT_EQ(identification.metaAttributeCount(), set.size());
    MetaMetadata::MetaMetadataSet::const_iterator attribute = identification.metaAttributesBegin();
    for (Metadata::MetadataSet::const_iterator it = set.begin(); it != set.end(); ++it, ++attribute)
    {
        ASSERT_TRUE(attribute != identification.metaAttributesEnd());
        EXPECT_EQ(attribute->first, it->first);
        EXPECT_TRUE(it->second->empty());
        EXPECT_EQ(attribute->second.get(), it->second->metaAttribute().get());
        EXPECT_EQ(&set, &it->second->metadataSet());
    }
    EXPECT_EQ(&set.find(ULs::companyName()), &static_cast<Metadata::MetadataSet const &>(set).find(ULs::companyName()));
    EXPECT_EQ(nullptr, set.instanceUID());
    EXPECT_EQ(thrown<Exceptions::NotFound>("No element with this Universal Label was found: " +
                                           n(ULs::packages().toString(Types::TypeDefault))),
              thrownBy([&] { set.find(ULs::packages()); }));
    EXPECT_EQ(thrown<Exceptions::InvalidMetadataSet>("MetadataSet Key and MetaMetadataSet do not agree"),
              thrownBy([] { Metadata::MetadataSet other(Keys::preface(), &description(Keys::identification()), nullptr); }));

    // Without a description: no elements, and nothing but the key and length is written.
    Metadata::MetadataSet bare(unknownSetKey(), nullptr, nullptr);
    EXPECT_TRUE(bare.begin() == bare.end());
    EXPECT_EQ(Exceptions::NotFound::ERROR_CODE, thrownBy([&] { bare.find(ULs::instanceUID()); }).code);
    EXPECT_EQ(nullptr, bare.instanceUID());
    EXPECT_EQ(20u, bare.serializedSize(true));
}

TEST(MetadataSet, AnEmptyPacketLeavesEveryElementEmpty)
{
    TestOwner owner;
    Bytes packet = setPacket(Keys::identification(), Bytes(), 4);
    std::unique_ptr<Metadata::MetadataSet> set = parseSet(packet, owner.partitionDictionary(), &owner);
    for (Metadata::MetadataSet::const_iterator it = set->begin(); it != set->end(); ++it)
        EXPECT_TRUE(it->second->empty());
    EXPECT_TRUE(owner.events.empty());
    EXPECT_EQ(packet, serialized(*set, owner.partitionDictionary(), true));
}

TEST(MetadataSet, ItemsReadInAnyOrderAreWrittenInLabelOrder)
{
    TestOwner owner;
    std::vector<unsigned short> tags = {instanceUIDTag, companyNameTag, productNameTag, productUIDTag,
                                        modificationDateTag, thisGenerationTag};
    listInPrimer(owner, tags);
    std::map<unsigned short, Bytes> values = {{instanceUIDTag, uuidBytes(0x10)},
                                              {companyNameTag, utf16("Acme")},
                                              {productNameTag, utf16("Vellum")},
                                              {productUIDTag, uuidBytes(0x40)},
                                              {modificationDateTag, timestampBytes()},
                                              {thisGenerationTag, uuidBytes(0x70)}};
    // Descending label order in the file.
    std::sort(tags.begin(), tags.end(), [](unsigned short a, unsigned short b) { return labelOfTag(b) < labelOfTag(a); });
    Bytes items;
    for (unsigned short tag : tags)
        items = cat(items, item(tag, values[tag]));
    std::unique_ptr<Metadata::MetadataSet> set =
        parseSet(setPacket(Keys::identification(), items), owner.partitionDictionary(), &owner);

    EXPECT_EQ(0u, set->invalidSize());
    EXPECT_EQ(6u, owner.events.size());
    ASSERT_NE(nullptr, set->instanceUID());
    EXPECT_EQ(uuidBytes(0x10), bytesOf(*set->instanceUID()));

    std::reverse(tags.begin(), tags.end());
    Bytes ascending;
    for (unsigned short tag : tags)
        ascending = cat(ascending, item(tag, values[tag]));
    Bytes expected = setPacket(Keys::identification(), ascending, 4);
    EXPECT_EQ(expected, serialized(*set, owner.partitionDictionary(), false));
    EXPECT_EQ(expected.size(), set->serializedSize(true));
}

TEST(MetadataSet, KeepsTheWidthOfTheLengthField)
{
    TestOwner owner;
    listInPrimer(owner, {companyNameTag});
    Bytes items = item(companyNameTag, utf16("Acme"));
    Bytes shortForm = setPacket(Keys::identification(), items, 1);
    std::unique_ptr<Metadata::MetadataSet> set = parseSet(shortForm, owner.partitionDictionary(), &owner);
    EXPECT_EQ(shortForm, serialized(*set, owner.partitionDictionary(), true));
    set->berLength(4);
    EXPECT_EQ(setPacket(Keys::identification(), items, 4), serialized(*set, owner.partitionDictionary(), true));
    EXPECT_EQ(shortForm.size() + 3, set->serializedSize(true));
}

TEST(MetadataSet, ItemsWithOneAndFourByteLengths)
{
    TestOwner owner;
    owner.partitionDictionary().primer().add(Types::LocalTag(0x8001), labelOf(1));
    owner.partitionDictionary().primer().add(Types::LocalTag(0x8002), labelOf(2));
    // One-byte lengths (0x33), then four-byte lengths (0x73); both keys are unknown to the schema.
    Bytes oneByte = {0x80, 0x01, 0x02, 0xaa, 0xbb, 0x80, 0x02, 0x00};
    Bytes packet = setPacket(unknownSetKey(0x33), oneByte);
    std::unique_ptr<Metadata::MetadataSet> set = parseSet(packet, owner.partitionDictionary(), &owner);
    ASSERT_EQ(2u, set->invalidSize());
    EXPECT_EQ(Bytes({0xaa, 0xbb}), bytesOf(*simpleValue(*set->invalidBegin()[0])));
    EXPECT_EQ(packet, serialized(*set, owner.partitionDictionary(), true));

    Bytes fourBytes = {0x80, 0x01, 0x00, 0x00, 0x00, 0x03, 0x01, 0x02, 0x03};
    packet = setPacket(unknownSetKey(0x73), fourBytes);
    set = parseSet(packet, owner.partitionDictionary(), &owner);
    ASSERT_EQ(1u, set->invalidSize());
    EXPECT_EQ(Bytes({0x01, 0x02, 0x03}), bytesOf(*simpleValue(*set->invalidBegin()[0])));
    EXPECT_EQ(packet, serialized(*set, owner.partitionDictionary(), true));
    EXPECT_EQ(packet.size(), set->serializedSize(true));
}

TEST(MetadataSet, RefusesKeysWithoutTwoByteTagsOrAUsableLengthWidth)
{
    TestOwner owner;
    for (unsigned char byte5 : {0x43, 0x13})
        EXPECT_EQ(thrown<Exceptions::InvalidMetadataSet>("Invalid Metadata Set local field length or length field length"),
                  thrownBy([&] { parseSet(setPacket(unknownSetKey(byte5), Bytes()), owner.partitionDictionary(), &owner); }))
            << int(byte5);
}

TEST(MetadataSet, AValueOfAnotherSetIsKeptTypedAsMisplaced)
{
    TestOwner owner;
    listInPrimer(owner, {companyNameTag});
    owner.partitionDictionary().primer().add(Types::LocalTag(0x8001), labelOfTag(lastModifiedDateTag));
    Bytes valid = item(companyNameTag, utf16("Acme"));
    Bytes misplaced = item(0x8001, timestampBytes());
    std::unique_ptr<Metadata::MetadataSet> set =
        parseSet(setPacket(Keys::identification(), cat(misplaced, valid)), owner.partitionDictionary(), &owner);

    ASSERT_EQ(1u, set->invalidSize());
    Metadata::Element const & element = *set->invalidBegin()[0];
    EXPECT_EQ("misplaced", kindOf(element).kind);
    ASSERT_NE(nullptr, simpleValue(element));
    EXPECT_NE(nullptr, Types::Visitors::getAs<Types::Timestamp>(*simpleValue(element)));

    // Written behind the valid items, with the Primer's tag; only when asked for.
    EXPECT_EQ(setPacket(Keys::identification(), cat(valid, misplaced)), serialized(*set, owner.partitionDictionary(), true));
    EXPECT_EQ(setPacket(Keys::identification(), valid), serialized(*set, owner.partitionDictionary(), false));
    EXPECT_EQ(20u + valid.size(), set->serializedSize(false));
}

TEST(MetadataSet, TagsThatResolveToNothingAreKeptWithTheirReason)
{
    TestOwner owner;
    Packs::PrimerPack & primer = owner.partitionDictionary().primer();
    primer.add(Types::LocalTag(0x8002), labelOf(2));       // a label the dictionary does not know
    primer.add(Types::LocalTag(0x7f7f), labelOf(3));       // a static tag the dictionary does not know
    primer.add(Types::LocalTag(0x3c02), labelOf(4));       // a static tag redefined to an unknown label
    primer.add(Types::LocalTag(0x8003), labelOfTag(lastModifiedDateTag));

    struct Case
    {
        unsigned short tag;
        Bytes value;
        int reason;
    };
    std::vector<Case> cases = {
        {0x0000, Bytes{1}, MetaMetadata::UnknownAttribute::InvalidLocalTagReason},
        {0x8005, Bytes{2, 2}, MetaMetadata::UnknownAttribute::NotFoundInPrimerReason},
        {0x7f7e, Bytes{3}, MetaMetadata::UnknownAttribute::NotFoundInPrimerReason},
        {0x7f7f, Bytes{4}, MetaMetadata::UnknownAttribute::LocalTagNotFoundReason},
        {0x3c02, Bytes{5, 5}, MetaMetadata::UnknownAttribute::LabelCollisionReason},
        {0x8002, Bytes{6}, MetaMetadata::UnknownAttribute::NotInDictionaryReason},
        // A Timestamp of three bytes: the bytes that were read are kept.
        {0x8003, Bytes{7, 7, 7}, MetaMetadata::UnknownAttribute::InvalidLengthReason},
    };
    Bytes items;
    for (Case const & c : cases)
        items = cat(items, item(c.tag, c.value));
    Bytes packet = setPacket(Keys::identification(), items);
    std::unique_ptr<Metadata::MetadataSet> set = parseSet(packet, owner.partitionDictionary(), &owner);

    ASSERT_EQ(cases.size(), set->invalidSize());
    for (std::size_t i = 0; i < cases.size(); ++i)
    {
        Metadata::Element const & element = *set->invalidBegin()[i];
        AttributeKind kind = kindOf(element);
        EXPECT_EQ("unknown", kind.kind) << i;
        EXPECT_EQ(cases[i].reason, kind.reason) << i;
        EXPECT_EQ(cases[i].tag, kind.tag) << i;
        ASSERT_NE(nullptr, simpleValue(element)) << i;
        EXPECT_NE(nullptr, Types::Visitors::getAs<Types::Unknown>(*simpleValue(element))) << i;
        EXPECT_EQ(cases[i].value, bytesOf(*simpleValue(element))) << i;
    }
    for (Metadata::MetadataSet::const_iterator it = set->begin(); it != set->end(); ++it)
        EXPECT_TRUE(it->second->empty());
    // Each is written back as it was read, tag included.
    EXPECT_EQ(packet, serialized(*set, owner.partitionDictionary(), true));
    EXPECT_EQ(setPacket(Keys::identification(), Bytes()), serialized(*set, owner.partitionDictionary(), false));
}

TEST(MetadataSet, StaticTagsResolveBeyondTheStrictPrimer)
{
    TestOwner owner;
    // The Primer does not list 3C01, and redefines 3C05 to the label of ProductName.
    owner.partitionDictionary().primer().add(Types::LocalTag(productUIDTag), labelOfTag(productNameTag));
    Bytes items = cat(item(companyNameTag, utf16("Acme")), item(productUIDTag, utf16("Vellum")));
    std::unique_ptr<Metadata::MetadataSet> set =
        parseSet(setPacket(Keys::identification(), items), owner.partitionDictionary(), &owner);
    EXPECT_EQ(0u, set->invalidSize());
    EXPECT_FALSE(set->find(ULs::companyName()).empty());
    ASSERT_NE(nullptr, simpleValue(set->find(ULs::productName())));
    EXPECT_EQ(utf16("Vellum"), bytesOf(*simpleValue(set->find(ULs::productName()))));
    EXPECT_TRUE(set->find(ULs::productUID()).empty());

    // A relaxed parse needs no retry for the same result.
    std::unique_ptr<Metadata::MetadataSet> relaxed =
        parseSet(setPacket(Keys::identification(), items), owner.partitionDictionary(), &owner, false);
    EXPECT_EQ(0u, relaxed->invalidSize());
    EXPECT_FALSE(relaxed->find(ULs::productName()).empty());
}

TEST(MetadataSet, TheLastOfTwoItemsWithOneTagWins)
{
    TestOwner owner;
    listInPrimer(owner, {companyNameTag});
    Bytes items = cat(item(companyNameTag, utf16("First")), item(companyNameTag, utf16("Second")));
    std::unique_ptr<Metadata::MetadataSet> set =
        parseSet(setPacket(Keys::identification(), items), owner.partitionDictionary(), &owner);
    EXPECT_EQ(setPacket(Keys::identification(), item(companyNameTag, utf16("Second"))),
              serialized(*set, owner.partitionDictionary(), true));
}

TEST(MetadataSet, AnItemTooShortForItsTypeStopsTheLoad)
{
    TestOwner owner;
    listInPrimer(owner, {modificationDateTag});
    // Too short for its type, running past the end of the set, a tag cut short.
    for (Bytes const & items : {item(modificationDateTag, Bytes{1, 2, 3}), Bytes{0x3c, 0x01, 0x00, 0x10, 0x00, 0x41},
                                Bytes{0x3c}})
        EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE,
                  thrownBy([&] { parseSet(setPacket(Keys::identification(), items), owner.partitionDictionary(), &owner); }).code);
}

TEST(MetadataSet, AnInvalidItemThatOverrunsTheSetKeepsWhatWasThere)
{
    TestOwner owner;
    // Claims 0x100 bytes where only 3 follow; the first item stays as read.
    Bytes packet = setPacket(unknownSetKey(), cat(item(0x8005, Bytes{9}), Bytes{0x80, 0x06, 0x01, 0x00, 0xa, 0xb, 0xc}));
    std::unique_ptr<Metadata::MetadataSet> set = parseSet(packet, owner.partitionDictionary(), &owner);
    ASSERT_EQ(2u, set->invalidSize());
    EXPECT_EQ(MetaMetadata::UnknownAttribute::NotFoundInPrimerReason, kindOf(*set->invalidBegin()[0]).reason);
    EXPECT_EQ(MetaMetadata::UnknownAttribute::InvalidLengthReason, kindOf(*set->invalidBegin()[1]).reason);
    EXPECT_EQ(Bytes({0xa, 0xb, 0xc}), bytesOf(*simpleValue(*set->invalidBegin()[1])));
}

TEST(MetadataSet, ExtendedClipIDOfABasicUMIDIsWidened)
{
    // The DMS-1 set that holds the Extended Clip ID.
    MetaMetadata::Dictionary const & dictionary = *standardDictionary();
    KLV::Key const * key = nullptr;
    for (MetaMetadata::Dictionary::KeyToMetaMetadataSet::const_iterator it = dictionary.metaMetadataSetBegin();
         it != dictionary.metaMetadataSetEnd() && key == nullptr; ++it)
        if (it->second.findMetaAttribute(Metadata::DMS1::DMS1MetadataULs::extendedClipID()).get() != nullptr)
            key = &it->first;
    ASSERT_NE(nullptr, key);

    TestOwner owner;
    owner.partitionDictionary().primer().add(Types::LocalTag(0x8010), Metadata::DMS1::DMS1MetadataULs::extendedClipID());
    Bytes basic(32);
    for (unsigned i = 0; i < 32; ++i)
        basic[i] = static_cast<unsigned char>(0xa0 + i);
    std::unique_ptr<Metadata::MetadataSet> set = parseSet(setPacket(*key, item(0x8010, basic)), owner.partitionDictionary(), &owner);
    Types::SimpleDataType const * value = simpleValue(set->find(Metadata::DMS1::DMS1MetadataULs::extendedClipID()));
    ASSERT_NE(nullptr, value);
    Bytes widened = basic;
    widened.resize(64, 0);
    EXPECT_EQ(widened, bytesOf(*value));
    EXPECT_EQ(setPacket(*key, item(0x8010, widened)), serialized(*set, owner.partitionDictionary(), true));

    // A longer item loads its first 64 bytes.
    Bytes longer = widened;
    longer.resize(70, 0xee);
    set = parseSet(setPacket(*key, item(0x8010, longer)), owner.partitionDictionary(), &owner);
    EXPECT_EQ(widened, bytesOf(*simpleValue(set->find(Metadata::DMS1::DMS1MetadataULs::extendedClipID()))));
}

TEST(MetadataSet, ASetUnknownToTheSchemaWritesItsItemsOnlyAsInvalid)
{
    TestOwner owner;
    owner.partitionDictionary().primer().add(Types::LocalTag(0x8001), labelOf(1));
    listInPrimer(owner, {companyNameTag, instanceUIDTag});
    Bytes items = cat(cat(item(0x8001, Bytes{1, 2, 3}), item(companyNameTag, utf16("Acme"))),
                      item(instanceUIDTag, uuidBytes(0x30)));
    Bytes packet = setPacket(unknownSetKey(), items);
    std::unique_ptr<Metadata::MetadataSet> set = parseSet(packet, owner.partitionDictionary(), &owner);
    EXPECT_EQ(0u, set->size());
    ASSERT_EQ(3u, set->invalidSize());
    EXPECT_EQ("unknown", kindOf(*set->invalidBegin()[0]).kind);
    EXPECT_EQ("misplaced", kindOf(*set->invalidBegin()[1]).kind);
    EXPECT_EQ("misplaced", kindOf(*set->invalidBegin()[2]).kind);

    // The instance UID comes from the invalid list.
    ASSERT_NE(nullptr, set->instanceUID());
    EXPECT_EQ(uuidBytes(0x30), bytesOf(*set->instanceUID()));

    EXPECT_EQ(packet, serialized(*set, owner.partitionDictionary(), true));
    EXPECT_EQ(setPacket(unknownSetKey(), Bytes(), 4), serialized(*set, owner.partitionDictionary(), false));
    EXPECT_EQ(packet.size(), set->serializedSize(true));
}

TEST(MetadataSet, InstanceUIDOnlyFromAUUIDOfThatLabel)
{
    TestOwner owner;
    // An instance UID item too short for a UUID is unknown, and gives no instance UID.
    listInPrimer(owner, {instanceUIDTag});
    std::unique_ptr<Metadata::MetadataSet> set =
        parseSet(setPacket(unknownSetKey(), item(instanceUIDTag, Bytes{1, 2, 3})), owner.partitionDictionary(), &owner);
    ASSERT_EQ(1u, set->invalidSize());
    EXPECT_EQ(MetaMetadata::UnknownAttribute::InvalidLengthReason, kindOf(*set->invalidBegin()[0]).reason);
    EXPECT_EQ(nullptr, set->instanceUID());

    // The valid element comes before the invalid list.
    Metadata::MetadataSet identification(Keys::identification(), &description(Keys::identification()), nullptr);
    EXPECT_EQ(nullptr, identification.instanceUID());
    Metadata::SimpleElement & uid = static_cast<Metadata::SimpleElement &>(identification.find(ULs::instanceUID()));
    uid.set(Templates::auto_ptr<Types::SimpleDataType>(new Types::UUID(uuidBytes(5).data())), false);
    ASSERT_NE(nullptr, identification.instanceUID());
    EXPECT_EQ(uuidBytes(5), bytesOf(*identification.instanceUID()));
}

TEST(MetadataSet, InvalidElementsCanBeAddedAndRemoved)
{
    TestOwner owner;
    Metadata::MetadataSet set(Keys::identification(), &description(Keys::identification()), &owner);
    Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> attribute(
        new MetaMetadata::UnknownAttribute(Types::LocalTag(0x8009), MetaMetadata::UnknownAttribute::NotInDictionaryReason));
    Metadata::Element * first = set.createInvalidElement(attribute);
    Metadata::Element * second = set.createInvalidElement(attribute);
    ASSERT_EQ(2u, set.invalidSize());
    EXPECT_EQ(first, set.invalidBegin()[0]);
    // Empty invalid elements are not written.
    EXPECT_EQ(20u, set.serializedSize(true));

    set.removedInvalidElement(first);
    ASSERT_EQ(1u, set.invalidSize());
    EXPECT_EQ(second, set.invalidBegin()[0]);
    EXPECT_EQ(thrown<Exceptions::NotFound>("Element not found in Invalid Element list!"),
              thrownBy([&] { set.removedInvalidElement(first); }));
    EXPECT_EQ(1u, set.invalidSize());
}

TEST(MetadataSet, AcceptsSetVisitorsAsAPlainSet)
{
    struct Seen : Metadata::Visitors::NullMetadataSetVisitor
    {
        using Metadata::Visitors::NullMetadataSetVisitor::visit;
        void visit(Metadata::MetadataSet const & set) override { seen = &set; }
        Metadata::MetadataSet const * seen = nullptr;
    };
    Metadata::MetadataSet set(unknownSetKey(), nullptr, nullptr);
    Seen visitor;
    static_cast<Metadata::MetadataSet const &>(set).accept(visitor);
    EXPECT_EQ(&set, visitor.seen);
}

TEST(MetadataSet, AnEmptyCollectionIsWrittenWithLengthZeroAndReadsBack)
{
    TestOwner owner;
    unsigned short const dmSchemesTag = 0x3b0b;
    listInPrimer(owner, {dmSchemesTag});
    Types::UniversalLabel const dmSchemes = labelOfTag(dmSchemesTag);
    Bytes counted = item(dmSchemesTag, Bytes{0, 0, 0, 0, 0, 0, 0, 16});
    Bytes bare = item(dmSchemesTag, Bytes());
    for (Bytes const & items : {counted, bare})
    {
        std::unique_ptr<Metadata::MetadataSet> set =
            parseSet(setPacket(Keys::preface(), items), owner.partitionDictionary(), &owner);
        Metadata::Visitors::GetElementVisitor<Metadata::BatchElement> batch;
        set->find(dmSchemes).accept(batch);
        ASSERT_NE(nullptr, batch.value());
        EXPECT_EQ(0, batch.value()->size());
        EXPECT_EQ(setPacket(Keys::preface(), bare), serialized(*set, owner.partitionDictionary(), true));
    }
}

TEST(MetadataSet, AShortLengthFieldWidensWhenTheItemsOutgrowIt)
{
    TestOwner owner;
    listInPrimer(owner, {companyNameTag, productNameTag});
    Bytes small = item(companyNameTag, utf16("Acme"));
    std::unique_ptr<Metadata::MetadataSet> set =
        parseSet(setPacket(Keys::identification(), small, 1), owner.partitionDictionary(), &owner);
    ASSERT_EQ(1, set->berLength());

    // 200 bytes of product name: the items no longer fit a one-byte length.
    std::string longName(100, 'x');
    Bytes name = utf16(longName.c_str());
    Bytes nameValue = name;
    DataIO::Memory::MemoryDataSource source(nameValue.data(), nameValue.size());
    KLV::Value value(source, nameValue.size());
    set->find(ULs::productName()).load(value);
    Bytes items = cat(small, item(productNameTag, name));
    ASSERT_GT(items.size(), 0x7fu);
    EXPECT_EQ(setPacket(Keys::identification(), items, 2), serialized(*set, owner.partitionDictionary(), true));
    // Without the long item, the set's own width is used again.
    Metadata::SimpleElement & productName = static_cast<Metadata::SimpleElement &>(set->find(ULs::productName()));
    productName.set(Templates::auto_ptr<Types::SimpleDataType>(), true);
    EXPECT_EQ(setPacket(Keys::identification(), small, 1), serialized(*set, owner.partitionDictionary(), true));
}
