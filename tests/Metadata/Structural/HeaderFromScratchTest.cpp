// A header built from scratch with createMetadataSet, written with its Primer into a header-only
// file: read back by the library and, when it is installed, by mediainfo.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <sys/wait.h>

#if __has_include(<nlohmann/json.hpp>)
#include <nlohmann/json.hpp>
#define VELLUM_HAVE_JSON 1
#endif

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
    ASSERT_TRUE(loaded.metadata.get() != nullptr);
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
#ifndef VELLUM_HAVE_JSON
    GTEST_SKIP() << "the nlohmann/json header is not installed";
#else
    if (!haveMediainfo())
        GTEST_SKIP() << "mediainfo is not installed (apt-get install mediainfo)";
    BuiltHeader built = buildHeader(250);
    std::string const path = writeFile(headerOnlyFile(*built.metadata));
    std::string const text = run("mediainfo --Output=JSON '" + path + "'");
    std::remove(path.c_str());
    nlohmann::json const json = nlohmann::json::parse(text, nullptr, false);
    ASSERT_TRUE(json.contains("media")) << text;

    // Each track: its type, then the fields the test reads and their values.
    std::map<std::string, std::map<std::string, std::string>> const expected = {
        {"General", {{"Format", "MXF"}, {"Format_Profile", "OP-1a"}, {"Duration", "10.000"}}},
        {"Video", {{"ID", "2"}, {"FrameRate", "25.000"}, {"Duration", "10.000"}, {"Width", "1920"}, {"Height", "1080"}}},
        {"Audio", {{"ID", "3"}, {"SamplingRate", "48000"}, {"Duration", "10.000"}, {"Channels", "2"}}}};
    std::set<std::string> seen;
    for (nlohmann::json const & track : json.at("media").at("track"))
    {
        std::string const type = track.value("@type", "");
        auto wanted = expected.find(type);
        if (wanted == expected.end())
            continue;
        seen.insert(type);
        for (auto const & field : wanted->second)
            EXPECT_EQ(field.second, track.value(field.first, "")) << type << " " << field.first << "\n" << text;
    }
    EXPECT_EQ(3u, seen.size()) << text;
#endif
}
