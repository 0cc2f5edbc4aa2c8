// Speed of index segment parsing (entries per second) and of IndexTable::find (look-ups per
// second). A segment's items have 16-bit lengths, so 10,000 entries cannot stand in one segment on
// the wire: the segment benchmark parses them as four segments of 2,500, and the array benchmark
// parses one array value of 10,000 entries, the part of parsing that grows with the entries.

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "IndexTables/IndexEntryArray.h"
#include "IndexTables/IndexTable.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "KLV/Value.h"

using namespace Vellum;
using namespace Vellum::IndexTables;

namespace
{
typedef std::vector<unsigned char> Bytes;

// A written segment of `entries` long-GOP index entries with one slice offset each.
Bytes segmentBytes(unsigned start, unsigned entries)
{
    IndexTableSegment segment;
    segment.indexEditRate(Templates::Rational<int>(25, 1));
    segment.indexStartPosition(static_cast<int64>(start));
    segment.indexDuration(static_cast<int64>(entries));
    segment.indexSID(2);
    segment.bodySID(1);
    segment.sliceCount(1);
    for (unsigned i = 0; i < entries; ++i)
    {
        bool key = i % 12 == 0;
        IndexEntry entry(static_cast<signed char>(i % 3 == 0 ? 1 : -1), static_cast<signed char>(-(i % 12)), key,
                         key, !key, i % 3 != 0, 10000ull * (start + i));
        entry.addSliceOffset(0, 7000);
        segment.addIndexEntry(i, entry);
    }
    DataIO::Memory::MemoryDataSink sink;
    segment.serialize(sink);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

void BM_ParseSegments10000Entries(benchmark::State & state)
{
    Bytes file;
    for (unsigned start = 0; start < 10000; start += 2500)
    {
        Bytes segment = segmentBytes(start, 2500);
        file.insert(file.end(), segment.begin(), segment.end());
    }
    for (auto _ : state)
    {
        DataIO::Memory::MemoryDataSource source(file.data(), file.size());
        KLV::Reader reader(source);
        unsigned entries = 0;
        while (!source.endOfStream())
        {
            uint64 skipped = 0;
            Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
            IndexTableSegment segment(*packet);
            entries += segment.indexEntryCount();
        }
        benchmark::DoNotOptimize(entries);
    }
    state.SetItemsProcessed(state.iterations() * 10000);
}

void BM_ParseIndexEntryArray10000(benchmark::State & state)
{
    unsigned const count = 10000;
    Bytes value(8 + count * 15, 0);
    value[2] = static_cast<unsigned char>(count >> 8);
    value[3] = static_cast<unsigned char>(count & 0xFF);
    value[7] = 15;
    for (unsigned i = 0; i < count; ++i)
        value[8 + i * 15 + 2] = i % 12 == 0 ? 0xC0 : 0x33;
    for (auto _ : state)
    {
        DataIO::Memory::MemoryDataSource source(value.data(), value.size());
        KLV::Value v(source, value.size());
        IndexEntryArray array(v, 1, 0);
        benchmark::DoNotOptimize(array.size());
    }
    state.SetItemsProcessed(state.iterations() * count);
}

// Look-ups at random edit units over a table of state.range(0) segments of 100 edit units, the
// last one still open.
void BM_IndexTableFind(benchmark::State & state)
{
    int segments = static_cast<int>(state.range(0));
    IndexTable table(2, 1);
    for (int i = 0; i < segments; ++i)
    {
        Templates::auto_ptr<IndexTableSegment> segment(new IndexTableSegment);
        segment->indexStartPosition(static_cast<int64>(i) * 100);
        segment->indexDuration(i + 1 == segments ? 0 : 100);
        segment->bodySID(1);
        table.add(std::move(segment), false);
    }
    std::mt19937_64 random(1);
    std::vector<int64> units(4096);
    for (int64 & u : units)
        u = static_cast<int64>(random() % (static_cast<uint64>(segments) * 100 + 50));
    std::size_t next = 0;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(table.find(units[next]));
        next = (next + 1) & 4095;
    }
    state.SetItemsProcessed(state.iterations());
}
} // namespace

BENCHMARK(BM_ParseSegments10000Entries)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ParseIndexEntryArray10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IndexTableFind)->Arg(100)->Arg(10000);
