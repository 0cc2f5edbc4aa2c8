// A header built from scratch with createMetadataSet, written with its Primer into a header-only
// file: read back by the library and, when it is installed, by mediainfo.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include "Metadata/Structural/HeaderBuilding.h"
#include "Metadata/Structural/HeaderLoading.h"
#include "Metadata/Structural/PrefaceHelpers.h"

using namespace Vellum;
using namespace Vellum::StructuralTest;

namespace
{
std::string run(std::string const & command)
{
    std::string out;
    FILE * pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return out;
    char buffer[4096];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        out.append(buffer, got);
    ::pclose(pipe);
    return out;
}

bool haveMediainfo() { return ::system("mediainfo --Version > /dev/null 2>&1") == 0; }

// The JSON without the blanks between its tokens (none of the values that the test reads has any).
std::string compact(std::string const & json)
{
    std::string out;
    bool inString = false;
    for (size_t i = 0; i < json.size(); ++i)
    {
        char c = json[i];
        if (inString && c == '\\')
        {
            out += c;
            out += json[++i];
            continue;
        }
        if (c == '"')
            inString = !inString;
        if (inString || (c != ' ' && c != '\n' && c != '\r' && c != '\t'))
            out += c;
    }
    return out;
}

// The text of `"key":"value"` within the part of `json` that starts at `from`, before `to`.
std::string field(std::string const & json, size_t from, size_t to, std::string const & key)
{
    std::string const wanted = "\"" + key + "\":\"";
    size_t at = json.find(wanted, from);
    if (at == std::string::npos || at >= to)
        return std::string();
    at += wanted.size();
    return json.substr(at, json.find('"', at) - at);
}

struct Track
{
    std::string type;
    size_t begin, end;
};

std::vector<Track> tracksOf(std::string const & json)
{
    std::vector<Track> tracks;
    size_t at = 0;
    while ((at = json.find("\"@type\":\"", at)) != std::string::npos)
    {
        at += 9;
        Track track{json.substr(at, json.find('"', at) - at), at, std::string::npos};
        if (!tracks.empty())
            tracks.back().end = at;
        tracks.push_back(track);
    }
    return tracks;
}

std::string writeFile(std::vector<unsigned char> const & bytes)
{
    std::string path = VellumTest::temporaryPath(".mxf");
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<char const *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path;
}
} // namespace

TEST(StructuralFromScratch, HeaderOnlyFileReadsBackWithTheSameTree)
{
    BuiltHeader built = buildHeader(250);
    std::vector<unsigned char> const file = headerOnlyFile(*built.metadata);
    LoadedHeader loaded = loadHeader(file);
    ASSERT_TRUE(loaded.metadata != nullptr);
    EXPECT_EQ(0u, loaded.skipped);
    EXPECT_EQ(built.metadata->size(), loaded.metadata->size());

    Metadata::Structural::Preface * preface = Metadata::Structural::findPreface(*loaded.metadata);
    ASSERT_NE(nullptr, preface->contentStorage());
    Metadata::Structural::ContentStorage * storage = preface->contentStorage();
    ASSERT_EQ(2u, storage->packagesCount());
    EXPECT_EQ(*built.source->packageUID(), *storage->package(1u)->packageUID());
    EXPECT_EQ(*op1a().rawBuffer(), *Metadata::Structural::operationalPattern(*loaded.metadata)->rawBuffer());
    EXPECT_EQ(3u, Metadata::Structural::essenceContainers(*loaded.metadata).size());

    Metadata::Structural::SourcePackage * source =
        Metadata::Structural::metadataSetAs<Metadata::Structural::SourcePackage>(storage->package(1u));
    ASSERT_NE(nullptr, source);
    ASSERT_EQ(3u, source->tracksCount());
    Metadata::Structural::TimelineTrack * sound =
        Metadata::Structural::metadataSetAs<Metadata::Structural::TimelineTrack>(source->track(Types::UInt32(3)));
    ASSERT_NE(nullptr, sound);
    EXPECT_EQ(48000, sound->editRate()->numerator());
    EXPECT_EQ(480000, sound->sequence()->duration()->value());
    Types::UniversalLabel const * container = Metadata::Structural::essenceULOfTrack(*source, sound);
    ASSERT_NE(nullptr, container);
    EXPECT_EQ(waveContainer(), *container);
    EXPECT_EQ(2u, Metadata::Structural::metadataSetAs<Metadata::Structural::MultipleDescriptor>(source->descriptor())
                      ->subDescriptorUIDsCount());
    EXPECT_EQ(std::string("Vellum"), n(preface->identification(0u)->companyName()->value()));
}

TEST(StructuralFromScratch, MediainfoReadsTheHeaderOnlyFileAsOP1a)
{
    if (!haveMediainfo())
        GTEST_SKIP() << "mediainfo is not installed (apt-get install mediainfo)";
    BuiltHeader built = buildHeader(250);
    std::string const path = writeFile(headerOnlyFile(*built.metadata));
    std::string const json = compact(run("mediainfo --Output=JSON '" + path + "'"));
    std::remove(path.c_str());
    ASSERT_NE(std::string::npos, json.find("\"media\"")) << json;

    std::vector<Track> tracks = tracksOf(json);
    ASSERT_FALSE(tracks.empty()) << json;
    ASSERT_EQ("General", tracks[0].type);
    EXPECT_EQ("MXF", field(json, tracks[0].begin, tracks[0].end, "Format")) << json;
    EXPECT_EQ("OP-1a", field(json, tracks[0].begin, tracks[0].end, "Format_Profile")) << json;
    EXPECT_EQ("10.000", field(json, tracks[0].begin, tracks[0].end, "Duration")) << json;

    bool video = false, audio = false;
    for (Track const & track : tracks)
    {
        if (track.type == "Video")
        {
            video = true;
            EXPECT_EQ("2", field(json, track.begin, track.end, "ID")) << json;
            EXPECT_EQ("25.000", field(json, track.begin, track.end, "FrameRate")) << json;
            EXPECT_EQ("10.000", field(json, track.begin, track.end, "Duration")) << json;
            EXPECT_EQ("1920", field(json, track.begin, track.end, "Width")) << json;
            EXPECT_EQ("1080", field(json, track.begin, track.end, "Height")) << json;
        }
        if (track.type == "Audio")
        {
            audio = true;
            EXPECT_EQ("3", field(json, track.begin, track.end, "ID")) << json;
            EXPECT_EQ("48000", field(json, track.begin, track.end, "SamplingRate")) << json;
            EXPECT_EQ("10.000", field(json, track.begin, track.end, "Duration")) << json;
            EXPECT_EQ("2", field(json, track.begin, track.end, "Channels")) << json;
        }
    }
    EXPECT_TRUE(video) << json;
    EXPECT_TRUE(audio) << json;
}
