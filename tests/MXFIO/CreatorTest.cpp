#include "MXFIO/WriterTestSupport.h"

#include <fstream>

#include "DataIO/ChainDataSinkAdapter.h"
#include "DataIO/ChainSinkDataAdapter.h"
#include "Exceptions/Exceptions.h"
#include "GenericStream/Source.h"
#include "Support/Fixtures.h"
#include "Utils/Text.h"

using namespace WriterTest;
using MXFIO::PullCreator;
typedef Templates::Rational<int64> Seconds;

namespace
{

// A generic stream of three packets.
class TestStream : public GenericStream::Source
{
public:
    bool next(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<MXFIO::FutureUpdater> &,
              Templates::Rational<int64> &) override
    {
        Bytes packet(16 + 4 + 10, 0);
        packet[0] = 0x06, packet[1] = 0x0e, packet[2] = 0x2b, packet[3] = 0x34, packet[16] = 0x83, packet[19] = 10;
        DataIO::ChainDataSinkAdapter(chain, 0, 0).write(packet.data(), packet.size());
        atBoundary = true;
        return ++sent_ < 3;
    }
    bool done() const override { return sent_ == 3; }
    unsigned int kagSize() const override { return 1; }

private:
    int sent_ = 0;
};

struct LayoutCase
{
    char const * name;
    std::vector<TestSourceOptions> sources;
    std::function<void(PullCreator &)> configure;
    char const * layout;
};

class CreatorLayoutTest : public testing::TestWithParam<LayoutCase>
{
};

TEST_P(CreatorLayoutTest, WritesPartitionsAndReadsBack)
{
    Plan plan;
    plan.sources = GetParam().sources;
    plan.configure = GetParam().configure;
    Written const written = writeFile(plan);
    EXPECT_EQ(layout(written.bytes, 0), GetParam().layout);
    readBack(written, plan.sources);
}

TestSourceOptions bodyIndexed(unsigned count)
{
    TestSourceOptions options = units(count);
    options.bodyIndex = MXFIO::IndexTableGenerationAll;
    return options;
}

INSTANTIATE_TEST_SUITE_P(
    Plans, CreatorLayoutTest,
    testing::Values(
        LayoutCase{"NoSources", {}, nullptr, "H0m F0m"},
        LayoutCase{"OneSourceInTheHeader", {units(10)}, nullptr, "H1m F0mi"},
        LayoutCase{"HeaderWithoutEssence", {units(10)}, [](PullCreator & c) { c.headerPartitionHasEssence(false); },
                   "H0m B1 F0mi"},
        LayoutCase{"EveryHundredUnits", {units(250, 100)}, [](PullCreator & c) { c.masterEditUnitsPerPartition(100); },
                   "H1m B1 B1 F0mi"},
        LayoutCase{"MetadataEveryThirdBody",
                   {units(60, 100)},
                   [](PullCreator & c) {
                       c.masterEditUnitsPerPartition(10);
                       c.metadataRepetitionPeriod(3);
                   },
                   "H1m B1 B1 B1m B1 B1 F0mi"},
        LayoutCase{"BodyIndexes", {bodyIndexed(20)}, [](PullCreator & c) { c.masterEditUnitsPerPartition(10); },
                   "H1m B1i F0mi"},
        LayoutCase{"TwoSourcesInTurns",
                   {units(63, 100), units(63, 200)},
                   [](PullCreator & c) { c.partitionMultiplexPeriod(Seconds(1)); },
                   "H1m B3 B1 B3 B1 B3 B0i F0mi"},
        LayoutCase{"TwoSourcesOneAfterTheOther", {units(5), units(7)}, nullptr, "H1m B3 B0i F0mi"}),
    [](testing::TestParamInfo<LayoutCase> const & info) { return std::string(info.param.name); });

TEST(PullCreatorTest, NoSourcesTakesThreeUnits)
{
    VellumTest::TestHeader header;
    PullCreator creator(header.metadata, 0, 0, 0);
    DataIO::Chain chain;
    std::vector<PullCreator::Status> statuses;
    for (int i = 0; i < 3; ++i)
        statuses.push_back(creator.nextUnit(false, chain));
    EXPECT_EQ(statuses, (std::vector<PullCreator::Status>{PullCreator::FooterNext, PullCreator::Finished,
                                                          PullCreator::Finished}));
    EXPECT_EQ(creator.bytesWritten(), chain.data_size());
}

TEST(PullCreatorTest, RipCanBeLeftOutAndGenericStreamsHaveTheirPartitions)
{
    Plan plan;
    plan.sources = {units(4)};
    plan.configure = [](PullCreator & c) {
        c.writeRIP(false);
        c.addGenericStream(Templates::auto_ptr<GenericStream::Source>(new TestStream), 0);
    };
    Written const written = writeFile(plan);
    EXPECT_EQ(layout(written.bytes, 0), "H1m B3s F0mi");
    std::vector<Item> const items = walk(written.bytes, 0);
    EXPECT_FALSE(Packs::isRandomIndexPack(KLV::Key(items.back().key.data())));
}

TEST(PullCreatorTest, ConsumeOnlySourcesAreFinishedButNotWritten)
{
    VellumTest::TestHeader header;
    auto * consumed = new VellumTest::TestContainerSource(header, units(3));
    PullCreator creator(header.metadata, 0, 0, 0);
    EXPECT_EQ(creator.addEssenceContainer(Templates::auto_ptr<GenericContainer::Source>(consumed),
                                          MXFIO::IndexTableGenerationNone, MXFIO::IndexTableGenerationNone, true,
                                          MXFIO::IndexSegmentConstant),
              0u);
    DataIO::Chain chain;
    std::vector<PullCreator::Status> statuses;
    while (creator.status() != PullCreator::Finished && statuses.size() < 20)
        statuses.push_back(creator.nextUnit(false, chain));
    EXPECT_TRUE(consumed->finalized());
    EXPECT_EQ(statuses.front(), PullCreator::ConsumingSources);
    VellumTest::TestStreamSink drained;
    DataIO::ChainSinkDataAdapter(drained).write(chain);
    for (Item const & item : walk(drained.bytes, 0))
        EXPECT_NE(item.key[12], 0x16) << "an essence element at " << item.offset;
}

// A generator of SIDs that may give 0.
class ZeroSIDs : public MXFIO::AbstractSIDGenerator
{
public:
    ZeroSIDs(unsigned body, unsigned index) : body_(body), index_(index) {}
    unsigned int bodySID(unsigned int) override { return body_; }
    unsigned int indexSID(unsigned int) override { return index_; }

private:
    unsigned body_, index_;
};

struct MisuseCase
{
    char const * name;
    std::function<void(PullCreator &, VellumTest::TestHeader &)> act;
    char const * message;
};

class PullCreatorMisuseTest : public testing::TestWithParam<MisuseCase>
{
};

void addSource(PullCreator & creator, VellumTest::TestHeader & header)
{
    creator.addEssenceContainer(
        Templates::auto_ptr<GenericContainer::Source>(new VellumTest::TestContainerSource(header, units(2))),
        MXFIO::IndexTableGenerationNone, MXFIO::IndexTableGenerationAll, false, MXFIO::IndexSegmentConstant);
}

TEST_P(PullCreatorMisuseTest, Throws)
{
    VellumTest::TestHeader header;
    PullCreator creator(header.metadata, 0, 0, 0);
    try
    {
        GetParam().act(creator, header);
        FAIL() << "no exception";
    }
    catch (Exceptions::BaseException const & e)
    {
        EXPECT_EQ(Utils::narrow(e.message()), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Messages, PullCreatorMisuseTest,
    testing::Values(
        MisuseCase{"BodySIDZero",
                   [](PullCreator & c, VellumTest::TestHeader & h) {
                       c.sidGenerator(Templates::auto_ptr<MXFIO::AbstractSIDGenerator>(new ZeroSIDs(0, 2)));
                       addSource(c, h);
                   },
                   "currentBodySID > 0: BodySID value must be greater than 0!"},
        MisuseCase{"IndexSIDZero",
                   [](PullCreator & c, VellumTest::TestHeader & h) {
                       c.sidGenerator(Templates::auto_ptr<MXFIO::AbstractSIDGenerator>(new ZeroSIDs(1, 0)));
                       addSource(c, h);
                   },
                   "currentIndexSID > 0: IndexSID value must be greater than 0!"},
        MisuseCase{"NullSIDGenerator",
                   [](PullCreator & c, VellumTest::TestHeader &) {
                       c.sidGenerator(Templates::auto_ptr<MXFIO::AbstractSIDGenerator>());
                   },
                   "sidGenerator.get () != 0: SID Generator must be valid object!"},
        MisuseCase{"SourceAfterTheFirstUnit",
                   [](PullCreator & c, VellumTest::TestHeader & h) {
                       DataIO::Chain chain;
                       c.nextUnit(false, chain);
                       addSource(c, h);
                   },
                   "!started: Sources must be added before the first nextUnit."}),
    [](testing::TestParamInfo<MisuseCase> const & info) { return std::string(info.param.name); });
} // namespace
