#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Packs/RandomIndexPack.h"
#include "Support/Fixtures.h"
#include "Support/Mxf.h"
#include "Utils/Text.h"

using namespace Vellum;
using DataIO::Memory::MemoryDataSource;
using Packs::PartitionPack;

namespace
{
using VellumTest::Bytes;
using VellumTest::messageOf;
using VellumTest::written;

// A whole packet in memory: key, a four-byte length field, value.
Bytes packetBytes(unsigned char const * key, Bytes const & value)
{
    return VellumTest::klvPacket(Bytes(key, key + 16), value, 4);
}

struct ParsedPacket
{
    explicit ParsedPacket(Bytes const & bytes) : source(bytes.data(), bytes.size()), reader(source)
    {
        uint64 skipped = 0;
        packet = reader.nextKLV(skipped, 0);
    }
    MemoryDataSource source;
    KLV::Reader reader;
    Templates::auto_ptr<KLV::Packet> packet;
};

unsigned char const HEADER_KEY[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01,
                                      0x0d, 0x01, 0x02, 0x01, 0x01, 0x02, 0x04, 0x00};
unsigned char const OP1A[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,
                                0x0d, 0x01, 0x02, 0x01, 0x01, 0x01, 0x09, 0x00};

KLV::Key keyWith(unsigned char kind, unsigned char status)
{
    unsigned char bytes[16];
    std::memcpy(bytes, HEADER_KEY, 16);
    bytes[13] = kind;
    bytes[14] = status;
    return KLV::Key(bytes);
}

// Walks a whole file and checks that every pack parses and writes back the file's own bytes.
// Gives how many of each kind it met.
void roundTripPacks(std::string const & path, unsigned & partitions, unsigned & primers, unsigned & rips)
{
    SCOPED_TRACE(path);
    Bytes file = VellumTest::readFile(path);
    MemoryDataSource source(file.data(), file.size());
    KLV::Reader reader(source);
    partitions = primers = rips = 0;
    uint64 runIn = 0;
    while (!source.endOfStream())
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 65535);
        if (packet->keyAbsoluteOffset() == skipped)
            runIn = skipped;
        uint64 begin = packet->keyAbsoluteOffset();
        Bytes original(file.begin() + begin, file.begin() + begin + packet->klvLength());
        Bytes out;
        if (Packs::isPartitionPack(packet->key()))
        {
            PartitionPack pack(*packet);
            out = written(pack);
            // Offsets in packs count from the end of the run-in.
            EXPECT_EQ(begin - runIn, pack.thisPartition()) << "offset " << begin;
            ++partitions;
        }
        else if (Packs::isPrimerPack(packet->key()))
        {
            Packs::PrimerPack primer(*packet);
            out = written(primer);
            EXPECT_GT(primer.count(), 10u);
            ++primers;
        }
        else if (Packs::isRandomIndexPack(packet->key()))
        {
            Packs::RandomIndexPack rip(*packet);
            out = written(rip);
            // Every entry points at a partition pack in the file.
            for (auto const & entry : rip.offsetIndexedMap())
            {
                ASSERT_LT(entry.first + 16, file.size());
                EXPECT_TRUE(Packs::isPartitionPack(KLV::Key(file.data() + entry.first))) << "RIP entry at " << entry.first;
            }
            ++rips;
        }
        else
            continue;
        EXPECT_TRUE(out == original) << "pack at offset " << begin << " differs when written again";
    }
}
} // namespace

TEST(PartitionPack, KeyChecksInTheirOrder)
{
    EXPECT_TRUE(Packs::isPartitionPack(keyWith(2, 4)));
    EXPECT_TRUE(Packs::isPartitionPack(keyWith(4, 0x80))); // the status is not looked at
    EXPECT_FALSE(Packs::isPartitionPack(keyWith(1, 4)));
    EXPECT_FALSE(Packs::isPartitionPack(keyWith(5, 4)));

    auto build = [](KLV::Key const & key) {
        PartitionPack pack(key, 512, 0, 0, Types::UniversalLabel(OP1A), Templates::auto_ptr<Types::Batch>());
    };
    unsigned char notAPack[16];
    std::memcpy(notAPack, HEADER_KEY, 16);
    notAPack[12] = 0x02;
    EXPECT_EQ("The key is not a PartitionPack key",
              messageOf<Exceptions::InvalidKey>([&] { build(KLV::Key(notAPack)); }));
    // A bad kind is reported before a bad status.
    for (unsigned char kind : {1, 5})
        EXPECT_EQ("The key defines an invalid partition kind",
                  messageOf<Exceptions::InvalidPartitionKind>([&] { build(keyWith(kind, 0)); }));
    for (auto ks : std::vector<std::pair<unsigned char, unsigned char>>{{2, 0}, {2, 0x80}, {3, 5}, {2, 17}, {4, 17}})
        EXPECT_EQ("The key defines an invalid partition status",
                  messageOf<Exceptions::InvalidPartitionStatus>([&] { build(keyWith(ks.first, ks.second)); }));

    PartitionPack generic(keyWith(3, 17), 1, 0, 0, Types::UniversalLabel(OP1A), Templates::auto_ptr<Types::Batch>());
    EXPECT_TRUE(generic.isGenericStreamsPartition());
    EXPECT_FALSE(generic.isOpen());
    EXPECT_TRUE(generic.isComplete());
    EXPECT_EQ(PartitionPack::BodyPartition, generic.partitionKind());

    // A refused key leaves the old one in place.
    EXPECT_THROW(generic.key(keyWith(2, 17)), Exceptions::InvalidPartitionStatus);
    EXPECT_TRUE(generic.key() == keyWith(3, 17));
    generic.key(keyWith(4, 1));
    EXPECT_EQ(PartitionPack::FooterPartition, generic.partitionKind());
    EXPECT_TRUE(generic.isOpen());
    EXPECT_FALSE(generic.isComplete());

    EXPECT_TRUE(Packs::buildPartitionPackKey(PartitionPack::HeaderPartition, true, true) == keyWith(2, 3));
    EXPECT_TRUE(Packs::buildPartitionPackKey(PartitionPack::BodyPartition, true, false) == keyWith(3, 1));
    EXPECT_TRUE(Packs::buildPartitionPackKey(PartitionPack::FooterPartition, false, true) == keyWith(4, 4));
    EXPECT_TRUE(Packs::buildPartitionPackKey(PartitionPack::FooterPartition, false, false) == keyWith(4, 2));
}

TEST(PartitionPack, WritesAndReadsBack)
{
    Templates::auto_ptr<Types::Batch> containers(new Types::Batch(16));
    PartitionPack empty(keyWith(2, 2), 512, 0, 0, Types::UniversalLabel(OP1A), std::move(containers));
    Bytes emptyBytes = written(empty);
    EXPECT_EQ(108u, emptyBytes.size());
    EXPECT_EQ(108u, empty.serializedSize());
    EXPECT_EQ(0x83, emptyBytes[16]);
    EXPECT_EQ(88, emptyBytes[19]);
    EXPECT_EQ(1, emptyBytes[21]); // major version 1
    EXPECT_EQ(2, emptyBytes[23]); // minor version 2

    Templates::auto_ptr<Types::Batch> two(new Types::Batch(16));
    unsigned char label[16];
    std::memcpy(label, OP1A, 16);
    two->append(Types::UniversalLabel(label).clone());
    label[15] = 0x7f;
    two->append(Types::UniversalLabel(label).clone());
    PartitionPack pack(keyWith(3, 4), 512, 0x1234, 0x5000, Types::UniversalLabel(OP1A), std::move(two));
    pack.previousPartition(0x100);
    pack.footerPartition(0x99999999999ull);
    pack.headerByteCount(7);
    pack.indexByteCount(8);
    pack.indexSID(2);
    pack.bodySID(1);
    pack.berLength(9);
    Bytes bytes = written(pack);
    ASSERT_EQ(16u + 9 + 80 + 8 + 32, bytes.size());

    ParsedPacket parsed(bytes);
    PartitionPack back(*parsed.packet);
    EXPECT_EQ(9, back.berLength());
    EXPECT_EQ(512u, back.kagSize());
    EXPECT_EQ(0x1234u, back.thisPartition());
    EXPECT_EQ(0x100u, back.previousPartition());
    EXPECT_EQ(0x99999999999ull, back.footerPartition());
    EXPECT_EQ(7u, back.headerByteCount());
    EXPECT_EQ(8u, back.indexByteCount());
    EXPECT_EQ(2u, back.indexSID());
    EXPECT_EQ(0x5000u, back.bodyOffset());
    EXPECT_EQ(1u, back.bodySID());
    EXPECT_EQ(2u, back.essenceContainers().size());
    EXPECT_TRUE(back.operationalPattern() == Types::UniversalLabel(OP1A));
    EXPECT_TRUE(written(back) == bytes);

    // Copies are deep.
    PartitionPack copy(back);
    copy.essenceContainers(Templates::auto_ptr<Types::Batch>(new Types::Batch(16)));
    EXPECT_EQ(2u, back.essenceContainers().size());
    EXPECT_EQ(0u, copy.essenceContainers().size());
    copy = back;
    EXPECT_EQ(2u, copy.essenceContainers().size());

    // A value cut short fails in the field that is missing.
    Bytes shortValue(bytes.begin() + 25, bytes.begin() + 25 + 40);
    ParsedPacket cut(packetBytes(keyWith(3, 4).rawBuffer(), shortValue));
    EXPECT_EQ("Invalid data size in Value", messageOf<Exceptions::InvalidLength>([&] { PartitionPack p(*cut.packet); }));
}

TEST(PrimerPack, DuplicatesAndOrder)
{
    unsigned char a[16], b[16];
    std::memcpy(a, OP1A, 16);
    std::memcpy(b, OP1A, 16);
    b[15] = 1;
    Types::UniversalLabel la(a), lb(b);
    Packs::PrimerPack primer;
    primer.add(Types::LocalTag(0x3c0a), la);
    primer.add(Types::LocalTag(0x3c0a), la);
    EXPECT_EQ(1u, primer.count());
    EXPECT_EQ(1u, primer.countDuplicates());
    primer.add(Types::LocalTag(0x8001), la); // a second tag for one label
    EXPECT_EQ(2u, primer.count());
    EXPECT_EQ(2u, primer.countDuplicates());
    ASSERT_NE(nullptr, primer.find(Types::LocalTag(0x8001)));
    EXPECT_TRUE(*primer.find(Types::LocalTag(0x8001)) == la);
    EXPECT_EQ(0x3c0a, primer.find(la)->value());
    primer.add(Types::LocalTag(0x0102), lb);
    EXPECT_EQ(0x0102, primer.at(0).first.value()); // tag order
    EXPECT_EQ(0x8001, primer.at(2).first.value());
    EXPECT_EQ("Trying to access an element beyond the end of the data",
              messageOf<Exceptions::IndexOutOfBounds>([&] { primer.at(3); }));
    EXPECT_EQ("Trying to access an element beyond the end of the data",
              messageOf<Exceptions::IndexOutOfBounds>([&] { primer.atDuplicates(2); }));

    // Every tag goes out, duplicates do not; a Primer that says 20 for its item size reads alike.
    Bytes bytes = written(primer);
    EXPECT_EQ(primer.serializedSize(), bytes.size());
    EXPECT_EQ(16u + 4 + 8 + 3 * 18, bytes.size());
    bytes[27] = 20;
    ParsedPacket parsed(bytes);
    Packs::PrimerPack back(*parsed.packet);
    EXPECT_EQ(3u, back.count());
    // The second tag of a label is a duplicate again when read back, and keeps its place.
    EXPECT_EQ(1u, back.countDuplicates());
    EXPECT_EQ(0x8001, back.atDuplicates(0).first.value());
    bytes[27] = 18;
    EXPECT_TRUE(written(back) == bytes);
    EXPECT_TRUE(*back.find(Types::LocalTag(0x0102)) == lb);

    EXPECT_TRUE(primer.remove(la));
    EXPECT_FALSE(primer.remove(la));
    EXPECT_EQ(nullptr, primer.find(Types::LocalTag(0x3c0a)));
    EXPECT_EQ(2u, primer.count());
    EXPECT_EQ(2u, primer.countDuplicates());

    Bytes empty = written(Packs::PrimerPack());
    ASSERT_EQ(28u, empty.size());
    EXPECT_EQ(8, empty[19]);
    EXPECT_EQ(18, empty[27]);

    // A count far beyond the data fails on the first missing entry, without sizing anything by it.
    Bytes hostile = {0x3b, 0x9a, 0xca, 0x00, 0, 0, 0, 18, 0x3c, 0x0a};
    hostile.insert(hostile.end(), a, a + 16);
    ParsedPacket lying(packetBytes(Packs::PrimerPack::key().rawBuffer(), hostile));
    EXPECT_THROW(Packs::PrimerPack p(*lying.packet), Exceptions::InvalidLength);

    ParsedPacket wrong(packetBytes(HEADER_KEY, Bytes(8, 0)));
    EXPECT_EQ("Trying to create a Primer from a KLV with a invalid primerPack Key.",
              messageOf<Exceptions::InvalidKey>([&] { Packs::PrimerPack p(*wrong.packet); }));
}

TEST(RandomIndexPack, EntriesAndShortValues)
{
    Packs::RandomIndexPack rip;
    rip.add(1, 0x1000);
    rip.add(2, 0x1000); // the first SID of an offset stays
    rip.add(1, 0x200);
    rip.add(0, 0x5000);
    EXPECT_EQ(3u, rip.size());
    Templates::vector<uint64> one = rip.find(1);
    ASSERT_EQ(2u, one.size());
    EXPECT_EQ(0x200u, one[0]);
    EXPECT_EQ(0x1000u, one[1]);
    EXPECT_EQ("BodySid not found: 2", messageOf<Exceptions::NotFound>([&] { rip.find(2); }));

    Bytes bytes = written(rip);
    ASSERT_EQ(rip.serializedSize(), bytes.size());
    EXPECT_EQ(16u + 4 + 3 * 12 + 4, bytes.size());
    EXPECT_EQ(bytes.size(), bytes.back()); // the overall length closes the pack
    ParsedPacket parsed(bytes);
    Packs::RandomIndexPack back(*parsed.packet);
    EXPECT_TRUE(back.offsetIndexedMap() == rip.offsetIndexedMap());

    Packs::RandomIndexPack single;
    single.add(1, 0);
    EXPECT_EQ(16u, single.valueLength());
    EXPECT_EQ(36u, single.serializedSize());

    for (unsigned n = 0; n < 4; ++n)
    {
        ParsedPacket tooShort(packetBytes(Packs::RandomIndexPack::key().rawBuffer(), Bytes(n, 0)));
        EXPECT_EQ("Not enough data to read Pack",
                  messageOf<Exceptions::InvalidLength>([&] { Packs::RandomIndexPack p(*tooShort.packet); }))
            << n;
    }
    ParsedPacket justLength(packetBytes(Packs::RandomIndexPack::key().rawBuffer(), Bytes(4, 0)));
    EXPECT_EQ(0u, Packs::RandomIndexPack(*justLength.packet).size());
    ParsedPacket wrong(packetBytes(HEADER_KEY, Bytes(4, 0)));
    EXPECT_EQ("Trying to create a RIP from a KLV with a invalid RIP Key.",
              messageOf<Exceptions::InvalidKey>([&] { Packs::RandomIndexPack p(*wrong.packet); }));
}

TEST(Packs, EverySampleAndFixturePackWritesBackItsOwnBytes)
{
    std::vector<std::string> files = VellumTest::sampleAndFixtureFiles();
    if (files.empty())
        GTEST_SKIP() << "neither the shared samples nor ffmpeg are there";
    size_t const samples = VellumTest::sampleFiles().size();
    for (size_t i = 0; i < files.size(); ++i)
    {
        unsigned partitions, primers, rips;
        roundTripPacks(files[i], partitions, primers, rips);
        EXPECT_GE(partitions, 2u) << files[i];
        EXPECT_GE(primers, 1u) << files[i];
        if (i >= samples)
        {
            EXPECT_EQ(1u, rips) << files[i];
        }
    }
}
