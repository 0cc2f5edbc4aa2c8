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
#include "DataIO/File/FileDataSource.h"
#include "Essence/MPEG/MPEG2VideoAnalyzer.h"
#include "MetaMetadata/StandardDictionary.h"
#include "OPBuilders/FileWrapper.h"
#include "Support/Fixtures.h"
#include "Support/Process.h"
#include "Types/Integers.h"
#include "Utils/Text.h"

#include <map>

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

// Multiplexes the streams (pictures first), with segments of `type` written at the end; edit
// units padded to `paddedSize` when it isn't 0.
Indexed indexContainer(std::vector<MemoryStream> const & streams, MXFIO::IndexTableSegmentType type,
                       unsigned int paddedSize = 0)
{
    GC::Multiplexer::Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
    if (paddedSize != 0)
        mux.paddToEditUnit(paddedSize);
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
        unsigned int paddedSize;
    };
    Case const cases[] = {
        {"one constant", {stream(0x15, {1000, 1000, 1000}, true)}, {}, 1020, 0, 0},
        {"two constant",
         {stream(0x15, {1000, 1000, 1000}, true), stream(0x16, {7680, 7680, 7680}, true)},
         {{0, 0, 0}, {0, 0, 1020}},
         8720,
         0,
         0},
        {"two constant, padded edit units",
         {stream(0x15, {1000, 1000, 1000}, true), stream(0x16, {7680, 7680, 7680}, true)},
         {{0, 0, 0}, {0, 0, 1020}},
         10000,
         0,
         10000},
        {"variable picture", {stream(0x15, {900, 1000, 1100}, false), stream(0x16, {7680, 7680, 7680}, true)},
         {{0, 0, 0}, {0, 1, 0}},
         0,
         3,
         0},
    };
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.name);
        Indexed const indexed = indexContainer(c.streams, MXFIO::IndexSegmentChoose, c.paddedSize);
        ASSERT_EQ(1u, indexed.segments.size());
        IndexTables::IndexTableSegment const & segment = *indexed.segments[0];
        if (c.paddedSize != 0)
        {
            EXPECT_EQ(3u * c.paddedSize, indexed.drained.bytes.size());
        }
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

// A long stream of variable size: a segment stops short of the 16-bit limit of its local sets,
// and the next one takes over where it ended.
TEST(IndexGeneration, SegmentsSplitBeforeTheirLocalSetsOverflow)
{
    unsigned int const count = 7000;
    Indexed const indexed = indexContainer({stream(0x15, std::vector<unsigned int>(count, 3), false)},
                                           MXFIO::IndexSegmentChoose);
    ASSERT_EQ(2u, indexed.segments.size());
    int64 start = 0;
    for (std::unique_ptr<IndexTables::IndexTableSegment> const & segment : indexed.segments)
    {
        EXPECT_EQ(start, segment->indexStartPosition().value());
        EXPECT_EQ(segment->indexEntryCount(), segment->indexDuration().value());
        EXPECT_LT(segment->serializedSize(), 65535u);
        start += segment->indexDuration().value();
    }
    EXPECT_EQ(int64(count), start);
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

// The index entries of a file's first indexed stream by edit unit, from every segment it holds
// (segments repeated in the footer give the same entries).
std::map<int64, IndexTables::IndexEntry> fileIndexEntries(std::string const & path)
{
    DataIO::File::FileDataSource source(Utils::wide(path.c_str()).c_str(), 1 << 16);
    KLV::Reader reader(source);
    std::map<int64, IndexTables::IndexEntry> entries;
    bool first = true;
    while (!source.endOfStream())
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, first ? 65535 : 0);
        first = false;
        if (!IndexTables::IndexTableSegment::isSegmentKey(packet->key()))
        {
            packet->value().skip(packet->length());
            continue;
        }
        IndexTables::IndexTableSegment segment(*packet);
        for (unsigned int i = 0; i < segment.indexEntryCount(); ++i)
            entries.insert(std::make_pair(segment.indexStartPosition().value() + i, segment.indexEntry(i)));
    }
    return entries;
}

// Our index of an ffmpeg-made long-GOP stream against the index ffmpeg writes for the same stream.
// Temporal offsets, key frame offsets and flags agree entry by entry. Stream offsets differ by what
// ffmpeg adds to each content package: a system item and fill to a grid of 512 bytes, where ours
// holds the picture element alone (no system item was asked for, and the grid is 1).
TEST(IndexGeneration, EntriesAgreeWithThoseFfmpegWritesForTheSameStream)
{
    for (char const * name : {"mpeg2-gop12.m2v", "mpeg2-gop15-2997.m2v"})
    {
        std::string const es = ffmpegFixture(name);
        if (es.empty())
            GTEST_SKIP() << "ffmpeg is not installed";
        SCOPED_TRACE(name);
        std::string const ours = temporaryPath(".mxf"), theirs = temporaryPath(".mxf");
        ASSERT_EQ(0, runCommand("ffmpeg -v error -nostdin -y -i " + shellQuoted(es) + " -c copy -f mxf " +
                                shellQuoted(theirs))
                         .status);
        OPBuilders::FileWrapper wrapper(MetaMetadata::createStandardDictionary(), OPBuilders::FileWrapper::Options());
        wrapper.addStream(SharedPtr<GC::EssenceAnalyzer>(new Essence::MPEG::MPEG2VideoAnalyzer(
                              SharedPtr<DataIO::DataSource>(new DataIO::File::FileDataSource(Utils::wide(es.c_str()).c_str(), 1 << 16)))),
                          Utils::wide("video"));
        wrapper.write(Utils::wide(ours.c_str()), OPBuilders::FileWrapper::Progress());
        std::map<int64, IndexTables::IndexEntry> const a = fileIndexEntries(ours), b = fileIndexEntries(theirs);
        ASSERT_EQ(b.size(), a.size());
        ASSERT_GT(a.size(), 30u);
        uint64 ourPrevious = 0, theirPrevious = 0;
        for (auto i = a.begin(), j = b.begin(); i != a.end(); ++i, ++j)
        {
            SCOPED_TRACE(testing::Message() << "edit unit " << i->first);
            ASSERT_EQ(j->first, i->first);
            EXPECT_EQ(j->second.temporalOffset(), i->second.temporalOffset());
            EXPECT_EQ(j->second.keyFrameOffset(), i->second.keyFrameOffset());
            EXPECT_EQ(j->second.flags(), i->second.flags());
            // ffmpeg's packages: a system item, the picture, fill to its grid of 512 bytes.
            uint64 const ourGap = i->second.streamOffset() - ourPrevious;
            uint64 const theirGap = j->second.streamOffset() - theirPrevious;
            if (i->first > 0)
            {
                EXPECT_EQ(0u, theirGap % 512) << theirGap;
                EXPECT_LE(ourGap, theirGap);
                EXPECT_LT(theirGap, ourGap + 2048);
            }
            ourPrevious = i->second.streamOffset();
            theirPrevious = j->second.streamOffset();
        }
        std::remove(ours.c_str());
        std::remove(theirs.c_str());
    }
}
} // namespace
} // namespace VellumTest
