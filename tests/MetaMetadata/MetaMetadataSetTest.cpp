#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/MetaSimpleElement.h"

using namespace Vellum;
using namespace Vellum::MetaMetadataTest;
using namespace Vellum::MetaMetadata;
namespace Id = Vellum::Types::Identifiers;

TEST(MetaMetadataSet, AttributesAreUniqueAndOrderedByLabel)
{
    MetaSimpleElement first(label(1), Id::UInt8), second(label(2), Id::UInt8), third(label(3), Id::UInt8);
    MetaMetadataSet set(setKey(1));
    EXPECT_EQ(nullptr, set.findMetaAttribute(label(1)).get());

    set.addMetaAttribute(attribute(third));
    Templates::SharedPtr<MetaAttribute> firstAttribute = attribute(first);
    set.addMetaAttribute(firstAttribute);
    set.addMetaAttribute(attribute(second, AttributeRequiredStatus::Required));
    EXPECT_EQ(3u, set.metaAttributeCount());
    EXPECT_EQ(firstAttribute.get(), set.findMetaAttribute(label(1)).get());

    std::vector<Types::UniversalLabel> order;
    for (MetaMetadataSet::const_iterator i = set.metaAttributesBegin(); i != set.metaAttributesEnd(); ++i)
        order.push_back(i->second->metaElement().universalLabel());
    EXPECT_EQ((std::vector<Types::UniversalLabel>{label(1), label(2), label(3)}), order);

    // A second attribute of a label is an error, even one for another element object.
    MetaSimpleElement again(label(2), Id::UInt16);
    EXPECT_EQ(thrown<Exceptions::AlreadySet>("A MetaAttribute with UL " + n(label(2).toString()) + " already exists in this MetaMetadataSet\n"),
              thrownBy([&] { set.addMetaAttribute(attribute(again)); }));
    EXPECT_EQ(3u, set.metaAttributeCount());
    EXPECT_EQ(AttributeRequiredStatus::Required, set.findMetaAttribute(label(2))->requiredStatus());
}

TEST(MetaMetadataSet, CopiesShareTheAttributesAndEqualityComparesThem)
{
    MetaSimpleElement first(label(1), Id::UInt8), second(label(2), Id::UInt8);
    MetaMetadataSet set(setKey(1));
    set.addMetaAttribute(attribute(first));
    set.addProperty(w("name").c_str(), w("Set").c_str());

    MetaMetadataSet copy(set);
    EXPECT_TRUE(copy == set);
    EXPECT_EQ(set.findMetaAttribute(label(1)).get(), copy.findMetaAttribute(label(1)).get());
    copy.addMetaAttribute(attribute(second));
    EXPECT_EQ(1u, set.metaAttributeCount());
    EXPECT_FALSE(copy == set);

    // Attributes compare by content: another attribute object of the same element is equal.
    MetaMetadataSet rebuilt(setKey(1));
    rebuilt.addMetaAttribute(attribute(first));
    EXPECT_FALSE(rebuilt == set); // no properties
    rebuilt.addProperty(w("name").c_str(), w("Set").c_str());
    EXPECT_TRUE(rebuilt == set);

    // Another key or another status differs.
    MetaMetadataSet otherKey(setKey(2)), otherStatus(setKey(1));
    otherKey.addMetaAttribute(attribute(first));
    otherStatus.addMetaAttribute(attribute(first, AttributeRequiredStatus::Required));
    for (MetaMetadataSet * other : {&otherKey, &otherStatus})
    {
        other->addProperty(w("name").c_str(), w("Set").c_str());
        EXPECT_FALSE(*other == set);
    }
    otherKey = set;
    EXPECT_TRUE(otherKey == set);
}
