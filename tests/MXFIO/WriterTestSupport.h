#pragma once
// Files written by the Creator from test sources, and what reading them back shows: the
// partition packs of a plain KLV walk, the partitions that Reader2 finds forward, backward and
// through the Random Index Pack, and the element bytes that EssenceReader delivers.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "ByteCoders/BER.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/SourcePackage.h"
#include "MXFIO/Creator.h"
#include "MXFIO/EssenceReader.h"
#include "MXFIO/Reader2.h"
#include "Packs/PartitionPack.h"
#include "Packs/RandomIndexPack.h"
#include "Support/Md5.h"
#include "Support/TestContainerSource.h"

namespace WriterTest
{
using namespace Vellum;
using VellumTest::TestSourceOptions;

// A test source of `count` units of `size` bytes.
inline TestSourceOptions units(unsigned count, unsigned size = 1000)
{
    TestSourceOptions options;
    options.units = count;
    options.size = size;
    return options;
}
typedef std::vector<unsigned char> Bytes;

struct Plan
{
    std::vector<TestSourceOptions> sources;
    std::function<void(MXFIO::PullCreator &)> configure;
    uint64 spare = 1000;
    uint64 runIn = 0;
};

struct Written
{
    Bytes bytes;
    uint64 runIn = 0;
    std::vector<MXFIO::PullCreator::Status> statuses;
    std::vector<uint64> packOffsets;
};

inline Written writeFile(Plan const & plan)
{
    VellumTest::TestHeader header;
    VellumTest::TestMemorySink sink;
    Bytes const runIn(plan.runIn, 0x55);
    if (!runIn.empty())
        sink.write(runIn.data(), runIn.size());
    MXFIO::Creator creator(header.metadata, sink, plan.spare, 0);
    for (size_t i = 0; i < plan.sources.size(); ++i)
        creator.addEssenceContainer(Templates::auto_ptr<GenericContainer::Source>(
                                        new VellumTest::TestContainerSource(header, plan.sources[i])),
                                    plan.sources[i].bodyIndex, plan.sources[i].closingIndex, false,
                                    MXFIO::IndexSegmentConstant);
    if (plan.configure)
        plan.configure(creator);
    Written written;
    for (int guard = 0; guard < 100000 && creator.status() != MXFIO::PullCreator::Finished; ++guard)
        written.statuses.push_back(creator.writeUnit(false));
    for (auto const & pack : creator.partitionPacks())
    {
        written.packOffsets.push_back(pack.first);
        EXPECT_TRUE(creator.updatePartition(pack.first, Packs::PartitionPack::ClosedComplete)) << "at " << pack.first;
    }
    creator.finishWork(sink);
    written.bytes = sink.bytes;
    written.runIn = plan.runIn;
    return written;
}

// One KLV packet of a plain walk.
struct Item
{
    uint64 offset;
    Bytes key;
    unsigned berSize;
    uint64 length;
};

inline std::vector<Item> walk(Bytes const & bytes, uint64 from)
{
    std::vector<Item> items;
    uint64 at = from;
    while (at + 17 <= bytes.size())
    {
        unsigned char first = bytes[at + 16];
        unsigned berSize = first < 0x80 ? 1 : 1 + (first & 0x7F);
        uint64 length = first < 0x80 ? first : 0;
        for (unsigned i = 1; i < berSize && at + 16 + i < bytes.size(); ++i)
            length = (length << 8) | bytes[at + 16 + i];
        items.push_back(Item{at, Bytes(bytes.begin() + at, bytes.begin() + at + 16), berSize, length});
        at += 16 + berSize + length;
    }
    return items;
}

inline Packs::PartitionPack parsePack(Bytes const & bytes, Item const & item)
{
    uint64 const value = item.offset + 16 + item.berSize;
    DataIO::Memory::MemoryDataSource source(bytes.data() + value, std::min<uint64>(item.length, bytes.size() - value));
    KLV::Packet packet(KLV::Key(item.key.data()), static_cast<unsigned char>(item.berSize), item.length, source,
                       item.offset);
    return Packs::PartitionPack(packet);
}

// The partition packs of a plain walk, with their offsets.
inline std::vector<std::pair<uint64, Packs::PartitionPack>> packs(Bytes const & bytes, uint64 runIn)
{
    std::vector<std::pair<uint64, Packs::PartitionPack>> out;
    for (Item const & item : walk(bytes, runIn))
        if (Packs::isPartitionPack(KLV::Key(item.key.data())))
            out.emplace_back(item.offset, parsePack(bytes, item));
    return out;
}

// The partition packs of a plain walk, as "H1" (header of body SID 1), "B0", "F0", with "m" for
// metadata, "i" for an index and "s" for a generic stream partition.
inline std::string layout(Bytes const & bytes, uint64 runIn)
{
    std::string out;
    for (auto const & found : packs(bytes, runIn))
    {
        Packs::PartitionPack const & pack = found.second;
        out += std::string(out.empty() ? "" : " ") + "?HBF"[pack.partitionKind() - 1] +
               std::to_string(pack.bodySID()) + (pack.headerByteCount() ? "m" : "") +
               (pack.indexByteCount() ? "i" : "") + (pack.isGenericStreamsPartition() ? "s" : "");
    }
    return out;
}

inline size_t countForward(MXFIO::Reader & reader)
{
    size_t count = 0;
    for (MXFIO::Partition * p = reader.headerPartition(); p != nullptr && count < 10000; p = reader.nextPartition(p))
        ++count;
    return count;
}

// Reads the file back every way and compares the essence with what the sources produced.
inline void readBack(Written const & written, std::vector<TestSourceOptions> const & sources)
{
    DataIO::Memory::MemoryDataSource source(written.bytes.data(), written.bytes.size());
    MXFIO::Reader2 reader(source, VellumTest::writerDictionary(), 65536);
    size_t const partitions = written.packOffsets.size();
    EXPECT_EQ(countForward(reader), partitions);
    size_t backward = 0;
    for (MXFIO::Partition * p = reader.footerPartition(); p != nullptr && backward < 10000;
         p = reader.previousPartition(p))
        ++backward;
    EXPECT_EQ(backward, partitions);
    ASSERT_TRUE(reader.loadRIP());
    EXPECT_EQ(reader.rip()->size(), partitions);
    std::map<uint64, unsigned> packSIDs;
    for (auto const & found : packs(written.bytes, written.runIn))
    {
        packSIDs[found.first - written.runIn] = found.second.bodySID();
        EXPECT_EQ(found.second.footerPartition(), written.packOffsets.back()) << "the second pass points at the footer";
    }
    for (auto const & entry : reader.rip()->offsetIndexedMap())
        EXPECT_EQ(entry.second, packSIDs[entry.first]) << "RIP entry at " << entry.first;

    MXFIO::Partition * final = reader.firstPartitionWithFinalMetadata();
    ASSERT_NE(final, nullptr);
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata = final->metadata();
    Metadata::Structural::Preface * preface = Metadata::Structural::findPreface(*metadata);
    Metadata::Structural::ContentStorage * storage = preface->contentStorage();
    ASSERT_EQ(storage->essenceContainerDataCount(), sources.size());
    for (unsigned n = 0; n < sources.size(); ++n)
    {
        Metadata::Structural::SourcePackage * package = nullptr;
        for (unsigned i = 0, k = 0; i < storage->packagesCount(); ++i)
            if (auto * p = dynamic_cast<Metadata::Structural::SourcePackage *>(storage->package(i)))
                if (k++ == n)
                    package = p;
        ASSERT_NE(package, nullptr);
        MXFIO::EssenceReader essence(reader, *preface, *package, false, false);
        MXFIO::EssenceReader::ElementEditUnit unit;
        unsigned count = 0;
        for (; count < sources[n].units + 1 && essence.nextElementEditUnit(65536, unit); ++count)
        {
            KLV::Value & value = unit.element.packet->value();
            Bytes got(static_cast<size_t>(value.remaining()));
            value.read(got.data(), got.size());
            ASSERT_EQ(got, VellumTest::elementBytes(n + 1, count, sources[n].size)) << "source " << n << " unit " << count;
        }
        EXPECT_EQ(count, sources[n].units) << "source " << n;
    }
}
} // namespace WriterTest
