#include <gtest/gtest.h>

#include <memory>

#include "DataIO/File/FileDataSource.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Value.h"
#include "MXFIO/ContainerOffsets.h"
#include "MXFIO/Reader2.h"
#include "MXFIO/ProviderTestSupport.h"
#include "Support/Fixtures.h"

using namespace Vellum;
using namespace ProviderTest;
using MXFIO::Partition;
using MXFIO::Reader;
using MXFIO::Reader2;

namespace
{
// Two containers interleaved over several body partitions, an index-only partition between.
std::vector<PartitionPlan> twoContainers()
{
    return {header(),
            body(1, {100, 50, 7}),
            body(2, {30}),
            body(1, {64, 64}),
            indexOnly(1, {{0, 5, 1}}),
            body(1, {1000}),
            body(2, {10, 20}),
            footer()};
}

unsigned long long essenceOf(Built const & built, unsigned sid, std::vector<PartitionPlan> const & plans)
{
    unsigned long long total = 0;
    for (size_t p = 0; p < plans.size(); ++p)
        if (plans[p].bodySID == sid)
            for (size_t size : plans[p].essence)
                total += 20 + size;
    (void)built;
    return total;
}
} // namespace

TEST(MXFIOContainerOffsets, SizesAndPartitionsOfHandBuiltFiles)
{
    std::vector<PartitionPlan> plans = twoContainers();
    for (bool withRIP : {true, false})
    {
        Built built = build(plans, withRIP);
        for (unsigned sid : {1u, 2u})
        {
            unsigned long long const expected = essenceOf(built, sid, plans);
            DataIO::Memory::MemoryDataSource source1(built.bytes.data(), built.bytes.size());
            Reader reader(source1, dictionary(), 65536);
            EXPECT_EQ(MXFIO::containerSize(reader, sid), expected);
            DataIO::Memory::MemoryDataSource source2(built.bytes.data(), built.bytes.size());
            Reader2 reader2(source2, dictionary(), 65536);
            EXPECT_EQ(MXFIO::containerSize(reader2, sid), expected);

            // Every packet, and its last byte, lies in the partition that holds it.
            for (Built::Packet const & packet : built.packets)
            {
                if (plans[packet.partition].bodySID != sid)
                    continue;
                unsigned long long const want = built.partitionOffsets[packet.partition];
                for (unsigned long long offset : {packet.streamOffset, packet.streamOffset + 19})
                {
                    Partition * plain = MXFIO::partitionContainingRelativeOffset(reader, sid, offset);
                    ASSERT_NE(plain, nullptr) << offset;
                    EXPECT_EQ(plain->partitionAbsoluteOffset(), want) << offset;
                    for (bool fromLast : {false, true})
                    {
                        Partition * back = MXFIO::partitionContainingRelativeOffset(reader2, sid, offset, fromLast);
                        ASSERT_NE(back, nullptr) << offset;
                        EXPECT_EQ(back->partitionAbsoluteOffset(), want) << offset;
                    }
                }
            }
            // Behind the last byte of the container there is nothing.
            EXPECT_EQ(MXFIO::partitionContainingRelativeOffset(reader, sid, expected), nullptr);
            EXPECT_EQ(MXFIO::partitionContainingRelativeOffset(reader2, sid, expected, false), nullptr);
            EXPECT_EQ(MXFIO::partitionContainingRelativeOffset(reader2, sid, expected + 1000000, false), nullptr);
        }
        // A body SID no partition has.
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader2 reader2(source, dictionary(), 65536);
        EXPECT_EQ(MXFIO::containerSize(reader2, 9), 0u);
        EXPECT_EQ(MXFIO::partitionContainingRelativeOffset(reader2, 9, 0, false), nullptr);
    }
}

TEST(MXFIOContainerOffsets, DamagedFiles)
{
    // Cut behind the body: the plain form counts to the end, the other wants a partition behind.
    std::vector<PartitionPlan> plans = {header(), body(1, {100}), body(1, {40, 40})};
    Built built = build(plans, false);
    {
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader reader(source, dictionary(), 65536);
        EXPECT_EQ(MXFIO::containerSize(reader, 1), 120u + 120u);
        Partition * last = MXFIO::partitionContainingRelativeOffset(reader, 1, 200);
        ASSERT_NE(last, nullptr);
        EXPECT_EQ(last->partitionAbsoluteOffset(), built.partitionOffsets[2]);
    }
    {
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { MXFIO::containerSize(reader, 1); }),
                  "partitionAfter != 0: File has no footer. No partition found after the last body partition for "
                  "this bodySID.");
        // No footer: the walk back starts at the last partition loaded.
        Partition * found = MXFIO::partitionContainingRelativeOffset(reader, 1, 50, false);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->partitionAbsoluteOffset(), built.partitionOffsets[1]);
    }

    // A body that starts behind the next partition: index byte count far too big.
    plans = {header(), body(1, {100}), body(1, {40}), footer()};
    for (size_t damaged : {size_t(1), size_t(2)})
    {
        Built bad = build(plans, true);
        unsigned long long const at = bad.partitionOffsets[damaged];
        patchBE(bad.bytes, at + 20 + 40, 5000, 8);
        unsigned long long const bodyStart = at + 108 + 5000;
        unsigned long long const next = bad.partitionOffsets[damaged + 1];
        DataIO::Memory::MemoryDataSource source(bad.bytes.data(), bad.bytes.size());
        Reader reader(source, dictionary(), 65536);
        // The walk steps over the damaged partition by the RIP.
        ASSERT_TRUE(reader.loadRIP());
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { MXFIO::containerSize(reader, 1); }),
                  "body <= nextOffset: Expected body offset of partition 0x" + hex(bodyStart) +
                      " is higher than begin of next partition (0x" + hex(next) + ")");
        DataIO::Memory::MemoryDataSource source2(bad.bytes.data(), bad.bytes.size());
        Reader2 reader2(source2, dictionary(), 65536);
        std::string const message = messageOf<Exceptions::InvalidFormat>([&] { MXFIO::containerSize(reader2, 1); });
        if (damaged == 2)
            EXPECT_EQ(message, "body <= next: Expected body absolute offset of last body partition 0x" +
                                   hex(bodyStart) +
                                   " is higher than begin of footer/next partition (0x" +
                                   hex(next) + ")");
        else
            EXPECT_NE(message.find("Expected body offset of partition 0x"), std::string::npos) << message;
    }
    {
        // The last partition of the file is a body whose start lies past the end.
        Built bad = build({header(), body(1, {10})}, false);
        patchBE(bad.bytes, bad.partitionOffsets[1] + 20 + 40, 5000, 8);
        DataIO::Memory::MemoryDataSource source(bad.bytes.data(), bad.bytes.size());
        Reader reader(source, dictionary(), 65536);
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { MXFIO::containerSize(reader, 1); }),
                  "body <= end: Expected body offset of partition 0x" +
                      hex(bad.partitionOffsets[1] + 108 + 5000) +
                      " is higher than the total file size (0x" + hex(bad.bytes.size()) +
                      ")");
    }

    // A RIP entry that leads nowhere.
    {
        Built bad = build({header(), body(1, {10}), footer()}, false);
        Packs::RandomIndexPack rip;
        rip.add(0, 0);
        rip.add(1, bad.bytes.size() + 4096);
        DataIO::Memory::MemoryDataSink sink;
        rip.serialize(sink);
        bad.bytes.insert(bad.bytes.end(), sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
        DataIO::Memory::MemoryDataSource source(bad.bytes.data(), bad.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { MXFIO::containerSize(reader, 1); }),
                  "partition != 0: Unable to find a partition in an offset indicated in RIP.");
    }

    // Nothing to start from.
    Bytes junk(300, 0x11);
    DataIO::Memory::MemoryDataSource source(junk.data(), junk.size());
    Reader reader(source, dictionary(), 65536);
    EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { MXFIO::partitionContainingRelativeOffset(reader, 1, 0); }),
              "currentPartition != 0: Could not find header partition.");
    DataIO::Memory::MemoryDataSource source2(junk.data(), junk.size());
    Reader2 reader2(source2, dictionary(), 65536);
    EXPECT_EQ(messageOf<Exceptions::InvalidFormat>(
                  [&] { MXFIO::partitionContainingRelativeOffset(reader2, 1, 0, true); }),
              "currentPartition != 0: Could not find footer partition.");
}

namespace
{
// The essence of each partition of a body SID as its body cursor finds it: (partition, stream
// offset of the packet, length).
struct Found
{
    Partition * partition;
    unsigned long long streamOffset;
};

void checkFile(std::string const & path)
{
    SCOPED_TRACE(path);
    Bytes bytes = VellumTest::readFile(path);
    DataIO::Memory::MemoryDataSource walkSource(bytes.data(), bytes.size());
    Reader2 walker(walkSource, dictionary(), 65536);
    std::map<unsigned, unsigned long long> sizes;
    std::map<unsigned, std::vector<std::pair<unsigned long long, unsigned long long>>> packets;
    for (Partition * p = walker.headerPartition(); p != nullptr; p = walker.nextPartition(p))
    {
        unsigned const sid = p->partitionPack().bodySID();
        if (sid == 0)
            continue;
        p->rewind();
        unsigned long long const start = p->bodyAbsoluteOffset();
        unsigned long long end = start;
        for (;;)
        {
            Templates::auto_ptr<KLV::Packet> packet = p->nextBodyKLV(65536);
            if (!packet)
                break;
            unsigned long long const key = packet->keyAbsoluteOffset();
            end = key + packet->klvLength();
            if (KLV::isEssence(packet->key()))
                packets[sid].push_back(
                    std::make_pair(p->partitionAbsoluteOffset(), p->partitionPack().bodyOffset() + (key - start)));
            packet->value().discard();
        }
        sizes[sid] += end - start;
    }
    for (auto const & entry : sizes)
    {
        DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
        Reader reader(source, dictionary(), 65536);
        EXPECT_EQ(MXFIO::containerSize(reader, entry.first), entry.second);
        DataIO::Memory::MemoryDataSource source2(bytes.data(), bytes.size());
        Reader2 reader2(source2, dictionary(), 65536);
        EXPECT_EQ(MXFIO::containerSize(reader2, entry.first), entry.second);
        for (auto const & packet : packets[entry.first])
        {
            Partition * plain = MXFIO::partitionContainingRelativeOffset(reader, entry.first, packet.second);
            ASSERT_NE(plain, nullptr);
            EXPECT_EQ(plain->partitionAbsoluteOffset(), packet.first);
            Partition * back = MXFIO::partitionContainingRelativeOffset(reader2, entry.first, packet.second, false);
            ASSERT_NE(back, nullptr);
            EXPECT_EQ(back->partitionAbsoluteOffset(), packet.first);
        }
        EXPECT_EQ(MXFIO::partitionContainingRelativeOffset(reader2, entry.first, entry.second, false), nullptr);
    }
}
} // namespace

TEST(MXFIOContainerOffsets, FixturesAndSamplesAgreeWithAWalkOfTheBody)
{
    std::vector<std::string> files = VellumTest::sampleAndFixtureFiles();
    if (files.empty())
        GTEST_SKIP() << "no files to read: neither the shared samples nor ffmpeg are there";
    for (std::string const & path : files)
        checkFile(path);
}
