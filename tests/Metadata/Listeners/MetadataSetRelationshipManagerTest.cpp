// Referential integrity: refusing to remove referenced sets, clearing references, cascades.

#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "Metadata/Listeners/MetadataSetRelationshipManager.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionMetadataTestSupport.h"
#include "Types/References.h"

using namespace Vellum;
using namespace Vellum::PartitionMetadataTest;
using Metadata::MetadataSet;
using Metadata::Listeners::MetadataSetRelationshipManager;

namespace
{
typedef Templates::SharedPtr<MetadataSetRelationshipManager> ManagerPtr;

ManagerPtr manage(MetadataPtr const & metadata)
{
    ManagerPtr manager(new MetadataSetRelationshipManager(metadata.get()));
    metadata->addMetadataListener(manager, true);
    return manager;
}

bool present(Metadata::PartitionMetadata const & metadata, Types::UUID const & uid)
{
    return !metadata.find(Metadata::MetadataULs::instanceUID(), uid).empty();
}
} // namespace

TEST(MetadataSetRelationshipManager, KnowsTheReferencesAndRefusesToLetAReferencedSetGo)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    ManagerPtr manager = manage(metadata);

    // Learned by replay: every strong reference of the header.
    EXPECT_EQ(metadata->size() - 1, manager->uuid2ReferencesMap().size());
    EXPECT_EQ(metadata->size() - 1, manager->references2UUIDMap().size());
    EXPECT_TRUE(!manager->canDeleteMetadataSet(h.pictureSequence) && manager->canDeleteMetadataSet(h.preface));
    EXPECT_EQ(h.pictureTrack, manager->parentSet(h.pictureSequence));
    EXPECT_EQ(h.contentStorage, manager->parentSet(static_cast<MetadataSet const *>(h.material)));
    EXPECT_EQ(nullptr, manager->parentSet(h.preface));

    // A weak reference counts too.
    reference(*h.preface, ULs::primaryPackage()).set(h.material);
    Templates::set<Metadata::Element *> strong;
    Templates::set<Metadata::Element *> weak;
    EXPECT_EQ(2u, manager->metadataSetStrongRefs(h.preface, strong));
    EXPECT_EQ(1u, manager->metadataSetWeakRefs(h.preface, weak));
    EXPECT_EQ(1u, weak.count(&h.preface->find(ULs::primaryPackage())));
    EXPECT_EQ(1u, strong.count(&h.preface->find(ULs::contentStorage())));
    EXPECT_EQ(2u, manager->uuid2ReferencesMap().find(uidOf(*h.material))->second->sources().size());

    // Referenced: refused before anything changes.
    uint64 const size = metadata->size();
    Types::UUID const sequence = uidOf(*h.pictureSequence);
    EXPECT_EQ(thrown<Exceptions::OperationNotAllowed>("Cannot removed this MetadataSet because is referenced by other Metadata Set"),
              thrownBy([&] { metadata->removeMetadataSet(sequence); }));
    EXPECT_EQ(size, metadata->size());
    EXPECT_TRUE(present(*metadata, sequence));
    EXPECT_FALSE(reference(*h.pictureTrack, ULs::sequence()).empty());

    // Not enforced: it goes, and so do the references to it; the set below stays.
    manager->enforceReferentialIntegrity(false);
    EXPECT_FALSE(manager->canDeleteMetadataSet(h.pictureSequence));
    EXPECT_TRUE(metadata->removeMetadataSet(sequence));
    EXPECT_EQ(size - 1, metadata->size());
    EXPECT_TRUE(reference(*h.pictureTrack, ULs::sequence()).empty());
    EXPECT_TRUE(manager->uuid2ReferencesMap().find(sequence) == manager->uuid2ReferencesMap().end());
    EXPECT_TRUE(manager->canDeleteMetadataSet(h.pictureClip));

    // A member of a collection is taken out of it.
    EXPECT_TRUE(metadata->removeMetadataSet(uidOf(*h.timecodeTrack)));
    EXPECT_EQ(1, references(*h.material, ULs::tracks()).size());
}

TEST(MetadataSetRelationshipManager, CascadeDeleteTakesTheTreeBelow)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    ManagerPtr manager = manage(metadata);
    EXPECT_FALSE(manager->cascadeDelete(nullptr));

    std::vector<Types::UUID> const going = {uidOf(*h.source),        uidOf(*h.descriptor), uidOf(*h.soundTrack),
                                            uidOf(*h.soundSequence), uidOf(*h.soundClip)};
    uint64 const size = metadata->size();
    EXPECT_TRUE(manager->cascadeDelete(h.source));
    EXPECT_EQ(size - going.size(), metadata->size());
    for (Types::UUID const & uid : going)
    {
        EXPECT_FALSE(present(*metadata, uid));
        EXPECT_TRUE(manager->uuid2ReferencesMap().find(uid) == manager->uuid2ReferencesMap().end());
    }
    Metadata::CollectionReferenceElement & packages = references(*h.contentStorage, ULs::packages());
    ASSERT_EQ(1, packages.size());
    EXPECT_EQ(valueBytes(Types::StrongReference(uidOf(*h.material))), valueBytes(packages.at(0)));
    // Integrity is enforced again afterwards.
    Thrown caught = thrownBy([&] { metadata->removeMetadataSet(uidOf(*h.pictureTrack)); });
    EXPECT_EQ(Exceptions::OperationNotAllowed::ERROR_CODE, caught.code);
    // The rest still writes and reads back.
    LoadReport report;
    MetadataPtr copy = loadSerialized(serialized(*metadata, Metadata::PartitionMetadata::ForwardDepthFirst), report);
    EXPECT_EQ(metadata->size(), copy->size());
}

TEST(MetadataSetRelationshipManager, CascadeOverACycleFails)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    ManagerPtr manager = manage(metadata);
    // The sequence owns its own track: a cycle of strong references.
    references(*h.soundSequence, ULs::structuralComponents())
        .appendUnverifiedReference(Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uidOf(*h.soundTrack))));
    Types::UUID const track = uidOf(*h.soundTrack);
    Thrown caught = thrownBy([&] { manager->cascadeDelete(h.soundTrack); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, caught.code);
    EXPECT_EQ("Circular reference in MXF file! InstanceUID: " + n(track.toString()), caught.message);
    // The track was the one met twice: it stays.
    EXPECT_TRUE(present(*metadata, track));
    // And integrity is enforced again.
    caught = thrownBy([&] { metadata->removeMetadataSet(uidOf(*h.material)); });
    EXPECT_EQ(Exceptions::OperationNotAllowed::ERROR_CODE, caught.code);
}
