// The header metadata of real files, loaded, written in two orders, loaded again: the same sets
// with the same values, invalid elements and dark sets included.

#include <gtest/gtest.h>

#include <map>

#include "Metadata/DarkMetadataSet.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionMetadataSupport.h"
#include "Metadata/PartitionMetadataTestSupport.h"
#include "Support/Fixtures.h"

using namespace Vellum;
using namespace Vellum::PartitionMetadataTest;
using Metadata::PartitionMetadata;

namespace
{
std::map<std::string, unsigned> keyCounts(PartitionMetadata const & metadata)
{
    std::map<std::string, unsigned> counts;
    for (PartitionMetadata::const_iterator it = metadata.begin(); it != metadata.end(); ++it)
        ++counts[n(it->first.toString(Types::Dotted))];
    return counts;
}

// The sets by their instance UID, whether it stands in a valid element or an invalid one (which
// the index does not hear of when a set is parsed).
std::map<Types::UUID, Metadata::MetadataSet const *> byInstanceUID(PartitionMetadata const & metadata)
{
    std::map<Types::UUID, Metadata::MetadataSet const *> sets;
    for (PartitionMetadata::const_iterator it = metadata.begin(); it != metadata.end(); ++it)
        EXPECT_TRUE(sets.insert(std::make_pair(uidOf(*it->second), it->second)).second);
    return sets;
}

// Every set of `original` is in `copy` under its instance UID, with the same key, elements and
// bytes; the dark sets are the same, in the same order.
void expectSameMetadata(PartitionMetadata const & original, PartitionMetadata const & copy)
{
    EXPECT_EQ(original.size(), copy.size());
    EXPECT_EQ(keyCounts(original), keyCounts(copy));
    std::map<Types::UUID, Metadata::MetadataSet const *> const copies = byInstanceUID(copy);
    for (PartitionMetadata::const_iterator it = original.begin(); it != original.end(); ++it)
    {
        Metadata::MetadataSet const & set = *it->second;
        Types::UUID const & uid = uidOf(set);
        std::map<Types::UUID, Metadata::MetadataSet const *>::const_iterator found = copies.find(uid);
        ASSERT_TRUE(found != copies.end()) << n(uid.toString());
        Metadata::MetadataSet const & other = *found->second;
        EXPECT_EQ(set.key(), other.key());
        ASSERT_EQ(set.size(), other.size());
        ASSERT_EQ(set.invalidSize(), other.invalidSize()) << n(set.key().toString(Types::Dotted));
        Metadata::MetadataSet::const_iterator a = set.begin();
        Metadata::MetadataSet::const_iterator b = other.begin();
        for (; a != set.end(); ++a, ++b)
        {
            EXPECT_EQ(a->first, b->first);
            EXPECT_EQ(a->second->empty(), b->second->empty()) << n(a->first.toString(Types::Dotted));
            EXPECT_EQ(a->second->totalLength(), b->second->totalLength());
        }
        for (unsigned i = 0; i < set.invalidSize(); ++i)
        {
            EXPECT_EQ(Metadata::Support::elementLabel(*set.invalidBegin()[i]),
                      Metadata::Support::elementLabel(*other.invalidBegin()[i]));
            EXPECT_EQ(set.invalidBegin()[i]->totalLength(), other.invalidBegin()[i]->totalLength());
        }
        EXPECT_EQ(setBytes(set, original.partitionDictionary()), setBytes(other, copy.partitionDictionary()))
            << n(set.key().toString(Types::Dotted));
    }
    ASSERT_EQ(std::distance(original.darkBegin(), original.darkEnd()), std::distance(copy.darkBegin(), copy.darkEnd()));
    PartitionMetadata::const_dark_iterator dark = copy.darkBegin();
    for (PartitionMetadata::const_dark_iterator it = original.darkBegin(); it != original.darkEnd(); ++it, ++dark)
    {
        DataIO::Memory::MemoryDataSink a;
        DataIO::Memory::MemoryDataSink b;
        (*it)->serialize(a);
        (*dark)->serialize(b);
        EXPECT_EQ(Bytes(a.rawBuffer(), a.rawBuffer() + a.serializedSize()),
                  Bytes(b.rawBuffer(), b.rawBuffer() + b.serializedSize()));
    }
}

struct Counts
{
    unsigned sets = 0;
    unsigned invalid = 0;
    unsigned dark = 0;
    unsigned refused = 0;
};

Counts roundTripOf(std::string const & path);

// Any exception is a failure of the file, reported with its text.
Counts roundTrip(std::string const & path)
{
    try
    {
        return roundTripOf(path);
    }
    catch (Exceptions::BaseException const & e)
    {
        ADD_FAILURE() << path << ": " << e.whatUtf8();
    }
    catch (std::exception const & e)
    {
        ADD_FAILURE() << path << ": " << e.what();
    }
    return Counts();
}

Counts roundTripOf(std::string const & path)
{
    SCOPED_TRACE(path);
    Counts counts;
    Bytes const file = VellumTest::readFile(path);
    LoadReport report;
    MetadataPtr original = loadHeader(file, report);
    EXPECT_GT(original->size(), 3u);
    // A set whose item does not fit the type of its element is skipped, as a reader does.
    counts.refused = report.refused;
    counts.sets = static_cast<unsigned>(original->size());
    counts.dark = static_cast<unsigned>(std::distance(original->darkBegin(), original->darkEnd()));
    for (PartitionMetadata::const_iterator it = original->begin(); it != original->end(); ++it)
        counts.invalid += it->second->invalidSize();

    PartitionMetadata::SerializationOrder const orders[] = {PartitionMetadata::PrefaceThenKeys,
                                                            PartitionMetadata::ForwardDepthFirst};
    for (PartitionMetadata::SerializationOrder order : orders)
    {
        SCOPED_TRACE(order);
        Bytes const written = serialized(*original, order);
        EXPECT_EQ(original->serializedSize(true, true), written.size());
        LoadReport again;
        MetadataPtr copy = loadSerialized(written, again);
        EXPECT_EQ(0u, again.refused) << (again.failures.empty() ? "" : again.failures.front());
        expectSameMetadata(*original, *copy);
        // The copy's Primer already holds every tag: it writes the very same bytes.
        EXPECT_EQ(written, serialized(*copy, order));
    }
    return counts;
}
} // namespace

TEST(PartitionMetadataRoundTrip, SampleFilesKeepEverySetValueInvalidElementAndDarkSet)
{
    VELLUM_REQUIRE_SHARED();
    std::vector<std::string> const files = VellumTest::sampleFiles();
    ASSERT_FALSE(files.empty());
    Counts total;
    for (std::string const & path : files)
    {
        Counts const counts = roundTrip(path);
        total.sets += counts.sets;
        total.invalid += counts.invalid;
        total.dark += counts.dark;
        total.refused += counts.refused;
    }
    // The samples hold sets the schema does not know and private packets.
    std::cout << "[ NOTE     ] " << total.sets << " sets, " << total.invalid << " invalid elements, " << total.dark
              << " dark sets, " << total.refused << " sets refused" << std::endl;
    EXPECT_GT(total.invalid, 0u);
    EXPECT_EQ(0u, total.refused);
}

TEST(PartitionMetadataRoundTrip, FfmpegFilesAndTheExample)
{
    std::vector<std::string> files = {std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf"};
    for (std::string const & path : VellumTest::ffmpegFixtureFiles())
        files.push_back(path);
    if (files.size() == 1)
        std::cout << "[ NOTE     ] ffmpeg is absent: only the example is read" << std::endl;
    for (std::string const & path : files)
        roundTrip(path);
}
