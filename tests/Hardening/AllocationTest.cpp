// Files that claim far more than they hold (a huge value, a batch of 2^31 elements, an index
// array of 2^32 entries, a Primer of 10^9 entries, a RIP and a partition pack batch with huge
// counts) are refused quickly, with exceptions of the family, and without allocating what they
// claim. Memory is measured with a malloc that counts (plain build) or through the peak resident
// size (sanitizer build, whose allocator must stay in place).

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <malloc.h>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "MXFIO/Reader2.h"
#include "MXFIO/SequentialReader.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionMetadata.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Packs/RandomIndexPack.h"
#include "Support/Mxf.h"
#include "Support/ReadEverything.h"

#if defined(__SANITIZE_ADDRESS__)
#define VELLUM_COUNTING_MALLOC 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VELLUM_COUNTING_MALLOC 0
#endif
#endif
#ifndef VELLUM_COUNTING_MALLOC
#define VELLUM_COUNTING_MALLOC 1
#endif

#if VELLUM_COUNTING_MALLOC
// The malloc family of the whole test program, counted: the C library's own functions do the
// work. Functions not replaced here (aligned allocation) are not counted.
extern "C" void * __libc_malloc(std::size_t);
extern "C" void * __libc_calloc(std::size_t, std::size_t);
extern "C" void * __libc_realloc(void *, std::size_t);
extern "C" void __libc_free(void *);

namespace
{
std::atomic<long long> liveBytes(0);
std::atomic<long long> peakBytes(0);

void counted(void * p)
{
    if (p == nullptr)
        return;
    long long now = liveBytes.fetch_add(static_cast<long long>(malloc_usable_size(p))) +
                    static_cast<long long>(malloc_usable_size(p));
    long long peak = peakBytes.load();
    while (now > peak && !peakBytes.compare_exchange_weak(peak, now))
    {
    }
}

void uncounted(void * p)
{
    if (p != nullptr)
        liveBytes.fetch_sub(static_cast<long long>(malloc_usable_size(p)));
}
} // namespace

extern "C" void * malloc(std::size_t size)
{
    void * p = __libc_malloc(size);
    counted(p);
    return p;
}

extern "C" void * calloc(std::size_t count, std::size_t size)
{
    void * p = __libc_calloc(count, size);
    counted(p);
    return p;
}

extern "C" void * realloc(void * old, std::size_t size)
{
    uncounted(old);
    void * p = __libc_realloc(old, size);
    // A failed realloc leaves the old block in place.
    counted(p != nullptr || size == 0 ? p : old);
    return p;
}

extern "C" void free(void * p)
{
    uncounted(p);
    __libc_free(p);
}
#endif

using namespace Vellum;

namespace
{
typedef std::vector<unsigned char> Bytes;
long long const MEMORY_BOUND = 16ll << 20;

// Peak of the memory taken while `step` runs, above what was taken before.
long long peakMemoryOf(std::function<void()> const & step)
{
#if VELLUM_COUNTING_MALLOC
    long long const before = liveBytes.load();
    peakBytes.store(before);
    step();
    return peakBytes.load() - before;
#else
    // The peak resident size is set back to the present one, then read after the step.
    auto statusField = [](char const * name) {
        std::ifstream status("/proc/self/status");
        std::string line;
        while (std::getline(status, line))
            if (line.compare(0, std::strlen(name), name) == 0)
                return std::atoll(line.c_str() + std::strlen(name)) * 1024ll;
        return 0ll;
    };
    {
        std::ofstream clear("/proc/self/clear_refs");
        clear << "5";
    }
    long long const before = statusField("VmRSS:");
    step();
    return statusField("VmHWM:") - before;
#endif
}

// `value` big-endian in `size` bytes behind `out`.
void put(Bytes & out, uint64 value, unsigned size)
{
    Bytes const bytes = VellumTest::be(value, size);
    out.insert(out.end(), bytes.begin(), bytes.end());
}

// A KLV packet whose length field says `claimed` and behind which stand `value`'s bytes only.
Bytes packet(KLV::Key const & key, uint64 claimed, Bytes const & value)
{
    Bytes out(key.rawBuffer(), key.rawBuffer() + 16);
    out.push_back(0x88);
    put(out, claimed, 8);
    out.insert(out.end(), value.begin(), value.end());
    return out;
}

// The value of a partition pack up to its essence container batch.
Bytes partitionPackFields(uint64 headerByteCount)
{
    Bytes v;
    put(v, 1, 2);
    put(v, 3, 2);
    put(v, 1, 4);     // KAG
    put(v, 0, 8);     // ThisPartition
    put(v, 0, 8);     // PreviousPartition
    put(v, 0, 8);     // FooterPartition
    put(v, headerByteCount, 8);
    put(v, 0, 8);     // IndexByteCount
    put(v, 0, 4);     // IndexSID
    put(v, 0, 8);     // BodyOffset
    put(v, 1, 4);     // BodySID
    static unsigned char const op[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,
                                         0x0d, 0x01, 0x02, 0x01, 0x01, 0x01, 0x09, 0x00};
    v.insert(v.end(), op, op + 16);
    return v;
}

KLV::Key headerKey()
{
    return Packs::buildPartitionPackKey(Packs::PartitionPack::HeaderPartition, false, true);
}

// A closed complete header partition whose metadata region is `metadata`.
Bytes headerWith(Bytes const & metadata)
{
    Bytes value = partitionPackFields(metadata.size());
    put(value, 0, 4);
    put(value, 16, 4);
    Bytes file = packet(headerKey(), value.size(), value);
    file.insert(file.end(), metadata.begin(), metadata.end());
    return file;
}

Templates::SharedPtr<MetaMetadata::Dictionary> dictionary()
{
    static Templates::SharedPtr<MetaMetadata::Dictionary> d = MetaMetadata::createStandardDictionary();
    return d;
}

// Runs `step` on a file, which must throw an exception of the family (or give up quietly),
// within the time and memory bounds.
void expectRefusedCheaply(char const * what, std::function<void()> const & step)
{
    SCOPED_TRACE(what);
    auto const start = std::chrono::steady_clock::now();
    long long const peak = peakMemoryOf([&] {
        try
        {
            step();
        }
        catch (Exceptions::BaseException const &)
        {
        }
    });
    double const seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(peak, MEMORY_BOUND);
    EXPECT_LT(seconds, 2.0);
}

// Every reader over the file: the whole read of the sweep test, and the sequential reader.
void expectFileRefusedCheaply(char const * what, Bytes const & file)
{
    expectRefusedCheaply(what, [&] { VellumTest::readEverything(file.data(), file.size()); });
}

template <class Parse>
void expectPacketRefused(char const * what, Bytes const & klv, Parse parse)
{
    bool threw = false;
    expectRefusedCheaply(what, [&] {
        DataIO::Memory::MemoryDataSource source(klv.data(), klv.size());
        KLV::Reader reader(source);
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, 0);
        try
        {
            parse(*p);
        }
        catch (Exceptions::BaseException const &)
        {
            threw = true;
        }
    });
    EXPECT_TRUE(threw) << what;
}

Bytes primerValue(uint32 count, uint32 present)
{
    Bytes v;
    put(v, count, 4);
    put(v, 18, 4);
    for (uint32 i = 0; i < present; ++i)
    {
        put(v, 0x8000 + i, 2);
        for (int b = 0; b < 16; ++b)
            v.push_back(static_cast<unsigned char>(b == 0 ? 0x06 : i + b));
    }
    return v;
}
} // namespace

TEST(HardeningAllocation, AValueOf2To60BytesIsRefused)
{
    uint64 const huge = uint64(1) << 60;
    // A Primer pack, a metadata set, an index segment and a plain packet that each claim 2^60
    // bytes in a file of a few hundred.
    Bytes primer = packet(Packs::PrimerPack::key(), huge, primerValue(3, 2));
    expectFileRefusedCheaply("primer", headerWith(primer));
    expectPacketRefused("primer packet", primer, [](KLV::Packet & p) { Packs::PrimerPack pack(p); });

    static unsigned char const prefaceKey[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                                                 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00};
    Bytes setValue;
    put(setValue, 0x3c0a, 2);
    put(setValue, 16, 2);
    for (int i = 0; i < 16; ++i)
        setValue.push_back(static_cast<unsigned char>(i));
    Bytes set = packet(KLV::Key(prefaceKey), huge, setValue);
    Bytes metadata = packet(Packs::PrimerPack::key(), 8, primerValue(0, 0));
    metadata.insert(metadata.end(), set.begin(), set.end());
    expectFileRefusedCheaply("set", headerWith(metadata));
    expectPacketRefused("set packet", set, [](KLV::Packet & p) {
        Templates::auto_ptr<Metadata::PartitionDictionary> d(
            new Metadata::PartitionDictionary(dictionary(), Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack())));
        Metadata::PartitionMetadata m(std::move(d));
        m.load(p);
    });

    Bytes segment = packet(IndexTables::IndexTableSegment::key(), huge, setValue);
    expectPacketRefused("index segment", segment, [](KLV::Packet & p) { IndexTables::IndexTableSegment s(p); });

    Bytes partition = packet(headerKey(), huge, partitionPackFields(0));
    expectFileRefusedCheaply("partition pack", partition);
    expectPacketRefused("partition pack packet", partition, [](KLV::Packet & p) { Packs::PartitionPack s(p); });

    Bytes rip = packet(Packs::RandomIndexPack::key(), huge, Bytes(24, 1));
    expectFileRefusedCheaply("rip", rip);
    expectPacketRefused("rip packet", rip, [](KLV::Packet & p) { Packs::RandomIndexPack s(p); });
}

TEST(HardeningAllocation, BatchesOf2To31ElementsAreRefused)
{
    uint32 const count = uint32(1) << 31;
    // A partition pack whose essence container batch claims 2^31 labels, once with a length
    // field that agrees and once with one that does not.
    for (uint64 claimed : {uint64(88 + 8) + uint64(count) * 16, uint64(88 + 8 + 32)})
    {
        Bytes value = partitionPackFields(0);
        put(value, count, 4);
        put(value, 16, 4);
        value.insert(value.end(), 32, 0x11);
        Bytes pack = packet(headerKey(), claimed, value);
        expectFileRefusedCheaply("partition pack", pack);
        expectPacketRefused("partition pack packet", pack, [](KLV::Packet & p) { Packs::PartitionPack s(p); });
    }

    // A Preface whose essence container batch (tag 3B0A) claims 2^31 labels in a short item, and
    // one that claims 2^32 - 1 labels of no bytes each, which would take nothing from the item.
    static unsigned char const prefaceKey[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                                                 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00};
    for (uint32 elementSize : {16u, 0u})
    {
        Bytes setValue;
        put(setValue, 0x3b0a, 2);
        put(setValue, 8 + 32, 2);
        put(setValue, elementSize == 0 ? 0xffffffffu : count, 4);
        put(setValue, elementSize, 4);
        setValue.insert(setValue.end(), 32, 0x22);
        Bytes set = packet(KLV::Key(prefaceKey), setValue.size(), setValue);
        Bytes metadata = packet(Packs::PrimerPack::key(), 8, primerValue(0, 0));
        metadata.insert(metadata.end(), set.begin(), set.end());
        expectFileRefusedCheaply("preface", headerWith(metadata));
        expectRefusedCheaply("preface set", [&] {
            DataIO::Memory::MemoryDataSource source(set.data(), set.size());
            KLV::Reader reader(source);
            uint64 skipped = 0;
            Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, 0);
            Templates::auto_ptr<Metadata::PartitionDictionary> d(
                new Metadata::PartitionDictionary(dictionary(), Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack())));
            Metadata::PartitionMetadata m(std::move(d));
            m.load(*p);
        });
    }
}

TEST(HardeningAllocation, IndexArraysOf2To32EntriesAreRefused)
{
    // Index entry array (3F0A) and delta entry array (3F09) whose counts claim 2^32 - 1
    // entries, in an item and in a segment whose lengths say so as well as they can.
    for (unsigned tag : {0x3f0au, 0x3f09u})
    {
        for (uint32 elementSize : {11u, 6u, 0xffffffffu})
        {
            Bytes value;
            put(value, tag, 2);
            put(value, 0xffff, 2);
            put(value, 0xffffffffu, 4);
            put(value, elementSize, 4);
            value.insert(value.end(), 40, 0x33);
            for (uint64 claimed : {uint64(value.size()), uint64(1) << 40})
            {
                Bytes segment = packet(IndexTables::IndexTableSegment::key(), claimed, value);
                expectPacketRefused("segment", segment, [](KLV::Packet & p) { IndexTables::IndexTableSegment s(p); });
                expectRefusedCheaply("sequential", [&] {
                    DataIO::Memory::MemoryDataSource source(segment.data(), segment.size());
                    MXFIO::SequentialReader reader(source, dictionary());
                    while (reader.next(65536))
                    {
                    }
                });
            }
        }
    }
}

TEST(HardeningAllocation, APrimerOf10To9EntriesIsRefused)
{
    uint32 const count = 1000000000u;
    for (uint64 claimed : {uint64(8) + uint64(count) * 18, uint64(8 + 18 * 3)})
    {
        Bytes primer = packet(Packs::PrimerPack::key(), claimed, primerValue(count, 3));
        expectPacketRefused("primer packet", primer, [](KLV::Packet & p) { Packs::PrimerPack pack(p); });
        Bytes file = headerWith(primer);
        expectFileRefusedCheaply("primer in a file", file);
    }
    // A Primer whose entries claim a size other than 18 is refused as well.
    Bytes odd = primerValue(count, 1);
    odd[7] = 0xff;
    expectPacketRefused("primer of odd entries", packet(Packs::PrimerPack::key(), odd.size(), odd),
                        [](KLV::Packet & p) { Packs::PrimerPack pack(p); });
}

TEST(HardeningAllocation, ARandomIndexPackWithAHugeCountIsRefused)
{
    // The entry count of a RIP follows from its length: 2^40 bytes of entries, then the
    // length word, at the end of a short file.
    uint64 const claimed = (uint64(1) << 40) * 12 + 4;
    Bytes value(36, 0x44);
    Bytes rip = packet(Packs::RandomIndexPack::key(), claimed, value);
    Bytes file = headerWith(Bytes());
    file.insert(file.end(), rip.begin(), rip.end());
    // The last word of the file points at the RIP's key.
    uint32 const back = static_cast<uint32>(rip.size());
    file[file.size() - 4] = static_cast<unsigned char>(back >> 24);
    file[file.size() - 3] = static_cast<unsigned char>(back >> 16);
    file[file.size() - 2] = static_cast<unsigned char>(back >> 8);
    file[file.size() - 1] = static_cast<unsigned char>(back);
    expectPacketRefused("rip packet", rip, [](KLV::Packet & p) { Packs::RandomIndexPack s(p); });
    expectFileRefusedCheaply("rip in a file", file);
}

TEST(HardeningAllocation, TheMeterSeesWhatIsAllocated)
{
    // The bound above means something only if the meter sees a block of 32 MiB taken and filled.
    long long const peak = peakMemoryOf([] {
        Templates::vector<unsigned char> block(std::size_t(32) << 20, 1);
        EXPECT_EQ(block[block.size() - 1], 1);
    });
    EXPECT_GE(peak, 32ll << 20);
}

TEST(HardeningAllocation, ThousandsOfUnknownItemsLoadInLinearTime)
{
    // A metadata region of 256 KiB: two Prefaces of 32768 empty items each, under dynamic tags
    // that the empty Primer does not name. Every item is kept on its set's invalid list.
    static unsigned char const prefaceKey[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                                                 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00};
    unsigned const sets = 2, items = 32768;
    Bytes region;
    for (unsigned s = 0; s < sets; ++s)
    {
        Bytes value;
        for (unsigned i = 0; i < items; ++i)
        {
            put(value, 0x8000 + i, 2);
            put(value, 0, 2);
        }
        Bytes set = packet(KLV::Key(prefaceKey), value.size(), value);
        region.insert(region.end(), set.begin(), set.end());
    }
    ASSERT_GE(region.size(), std::size_t(256) << 10);

    std::clock_t const start = std::clock();
    Templates::auto_ptr<Metadata::PartitionDictionary> d(
        new Metadata::PartitionDictionary(dictionary(), Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack())));
    Metadata::PartitionMetadata m(std::move(d));
    DataIO::Memory::MemoryDataSource source(region.data(), region.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    for (unsigned s = 0; s < sets; ++s)
    {
        Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, 0);
        EXPECT_EQ(m.load(*p)->invalidSize(), items);
    }
    // The quadratic append took about 14 s here under the sanitizers; the linear one takes 3 s.
    EXPECT_LT(double(std::clock() - start) / CLOCKS_PER_SEC, 6.0);
}
