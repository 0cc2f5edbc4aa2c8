#include <gtest/gtest.h>

#include "MXFIO/ContainerOffsets.h"
#include "MXFIO/PartitionProvider.h"
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
// Body SID 1 in five partitions of 100 edit units of 20 + 10 bytes each would be large: here each
// "edit unit" is one packet of 30 bytes, five to a partition, with body SID 2 in between.
std::vector<PartitionPlan> fivePartitions()
{
    std::vector<PartitionPlan> plans = {header()};
    for (int p = 0; p < 5; ++p)
    {
        plans.push_back(body(1, {10, 10, 10, 10, 10}));
        if (p == 2)
            plans.push_back(body(2, {5}));
    }
    plans.push_back(footer());
    return plans;
}

// Checks that every packet of body SID 1, its first and last byte, is found in its partition,
// and that the byte behind the container is not.
void checkAll(MXFIO::PartitionProvider & provider, Built const & built, std::vector<PartitionPlan> const & plans,
              bool withUnits)
{
    long long unit = 0;
    for (Built::Packet const & packet : built.packets)
    {
        if (plans[packet.partition].bodySID != 1)
            continue;
        for (unsigned long long offset : {packet.streamOffset, packet.streamOffset + 29})
        {
            Partition * found = provider.partition(offset, withUnits ? unit : -1);
            ASSERT_NE(found, nullptr) << offset;
            EXPECT_EQ(found->partitionAbsoluteOffset(), built.partitionOffsets[packet.partition]) << offset;
        }
        ++unit;
    }
    unsigned long long const end = built.packets.empty() ? 0 : 25 * 30;
    EXPECT_EQ(provider.partition(end, withUnits ? unit : -1), nullptr);
    EXPECT_EQ(provider.partition(end + 1000000, withUnits ? unit + 1000 : -1), nullptr);
}

// Records the partitions the search reads, in order.
class RecordingFixedProvider : public MXFIO::FixedEditUnitCountPartitionProvider
{
public:
    RecordingFixedProvider(Reader2 & reader, unsigned int bodySID, unsigned int count)
        : FixedEditUnitCountPartitionProvider(reader, bodySID, count)
    {
    }
    std::vector<unsigned long long> read;

protected:
    void partitionRead(Partition & partition) override { read.push_back(partition.partitionAbsoluteOffset()); }
};
} // namespace

TEST(MXFIOPartitionProviders, EveryProviderFindsEveryPacket)
{
    std::vector<PartitionPlan> plans = fivePartitions();
    Built built = build(plans);
    {
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader reader(source, dictionary(), 65536);
        MXFIO::BasicPartitionProvider basic(reader, 1);
        checkAll(basic, built, plans, false);
    }
    for (bool fromLast : {false, true})
    {
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        reader.headerPartition();
        MXFIO::BasicPartitionProvider basic(reader, 1, fromLast);
        if (fromLast)
            reader.footerPartition();
        checkAll(basic, built, plans, false);
    }
    {
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        MXFIO::EstimatePartitionProvider estimate(reader, 1);
        EXPECT_EQ(estimate.partitionOffsets().size(), 5u);
        checkAll(estimate, built, plans, false);
    }
    for (unsigned count : {5u, 1u, 3u, 100u})
    {
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        MXFIO::FixedEditUnitCountPartitionProvider fixed(reader, 1, count);
        checkAll(fixed, built, plans, true);
        checkAll(fixed, built, plans, false);
    }
    {
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader reader(source, dictionary(), 65536);
        MXFIO::StreamingPartitionProvider streaming(reader, 1);
        checkAll(streaming, built, plans, false);
    }
}

TEST(MXFIOPartitionProviders, FixedCountGuessesTheTableIndex)
{
    std::vector<PartitionPlan> plans = fivePartitions();
    Built built = build(plans);
    DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
    Reader2 reader(source, dictionary(), 65536);
    RecordingFixedProvider fixed(reader, 1, 100);
    // Unit 250 with 100 to a partition: the third partition of the body SID is read first.
    Partition * found = fixed.partition(2 * 150 + 60, 250);
    ASSERT_FALSE(fixed.read.empty());
    EXPECT_EQ(fixed.read.front(), fixed.partitionOffsets()[2]);
    EXPECT_EQ(fixed.read.front(), built.partitionOffsets[3]);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->partitionAbsoluteOffset(), built.partitionOffsets[3]);
    // A wrong guess still ends at the right partition, going down or up.
    fixed.read.clear();
    found = fixed.partition(10, 250);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->partitionAbsoluteOffset(), built.partitionOffsets[1]);
    EXPECT_EQ(fixed.read.front(), built.partitionOffsets[3]);
    found = fixed.partition(4 * 150 + 1, 0);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->partitionAbsoluteOffset(), built.partitionOffsets[6]);

    EXPECT_EQ(messageOf<Exceptions::InvalidValue>([&] { MXFIO::FixedEditUnitCountPartitionProvider zero(reader, 1, 0); }),
              "editUnitsPerPartition_ != 0: ContentStorageProfile indicates '0' as the editUnitsPerPartition value.");
}

TEST(MXFIOPartitionProviders, RIPEdgeCases)
{
    // Header and footer only for the body SID: the essence sits in the header.
    Built headerOnly = build({header(1), footer()});
    {
        DataIO::Memory::MemoryDataSource source(headerOnly.bytes.data(), headerOnly.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_EQ(messageOf<Exceptions::NotFound>([&] { MXFIO::EstimatePartitionProvider estimate(reader, 1); }),
                  "partitionOffsets_.size () > 1: No partition for this bodySID was found in RIP.");
    }
    // No RIP and no footer: the RIP-driven providers know no partition.
    Built cut = build({header(), body(1, {10}), body(1, {10})}, false);
    {
        DataIO::Memory::MemoryDataSource source(cut.bytes.data(), cut.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        EXPECT_EQ(messageOf<Exceptions::NotFound>([&] { MXFIO::EstimatePartitionProvider estimate(reader, 1); }),
                  "partitionOffsets_.size () > 1: No partition for this bodySID was found in RIP.");
        MXFIO::FixedEditUnitCountPartitionProvider fixed(reader, 1, 1);
        EXPECT_TRUE(fixed.partitionOffsets().empty());
        EXPECT_EQ(fixed.partition(0, 0), nullptr);
        // The basic provider walks back from the last partition loaded.
        MXFIO::BasicPartitionProvider basic(reader, 1);
        Partition * found = basic.partition(35, -1);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->partitionAbsoluteOffset(), cut.partitionOffsets[2]);
    }
    // A RIP that names a partition past the end of the file.
    {
        Built bad = build({header(), body(1, {10}), body(1, {10}), footer()}, false);
        Packs::RandomIndexPack rip;
        rip.add(0, 0);
        rip.add(1, bad.partitionOffsets[1]);
        rip.add(1, bad.partitionOffsets[2]);
        rip.add(1, bad.bytes.size() + 500);
        DataIO::Memory::MemoryDataSink sink;
        rip.serialize(sink);
        bad.bytes.insert(bad.bytes.end(), sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
        DataIO::Memory::MemoryDataSource source(bad.bytes.data(), bad.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        MXFIO::FixedEditUnitCountPartitionProvider fixed(reader, 1, 1);
        EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { fixed.partition(0, 2); }),
                  "partition != 0: Unable to find a partition in an offset indicated in RIP.");
    }
}

TEST(MXFIOPartitionProviders, StreamingFollowsAGrowingFile)
{
    std::vector<PartitionPlan> plans = fivePartitions();
    Built built = build(plans);
    // Visible: up to the middle of the third partition of body SID 1.
    GrowingSource source(built.bytes, built.partitionOffsets[3] + 108 + 60);
    Reader reader(source, dictionary(), 65536);
    MXFIO::StreamingPartitionProvider streaming(reader, 1);
    Partition * found = streaming.partition(160, -1);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->partitionAbsoluteOffset(), built.partitionOffsets[2]);
    found = streaming.partition(2 * 150 + 59, -1);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->partitionAbsoluteOffset(), built.partitionOffsets[3]);
    EXPECT_EQ(streaming.partition(2 * 150 + 60, -1), nullptr);
    EXPECT_EQ(streaming.partition(4 * 150, -1), nullptr);
    source.grow(built.bytes.size());
    checkAll(streaming, built, plans, false);

    Bytes nothing;
    GrowingSource empty(nothing, 0);
    Reader emptyReader(empty, dictionary(), 65536);
    MXFIO::StreamingPartitionProvider none(emptyReader, 1);
    EXPECT_EQ(none.partition(0, 0), nullptr);
}

TEST(MXFIOPartitionProviders, FixturesAgreeWithTheWalk)
{
    std::vector<std::string> files = VellumTest::sampleAndFixtureFiles();
    if (files.empty())
        GTEST_SKIP() << "no files to read: neither the shared samples nor ffmpeg are there";
    for (std::string const & path : files)
    {
        SCOPED_TRACE(path);
        Bytes bytes = VellumTest::readFile(path);
        DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        std::vector<Partition *> bodies;
        for (Partition * p = reader.headerPartition(); p != nullptr; p = reader.nextPartition(p))
            if (p->partitionPack().bodySID() != 0)
                bodies.push_back(p);
        for (Partition * p : bodies)
        {
            unsigned const sid = p->partitionPack().bodySID();
            MXFIO::BasicPartitionProvider basic(reader, sid);
            MXFIO::StreamingPartitionProvider streaming(reader, sid);
            MXFIO::FixedEditUnitCountPartitionProvider fixed(reader, sid, 7);
            unsigned long long const size = MXFIO::containerSize(reader, sid);
            Partition * next = reader.nextPartition(p);
            ASSERT_NE(next, nullptr);
            unsigned long long const length = next->partitionAbsoluteOffset() - p->bodyAbsoluteOffset();
            if (length == 0)
                continue;
            unsigned long long const first = p->partitionPack().bodyOffset();
            for (unsigned long long offset : {first, first + length / 2, first + length - 1})
            {
                for (MXFIO::PartitionProvider * provider :
                     std::vector<MXFIO::PartitionProvider *>{&basic, &streaming, &fixed})
                {
                    Partition * found = provider->partition(offset, -1);
                    ASSERT_NE(found, nullptr) << offset;
                    EXPECT_EQ(found, p) << offset;
                }
            }
            EXPECT_EQ(basic.partition(size, -1), nullptr);
            EXPECT_EQ(streaming.partition(size, -1), nullptr);
            EXPECT_EQ(fixed.partition(size, -1), nullptr);
        }
    }
}
