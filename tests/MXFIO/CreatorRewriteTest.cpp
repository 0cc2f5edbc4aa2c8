#include "MXFIO/WriterTestSupport.h"

#include <fstream>
#include <sstream>

#include "Exceptions/Exceptions.h"
#include "Metadata/Structural/SourceClip.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Support/Fixtures.h"
#include "Support/Process.h"
#include "Types/UTF16String.h"
#include "Utils/Text.h"

using namespace WriterTest;
using MXFIO::Creator;
using MXFIO::PullCreator;

namespace
{

// A creator over one test source, run to its end.
struct CreatorRun
{
    explicit CreatorRun(uint64 spare, TestSourceOptions const & options = units(10), DataIO::DataSink * target = nullptr)
        : creator(header.metadata, target != nullptr ? *target : sink, spare, 0)
    {
        source = new VellumTest::TestContainerSource(header, options);
        creator.addEssenceContainer(Templates::auto_ptr<GenericContainer::Source>(source), options.bodyIndex,
                                    options.closingIndex, false, MXFIO::IndexSegmentConstant);
    }
    void toEnd()
    {
        for (int i = 0; i < 10000 && creator.status() != PullCreator::Finished; ++i)
            creator.writeUnit(false);
    }
    Packs::PartitionPack headerPack() const { return parsePack(sink.bytes, walk(sink.bytes, 0).front()); }
    // The header metadata as the header partition holds it.
    Templates::SharedPtr<Metadata::PartitionMetadata> headerMetadata(DataIO::Memory::MemoryDataSource & in)
    {
        reader.reset(new MXFIO::Reader2(in, VellumTest::writerDictionary(), 65536));
        return reader->headerPartition()->metadata();
    }

    VellumTest::TestHeader header;
    VellumTest::TestMemorySink sink;
    Creator creator;
    VellumTest::TestContainerSource * source;
    std::unique_ptr<MXFIO::Reader2> reader;
};

Types::UTF16String const * packageName(Metadata::PartitionMetadata & metadata)
{
    Metadata::Structural::ContentStorage * storage = Metadata::Structural::findPreface(metadata)->contentStorage();
    return storage->package(1)->packageName();
}

struct RewriteCase
{
    char const * name;
    uint64 spare;
    bool fits;
};

class CreatorRewriteTest : public testing::TestWithParam<RewriteCase>
{
};

TEST_P(CreatorRewriteTest, ClosesTheHeaderWithItsFinalMetadataWhenItFits)
{
    CreatorRun run(GetParam().spare);
    run.toEnd();
    EXPECT_TRUE(run.headerPack().isOpen());
    EXPECT_EQ(run.headerPack().footerPartition(), 0u);
    // The host names the file package once the essence is in.
    Types::UTF16String const name(Utils::wide("A file package with a long name given at the end").c_str());
    run.source->sourcePackage().packageName(&name);
    Bytes const before = run.sink.bytes;

    EXPECT_EQ(run.creator.updatePartition(0, Packs::PartitionPack::ClosedComplete), GetParam().fits);
    if (!GetParam().fits)
    {
        EXPECT_EQ(run.sink.bytes, before);
        return;
    }
    EXPECT_EQ(run.sink.bytes.size(), before.size());
    Packs::PartitionPack const pack = run.headerPack();
    EXPECT_FALSE(pack.isOpen());
    EXPECT_EQ(pack.footerPartition(), run.creator.partitionPacks().rbegin()->first);
    DataIO::Memory::MemoryDataSource in(run.sink.bytes.data(), run.sink.bytes.size());
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata = run.headerMetadata(in);
    ASSERT_NE(packageName(*metadata), nullptr);
    EXPECT_EQ(Utils::narrow(packageName(*metadata)->value()), Utils::narrow(name.value()));
    Metadata::Structural::ContentStorage * storage = Metadata::Structural::findPreface(*metadata)->contentStorage();
    Templates::list<Metadata::Structural::TimelineTrack *> tracks;
    Metadata::Structural::getAllTimelineTracks(*storage->package(1), tracks);
    EXPECT_EQ(tracks.front()->sequence()->duration()->value(), 10) << "the durations known at the end";
}

INSTANTIATE_TEST_SUITE_P(Spare, CreatorRewriteTest,
                         testing::Values(RewriteCase{"Room", 1000, true}, RewriteCase{"NoRoom", 0, false}),
                         [](testing::TestParamInfo<RewriteCase> const & info) { return std::string(info.param.name); });

TEST(CreatorTest, RunInCountsOffsetsFromItsEnd)
{
    Plan plan;
    plan.sources = {units(10)};
    plan.runIn = 1000;
    plan.configure = [](PullCreator & c) { c.masterEditUnitsPerPartition(4); };
    Written const written = writeFile(plan);
    EXPECT_EQ(layout(written.bytes, 1000), "H1m B1 B1 F0mi");
    EXPECT_EQ(written.packOffsets.front(), 0u);
    for (auto const & found : packs(written.bytes, 1000))
        EXPECT_EQ(found.second.thisPartition(), found.first - 1000);
    readBack(written, plan.sources);
}

TEST(CreatorTest, ClipLengthIsPatchedByFinishWork)
{
    TestSourceOptions clip = units(10, 500);
    clip.clip = true;
    CreatorRun run(1000, clip);
    run.toEnd();
    auto essenceLength = [&run]() -> uint64 {
        for (Item const & item : walk(run.sink.bytes, 0))
            if (item.key[12] == 0x16)
                return item.length;
        return ~uint64(0);
    };
    EXPECT_EQ(essenceLength(), 0u) << "the placeholder";
    run.creator.finishWork(run.sink);
    EXPECT_EQ(essenceLength(), 5000u);
    Written written;
    for (auto const & pack : run.creator.partitionPacks())
    {
        EXPECT_TRUE(run.creator.updatePartition(pack.first, Packs::PartitionPack::ClosedComplete));
        written.packOffsets.push_back(pack.first);
    }
    written.bytes = run.sink.bytes;
    readBack(written, {clip});
}

struct CreatorMisuseCase
{
    char const * name;
    std::function<void()> act;
    char const * message;
};

class CreatorMisuseTest : public testing::TestWithParam<CreatorMisuseCase>
{
};

TEST_P(CreatorMisuseTest, Throws)
{
    try
    {
        GetParam().act();
        FAIL() << "no exception";
    }
    catch (Exceptions::BaseException const & e)
    {
        EXPECT_EQ(Utils::narrow(e.message()), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Messages, CreatorMisuseTest,
    testing::Values(
        CreatorMisuseCase{"NoPackThere",
                          [] {
                              CreatorRun run(0);
                              run.toEnd();
                              run.creator.updatePartition(7, true);
                          },
                          "it != impl_ -> offsetPartitionPacksMap_.end (): Invalid partition offset"},
        CreatorMisuseCase{"RewriteWithoutSeeking",
                          [] {
                              VellumTest::TestStreamSink stream;
                              CreatorRun run(0, units(3), &stream);
                              run.toEnd();
                              run.creator.updatePartition(0, true);
                          },
                          "impl_->randomAccess != nullptr: Rewriting a partition needs a sink that can seek."},
        CreatorMisuseCase{"ClipWithoutSeeking",
                          [] {
                              VellumTest::TestStreamSink stream;
                              TestSourceOptions clip = units(3);
                              clip.clip = true;
                              CreatorRun run(0, clip, &stream);
                              run.toEnd();
                          },
                          "!updaterWithoutSeek: Clip wrapped essence needs a sink that can seek to patch its length."}),
    [](testing::TestParamInfo<CreatorMisuseCase> const & info) { return std::string(info.param.name); });

// The partitions that lie whole in the first `size` bytes.
size_t completePartitions(Written const & written, uint64 size)
{
    size_t complete = 0;
    for (size_t i = 0; i < written.packOffsets.size(); ++i)
    {
        uint64 const end = i + 1 < written.packOffsets.size() ? written.packOffsets[i + 1] : written.bytes.size();
        complete += end <= size ? 1 : 0;
    }
    return complete;
}

// The partitions met walking forward; a pack cut short ends the walk with an exception.
size_t partitionsFound(Bytes const & bytes, size_t complete)
{
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    MXFIO::Reader2 reader(source, VellumTest::writerDictionary(), 65536);
    size_t count = 0;
    try
    {
        for (MXFIO::Partition * p = reader.headerPartition(); p != nullptr; p = reader.nextPartition(p))
        {
            bool const hasMetadata = count++ < complete && p->partitionPack().headerByteCount() != 0;
            EXPECT_TRUE(!hasMetadata || p->metadata()->size() != 0);
        }
    }
    catch (Exceptions::InvalidLength const &)
    {
    }
    return count;
}

Plan severalPartitions()
{
    Plan plan;
    plan.sources = {units(12, 700)};
    plan.spare = 300;
    plan.configure = [](PullCreator & c) { c.masterEditUnitsPerPartition(3); };
    return plan;
}

TEST(CreatorTest, FileCutAnywhereReadsUpToItsLastCompletePartition)
{
    Written const written = writeFile(severalPartitions());
    for (uint64 cut = 1; cut < written.bytes.size(); cut += 97)
    {
        Bytes const part(written.bytes.begin(), written.bytes.begin() + cut);
        size_t const complete = completePartitions(written, cut);
        EXPECT_GE(partitionsFound(part, complete), complete) << "cut at " << cut;
    }
}

TEST(CreatorTest, FailingSinkThrowsAndStaysStopped)
{
    Written const good = writeFile(severalPartitions());
    for (uint64 limit : {uint64(10), uint64(3000), good.packOffsets[2] + 5, uint64(good.bytes.size() - 3)})
    {
        VellumTest::TestHeader header;
        VellumTest::TestMemorySink sink(limit);
        Creator creator(header.metadata, sink, 300, 0);
        Plan const plan = severalPartitions();
        creator.addEssenceContainer(Templates::auto_ptr<GenericContainer::Source>(
                                        new VellumTest::TestContainerSource(header, plan.sources[0])),
                                    MXFIO::IndexTableGenerationNone, MXFIO::IndexTableGenerationAll, false,
                                    MXFIO::IndexSegmentConstant);
        plan.configure(creator);
        auto runToFailure = [&creator] {
            for (int i = 0; i < 1000; ++i)
                creator.writeUnit(false);
        };
        EXPECT_THROW(runToFailure(), Exceptions::IOError) << limit;
        EXPECT_THROW(creator.writeUnit(false), Exceptions::InvalidState);
        EXPECT_EQ(sink.bytes.size(), limit);
        size_t const complete = completePartitions(good, limit);
        EXPECT_GE(partitionsFound(sink.bytes, complete), complete) << limit;
    }
}

// Packet hashes of the first sound stream as ffmpeg copies them.
std::vector<std::string> ffmpegHashes(std::string const & path, unsigned stream)
{
    std::istringstream lines(VellumTest::runCommand("ffmpeg -v error -nostdin -i '" + path + "' -map 0:a:" +
                                                    std::to_string(stream) + " -c copy -f framemd5 - 2>/dev/null").out);
    std::vector<std::string> hashes;
    std::string line;
    while (std::getline(lines, line))
        if (!line.empty() && line[0] != '#')
            hashes.push_back(line.substr(line.rfind(' ') + 1));
    return hashes;
}

TEST(CreatorTest, FfmpegReadsTheElements)
{
    if (!VellumTest::haveCommand("ffmpeg"))
        GTEST_SKIP() << "ffmpeg is not installed";
    Plan plan;
    plan.sources = {units(30, 11520), units(30, 11520)};
    plan.configure = [](PullCreator & c) { c.partitionMultiplexPeriod(Templates::Rational<int64>(1, 2)); };
    Written const written = writeFile(plan);
    std::string const path = VellumTest::temporaryPath(".mxf");
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const *>(written.bytes.data()),
                                                written.bytes.size());
    EXPECT_EQ(VellumTest::runCommand("ffprobe -v error -show_entries stream=codec_type -of csv=p=0 '" + path + "'").out,
              "audio\naudio\n");
    for (unsigned n = 0; n < plan.sources.size(); ++n)
    {
        std::vector<std::string> expected;
        for (unsigned i = 0; i < plan.sources[n].units; ++i)
        {
            Bytes const value = VellumTest::elementBytes(n + 1, i, plan.sources[n].size);
            expected.push_back(VellumTest::md5Hex(value.data(), value.size()));
        }
        EXPECT_EQ(ffmpegHashes(path, n), expected) << "stream " << n;
    }
    std::remove(path.c_str());
}
} // namespace
