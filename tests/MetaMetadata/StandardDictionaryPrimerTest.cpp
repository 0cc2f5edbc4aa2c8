// The statically assigned tags that real files list in their Primer packs resolve, in the built-in
// dictionary, to the labels the files give them.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DataIO/File/FileDataSource.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Support/Fixtures.h"

using namespace Vellum;
using namespace Vellum::MetaMetadataTest;

namespace
{
struct PrimerEntry
{
    unsigned short tag;
    Types::UniversalLabel label;
};

// Every Primer pack of the file, as tag and label pairs: a count, an item size of 18, then
// the items, each a 2-byte tag and a 16-byte label.
std::vector<std::vector<PrimerEntry>> primersOf(std::string const & path)
{
    KLV::Key const primerKey = key("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.05.01.00");
    DataIO::File::FileDataSource source(Utils::wide(path.c_str()).c_str(), 1 << 16);
    KLV::Reader reader(source);
    std::vector<std::vector<PrimerEntry>> primers;
    while (source.remaining() > 0)
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 1 << 16);
        if (packet->key() != primerKey)
            continue;
        if (packet->length() < 8 || packet->length() > (1u << 20))
            throw std::runtime_error("implausible Primer pack length in " + path);
        std::vector<unsigned char> value(static_cast<std::size_t>(packet->length()));
        packet->value().readValue(value.data(), value.size());
        unsigned count = unsigned(value[0]) << 24 | unsigned(value[1]) << 16 | unsigned(value[2]) << 8 | value[3];
        unsigned size = unsigned(value[4]) << 24 | unsigned(value[5]) << 16 | unsigned(value[6]) << 8 | value[7];
        if (size != 18 || 8 + uint64(count) * size > value.size())
            throw std::runtime_error("malformed Primer pack in " + path);
        std::vector<PrimerEntry> entries;
        for (unsigned i = 0; i < count; ++i)
        {
            unsigned char const * item = value.data() + 8 + i * size;
            entries.push_back(PrimerEntry{static_cast<unsigned short>(item[0] << 8 | item[1]),
                                          Types::UniversalLabel(item + 2)});
        }
        primers.push_back(entries);
    }
    return primers;
}

// Checks every static tag of every Primer of the file; gives how many were checked.
unsigned checkPrimers(MetaMetadata::Dictionary const & dictionary, std::string const & path)
{
    SCOPED_TRACE(path);
    std::vector<std::vector<PrimerEntry>> primers = primersOf(path);
    EXPECT_FALSE(primers.empty());
    unsigned checked = 0;
    for (std::vector<PrimerEntry> const & primer : primers)
        for (PrimerEntry const & entry : primer)
        {
            Types::LocalTag tag(entry.tag);
            if (!tag.isStaticLocalTag())
                continue;
            ++checked;
            Types::UniversalLabel const * label = dictionary.find(tag);
            EXPECT_NE(nullptr, label) << n(tag.toString());
            if (label == nullptr)
                continue;
            EXPECT_EQ(n(entry.label.toString(Types::Dotted)), n(label->toString(Types::Dotted))) << n(tag.toString());
            Types::LocalTag const * back = dictionary.find(entry.label);
            EXPECT_NE(nullptr, back);
            if (back != nullptr)
            {
                EXPECT_EQ(tag, *back);
            }
        }
    return checked;
}
} // namespace

TEST(StandardDictionaryPrimer, StaticTagsOfTheSampleFiles)
{
    VELLUM_REQUIRE_SHARED();
    std::vector<std::string> files = VellumTest::sampleFiles();
    if (files.empty())
        GTEST_SKIP() << "no sample MXF files in the shared folder";
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    for (std::string const & file : files)
        EXPECT_GT(checkPrimers(*dictionary, file), 20u) << file;
}

TEST(StandardDictionaryPrimer, StaticTagsOfFilesMadeByFfmpeg)
{
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    unsigned files = 0;
    for (std::string const & name : VellumTest::ffmpegFixtureNames())
    {
        std::string path = VellumTest::ffmpegFixture(name);
        if (path.empty())
            continue;
        ++files;
        EXPECT_GT(checkPrimers(*dictionary, path), 20u) << name;
    }
    if (files == 0)
        GTEST_SKIP() << "ffmpeg is not installed";
}
