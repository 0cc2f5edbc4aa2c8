#include "MXFIO/WriterTestSupport.h"

#include "DataIO/ChainSinkDataAdapter.h"
#include "Exceptions/Exceptions.h"
#include "GenericStream/Source.h"
#include "MXFIO/GenericStreamPartitionWriter.h"
#include "Utils/Padding.h"
#include "Utils/Text.h"

using namespace WriterTest;
using MXFIO::BasePartitionWriter;
using Packs::PartitionPack;

namespace
{
Bytes bytesOf(DataIO::Chain & chain)
{
    VellumTest::TestStreamSink sink;
    DataIO::ChainSinkDataAdapter(sink).write(chain);
    return sink.bytes;
}

struct HeaderCase
{
    char const * name;
    bool writeMetadata;
    uint64 spare, maximumAboveSize;
    unsigned kag;
    // What HeaderByteCount holds beyond the metadata's own size (before alignment).
    uint64 grown;
    PartitionPack::PartitionStatus keyStatus;
};

class HeaderLayoutTest : public testing::TestWithParam<HeaderCase>
{
};

TEST_P(HeaderLayoutTest, PackMetadataAndFillAddUp)
{
    HeaderCase const & c = GetParam();
    VellumTest::TestHeader header;
    uint64 const size = header.metadata->serializedSize(true, true);
    BasePartitionWriter writer;
    writer.kagSize(c.kag);
    writer.metadataSpareSpace(c.spare);
    writer.metadataMaximumSpace(c.maximumAboveSize != 0 ? size + c.maximumAboveSize : 0);
    DataIO::Chain chain;
    MXFIO::WrittenPartition const written =
        writer.writeHeader(header.metadata.get(), PartitionPack::OpenIncomplete, 0, c.writeMetadata, true, false, 0, chain);
    PartitionPack const & pack = *written.first;
    EXPECT_EQ(pack.key(), Packs::buildPartitionPackKey(PartitionPack::HeaderPartition, c.keyStatus));
    EXPECT_EQ(written.second % c.kag, 0u);
    EXPECT_EQ(written.second, pack.serializedSize() + Utils::alignBytes(c.kag, pack.serializedSize(), 20));
    uint64 const metadataBytes = c.writeMetadata ? size + c.grown + Utils::alignBytes(c.kag, size + c.grown, 20) : 0;
    EXPECT_EQ(pack.headerByteCount(), metadataBytes);
    Bytes const bytes = bytesOf(chain);
    EXPECT_EQ(bytes.size(), written.second + metadataBytes);
    EXPECT_EQ(layout(bytes, 0), c.writeMetadata ? "H0m" : "H0");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, HeaderLayoutTest,
    testing::Values(HeaderCase{"NoMetadataIsClosedComplete", false, 0, 0, 1, 0, PartitionPack::ClosedComplete},
                    HeaderCase{"Plain", true, 0, 0, 1, 0, PartitionPack::OpenIncomplete},
                    HeaderCase{"Spare", true, 1000, 0, 1, 1000, PartitionPack::OpenIncomplete},
                    HeaderCase{"SpareCappedByMaximum", true, 1000, 100, 1, 100, PartitionPack::OpenIncomplete},
                    HeaderCase{"TinySpareBecomesAFill", true, 5, 0, 1, 20, PartitionPack::OpenIncomplete},
                    HeaderCase{"Kag512", true, 1000, 0, 512, 1000, PartitionPack::OpenIncomplete}),
    [](testing::TestParamInfo<HeaderCase> const & info) { return std::string(info.param.name); });

TEST(PartitionWriterTest, FooterAlignsToTheEndOfFooterKag)
{
    for (auto const & c : {std::make_pair(2048u, 2048u), std::make_pair(256u, 512u)})
    {
        BasePartitionWriter writer;
        writer.kagSize(512);
        writer.endOfFooterKAGSize(c.first);
        DataIO::Chain chain;
        MXFIO::WrittenPartition const written =
            writer.writeFooter(nullptr, PartitionPack::ClosedComplete, 4096, 0, false, false, chain);
        EXPECT_EQ(written.second, c.second) << c.first;
        EXPECT_EQ(written.first->footerPartition(), 4096u);
        EXPECT_EQ(chain.data_size(), c.second);
    }
}

class EmptyStream : public GenericStream::Source
{
public:
    bool next(DataIO::Chain &, bool &, Templates::SharedPtr<MXFIO::FutureUpdater> &,
              Templates::Rational<int64> &) override
    {
        return false;
    }
    bool done() const override { return true; }
    unsigned int kagSize() const override { return 1; }
};

struct StreamCase
{
    char const * name;
    bool writeMetadata, writeEssence;
    uint64 runIn;
    PartitionPack::PartitionKind kind;
    char const * message;
};

class GenericStreamWriterTest : public testing::TestWithParam<StreamCase>
{
};

TEST_P(GenericStreamWriterTest, RefusesWhatAStreamPartitionCannotHold)
{
    StreamCase const & c = GetParam();
    MXFIO::GenericStreamPartitionWriter writer(Templates::auto_ptr<GenericStream::Source>(new EmptyStream), 5);
    DataIO::Chain chain;
    try
    {
        writer.writePartition(nullptr, c.kind, PartitionPack::OpenIncomplete, 0, 0, 0, Types::UniversalLabel(),
                              Templates::auto_ptr<Types::Batch>(), c.writeMetadata, false, c.writeEssence, false,
                              c.runIn, chain);
        EXPECT_EQ(c.message, std::string()) << "no exception";
        EXPECT_EQ(layout(bytesOf(chain), 0), "B5s");
    }
    catch (Exceptions::InvalidValue const & e)
    {
        EXPECT_EQ(Utils::narrow(e.message()), c.message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Checks, GenericStreamWriterTest,
    testing::Values(
        StreamCase{"Valid", false, true, 0, PartitionPack::BodyPartition, ""},
        StreamCase{"Metadata", true, true, 0, PartitionPack::BodyPartition,
                   "(writeMetadata == false): GenericStreamPartition does not contain metadata."},
        StreamCase{"NoEssence", false, false, 0, PartitionPack::BodyPartition,
                   "(writeEssence == true): GenericStreamPartition must contain essence."},
        StreamCase{"RunIn", false, true, 8, PartitionPack::BodyPartition,
                   "(runInSize == 0): GenericStreamPartition is a body partition and does not support runIn."},
        StreamCase{"Header", false, true, 0, PartitionPack::HeaderPartition,
                   "(partitionKind == PartitionPack::BODY_PARTITION): GenericStreamPartition must be a body "
                   "partition."}),
    [](testing::TestParamInfo<StreamCase> const & info) { return std::string(info.param.name); });

TEST(PartitionWriterTest, SourceWithoutIndexGeneratorIsRefused)
{
    VellumTest::TestHeader header;
    auto * source = new VellumTest::TestContainerSource(header, TestSourceOptions());
    source->indexTableGenerator(Templates::auto_ptr<MXFIO::IndexTableGenerator>());
    try
    {
        MXFIO::PartitionWriter writer(Templates::auto_ptr<GenericContainer::Source>(source), 1, 2,
                                      MXFIO::IndexTableGenerationNone, MXFIO::IndexTableGenerationAll, false,
                                      MXFIO::IndexSegmentConstant);
        FAIL() << "no exception";
    }
    catch (Exceptions::InvalidState const & e)
    {
        EXPECT_EQ(Utils::narrow(e.message()),
                  "indexGenerator_ != 0: GenericContainer::Source does not contain a valid IndexTableGenerator.");
    }
}

TEST(PartitionWriterTest, EssenceIsSplicedAndCounted)
{
    VellumTest::TestHeader header;
    TestSourceOptions options;
    options.units = 3;
    options.size = 100;
    options.kag = 256;
    MXFIO::PartitionWriter writer(
        Templates::auto_ptr<GenericContainer::Source>(new VellumTest::TestContainerSource(header, options)), 1, 2,
        MXFIO::IndexTableGenerationNone, MXFIO::IndexTableGenerationAll, false, MXFIO::IndexSegmentConstant);
    DataIO::Chain chain;
    EXPECT_EQ(writer.status(), MXFIO::AbstractPartitionWriter::NoPartitionWritten);
    writer.writeBody(header.metadata.get(), PartitionPack::OpenIncomplete, 0, 0, 0, false, true, true, false, chain);
    std::vector<MXFIO::AbstractPartitionWriter::Status> statuses;
    Templates::Rational<int64> duration;
    bool boundary = false;
    Templates::SharedPtr<MXFIO::FutureUpdater> updater;
    for (int i = 0; i < 3; ++i)
        statuses.push_back(writer.writeData(chain, boundary, updater, duration));
    EXPECT_EQ(statuses, (std::vector<MXFIO::AbstractPartitionWriter::Status>{
                            MXFIO::AbstractPartitionWriter::WritingEssence,
                            MXFIO::AbstractPartitionWriter::WritingEssence, MXFIO::AbstractPartitionWriter::Finished}));
    EXPECT_EQ(writer.bodyOffset(), 3 * 256u);
    EXPECT_EQ(duration, Templates::Rational<int64>(3, 25));
    EXPECT_EQ(chain.data_size() % 256, 0u) << "pack and units stay on the grid";
    // The closing partition: the writer's own KAG, the whole index.
    writer.kagSize(1);
    DataIO::Chain footer;
    MXFIO::WrittenPartition const written =
        writer.writeFooter(nullptr, PartitionPack::ClosedComplete, 2000, 0, false, true, footer);
    EXPECT_EQ(written.first->indexSID(), 2u);
    EXPECT_EQ(written.first->bodySID(), 0u);
    EXPECT_EQ(footer.data_size(), written.second + written.first->indexByteCount());
}
} // namespace
