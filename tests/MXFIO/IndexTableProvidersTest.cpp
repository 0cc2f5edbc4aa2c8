#include <gtest/gtest.h>

#include "IndexTables/IndexTableSegment.h"
#include "KLV/Value.h"
#include "MXFIO/IndexTableProvider.h"
#include "MXFIO/Reader2.h"
#include "MXFIO/ProviderTestSupport.h"
#include "Support/Fixtures.h"

using namespace Vellum;
using namespace ProviderTest;
using MXFIO::IndexTableSegmentPtr;
using MXFIO::Partition;
using MXFIO::Reader;
using MXFIO::Reader2;

namespace
{
IndexTableSegmentPtr makeSegment(long long start, long long duration, unsigned bodySID = 1, int indexSID = 2)
{
    IndexTableSegmentPtr segment(new IndexTables::IndexTableSegment);
    segment->indexStartPosition(static_cast<int64>(start));
    segment->indexDuration(static_cast<int64>(duration));
    segment->bodySID(bodySID);
    if (indexSID >= 0)
        segment->indexSID(static_cast<unsigned>(indexSID));
    return segment;
}

long long startOf(IndexTableSegmentPtr const & s) { return s.get() == nullptr ? -1 : s->indexStartPosition().value(); }

// Index segments of SID 2 over body SID 1, spread over the partitions: some in the body
// partitions, one in a partition of its own, the last open.
std::vector<PartitionPlan> indexedFile(bool openEnd)
{
    return {header(),
            body(1, {10, 10}, 2, {{0, 10, 1}}),
            body(1, {10}, 2, {{10, 10, 1}, {20, 5, 1}}),
            body(1, {10}),
            indexOnly(2, {{25, openEnd ? 0 : 15, 1}}),
            body(1, {10}, 2, {{40, 10, 1}}),
            footer()};
}
} // namespace

TEST(MXFIOIndexTableProviders, CompleteCache)
{
    MXFIO::IndexTableCompleteCache cache;
    EXPECT_TRUE(cache.empty());
    EXPECT_EQ(cache.segment(0).get(), nullptr);
    EXPECT_FALSE(cache.beyondTable(0));

    cache.addSegment(makeSegment(10, 10));
    cache.addSegment(makeSegment(0, 10));
    cache.addSegment(makeSegment(30, 5));
    EXPECT_EQ(startOf(cache.segment(0)), 0);
    EXPECT_EQ(startOf(cache.segment(9)), 0);
    EXPECT_EQ(startOf(cache.segment(10)), 10);
    EXPECT_EQ(startOf(cache.segment(19)), 10);
    EXPECT_EQ(cache.segment(20).get(), nullptr); // a gap
    EXPECT_EQ(cache.segment(-1).get(), nullptr);
    EXPECT_EQ(startOf(cache.segment(34)), 30);
    EXPECT_EQ(cache.coveredDuration(), 35);
    EXPECT_FALSE(cache.beyondTable(20)); // inside the table, just not covered
    EXPECT_TRUE(cache.beyondTable(35));

    // The same start again replaces the segment held.
    IndexTableSegmentPtr longer = makeSegment(10, 20);
    cache.addSegment(longer);
    EXPECT_EQ(cache.segment(25).get(), longer.get());

    // An open segment reaches on from its start.
    cache.addSegment(makeSegment(50, 0));
    EXPECT_EQ(startOf(cache.segment(49)), -1);
    EXPECT_EQ(startOf(cache.segment(50)), 50);
    EXPECT_EQ(startOf(cache.segment(5000)), 50);
    EXPECT_FALSE(cache.beyondTable(5000));

    // Other SIDs are refused and leave the cache as it was; a segment without IndexSID is taken.
    EXPECT_EQ(messageOf<Exceptions::InvalidID>([&] { cache.addSegment(makeSegment(60, 5, 3)); }),
              "segmentBodySID == bodySID_: Trying to cache an IndexTableSegment with different bodySID");
    EXPECT_EQ(messageOf<Exceptions::InvalidID>([&] { cache.addSegment(makeSegment(60, 5, 1, 7)); }),
              "segmentIndexSID == indexSID_: Trying to cache an IndexTableSegment with different indexSID");
    EXPECT_EQ(startOf(cache.segment(60)), 50);
    cache.addSegment(makeSegment(100, 5, 1, -1));
    EXPECT_EQ(startOf(cache.segment(101)), 100);

    // Overlapping segments: the one in front still answers for what it covers.
    MXFIO::IndexTableCompleteCache overlapping;
    overlapping.addSegment(makeSegment(0, 100));
    overlapping.addSegment(makeSegment(10, 5));
    EXPECT_EQ(startOf(overlapping.segment(12)), 10);
    EXPECT_EQ(startOf(overlapping.segment(50)), 0);
    EXPECT_EQ(overlapping.segment(100).get(), nullptr);

    // The null provider only has what it was given.
    MXFIO::IndexTableNullProvider null;
    EXPECT_EQ(null.segment(0).get(), nullptr);
    null.addSegment(makeSegment(0, 3));
    EXPECT_EQ(startOf(null.segment(2)), 0);
    EXPECT_EQ(null.segment(3).get(), nullptr);
}

TEST(MXFIOIndexTableProviders, FullFileParseAndOnRequest)
{
    for (bool openEnd : {false, true})
    {
        Built built = build(indexedFile(openEnd));
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        MXFIO::IndexTableFullFileParseProvider full(reader, 2);
        MXFIO::IndexTableParseOnRequestProvider onRequest(reader, 2);
        long long const expected[] = {0, 0, 9, 0, 10, 10, 19, 10, 20, 20, 24, 20, 25, 25, 39, 25, 40, 40, 49, 40};
        // Forward, and back again from the cache.
        for (int round = 0; round < 2; ++round)
            for (size_t i = 0; i < sizeof expected / sizeof expected[0]; i += 2)
            {
                EXPECT_EQ(startOf(full.segment(expected[i])), expected[i + 1]) << expected[i];
                // A segment still open answers for everything behind its start until a later one
                // has been read.
                if (!openEnd || expected[i] < 40)
                {
                    EXPECT_EQ(startOf(onRequest.segment(expected[i])), expected[i + 1]) << expected[i];
                }
            }
        if (openEnd)
        {
            // The open segment of the index-only partition reaches on: 40 onwards is answered by
            // the later segment, and anything behind it by the open one.
            EXPECT_EQ(startOf(full.segment(1000)), 25);
            EXPECT_EQ(startOf(onRequest.segment(1000)), 25);
            EXPECT_FALSE(full.beyondTable(1000));
        }
        else
        {
            EXPECT_EQ(full.segment(50).get(), nullptr);
            EXPECT_TRUE(full.beyondTable(50));
            EXPECT_FALSE(full.beyondTable(49));
            EXPECT_EQ(onRequest.segment(50).get(), nullptr);
            EXPECT_TRUE(onRequest.beyondTable(50));
        }
        EXPECT_EQ(full.segment(-3).get(), nullptr);
    }

    // On request, a look-up of the first units reads no further than their partition.
    Built built = build(indexedFile(false));
    CountingSource source(built.bytes.data(), built.bytes.size());
    Reader2 reader(source, dictionary(), 65536);
    MXFIO::IndexTableParseOnRequestProvider onRequest(reader, 2);
    EXPECT_EQ(startOf(onRequest.segment(3)), 0);
    EXPECT_EQ(reader.lastLoadedPartition()->partitionAbsoluteOffset(), built.partitionOffsets[1]);
    EXPECT_FALSE(onRequest.beyondTable(100));
    EXPECT_EQ(startOf(onRequest.segment(22)), 20);
    EXPECT_EQ(reader.lastLoadedPartition()->partitionAbsoluteOffset(), built.partitionOffsets[2]);
}

TEST(MXFIOIndexTableProviders, NoIndexIsWalkedOnce)
{
    Built built = build({header(), body(1, {10}), body(1, {10}), body(1, {10}), footer()});
    CountingSource source(built.bytes.data(), built.bytes.size());
    Reader2 reader(source, dictionary(), 65536);
    MXFIO::IndexTableParseOnRequestProvider onRequest(reader, 2);
    EXPECT_EQ(onRequest.segment(0).get(), nullptr);
    EXPECT_EQ(reader.lastLoadedPartition()->partitionPack().partitionKind(), Packs::PartitionPack::FooterPartition);
    unsigned const reads = source.reads;
    EXPECT_GT(reads, 0u);
    EXPECT_EQ(onRequest.segment(5).get(), nullptr);
    EXPECT_EQ(onRequest.segment(0).get(), nullptr);
    EXPECT_EQ(source.reads, reads);
    // Nothing was found, so nothing is known to lie beyond.
    EXPECT_FALSE(onRequest.beyondTable(5));

    MXFIO::IndexTableFullFileParseProvider full(reader, 2);
    EXPECT_EQ(full.segment(0).get(), nullptr);
    EXPECT_FALSE(full.beyondTable(0));
}

TEST(MXFIOIndexTableProviders, PositionEstimate)
{
    // Ten edit units in each body partition, each with the segment of its own units.
    std::vector<PartitionPlan> plans = {header()};
    for (int p = 0; p < 6; ++p)
        plans.push_back(body(1, {10, 10}, 2, {{p * 10, 10, 1}}));
    plans.push_back(footer());
    Built built = build(plans);

    EXPECT_EQ(messageOf<Exceptions::InvalidValue>([&] {
                  DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
                  Reader2 reader(source, dictionary(), 65536);
                  MXFIO::IndexTablePositionEstimateProvider provider(reader, 2, 0);
              }),
              "editUnitsPerPartition != 0: The average number of edit units for each partition must not be 0.");

    for (uint64 average : {uint64(10), uint64(3), uint64(40), uint64(1000)})
    {
        DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        MXFIO::IndexTablePositionEstimateProvider provider(reader, 2, average);
        for (long long e : {35LL, 0LL, 59LL, 12LL, 47LL, 20LL})
            EXPECT_EQ(startOf(provider.segment(e)), e / 10 * 10) << "average " << average << " unit " << e;
        EXPECT_EQ(provider.segment(60).get(), nullptr);
        EXPECT_EQ(provider.segment(100000).get(), nullptr);
        EXPECT_EQ(provider.segment(-1).get(), nullptr);
    }

    // With the right average, the partition guessed is the one read, and nothing beyond the
    // last partition is read for a unit beyond it.
    {
        CountingSource source(built.bytes.data(), built.bytes.size());
        Reader2 reader(source, dictionary(), 65536);
        MXFIO::IndexTablePositionEstimateProvider provider(reader, 2, 10);
        EXPECT_EQ(startOf(provider.segment(43)), 40);
        // The guess, 43 / 10 + 1, is the fifth body partition; nothing behind it is read.
        EXPECT_EQ(reader.lastLoadedPartition()->partitionAbsoluteOffset(), built.partitionOffsets[5]);
        EXPECT_EQ(provider.segment(500).get(), nullptr);
        unsigned const reads = source.reads;
        EXPECT_EQ(provider.segment(500).get(), nullptr);
        EXPECT_EQ(source.reads, reads);
    }

    // Without a RIP or footer there is no table: nothing is found.
    Built cut = build({header(), body(1, {10}, 2, {{0, 10, 1}})}, false);
    DataIO::Memory::MemoryDataSource source(cut.bytes.data(), cut.bytes.size());
    Reader2 reader(source, dictionary(), 65536);
    MXFIO::IndexTablePositionEstimateProvider provider(reader, 2, 10);
    EXPECT_EQ(provider.segment(3).get(), nullptr);
}

TEST(MXFIOIndexTableProviders, StreamingFollowsAGrowingFile)
{
    Built built = build(indexedFile(false));
    GrowingSource source(built.bytes, built.partitionOffsets[3]);
    Reader reader(source, dictionary(), 65536);
    MXFIO::IndexTableStreamingProvider provider(reader, 2);
    EXPECT_EQ(startOf(provider.segment(12)), 10);
    EXPECT_EQ(startOf(provider.segment(3)), 0);
    EXPECT_EQ(provider.segment(42).get(), nullptr);
    source.grow(built.bytes.size());
    EXPECT_EQ(startOf(provider.segment(42)), 40);
    EXPECT_EQ(startOf(provider.segment(30)), 25);
    EXPECT_EQ(provider.segment(50).get(), nullptr);

    Bytes nothing;
    GrowingSource empty(nothing, 0);
    Reader emptyReader(empty, dictionary(), 65536);
    MXFIO::IndexTableStreamingProvider none(emptyReader, 2);
    EXPECT_EQ(none.segment(0).get(), nullptr);
}

TEST(MXFIOIndexTableProviders, DamagedIndexRegionsEnd)
{
    // The index byte count ends inside the second segment: the cursor would go back to the
    // start of the region after it, and must not go round.
    Built built = build({header(), body(1, {10}, 2, {{0, 5, 1}, {5, 5, 1}}), footer()});
    unsigned long long const at = built.partitionOffsets[1];
    unsigned long long const segment = segmentBytes({0, 5, 1}, 2).size();
    patchBE(built.bytes, at + 20 + 40, segment + 30, 8);
    DataIO::Memory::MemoryDataSource source(built.bytes.data(), built.bytes.size());
    Reader2 reader(source, dictionary(), 65536);
    MXFIO::IndexTableParseOnRequestProvider onRequest(reader, 2);
    EXPECT_EQ(startOf(onRequest.segment(7)), 5);
    EXPECT_EQ(onRequest.segment(12).get(), nullptr);
    MXFIO::IndexTableFullFileParseProvider full(reader, 2);
    EXPECT_EQ(startOf(full.segment(2)), 0);

    // Segments of another body SID in the same index SID.
    Built mixed = build({header(), body(1, {10}, 2, {{0, 5, 1}}), body(1, {10}, 2, {{5, 5, 3}}), footer()});
    DataIO::Memory::MemoryDataSource source2(mixed.bytes.data(), mixed.bytes.size());
    Reader2 reader2(source2, dictionary(), 65536);
    EXPECT_EQ(messageOf<Exceptions::InvalidID>([&] { MXFIO::IndexTableFullFileParseProvider bad(reader2, 2); }),
              "segmentBodySID == bodySID_: Trying to cache an IndexTableSegment with different bodySID");
}

TEST(MXFIOIndexTableProviders, FixturesAgreeAcrossProviders)
{
    std::vector<std::string> files = VellumTest::sampleAndFixtureFiles();
    if (files.empty())
        GTEST_SKIP() << "no files to read: neither the shared samples nor ffmpeg are there";
    for (std::string const & path : files)
    {
        SCOPED_TRACE(path);
        Bytes bytes = VellumTest::readFile(path);
        // The index SIDs and every segment's start and duration, from a walk of the partitions.
        DataIO::Memory::MemoryDataSource walkSource(bytes.data(), bytes.size());
        Reader2 walker(walkSource, dictionary(), 65536);
        std::map<unsigned, std::vector<std::pair<long long, long long>>> segments;
        for (Partition * p = walker.headerPartition(); p != nullptr; p = walker.nextPartition(p))
        {
            p->rewind();
            for (Templates::auto_ptr<KLV::Packet> packet = p->nextIndexTableSegmentsKLV(); packet;
                 packet = p->nextIndexTableSegmentsKLV())
            {
                IndexTables::IndexTableSegment segment(*packet);
                segments[p->partitionPack().indexSID()].push_back(
                    std::make_pair(segment.indexStartPosition().value(), segment.indexDuration().value()));
            }
        }
        for (auto const & entry : segments)
        {
            DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
            Reader2 reader(source, dictionary(), 65536);
            MXFIO::IndexTableFullFileParseProvider full(reader, entry.first);
            MXFIO::IndexTableParseOnRequestProvider onRequest(reader, entry.first);
            MXFIO::IndexTableStreamingProvider streaming(reader, entry.first);
            MXFIO::IndexTablePositionEstimateProvider estimate(reader, entry.first, 25);
            for (auto const & s : entry.second)
            {
                for (long long e : {s.first, s.first + (s.second > 1 ? s.second - 1 : 0)})
                {
                    IndexTableSegmentPtr a = full.segment(e);
                    ASSERT_NE(a.get(), nullptr) << e;
                    EXPECT_LE(startOf(a), e);
                    EXPECT_EQ(startOf(onRequest.segment(e)), startOf(a)) << e;
                    EXPECT_EQ(startOf(streaming.segment(e)), startOf(a)) << e;
                    EXPECT_EQ(startOf(estimate.segment(e)), startOf(a)) << e;
                }
            }
        }
    }
}
