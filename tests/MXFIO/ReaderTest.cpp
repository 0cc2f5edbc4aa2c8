#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "DataIO/File/FileDataSource.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/Value.h"
#include "MXFIO/Reader2.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Platform/Platform.h"
#include "Support/Fixtures.h"
#include "Support/Mxf.h"
#include "Utils/Text.h"

using namespace Vellum;
using DataIO::Memory::MemoryDataSource;
using MXFIO::Partition;
using MXFIO::Reader2;
using Packs::PartitionPack;

namespace
{
typedef std::vector<unsigned char> Bytes;

using VellumTest::dictionary;
using VellumTest::messageOf;

// Offsets of the fields in a partition pack's value.
enum Field
{
    PreviousPartition = 16,
    FooterPartition = 24,
    BodyOffset = 52
};

// Sets a field of the partition pack at `keyOffset`.
void put64(Bytes & file, size_t keyOffset, size_t field, uint64 v)
{
    VellumTest::patchBE(file, VellumTest::klvWalk(file, keyOffset)[0].valueOffset + field, v, 8);
}

// The offsets of the partition packs of the OP1a fixture: header, one body, footer.
struct Layout
{
    size_t body;
    size_t footer;
};

Layout layoutOf(Reader2 & reader)
{
    Partition * header = reader.headerPartition();
    Layout l;
    l.body = size_t(reader.nextPartition(header)->partitionAbsoluteOffset());
    l.footer = size_t(header->partitionPack().footerPartition());
    return l;
}

Bytes fixture()
{
    std::string path = VellumTest::ffmpegFixture("op1a-mpeg2-pcm.mxf");
    return path.empty() ? Bytes() : VellumTest::readFile(path);
}

#define REQUIRE_FIXTURE(bytes)                                                                    \
    if ((bytes).empty())                                                                          \
    GTEST_SKIP() << "ffmpeg is not installed"

unsigned countPackets(Partition * p, bool index)
{
    unsigned n = 0;
    for (;;)
    {
        Templates::auto_ptr<KLV::Packet> packet = index ? p->nextIndexTableSegmentsKLV() : p->nextBodyKLV(65536);
        if (!packet)
            return n;
        if (index)
        {
            EXPECT_EQ(packet->key(), IndexTables::IndexTableSegment::key());
        }
        packet->value().discard();
        ++n;
    }
}
} // namespace

TEST(MXFIOReader, WalksAFileForwardAndBackward)
{
    Bytes file = fixture();
    REQUIRE_FIXTURE(file);
    MemoryDataSource source(file.data(), file.size());
    Reader2 reader(source, dictionary(), 65536);
    EXPECT_EQ(reader.lastLoadedPartition(), nullptr);

    Partition * header = reader.headerPartition();
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->partitionPack().partitionKind(), PartitionPack::HeaderPartition);
    EXPECT_EQ(header->partitionAbsoluteOffset(), 0u);
    EXPECT_EQ(reader.runIn(), nullptr);
    EXPECT_EQ(reader.headerPartition(), header);

    Partition * body = reader.nextPartition(header);
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->partitionPack().partitionKind(), PartitionPack::BodyPartition);
    EXPECT_EQ(body->partitionAbsoluteOffset(), body->partitionPack().thisPartition());
    Partition * footer = reader.nextPartition(body);
    ASSERT_NE(footer, nullptr);
    EXPECT_EQ(footer->partitionPack().partitionKind(), PartitionPack::FooterPartition);
    EXPECT_EQ(footer->partitionAbsoluteOffset(), header->partitionPack().footerPartition());
    EXPECT_EQ(reader.nextPartition(footer), nullptr);
    EXPECT_EQ(reader.lastLoadedPartition(), footer);

    // Asked again, the same objects come back.
    EXPECT_EQ(reader.nextPartition(header), body);
    EXPECT_EQ(reader.previousPartition(footer), body);
    EXPECT_EQ(reader.previousPartition(body), header);
    EXPECT_EQ(reader.previousPartition(header), nullptr);

    // Filtered walks never test the start.
    EXPECT_EQ(reader.nextPartition(header, 1), body);
    EXPECT_EQ(reader.nextPartition(body, 1), nullptr);
    EXPECT_EQ(reader.nextIndexPartition(header, footer->partitionPack().indexSID()), footer);
    EXPECT_EQ(reader.previousPartition(footer, 0), header);
    EXPECT_EQ(reader.previousIndexPartition(footer, 7), nullptr);
    EXPECT_EQ(reader.nextCompletePartition(header), body);
    EXPECT_EQ(reader.nextClosedPartition(body), footer);

    // The regions follow one another.
    EXPECT_GE(header->metadataAbsoluteOffset(), header->partitionPack().serializedSize());
    EXPECT_GT(header->metadataAbsoluteOffset(), header->partitionAbsoluteOffset());
    EXPECT_EQ(footer->bodyAbsoluteOffset(),
              footer->indexTableAbsoluteOffset() + footer->partitionPack().indexByteCount());
    EXPECT_EQ(reader.firstPartitionWithFinalMetadata(), header);
    EXPECT_EQ(reader.backwardFirstPartitionWithFinalMetadata(), header);
}

TEST(MXFIOReader, LoadsHeaderMetadataThroughThePrimer)
{
    Bytes file = fixture();
    REQUIRE_FIXTURE(file);
    MemoryDataSource source(file.data(), file.size());
    Reader2 reader(source, dictionary(), 65536);
    Partition * header = reader.headerPartition();

    struct Listener : MXFIO::PartitionListener
    {
        unsigned primers = 0, created = 0, unknown = 0;
        void primerPackRead(Packs::PrimerPack * p) override { primers += p != nullptr; }
        void metadataCreated(Metadata::PartitionMetadata * m) override { created += m != nullptr; }
        void unknownPacketRead(KLV::Packet *) override { ++unknown; }
    };
    Listener * listener = new Listener;
    header->setPartitionListener(Templates::SharedPtr<MXFIO::PartitionListener>(listener));
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata = header->metadata();
    ASSERT_NE(metadata.get(), nullptr);
    EXPECT_GT(metadata->size(), 10u);
    EXPECT_EQ(listener->primers, 1u);
    EXPECT_EQ(listener->created, 1u);
    EXPECT_GE(listener->unknown, 1u); // the fill item that pads the region
    EXPECT_EQ(header->metadata().get(), metadata.get());
    EXPECT_EQ(listener->primers, 1u);

    // A partition without metadata gives an empty pointer.
    EXPECT_EQ(reader.nextPartition(header)->metadata().get(), nullptr);
}

TEST(MXFIOReader, CursorsOverIndexAndBody)
{
    Bytes file = fixture();
    REQUIRE_FIXTURE(file);
    MemoryDataSource source(file.data(), file.size());
    Reader2 reader(source, dictionary(), 65536);
    Partition * header = reader.headerPartition();
    Partition * body = reader.nextPartition(header);
    EXPECT_FALSE(body->partitionEnded());
    unsigned packets = countPackets(body, false);
    EXPECT_GT(packets, 50u); // 2 s of picture and sound, frame wrapped
    EXPECT_TRUE(body->partitionEnded());
    // The footer met by the body cursor is now known.
    EXPECT_EQ(reader.lastLoadedPartition()->partitionPack().partitionKind(), PartitionPack::FooterPartition);
    body->rewind();
    EXPECT_FALSE(body->partitionEnded());
    EXPECT_EQ(countPackets(body, false), packets);
    body->gotoBodyRelativePosition(0);
    EXPECT_FALSE(body->partitionEnded());
    EXPECT_EQ(countPackets(body, false), packets);

    EXPECT_EQ(countPackets(body, true), 0u);
    EXPECT_EQ(countPackets(header, false), 0u);
    Partition * footer = reader.nextPartition(body);
    EXPECT_GE(countPackets(footer, true), 1u);
    footer->rewind();
    EXPECT_GE(countPackets(footer, true), 1u);
}

TEST(MXFIOReader, FindsTheFooterByHeaderRIPAndScan)
{
    Bytes file = fixture();
    REQUIRE_FIXTURE(file);
    {
        MemoryDataSource source(file.data(), file.size());
        Reader2 reader(source, dictionary(), 65536);
        Partition * footer = reader.footerPartition();
        ASSERT_NE(footer, nullptr);
        EXPECT_EQ(footer->partitionPack().partitionKind(), PartitionPack::FooterPartition);
        EXPECT_EQ(reader.lastPartition(), footer);
        EXPECT_EQ(reader.rip().get(), nullptr);
        EXPECT_TRUE(reader.loadRIP());
        ASSERT_NE(reader.rip().get(), nullptr);
        EXPECT_EQ(reader.rip()->size(), 3u);
        // With the RIP the forward walk jumps.
        Partition * header = reader.headerPartition();
        Partition * body = reader.nextPartition(header);
        EXPECT_EQ(reader.partitionAtOffset(body->partitionPack().thisPartition()), body);
        EXPECT_EQ(reader.partitionAtOffset(header->metadataAbsoluteOffset()), body);
    }
    {
        // Only the RIP knows: the header's pointer is 0.
        Bytes copy = file;
        put64(copy, 0, FooterPartition, 0);
        MemoryDataSource source(copy.data(), copy.size());
        Reader2 reader(source, dictionary(), 65536);
        ASSERT_TRUE(reader.loadRipFromFooter());
        Partition * last = reader.lastPartition();
        ASSERT_NE(last, nullptr);
        EXPECT_EQ(last->partitionPack().partitionKind(), PartitionPack::FooterPartition);
        EXPECT_EQ(reader.footerPartition(), last);
    }
    {
        // Neither pointer nor RIP: the scan from the end.
        Bytes copy = file;
        put64(copy, 0, FooterPartition, 0);
        MemoryDataSource source(copy.data(), copy.size());
        Reader2 reader(source, dictionary(), 65536);
        Partition * last = reader.lastPartition();
        ASSERT_NE(last, nullptr);
        EXPECT_EQ(last->partitionPack().partitionKind(), PartitionPack::FooterPartition);
        EXPECT_EQ(reader.backwardFirstPartitionWithFinalMetadata(), reader.headerPartition());
    }
}

TEST(MXFIOReader, DamagedCopies)
{
    Bytes file = fixture();
    REQUIRE_FIXTURE(file);
    Layout l;
    {
        MemoryDataSource source(file.data(), file.size());
        Reader2 reader(source, dictionary(), 65536);
        l = layoutOf(reader);
    }
    {
        // Cut behind the body: no footer, no RIP.
        Bytes cut(file.begin(), file.begin() + long(l.footer) - 1000);
        MemoryDataSource source(cut.data(), cut.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_FALSE(reader.loadRIP());
        EXPECT_EQ(reader.footerPartition(), nullptr);
        Partition * last = reader.lastPartition();
        ASSERT_NE(last, nullptr);
        EXPECT_EQ(last->partitionAbsoluteOffset(), l.body);
        EXPECT_FALSE(reader.loadRipFromFooter());
        Partition * header = reader.headerPartition();
        EXPECT_NE(header->metadata().get(), nullptr);
        EXPECT_EQ(reader.nextPartition(last), nullptr);
    }
    {
        // The RIP cut off.
        Bytes cut(file.begin(), file.end() - 10);
        MemoryDataSource source(cut.data(), cut.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_FALSE(reader.loadRIP());
        EXPECT_NE(reader.footerPartition(), nullptr);
    }
    {
        // The footer pointer names the body partition.
        Bytes copy = file;
        put64(copy, 0, FooterPartition, l.body);
        MemoryDataSource source(copy.data(), copy.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_EQ(reader.footerPartition(), nullptr);
        ASSERT_TRUE(reader.loadRIP());
        Partition * last = reader.lastPartition();
        ASSERT_NE(last, nullptr);
        EXPECT_EQ(last->partitionAbsoluteOffset(), l.footer);
    }
    {
        // The RIP's last entry names a known body partition.
        Bytes copy = file;
        put64(copy, 0, FooterPartition, 0);
        VellumTest::patchBE(copy, copy.size() - 4 - 8, l.body, 8);
        MemoryDataSource source(copy.data(), copy.size());
        Reader2 reader(source, dictionary(), 65536);
        ASSERT_TRUE(reader.loadRIP());
        reader.nextPartition(reader.headerPartition());
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { reader.lastPartition(); }),
                  "partition -> partitionPack ().partitionKind () == PartitionPack::FOOTER_PARTITION: "
                  "Last Partition indicated by RIP is not a Footer Partition");
        EXPECT_EQ(reader.footerPartition(), nullptr);
    }
    {
        // A footer whose PreviousPartition names itself.
        Bytes copy = file;
        put64(copy, l.footer, PreviousPartition, l.footer);
        MemoryDataSource source(copy.data(), copy.size());
        Reader2 reader(source, dictionary(), 65536);
        Partition * footer = reader.footerPartition();
        ASSERT_NE(footer, nullptr);
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { reader.previousPartition(footer); }),
                  "previous != current && previous != 0: A Partition has an invalid PreviousPartition value");
    }
    {
        // A body partition that says its predecessor lies behind it.
        Bytes copy = file;
        put64(copy, l.body, PreviousPartition, l.body + 100);
        MemoryDataSource source(copy.data(), copy.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { reader.nextPartition(reader.headerPartition()); }),
                  "next == 0 || next -> partitionPack ().previousPartition () <= current -> partitionPack "
                  "().thisPartition (): The Partition Pack has an invalid PreviousPartition value");
    }
    {
        // Header metadata cut in the middle of a set; and with its Primer key spoilt.
        uint64 metadataOffset = 0;
        for (long at : {3000L, 100L})
        {
            MemoryDataSource whole(file.data(), file.size());
            Reader2 probe(whole, dictionary(), 65536);
            Bytes cut(file.begin(), file.begin() + long(probe.headerPartition()->metadataAbsoluteOffset()) + at);
            MemoryDataSource source(cut.data(), cut.size());
            Reader2 reader(source, dictionary(), 65536);
            Partition * header = reader.headerPartition();
            ASSERT_NE(header, nullptr);
            metadataOffset = header->metadataAbsoluteOffset();
            EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { header->metadata(); }), "Expected Primer Pack");
            EXPECT_EQ(reader.nextPartition(header), nullptr);
        }

        Bytes copy = file;
        copy[size_t(metadataOffset)] = 0;
        MemoryDataSource source2(copy.data(), copy.size());
        Reader2 reader2(source2, dictionary(), 65536);
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { reader2.headerPartition()->metadata(); }),
                  "This partition (0x0) does not have a primer pack at the beginning of the metadata.");
    }
}

TEST(MXFIOReader, RunIn)
{
    Bytes file = fixture();
    REQUIRE_FIXTURE(file);
    Bytes copy(100 + file.size(), 0x5a);
    std::copy(file.begin(), file.end(), copy.begin() + 100);
    MemoryDataSource source(copy.data(), copy.size());
    Reader2 reader(source, dictionary(), 65536);
    Partition * header = reader.headerPartition();
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->partitionAbsoluteOffset(), 100u);
    EXPECT_EQ(header->partitionPack().thisPartition(), 0u);
    KLV::Value * runIn = reader.runIn();
    ASSERT_NE(runIn, nullptr);
    EXPECT_EQ(runIn->totalLength(), 100u);
    unsigned char b = 0;
    EXPECT_EQ(runIn->read(&b, 1), 1u);
    EXPECT_EQ(b, 0x5a);

    EXPECT_NE(header->metadata().get(), nullptr);
    Partition * footer = reader.footerPartition();
    ASSERT_NE(footer, nullptr);
    EXPECT_EQ(footer->partitionAbsoluteOffset(), footer->partitionPack().thisPartition() + 100);
    Partition * body = reader.previousPartition(footer);
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(reader.previousPartition(body), header);
    EXPECT_EQ(reader.partitionAtOffset(body->partitionPack().thisPartition()), body);
    EXPECT_TRUE(reader.loadRIP());
    EXPECT_EQ(reader.nextPartition(header), body);
    EXPECT_EQ(reader.nextPartition(body), footer);
}

TEST(MXFIOReader, EmptyAndTinySources)
{
    {
        MemoryDataSource source(nullptr, 0);
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_EQ(reader.headerPartition(), nullptr);
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { reader.firstPartitionWithFinalMetadata(); }),
                  "header != 0: No header partition found");
        EXPECT_FALSE(reader.loadRIP());
        EXPECT_EQ(reader.footerPartition(), nullptr);
        EXPECT_EQ(reader.lastPartition(0), nullptr);
    }
    {
        unsigned char three[3] = {1, 2, 3};
        MemoryDataSource source(three, 3);
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_FALSE(reader.loadRIP());
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { reader.lastPartition(); }),
                  "partition != 0: No partition found");
    }
    {
        // A last word of 20, and one as large as the file.
        Bytes junk(64, 0);
        junk[63] = 20;
        MemoryDataSource source(junk.data(), junk.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_FALSE(reader.loadRIP());
        junk[63] = 64;
        EXPECT_FALSE(reader.loadRIP());
        junk[63] = 30;
        EXPECT_FALSE(reader.loadRIP());
        EXPECT_EQ(reader.rip().get(), nullptr);
    }
}

TEST(MXFIOReader, EveryFixtureAndSampleFromAFile)
{
    std::vector<std::string> paths = VellumTest::sampleAndFixtureFiles();
    if (paths.empty())
        GTEST_SKIP() << "no files to read: neither the shared samples nor ffmpeg are there";
    for (std::string const & path : paths)
    {
        SCOPED_TRACE(path);
        Templates::wstring wide = Platform::stringToWstring(path.c_str());
        DataIO::File::FileDataSource source(wide.c_str(), 65536);
        Reader2 reader(source, dictionary(), 65536);
        Partition * header = reader.headerPartition();
        ASSERT_NE(header, nullptr);
        unsigned walked = 0;
        for (Partition * p = header; p != nullptr; p = reader.nextPartition(p))
            ++walked;
        Partition * final = reader.backwardFirstPartitionWithFinalMetadata();
        ASSERT_NE(final, nullptr);
        ASSERT_NE(final->metadata().get(), nullptr);
        EXPECT_GT(final->metadata()->size(), 0u);
        if (reader.loadRIP())
        {
            EXPECT_EQ(reader.rip()->size(), walked);
        }
    }
}

TEST(MXFIOReader, BodyPositionsLegacyIndexKeysAndTails)
{
    Bytes file = fixture();
    REQUIRE_FIXTURE(file);
    Layout l;
    size_t segmentKey = 0;
    {
        MemoryDataSource source(file.data(), file.size());
        Reader2 reader(source, dictionary(), 65536);
        l = layoutOf(reader);
        Partition * footer = reader.footerPartition();
        segmentKey = size_t(footer->indexTableAbsoluteOffset());
        // A tail as long as the file finds every partition and keeps the last.
        EXPECT_EQ(reader.lastPartition(uint64(file.size()) + 10), footer);
        EXPECT_EQ(reader.lastPartition(0), nullptr);
    }
    {
        // A body that starts at stream offset 0x100.
        Bytes copy = file;
        put64(copy, l.body, BodyOffset, 0x100);
        MemoryDataSource source(copy.data(), copy.size());
        Reader2 reader(source, dictionary(), 65536);
        Partition * body = reader.nextPartition(reader.headerPartition());
        ASSERT_NE(body, nullptr);
        char text[128];
        std::snprintf(text, sizeof text, "Trying to seek to 0x10 but partition (0x%zx) body starts at 100", l.body);
        EXPECT_EQ(messageOf<Exceptions::InvalidPosition>([&] { body->gotoBodyRelativePosition(0x10); }),
                  std::string(text));
        body->gotoBodyRelativePosition(0x100);
        EXPECT_EQ(source.absoluteOffset(), body->bodyAbsoluteOffset());
        Templates::auto_ptr<KLV::Packet> first = body->nextBodyKLV(0);
        ASSERT_TRUE(first != nullptr);
        EXPECT_EQ(first->keyAbsoluteOffset(), body->bodyAbsoluteOffset());
    }
    {
        // Index segments under the older key are read as well.
        Bytes copy = file;
        ASSERT_EQ(copy[segmentKey + 13], 0x10);
        copy[segmentKey + 14] = 0x00;
        MemoryDataSource source(copy.data(), copy.size());
        Reader2 reader(source, dictionary(), 65536);
        Partition * footer = reader.footerPartition();
        Templates::auto_ptr<KLV::Packet> segment = footer->nextIndexTableSegmentsKLV();
        ASSERT_TRUE(segment != nullptr);
        EXPECT_EQ(segment->key()[14], 0x00);
        EXPECT_EQ(segment->keyAbsoluteOffset(), segmentKey);
    }
    {
        // A file that begins with its body partition.
        Bytes tail(file.begin() + long(l.body), file.end());
        MemoryDataSource source(tail.data(), tail.size());
        Reader2 reader(source, dictionary(), 65536);
        Partition * first = reader.headerPartition();
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(first->partitionPack().partitionKind(), PartitionPack::BodyPartition);
        EXPECT_EQ(first->partitionAbsoluteOffset(), 0u);
        EXPECT_EQ(reader.runIn(), nullptr);
        EXPECT_EQ(reader.firstPartitionWithFinalMetadata(), first);
    }
}

TEST(MXFIOReader, ASetWithABadLengthIsSkipped)
{
    Bytes file = fixture();
    REQUIRE_FIXTURE(file);
    uint64 sets = 0;
    size_t firstSet = 0;
    {
        MemoryDataSource source(file.data(), file.size());
        Reader2 reader(source, dictionary(), 65536);
        Partition * header = reader.headerPartition();
        sets = header->metadata()->size();
        std::vector<VellumTest::KlvItem> items = VellumTest::klvWalk(file, size_t(header->metadataAbsoluteOffset()));
        firstSet = items.at(1).offset;
    }
    // The first item of the first set claims more bytes than the set holds.
    Bytes copy = file;
    size_t value = VellumTest::klvWalk(copy, firstSet)[0].valueOffset;
    copy[value + 2] = 0xff;
    copy[value + 3] = 0xff;
    MemoryDataSource source(copy.data(), copy.size());
    Reader2 reader(source, dictionary(), 65536);
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata = reader.headerPartition()->metadata();
    ASSERT_NE(metadata.get(), nullptr);
    // Whether the spoilt set itself is kept is the metadata model's choice; the sets behind it load.
    EXPECT_GE(metadata->size(), sets - 1);
}
