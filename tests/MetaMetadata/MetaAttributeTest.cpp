#include <gtest/gtest.h>

#include "MetaMetadata/Helpers.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Types/Integers.h"

using namespace Vellum;
using namespace Vellum::MetaMetadataTest;
using namespace Vellum::MetaMetadata;
namespace Id = Vellum::Types::Identifiers;

TEST(MetaAttribute, HoldsElementStatusValueAndACopyOfTheTag)
{
    MetaSimpleElement element(label(1), Id::UInt16);
    Types::LocalTag tag(0x3c0a);
    MetaAttribute attribute(element, AttributeRequiredStatus::BestEffort,
                            Templates::auto_ptr<Types::BaseType const>(new Types::UInt16(0xffff)), &tag);
    ASSERT_NE(nullptr, attribute.staticLocalTag());
    EXPECT_NE(&tag, attribute.staticLocalTag());
    EXPECT_EQ(0x3c0a, attribute.staticLocalTag()->value());
    Types::UInt16 const * value = dynamic_cast<Types::UInt16 const *>(attribute.getDistinguishedValue());
    ASSERT_NE(nullptr, value);
    EXPECT_EQ(0xffff, value->value());
}

TEST(MetaAttribute, EqualityLooksAtTheTagFromTheLeftOnly)
{
    MetaSimpleElement element(label(1), Id::UInt16);
    MetaSimpleElement twin(label(1), Id::UInt16);
    Types::LocalTag tag(0x3c0a), other(0x3c0b);

    Templates::SharedPtr<MetaAttribute> tagged = attribute(element, AttributeRequiredStatus::Optional, &tag);
    Templates::SharedPtr<MetaAttribute> untagged = attribute(element);
    Templates::SharedPtr<MetaAttribute> otherTag = attribute(element, AttributeRequiredStatus::Optional, &other);
    EXPECT_TRUE(*untagged == *tagged);
    EXPECT_FALSE(*tagged == *untagged);
    EXPECT_FALSE(*tagged == *otherTag);
    EXPECT_TRUE(*tagged == *attribute(element, AttributeRequiredStatus::Optional, &tag));

    // The element is compared as an object, not by its contents.
    EXPECT_FALSE(*untagged == *attribute(twin));
    EXPECT_FALSE(*untagged == *attribute(element, AttributeRequiredStatus::Required));

    // The distinguished value does not count; the properties do.
    MetaAttribute valued(element, AttributeRequiredStatus::Optional,
                         Templates::auto_ptr<Types::BaseType const>(new Types::UInt16(1)), nullptr);
    EXPECT_TRUE(valued == *untagged);
    valued.addProperty(w("RequiresSemanticsValidation").c_str(), w("").c_str());
    EXPECT_FALSE(valued == *untagged);
}

TEST(MetaAttribute, PlaceholdersAndTheElementBehindAnAttribute)
{
    MetaSimpleElement element(label(1), Id::UInt16);
    UnknownAttribute unknown(Types::LocalTag(0x8001), UnknownAttribute::LabelCollisionReason);
    UnknownAttribute copy(unknown);
    EXPECT_TRUE(copy == unknown);
    EXPECT_FALSE(copy == UnknownAttribute(Types::LocalTag(0x8001), UnknownAttribute::InvalidLengthReason));

    using Helpers::abstractMetaAttributeToMetaElement;
    EXPECT_EQ(&element, abstractMetaAttributeToMetaElement(
                            Templates::SharedPtr<AbstractMetaAttribute const>(attribute(element))));
    EXPECT_EQ(&element, abstractMetaAttributeToMetaElement(
                            Templates::SharedPtr<AbstractMetaAttribute const>(new MisplacedAttribute(element))));
    EXPECT_EQ(nullptr, abstractMetaAttributeToMetaElement(Templates::SharedPtr<AbstractMetaAttribute const>(
                           new UnknownAttribute(Types::LocalTag(0x8001), UnknownAttribute::NotInDictionaryReason))));
}
