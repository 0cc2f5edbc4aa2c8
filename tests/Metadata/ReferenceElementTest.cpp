#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "MetaMetadata/MisplacedAttribute.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/ElementFactory.h"
#include "Metadata/ElementTestSupport.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Types/Integers.h"
#include "Types/References.h"
#include "Types/UUID.h"
#include "Types/Visitors.h"

using namespace Vellum;
using namespace Vellum::ElementTest;
using Metadata::ArrayReferenceElement;
using Metadata::BatchReferenceElement;
using Metadata::ReferenceElement;
using Types::Visitors::getAs;

namespace
{
typedef std::vector<std::string> Events;

Types::UUID uuid(unsigned char last)
{
    unsigned char bytes[16] = {0x11, 0x22, 0x33, 0x44, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, last};
    return Types::UUID(bytes);
}

// A set of the key with the instance UID given.
struct TargetSet
{
    TargetSet(Schema & schema, MetaMetadata::MetaMetadataSet const & description, unsigned char last)
        : set(description.key(), &description, nullptr)
    {
        as<Metadata::SimpleElement>(set, Metadata::MetadataULs::instanceUID())
            .set(Templates::auto_ptr<Types::SimpleDataType>(new Types::UUID(uuid(last))));
        (void)schema;
    }
    Metadata::MetadataSet set;
};

template <class R>
Templates::auto_ptr<Types::Reference> reference(unsigned char last)
{
    return Templates::auto_ptr<Types::Reference>(new R(uuid(last)));
}

std::string keyText(unsigned char last)
{
    return n(setKey(last).toString(Types::TypeDefault));
}
} // namespace

TEST(ReferenceElementTest, RefersToSetsThatTheSchemaAllows)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    TargetSet child(schema, schema.child, 1);
    TargetSet far(schema, schema.far, 2);
    ReferenceElement & target = as<ReferenceElement>(set, Target);
    ReferenceElement & weak = as<ReferenceElement>(set, Weak);

    target.set(&child.set);
    ASSERT_NE(getAs<Types::StrongReference>(*target.value()), nullptr);
    EXPECT_EQ(owner.events, (Events{"added Target @-"}));

    // The kind of reference is the schema's.
    weak.set(&child.set);
    ASSERT_NE(getAs<Types::WeakReference>(*weak.value()), nullptr);
    EXPECT_EQ(getAs<Types::WeakReference>(*weak.value())->uuid(), uuid(1));

    EXPECT_EQ(thrown<Exceptions::MetadataSetReferenceNotAllowed>("ReferenceElement with UL " + n(label(Target).toString()) + " cannot reference set with key '" + keyText(3) + "'. Must reference one of: [" + keyText(2) + "]"),
              thrownBy([&] { target.set(&far.set); }));
    EXPECT_EQ(thrownBy([&] { weak.set(&far.set); }).message,
              "ReferenceElement with UL " + n(label(Weak).toString()) + " cannot reference set with key '" +
                  keyText(3) + "'. Must reference one of: [" + keyText(2) + "][" + keyText(4) + "]");
    EXPECT_EQ(getAs<Types::StrongReference>(*target.value())->uuid(), uuid(1));
    EXPECT_EQ(owner.events.size(), 2u);

    // Null clears, with no required check.
    target.set(static_cast<Metadata::MetadataSet const *>(nullptr));
    EXPECT_TRUE(target.empty());
    EXPECT_EQ(owner.events.back(), "removed Target @16");
}

TEST(ReferenceElementTest, SetsReferenceValuesByType)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    ReferenceElement & target = as<ReferenceElement>(set, Target);

    // Unverified: the target need not exist.
    target.setUnverifiedReference(reference<Types::StrongReference>(7));
    EXPECT_EQ(getAs<Types::StrongReference>(*target.value())->uuid(), uuid(7));
    target.set(Templates::auto_ptr<Types::SimpleDataType>(new Types::StrongReference(uuid(8))));
    EXPECT_EQ(owner.events, (Events{"added Target @-", "updated Target @16"}));

    EXPECT_EQ(thrownBy([&] { target.setUnverifiedReference(reference<Types::WeakReference>(9)); }).message,
              "Setting value with an invalid type. Value Type of new value: WeakReference Value type of "
              "elementStrongReference");
    EXPECT_EQ(thrown<Exceptions::InvalidChange>("Setting value with an invalid type. Value Type of new value: UInt32 Value type of elementStrongReference"),
              thrownBy( [&] { target.set(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt32(1))); }));
    EXPECT_EQ(getAs<Types::StrongReference>(*target.value())->uuid(), uuid(8));

    // Loading reads the reference as the schema's type.
    Bytes bytes(16, 0x5a);
    loadFrom(target, bytes);
    EXPECT_EQ(getAs<Types::StrongReference>(*target.value())->uuid(), Types::UUID(bytes.data()));
    Metadata::PartitionDictionary & dictionary = owner.partitionDictionary();
    dictionary.findOrGenerate(label(Target));
    Bytes item = written(target, dictionary, 2);
    ASSERT_EQ(item.size(), 20u);
    EXPECT_EQ(Bytes(item.begin(), item.begin() + 4), (Bytes{0x80, 0x00, 0x00, 0x10}));
    EXPECT_EQ(Bytes(item.begin() + 4, item.end()), bytes);

    // A clone keeps the reference; the copy is its own.
    Metadata::MetadataSet other(setKey(1), &schema.parent, nullptr);
    Templates::auto_ptr<Metadata::Element> copy = target.clone(other);
    ReferenceElement & copied = static_cast<ReferenceElement &>(*copy);
    EXPECT_EQ(getAs<Types::StrongReference>(*copied.value())->uuid(), Types::UUID(bytes.data()));
    EXPECT_NE(copied.value(), target.value());
}

TEST(ReferenceElementTest, NeedsTheSchemasAttributeToReferToASet)
{
    Schema schema;
    Metadata::MetadataSet set(setKey(1), &schema.parent, nullptr);
    TargetSet child(schema, schema.child, 1);
    Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> misplaced(
        new MetaMetadata::MisplacedAttribute(schema.element(Target)));

    Templates::auto_ptr<Metadata::Element> single(Metadata::ElementFactory::create(misplaced, set));
    EXPECT_EQ(thrown<Exceptions::InvalidMetaAttribute>("ReferenceElement can not be changed because there is no metaAttribute."),
              thrownBy([&] { static_cast<ReferenceElement &>(*single).set(&child.set); }));
    EXPECT_TRUE(single->empty());

    Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> misplacedArray(
        new MetaMetadata::MisplacedAttribute(schema.element(Children)));
    Templates::auto_ptr<Metadata::Element> array(Metadata::ElementFactory::create(misplacedArray, set));
    EXPECT_EQ(thrownBy([&] { static_cast<ArrayReferenceElement &>(*array).append(&child.set); }).message,
              "ReferenceElement can not be changed because there is no metaAttribute.");
    // Loading a collection needs it too, and says so in its own words.
    EXPECT_EQ(thrown<Exceptions::InvalidMetaAttribute>("Null Meta Attribute"),
              thrownBy([&] { loadFrom(*array, Bytes{0, 0, 0, 0, 0, 0, 0, 16}); }));
}

TEST(ReferenceCollectionTest, AppendsInsertsAndRemovesReferences)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    TargetSet first(schema, schema.child, 1);
    TargetSet second(schema, schema.child, 2);
    TargetSet far(schema, schema.far, 3);
    ArrayReferenceElement & children = as<ArrayReferenceElement>(set, Children);

    children.append(&first.set);
    children.insertAt(0, &second.set);
    ASSERT_EQ(children.size(), 2);
    EXPECT_EQ(getAs<Types::StrongReference>(children.at(0))->uuid(), uuid(2));
    EXPECT_EQ(getAs<Types::StrongReference>(children.at(1))->uuid(), uuid(1));
    EXPECT_EQ(owner.events, (Events{"insert 0 of 0 Children @-", "insert 0 of 1 Children @24"}));

    EXPECT_EQ(thrownBy([&] { children.append(&first.set); }).message,
              "Value 'Children': Schema only allows to add 2 elements to this collection.");
    children.remove(1);
    Thrown refused = thrownBy([&] { children.append(&far.set); });
    EXPECT_EQ(refused.code, Exceptions::MetadataSetReferenceNotAllowed::ERROR_CODE);
    EXPECT_EQ(thrown<Exceptions::InvalidChange>("Trying to set a WeakReference on a ArrayReferenceElement expecting a StrongReference"),
              thrownBy([&] { children.appendUnverifiedReference(reference<Types::WeakReference>(4)); }));
    EXPECT_EQ(thrownBy([&] { children.insertUnverifiedReferenceAt(0, reference<Types::WeakReference>(4)); }).message,
              "Trying to set a WeakReference on a ArrayReferenceElement expecting a StrongReference");
    EXPECT_EQ(children.size(), 1);

    children.insertUnverifiedReferenceAt(1, reference<Types::StrongReference>(5));
    EXPECT_EQ(getAs<Types::StrongReference>(children.at(1))->uuid(), uuid(5));

    BatchReferenceElement & links = as<BatchReferenceElement>(set, Links);
    EXPECT_EQ(thrownBy([&] { links.appendUnverifiedReference(reference<Types::StrongReference>(1)); }).message,
              "Trying to set a StrongReference on a BatchReferenceElement expecting a WeakReference");
    EXPECT_TRUE(links.empty());
    links.append(&first.set);
    links.append(&second.set);
    EXPECT_EQ(getAs<Types::WeakReference>(links.at(1))->uuid(), uuid(2));
    EXPECT_EQ(links.totalLength(), 8u + 2 * 16);

    // Written as a count, a size and the members.
    Metadata::PartitionDictionary & dictionary = owner.partitionDictionary();
    dictionary.findOrGenerate(label(Links));
    Bytes item = written(links, dictionary, 2);
    ASSERT_EQ(item.size(), 4u + 40);
    EXPECT_EQ(Bytes({0, 40, 0, 0, 0, 2, 0, 0, 0, 16}), Bytes(item.begin() + 2, item.begin() + 12));

    // Cloned into another set, with the same class and the same members.
    Metadata::MetadataSet other(setKey(1), &schema.parent, nullptr);
    Templates::auto_ptr<Metadata::Element> copy = links.clone(other);
    Metadata::Visitors::GetElementVisitor<BatchReferenceElement> visitor;
    copy->accept(visitor);
    ASSERT_NE(visitor.value(), nullptr);
    EXPECT_EQ(visitor.value()->size(), 2);
    EXPECT_EQ(getAs<Types::WeakReference>(visitor.value()->at(0))->uuid(), uuid(1));
}

TEST(ReferenceCollectionTest, SetsWholeCollectionsOfReferences)
{
    Schema schema;
    RecordingOwner owner(schema.dictionary);
    Metadata::MetadataSet set(setKey(1), &schema.parent, &owner);
    ArrayReferenceElement & children = as<ArrayReferenceElement>(set, Children);

    Templates::auto_ptr<Types::Array> three(new Types::Array(16));
    for (unsigned char i = 0; i < 3; ++i)
        three->append(Templates::auto_ptr<Types::SimpleDataType>(new Types::StrongReference(uuid(i))));
    EXPECT_EQ(thrownBy([&] { children.set(std::move(three)); }).message,
              "Value 'Children': Schema only allows to add 2 elements to this collection.");

    Templates::auto_ptr<Types::Array> weak(new Types::Array(16));
    weak->append(Templates::auto_ptr<Types::SimpleDataType>(new Types::WeakReference(uuid(1))));
    EXPECT_EQ(thrownBy([&] { children.set(std::move(weak)); }).message,
              "Value 'Children': Setting collection with an invalid Sub Type.");

    Templates::auto_ptr<Types::Batch> batch(new Types::Batch(16));
    EXPECT_EQ(thrownBy([&] { children.set(std::move(batch)); }).message,
              "Value 'Children': Collection can not be changed to another type!");
    EXPECT_TRUE(children.empty());
    EXPECT_TRUE(owner.events.empty());

    Templates::auto_ptr<Types::Array> two(new Types::Array(16));
    two->append(Templates::auto_ptr<Types::SimpleDataType>(new Types::StrongReference(uuid(1))));
    two->append(Templates::auto_ptr<Types::SimpleDataType>(new Types::StrongReference(uuid(2))));
    children.set(std::move(two));
    EXPECT_EQ(children.size(), 2);
    EXPECT_EQ(owner.events, (Events{"added Children @-"}));
}
