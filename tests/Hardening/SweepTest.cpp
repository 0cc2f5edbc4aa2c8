// Every sample, every ffmpeg fixture and the example file, cut at 200 places and with 200 single
// bytes changed, each read completely in memory: only exceptions of the family may come out,
// no walk may run away, and no variant costs much more than reading the intact file does.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "Support/Fixtures.h"
#include "Support/ReadEverything.h"

namespace
{
typedef std::vector<unsigned char> Bytes;

unsigned const VARIANTS = 200;
// A variant may cost this many times the reading of the whole file, or the floor, whichever is
// more: damage that makes a reader loop or grow out of proportion shows, a slow build does not.
double const VARIANT_COST_FACTOR = 8.0;
double const VARIANT_FLOOR_SECONDS = 1.0;

// Caps per variant that keep the sweep short: the metadata of the final partition only, scans
// from the end not repeated, few body packets and edit units.
VellumTest::ReadLimits sweepLimits()
{
    VellumTest::ReadLimits limits;
    limits.maximumPacketsPerPartition = 512;
    limits.maximumSequentialPackets = 2048;
    limits.maximumEditUnits = 16;
    limits.repeatTailScans = false;
    limits.metadataOfEveryPartition = false;
    return limits;
}

double cpuSeconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

enum Reading
{
    Both,
    RandomAccessOnly,
    SequentialOnly
};

// Reads one variant; `budget` is the processor time it may take (0: no bound).
VellumTest::ReadReport readVariant(unsigned char const * data, std::size_t size, std::string const & what,
                                   Reading reading, double budget = 0)
{
    VellumTest::ReadLimits limits = sweepLimits();
    limits.validateMetadata = reading == Both;
    limits.randomAccess = reading != SequentialOnly;
    limits.sequential = reading != RandomAccessOnly;
    VellumTest::ReadReport report;
    double const start = cpuSeconds();
    try
    {
        report = VellumTest::readEverything(data, size, limits);
    }
    catch (std::exception const & e)
    {
        ADD_FAILURE() << what << ": " << e.what();
        return report;
    }
    EXPECT_FALSE(report.runaway) << what;
    if (budget > 0)
    {
        EXPECT_LT(cpuSeconds() - start, budget) << what;
    }
    return report;
}

void sweep(std::string const & path)
{
    SCOPED_TRACE(path);
    Bytes const file = VellumTest::readFile(path);
    ASSERT_FALSE(file.empty());
    auto const start = std::chrono::steady_clock::now();
    double const cpuStart = cpuSeconds();

    // The whole file reads without running away, through both readers and with its metadata
    // validated. Each variant is read by one of the two readers in turn and skips the validation
    // queries: under the sanitizers, loading a large header metadata twice for each of 400
    // variants would take minutes. The whole-file fuzz target does all of it for every input.
    VellumTest::ReadReport const whole = readVariant(file.data(), file.size(), "whole", Both);
    double const budget = std::max(VARIANT_FLOOR_SECONDS, VARIANT_COST_FACTOR * (cpuSeconds() - cpuStart));
    // A reading that met nothing would let every variant pass.
    EXPECT_GE(whole.partitions, 2u);
    EXPECT_GT(whole.metadataSets, 0u);
    EXPECT_GT(whole.sequentialPackets, 0u);

    // Cuts spread over the file, the first at the start and the last one byte short of the end.
    for (unsigned i = 0; i < VARIANTS; ++i)
    {
        std::size_t const cut = std::size_t((file.size() - 1) * uint64_t(i) / (VARIANTS - 1));
        readVariant(file.data(), cut, "cut at " + std::to_string(cut),
                    i % 2 == 0 ? RandomAccessOnly : SequentialOnly, budget);
    }

    // Single bytes changed at random places to random other values, the same on every run.
    std::mt19937 generator(20261121u);
    std::uniform_int_distribution<std::size_t> place(0, file.size() - 1);
    std::uniform_int_distribution<int> flip(1, 255);
    Bytes variant = file;
    for (unsigned i = 0; i < VARIANTS; ++i)
    {
        std::size_t const at = place(generator);
        unsigned char const original = variant[at];
        variant[at] = static_cast<unsigned char>(original ^ flip(generator));
        readVariant(variant.data(), variant.size(), "byte " + std::to_string(at) + " changed",
                    i % 2 == 0 ? RandomAccessOnly : SequentialOnly, budget);
        variant[at] = original;
    }

    // The bounds are on the processor time of this thread, which a busy machine does not stretch.
    double const cpu = cpuSeconds() - cpuStart;
    double const seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("[   SWEPT  ] %s: %.1f s of processor time, %.1f s in all; whole file: %u partitions, %u sets, "
                "%u edit units, %u exceptions (%s)\n",
                path.c_str(), cpu, seconds, whole.partitions, whole.metadataSets, whole.editUnits, whole.exceptions,
                whole.firstException.c_str());
}
} // namespace

TEST(HardeningSweep, SampleFiles)
{
    VELLUM_REQUIRE_SHARED();
    std::vector<std::string> const files = VellumTest::sampleFiles();
    ASSERT_FALSE(files.empty());
    for (std::string const & path : files)
        sweep(path);
}

TEST(HardeningSweep, FfmpegFixtures)
{
    unsigned made = 0;
    for (std::string const & name : VellumTest::ffmpegFixtureNames())
    {
        std::string const path = VellumTest::ffmpegFixture(name);
        if (path.empty())
            continue;
        ++made;
        sweep(path);
    }
    if (made == 0)
        GTEST_SKIP() << "ffmpeg is not installed";
}

TEST(HardeningSweep, ExampleFile)
{
    sweep(std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf");
}
