// A file written from a frame multiplexer's source and read back through the file's metadata.

#include <gtest/gtest.h>

#include "DataIO/Memory/MemoryDataSource.h"
#include "GenericContainer/Multiplexer/Mux.h"
#include "KLV/Value.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/SourcePackage.h"
#include "MXFIO/Creator.h"
#include "MXFIO/EssenceReader.h"
#include "MXFIO/Reader2.h"
#include "Support/MemoryAnalyzer.h"
#include "Support/TestContainerSource.h"

namespace
{
using namespace Vellum;
using Templates::Rational;

TEST(MuxRoundTrip, TheFramesComeBackThroughTheIndex)
{
    VellumTest::MemoryStream picture = VellumTest::constantStream(40, 1000);
    VellumTest::MemoryStream sound;
    sound.itemType = 0x16;
    sound.frames = VellumTest::makeFrames(std::vector<unsigned int>(40, 300));
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata = VellumTest::newHeaderMetadata();
    GenericContainer::Multiplexer::Mux mux(metadata, VellumTest::testContainerLabel(), Rational<int>(25, 1));
    mux.addAnalyzer(Templates::SharedPtr<GenericContainer::EssenceAnalyzer>(new VellumTest::MemoryPicture(picture)),
                    false, Rational<int64>(0, 1));
    mux.addAnalyzer(Templates::SharedPtr<GenericContainer::EssenceAnalyzer>(new VellumTest::MemorySound(sound)), false,
                    Rational<int64>(0, 1));

    VellumTest::TestMemorySink sink;
    MXFIO::Creator creator(metadata, sink, 2000, 0);
    creator.addEssenceContainer(mux.commit(), MXFIO::IndexTableGenerationNotWritten, MXFIO::IndexTableGenerationAll,
                                false, MXFIO::IndexSegmentChoose);
    creator.masterEditUnitsPerPartition(15);
    while (creator.writeUnit(false) != MXFIO::PullCreator::Finished)
        ;
    for (auto const & pack : creator.partitionPacks())
        ASSERT_TRUE(creator.updatePartition(pack.first, Packs::PartitionPack::ClosedComplete));
    EXPECT_EQ(creator.partitionPacks().size(), 4u);

    DataIO::Memory::MemoryDataSource source(sink.bytes.data(), sink.bytes.size());
    MXFIO::Reader2 reader(source, VellumTest::writerDictionary(), 65536);
    Templates::SharedPtr<Metadata::PartitionMetadata> read = reader.firstPartitionWithFinalMetadata()->metadata();
    Metadata::Structural::Preface * preface = Metadata::Structural::findPreface(*read);
    Metadata::Structural::GenericPackage * package = preface->contentStorage()->package(0);
    MXFIO::EssenceReader essence(reader, *preface, *package, false, false);
    std::map<unsigned, std::vector<std::vector<unsigned char>>> got;
    MXFIO::EssenceReader::ElementEditUnit unit;
    for (int i = 0; i < 200 && essence.nextElementEditUnit(65536, unit) && unit.element.packet; ++i)
    {
        KLV::Value & value = unit.element.packet->value();
        std::vector<unsigned char> bytes(static_cast<size_t>(value.remaining()));
        value.read(bytes.data(), bytes.size());
        got[unit.trackNumber >> 24].push_back(bytes);
    }
    for (auto const & stream : {std::make_pair(0x15u, &picture), std::make_pair(0x16u, &sound)})
    {
        ASSERT_EQ(got[stream.first].size(), 40u) << std::hex << stream.first;
        for (size_t i = 0; i < 40; ++i)
            EXPECT_EQ(got[stream.first][i], std::vector<unsigned char>(stream.second->frames[i]->data(),
                                                                       stream.second->frames[i]->data() +
                                                                           stream.second->frames[i]->size()))
                << i;
    }
}
} // namespace
