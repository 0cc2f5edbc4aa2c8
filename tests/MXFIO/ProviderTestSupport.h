#pragma once
// Small MXF files built byte by byte for the tests of the providers and offsets: partitions
// without header metadata, index table segments, essence packets of one picture element, a footer
// and a Random Index Pack.

#include <functional>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSink.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Packs/RandomIndexPack.h"
#include "Support/Mxf.h"
#include "Utils/Text.h"

namespace ProviderTest
{
using namespace Vellum;
using VellumTest::Bytes;

using VellumTest::dictionary;
using VellumTest::messageOf;
using VellumTest::patchBE;
using VellumTest::putBE;

// The essence element key of the packets in the body.
inline Bytes essenceKey()
{
    return {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01, 0x15, 0x01, 0x05, 0x01};
}

struct SegmentPlan
{
    long long start;
    long long duration;
    unsigned bodySID;
};

struct PartitionPlan
{
    int kind; // 2 header, 3 body, 4 footer
    unsigned bodySID;
    unsigned indexSID;
    std::vector<SegmentPlan> segments;
    // The value sizes of the essence packets of the body.
    std::vector<size_t> essence;
};

// Where things landed in a built file.
struct Built
{
    Bytes bytes;
    std::vector<unsigned long long> partitionOffsets;
    // BodyOffset of each partition (the stream offset of the container at its body).
    std::vector<unsigned long long> bodyOffsets;
    // Stream offset and value size of every essence packet, in file order, with its partition.
    struct Packet
    {
        unsigned long long streamOffset;
        size_t partition;
    };
    std::vector<Packet> packets;
    unsigned long long essenceBytes;
};

inline Bytes segmentBytes(SegmentPlan const & plan, unsigned indexSID)
{
    IndexTables::IndexTableSegment segment;
    segment.indexEditRate(Types::Rational(25, 1));
    segment.indexStartPosition(static_cast<int64>(plan.start));
    segment.indexDuration(static_cast<int64>(plan.duration));
    segment.bodySID(plan.bodySID);
    segment.indexSID(indexSID);
    segment.editUnitByteCount(100);
    DataIO::Memory::MemoryDataSink sink;
    segment.serialize(sink);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

// Lays the partitions out in order; the stream offset of a body SID runs on over its partitions.
// With `rip` a Random Index Pack closes the file. The footer field of every pack points at the
// last partition if that is a footer.
inline Built build(std::vector<PartitionPlan> const & plans, bool rip = true)
{
    Built built;
    built.essenceBytes = 0;
    std::vector<unsigned long long> streamOffsetOf(256, 0);
    std::vector<size_t> footerFields;
    unsigned long long previous = 0;
    unsigned long long footer = 0;
    for (size_t p = 0; p < plans.size(); ++p)
    {
        PartitionPlan const & plan = plans[p];
        unsigned long long const offset = built.bytes.size();
        built.partitionOffsets.push_back(offset);
        Bytes index;
        for (SegmentPlan const & s : plan.segments)
        {
            Bytes one = segmentBytes(s, plan.indexSID);
            index.insert(index.end(), one.begin(), one.end());
        }
        unsigned long long const bodyOffset = plan.bodySID != 0 ? streamOffsetOf[plan.bodySID] : 0;
        built.bodyOffsets.push_back(bodyOffset);
        if (plan.kind == 4)
            footer = offset;

        Bytes & out = built.bytes;
        Bytes key = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01, 0x01};
        key.push_back(static_cast<unsigned char>(plan.kind));
        key.push_back(0x04);
        key.push_back(0x00);
        out.insert(out.end(), key.begin(), key.end());
        out.push_back(0x83);
        putBE(out, 88, 3);
        putBE(out, 1, 2);
        putBE(out, 3, 2);
        putBE(out, 1, 4);
        putBE(out, offset, 8);
        putBE(out, previous, 8);
        footerFields.push_back(out.size());
        putBE(out, 0, 8);
        putBE(out, 0, 8);
        putBE(out, index.size(), 8);
        putBE(out, plan.indexSID, 4);
        putBE(out, bodyOffset, 8);
        putBE(out, plan.bodySID, 4);
        for (int i = 0; i < 16; ++i)
            out.push_back(0);
        putBE(out, 0, 4);
        putBE(out, 16, 4);
        out.insert(out.end(), index.begin(), index.end());
        for (size_t size : plan.essence)
        {
            built.packets.push_back(Built::Packet{streamOffsetOf[plan.bodySID], p});
            Bytes k = essenceKey();
            out.insert(out.end(), k.begin(), k.end());
            out.push_back(0x83);
            putBE(out, size, 3);
            for (size_t i = 0; i < size; ++i)
                out.push_back(static_cast<unsigned char>(i * 7 + p));
            streamOffsetOf[plan.bodySID] += 20 + size;
            built.essenceBytes += 20 + size;
        }
        previous = offset;
    }
    for (size_t field : footerFields)
        patchBE(built.bytes, field, footer, 8);
    if (rip)
    {
        Packs::RandomIndexPack pack;
        for (size_t p = 0; p < plans.size(); ++p)
            pack.add(plans[p].bodySID, built.partitionOffsets[p]);
        DataIO::Memory::MemoryDataSink sink;
        pack.serialize(sink);
        built.bytes.insert(built.bytes.end(), sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
    }
    return built;
}

inline PartitionPlan header(unsigned bodySID = 0, unsigned indexSID = 0) { return PartitionPlan{2, bodySID, indexSID, {}, {}}; }
inline PartitionPlan footer(unsigned indexSID = 0) { return PartitionPlan{4, 0, indexSID, {}, {}}; }
inline PartitionPlan body(unsigned bodySID, std::vector<size_t> essence, unsigned indexSID = 0,
                          std::vector<SegmentPlan> segments = {})
{
    return PartitionPlan{3, bodySID, indexSID, segments, essence};
}
inline PartitionPlan indexOnly(unsigned indexSID, std::vector<SegmentPlan> segments)
{
    return PartitionPlan{3, 0, indexSID, segments, {}};
}

// Lower-case hexadecimal, as the library writes offsets in its messages.
inline std::string hex(unsigned long long value) { return Utils::narrow(Utils::hexadecimal(value)).c_str(); }

// A random access source over bytes that counts its reads, so that a test can tell whether a
// call touched the file.
class CountingSource : public DataIO::Memory::MemoryDataSource
{
public:
    CountingSource(unsigned char const * data, uint64 size) : MemoryDataSource(data, size), reads(0) {}
    uint64 read(unsigned char * buffer, uint64 size) override
    {
        ++reads;
        return MemoryDataSource::read(buffer, size);
    }
    unsigned reads;
};
} // namespace ProviderTest

namespace ProviderTest
{
// A random access source over bytes of which only a first part is visible yet; `grow` shows
// more, as a file being written would.
class GrowingSource : public DataIO::RandomAccessDataSource
{
public:
    GrowingSource(Bytes const & bytes, uint64 visible) : bytes_(bytes), visible_(visible), position_(0) {}
    void grow(uint64 visible) { visible_ = visible < bytes_.size() ? visible : bytes_.size(); }

    uint64 absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ >= visible_; }
    uint64 read(unsigned char * buffer, uint64 size) override
    {
        uint64 const n = size < remaining() ? size : remaining();
        for (uint64 i = 0; i < n; ++i)
            buffer[i] = bytes_[position_ + i];
        position_ += n;
        return n;
    }
    uint64 skip(uint64 size) override
    {
        uint64 const n = size < remaining() ? size : remaining();
        position_ += n;
        return n;
    }
    uint64 remaining() const override { return position_ < visible_ ? visible_ - position_ : 0; }
    void discard() override { position_ = visible_; }
    uint64 seek(uint64 position) override
    {
        position_ = position < visible_ ? position : visible_;
        return position_;
    }

private:
    Bytes const & bytes_;
    uint64 visible_;
    uint64 position_;
};
} // namespace ProviderTest
