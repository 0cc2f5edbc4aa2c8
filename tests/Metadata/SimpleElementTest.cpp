#include <gtest/gtest.h>

#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/ElementFactory.h"
#include "Metadata/ElementTestSupport.h"
#include "Support/ThrownCompare.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Types/Integers.h"
#include "Types/References.h"
#include "Types/UTF16String.h"
#include "Types/UUID.h"
#include "Types/Unknown.h"
#include "Types/Visitors.h"

using namespace Vellum;
using namespace Vellum::ElementTest;
using Metadata::SimpleElement;
using Types::Visitors::getAs;

namespace
{
typedef std::vector<std::string> Events;

Templates::auto_ptr<Types::SimpleDataType> u32(unsigned value)
{
    return Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt32(value));
}

Templates::auto_ptr<Types::SimpleDataType> u16(unsigned short value)
{
    return Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt16(value));
}

unsigned valueOf(SimpleElement const & element)
{
    return getAs<Types::UInt32>(*element.value())->value();
}

template <class T>
bool isA(Metadata::Element const & element)
{
    Metadata::Visitors::GetElementVisitor<T> visitor;
    element.accept(visitor);
    return visitor.value() == &element;
}

Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> unknownAttribute(unsigned short tag)
{
    return Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const>(
        new MetaMetadata::UnknownAttribute(Types::LocalTag(tag), MetaMetadata::UnknownAttribute::NotInDictionaryReason));
}

Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> misplaced(MetaMetadata::MetaElement const & element)
{
    return Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const>(new MetaMetadata::MisplacedAttribute(element));
}
} // namespace

TEST(ElementFactoryTest, ChoosesTheClassByTheSchema)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);

    // The classes over the built-in schema are checked with it; each visitor answers for its own
    // class alone.
    EXPECT_TRUE(isA<Metadata::BatchElement>(set.find(label(Labels))));
    EXPECT_FALSE(isA<Metadata::ArrayElement>(set.find(label(Labels))));
    EXPECT_FALSE(isA<Metadata::BatchReferenceElement>(set.find(label(Children))));
    EXPECT_FALSE(isA<SimpleElement>(set.find(label(Target))));
    EXPECT_TRUE(owner.events.empty());

    // An unknown attribute gives a simple element; a misplaced one the class of its element.
    Templates::auto_ptr<Metadata::Element> unknown(Metadata::ElementFactory::create(unknownAttribute(0x8123), set));
    EXPECT_TRUE(isA<SimpleElement>(*unknown));
    Templates::auto_ptr<Metadata::Element> batch(
        Metadata::ElementFactory::create(misplaced(schema.element(Links)), set));
    EXPECT_TRUE(isA<Metadata::BatchReferenceElement>(*batch));
    Templates::auto_ptr<Metadata::Element> reference(
        Metadata::ElementFactory::create(misplaced(schema.element(Target)), set));
    EXPECT_TRUE(isA<Metadata::ReferenceElement>(*reference));
    Templates::auto_ptr<Metadata::Element> array(Metadata::ElementFactory::create(
        schema.parent.findMetaAttribute(label(Numbers)), set));
    EXPECT_TRUE(isA<Metadata::ArrayElement>(*array));
    EXPECT_EQ(array->metaAttribute().get(), schema.parent.findMetaAttribute(label(Numbers)).get());
}

TEST(SimpleElementTest, SetChecksAnnouncesAndReplaces)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    SimpleElement & count = as<SimpleElement>(set, Count);

    count.set(u32(5));
    count.set(u32(6));
    EXPECT_EQ(owner.events, (Events{"added Count @-", "updated Count @4"}));
    EXPECT_EQ(valueOf(count), 6u);

    EXPECT_EQ(thrown<Exceptions::InvalidChange>(
                  "Setting value with an invalid type. Value Type of new value: UInt16 Value type of elementUInt32"),
              thrownBy([&] { count.set(u16(1)); }));
    EXPECT_EQ(thrown<Exceptions::InvalidChange>("Value 'Count' is required according to Schema"),
              thrownBy([&] { count.set(Templates::auto_ptr<Types::SimpleDataType>()); }));
    EXPECT_EQ(valueOf(count), 6u);
    EXPECT_EQ(owner.events.size(), 2u);

    // A listener that refuses leaves the old value in place: the announcement comes first.
    owner.refuse = true;
    EXPECT_EQ(thrownBy([&] { count.set(u32(7)); }).code, Exceptions::InvalidState::ERROR_CODE);
    EXPECT_EQ(valueOf(count), 6u);

    // Clearing a Required element takes allowClear.
    count.set(Templates::auto_ptr<Types::SimpleDataType>(), true);
    EXPECT_TRUE(count.empty());
    EXPECT_EQ(owner.events.back(), "removed Count @4");
    // Clearing an empty element says nothing.
    count.set(Templates::auto_ptr<Types::SimpleDataType>(), true);
    EXPECT_EQ(owner.events.back(), "removed Count @4");
    EXPECT_EQ(owner.events.size(), 4u);

    // Only "Req" is guarded: an E/req element may be cleared.
    SimpleElement & width = as<SimpleElement>(set, Width);
    width.set(u16(720));
    width.set(Templates::auto_ptr<Types::SimpleDataType>(), false);
    EXPECT_TRUE(width.empty());

    // An element without a name property is "<unknown>" in the messages.
    SimpleElement & nameless = as<SimpleElement>(set, Nameless);
    nameless.set(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt8(1)));
    EXPECT_EQ(thrownBy([&] { nameless.set(Templates::auto_ptr<Types::SimpleDataType>()); }).message,
              "Value '<unknown>' is required according to Schema");
}

TEST(SimpleElementTest, WithoutOwnerNothingIsAnnounced)
{
    Schema schema;
    Metadata::MetadataSet set(setKey(1), &schema.parent, nullptr);
    SimpleElement & count = as<SimpleElement>(set, Count);
    count.set(u32(1));
    count.set(u32(2));
    EXPECT_EQ(valueOf(count), 2u);
    count.set(Templates::auto_ptr<Types::SimpleDataType>(), true);
    EXPECT_TRUE(count.empty());
}

TEST(SimpleElementTest, LoadsAndSerializesWithEachLengthWidth)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    Metadata::PartitionDictionary & dictionary = owner.partitionDictionary();
    SimpleElement & count = as<SimpleElement>(set, Count);

    // Nothing is written for an empty element, not even a tag the Primer lacks.
    EXPECT_TRUE(written(count, dictionary, 2).empty());

    loadFrom(count, Bytes{0x00, 0x00, 0x01, 0x02});
    loadFrom(count, Bytes{0x00, 0x00, 0x01, 0x03});
    EXPECT_EQ(valueOf(count), 0x103u);
    EXPECT_EQ(owner.events, (Events{"added Count @-", "updated Count @4"}));

    // The Primer must hold the tag.
    EXPECT_EQ(thrown<Exceptions::LocalTagNotFound>("No LocalTag defined for this UniversalLabel"),
              thrownBy([&] { written(count, dictionary, 2); }));

    EXPECT_EQ(dictionary.findOrGenerate(label(Count)), Types::LocalTag(static_cast<unsigned short>(0x8000)));
    EXPECT_EQ(written(count, dictionary, 1), (Bytes{0x80, 0x00, 0x04, 0x00, 0x00, 0x01, 0x03}));
    EXPECT_EQ(written(count, dictionary, 4),
              (Bytes{0x80, 0x00, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x01, 0x03}));
    // Another width writes no length field.
    EXPECT_EQ(written(count, dictionary, 3), (Bytes{0x80, 0x00, 0x00, 0x00, 0x01, 0x03}));

    // A value longer than the length field can say.
    SimpleElement & text = as<SimpleElement>(set, Text);
    Templates::wstring long200(200, 'x');
    text.set(Templates::auto_ptr<Types::SimpleDataType>(new Types::UTF16String(long200.c_str())));
    EXPECT_EQ(text.totalLength(), 400u);
    dictionary.findOrGenerate(label(Text));
    EXPECT_EQ(thrown<Exceptions::InvalidElementLength>("Type size exceeded"),
              thrownBy([&] { written(text, dictionary, 1); }));
    Bytes two = written(text, dictionary, 2);
    ASSERT_EQ(two.size(), 404u);
    EXPECT_EQ(Bytes({0x01, 0x90}), Bytes(two.begin() + 2, two.begin() + 4));
}

TEST(SimpleElementTest, UnknownAndMisplacedAttributes)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);

    Templates::auto_ptr<Metadata::Element> made(Metadata::ElementFactory::create(unknownAttribute(0x8123), set));
    SimpleElement & unknown = static_cast<SimpleElement &>(*made);
    // Loading needs the schema's attribute.
    EXPECT_EQ(thrown<Exceptions::InvalidMetaAttribute>("ReferenceElement can not be changed because there is no metaAttribute."),
              thrownBy([&] { loadFrom(unknown, Bytes{1, 2}); }));
    EXPECT_TRUE(unknown.empty());

    // With no element in the schema any value goes, and the owner hears of it with no element.
    unsigned char bytes[] = {0xab, 0xcd, 0xef};
    unknown.set(Templates::auto_ptr<Types::SimpleDataType>(new Types::Unknown(bytes, 3)));
    EXPECT_EQ(owner.events, (Events{"added null @-"}));
    // The tag is the one read, whatever the Primer holds.
    EXPECT_EQ(written(unknown, owner.partitionDictionary(), 2), (Bytes{0x81, 0x23, 0x00, 0x03, 0xab, 0xcd, 0xef}));
    // An unknown attribute counts as optional.
    unknown.set(Templates::auto_ptr<Types::SimpleDataType>());
    EXPECT_TRUE(unknown.empty());

    Templates::auto_ptr<Metadata::Element> misfit(
        Metadata::ElementFactory::create(misplaced(schema.element(Misfit)), set));
    SimpleElement & misplacedElement = static_cast<SimpleElement &>(*misfit);
    EXPECT_EQ(thrownBy([&] { loadFrom(misplacedElement, Bytes{1, 2}); }).message,
              "ReferenceElement can not be changed because there is no metaAttribute.");
    // The misplaced element still checks the type of its element.
    EXPECT_EQ(thrownBy([&] { misplacedElement.set(u32(1)); }).message,
              "Setting value with an invalid type. Value Type of new value: UInt32 Value type of elementUInt16");
    misplacedElement.set(u16(0x1234));
    EXPECT_EQ(owner.events.back(), "added Misfit @-");
    // Its tag comes from the Primer.
    owner.partitionDictionary().primer().add(Types::LocalTag(static_cast<unsigned short>(0x8042)), label(Misfit));
    EXPECT_EQ(written(misplacedElement, owner.partitionDictionary(), 1), (Bytes{0x80, 0x42, 0x02, 0x12, 0x34}));
}

TEST(SimpleElementTest, CloneCopiesTheValueIntoTheTarget)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    RecordingOwner otherOwner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    Metadata::MetadataSet target(setKey(1), &schema.parent, &otherOwner);
    SimpleElement & count = as<SimpleElement>(set, Count);
    count.set(u32(9));

    Templates::auto_ptr<Metadata::Element> copy = count.clone(target);
    ASSERT_TRUE(isA<SimpleElement>(*copy));
    SimpleElement & copied = static_cast<SimpleElement &>(*copy);
    EXPECT_EQ(&copied.metadataSet(), &target);
    EXPECT_EQ(valueOf(copied), 9u);
    EXPECT_EQ(otherOwner.events, (Events{"added Count @4"}));
    EXPECT_EQ(owner.events, (Events{"added Count @-"}));

    // The copies are independent.
    copied.set(u32(10));
    EXPECT_EQ(valueOf(count), 9u);

    // An empty element clones without a word.
    Templates::auto_ptr<Metadata::Element> empty = as<SimpleElement>(set, Width).clone(target);
    EXPECT_TRUE(empty->empty());
    EXPECT_EQ(otherOwner.events.size(), 2u);
}
