// The partition metadata: loading, creating and removing sets, listeners, sizes and tags, the
// instance UID check, the orders of writing and tidying.

#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include <algorithm>

#include "Metadata/DarkMetadataSet.h"
#include "Metadata/Listeners/BaseMetadataIndexListener.h"
#include "Metadata/MetadataKeys.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionMetadataTestSupport.h"
#include "MetaMetadata/Helpers.h"
#include "Support/Fixtures.h"
#include "Types/References.h"
#include "Types/Timestamp.h"

using namespace Vellum;
using namespace Vellum::PartitionMetadataTest;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

namespace
{
typedef Templates::vector<MetadataSet const *> SetList;

Types::UUID const & uid(MetadataSet const * set) { return uidOf(*set); }

std::vector<MetadataSet const *> asVector(SetList const & list) { return std::vector<MetadataSet const *>(list.begin(), list.end()); }

// The sets in the order of their packets in written bytes (a Primer in front is passed over).
std::vector<std::string> writtenKeys(Bytes const & bytes)
{
    std::vector<std::string> keys;
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    while (source.remaining() > 0)
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        if (!Packs::isPrimerPack(packet->key()))
            keys.push_back(n(packet->key().toString(Types::Dotted)));
    }
    return keys;
}

// The instance UIDs of the written sets, in order.
std::vector<Types::UUID> writtenUIDs(Bytes const & bytes)
{
    LoadReport report;
    MetadataPtr copy = loadSerialized(bytes, report);
    std::vector<Types::UUID> uids;
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    MetadataPtr scratch = emptyPartition(new Packs::PrimerPack(copy->partitionDictionary().primer()));
    while (source.remaining() > 0)
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        if (Packs::isPrimerPack(packet->key()))
            continue;
        MetadataSet * set = scratch->load(*packet);
        uids.push_back(set != nullptr && set->instanceUID() != nullptr ? *set->instanceUID() : Types::UUID());
    }
    return uids;
}

Bytes darkPacket()
{
    // A key of a registry that is not a group: no local tags.
    Bytes key = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01, 0x0d, 0x7f, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00};
    return KLVTest::packet(key, Bytes{1, 2, 3, 4, 5}, 4);
}

// A local set of a key that the dictionary does not know, private (byte 8 is 0x0f), holding an
// InstanceUID item and an item of a dynamic tag that the Primer does not hold.
Bytes unknownLocalSetPacket(unsigned char uidLast)
{
    Bytes key = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0f, 0x7f, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00};
    Bytes items = {0x3c, 0x0a, 0x00, 0x10, 0xaa, 0xbb, 0xcc, 0xdd, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, uidLast,
                   0x80, 0x01, 0x00, 0x02, 0x12, 0x34};
    return KLVTest::packet(key, items, 4);
}

MetadataSet * loadBytes(PartitionMetadata & metadata, Bytes const & bytes)
{
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
    return metadata.load(*packet);
}
} // namespace

TEST(PartitionMetadata, CreateFindAndRemoveSets)
{
    MetadataPtr metadata = emptyPartition();
    Templates::SharedPtr<RecordingListener> listener(new RecordingListener);
    metadata->addMetadataListener(listener, false);

    MetadataSet * preface = metadata->createMetadataSet(Keys::preface());
    ASSERT_NE(nullptr, preface->instanceUID());
    // The key first, then the new InstanceUID, then the set itself.
    EXPECT_EQ((std::vector<std::string>{"key", "added", "created"}), listener->calls);

    MetadataSet * other = metadata->createMetadataSet(Keys::preface());
    EXPECT_NE(*preface->instanceUID(), *other->instanceUID());
    EXPECT_EQ(2u, metadata->find(Keys::preface()).size());
    EXPECT_EQ(preface, metadata->find(Keys::preface()).front());
    Types::UUID const uid = *preface->instanceUID();
    EXPECT_EQ((Templates::vector<MetadataSet *>{preface}), metadata->find(Metadata::MetadataULs::instanceUID(), uid));

    listener->clear();
    EXPECT_TRUE(metadata->removeMetadataSet(uid));
    EXPECT_EQ(1u, metadata->size());
    EXPECT_EQ("removed", listener->calls.front());
    EXPECT_TRUE(metadata->find(Metadata::MetadataULs::instanceUID(), uid).empty());

    // An unknown UID: false, and nothing announced.
    listener->clear();
    EXPECT_FALSE(metadata->removeMetadataSet(uid));
    EXPECT_TRUE(listener->calls.empty());

    // A key the dictionary does not know.
    KLV::Key const unknown(Bytes{0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x7f, 1, 1, 0, 0, 0, 0}.data());
    EXPECT_EQ(thrown<Exceptions::NotFound>("A MetaMetadataSet with Key 1.3.53.2.83.1.1.13.127.1.1 was not found in the Dictionary."),
              thrownBy([&] { metadata->createMetadataSet(unknown); }));
    EXPECT_EQ(1u, metadata->size());
}

TEST(PartitionMetadata, DarkPacketsAndUnknownLocalSets)
{
    MetadataPtr metadata = emptyPartition();
    EXPECT_EQ(0u, metadata->serializedSize(true, false));

    EXPECT_EQ(nullptr, loadBytes(*metadata, darkPacket()));
    EXPECT_EQ(0u, metadata->size());
    ASSERT_EQ(1, std::distance(metadata->darkBegin(), metadata->darkEnd()));
    // With dark sets counted, the whole packet: 16 + 4 + 5.
    EXPECT_EQ(25u, metadata->serializedSize(true, false));
    EXPECT_EQ(0u, metadata->serializedSize(false, false));
    MetadataPtr none = emptyPartition();
    EXPECT_EQ(none->serializedSize(true, true) + 25u, metadata->serializedSize(true, true));

    MetadataSet * group = loadBytes(*metadata, unknownLocalSetPacket(1));
    ASSERT_NE(nullptr, group);
    EXPECT_EQ(2u, group->invalidSize());
    ASSERT_NE(nullptr, group->instanceUID());
    // Without its invalid elements, a set of no items: key and a 4-byte length.
    EXPECT_EQ(20u, group->serializedSize(false));
    EXPECT_EQ(20u + 26u, group->serializedSize(true));
    EXPECT_EQ(25u + 46u, metadata->serializedSize(true, false));
    EXPECT_EQ(20u, metadata->serializedSize(false, false));
}

TEST(PartitionMetadata, ADamagedSetIsRefusedAndLeavesNothingBehind)
{
    MetadataPtr metadata = emptyPartition();
    Templates::SharedPtr<RecordingListener> listener(new RecordingListener);
    metadata->addMetadataListener(listener, false);
    // A Preface whose InstanceUID loads, then an item that claims more bytes than the set has.
    Bytes items = {0x3c, 0x0a, 0x00, 0x10, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9,
                   0x3b, 0x02, 0x00, 0x08, 1, 2, 3, 4};
    Bytes const bytes = KLVTest::packet(Bytes(Keys::preface().rawBuffer(), Keys::preface().rawBuffer() + 16), items, 4);
    Thrown caught = thrownBy([&] { loadBytes(*metadata, bytes); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, caught.code);
    EXPECT_EQ(0u, metadata->size());
    EXPECT_EQ(0u, listener->count("created"));
    // What was announced of it went again with it, so the index does not point at freed values.
    EXPECT_EQ(listener->count("added"), listener->count("removed value"));
    unsigned char nines[16];
    std::fill(nines, nines + 16, 9);
    EXPECT_TRUE(metadata->find(Metadata::MetadataULs::instanceUID(), Types::UUID(nines)).empty());

    // The sets behind it still load.
    EXPECT_NE(nullptr, loadBytes(*metadata, unknownLocalSetPacket(2)));
    EXPECT_EQ(1u, metadata->size());
}

TEST(PartitionMetadata, EmptyPartition)
{
    MetadataPtr metadata = emptyPartition();
    Packs::PrimerPack const & primer = metadata->partitionDictionary().primer();
    EXPECT_EQ(primer.serializedSize(), metadata->serializedSize(false, true));
    EXPECT_EQ(primer.serializedSize(), metadata->serializedSize(true, true));

    EXPECT_EQ(thrown<Exceptions::InvalidStructure>("Preface not found in PartitionMetadata"),
              thrownBy([&] { serialized(*metadata, PartitionMetadata::PrefaceThenKeys); }));
    for (PartitionMetadata::SerializationOrder order : {PartitionMetadata::ForwardDepthFirst, PartitionMetadata::BackwardReferences,
                                                        PartitionMetadata::ForwardDepthFirstTidied})
        EXPECT_EQ(thrown<Exceptions::NotFound>("Didn't find MetadataSet with specified key."),
                  thrownBy([&] { serialized(*metadata, order); }));

    // Orders past the last write nothing.
    EXPECT_TRUE(serialized(*metadata, PartitionMetadata::SerializationOrder(6)).empty());
}

TEST(PartitionMetadata, SizesFollowChangesAndMatchTheBytes)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    ASSERT_NE(nullptr, loadBytes(*metadata, unknownLocalSetPacket(3)));
    ASSERT_EQ(nullptr, loadBytes(*metadata, darkPacket()));

    for (bool withDark : {false, true})
        for (bool withPrimer : {true, false})
        {
            SCOPED_TRACE(std::to_string(withDark) + std::to_string(withPrimer));
            uint64 const size = metadata->serializedSize(withDark, withPrimer);
            EXPECT_EQ(size, serialized(*metadata, PartitionMetadata::PrefaceThenKeys, withDark, withPrimer).size());
            EXPECT_EQ(size, serialized(*metadata, PartitionMetadata::ForwardDepthFirst, withDark, withPrimer).size());
        }
    uint64 const with = metadata->serializedSize(true, true);
    uint64 const without = metadata->serializedSize(false, true);
    // The dark packet and the two invalid items of the unknown set.
    EXPECT_EQ(25u + 20u + 6u, with - without);

    // A change is seen at once: a time stamp grows the package by tag, length and value.
    setValue(*h.material, ULs::packageModifiedDate(), Types::Timestamp(2024, 1, 2, 3, 4, 5, (unsigned short)600));
    EXPECT_EQ(with + 12u, metadata->serializedSize(true, true));
    Metadata::Element & date = h.material->find(ULs::packageModifiedDate());
    simple(*h.material, ULs::packageModifiedDate()).set(Templates::auto_ptr<Types::SimpleDataType>(), true);
    EXPECT_TRUE(date.empty());
    EXPECT_EQ(with, metadata->serializedSize(true, true));
}

TEST(PartitionMetadata, LocalTagsForEveryElement)
{
    MetadataPtr metadata = emptyPartition();
    buildHeader(*metadata);
    Packs::PrimerPack const & primer = metadata->partitionDictionary().primer();
    EXPECT_EQ(0u, primer.count());
    // Without the Primer nothing is generated.
    metadata->serializedSize(true, false);
    EXPECT_EQ(0u, primer.count());
    // The size is cached: the tags come with the next change.
    setValue(*metadata->find(Keys::preface()).front(), ULs::objectModelVersion(), Types::UInt32(1));
    metadata->generateLocalTags();
    unsigned const count = primer.count();
    EXPECT_GT(count, 20u);
    // Empty elements get tags too, the Preface's LastModifiedDate among them.
    EXPECT_NE(nullptr, primer.find(ULs::lastModifiedDate()));
    EXPECT_NE(nullptr, primer.find(ULs::packageModifiedDate()));
    // Nothing changed since: no new tags, and the size includes the Primer as it is.
    metadata->generateLocalTags();
    EXPECT_EQ(count, primer.count());
    EXPECT_EQ(primer.serializedSize(), metadata->serializedSize(true, true) - metadata->serializedSize(true, false));
}

TEST(PartitionMetadata, ForwardOrdersFollowStrongReferencesAndPutOrphansLast)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    std::vector<MetadataSet const *> const depthFirst = {
        h.preface,     h.contentStorage,  h.source,           h.descriptor,       h.soundTrack,
        h.soundSequence, h.soundClip,     h.material,         h.pictureTrack,     h.pictureSequence,
        h.pictureClip, h.timecodeTrack,   h.timecodeSequence, h.timecodeComponent, h.identification};
    std::vector<MetadataSet const *> const levelFirst = {
        h.preface,       h.contentStorage, h.identification, h.source,          h.material,
        h.descriptor,    h.soundTrack,     h.soundSequence,  h.soundClip,       h.pictureTrack,
        h.timecodeTrack, h.pictureSequence, h.pictureClip,   h.timecodeSequence, h.timecodeComponent};

    SetList list;
    EXPECT_EQ(0u, metadata->calculateSerializationOrder(list, true, true));
    EXPECT_EQ(depthFirst, asVector(list));
    list.clear();
    EXPECT_EQ(0u, metadata->calculateSerializationOrder(list, true, false));
    EXPECT_EQ(levelFirst, asVector(list));

    // The written sets stand in the same order.
    std::vector<Types::UUID> expected;
    for (MetadataSet const * set : depthFirst)
        expected.push_back(uid(set));
    EXPECT_EQ(expected, writtenUIDs(serialized(*metadata, PartitionMetadata::ForwardDepthFirst)));
    expected.clear();
    for (MetadataSet const * set : levelFirst)
        expected.push_back(uid(set));
    EXPECT_EQ(expected, writtenUIDs(serialized(*metadata, PartitionMetadata::ForwardLevelFirst)));

    // Orphans follow the tree in key order, and are counted.
    MetadataSet * lonelySequence = metadata->createMetadataSet(Keys::sequence());
    MetadataSet * lonelyClip = metadata->createMetadataSet(Keys::sourceClip());
    list.clear();
    EXPECT_EQ(2u, metadata->calculateSerializationOrder(list, true, true));
    ASSERT_EQ(depthFirst.size() + 2, list.size());
    // The Sequence key sorts before the Source Clip key.
    EXPECT_EQ(lonelySequence, list[list.size() - 2]);
    EXPECT_EQ(lonelyClip, list.back());

    // The Preface first, then every other set in key order.
    std::vector<std::string> const keys = writtenKeys(serialized(*metadata, PartitionMetadata::PrefaceThenKeys));
    ASSERT_EQ(metadata->size(), keys.size());
    EXPECT_EQ(n(Keys::preface().toString(Types::Dotted)), keys.front());
    EXPECT_TRUE(std::is_sorted(keys.begin() + 1, keys.end()));
}

TEST(PartitionMetadata, StrongReferencesThatMeetTwiceOrLeadNowhere)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);

    // A set owned by two: refused like a cycle, by the forward orders.
    reference(*h.timecodeTrack, ULs::sequence()).set(h.pictureSequence);
    SetList list;
    EXPECT_EQ(thrown<Exceptions::InvalidFormat>("Circular reference for this instanceUID: " + n(uid(h.pictureSequence).toString())),
              thrownBy([&] { metadata->calculateSerializationOrder(list, true, true); }));
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, thrownBy([&] { serialized(*metadata, PartitionMetadata::ForwardLevelFirst); }).code);
    // The order of keys does not follow references.
    EXPECT_FALSE(serialized(*metadata, PartitionMetadata::PrefaceThenKeys).empty());

    // A reference to a set that is not there is passed over; what hung below the old target is
    // an orphan now, and the reference is written all the same.
    unsigned char nowhere[16] = {0x11, 0x22, 0x33, 0x44, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    reference(*h.timecodeTrack, ULs::sequence())
        .setUnverifiedReference(Templates::auto_ptr<Types::Reference>(new Types::StrongReference(nowhere)));
    list.clear();
    EXPECT_EQ(2u, metadata->calculateSerializationOrder(list, true, true));
    EXPECT_EQ(metadata->size(), list.size());
    LoadReport report;
    MetadataPtr copy = loadSerialized(serialized(*metadata, PartitionMetadata::ForwardDepthFirst), report);
    Templates::vector<MetadataSet *> tracks = copy->find(Metadata::MetadataULs::instanceUID(), uid(h.timecodeTrack));
    ASSERT_EQ(1u, tracks.size());
    Types::Reference const * kept = reference(*tracks.front(), ULs::sequence()).value();
    ASSERT_NE(nullptr, kept);
    EXPECT_EQ(Bytes(nowhere, nowhere + 16), valueBytes(*kept));
}

TEST(PartitionMetadata, TwoPrefacesAndTwoSetsOfOneInstanceUID)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    MetadataSet * second = metadata->createMetadataSet(Keys::preface());

    EXPECT_EQ(thrown<Exceptions::InvalidStructure>("More than one Preface found in PartitionMetadata"),
              thrownBy([&] { serialized(*metadata, PartitionMetadata::PrefaceThenKeys); }));
    // The forward orders start from the first and write the second as an orphan.
    SetList list;
    EXPECT_EQ(1u, metadata->calculateSerializationOrder(list, true, true));
    EXPECT_EQ(h.preface, list.front());
    EXPECT_EQ(second, list.back());
    EXPECT_EQ(metadata->size(), writtenUIDs(serialized(*metadata, PartitionMetadata::ForwardDepthFirst)).size());
    metadata->removeMetadataSet(uid(second));

    // The sound sequence comes after the picture sequence in key order, and is the one blamed.
    Types::UUID const shared = uid(h.soundSequence);
    setValue(*h.pictureSequence, ULs::instanceUID(), shared);
    for (PartitionMetadata::SerializationOrder order :
         {PartitionMetadata::PrefaceThenKeys, PartitionMetadata::ForwardDepthFirst, PartitionMetadata::BackwardReferences})
    {
        EXPECT_EQ(thrown<Exceptions::InvalidFormat>("The " + n(Keys::sequence().toString(Types::TypeDefault)) +
                                                    " metadataSet has an instance UID, " + n(shared.toString()) +
                                                    ", already defined!"),
                  thrownBy([&] { serialized(*metadata, order); }));
    }
}

TEST(PartitionMetadata, BackwardOrdersPutChildrenFirst)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    // After tidying: the Material Package first, in it the time code track first.
    std::vector<MetadataSet const *> const tree = {
        h.preface,      h.contentStorage, h.material,   h.timecodeTrack, h.timecodeSequence,
        h.timecodeComponent, h.pictureTrack, h.pictureSequence, h.pictureClip, h.source,
        h.descriptor,   h.soundTrack,     h.soundSequence, h.soundClip,  h.identification};
    // Only structural sets: the Preface stays first, the others follow in reverse.
    std::vector<Types::UUID> expected = {uid(h.preface)};
    for (auto it = tree.rbegin(); it + 1 != tree.rend(); ++it)
        expected.push_back(uid(*it));
    EXPECT_EQ(expected, writtenUIDs(serialized(*metadata, PartitionMetadata::BackwardReferences)));

    // A descriptive set and two private ones, all orphans: the descriptive one in key order
    // before the private ones. Each set that is not structural goes to the very front.
    MetadataSet * framework = metadata->createMetadataSet(
        KLV::Key(Bytes{0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x04, 0x01, 0x01, 0x01, 0x01, 0x00}.data()));
    MetadataSet * private1 = loadBytes(*metadata, unknownLocalSetPacket(4));
    MetadataSet * private2 = loadBytes(*metadata, unknownLocalSetPacket(5));
    ASSERT_NE(nullptr, private2);
    std::vector<Types::UUID> backward = {uid(private2), uid(private1), uid(framework)};
    backward.insert(backward.end(), expected.begin(), expected.end());
    EXPECT_EQ(backward, writtenUIDs(serialized(*metadata, PartitionMetadata::BackwardReferences)));
    // Private sets ahead of all others, in their order.
    std::vector<Types::UUID> privateFirst = {uid(private1), uid(private2), uid(framework)};
    privateFirst.insert(privateFirst.end(), expected.begin(), expected.end());
    EXPECT_EQ(privateFirst, writtenUIDs(serialized(*metadata, PartitionMetadata::BackwardReferencesPrivateFirst)));
}

TEST(PartitionMetadata, TidyingPutsMaterialPackagesAndTimeCodeTracksFirst)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    Templates::SharedPtr<RecordingListener> listener(new RecordingListener);
    metadata->addMetadataListener(listener, false);

    Bytes const untidy = serialized(*metadata, PartitionMetadata::ForwardDepthFirst);
    EXPECT_TRUE(listener->calls.empty());
    Metadata::CollectionReferenceElement & packages = references(*h.contentStorage, ULs::packages());
    EXPECT_EQ(valueBytes(Types::StrongReference(uid(h.source))), valueBytes(packages.at(0)));

    Bytes const tidy = serialized(*metadata, PartitionMetadata::ForwardDepthFirstTidied);
    EXPECT_NE(untidy, tidy);
    // The changes are announced, and stay: two packages and three tracks out and in again.
    EXPECT_EQ(5u, listener->count("member out"));
    EXPECT_EQ(5u, listener->count("member in"));
    ASSERT_EQ(2, packages.size());
    EXPECT_EQ(valueBytes(Types::StrongReference(uid(h.material))), valueBytes(packages.at(0)));
    EXPECT_EQ(valueBytes(Types::StrongReference(uid(h.source))), valueBytes(packages.at(1)));
    Metadata::CollectionReferenceElement & tracks = references(*h.material, ULs::tracks());
    ASSERT_EQ(2, tracks.size());
    EXPECT_EQ(valueBytes(Types::StrongReference(uid(h.timecodeTrack))), valueBytes(tracks.at(0)));
    EXPECT_EQ(valueBytes(Types::StrongReference(uid(h.pictureTrack))), valueBytes(tracks.at(1)));
    // Tidy already: the same bytes, in the tidied order, with or without tidying.
    EXPECT_EQ(tidy, serialized(*metadata, PartitionMetadata::ForwardDepthFirst));
}

TEST(PartitionMetadataDeathTest, TidyingNeedsAContentStorageWithPackages)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            MetadataPtr metadata = emptyPartition();
            metadata->createMetadataSet(Keys::preface());
            serialized(*metadata, PartitionMetadata::ForwardDepthFirstTidied);
        },
        "No ContentStorage");
    EXPECT_DEATH(
        {
            MetadataPtr metadata = emptyPartition();
            MetadataSet * preface = metadata->createMetadataSet(Keys::preface());
            reference(*preface, ULs::contentStorage()).set(metadata->createMetadataSet(Keys::contentStorage()));
            serialized(*metadata, PartitionMetadata::BackwardReferences);
        },
        "No ContentStorage packages");
    MetadataPtr metadata = emptyPartition();
    EXPECT_EQ(thrown<Exceptions::NotFound>("Didn't find MetadataSet with specified key."),
              thrownBy([&] { serialized(*metadata, PartitionMetadata::ForwardDepthFirstTidied); }));
}

TEST(PartitionMetadata, ParentSetsAndClones)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    Templates::vector<MetadataSet *> parents;
    EXPECT_EQ(1u, metadata->parentSets(h.pictureSequence, parents));
    ASSERT_EQ(1u, parents.size());
    EXPECT_EQ(h.pictureTrack, parents.front());
    // A parent with two references to the set comes twice; the count is what was appended.
    references(*h.contentStorage, ULs::packages()).append(h.material);
    PartitionMetadata const & constant = *metadata;
    Templates::vector<MetadataSet const *> constParents(1, h.preface);
    EXPECT_EQ(2u, constant.parentSets(static_cast<MetadataSet const *>(h.material), constParents));
    ASSERT_EQ(3u, constParents.size());
    EXPECT_EQ(h.contentStorage, constParents[1]);
    EXPECT_EQ(h.contentStorage, constParents[2]);
    // Weak references and the Preface have no parent.
    parents.clear();
    EXPECT_EQ(0u, metadata->parentSets(h.preface, parents));

    // A clone enters the partition as a created set, with a new instance UID that the index knows.
    Templates::SharedPtr<RecordingListener> listener(new RecordingListener);
    metadata->addMetadataListener(listener, false);
    uint64 const before = metadata->size();
    MetadataSet * clone = h.pictureClip->clone(false, nullptr);
    ASSERT_NE(nullptr, clone);
    EXPECT_EQ(before + 1, metadata->size());
    EXPECT_EQ(1u, listener->count("created"));
    EXPECT_NE(uid(h.pictureClip), uid(clone));
    Templates::vector<MetadataSet *> found = metadata->find(Metadata::MetadataULs::instanceUID(), uid(clone));
    ASSERT_EQ(1u, found.size());
    EXPECT_EQ(clone, found.front());
}

TEST(PartitionMetadata, StatusOfThePartition)
{
    // A header with no sets has nothing open or incomplete; one with an empty required element
    // stays open when asked to close.
    MetadataPtr metadata = emptyPartition();
    EXPECT_EQ(Packs::PartitionPack::ClosedComplete, Metadata::verifyPartitionMetadataStatus(*metadata, true));
    EXPECT_EQ(Packs::PartitionPack::OpenComplete, Metadata::verifyPartitionMetadataStatus(*metadata, false));
    buildHeader(*metadata);
    Templates::vector<Metadata::Element *> open, incomplete;
    metadata->openElements(open);
    metadata->incompleteElements(incomplete);
    EXPECT_FALSE(open.empty());
    EXPECT_EQ(incomplete.empty() ? Packs::PartitionPack::OpenComplete : Packs::PartitionPack::OpenIncomplete,
              Metadata::verifyPartitionMetadataStatus(*metadata, true));
}

TEST(PartitionMetadata, ListenersWithReplayHeldOnceAndRemovedSilently)
{
    Bytes const file = VellumTest::readFile(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf");
    LoadReport report;
    MetadataPtr metadata = loadHeader(file, report);
    unsigned values = 0;
    for (PartitionMetadata::const_iterator it = metadata->begin(); it != metadata->end(); ++it)
    {
        for (MetadataSet::const_iterator element = it->second->begin(); element != it->second->end(); ++element)
            values += element->second->empty() ? 0 : 1;
        for (unsigned i = 0; i < it->second->invalidSize(); ++i)
            values += it->second->invalidBegin()[i]->empty() ? 0 : 1;
    }

    // Without replay: nothing until something happens.
    Templates::SharedPtr<RecordingListener> quiet(new RecordingListener);
    metadata->addMetadataListener(quiet, false);
    EXPECT_TRUE(quiet->calls.empty());

    // With replay: each set, then its values, in key order, as if it had been loaded now.
    Templates::SharedPtr<RecordingListener> late(new RecordingListener);
    metadata->addMetadataListener(late, true);
    EXPECT_EQ(metadata->size(), late->count("created"));
    EXPECT_EQ(values, late->count("added") + late->count("added unknown"));
    ASSERT_FALSE(late->calls.empty());
    EXPECT_EQ("created", late->calls.front());
    PartitionMetadata::const_iterator expected = metadata->begin();
    MetadataSet * current = nullptr;
    for (std::size_t i = 0; i < late->calls.size(); ++i)
    {
        if (late->calls[i] == "created")
        {
            ASSERT_TRUE(expected != metadata->end());
            EXPECT_EQ(expected->second, late->sets[i]);
            current = late->sets[i];
            ++expected;
        }
        else
            EXPECT_EQ(current, late->sets[i]);
    }

    // Held once, however often added: each change is heard once.
    metadata->addMetadataListener(late, true);
    metadata->addMetadataListener(quiet, false);
    late->clear();
    quiet->clear();
    MetadataSet * preface = metadata->find(Keys::preface()).front();
    setValue(*preface, ULs::lastModifiedDate(), Types::Timestamp(2020, 1, 1, 0, 0, 0, (unsigned short)0));
    EXPECT_EQ(1u, late->calls.size());
    EXPECT_EQ(1u, quiet->calls.size());

    // Removed without a callback, and deaf from then on.
    quiet->clear();
    metadata->removeMetadataListener(quiet);
    EXPECT_TRUE(quiet->calls.empty());
    metadata->createMetadataSet(Keys::sequence());
    EXPECT_TRUE(quiet->calls.empty());
    EXPECT_EQ(1u, late->count("created"));
}

TEST(PartitionMetadata, StrongReferenceWalkOverInvalidAndWeakReferences)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    // A weak reference is not followed: the order stays.
    SetList before;
    metadata->calculateSerializationOrder(before, true, true);
    reference(*h.preface, ULs::primaryPackage()).set(h.material);
    SetList after;
    metadata->calculateSerializationOrder(after, true, true);
    EXPECT_EQ(asVector(before), asVector(after));

    // An unknown set holding a Segment item (a strong reference the dictionary knows) as an
    // invalid element: followed only when invalid elements count.
    Bytes key = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0f, 0x7f, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00};
    Bytes items = {0x3c, 0x0a, 0x00, 0x10, 0xaa, 0xbb, 0xcc, 0xdd, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x48, 0x03, 0x00, 0x10};
    Bytes const target = valueBytes(uidOf(*h.soundSequence));
    items.insert(items.end(), target.begin(), target.end());
    MetadataSet * group = loadBytes(*metadata, KLVTest::packet(key, items, 4));
    ASSERT_NE(nullptr, group);
    ASSERT_EQ(2u, group->invalidSize());

    SetList out;
    Templates::set<Types::UUID> visited;
    Metadata::getChildStrongReferences(*metadata, *group, out, visited, false);
    EXPECT_TRUE(out.empty());
    Metadata::getChildStrongReferences(*metadata, *group, out, visited, true);
    ASSERT_EQ(1u, out.size());
    EXPECT_EQ(h.soundSequence, out.front());
    EXPECT_EQ(1u, visited.count(uidOf(*h.soundSequence)));
    // The same target again, with the visited set kept: refused.
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE,
              thrownBy([&] { Metadata::getChildStrongReferences(*metadata, *group, out, visited, true); }).code);

    // Recursively: depth first, each child followed by its own.
    out.clear();
    visited.clear();
    Metadata::getChildStrongReferencesRecursive(*metadata, *h.source, out, visited, true, true);
    std::vector<MetadataSet const *> const below = {h.descriptor, h.soundTrack, h.soundSequence, h.soundClip};
    EXPECT_EQ(below, asVector(out));
}
