#pragma once
// Reads the header metadata of a file for the structural tests, with the structural classes
// registered: the reader of the partition metadata tests, whose refused sets are counted.

#include <string>
#include <vector>

#include "Metadata/PartitionMetadataTestSupport.h"
#include "Metadata/Structural/StructuralTestSupport.h"
#include "Support/Fixtures.h"

namespace Vellum
{
namespace StructuralTest
{
struct LoadedHeader
{
    PartitionMetadataTest::MetadataPtr metadata;
    unsigned int skipped = 0;
};

inline LoadedHeader loadHeader(std::vector<unsigned char> const & bytes)
{
    Metadata::Structural::initialize();
    PartitionMetadataTest::LoadReport report;
    LoadedHeader loaded;
    loaded.metadata = PartitionMetadataTest::loadHeader(bytes, report);
    loaded.skipped = report.refused;
    return loaded;
}

inline LoadedHeader loadHeader(std::string const & path) { return loadHeader(VellumTest::readFile(path)); }
} // namespace StructuralTest
} // namespace Vellum
