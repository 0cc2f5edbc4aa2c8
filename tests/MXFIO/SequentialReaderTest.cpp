#include "MXFIO/SequentialReader.h"

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/MetadataKeys.h"
#include "Metadata/PartitionMetadata.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Packs/RandomIndexPack.h"
#include "Support/Fixtures.h"
#include "Types/Collection.h"
#include "Types/UniversalLabel.h"
#include "Utils/Padding.h"
#include "Utils/Text.h"

#include <gtest/gtest.h>

#include "Support/Mxf.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using namespace Vellum;

namespace
{
using VellumTest::Bytes;

uint64 const SEARCH_LIMIT = 1 << 16;

using VellumTest::dictionary;

// What a reader was handed, in order: one letter for each item.
struct Record
{
    std::string kinds;
    std::vector<uint64> partitionOffsets;
    std::vector<uint64> headerByteCounts;
    // The number of sets of each partition, or -1 for a null metadata.
    std::vector<long long> setCounts;
    std::vector<int> prefaces;
    std::vector<uint64> essenceOffsets;
    std::vector<uint64> fillOffsets;
    std::vector<unsigned int> ripSizes;
};

// Records everything and checks that each essence value is the bytes that the file holds there.
class Recorder : public MXFIO::SequentialReader
{
public:
    Recorder(DataIO::DataSource & source, Bytes const * file = nullptr)
        : MXFIO::SequentialReader(source, dictionary()), essenceMismatches(0), file_(file)
    {
    }

    Record record;
    int essenceMismatches;

private:
    void handlePartition(Templates::auto_ptr<Packs::PartitionPack> pack,
                         Templates::auto_ptr<Metadata::PartitionMetadata> metadata) override
    {
        record.kinds += 'P';
        record.partitionOffsets.push_back(pack->thisPartition());
        record.headerByteCounts.push_back(pack->headerByteCount());
        record.setCounts.push_back(metadata.get() != nullptr ? static_cast<long long>(metadata->size()) : -1);
        record.prefaces.push_back(metadata.get() != nullptr
                                      ? static_cast<int>(metadata->find(Metadata::MetadataKeys::preface()).size())
                                      : 0);
    }
    void handleIndexTableSegment(Templates::auto_ptr<IndexTables::IndexTableSegment> segment) override
    {
        ASSERT_TRUE(segment.get() != nullptr);
        record.kinds += 'I';
    }
    void handleEssence(Templates::auto_ptr<KLV::Packet> packet) override
    {
        record.kinds += 'E';
        record.essenceOffsets.push_back(packet->keyAbsoluteOffset());
        if (file_ == nullptr)
            return;
        Bytes value(static_cast<size_t>(packet->length()));
        if (!value.empty())
            packet->value().readValue(value.data(), value.size());
        uint64 at = packet->keyAbsoluteOffset() + 16 + packet->berLength();
        if (at + value.size() > file_->size() ||
            (!value.empty() && std::memcmp(value.data(), file_->data() + at, value.size()) != 0))
            ++essenceMismatches;
    }
    void handleRIP(Templates::auto_ptr<Packs::RandomIndexPack> rip) override
    {
        record.kinds += 'R';
        record.ripSizes.push_back(rip->size());
    }
    void handleFillItem(Templates::auto_ptr<KLV::Packet> packet) override
    {
        record.kinds += 'F';
        record.fillOffsets.push_back(packet->keyAbsoluteOffset());
        // Left unread on purpose: the reader must step over it by itself.
    }
    void handleUnknown(Templates::auto_ptr<KLV::Packet>) override { record.kinds += 'U'; }

    Bytes const * file_;
};

// A source that only reads forward: there is nothing to seek with.
class ForwardOnlySource : public DataIO::DataSource
{
public:
    explicit ForwardOnlySource(Bytes const & bytes) : bytes_(bytes), position_(0) {}

    uint64 absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ >= bytes_.size(); }
    uint64 read(unsigned char * buffer, uint64 size) override
    {
        uint64 count = std::min<uint64>(size, bytes_.size() - position_);
        if (count != 0)
            std::memcpy(buffer, bytes_.data() + position_, static_cast<size_t>(count));
        position_ += count;
        return count;
    }
    uint64 skip(uint64 size) override
    {
        uint64 count = std::min<uint64>(size, bytes_.size() - position_);
        position_ += count;
        return count;
    }

private:
    Bytes const & bytes_;
    uint64 position_;
};

// The same file walked packet by packet. A partition's header metadata starts with its Primer, behind
// one fill item at most, and takes the header byte count from there; the local sets that end inside
// it are counted.
Record plainWalk(Bytes const & file)
{
    Record record;
    DataIO::Memory::MemoryDataSource source(file.data(), file.size());
    KLV::Reader reader(source);
    uint64 metadataEnd = 0;
    uint64 pendingHeaderByteCount = 0;
    while (!source.endOfStream())
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, SEARCH_LIMIT);
        KLV::Key const & key = packet->key();
        if (pendingHeaderByteCount != 0)
        {
            if (KLV::isFillItem(key))
                continue;
            metadataEnd = packet->keyAbsoluteOffset() + pendingHeaderByteCount;
            pendingHeaderByteCount = 0;
        }
        if (packet->keyAbsoluteOffset() < metadataEnd)
        {
            if (KLV::isMXFDefaultLocalSet(key) && packet->keyAbsoluteOffset() + packet->klvLength() <= metadataEnd)
                ++record.setCounts.back();
            continue;
        }
        if (Packs::isPartitionPack(key))
        {
            Packs::PartitionPack pack(*packet);
            record.kinds += 'P';
            record.partitionOffsets.push_back(pack.thisPartition());
            record.headerByteCounts.push_back(pack.headerByteCount());
            record.setCounts.push_back(pack.headerByteCount() != 0 ? 0 : -1);
            pendingHeaderByteCount = pack.headerByteCount();
        }
        else if (KLV::isIndexTableKlvSegment(key))
            record.kinds += 'I';
        else if (KLV::isEssence(key))
        {
            record.kinds += 'E';
            record.essenceOffsets.push_back(packet->keyAbsoluteOffset());
        }
        else if (Packs::isRandomIndexPack(key))
        {
            Packs::RandomIndexPack rip(*packet);
            record.kinds += 'R';
            record.ripSizes.push_back(rip.size());
        }
        else if (KLV::isFillItem(key))
        {
            record.kinds += 'F';
            record.fillOffsets.push_back(packet->keyAbsoluteOffset());
        }
        else
            record.kinds += 'U';
    }
    return record;
}

std::vector<std::string> realFiles()
{
    std::vector<std::string> files = VellumTest::sampleAndFixtureFiles();
    files.push_back(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf");
    return files;
}

void expectSameRecord(Record const & got, Record const & expected)
{
    EXPECT_EQ(expected.kinds, got.kinds);
    EXPECT_EQ(expected.partitionOffsets, got.partitionOffsets);
    EXPECT_EQ(expected.headerByteCounts, got.headerByteCounts);
    EXPECT_EQ(expected.setCounts, got.setCounts);
    EXPECT_EQ(expected.essenceOffsets, got.essenceOffsets);
    EXPECT_EQ(expected.fillOffsets, got.fillOffsets);
    EXPECT_EQ(expected.ripSizes, got.ripSizes);
}

// Reads until next() says false; counts the calls that said true.
size_t readAll(MXFIO::SequentialReader & reader, size_t bound)
{
    size_t items = 0;
    while (items < bound && reader.next(SEARCH_LIMIT))
        ++items;
    return items;
}

unsigned char const OP1A[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,
                                0x0d, 0x01, 0x02, 0x01, 0x01, 0x01, 0x09, 0x00};
unsigned char const PICTURE_ELEMENT[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01,
                                           0x0d, 0x01, 0x03, 0x01, 0x15, 0x01, 0x05, 0x01};

void appendPack(DataIO::Memory::MemoryDataSink & sink, uint64 headerByteCount)
{
    Packs::PartitionPack pack(Packs::buildPartitionPackKey(Packs::PartitionPack::HeaderPartition, false, true), 1,
                              0, 0, Types::UniversalLabel(OP1A), Templates::auto_ptr<Types::Batch>(new Types::Batch(16)));
    pack.headerByteCount(headerByteCount);
    pack.serialize(sink);
}

void appendPacket(DataIO::Memory::MemoryDataSink & sink, unsigned char const * key, Bytes const & value)
{
    unsigned char head[20];
    std::memcpy(head, key, 16);
    head[16] = 0x83;
    head[17] = static_cast<unsigned char>(value.size() >> 16);
    head[18] = static_cast<unsigned char>(value.size() >> 8);
    head[19] = static_cast<unsigned char>(value.size());
    sink.write(head, sizeof head);
    if (!value.empty())
        sink.write(value.data(), value.size());
}

} // namespace

TEST(SequentialReader, RealFilesArriveInFileOrderAsAPlainWalkFindsThem)
{
    int partitionsWithMetadata = 0;
    for (std::string const & path : realFiles())
    {
        SCOPED_TRACE(path);
        Bytes file = VellumTest::readFile(path);
        ASSERT_FALSE(file.empty());
        Record expected = plainWalk(file);

        DataIO::Memory::MemoryDataSource source(file.data(), file.size());
        Recorder reader(source, &file);
        size_t items = readAll(reader, file.size());
        EXPECT_EQ(expected.kinds.size(), items);
        EXPECT_TRUE(source.endOfStream());
        EXPECT_FALSE(reader.next(SEARCH_LIMIT));
        expectSameRecord(reader.record, expected);
        EXPECT_EQ(0, reader.essenceMismatches);
        ASSERT_FALSE(reader.record.kinds.empty());
        EXPECT_EQ('P', reader.record.kinds[0]);
        EXPECT_NE(std::string::npos, reader.record.kinds.find('R'));
        // Nothing of the metadata is left over for the items behind it.
        EXPECT_EQ(std::string::npos, reader.record.kinds.find('U'));
        for (size_t i = 0; i < reader.record.setCounts.size(); ++i)
        {
            if (reader.record.headerByteCounts[i] == 0)
                continue;
            ++partitionsWithMetadata;
            EXPECT_GT(reader.record.setCounts[i], 0);
            EXPECT_EQ(1, reader.record.prefaces[i]);
        }
    }
    EXPECT_GT(partitionsWithMetadata, 0);
}

TEST(SequentialReader, ReadsThroughASourceThatCannotSeek)
{
    for (std::string const & path : realFiles())
    {
        SCOPED_TRACE(path);
        Bytes file = VellumTest::readFile(path);
        ForwardOnlySource source(file);
        Recorder reader(source, &file);
        readAll(reader, file.size());
        EXPECT_TRUE(source.endOfStream());
        expectSameRecord(reader.record, plainWalk(file));
        EXPECT_EQ(0, reader.essenceMismatches);

        // A copy reads on from where the original stands.
        Bytes again = file;
        ForwardOnlySource second(again);
        Recorder first(second);
        ASSERT_TRUE(first.next(SEARCH_LIMIT));
        MXFIO::SequentialReader copy(first);
        uint64 before = second.absoluteOffset();
        EXPECT_TRUE(copy.next(SEARCH_LIMIT));
        EXPECT_GT(second.absoluteOffset(), before);
    }
}

TEST(SequentialReader, TruncatedFilesEndWithFalse)
{
    Bytes file = VellumTest::readFile(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf");
    ASSERT_FALSE(file.empty());
    Record whole = plainWalk(file);
    ASSERT_FALSE(whole.headerByteCounts.empty());
    ASSERT_GT(whole.headerByteCounts[0], 0u);

    // Cut inside the key, the length and the value of the first pack, then all through the file.
    std::vector<size_t> cuts = {1, 10, 17, 30};
    for (size_t cut = 97; cut < file.size(); cut += 331)
        cuts.push_back(cut);
    cuts.push_back(file.size() - 1);
    for (size_t cut : cuts)
    {
        SCOPED_TRACE(cut);
        Bytes part(file.begin(), file.begin() + static_cast<long>(cut));
        DataIO::Memory::MemoryDataSource source(part.data(), part.size());
        Recorder reader(source);
        size_t items = readAll(reader, file.size());
        EXPECT_LE(items, whole.kinds.size());
        EXPECT_FALSE(reader.next(SEARCH_LIMIT));
        // What was handed over is a beginning of what the whole file gives.
        EXPECT_EQ(whole.kinds.substr(0, reader.record.kinds.size()), reader.record.kinds);
    }

    // Metadata cut short: no partition is handed over at all.
    {
        Bytes part(file.begin(), file.begin() + 200);
        ForwardOnlySource source(part);
        Recorder reader(source);
        EXPECT_FALSE(reader.next(SEARCH_LIMIT));
        EXPECT_EQ("", reader.record.kinds);
    }

    // An empty source: false at once.
    Bytes empty;
    ForwardOnlySource nothing(empty);
    Recorder reader(nothing);
    EXPECT_FALSE(reader.next(SEARCH_LIMIT));
    EXPECT_EQ("", reader.record.kinds);
}

TEST(SequentialReader, PartitionsWithAndWithoutMetadata)
{
    // A pack without metadata, then a fill item and an essence element behind it.
    {
        DataIO::Memory::MemoryDataSink sink;
        appendPack(sink, 0);
        Utils::writeFillKLV(sink, 40, 4);
        appendPacket(sink, PICTURE_ELEMENT, Bytes(5, 0xab));
        Bytes bytes = Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
        DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
        Recorder reader(source, &bytes);
        EXPECT_EQ(3u, readAll(reader, 10));
        EXPECT_EQ("PFE", reader.record.kinds);
        EXPECT_EQ(std::vector<long long>{-1}, reader.record.setCounts);
        EXPECT_EQ(0, reader.essenceMismatches);
    }
    // One fill item between pack and Primer is stepped over; the count starts at the Primer.
    {
        DataIO::Memory::MemoryDataSink sink;
        Packs::PrimerPack primer;
        appendPack(sink, primer.serializedSize());
        Utils::writeFillKLV(sink, 40, 4);
        primer.serialize(sink);
        appendPacket(sink, PICTURE_ELEMENT, Bytes(3, 1));
        Bytes bytes = Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
        DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
        Recorder reader(source, &bytes);
        EXPECT_EQ(2u, readAll(reader, 10));
        EXPECT_EQ("PE", reader.record.kinds);
        EXPECT_EQ(std::vector<long long>{0}, reader.record.setCounts);
    }
}

TEST(SequentialReader, MetadataWithoutAPrimerFails)
{
    char const * const expected = "packet -> key () == PrimerPack::key (): This partition does not have a primer at "
                                  "the beginning of the metadata.";
    // A set where the Primer should be.
    {
        DataIO::Memory::MemoryDataSink sink;
        appendPack(sink, 100);
        appendPacket(sink, Metadata::MetadataKeys::preface().rawBuffer(), Bytes(10, 0));
        Bytes bytes = Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
        DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
        Recorder reader(source);
        try
        {
            reader.next(SEARCH_LIMIT);
            FAIL() << "no exception";
        }
        catch (Exceptions::InvalidFormat const & e)
        {
            EXPECT_EQ(expected, Utils::narrow(e.message()));
            EXPECT_EQ(8, e.errorCode());
        }
        EXPECT_EQ("", reader.record.kinds);
    }
    // Two fill items: only the first is stepped over.
    {
        DataIO::Memory::MemoryDataSink sink;
        Packs::PrimerPack primer;
        appendPack(sink, primer.serializedSize());
        Utils::writeFillKLV(sink, 40, 4);
        Utils::writeFillKLV(sink, 40, 4);
        primer.serialize(sink);
        Bytes bytes = Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
        DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
        Recorder reader(source);
        EXPECT_EQ(VellumTest::messageOf<Exceptions::InvalidFormat>([&] { reader.next(SEARCH_LIMIT); }), expected);
    }
}
