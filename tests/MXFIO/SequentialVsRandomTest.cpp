#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "MXFIO/Reader2.h"
#include "MXFIO/SequentialReader.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Packs/PartitionPack.h"
#include "Packs/RandomIndexPack.h"
#include "Support/Fixtures.h"

using namespace Vellum;

namespace
{
typedef std::vector<unsigned char> Bytes;

Templates::SharedPtr<MetaMetadata::Dictionary> dictionary()
{
    static Templates::SharedPtr<MetaMetadata::Dictionary> d = MetaMetadata::createStandardDictionary();
    return d;
}

// A source that can only go forward, as a pipe: no seek, no size.
class ForwardOnlySource : public DataIO::DataSource
{
public:
    explicit ForwardOnlySource(Bytes const & bytes) : bytes_(bytes), position_(0) {}
    uint64 absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ >= bytes_.size(); }
    uint64 read(unsigned char * buffer, uint64 size) override
    {
        uint64 const n = std::min<uint64>(size, bytes_.size() - position_);
        std::copy(bytes_.begin() + static_cast<std::ptrdiff_t>(position_),
                  bytes_.begin() + static_cast<std::ptrdiff_t>(position_ + n), buffer);
        position_ += n;
        return n;
    }
    uint64 skip(uint64 size) override
    {
        uint64 const n = std::min<uint64>(size, bytes_.size() - position_);
        position_ += n;
        return n;
    }

private:
    Bytes const & bytes_;
    uint64 position_;
};

// What either walk sees of a file.
struct Seen
{
    // Offset and kind of each partition.
    std::vector<std::pair<unsigned long long, int>> partitions;
    // Start, duration and entry count of each index segment.
    std::vector<std::tuple<long long, long long, unsigned>> segments;
    // Key, offset and value length of each essence packet.
    std::vector<std::tuple<std::string, unsigned long long, unsigned long long>> essence;
};

std::string keyText(KLV::Key const & key) { return std::string(key.rawBuffer(), key.rawBuffer() + 16); }

class Recorder : public MXFIO::SequentialReader
{
public:
    Recorder(DataIO::DataSource & source, Seen & seen) : SequentialReader(source, dictionary()), seen_(seen) {}

private:
    void handlePartition(Templates::auto_ptr<Packs::PartitionPack> pack,
                         Templates::auto_ptr<Metadata::PartitionMetadata>) override
    {
        seen_.partitions.push_back(std::make_pair(pack->thisPartition(), int(pack->partitionKind())));
    }
    void handleIndexTableSegment(Templates::auto_ptr<IndexTables::IndexTableSegment> segment) override
    {
        seen_.segments.push_back(std::make_tuple(segment->indexStartPosition().value(),
                                                 segment->indexDuration().value(), segment->indexEntryCount()));
    }
    void handleEssence(Templates::auto_ptr<KLV::Packet> packet) override
    {
        seen_.essence.push_back(
            std::make_tuple(keyText(packet->key()), packet->keyAbsoluteOffset(), packet->length()));
        packet->value().discard();
    }

    Seen & seen_;
};

Seen randomWalk(Bytes const & bytes)
{
    Seen seen;
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    MXFIO::Reader2 reader(source, dictionary(), 65536);
    for (MXFIO::Partition * p = reader.headerPartition(); p != nullptr; p = reader.nextPartition(p))
    {
        seen.partitions.push_back(
            std::make_pair(p->partitionPack().thisPartition(), int(p->partitionPack().partitionKind())));
        p->rewind();
        for (Templates::auto_ptr<KLV::Packet> packet = p->nextIndexTableSegmentsKLV(); packet;
             packet = p->nextIndexTableSegmentsKLV())
        {
            IndexTables::IndexTableSegment segment(*packet);
            seen.segments.push_back(std::make_tuple(segment.indexStartPosition().value(),
                                                    segment.indexDuration().value(), segment.indexEntryCount()));
        }
        for (Templates::auto_ptr<KLV::Packet> packet = p->nextBodyKLV(65536); packet; packet = p->nextBodyKLV(65536))
        {
            if (KLV::isEssence(packet->key()))
                seen.essence.push_back(
                    std::make_tuple(keyText(packet->key()), packet->keyAbsoluteOffset(), packet->length()));
            packet->value().discard();
        }
    }
    return seen;
}
} // namespace

TEST(MXFIOSequentialVsRandom, BothWalksSeeTheSameFile)
{
    std::vector<std::string> files = VellumTest::sampleAndFixtureFiles();
    if (files.empty())
        GTEST_SKIP() << "no files";
    for (std::string const & path : files)
    {
        SCOPED_TRACE(path);
        Bytes bytes = VellumTest::readFile(path);
        Seen sequential;
        ForwardOnlySource source(bytes);
        Recorder recorder(source, sequential);
        size_t items = 0;
        while (recorder.next(65536))
            ASSERT_LT(++items, bytes.size()) << "the sequential reader does not move on";
        EXPECT_EQ(source.absoluteOffset(), bytes.size());

        Seen random = randomWalk(bytes);
        EXPECT_FALSE(random.partitions.empty());
        EXPECT_EQ(sequential.partitions, random.partitions);
        EXPECT_EQ(sequential.segments, random.segments);
        EXPECT_EQ(sequential.essence.size(), random.essence.size());
        EXPECT_TRUE(sequential.essence == random.essence);
    }
}
