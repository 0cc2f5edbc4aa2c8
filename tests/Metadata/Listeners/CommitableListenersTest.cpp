// Generation UIDs and modification dates brought up to date on commit().

#include <gtest/gtest.h>

#include "Metadata/Listeners/GenerationUIDWriterListener.h"
#include "Metadata/Listeners/LastModifiedDateUpdaterListener.h"
#include "Metadata/Listeners/NullCommitableListener.h"
#include "Metadata/Listeners/NullMetadataListener.h"
#include "Metadata/PartitionMetadataTestSupport.h"
#include "Types/References.h"
#include "Types/Timestamp.h"
#include "Types/Visitors.h"

using namespace Vellum;
using namespace Vellum::PartitionMetadataTest;
using Metadata::MetadataSet;
using Metadata::Listeners::GenerationUIDWriterListener;
using Metadata::Listeners::LastModifiedDateUpdaterListener;

namespace
{
Types::SimpleDataType const * valueOf(MetadataSet & set, Types::UniversalLabel const & label)
{
    return simple(set, label).value();
}

Bytes elementBytes(MetadataSet & set, Types::UniversalLabel const & label)
{
    Types::SimpleDataType const * value = valueOf(set, label);
    return value != nullptr ? valueBytes(*value) : Bytes();
}

unsigned identifications(Metadata::PartitionMetadata & metadata)
{
    return static_cast<unsigned>(metadata.find(Keys::identification()).size());
}
} // namespace

TEST(GenerationUIDWriterListener, GivesChangedAndNewSetsTheGenerationOfOneIdentification)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    Templates::SharedPtr<GenerationUIDWriterListener> writer(new GenerationUIDWriterListener);
    metadata->addMetadataListener(writer, false);

    // Nothing changed: no Identification is made.
    writer->commit();
    EXPECT_EQ(1u, identifications(*metadata));

    setValue(*h.soundSequence, ULs::duration(), Types::Length(75));
    writer->commit();
    ASSERT_EQ(2u, identifications(*metadata));
    Metadata::CollectionReferenceElement & list = references(*h.preface, ULs::identificationList());
    ASSERT_EQ(2, list.size());
    MetadataSet * made = metadata->find(Keys::identification())[1];
    EXPECT_EQ(valueBytes(Types::StrongReference(uidOf(*made))), valueBytes(list.at(1)));
    Bytes const generation = elementBytes(*made, ULs::thisGenerationUID());
    ASSERT_EQ(16u, generation.size());
    EXPECT_EQ(generation, elementBytes(*h.preface, ULs::generationUID()));
    EXPECT_EQ(generation, elementBytes(*h.soundSequence, ULs::generationUID()));
    // Sets that did not change keep what they had.
    EXPECT_TRUE(elementBytes(*h.pictureSequence, ULs::generationUID()).empty());
    EXPECT_TRUE(elementBytes(*h.soundTrack, ULs::generationUID()).empty());

    // The next step uses the same Identification; a new set gets its generation too.
    MetadataSet * created = metadata->createMetadataSet(Keys::sequence());
    setValue(*h.pictureTrack, ULs::trackNumber(), Types::UInt32(5));
    writer->commit();
    EXPECT_EQ(2u, identifications(*metadata));
    EXPECT_EQ(generation, elementBytes(*created, ULs::generationUID()));
    EXPECT_EQ(generation, elementBytes(*h.pictureTrack, ULs::generationUID()));

    // After reset(), a new Identification with a new generation.
    writer->reset();
    setValue(*h.pictureTrack, ULs::trackNumber(), Types::UInt32(6));
    writer->commit();
    ASSERT_EQ(3u, identifications(*metadata));
    Bytes const third = elementBytes(*metadata->find(Keys::identification())[2], ULs::thisGenerationUID());
    EXPECT_NE(generation, third);
    EXPECT_EQ(third, elementBytes(*h.pictureTrack, ULs::generationUID()));

    // A given Identification is used as it is.
    writer->setIdentification(h.identification);
    setValue(*h.soundClip, ULs::startPosition(), Types::Position(10));
    writer->commit();
    EXPECT_EQ(3u, identifications(*metadata));
    EXPECT_EQ(elementBytes(*h.identification, ULs::thisGenerationUID()), elementBytes(*h.soundClip, ULs::generationUID()));

    // A changed set that went before the commit is forgotten.
    MetadataSet * doomed = metadata->createMetadataSet(Keys::sourceClip());
    setValue(*doomed, ULs::startPosition(), Types::Position(1));
    metadata->removeMetadataSet(uidOf(*doomed));
    writer->reset();
    writer->commit();
    EXPECT_EQ(3u, identifications(*metadata));
}

TEST(LastModifiedDateUpdaterListener, StampsThePackageOrThePrefaceAboveAChange)
{
    MetadataPtr metadata = emptyPartition();
    Header h = buildHeader(*metadata);
    Templates::SharedPtr<LastModifiedDateUpdaterListener> updater(new LastModifiedDateUpdaterListener);
    metadata->addMetadataListener(updater, false);

    updater->commit();
    EXPECT_EQ(nullptr, valueOf(*h.source, ULs::packageModifiedDate()));

    // A Sequence under the Source Package moves that package's date, and no other.
    setValue(*h.soundSequence, ULs::duration(), Types::Length(80));
    updater->commit();
    Types::SimpleDataType const * stamped = valueOf(*h.source, ULs::packageModifiedDate());
    ASSERT_NE(nullptr, stamped);
    ASSERT_NE(nullptr, Types::Visitors::getAs<Types::Timestamp>(*stamped));
    EXPECT_GE(Types::Visitors::getAs<Types::Timestamp>(*stamped)->year(), 2024);
    EXPECT_EQ(nullptr, valueOf(*h.material, ULs::packageModifiedDate()));
    EXPECT_EQ(nullptr, valueOf(*h.preface, ULs::lastModifiedDate()));

    // A change to the Content Storage moves the Preface's date.
    MetadataSet * data = metadata->createMetadataSet(Keys::essenceContainerData());
    references(*h.contentStorage, ULs::essenceContainerData()).append(data);
    updater->commit();
    EXPECT_NE(nullptr, valueOf(*h.preface, ULs::lastModifiedDate()));
    EXPECT_EQ(nullptr, valueOf(*h.material, ULs::packageModifiedDate()));

    // A set that went is not looked at.
    setValue(*h.pictureClip, ULs::startPosition(), Types::Position(3));
    metadata->removeMetadataSet(uidOf(*h.pictureClip));
    updater->commit();
    EXPECT_EQ(nullptr, valueOf(*h.material, ULs::packageModifiedDate()));
}

TEST(NullListeners, DoNothing)
{
    MetadataPtr metadata = emptyPartition();
    Templates::SharedPtr<Metadata::Listeners::NullMetadataListener> null(new Metadata::Listeners::NullMetadataListener);
    Templates::SharedPtr<Metadata::Listeners::NullCommitableListener> commitable(
        new Metadata::Listeners::NullCommitableListener);
    metadata->addMetadataListener(null, true);
    metadata->addMetadataListener(commitable, true);
    Header h = buildHeader(*metadata);
    commitable->commit();
    EXPECT_TRUE(metadata->removeMetadataSet(uidOf(*h.identification)));
    EXPECT_EQ(14u, metadata->size());
}
