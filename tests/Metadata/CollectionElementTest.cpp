#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "Metadata/ArrayElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/ElementTestSupport.h"
#include "Types/Integers.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"
#include "Types/Visitors.h"

using namespace Vellum;
using namespace Vellum::ElementTest;
using Metadata::ArrayElement;
using Metadata::BatchElement;
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

Templates::auto_ptr<Types::SimpleDataType> ul(unsigned char last)
{
    return Templates::auto_ptr<Types::SimpleDataType>(new Types::UniversalLabel(label(last)));
}

template <class C>
Templates::auto_ptr<Types::Collection> labels(unsigned count)
{
    Templates::auto_ptr<Types::Collection> collection(new C(16));
    for (unsigned i = 0; i < count; ++i)
        collection->append(ul(static_cast<unsigned char>(100 + i)));
    return collection;
}

std::vector<unsigned> numbersIn(Metadata::CollectionElement const & element)
{
    std::vector<unsigned> out;
    for (int i = 0; i < element.size(); ++i)
        out.push_back(getAs<Types::UInt16>(element.at(static_cast<unsigned>(i)))->value());
    return out;
}
} // namespace

TEST(CollectionElementTest, SetHoldsAPresentCollectionToTheSchema)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    BatchElement & batch = as<BatchElement>(set, Labels);

    EXPECT_EQ(thrown<Exceptions::InvalidChange>("Value 'Labels': Collection can not be changed to another type!"),
              thrownBy([&] { batch.set(labels<Types::Array>(1)); }));
    EXPECT_EQ(thrownBy([&] { batch.set(labels<Types::Batch>(0)); }).message,
              "Value 'Labels': Schema does not allow less than 1 elements in the collection.");
    EXPECT_EQ(thrownBy([&] { batch.set(labels<Types::Batch>(4)); }).message,
              "Value 'Labels': Schema only allows to add 3 elements to this collection.");

    // Only the first member's type is looked at.
    Templates::auto_ptr<Types::Collection> uuidFirst(new Types::Batch(16));
    uuidFirst->append(Templates::auto_ptr<Types::SimpleDataType>(new Types::UUID()));
    uuidFirst->append(ul(1));
    EXPECT_EQ(thrownBy([&] { batch.set(std::move(uuidFirst)); }).message,
              "Value 'Labels': Setting collection with an invalid Sub Type.");
    EXPECT_TRUE(batch.empty());
    EXPECT_TRUE(owner.events.empty());

    Templates::auto_ptr<Types::Collection> uuidSecond(new Types::Batch(16));
    uuidSecond->append(ul(1));
    uuidSecond->append(Templates::auto_ptr<Types::SimpleDataType>(new Types::UUID()));
    batch.set(std::move(uuidSecond));
    EXPECT_EQ(batch.totalLength(), 40u);
    batch.set(labels<Types::Batch>(3));
    EXPECT_EQ(*getAs<Types::UniversalLabel>(batch.at(2)), label(102));

    // Null is accepted whatever the minimum, and takes the value away.
    batch.set(Templates::auto_ptr<Types::Collection>());
    EXPECT_TRUE(batch.empty());
    EXPECT_EQ(owner.events, (Events{"added Labels @-", "updated collection Labels @40", "removed Labels @56"}));

    // A listener's refusal leaves the old collection.
    batch.set(labels<Types::Batch>(1));
    owner.refuse = true;
    EXPECT_EQ(thrownBy([&] { batch.set(labels<Types::Batch>(2)); }).code, Exceptions::InvalidState::ERROR_CODE);
    EXPECT_EQ(batch.size(), 1);
}

TEST(CollectionElementTest, AppendAndRemoveStayWithinTheLimits)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    ArrayElement & pair = as<ArrayElement>(set, Pair);

    // Appending to an empty element makes the collection; below the minimum is fine on the way up.
    pair.append(u32(1));
    EXPECT_EQ(pair.value()->elementSize(), 4u);
    pair.append(u32(2));
    EXPECT_EQ(owner.events, (Events{"insert 0 of 0 Pair @-", "insert 1 of 1 Pair @12"}));

    EXPECT_EQ(thrown<Exceptions::InvalidChange>("Value 'Pair': Schema only allows to add 2 elements to this collection."),
              thrownBy([&] { pair.append(u32(3)); }));
    EXPECT_EQ(thrown<Exceptions::InvalidChange>("Value 'Pair': Schema does not allow less than 2 elements in the collection."),
              thrownBy([&] { pair.remove(0); }));
    EXPECT_EQ(pair.size(), 2);
    EXPECT_EQ(owner.events.size(), 2u);

    Metadata::MetadataSet other(setKey(1), &schema.parent, &owner);
    ArrayElement & fresh = as<ArrayElement>(other, Pair);
    EXPECT_EQ(thrown<Exceptions::InvalidChange>("Value 'Pair': Setting value with an invalid Sub Type in a collection."),
              thrownBy([&] { fresh.append(u16(1)); }));
    EXPECT_TRUE(fresh.empty());

    // A refused first member leaves no collection behind.
    owner.refuse = true;
    EXPECT_EQ(thrownBy([&] { fresh.append(u32(1)); }).code, Exceptions::InvalidState::ERROR_CODE);
    EXPECT_TRUE(fresh.empty());
}

TEST(CollectionElementTest, InsertAtAndIndexes)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    ArrayElement & numbers = as<ArrayElement>(set, Numbers);

    EXPECT_EQ(thrown<Exceptions::IndexOutOfBounds>("Trying to access a element beyond the end of data"),
              thrownBy([&] { numbers.at(0); }));
    EXPECT_EQ(thrown<Exceptions::IndexOutOfBounds>("Index out of bounds"), thrownBy([&] { numbers.remove(0); }));

    numbers.insertAt(0, u16(3));
    numbers.insertAt(0, u16(1));
    numbers.insertAt(1, u16(2));
    numbers.append(u16(4));
    EXPECT_EQ(numbersIn(numbers), (std::vector<unsigned>{1, 2, 3, 4}));
    EXPECT_EQ(owner.events.back(), "insert 3 of 3 Numbers @14");

    EXPECT_EQ(thrownBy([&] { numbers.insertAt(5, u16(9)); }).message,
              "Trying to insert an element past the end of the data");
    EXPECT_EQ(owner.events.size(), 4u);

    numbers.remove(1);
    EXPECT_EQ(numbersIn(numbers), (std::vector<unsigned>{1, 3, 4}));
    EXPECT_EQ(owner.events.back(), "erase 1 of 4 Numbers @16");
}

TEST(CollectionElementTest, AnEmptyCollectionIsWrittenWithLengthZero)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    Metadata::PartitionDictionary & dictionary = owner.partitionDictionary();
    dictionary.findOrGenerate(label(Numbers));
    ArrayElement & numbers = as<ArrayElement>(set, Numbers);

    numbers.append(u16(0x0102));
    EXPECT_EQ(written(numbers, dictionary, 2),
              (Bytes{0x80, 0x00, 0x00, 0x0a, 0, 0, 0, 1, 0, 0, 0, 2, 0x01, 0x02}));

    // Removing the last member leaves an empty collection, not an empty element.
    numbers.remove(0);
    EXPECT_FALSE(numbers.empty());
    EXPECT_EQ(written(numbers, dictionary, 2), (Bytes{0x80, 0x00, 0x00, 0x00}));
    EXPECT_EQ(written(numbers, dictionary, 1), (Bytes{0x80, 0x00, 0x00}));
}

TEST(CollectionElementTest, LoadTakesWhatTheFileHas)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    ArrayElement & pair = as<ArrayElement>(set, Pair);

    // Three members where the schema wants two: loading applies no limits.
    Bytes three{0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3};
    loadFrom(pair, three);
    EXPECT_EQ(pair.size(), 3);
    EXPECT_EQ(getAs<Types::UInt32>(pair.at(2))->value(), 3u);
    // A second load replaces the collection under an addition, not an update.
    loadFrom(pair, Bytes{0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 9});
    EXPECT_EQ(pair.size(), 1);
    EXPECT_EQ(owner.events, (Events{"added Pair @-", "added Pair @20"}));

    // The mismatch shows in the next change.
    EXPECT_EQ(thrownBy([&] { pair.remove(0); }).message,
              "Value 'Pair': Schema does not allow less than 2 elements in the collection.");

    // Written back as read.
    Metadata::PartitionDictionary & dictionary = owner.partitionDictionary();
    dictionary.findOrGenerate(label(Pair));
    loadFrom(pair, three);
    Bytes item = written(pair, dictionary, 1);
    ASSERT_EQ(item.size(), 3u + three.size());
    EXPECT_EQ(item[2], 20);
    EXPECT_EQ(Bytes(item.begin() + 3, item.end()), three);

    // A batch loads into a batch.
    BatchElement & batch = as<BatchElement>(set, Labels);
    Bytes oneLabel{0, 0, 0, 1, 0, 0, 0, 16};
    Types::UniversalLabel const expected = label(42);
    oneLabel.insert(oneLabel.end(), expected.rawBuffer(), expected.rawBuffer() + 16);
    loadFrom(batch, oneLabel);
    ASSERT_EQ(batch.size(), 1);
    EXPECT_EQ(*getAs<Types::UniversalLabel>(batch.at(0)), expected);
}

TEST(CollectionElementTest, CloneCopiesTheCollection)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    RecordingOwner otherOwner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    Metadata::MetadataSet target(setKey(1), &schema.parent, &otherOwner);
    ArrayElement & numbers = as<ArrayElement>(set, Numbers);
    numbers.append(u16(7));
    numbers.append(u16(8));

    Templates::auto_ptr<Metadata::Element> copy = numbers.clone(target);
    Metadata::Visitors::GetNonConstElementVisitor<ArrayElement> visitor;
    copy->accept(visitor);
    ASSERT_NE(visitor.value(), nullptr);
    ArrayElement & copied = *visitor.value();
    EXPECT_EQ(numbersIn(copied), (std::vector<unsigned>{7, 8}));
    EXPECT_EQ(otherOwner.events, (Events{"added Numbers @12"}));

    copied.remove(0);
    EXPECT_EQ(numbersIn(numbers), (std::vector<unsigned>{7, 8}));
}
