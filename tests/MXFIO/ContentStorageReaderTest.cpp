#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Value.h"
#include "MXFIO/ContentStorageReader.h"
#include "MXFIO/EssenceConversions.h"
#include "MXFIO/Reader2.h"
#include "MXFIO/Seeker.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/EssenceContainerData.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Support/Fixtures.h"
#include "Support/Mxf.h"
#include "Support/Process.h"
#include "Types/Integers.h"
#include "Utils/Text.h"

using namespace Vellum;
using MXFIO::ContentStorageReader;

namespace
{
typedef std::vector<unsigned char> Bytes;

using VellumTest::dictionary;
using VellumTest::messageOf;

// Offsets of the packets of a track number, in file order.
std::vector<size_t> offsetsOf(std::vector<VellumTest::KlvItem> const & items, unsigned int trackNumber)
{
    std::vector<size_t> offsets;
    for (VellumTest::KlvItem const & item : items)
        if (item.essenceOrSystem() && item.trackNumber() == trackNumber)
            offsets.push_back(item.offset);
    return offsets;
}

// The packet positions that ffprobe reports for a stream; empty without ffprobe.
std::vector<size_t> ffprobePositions(std::string const & path, char const * stream)
{
    std::vector<size_t> positions;
    for (std::string const & pos : VellumTest::ffprobePackets(path, stream, "pos"))
        positions.push_back(size_t(std::stoull(pos)));
    return positions;
}

// A file opened with its trusted metadata and its first essence container.
struct OpenedStorage
{
    explicit OpenedStorage(std::string const & name) : path(VellumTest::ffmpegFixture(name))
    {
        if (path.empty())
            return;
        bytes = VellumTest::readFile(path);
        source.reset(new DataIO::Memory::MemoryDataSource(bytes.data(), bytes.size()));
        reader.reset(new MXFIO::Reader2(*source, dictionary(), 65536));
        MXFIO::Partition * partition = reader->backwardFirstPartitionWithFinalMetadata();
        if (partition == nullptr)
            partition = reader->firstPartitionWithFinalMetadata();
        metadata = partition->metadata();
        Templates::vector<Metadata::MetadataSet *> sets =
            metadata->find(Metadata::Structural::StructuralMetadataKeys::essenceContainerData());
        if (!sets.empty())
            data = dynamic_cast<Metadata::Structural::EssenceContainerData *>(sets[0]);
        items = VellumTest::klvWalk(bytes);
    }
    bool ok() const { return !path.empty() && data != nullptr; }
    Templates::auto_ptr<ContentStorageReader> open(bool sequential = false)
    {
        return Templates::auto_ptr<ContentStorageReader>(new ContentStorageReader(
            *reader, *data, false, sequential, Templates::SharedPtr<MXFIO::ContentStorageProfile>()));
    }
    Metadata::Structural::TimelineTrack * track(unsigned int trackNumber)
    {
        Metadata::Structural::GenericPackage * package = data->linkedPackage();
        for (unsigned int i = 0; i < package->tracksCount(); ++i)
            if (package->track(i)->trackNumber() != nullptr && package->track(i)->trackNumber()->value() == trackNumber)
                return dynamic_cast<Metadata::Structural::TimelineTrack *>(package->track(i));
        return nullptr;
    }

    std::string path;
    Bytes bytes;
    Templates::auto_ptr<DataIO::Memory::MemoryDataSource> source;
    Templates::auto_ptr<MXFIO::Reader2> reader;
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    Metadata::Structural::EssenceContainerData * data = nullptr;
    std::vector<VellumTest::KlvItem> items;
};

#define REQUIRE_OPENED(o)                                                                         \
    if (!(o).ok())                                                                                \
    GTEST_SKIP() << "ffmpeg is not installed"

// Reads the next packet, checks where it starts, and skips its value.
size_t nextOffset(ContentStorageReader & reader)
{
    Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(65536);
    if (packet.get() == nullptr)
        return size_t(-1);
    size_t offset = size_t(packet->keyAbsoluteOffset());
    packet->value().discard();
    return offset;
}

unsigned int const systemPack = 0x04010100;
unsigned int const systemSet = 0x04010201;
unsigned int const mpegPicture = 0x15010500;
unsigned int const pcmSound = 0x16010300;

class SystemItems : public MXFIO::SystemItemKLVPacketListener
{
public:
    bool wantsPacket(KLV::Key const & key) override { return key[12] == 0x04; }
    void handlePacket(Templates::auto_ptr<KLV::Packet> packet) override
    {
        offsets.push_back(size_t(packet->keyAbsoluteOffset()));
        packet->value().discard();
    }
    std::vector<size_t> offsets;
};
} // namespace

TEST(MXFIOContentStorageReader, FrameWrappedContainer)
{
    OpenedStorage o("op1a-mpeg2-pcm.mxf");
    REQUIRE_OPENED(o);
    Templates::auto_ptr<ContentStorageReader> reader = o.open();
    Templates::vector<unsigned int> elements = reader->elements();
    ASSERT_EQ(elements.size(), 4u);
    EXPECT_EQ(elements[0], systemPack);
    EXPECT_EQ(elements[1], systemSet);
    EXPECT_EQ(elements[2], mpegPicture);
    EXPECT_EQ(elements[3], pcmSound);
    EXPECT_FALSE(reader->clipWrapped());
    EXPECT_EQ(reader->bodySID(), 1u);
    EXPECT_EQ(reader->editUnitByteCount(), 0u);
    EXPECT_EQ(reader->duration(), 50);
    EXPECT_EQ(reader->indexableDuration(), 50u);
    EXPECT_EQ(reader->editRate().value(), Templates::Rational<int>(25, 1));
    // Two B pictures between the references: pictures move by up to two places.
    EXPECT_EQ(reader->temporalReordering(), 2u);
    EXPECT_EQ(reader->trackNumber2TrackID(mpegPicture), o.track(mpegPicture)->trackID()->value());
    EXPECT_EQ(reader->trackNumber2TrackID(pcmSound), o.track(pcmSound)->trackID()->value());
    EXPECT_EQ(messageOf<Exceptions::NotFound>([&] { reader->trackNumber2TrackID(0x17010100); }),
              "it != impl_ -> metadataInfo_.trackNumber2TrackID.end (): TrackNumber has no trackID correnpondent.");

    // Read in file order: one edit unit for each system pack, the position kept in step.
    std::vector<size_t> packages = offsetsOf(o.items, systemPack);
    ASSERT_EQ(packages.size(), 50u);
    size_t packets = 0;
    for (;;)
    {
        Templates::auto_ptr<KLV::Packet> packet = reader->nextKLV(65536);
        if (packet.get() == nullptr)
            break;
        ++packets;
        if (packet->key()[12] == 0x04 && packet->key()[15] == 0x00)
        {
            EXPECT_EQ(size_t(packet->keyAbsoluteOffset()), packages[size_t(reader->editUnit() - 1)]);
            EXPECT_EQ(reader->nextElementIndex(), 1u);
        }
        reader->discardKLVPacket(std::move(packet));
    }
    EXPECT_EQ(reader->editUnit(), 50);
    EXPECT_GE(packets, 200u);
    EXPECT_EQ(reader->nextKLV(65536).get(), nullptr);

    // Seeks land on the content package.
    for (int64 n : {0, 1, 7, 25, 49, 12, 0})
    {
        ASSERT_TRUE(reader->seek(n)) << n;
        EXPECT_EQ(reader->editUnit(), n);
        EXPECT_EQ(nextOffset(*reader), packages[size_t(n)]) << n;
        EXPECT_EQ(reader->editUnit(), n + 1);
    }
    ASSERT_TRUE(reader->seek(3));
    EXPECT_FALSE(reader->seek(-1));
    EXPECT_FALSE(reader->seek(50));
    EXPECT_FALSE(reader->seek(51));
    // A failed seek keeps the position.
    EXPECT_EQ(reader->editUnit(), 3);
    EXPECT_EQ(nextOffset(*reader), packages[3]);
}

TEST(MXFIOContentStorageReader, FineSeekToAnElement)
{
    OpenedStorage o("op1a-mpeg2-pcm.mxf");
    REQUIRE_OPENED(o);
    Templates::auto_ptr<ContentStorageReader> reader = o.open();
    std::vector<size_t> pictures = offsetsOf(o.items, mpegPicture);
    std::vector<size_t> sounds = offsetsOf(o.items, pcmSound);
    ASSERT_EQ(pictures.size(), 50u);
    ASSERT_EQ(sounds.size(), 50u);
    // ffprobe, as a black box, places the packets at the same offsets.
    std::vector<size_t> probedPictures = ffprobePositions(o.path, "v:0");
    std::vector<size_t> probedSounds = ffprobePositions(o.path, "a:0");
    if (!probedPictures.empty())
    {
        EXPECT_EQ(probedPictures, pictures);
        EXPECT_EQ(probedSounds, sounds);
    }
    for (int64 n : {0, 5, 33, 49, 2})
    {
        ASSERT_TRUE(reader->fineSeek(n, pcmSound)) << n;
        EXPECT_EQ(reader->editUnit(), n + 1);
        EXPECT_EQ(reader->nextElementIndex(), 2u);
        Templates::auto_ptr<KLV::Packet> packet = reader->nextKLV(65536);
        ASSERT_NE(packet.get(), nullptr);
        EXPECT_EQ(size_t(packet->keyAbsoluteOffset()), sounds[size_t(n)]);
        EXPECT_EQ(packet->key(), MXFIO::trackNumber2Key(pcmSound));
        EXPECT_EQ(reader->nextElementIndex(), 3u);
        packet->value().discard();
        packet.reset();

        // A number differing in byte 2 names the same element; its value is the file's bytes.
        ASSERT_TRUE(reader->fineSeek(n, mpegPicture | 0x00020000u));
        packet = reader->nextKLV(65536);
        ASSERT_NE(packet.get(), nullptr);
        EXPECT_EQ(size_t(packet->keyAbsoluteOffset()), pictures[size_t(n)]);
        Bytes value(size_t(packet->length()));
        packet->value().readValue(value.data(), value.size());
        size_t const start = size_t(packet->keyAbsoluteOffset() + packet->klvLength() - packet->length());
        EXPECT_TRUE(std::equal(value.begin(), value.end(), o.bytes.begin() + long(start)));
        // The first element: the content package itself.
        ASSERT_TRUE(reader->fineSeek(n, systemPack));
        EXPECT_EQ(reader->editUnit(), n);
        EXPECT_EQ(reader->nextElementIndex(), 0u);
        EXPECT_EQ(nextOffset(*reader), offsetsOf(o.items, systemPack)[size_t(n)]);
        // The set behind the system pack is part of the system item: the seek lands on its start.
        ASSERT_TRUE(reader->fineSeek(n, systemSet));
        EXPECT_EQ(reader->editUnit(), n);
        EXPECT_EQ(reader->nextElementIndex(), 0u);
        EXPECT_EQ(nextOffset(*reader), offsetsOf(o.items, systemPack)[size_t(n)]);
    }
    EXPECT_FALSE(reader->fineSeek(50, pcmSound));
    EXPECT_FALSE(reader->fineSeek(-1, pcmSound));
    EXPECT_EQ(messageOf<Exceptions::KeyNotFound>([&] { reader->fineSeek(1, 0x17010100); }),
              "it != elements_.end (): Track number not in Essence container");
}

TEST(MXFIOContentStorageReader, ConstantEditUnitsAndSystemItems)
{
    OpenedStorage o("d10.mxf");
    REQUIRE_OPENED(o);
    Templates::auto_ptr<ContentStorageReader> reader = o.open();
    EXPECT_FALSE(reader->clipWrapped());
    std::vector<size_t> packages = offsetsOf(o.items, systemPack);
    ASSERT_EQ(packages.size(), 10u);
    EXPECT_EQ(reader->editUnitByteCount(), unsigned(packages[1] - packages[0]));
    EXPECT_EQ(reader->temporalReordering(), 0u);
    Templates::vector<unsigned int> elements = reader->elements();
    ASSERT_EQ(elements.size(), 3u);
    EXPECT_EQ(elements[2] & 0xFF00FF00u, 0x05000100u);

    for (int64 n : {9, 0, 4})
    {
        ASSERT_TRUE(reader->seek(n));
        EXPECT_EQ(nextOffset(*reader), packages[size_t(n)]);
    }
    std::vector<size_t> pictures = offsetsOf(o.items, elements[2]);
    ASSERT_TRUE(reader->fineSeek(6, elements[2]));
    EXPECT_EQ(nextOffset(*reader), pictures[6]);

    // The system items go to the listener; the pictures are the caller's.
    SystemItems listener;
    reader->registerKLVPacketListener(&listener);
    EXPECT_EQ(messageOf<Exceptions::OperationNotAllowed>([&] { reader->registerKLVPacketListener(&listener); }),
              "impl_ -> systemItemListener_ == 0: Only one SystemItemKLVPacketListener can be registered.");
    ASSERT_TRUE(reader->seek(0));
    unsigned int pictureCount = 0;
    for (;;)
    {
        Templates::auto_ptr<KLV::Packet> packet = reader->nextKLV(65536);
        if (packet.get() == nullptr)
            break;
        if (packet->key()[12] == 0x05)
            ++pictureCount;
        reader->discardKLVPacket(std::move(packet));
    }
    EXPECT_EQ(pictureCount, 10u);
    std::vector<size_t> expected;
    for (VellumTest::KlvItem const & item : o.items)
        if (item.essenceOrSystem() && item.key[12] == 0x04)
            expected.push_back(item.offset);
    EXPECT_EQ(listener.offsets, expected);
    EXPECT_EQ(listener.offsets.size(), 20u);
    reader->unregisterKLVPacketListener();
    EXPECT_NO_THROW(reader->registerKLVPacketListener(&listener));
}

TEST(MXFIOContentStorageReader, ClipWrappedContainer)
{
    OpenedStorage o("opatom-dnxhd.mxf");
    REQUIRE_OPENED(o);
    Templates::auto_ptr<ContentStorageReader> reader = o.open();
    EXPECT_TRUE(reader->clipWrapped());
    Templates::vector<unsigned int> elements = reader->elements();
    ASSERT_EQ(elements.size(), 1u);
    std::vector<size_t> clips = offsetsOf(o.items, elements[0]);
    ASSERT_EQ(clips.size(), 1u);
    EXPECT_EQ(reader->duration(), 5);
    // Any edit unit of the clip is reached through the clip's one packet.
    ASSERT_TRUE(reader->seek(3));
    EXPECT_EQ(reader->editUnit(), 0);
    EXPECT_EQ(nextOffset(*reader), clips[0]);
    // Behind the clip: fill, then the end of the container.
    for (;;)
    {
        Templates::auto_ptr<KLV::Packet> packet = reader->nextKLV(65536);
        if (packet.get() == nullptr)
            break;
        EXPECT_TRUE(KLV::isFillItem(packet->key()));
        packet->value().discard();
    }
    EXPECT_EQ(reader->nextKLV(65536).get(), nullptr);
    EXPECT_FALSE(reader->seek(5));
}

TEST(MXFIOContentStorageReader, ReadsAcrossBodyPartitions)
{
    OpenedStorage o("op1a-partitions.mxf");
    REQUIRE_OPENED(o);
    std::vector<size_t> packages = offsetsOf(o.items, systemPack);
    ASSERT_EQ(packages.size(), 300u);
    // The muxer opened more than one body partition.
    ASSERT_GT(VellumTest::partitionsOfKind(o.bytes, 0x03).size(), 1u);

    for (bool sequential : {false, true})
    {
        Templates::auto_ptr<ContentStorageReader> reader = o.open(sequential);
        std::vector<size_t> seen;
        for (;;)
        {
            Templates::auto_ptr<KLV::Packet> packet = reader->nextKLV(65536);
            if (packet.get() == nullptr)
                break;
            if (packet->key()[12] == 0x04 && packet->key()[15] == 0x00)
                seen.push_back(size_t(packet->keyAbsoluteOffset()));
            packet->value().discard();
        }
        EXPECT_EQ(seen, packages);
        EXPECT_EQ(reader->editUnit(), 300);
    }

    Templates::auto_ptr<ContentStorageReader> reader = o.open();
    EXPECT_EQ(reader->duration(), 300);
    for (int64 n : {299, 0, 250, 249, 251, 120})
    {
        ASSERT_TRUE(reader->seek(n)) << n;
        EXPECT_EQ(nextOffset(*reader), packages[size_t(n)]) << n;
    }
    // From the last unit of one partition on into the next.
    ASSERT_TRUE(reader->seek(249));
    std::vector<size_t> expected;
    for (VellumTest::KlvItem const & item : o.items)
        if (item.offset >= packages[249] && item.offset <= packages[250] && item.essenceOrSystem())
            expected.push_back(item.offset);
    std::vector<size_t> read;
    while (read.size() < expected.size())
    {
        Templates::auto_ptr<KLV::Packet> packet = reader->nextKLV(65536);
        ASSERT_NE(packet.get(), nullptr);
        if (!KLV::isFillItem(packet->key()))
            read.push_back(size_t(packet->keyAbsoluteOffset()));
        packet->value().discard();
    }
    EXPECT_EQ(read, expected);
    EXPECT_EQ(reader->editUnit(), 251);
}

TEST(MXFIOContentStorageReader, ConstructionChecks)
{
    OpenedStorage o("op1a-mpeg2-pcm.mxf");
    REQUIRE_OPENED(o);
    Types::UInt32 const original = *o.data->bodySID();

    Types::UInt32 const absent(99);
    o.data->bodySID(&absent);
    EXPECT_EQ(messageOf<Exceptions::NotFound>([&] { o.open(); }),
              "bodySIDPartition != 0: Unable to find partition for the bodySID specified.");
    Types::UInt32 const zero(0);
    o.data->bodySID(&zero);
    EXPECT_EQ(messageOf<Exceptions::InvalidID>([&] { o.open(); }),
              "bodySID != 0: missing bodySID from essenceContainerdata.");
    o.data->bodySID(&original);
    EXPECT_NO_THROW(o.open());

    Types::UMID32 const linked = *o.data->linkedPackageUID();
    unsigned char other[32];
    std::copy(linked.rawBuffer(), linked.rawBuffer() + 32, other);
    other[31] ^= 0xFF;
    Types::UMID32 const nowhere(other);
    o.data->linkedPackageUID(&nowhere);
    EXPECT_EQ(messageOf<Exceptions::BrokenLink>([&] { o.open(); }), "linkedPackage != 0: Source package not found.");
    o.data->linkedPackageUID(&linked);

    Templates::auto_ptr<ContentStorageReader> reader = o.open();
    Types::Rational const rate(25, 1);
    EXPECT_EQ(messageOf<Exceptions::NotFound>([&] { reader->elementReader(0x17010100, 0, 10, rate); }),
              "track != 0: Track not found.");
}

namespace
{
class ChosenProfile : public MXFIO::ContentStorageProfile
{
public:
    ChosenProfile(IndexProviderChoice index, PartitionProviderChoice partitions) : index_(index), partitions_(partitions)
    {
    }
    unsigned int editUnitsPerPartition() const override { return 0; }
    bool growingFile() const override { return false; }
    IndexProviderChoice indexProvider() const override { return index_; }
    PartitionProviderChoice partitionProvider() const override { return partitions_; }

private:
    IndexProviderChoice index_;
    PartitionProviderChoice partitions_;
};

} // namespace

TEST(MXFIOContentStorageReader, ElementReadersAndTheirChecks)
{
    OpenedStorage o("op1a-mpeg2-pcm.mxf");
    REQUIRE_OPENED(o);
    Templates::auto_ptr<ContentStorageReader> reader = o.open();
    Types::Rational const rate(25, 1);
    Templates::auto_ptr<MXFIO::ElementReader> picture = reader->elementReader(mpegPicture, 0, 50, rate);
    ASSERT_NE(picture.get(), nullptr);
    EXPECT_FALSE(picture->clipWrapped());
    EXPECT_EQ(picture->trackNumber(), mpegPicture);

    // The time code track has the number 0: found, but no element of the container.
    ASSERT_NE(o.track(0), nullptr);
    EXPECT_EQ(messageOf<Exceptions::NotFound>([&] { reader->elementReader(0, 0, 50, rate); }),
              "trackNumber != 0: Track Number not found.");

    // A track whose number the container does not carry.
    Metadata::Structural::TimelineTrack * sound = o.track(pcmSound);
    ASSERT_NE(sound, nullptr);
    Types::UInt32 const foreign(0x17010100);
    sound->trackNumber(&foreign);
    EXPECT_EQ(messageOf<Exceptions::NotFound>([&] { reader->elementReader(0x17010100, 0, 50, rate); }),
              "impl_ -> seeker_ -> trackNumberExists (trackNumberValue): Track Number not found in this content "
              "Storage.");
    Types::UInt32 const own(pcmSound);
    sound->trackNumber(&own);

    // A track that claims more edit units than the container holds.
    Metadata::Structural::TimelineTrack * video = o.track(mpegPicture);
    ASSERT_NE(video, nullptr);
    ASSERT_NE(video->sequence(), nullptr);
    ASSERT_NE(video->sequence()->duration(), nullptr);
    Types::Length const original = *video->sequence()->duration();
    Types::Length const tooLong(60);
    video->sequence()->duration(&tooLong);
    EXPECT_EQ(messageOf<Exceptions::InvalidElement>([&] { reader->elementReader(mpegPicture, 0, 50, rate); }),
              "(sourcePackageDuration - trackDuration) < 1: duration with bad value.");
    video->sequence()->duration(&original);
    EXPECT_NO_THROW(reader->elementReader(mpegPicture, 0, 50, rate));

    OpenedStorage clip("opatom-dnxhd.mxf");
    REQUIRE_OPENED(clip);
    Templates::auto_ptr<ContentStorageReader> clipReader = clip.open();
    unsigned int const number = clipReader->elements()[0];
    Templates::auto_ptr<MXFIO::ElementReader> whole = clipReader->elementReader(number, 0, 5, rate);
    EXPECT_TRUE(whole->clipWrapped());
}

TEST(MXFIOContentStorageReader, ProvidersOfTheProfile)
{
    OpenedStorage o("op1a-partitions.mxf");
    REQUIRE_OPENED(o);
    std::vector<size_t> packages = offsetsOf(o.items, systemPack);
    ASSERT_EQ(packages.size(), 300u);
    std::vector<int64> units = {260, 3, 299, 250, 0};

    // The index parsed on request and partitions found by walking: the same places.
    Templates::SharedPtr<MXFIO::ContentStorageProfile> walking(new ChosenProfile(
        MXFIO::ContentStorageProfile::ParseOnRequestIndex, MXFIO::ContentStorageProfile::BasicPartitions));
    ContentStorageReader reader(*o.reader, *o.data, false, false, walking);
    EXPECT_EQ(reader.duration(), 300);
    for (int64 n : units)
    {
        ASSERT_TRUE(reader.seek(n)) << n;
        EXPECT_EQ(nextOffset(reader), packages[size_t(n)]) << n;
    }

    // Without an index the seeker estimates; what a read through the file taught it is exact.
    Templates::SharedPtr<MXFIO::ContentStorageProfile> blind(
        new ChosenProfile(MXFIO::ContentStorageProfile::NoIndex, MXFIO::ContentStorageProfile::AutomaticPartitions));
    EXPECT_EQ(reader.temporalReordering(), 2u);
    reader.setContentStorageProfile(blind);
    ASSERT_TRUE(reader.seek(0));
    while (Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(65536))
        packet->value().discard();
    EXPECT_EQ(reader.editUnit(), 300);
    for (int64 n : units)
    {
        ASSERT_TRUE(reader.seek(n)) << n;
        EXPECT_EQ(nextOffset(reader), packages[size_t(n)]) << n;
    }
    EXPECT_FALSE(reader.seek(300));
}

TEST(MXFIOContentStorageReader, PlainReaderWalksThePartitions)
{
    OpenedStorage o("op1a-partitions.mxf");
    REQUIRE_OPENED(o);
    std::vector<size_t> packages = offsetsOf(o.items, systemPack);
    ASSERT_EQ(packages.size(), 300u);
    // A Reader without the footer's knowledge: the partitions are found by walking forward.
    MXFIO::Reader plain(*o.source, dictionary(), 65536);
    ContentStorageReader reader(plain, *o.data, false, false, Templates::SharedPtr<MXFIO::ContentStorageProfile>());
    EXPECT_EQ(reader.duration(), 300);
    EXPECT_EQ(reader.indexableDuration(), 300u);
    for (int64 n : {299, 0, 251, 17})
    {
        ASSERT_TRUE(reader.seek(n)) << n;
        EXPECT_EQ(nextOffset(reader), packages[size_t(n)]) << n;
    }
}
