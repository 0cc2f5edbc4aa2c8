// The six validation queries of a set, over a small schema with every status, with and without
// semantics validation and distinguished values.

#include <gtest/gtest.h>

#include "Metadata/MetadataSetTestSupport.h"
#include "Metadata/SimpleElement.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Types/Integers.h"

using namespace Vellum;
using namespace Vellum::MetadataSetTest;
using MetaMetadata::AttributeRequiredStatus;

namespace
{
KLV::Key schemaKey()
{
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                               0x0e, 0x7d, 0x01, 0x00, 0x00, 0x00, 0x00, 0x01};
    return KLV::Key(bytes);
}

Types::UniversalLabel validationLabel(unsigned char last)
{
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01,
                               0x0e, 0x7d, 0x00, 0x00, 0x00, 0x00, 0x00, last};
    return Types::UniversalLabel(bytes);
}

// Elements by name, each a UInt32:
//   required (Req), encoder (E/req), decoder (D/req), best (B.Effort, distinguished 0xFFFFFFFF),
//   plain (Opt), semantic (Opt, semantics validation, distinguished 0), semanticPlain (Opt,
//   semantics validation, no distinguished value).
struct ValidationSchema
{
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    std::vector<std::string> names;

    explicit ValidationSchema(bool withProperty = true) : dictionary(new MetaMetadata::Dictionary)
    {
        MetaMetadata::MetaMetadataSet set(schemaKey());
        add(set, "required", AttributeRequiredStatus::Required, nullptr, "", withProperty);
        add(set, "encoder", AttributeRequiredStatus::EncoderRequired, nullptr, "", withProperty);
        add(set, "decoder", AttributeRequiredStatus::DecoderRequired, nullptr, "", withProperty);
        add(set, "best", AttributeRequiredStatus::BestEffort, new Types::UInt32(0xffffffffu), "", withProperty);
        add(set, "plain", AttributeRequiredStatus::Optional, nullptr, "", withProperty);
        add(set, "semantic", AttributeRequiredStatus::Optional, new Types::UInt32(0), "yes", withProperty);
        add(set, "semanticPlain", AttributeRequiredStatus::Optional, nullptr, "yes", withProperty);
        dictionary->add(schemaKey(), set);
    }

    void add(MetaMetadata::MetaMetadataSet & set, char const * name, AttributeRequiredStatus::Status status,
             Types::BaseType const * distinguished, char const * semantics, bool withProperty)
    {
        Types::UniversalLabel label = validationLabel(static_cast<unsigned char>(names.size() + 1));
        names.push_back(name);
        Templates::auto_ptr<MetaMetadata::MetaElement> element(new MetaMetadata::MetaSimpleElement(label, Types::Identifiers::UInt32));
        element->addProperty(w("name").c_str(), w(name).c_str());
        MetaMetadata::MetaElement const & stored = *element;
        dictionary->add(label, std::move(element));
        Templates::SharedPtr<MetaMetadata::MetaAttribute> attribute(new MetaMetadata::MetaAttribute(
            stored, status, Templates::auto_ptr<Types::BaseType const>(distinguished), nullptr));
        if (withProperty)
            attribute->addProperty(w("RequiresSemanticsValidation").c_str(), w(semantics).c_str());
        set.addMetaAttribute(attribute);
    }
};

void give(Metadata::MetadataSet & set, ValidationSchema const & schema, char const * name, Platform::UInt32 value)
{
    std::size_t index = std::find(schema.names.begin(), schema.names.end(), name) - schema.names.begin();
    Metadata::SimpleElement & element =
        static_cast<Metadata::SimpleElement &>(set.find(validationLabel(static_cast<unsigned char>(index + 1))));
    element.set(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt32(value)), false);
}

// The names of the elements that a query gave.
typedef void (Metadata::MetadataSet::*Query)(Templates::vector<Metadata::Element *> &) const;
std::string answer(Metadata::MetadataSet const & set, Query query)
{
    Templates::vector<Metadata::Element *> elements;
    (set.*query)(elements);
    std::string names;
    for (Metadata::Element * element : elements)
    {
        MetaMetadata::MetaAttribute const & attribute =
            static_cast<MetaMetadata::MetaAttribute const &>(*element->metaAttribute());
        names += (names.empty() ? "" : " ") + nameOf(&attribute.metaElement());
    }
    return names;
}
} // namespace

TEST(MetadataSetValidation, EachQueryOverEmptyDistinguishedAndOtherValues)
{
    struct Row
    {
        char const * what;
        std::vector<std::pair<char const *, Platform::UInt32>> values;
        // Open, incomplete, possibly open, possibly incomplete, possibly forbidden, semantics.
        char const * answers[6];
    } const rows[] = {
        {"empty", {}, {"required encoder", "best", "semantic semanticPlain", "", "", "semantic semanticPlain"}},
        {"distinguished",
         {{"required", 1}, {"encoder", 1}, {"best", 0xffffffffu}, {"semantic", 0}, {"semanticPlain", 0}},
         {"", "best", "", "semantic", "semantic semanticPlain", "semantic"}},
        {"other", {{"best", 7}, {"semantic", 0x01000000}},
         {"required encoder", "", "semanticPlain", "", "semantic", "semanticPlain"}}};
    Query const queries[] = {&Metadata::MetadataSet::openElements, &Metadata::MetadataSet::incompleteElements,
                             &Metadata::MetadataSet::possiblyOpenElements,
                             &Metadata::MetadataSet::possiblyIncompleteElements,
                             &Metadata::MetadataSet::possiblyForbiddenElements,
                             &Metadata::MetadataSet::getSemanticsValidationElements};
    ValidationSchema schema;
    for (Row const & row : rows)
    {
        SCOPED_TRACE(row.what);
        Metadata::MetadataSet set(schemaKey(), schema.dictionary->find(schemaKey()), nullptr);
        for (auto const & value : row.values)
            give(set, schema, value.first, value.second);
        for (unsigned q = 0; q < 6; ++q)
            EXPECT_EQ(row.answers[q], answer(set, queries[q])) << q;
    }

    // The queries append.
    Metadata::MetadataSet set(schemaKey(), schema.dictionary->find(schemaKey()), nullptr);
    Templates::vector<Metadata::Element *> elements;
    set.openElements(elements);
    set.openElements(elements);
    EXPECT_EQ(4u, elements.size());
}

TEST(MetadataSetValidation, AnAttributeWithoutThePropertyFailsTheQuery)
{
    ValidationSchema schema(false);
    Metadata::MetadataSet set(schemaKey(), schema.dictionary->find(schemaKey()), nullptr);
    Templates::vector<Metadata::Element *> elements;
    EXPECT_EQ(Exceptions::NotFound::ERROR_CODE, thrownBy([&] { set.openElements(elements); }).code);
    EXPECT_EQ(Exceptions::NotFound::ERROR_CODE, thrownBy([&] { set.possiblyForbiddenElements(elements); }).code);

    // Invalid elements are not looked at, and a set with none but those answers nothing.
    Metadata::MetadataSet bare(schemaKey(), nullptr, nullptr);
    bare.createInvalidElement(Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const>(
        new MetaMetadata::UnknownAttribute(Types::LocalTag(0x8001), MetaMetadata::UnknownAttribute::NotInDictionaryReason)));
    bare.openElements(elements);
    bare.getSemanticsValidationElements(elements);
    EXPECT_TRUE(elements.empty());
}

TEST(MetadataSetValidation, TheBuiltInSchemaAnswersEveryQuery)
{
    // Every attribute of the built-in schema has the property, empty: only status decides.
    MetaMetadata::MetaMetadataSet const * identification = nullptr;
    for (MetaMetadata::Dictionary::KeyToMetaMetadataSet::const_iterator it = standardDictionary()->metaMetadataSetBegin();
         it != standardDictionary()->metaMetadataSetEnd(); ++it)
        if (n(it->second.getProperty(w("name").c_str())) == "Identification")
            identification = &it->second;
    ASSERT_NE(nullptr, identification);
    Metadata::MetadataSet set(identification->key(), identification, nullptr);
    Templates::vector<Metadata::Element *> open;
    set.openElements(open);
    unsigned required = 0;
    for (MetaMetadata::MetaMetadataSet::const_iterator it = identification->metaAttributesBegin();
         it != identification->metaAttributesEnd(); ++it)
        if (it->second->requiredStatus() == AttributeRequiredStatus::Required)
            ++required;
    EXPECT_GT(required, 0u);
    EXPECT_EQ(required, open.size());
    Templates::vector<Metadata::Element *> semantic;
    set.possiblyOpenElements(semantic);
    set.getSemanticsValidationElements(semantic);
    EXPECT_TRUE(semantic.empty());
}
