// The sets of real files, parsed one by one with the file's Primer and the built-in dictionary,
// written back: the same key, BER width and items, in label order; a second round gives the same
// bytes again.

#include <gtest/gtest.h>

#include <algorithm>

#include "KLV/KeyPredicates.h"
#include "Metadata/MetadataSetTestSupport.h"
#include "Packs/PartitionPack.h"
#include "Support/Fixtures.h"

using namespace Vellum;
using namespace Vellum::MetadataSetTest;

namespace
{
// The header metadata of a file: its Primer and every packet behind it, whole.
struct Header
{
    std::unique_ptr<Packs::PrimerPack> primer;
    std::vector<Bytes> packets;
};

Header readHeader(std::string const & path)
{
    Header header;
    Bytes file = VellumTest::readFile(path);
    DataIO::Memory::MemoryDataSource source(file.data(), file.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 1 << 16);
    Packs::PartitionPack partition(*packet);
    uint64 headerByteCount = partition.headerByteCount();
    packet.reset();
    uint64 end = 0;
    while (source.remaining() > 0)
    {
        // The packet before must be gone first: that moves the source behind it.
        packet.reset();
        packet = reader.nextKLV(skipped, 0);
        uint64 offset = packet->keyAbsoluteOffset();
        if (header.primer && offset >= end)
            break;
        if (Packs::isPrimerPack(packet->key()))
        {
            header.primer.reset(new Packs::PrimerPack(*packet));
            end = offset + headerByteCount;
            continue;
        }
        if (!header.primer || KLV::isFillItem(packet->key()))
            continue;
        if (offset + packet->klvLength() > file.size())
            throw std::runtime_error("a header packet runs past the end of " + path);
        header.packets.push_back(Bytes(file.begin() + offset, file.begin() + offset + packet->klvLength()));
    }
    if (!header.primer)
        throw std::runtime_error("no Primer in " + path);
    return header;
}

unsigned berWidthOf(Bytes const & packet)
{
    return packet[16] < 0x80 ? 1u : 1u + (packet[16] & 0x7f);
}

// The items of a local set packet, in the order of the packet.
std::vector<Bytes> itemsOf(Bytes const & packet, unsigned lengthWidth)
{
    std::vector<Bytes> items;
    std::size_t at = 16 + berWidthOf(packet);
    while (at + 2 + lengthWidth <= packet.size())
    {
        std::size_t length = 0;
        for (unsigned i = 0; i < lengthWidth; ++i)
            length = length << 8 | packet[at + 2 + i];
        std::size_t size = std::min(packet.size() - at, 2 + lengthWidth + length);
        items.push_back(Bytes(packet.begin() + at, packet.begin() + at + size));
        at += size;
    }
    return items;
}

struct Tally
{
    unsigned sets = 0;
    unsigned unchanged = 0;
    unsigned invalid = 0;
    unsigned darkGroups = 0;
    unsigned emptyCollections = 0;
    unsigned refused = 0;
};

void checkHeader(std::string const & path, Tally & tally)
{
    Header header = readHeader(path);
    ASSERT_FALSE(header.packets.empty());
    TestOwner owner(standardDictionary(), new Packs::PrimerPack(*header.primer));
    Metadata::PartitionDictionary & dictionary = owner.partitionDictionary();
    for (Bytes const & packet : header.packets)
    {
        KLV::Key key(packet.data());
        if (key.localTagFieldLength() != 2)
            continue;
        SCOPED_TRACE(n(key.toString(Types::Dotted)));
        std::unique_ptr<Metadata::MetadataSet> set;
        try
        {
            set = parseSet(packet, dictionary, &owner);
        }
        catch (Exceptions::BaseException const & e)
        {
            ADD_FAILURE() << e.whatUtf8();
            ++tally.refused;
            continue;
        }
        ++tally.sets;
        tally.invalid += set->invalidSize();
        if (set->metaMetadataSet() == nullptr)
            ++tally.darkGroups;
        else
            EXPECT_NE(nullptr, set->instanceUID());

        Bytes written = serialized(*set, dictionary, true);
        EXPECT_EQ(written.size(), set->serializedSize(true));
        ASSERT_GE(written.size(), 17u);
        EXPECT_EQ(Bytes(packet.begin(), packet.begin() + 16), Bytes(written.begin(), written.begin() + 16));
        EXPECT_EQ(berWidthOf(packet), berWidthOf(written));
        std::vector<Bytes> before = itemsOf(packet, key.lengthFieldLength());
        std::vector<Bytes> after = itemsOf(written, key.lengthFieldLength());
        if (before == after)
        {
            EXPECT_EQ(packet, written);
            ++tally.unchanged;
        }
        // An empty collection (a count of 0 and an element size) is written with length 0.
        for (Bytes & item : before)
        {
            bool emptyCollection = item.size() == 2 + 2 + 8 && item[4] == 0 && item[5] == 0 && item[6] == 0 && item[7] == 0;
            for (Bytes const & other : after)
                if (emptyCollection && other.size() == 4 && other[0] == item[0] && other[1] == item[1])
                {
                    item = other;
                    ++tally.emptyCollections;
                }
        }
        std::sort(before.begin(), before.end());
        std::sort(after.begin(), after.end());
        EXPECT_EQ(before, after);

        // What was written reads back into the same bytes.
        std::unique_ptr<Metadata::MetadataSet> again = parseSet(written, dictionary, &owner);
        EXPECT_EQ(set->invalidSize(), again->invalidSize());
        EXPECT_EQ(written, serialized(*again, dictionary, true));
        // Without the invalid elements, only what the schema holds remains, and the items that
        // are left out are exactly the invalid ones.
        Bytes valid = serialized(*set, dictionary, false);
        EXPECT_EQ(valid.size(), set->serializedSize(false));
        std::vector<Bytes> validItems = itemsOf(valid, key.lengthFieldLength());
        std::vector<Bytes> allItems = itemsOf(written, key.lengthFieldLength());
        unsigned invalidWithValue = 0;
        for (Metadata::Element * const * it = set->invalidBegin(); it != set->invalidEnd(); ++it)
            invalidWithValue += (*it)->empty() ? 0 : 1;
        EXPECT_EQ(validItems.size() + invalidWithValue, allItems.size());
        EXPECT_TRUE(std::equal(validItems.begin(), validItems.end(), allItems.begin()));
    }
}

void checkFile(std::string const & path, Tally & tally)
{
    SCOPED_TRACE(path);
    try
    {
        checkHeader(path, tally);
    }
    catch (Exceptions::BaseException const & e)
    {
        ADD_FAILURE() << e.whatUtf8();
    }
}
} // namespace

TEST(MetadataSetFiles, SetsOfTheExampleFileSurviveAWriteBack)
{
    Tally tally;
    checkFile(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf", tally);
    EXPECT_GT(tally.sets, 10u);
    EXPECT_GT(tally.unchanged, 0u);
    // The Preface's DM schemes.
    EXPECT_GT(tally.emptyCollections, 0u);
    EXPECT_EQ(0u, tally.refused);
    RecordProperty("sets", tally.sets);
    RecordProperty("unchanged", tally.unchanged);
}

TEST(MetadataSetFiles, SetsOfTheSampleFilesSurviveAWriteBack)
{
    VELLUM_REQUIRE_SHARED();
    std::vector<std::string> files = VellumTest::sampleFiles();
    if (files.empty())
        GTEST_SKIP() << "no sample MXF files in the shared folder";
    Tally tally;
    for (std::string const & file : files)
        checkFile(file, tally);
    EXPECT_GT(tally.sets, 30u);
    // The samples hold sets and items that the schema does not know.
    EXPECT_GT(tally.invalid + tally.darkGroups, 0u);
    RecordProperty("sets", tally.sets);
    RecordProperty("invalid", tally.invalid);
    RecordProperty("darkGroups", tally.darkGroups);
    // Every set loads, the type definitions of an embedded object dictionary included.
    EXPECT_EQ(0u, tally.refused);
}

TEST(MetadataSetFiles, SetsOfFilesMadeByFfmpegSurviveAWriteBack)
{
    Tally tally;
    unsigned files = 0;
    for (std::string const & name : VellumTest::ffmpegFixtureNames())
    {
        std::string path = VellumTest::ffmpegFixture(name);
        if (path.empty())
            continue;
        ++files;
        checkFile(path, tally);
    }
    if (files == 0)
        GTEST_SKIP() << "ffmpeg is not installed";
    EXPECT_GT(tally.sets, files * 5);
    EXPECT_EQ(0u, tally.refused);
}
