// The index table segments of a multiplexed container, written by its generator and read back.

#include <gtest/gtest.h>

#include "DataIO/Memory/MemoryDataSource.h"
#include "GenericContainer/Multiplexer/Mux.h"
#include "IndexTables/DeltaEntry.h"
#include "IndexTables/IndexEntry.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "Support/ContainerDrain.h"
#include "Support/MemoryAnalyzer.h"
#include "Types/Integers.h"

namespace VellumTest
{
namespace
{
using namespace Vellum;
using Templates::Rational;
using Templates::SharedPtr;
typedef std::vector<std::unique_ptr<IndexTables::IndexTableSegment>> Segments;

struct Indexed
{
    DrainedSource drained;
    Segments segments;
};

// Multiplexes the streams (pictures first), with segments of `type` written at the end.
Indexed indexContainer(std::vector<MemoryStream> const & streams, MXFIO::IndexTableSegmentType type)
{
    GC::Multiplexer::Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
    for (MemoryStream const & s : streams)
        mux.addAnalyzer(SharedPtr<GC::EssenceAnalyzer>(s.itemType == 0x15 ? static_cast<GC::EssenceAnalyzer *>(new MemoryPicture(s))
                                                                           : new MemorySound(s)),
                        false, Rational<int64>(0, 1));
    Templates::auto_ptr<GC::Source> source = mux.commit();
    MXFIO::IndexTableGenerator & generator = *source->indexTableGenerator();
    generator.indexStrategies(MXFIO::IndexTableGenerationNone, MXFIO::IndexTableGenerationAll, type);
    Indexed out;
    out.drained = drainSource(*source, [&] { source->finalize(); });
    generator.updateIndex();
    DataIO::Memory::MemoryDataSink sink;
    generator.writeIndexSegments(true, sink);
    EXPECT_EQ(sink.serializedSize(), generator.rawIndexByteCount(true));
    DataIO::Memory::MemoryDataSource data(sink.rawBuffer(), sink.serializedSize());
    KLV::Reader reader(data);
    while (data.remaining() != 0)
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        out.segments.emplace_back(new IndexTables::IndexTableSegment(*packet));
    }
    return out;
}

MemoryStream stream(unsigned char itemType, std::vector<unsigned int> const & sizes, bool constant)
{
    MemoryStream s;
    s.itemType = itemType;
    s.frames = makeFrames(sizes);
    s.cbe = constant;
    s.boundedSize = constant ? sizes.front() : 0;
    return s;
}

// The segment form follows the layout: constant sizes give delta entries (none for one element),
// a variable element index entries with the slice that follows it.
TEST(IndexGeneration, SegmentFormFollowsTheLayout)
{
    struct Case
    {
        char const * name;
        std::vector<MemoryStream> streams;
        std::vector<std::vector<unsigned int>> deltas;
        unsigned int editUnitByteCount;
        unsigned int indexEntries;
    };
    Case const cases[] = {
        {"one constant", {stream(0x15, {1000, 1000, 1000}, true)}, {}, 1020, 0},
        {"two constant",
         {stream(0x15, {1000, 1000, 1000}, true), stream(0x16, {7680, 7680, 7680}, true)},
         {{0, 0, 0}, {0, 0, 1020}},
         8720,
         0},
        {"variable picture", {stream(0x15, {900, 1000, 1100}, false), stream(0x16, {7680, 7680, 7680}, true)},
         {{0, 0, 0}, {0, 1, 0}},
         0,
         3},
    };
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.name);
        Indexed const indexed = indexContainer(c.streams, MXFIO::IndexSegmentChoose);
        ASSERT_EQ(1u, indexed.segments.size());
        IndexTables::IndexTableSegment const & segment = *indexed.segments[0];
        ASSERT_EQ(c.deltas.size(), segment.deltaEntryCount());
        for (unsigned int i = 0; i < c.deltas.size(); ++i)
        {
            EXPECT_EQ(static_cast<signed char>(c.deltas[i][0]), segment.deltaEntry(i).posTableIndex());
            EXPECT_EQ(c.deltas[i][1], segment.deltaEntry(i).slice());
            EXPECT_EQ(c.deltas[i][2], segment.deltaEntry(i).elementDelta());
        }
        EXPECT_EQ(c.editUnitByteCount, segment.editUnitByteCount()->value());
        ASSERT_EQ(c.indexEntries, segment.indexEntryCount());
        std::vector<KlvRecord> const records = readKlv(indexed.drained.bytes);
        for (unsigned int i = 0; i < c.indexEntries; ++i)
        {
            // The entry points at the package's first element; its slice at the sound behind.
            EXPECT_EQ(records[2 * i].offset, segment.indexEntry(i).streamOffset());
            ASSERT_EQ(1, segment.indexEntry(i).sliceOffsetCount());
            EXPECT_EQ(records[2 * i + 1].offset - records[2 * i].offset, segment.indexEntry(i).sliceOffset(0));
        }
    }
}

// Flag bytes of MPEG-2 pictures: I with and without random access, P, B, and B predicted only
// backward (the leading pictures of a closed group).
unsigned char const I_CLOSED = 0xC0, I_OPEN = 0x40, P = 0x22, B = 0x33, B_BACKWARD = 0x13;

struct Gop
{
    std::vector<unsigned char> flags;
    std::vector<signed char> temporalReferences;
};

// Coded order I2 B0 B1 P5 B3 B4 P8 ...: `length` pictures a group, `groups` groups. The first
// group is always closed.
Gop longGop(unsigned int length, unsigned int groups, bool closed)
{
    Gop gop;
    for (unsigned int g = 0; g < groups; ++g)
        for (unsigned int c = 0; c < length; ++c)
        {
            bool const leading = c == 1 || c == 2;
            if (c == 0)
                gop.flags.push_back(closed || g == 0 ? I_CLOSED : I_OPEN);
            else if (c % 3 == 0)
                gop.flags.push_back(P);
            else
                gop.flags.push_back(leading && (closed || g == 0) ? B_BACKWARD : B);
            gop.temporalReferences.push_back(static_cast<signed char>(c == 0 ? 2 : c % 3 == 0 ? c + 2 : c - 1));
        }
    return gop;
}

// The entries of a long-GOP stream: temporal offsets lead from each display position to its
// stored one, key frame offsets back to the group's I (to the group before for the leading
// pictures of an open group), and flags as the stream gives them.
TEST(IndexGeneration, LongGopEntriesCarryTemporalAndKeyFrameOffsets)
{
    for (unsigned int length : {12u, 15u})
        for (bool closed : {true, false})
        {
            SCOPED_TRACE(testing::Message() << "GOP " << length << (closed ? " closed" : " open"));
            Gop const gop = longGop(length, 3, closed);
            std::vector<unsigned int> sizes;
            for (std::size_t i = 0; i < gop.flags.size(); ++i)
                sizes.push_back(static_cast<unsigned int>(100 + i * 3));
            MemoryStream s = stream(0x15, sizes, false);
            s.flags = gop.flags;
            s.temporalReferences = gop.temporalReferences;
            s.temporalDependencies = true;
            Indexed const indexed = indexContainer({s}, MXFIO::IndexSegmentChoose);
            ASSERT_EQ(1u, indexed.segments.size());
            IndexTables::IndexTableSegment const & segment = *indexed.segments[0];
            ASSERT_EQ(sizes.size(), segment.indexEntryCount());
            std::vector<int> storedOfDisplay(sizes.size());
            for (std::size_t c = 0; c < sizes.size(); ++c)
                storedOfDisplay[c / length * length + gop.temporalReferences[c]] = int(c);
            std::vector<KlvRecord> const records = readKlv(indexed.drained.bytes);
            for (std::size_t c = 0; c < sizes.size(); ++c)
            {
                IndexTables::IndexEntry const & e = segment.indexEntry(unsigned(c));
                int const groupStart = int(c / length * length);
                bool const leadingOfOpen = !closed && groupStart != 0 && (c % length == 1 || c % length == 2);
                int const keyFrame = leadingOfOpen ? groupStart - int(length) : groupStart;
                EXPECT_EQ(storedOfDisplay[c] - int(c), e.temporalOffset()) << c;
                EXPECT_EQ(keyFrame - int(c), e.keyFrameOffset()) << c;
                EXPECT_EQ(gop.flags[c], e.flags()) << c;
                EXPECT_EQ(records[c].offset, e.streamOffset()) << c;
            }
        }
}
} // namespace
} // namespace VellumTest
