#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "Metadata/PartitionDictionary.h"
#include "Packs/PrimerPack.h"

using namespace Vellum;
using MetaMetadataTest::label;
using MetaMetadataTest::n;
using MetaMetadataTest::Thrown;
using MetaMetadataTest::thrown;
using MetaMetadataTest::thrownBy;

namespace
{
Types::LocalTag tag(unsigned short value)
{
    return Types::LocalTag(value);
}

// A schema with static tags 01.00 -> label 1, 3C.0A -> label 2, and 80.05 -> label 3 (a
// dictionary entry in the dynamic range, which allocation must skip).
Templates::SharedPtr<MetaMetadata::Dictionary> testSchema()
{
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary(new MetaMetadata::Dictionary());
    dictionary->add(tag(0x0100), label(1));
    dictionary->add(tag(0x3c0a), label(2));
    dictionary->add(tag(0x8005), label(3));
    dictionary->add(tag(0x0005), label(4));
    return dictionary;
}

Templates::auto_ptr<Packs::PrimerPack> primer(std::initializer_list<std::pair<unsigned short, unsigned char>> entries)
{
    Templates::auto_ptr<Packs::PrimerPack> pack(new Packs::PrimerPack());
    for (auto const & entry : entries)
        pack->add(tag(entry.first), label(entry.second));
    return pack;
}
} // namespace

TEST(PartitionDictionaryTest, FindsLabelsOfTagsStrictly)
{
    Metadata::PartitionDictionary dictionary(testSchema(), primer({{0x3c0a, 2}, {0x0100, 9}, {0x8001, 7}, {0x0042, 8}}));

    // A static tag in the Primer that agrees with the schema.
    EXPECT_EQ(dictionary.find(tag(0x3c0a), true), label(2));
    // A dynamic tag comes from the Primer alone.
    EXPECT_EQ(dictionary.find(tag(0x8001), true), label(7));
    // A tag below 01.00 is not looked for in the dictionary.
    EXPECT_EQ(dictionary.find(tag(0x0042), true), label(8));

    EXPECT_EQ(thrown<Exceptions::UniversalLabelCollision>("Primer redefines a static assigned tag!"),
              thrownBy([&] { dictionary.find(tag(0x0100), true); }));

    EXPECT_EQ(thrown<Exceptions::NotFoundInPrimer>("Could not resolve local tag " + n(tag(0x3c0b).toString()) + " to Universal Label using primer."),
              thrownBy([&] { dictionary.find(tag(0x3c0b), true); }));

    EXPECT_EQ(thrown<Exceptions::InvalidLocalTag>("Invalid Local Tag '00.00'"),
              thrownBy([&] { dictionary.find(tag(0x0000), true); }));
    EXPECT_EQ(thrownBy([&] { dictionary.find(tag(0x0000), false); }).message, "Invalid Local Tag '00.00'");
}

TEST(PartitionDictionaryTest, StrictStaticTagUnknownToTheSchema)
{
    Metadata::PartitionDictionary dictionary(testSchema(), primer({{0x3c0b, 5}}));
    EXPECT_EQ(thrown<Exceptions::LocalTagNotFound>("Dictionary does not contain static Local Tag " + n(tag(0x3c0b).toString())),
              thrownBy([&] { dictionary.find(tag(0x3c0b), true); }));
    // Relaxed, the Primer wins.
    EXPECT_EQ(dictionary.find(tag(0x3c0b), false), label(5));
}

TEST(PartitionDictionaryTest, FindsLabelsOfTagsRelaxed)
{
    Metadata::PartitionDictionary empty(testSchema(), primer({}));
    // A static tag that the Primer leaves out resolves through the dictionary.
    EXPECT_EQ(empty.find(tag(0x0100), false), label(1));
    // So does a tag below 01.00.
    EXPECT_EQ(empty.find(tag(0x0005), false), label(4));

    EXPECT_EQ(thrown<Exceptions::LocalTagNotFound>("Dictionary does not contain static Local Tag " + n(tag(0x0006).toString())),
              thrownBy([&] { empty.find(tag(0x0006), false); }));

    // From 80.00 the dictionary is not asked, though it holds the tag.
    EXPECT_EQ(thrown<Exceptions::NotFoundInPrimer>("Could not resolve local tag " + n(tag(0x8005).toString()) + " to Universal Label using either primer and the dictionary."),
              thrownBy([&] { empty.find(tag(0x8005), false); }));

    // A Primer's redefinition of a static tag wins.
    Metadata::PartitionDictionary redefining(testSchema(), primer({{0x0100, 9}}));
    EXPECT_EQ(redefining.find(tag(0x0100), false), label(9));
}

TEST(PartitionDictionaryTest, FindsTagsOfLabelsInThePrimerOnly)
{
    Metadata::PartitionDictionary dictionary(testSchema(), primer({{0x8003, 6}}));
    EXPECT_EQ(dictionary.find(label(6)), tag(0x8003));
    // Label 1 has a static tag in the schema, but a writer's tags are in the Primer.
    EXPECT_EQ(thrown<Exceptions::LocalTagNotFound>("No LocalTag defined for this UniversalLabel"),
              thrownBy([&] { dictionary.find(label(1)); }));
}

TEST(PartitionDictionaryTest, GeneratesTags)
{
    Metadata::PartitionDictionary dictionary(testSchema(), Templates::auto_ptr<Packs::PrimerPack>());
    EXPECT_EQ(dictionary.primer().count(), 0u);

    // A static tag goes into the Primer, and is found there the second time.
    EXPECT_EQ(dictionary.findOrGenerate(label(2)), tag(0x3c0a));
    EXPECT_EQ(dictionary.primer().count(), 1u);
    EXPECT_EQ(dictionary.find(label(2)), tag(0x3c0a));
    EXPECT_EQ(dictionary.findOrGenerate(label(2)), tag(0x3c0a));
    EXPECT_EQ(dictionary.primer().count(), 1u);

    // Dynamic tags count up from 80.00; the one the dictionary holds, 80.05, is skipped.
    unsigned short expected[] = {0x8000, 0x8001, 0x8002, 0x8003, 0x8004, 0x8006};
    for (unsigned i = 0; i < 6; ++i)
        EXPECT_EQ(dictionary.findOrGenerate(label(static_cast<unsigned char>(100 + i))), tag(expected[i])) << i;
    // An old label keeps its tag.
    EXPECT_EQ(dictionary.findOrGenerate(label(101)), tag(0x8001));
    EXPECT_EQ(dictionary.find(tag(0x8006), true), label(105));
}

TEST(PartitionDictionaryTest, GenerationSkipsTagsOfALoadedPrimer)
{
    Metadata::PartitionDictionary dictionary(testSchema(), primer({{0x8000, 20}, {0x8001, 21}}));
    EXPECT_EQ(dictionary.findOrGenerate(label(30)), tag(0x8002));
}

TEST(PartitionDictionaryTest, GenerationCarriesAndRunsOut)
{
    Templates::SharedPtr<MetaMetadata::Dictionary> empty(new MetaMetadata::Dictionary());
    Metadata::PartitionDictionary dictionary(empty, Templates::auto_ptr<Packs::PrimerPack>());

    // Labels that differ in their last two bytes.
    auto nth = [](unsigned i) {
        unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01,
                                   0x0e, 0x7e, 0x00, 0x00, 0x00, 0x00, static_cast<unsigned char>(i >> 8),
                                   static_cast<unsigned char>(i)};
        return Types::UniversalLabel(bytes);
    };
    for (unsigned i = 0; i < 0x100; ++i)
        dictionary.findOrGenerate(nth(i));
    EXPECT_EQ(dictionary.find(nth(0xff)), tag(0x80ff));
    EXPECT_EQ(dictionary.findOrGenerate(nth(0x100)), tag(0x8100));

    for (unsigned i = 0x101; i < 0x8000; ++i)
        dictionary.findOrGenerate(nth(i));
    // The last tag, FF.FF, is given out; then the range is used up for good.
    EXPECT_EQ(dictionary.find(nth(0x7fff)), tag(0xffff));
    EXPECT_EQ(thrown<Exceptions::InvalidLocalTag>("All LocalTags are used"),
              thrownBy([&] { dictionary.findOrGenerate(nth(0x8000)); }));
    EXPECT_EQ(thrownBy([&] { dictionary.findOrGenerate(nth(0x8001)); }).message, "All LocalTags are used");
    // A label already in the Primer is still found.
    EXPECT_EQ(dictionary.findOrGenerate(nth(3)), tag(0x8003));
    EXPECT_EQ(dictionary.primer().count(), 0x8000u);
}
