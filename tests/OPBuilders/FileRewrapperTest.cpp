// Rewrapping: every sample and ffmpeg fixture with essence, written again as OP1a frame-wrapped,
// clip-wrapped and OP-Atom, gives back the same edit units, track by track, with the same kinds,
// edit rates and durations; frame-wrapped results read in ffmpeg as the original does.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Structural/GenericPackage.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "MXFIO/EssenceFile.h"
#include "OPBuilders/FileRewrapper.h"
#include "Support/Fixtures.h"
#include "Support/Md5.h"
#include "Support/Process.h"
#include "Types/Rational.h"
#include "Types/UTF16String.h"
#include "Utils/Text.h"

namespace
{
using namespace Vellum;
namespace S = Metadata::Structural;

// What a track of the package a reader reads holds: its kind, edit rate and duration, and the
// digest and count of its edit units as stored.
struct TrackEssence
{
    int kind;
    long long rateNumerator, rateDenominator;
    long long duration;
    std::string digest;
    unsigned long long units;
};

std::vector<TrackEssence> essenceOf(std::string const & path)
{
    MXFIO::EssenceFile file(Utils::wide(path.c_str()));
    Templates::auto_ptr<MXFIO::EssenceReader> reader = file.essenceReader();
    std::vector<unsigned int> ids;
    std::vector<TrackEssence> tracks;
    for (S::TimelineTrack * track : reader->essenceTracks())
    {
        ids.push_back(track->trackID()->value());
        Types::Rational const * rate = track->editRate();
        tracks.push_back(TrackEssence{S::trackKind(*track), rate->numerator(), rate->denominator(),
                                      track->sequence() && track->sequence()->duration()
                                          ? static_cast<long long>(track->sequence()->duration()->value())
                                          : -1,
                                      "", 0});
    }
    std::vector<VellumTest::Md5> digests(ids.size());
    std::vector<unsigned char> buffer(1 << 16);
    MXFIO::EssenceReader::ElementEditUnit unit;
    while (reader->nextElementEditUnit(65536, unit) && unit.element.packet)
        for (size_t i = 0; i < ids.size(); ++i)
            if (ids[i] == unit.trackID)
            {
                KLV::Value & value = unit.element.packet->value();
                while (uint64 got = value.read(buffer.data(), buffer.size()))
                    digests[i].update(buffer.data(), size_t(got));
                ++tracks[i].units;
            }
    for (size_t i = 0; i < ids.size(); ++i)
        tracks[i].digest = digests[i].hex();
    return tracks;
}

std::vector<std::string> rewrap(std::string const & in, std::string const & out, bool clip, bool opAtom)
{
    OPBuilders::FileWrapper::Options options;
    options.clipWrap = clip;
    options.opAtom = opAtom;
    OPBuilders::FileRewrapper rewrapper(MetaMetadata::createStandardDictionary(), options);
    std::vector<std::string> paths;
    for (Templates::wstring const & path :
         rewrapper.rewrap(Utils::wide(in.c_str()), Utils::wide(out.c_str()), OPBuilders::FileWrapper::Progress()))
        paths.push_back(Utils::narrow(path).c_str());
    return paths;
}

// The files to rewrap: the samples and fixtures whose essence the library reads, and one that
// starts at 10:00:00:00.
std::vector<std::string> filesWithEssence()
{
    std::vector<std::string> files, candidates = VellumTest::sampleAndFixtureFiles();
    candidates.push_back(VellumTest::ffmpegFixture("op1a-timecode.mxf"));
    for (std::string const & path : candidates)
    {
        try
        {
            if (!essenceOf(path).empty())
                files.push_back(path);
        }
        catch (Exceptions::BaseException const &)
        {
        }
    }
    return files;
}

TEST(FileRewrapper, EveryLayoutKeepsTheEditUnitsAndTracks)
{
    std::vector<std::string> const files = filesWithEssence();
    if (files.empty())
        GTEST_SKIP() << "neither the samples of ../shared nor ffmpeg are here";
    struct Layout
    {
        char const * name;
        bool clip, opAtom;
    } const layouts[] = {{"OP1a frame-wrapped", false, false}, {"clip-wrapped", true, false}, {"OP-Atom", false, true}};
    for (std::string const & in : files)
    {
        std::vector<TrackEssence> const original = essenceOf(in);
        bool const frameOnly = in.find("d10") != std::string::npos;
        for (Layout const & layout : layouts)
        {
            SCOPED_TRACE(in + " as " + layout.name);
            std::string const out = VellumTest::temporaryPath(layout.opAtom ? "-atom" : ".mxf");
            if (layout.opAtom)
            {
                ASSERT_EQ(0, std::system(("mkdir -p " + VellumTest::shellQuoted(out)).c_str()));
            }
            if (frameOnly && (layout.clip || layout.opAtom))
            {
                // D-10 has no clip-wrapped mapping: the rewrapper refuses instead of mislabelling.
                EXPECT_THROW(rewrap(in, out, layout.clip, layout.opAtom), Exceptions::InvalidValue);
                std::system(("rm -rf " + VellumTest::shellQuoted(out)).c_str());
                continue;
            }
            std::vector<std::string> const written = rewrap(in, out, layout.clip, layout.opAtom);
            std::vector<TrackEssence> copied;
            for (std::string const & path : written)
                for (TrackEssence const & track : essenceOf(path))
                    copied.push_back(track);
            EXPECT_EQ(layout.opAtom ? original.size() : 1u, written.size());
            ASSERT_EQ(original.size(), copied.size());
            for (size_t i = 0; i < original.size(); ++i)
            {
                // Sound may come in units of another size (a clip cut into frames): its bytes and
                // its length in seconds must not change; pictures and data keep every unit.
                TrackEssence const & a = original[i];
                TrackEssence const & b = copied[i];
                EXPECT_EQ(a.kind, b.kind) << "track " << i;
                EXPECT_EQ(a.digest, b.digest) << "track " << i;
                EXPECT_EQ(a.duration * a.rateDenominator * b.rateNumerator,
                          b.duration * b.rateDenominator * a.rateNumerator)
                    << "track " << i << ": " << a.duration << " at " << a.rateNumerator << "/" << a.rateDenominator
                    << " against " << b.duration << " at " << b.rateNumerator << "/" << b.rateDenominator;
                if (a.kind != S::SoundTrack)
                {
                    EXPECT_EQ(a.units, b.units) << "track " << i;
                }
            }
            if (!layout.clip && !layout.opAtom)
            {
                // The package's name and start time code carry over.
                MXFIO::EssenceFile original(Utils::wide(in.c_str())), copy(Utils::wide(out.c_str()));
                EXPECT_EQ(Utils::narrow(S::startTimecode(original.package()).toString()),
                          Utils::narrow(S::startTimecode(copy.package()).toString()));
                Types::UTF16String const * name = original.package().packageName();
                ASSERT_EQ(name != nullptr, copy.package().packageName() != nullptr);
                if (name != nullptr)
                {
                    EXPECT_EQ(Utils::narrow(name->value()), Utils::narrow(copy.package().packageName()->value()));
                }
                if (in.find("/samples/") == std::string::npos)
                {
                    EXPECT_EQ(VellumTest::frameMd5(in, "v").md5, VellumTest::frameMd5(out, "v").md5);
                }
            }
            std::system(("rm -rf " + VellumTest::shellQuoted(out)).c_str());
        }
    }
}
} // namespace
