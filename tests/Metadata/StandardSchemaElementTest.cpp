// The element classes and the partition dictionary over the built-in schema and the Primers of
// real files.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DataIO/File/FileDataSource.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/MetaCollectionElement.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Element.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionDictionary.h"
#include "Packs/PrimerPack.h"
#include "Support/Fixtures.h"

using namespace Vellum;
using MetaMetadataTest::n;

namespace
{
// The class of an element as a word.
class ClassName : public Metadata::Visitors::ElementVisitor
{
public:
    void visit(Metadata::BatchReferenceElement const &) override { name = "BatchReference"; }
    void visit(Metadata::ArrayReferenceElement const &) override { name = "ArrayReference"; }
    void visit(Metadata::ReferenceElement const &) override { name = "Reference"; }
    void visit(Metadata::BatchElement const &) override { name = "Batch"; }
    void visit(Metadata::ArrayElement const &) override { name = "Array"; }
    void visit(Metadata::SimpleElement const &) override { name = "Simple"; }
    std::string name;
};

bool isReference(Types::Identifiers::Identifier type)
{
    return type == Types::Identifiers::StrongReference || type == Types::Identifiers::WeakReference;
}

// The class that a description calls for.
std::string expectedClass(MetaMetadata::MetaElement const & element)
{
    MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaCollectionElement> collection;
    element.accept(collection);
    if (collection.value() != nullptr)
    {
        std::string kind = element.dataType() == Types::Identifiers::Array ? "Array" : "Batch";
        return isReference(collection.value()->dataSubType()) ? kind + "Reference" : kind;
    }
    return isReference(element.dataType()) ? "Reference" : "Simple";
}

// The Primer pack of the file's header partition.
Templates::auto_ptr<Packs::PrimerPack> headerPrimerOf(std::string const & path)
{
    DataIO::File::FileDataSource source(Utils::wide(path.c_str()).c_str(), 1 << 16);
    KLV::Reader reader(source);
    while (source.remaining() > 0)
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 1 << 16);
        if (Packs::isPrimerPack(packet->key()))
            return Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack(*packet));
    }
    return Templates::auto_ptr<Packs::PrimerPack>();
}
} // namespace

TEST(StandardSchemaElementTest, EverySetGetsAnElementOfTheRightClassForEachAttribute)
{
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    unsigned sets = 0;
    unsigned references = 0;
    unsigned collections = 0;
    for (MetaMetadata::Dictionary::KeyToMetaMetadataSet::const_iterator it = dictionary->metaMetadataSetBegin();
         it != dictionary->metaMetadataSetEnd(); ++it)
    {
        Metadata::MetadataSet set(it->first, &it->second, nullptr);
        ASSERT_EQ(set.size(), it->second.metaAttributeCount());
        for (Metadata::MetadataSet::const_iterator element = set.begin(); element != set.end(); ++element)
        {
            ClassName visitor;
            element->second->accept(visitor);
            std::string const expected = expectedClass(*dictionary->findMetaElement(element->first));
            EXPECT_EQ(visitor.name, expected) << n(element->first.toString());
            EXPECT_TRUE(element->second->empty());
            references += expected.find("Reference") != std::string::npos;
            collections += expected.find("Array") != std::string::npos || expected.find("Batch") != std::string::npos;
        }
        ++sets;
    }
    EXPECT_GT(sets, 50u);
    EXPECT_GT(references, 20u);
    EXPECT_GT(collections, 20u);
}

// The Primers of the samples and of the files ffmpeg makes: every static tag they list is the
// built-in dictionary's, in both directions, and new labels get dynamic tags the file did not use.
TEST(StandardSchemaElementTest, PartitionDictionaryOverThePrimersOfRealFiles)
{
    std::vector<std::string> files = VellumTest::ffmpegFixtureFiles();
    if (!VellumTest::sharedDir().empty())
        for (std::string const & sample : VellumTest::sampleFiles())
            files.push_back(sample);
    if (files.empty())
        GTEST_SKIP() << "neither samples nor ffmpeg";
    Templates::SharedPtr<MetaMetadata::Dictionary> schema = MetaMetadata::createStandardDictionary();
    for (std::string const & file : files)
    {
        SCOPED_TRACE(file);
        Templates::auto_ptr<Packs::PrimerPack> primer = headerPrimerOf(file);
        ASSERT_NE(primer.get(), nullptr);
        std::vector<Packs::PrimerPack::Entry> entries;
        for (unsigned i = 0; i < primer->count(); ++i)
            entries.push_back(primer->at(i));
        Metadata::PartitionDictionary dictionary(schema, std::move(primer));

        unsigned dynamic = 0, statics = 0;
        for (Packs::PrimerPack::Entry const & entry : entries)
        {
            // The files agree with the standard, so strict and relaxed give the Primer's label.
            EXPECT_EQ(dictionary.find(entry.first, true), entry.second) << n(entry.first.toString());
            EXPECT_EQ(dictionary.find(entry.first, false), entry.second) << n(entry.first.toString());
            EXPECT_EQ(dictionary.findOrGenerate(entry.second), entry.first);
            dynamic += !entry.first.isStaticLocalTag();
            if (entry.first.isStaticLocalTag())
            {
                ++statics;
                Types::LocalTag const * back = schema->find(entry.second);
                ASSERT_NE(nullptr, back) << n(entry.first.toString());
                EXPECT_EQ(entry.first, *back);
            }
        }
        EXPECT_GT(statics, 20u);

        // A new label gets a dynamic tag that the file's Primer did not use.
        unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x0e, 0x0e, 0x7f, 0x7f, 0, 0, 0, 0, 1};
        Types::UniversalLabel const fresh(bytes);
        Types::LocalTag const tag = dictionary.findOrGenerate(fresh);
        EXPECT_GE(tag.value(), 0x8000);
        for (Packs::PrimerPack::Entry const & entry : entries)
            EXPECT_NE(entry.first, tag);
        EXPECT_EQ(dictionary.find(tag, true), fresh);
        EXPECT_EQ(dictionary.primer().count(), entries.size() + 1);
        if (dynamic == 0)
        {
            EXPECT_EQ(tag.value(), 0x8000);
        }
    }
}
