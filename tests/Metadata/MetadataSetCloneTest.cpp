// Clones of metadata sets: shallow ones hold no references, deep ones clone the sets behind strong
// references, and every clone has an instance UID of its own.

#include <gtest/gtest.h>

#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSetTestSupport.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "Types/References.h"
#include "Types/Visitors.h"

using namespace Vellum;
using namespace Vellum::MetadataSetTest;
namespace Keys = Vellum::Metadata::Structural::StructuralMetadataKeys;
namespace ULs = Vellum::Metadata::Structural::StructuralMetadataULs;

namespace
{
unsigned short const instanceUIDTag = 0x3c0a;
unsigned short const companyNameTag = 0x3c01;
unsigned short const lastModifiedTag = 0x3b02;
unsigned short const contentStorageTag = 0x3b03;
unsigned short const identificationsTag = 0x3b06;
unsigned short const primaryPackageTag = 0x3b08;
unsigned short const packagesTag = 0x1901;

Bytes collection(std::vector<Bytes> const & members)
{
    Bytes out = {0, 0, 0, static_cast<unsigned char>(members.size()), 0, 0, 0, 16};
    for (Bytes const & member : members)
        out = cat(out, member);
    return out;
}

Bytes timestampBytes() { return Bytes{0x07, 0xe8, 0x03, 0x1f, 0x0c, 0x22, 0x38, 0x02}; }

// A Preface with a Content Storage, two Identifications, a primary package that is not there,
// and an item of another set; the Content Storage refers back to the Preface and to a set that
// is missing.
struct Graph
{
    TestOwner owner;
    Metadata::MetadataSet * preface;
    Metadata::MetadataSet * storage;
    Metadata::MetadataSet * first;
    Metadata::MetadataSet * second;

    Graph()
    {
        for (unsigned short tag : {instanceUIDTag, companyNameTag, lastModifiedTag, contentStorageTag,
                                   identificationsTag, primaryPackageTag, packagesTag})
            owner.partitionDictionary().primer().add(Types::LocalTag(tag), labelOfTag(tag));
        Bytes prefaceItems = cat(cat(cat(item(instanceUIDTag, uuidBytes(0x10)), item(lastModifiedTag, timestampBytes())),
                                     cat(item(contentStorageTag, uuidBytes(0x20)),
                                         item(identificationsTag, collection({uuidBytes(0x30), uuidBytes(0x40)})))),
                                 cat(item(primaryPackageTag, uuidBytes(0x50)), item(companyNameTag, Bytes{0, 0x41})));
        preface = load(setPacket(Keys::preface(), prefaceItems, 1));
        storage = load(setPacket(Keys::contentStorage(),
                                 cat(item(instanceUIDTag, uuidBytes(0x20)),
                                     item(packagesTag, collection({uuidBytes(0x10), uuidBytes(0x60)})))));
        first = load(setPacket(Keys::identification(),
                               cat(item(instanceUIDTag, uuidBytes(0x30)), item(companyNameTag, Bytes{0, 0x31}))));
        second = load(setPacket(Keys::identification(),
                                cat(item(instanceUIDTag, uuidBytes(0x40)), item(companyNameTag, Bytes{0, 0x32}))));
        owner.events.clear();
    }

    Metadata::MetadataSet * load(Bytes const & packet)
    {
        return owner.adopt(parseSet(packet, owner.partitionDictionary(), &owner).release());
    }

    Metadata::MetadataSet * target(Types::Reference const & reference)
    {
        Templates::vector<Metadata::MetadataSet *> found = owner.find(Metadata::MetadataULs::instanceUID(), reference);
        return found.empty() ? nullptr : found.front();
    }
};

Types::Reference const * referenceOf(Metadata::Element const & element)
{
    Metadata::Visitors::GetElementVisitor<Metadata::ReferenceElement> reference;
    element.accept(reference);
    return reference.value() == nullptr ? nullptr : reference.value()->value();
}

Bytes simpleBytes(Metadata::Element const & element)
{
    Metadata::Visitors::GetElementVisitor<Metadata::SimpleElement> simple;
    element.accept(simple);
    if (simple.value() == nullptr || simple.value()->value() == nullptr)
        return Bytes();
    return bytesOf(*simple.value()->value());
}

bool isStrong(Types::SimpleDataType const & value)
{
    Types::Visitors::GetVisitor<Types::StrongReference> strong;
    value.accept(strong);
    return strong.value() != nullptr;
}
} // namespace

TEST(MetadataSetClone, AShallowCloneCopiesValuesButNoReferences)
{
    Graph graph;
    Metadata::MetadataSet * clone = graph.preface->clone(false);
    ASSERT_NE(nullptr, clone);
    EXPECT_EQ(&graph.owner, clone->owner());
    EXPECT_EQ(graph.preface->metaMetadataSet(), clone->metaMetadataSet());
    ASSERT_EQ(1u, graph.owner.clones.size());
    EXPECT_EQ(graph.preface, graph.owner.clones[0].first);
    // The clone is announced, then the two values and the invalid one as additions.
    ASSERT_EQ(4u, graph.owner.events.size());
    EXPECT_EQ("cloned", graph.owner.events[0]);

    ASSERT_NE(nullptr, clone->instanceUID());
    EXPECT_NE(uuidBytes(0x10), bytesOf(*clone->instanceUID()));
    EXPECT_EQ(timestampBytes(), simpleBytes(clone->find(ULs::lastModifiedDate())));
    EXPECT_TRUE(clone->find(ULs::contentStorage()).empty());
    EXPECT_TRUE(clone->find(ULs::identificationList()).empty());
    EXPECT_TRUE(clone->find(ULs::primaryPackage()).empty());
    ASSERT_EQ(1u, clone->invalidSize());
    EXPECT_EQ(Bytes({0, 0x41}), simpleBytes(*clone->invalidBegin()[0]));
    EXPECT_EQ(&*clone, &clone->invalidBegin()[0]->metadataSet());
    // The width of the BER field is that of a new set; the source is untouched.
    EXPECT_EQ(4, clone->berLength());
    EXPECT_FALSE(graph.preface->find(ULs::contentStorage()).empty());

    // Each clone has an instance UID of its own.
    Metadata::MetadataSet * again = graph.preface->clone(false);
    EXPECT_NE(bytesOf(*clone->instanceUID()), bytesOf(*again->instanceUID()));
}

TEST(MetadataSetClone, ADeepCloneClonesWhatStrongReferencesHold)
{
    Graph graph;
    Metadata::MetadataSet * clone = graph.preface->clone(true, nullptr);
    ASSERT_NE(nullptr, clone);
    // The Preface, its Content Storage and the two Identifications.
    ASSERT_EQ(4u, graph.owner.clones.size());
    EXPECT_EQ("cloned deep", graph.owner.events[0]);

    Types::Reference const * storageReference = referenceOf(clone->find(ULs::contentStorage()));
    ASSERT_NE(nullptr, storageReference);
    EXPECT_TRUE(isStrong(*storageReference));
    Metadata::MetadataSet * storage = graph.target(*storageReference);
    ASSERT_NE(nullptr, storage);
    EXPECT_NE(graph.storage, storage);

    // The Content Storage's own references: the Preface is on the way of this clone and the other
    // set is missing, so none remains.
    Metadata::Visitors::GetElementVisitor<Metadata::BatchReferenceElement> packages;
    storage->find(ULs::packages()).accept(packages);
    ASSERT_NE(nullptr, packages.value());
    EXPECT_EQ(0, packages.value()->size());

    Metadata::Visitors::GetElementVisitor<Metadata::ArrayReferenceElement> identifications;
    clone->find(ULs::identificationList()).accept(identifications);
    ASSERT_NE(nullptr, identifications.value());
    ASSERT_EQ(2, identifications.value()->size());
    Metadata::MetadataSet * first = graph.target(identifications.value()->at(0));
    Metadata::MetadataSet * second = graph.target(identifications.value()->at(1));
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, second);
    EXPECT_NE(graph.first, first);
    EXPECT_EQ(Bytes({0, 0x32}), simpleBytes(second->find(ULs::companyName())));

    // A weak reference is not carried over, even in a deep clone.
    EXPECT_TRUE(clone->find(ULs::primaryPackage()).empty());
}

TEST(MetadataSetClone, AStrongReferenceToAMissingSetIsDropped)
{
    Graph graph;
    Metadata::MetadataSet * clone = graph.storage->clone(true);
    // Packages held the Preface and a missing set: the Preface is cloned, with its own tree.
    Metadata::Visitors::GetElementVisitor<Metadata::BatchReferenceElement> packages;
    clone->find(ULs::packages()).accept(packages);
    ASSERT_NE(nullptr, packages.value());
    ASSERT_EQ(1, packages.value()->size());
    Metadata::MetadataSet * preface = graph.target(packages.value()->at(0));
    ASSERT_NE(nullptr, preface);
    EXPECT_EQ(Keys::preface(), preface->key());
    // The Preface's Content Storage is the clone under way: the reference does not survive.
    EXPECT_TRUE(preface->find(ULs::contentStorage()).empty());
}

TEST(MetadataSetClone, ACloneForAnotherOwnerUsesThatOwnersDictionary)
{
    Graph graph;
    TestOwner other;
    Metadata::MetadataSet * clone = graph.first->clone(false, &other);
    EXPECT_EQ(&other, clone->owner());
    ASSERT_EQ(1u, other.clones.size());
    EXPECT_TRUE(graph.owner.events.empty());
    EXPECT_EQ(Bytes({0, 0x31}), simpleBytes(clone->find(ULs::companyName())));

    // An owner whose dictionary lacks the set: the clone has no description, and keeps the
    // copies as invalid elements.
    TestOwner bare(Templates::SharedPtr<MetaMetadata::Dictionary>(new MetaMetadata::Dictionary));
    Metadata::MetadataSet * orphan = graph.first->clone(false, &bare);
    EXPECT_EQ(nullptr, orphan->metaMetadataSet());
    EXPECT_EQ(2u, orphan->invalidSize());
    ASSERT_NE(nullptr, orphan->instanceUID());
    EXPECT_NE(bytesOf(*graph.first->instanceUID()), bytesOf(*orphan->instanceUID()));
}

TEST(MetadataSetClone, ASetWithoutOwnerClonesWithoutOne)
{
    Metadata::MetadataSet set(Keys::identification(),
                              standardDictionary()->find(Keys::identification()), nullptr);
    Metadata::SimpleElement & name = static_cast<Metadata::SimpleElement &>(set.find(ULs::companyName()));
    Bytes text = {0, 0x41};
    DataIO::Memory::MemoryDataSource textSource(text.data(), text.size());
    KLV::Value value(textSource, text.size());
    name.load(value);
    std::unique_ptr<Metadata::MetadataSet> clone(set.clone(true));
    EXPECT_EQ(nullptr, clone->owner());
    EXPECT_EQ(text, simpleBytes(clone->find(ULs::companyName())));
    // The instance UID of the clone is made even where the source had none.
    EXPECT_NE(nullptr, clone->instanceUID());
}
