#include <gtest/gtest.h>

#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/MetaSimpleElement.h"

using namespace Vellum;
using namespace Vellum::MetaMetadataTest;
using namespace Vellum::MetaMetadata;
namespace Id = Vellum::Types::Identifiers;

namespace
{
// Counts how many of its kind have been destroyed.
class CountedElement : public MetaSimpleElement
{
public:
    explicit CountedElement(Types::UniversalLabel const & label) : MetaSimpleElement(label, Id::UInt8) {}
    ~CountedElement() override { ++destroyed; }
    static int destroyed;
};
int CountedElement::destroyed = 0;

Templates::auto_ptr<MetaElement> element(Types::UniversalLabel const & label, char const * name)
{
    Templates::auto_ptr<MetaElement> made(new MetaSimpleElement(label, Id::UInt8));
    if (name != nullptr)
        made->addProperty(w("name").c_str(), w(name).c_str());
    return made;
}
} // namespace

TEST(Dictionary, AnEmptyDictionaryFindsNothing)
{
    Dictionary dictionary;
    EXPECT_EQ(nullptr, dictionary.find(Types::LocalTag(0x3c0a)));
    EXPECT_EQ(nullptr, dictionary.find(label(1)));
    EXPECT_EQ(nullptr, dictionary.find(setKey(1)));
    EXPECT_EQ(nullptr, dictionary.findMetaElement(label(1)));
    EXPECT_TRUE(dictionary.findMetaMetadataSetWithMetaAtributeProperty(w("name").c_str(), w("").c_str()).empty());
}

TEST(Dictionary, TheLastAdditionWins)
{
    Dictionary dictionary;
    // Tags: both directions, each map on its own.
    dictionary.add(Types::LocalTag(0x3c0a), label(1));
    ASSERT_NE(nullptr, dictionary.find(Types::LocalTag(0x3c0a)));
    EXPECT_EQ(label(1), *dictionary.find(Types::LocalTag(0x3c0a)));
    EXPECT_EQ(0x3c0a, dictionary.find(label(1))->value());
    dictionary.add(Types::LocalTag(0x3c0a), label(2));
    EXPECT_EQ(label(2), *dictionary.find(Types::LocalTag(0x3c0a)));
    EXPECT_EQ(0x3c0a, dictionary.find(label(2))->value());
    // The first label keeps its stale tag.
    ASSERT_NE(nullptr, dictionary.find(label(1)));
    EXPECT_EQ(0x3c0a, dictionary.find(label(1))->value());
    dictionary.add(Types::LocalTag(0x3c0b), label(2));
    EXPECT_EQ(0x3c0b, dictionary.find(label(2))->value());
    EXPECT_EQ(label(2), *dictionary.find(Types::LocalTag(0x3c0a)));

    // Elements: the new one replaces and destroys the old one.
    CountedElement::destroyed = 0;
    dictionary.add(label(1), Templates::auto_ptr<MetaElement>(new CountedElement(label(1))));
    MetaElement * second = new CountedElement(label(1));
    dictionary.add(label(1), Templates::auto_ptr<MetaElement>(second));
    EXPECT_EQ(1, CountedElement::destroyed);
    EXPECT_EQ(second, dictionary.findMetaElement(label(1)));

    // Sets: a copy of the latest description.
    MetaSimpleElement member(label(5), Id::UInt8);
    MetaMetadataSet set(setKey(1));
    dictionary.add(setKey(1), set);
    set.addMetaAttribute(attribute(member));
    EXPECT_EQ(0u, dictionary.find(setKey(1))->metaAttributeCount());
    dictionary.add(setKey(1), set);
    EXPECT_EQ(1u, dictionary.find(setKey(1))->metaAttributeCount());
    EXPECT_NE(&set, dictionary.find(setKey(1)));
}

TEST(Dictionary, DestroysItsElements)
{
    CountedElement::destroyed = 0;
    {
        Dictionary dictionary;
        dictionary.add(label(1), Templates::auto_ptr<MetaElement>(new CountedElement(label(1))));
    }
    EXPECT_EQ(1, CountedElement::destroyed);
}

TEST(Dictionary, PropertyQueriesSkipObjectsWithoutThePropertyAndKeepDuplicates)
{
    Dictionary dictionary;
    dictionary.add(label(3), element(label(3), "Three"));
    dictionary.add(label(1), element(label(1), "Same"));
    dictionary.add(label(2), element(label(2), nullptr));
    dictionary.add(label(4), element(label(4), "Same"));
    MetaElement const * one = dictionary.findMetaElement(label(1));
    MetaElement const * four = dictionary.findMetaElement(label(4));

    EXPECT_EQ((Templates::vector<MetaElement const *>{one, four}),
              dictionary.findMetaElementProperty(w("name").c_str(), w("Same").c_str()));
    // Exact text: no prefix, no case folding.
    EXPECT_TRUE(dictionary.findMetaElementProperty(w("name").c_str(), w("Sam").c_str()).empty());
    EXPECT_TRUE(dictionary.findMetaElementProperty(w("name").c_str(), w("same").c_str()).empty());
    EXPECT_TRUE(dictionary.findMetaElementProperty(w("Name").c_str(), w("Same").c_str()).empty());

    // Set B has two attributes with the property and comes twice, next to itself; set A once;
    // set C, without the property, never.
    MetaMetadataSet a(setKey(1)), b(setKey(2)), c(setKey(3));
    Templates::SharedPtr<MetaAttribute> flagged = attribute(*one);
    flagged->addProperty(w("RequiresSemanticsValidation").c_str(), w("yes").c_str());
    a.addMetaAttribute(flagged);
    a.addMetaAttribute(attribute(*four));
    Templates::SharedPtr<MetaAttribute> b1 = attribute(*one), b2 = attribute(*four);
    b1->addProperty(w("RequiresSemanticsValidation").c_str(), w("yes").c_str());
    b2->addProperty(w("RequiresSemanticsValidation").c_str(), w("yes").c_str());
    b.addMetaAttribute(b1);
    b.addMetaAttribute(b2);
    c.addMetaAttribute(attribute(*one));
    b.addProperty(w("name").c_str(), w("B").c_str());
    c.addProperty(w("name").c_str(), w("B").c_str());
    dictionary.add(setKey(3), c);
    dictionary.add(setKey(2), b);
    dictionary.add(setKey(1), a);
    MetaMetadataSet const * setA = dictionary.find(setKey(1));
    MetaMetadataSet const * setB = dictionary.find(setKey(2));
    MetaMetadataSet const * setC = dictionary.find(setKey(3));

    EXPECT_EQ((Templates::vector<MetaMetadataSet const *>{setA, setB, setB}),
              dictionary.findMetaMetadataSetWithMetaAtributeProperty(w("RequiresSemanticsValidation").c_str(),
                                                                     w("yes").c_str()));
    EXPECT_EQ((Templates::vector<MetaMetadataSet const *>{setB, setC}),
              dictionary.findMetaMetadataSetProperty(w("name").c_str(), w("B").c_str()));
}

