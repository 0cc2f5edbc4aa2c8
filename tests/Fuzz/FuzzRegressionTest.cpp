// Inputs that the fuzz targets found to fail, read again as the whole-file target reads them.

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "MXFIO/Reader2.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Packs/PartitionPack.h"
#include "Support/Fixtures.h"
#include "Support/ReadEverything.h"

using namespace Vellum;

namespace
{
typedef std::vector<unsigned char> Bytes;

void appendNumber(Bytes & out, uint64 v, int bytes)
{
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        out.push_back(static_cast<unsigned char>(v >> shift));
}
} // namespace

TEST(FuzzRegression, AFillItemRunningPastTheIndexRegionEndsIt)
{
    // A closed complete header partition with IndexSID 1 and an index region of 20 bytes, at
    // whose start stands a fill item of 100 bytes: the index walk used to go back to the
    // region's start and meet the fill item again, for ever.
    Bytes value;
    appendNumber(value, 1, 2);
    appendNumber(value, 3, 2);
    appendNumber(value, 1, 4);   // KAG
    appendNumber(value, 0, 8);   // ThisPartition
    appendNumber(value, 0, 8);   // PreviousPartition
    appendNumber(value, 0, 8);   // FooterPartition
    appendNumber(value, 0, 8);   // HeaderByteCount
    appendNumber(value, 20, 8);  // IndexByteCount
    appendNumber(value, 1, 4);   // IndexSID
    appendNumber(value, 0, 8);   // BodyOffset
    appendNumber(value, 1, 4);   // BodySID
    value.insert(value.end(), 16, 0);
    appendNumber(value, 0, 4);
    appendNumber(value, 16, 4);
    KLV::Key const key = Packs::buildPartitionPackKey(Packs::PartitionPack::HeaderPartition, false, true);
    Bytes file(key.rawBuffer(), key.rawBuffer() + 16);
    file.push_back(0x83);
    appendNumber(file, value.size(), 3);
    file.insert(file.end(), value.begin(), value.end());
    static unsigned char const fill[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x02,
                                           0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00};
    // The first fill item behind the pack belongs to the pack; the second opens the index region.
    file.insert(file.end(), fill, fill + 16);
    file.push_back(0);
    file.insert(file.end(), fill, fill + 16);
    file.push_back(100);
    file.insert(file.end(), 100, 0);

    DataIO::Memory::MemoryDataSource source(file.data(), file.size());
    MXFIO::Reader2 reader(source, MetaMetadata::createStandardDictionary(), 65536);
    try
    {
        MXFIO::Partition * header = reader.headerPartition();
        ASSERT_NE(header, nullptr);
        EXPECT_EQ(header->nextIndexTableSegmentsKLV().get(), nullptr);
        // Asked again, the walk starts over at the region and ends the same way.
        EXPECT_EQ(header->nextIndexTableSegmentsKLV().get(), nullptr);
    }
    catch (Exceptions::BaseException const & e)
    {
        ADD_FAILURE() << e.whatUtf8().c_str();
    }
}

TEST(FuzzRegression, KeptInputsReadQuickly)
{
    for (char const * name : {"index-fill-past-region-1.mxf", "index-fill-past-region-2.mxf"})
    {
        SCOPED_TRACE(name);
        Bytes const input = VellumTest::readFile(std::string(VELLUM_SOURCE_DIR) + "/tests/fuzz-regressions/" + name);
        ASSERT_FALSE(input.empty());
        auto const start = std::chrono::steady_clock::now();
        VellumTest::ReadReport const report = VellumTest::readEverything(input.data(), input.size());
        EXPECT_FALSE(report.runaway);
        EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 10.0);
    }
}
