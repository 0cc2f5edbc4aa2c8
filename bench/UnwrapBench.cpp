// Reading essence end to end through MXFIO::EssenceReader, each beside a plain baseline in the same
// run:
// - unwrapping all essence of a frame-wrapped OP1a file of more than 1 GiB (made once with ffmpeg
//   in the temporary folder: MPEG-2 intra at 50 Mbit/s with 16-bit PCM) against a plain fread loop
//   over the same file; the counter vs_fread is the fastest fread pass over the fastest unwrap
//   (time includes a fread pass each iteration);
// - opening each sample file, loading its final header metadata and reading its first edit unit,
//   against reading the first 64 KiB of the file with fread;
// - the median of 10,000 seeks to a random edit unit followed by reading it, against the median of
//   as many fseek + fread of the same size at a random place.
// The files must sit in the page cache for the numbers to mean anything: each benchmark reads its
// file once before it measures. Without ffmpeg the benchmarks of the big file are skipped.

#include <benchmark/benchmark.h>

#include "BenchSupport.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <random>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>
#include <vector>

#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/MaterialPackage.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "MXFIO/EssenceFile.h"
#include "MXFIO/EssenceReader.h"
#include "MXFIO/Reader2.h"
#include "Types/UMID.h"
#include "Utils/Text.h"

using namespace Vellum;
using namespace VellumBench;
namespace S = Metadata::Structural;
typedef Templates::Rational<int64> Time;

namespace
{
size_t const SLICE = 1 << 20;
unsigned long long const GIB = 1ull << 30;

// The frame-wrapped OP1a file of more than 1 GiB, made on first use; "" without ffmpeg.
std::string const & op1aFile()
{
    static std::string const path =
        makeFile("vellum-bench-op1a-1GiB.mxf", GIB,
                 "-f lavfi -i testsrc=size=720x576:rate=25 -f lavfi -i sine=frequency=1000:sample_rate=48000 -t 172 "
                 "-c:v mpeg2video -g 1 -b:v 50M -minrate 50M -maxrate 50M -bufsize 2000000 -rc_init_occupancy 2000000 "
                 "-c:a pcm_s16le -f mxf");
    return path;
}

// One file opened through its final header metadata, with an essence reader over its Material
// Package (else its first package with essence); the dictionary is made once for all files.
struct Opened
{
    explicit Opened(std::string const & path)
        : file(Utils::wide(path.c_str()), 1 << 20, dictionary()), essence(file.essenceReader())
    {
    }

    static Templates::SharedPtr<MetaMetadata::Dictionary> dictionary()
    {
        static Templates::SharedPtr<MetaMetadata::Dictionary> d = MetaMetadata::createStandardDictionary();
        return d;
    }

    MXFIO::EssenceFile file;
    Templates::auto_ptr<MXFIO::EssenceReader> essence;
};

// Reads the unit's value in slices; gives its bytes.
unsigned long long readValue(MXFIO::EssenceReader::ElementEditUnit & unit, std::vector<unsigned char> & buffer)
{
    KLV::Value & value = unit.element.packet->value();
    unsigned long long total = 0;
    while (value.remaining() != 0)
    {
        uint64 got = value.read(buffer.data(), buffer.size());
        if (got == 0)
            break;
        total += got;
    }
    return total;
}

void BM_UnwrapFreadBaseline(benchmark::State & state)
{
    std::string const & path = op1aFile();
    if (path.empty())
        return state.SkipWithError("ffmpeg is absent: no file of 1 GiB to read");
    std::vector<unsigned char> buffer(SLICE);
    freadAll(path, buffer);
    unsigned long long bytes = 0;
    for (auto _ : state)
        bytes += freadAll(path, buffer);
    state.SetBytesProcessed(int64_t(bytes));
}
BENCHMARK(BM_UnwrapFreadBaseline)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

void BM_UnwrapEssenceReader(benchmark::State & state)
{
    std::string const & path = op1aFile();
    if (path.empty())
        return state.SkipWithError("ffmpeg is absent: no file of 1 GiB to read");
    std::vector<unsigned char> buffer(SLICE);
    freadAll(path, buffer);
    // Each iteration times a plain fread pass over the same file beside the unwrap; the fastest
    // of each is compared, which keeps the noise of a shared machine out of the ratio.
    unsigned long long bytes = 0, units = 0, fileBytes = 0;
    BestTime freadTime, unwrapTime;
    try
    {
        for (auto _ : state)
        {
            fileBytes = freadTime([&] { return freadAll(path, buffer); });
            unwrapTime([&] {
                Opened file(path);
                MXFIO::EssenceReader::ElementEditUnit unit;
                while (file.essence->nextElementEditUnit(65536, unit) && unit.element.packet)
                {
                    bytes += readValue(unit, buffer);
                    ++units;
                }
            });
        }
    }
    catch (Exceptions::BaseException const & e)
    {
        return state.SkipWithError(e.whatUtf8().c_str());
    }
    double const iterations = double(state.iterations());
    state.SetBytesProcessed(int64_t(bytes));
    state.counters["file_MiB"] = double(fileBytes) / (1 << 20);
    state.counters["essence_MiB"] = double(bytes) / iterations / (1 << 20);
    state.counters["units"] = double(units) / iterations;
    reportAgainstFread(state, "unwrap", freadTime, unwrapTime);
}
BENCHMARK(BM_UnwrapEssenceReader)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

// Opening, final metadata and the first edit unit of one file.
void openAndReadFirst(benchmark::State & state, std::string const & path)
{
    std::vector<unsigned char> buffer(SLICE);
    // The baseline: the first 64 KiB with fread.
    std::vector<unsigned char> head(65536);
    std::chrono::steady_clock::time_point t0 = std::chrono::steady_clock::now();
    int const baselineRuns = 100;
    for (int i = 0; i < baselineRuns; ++i)
    {
        std::FILE * f = std::fopen(path.c_str(), "rb");
        if (!f)
            return state.SkipWithError("cannot open the file");
        benchmark::DoNotOptimize(std::fread(head.data(), 1, head.size(), f));
        std::fclose(f);
    }
    double const baseline = seconds(std::chrono::steady_clock::now() - t0) / baselineRuns;
    try
    {
        for (auto _ : state)
        {
            Opened file(path);
            MXFIO::EssenceReader::ElementEditUnit unit;
            if (!file.essence->nextElementEditUnit(65536, unit) || !unit.element.packet)
                return state.SkipWithError("no first edit unit");
            benchmark::DoNotOptimize(readValue(unit, buffer));
        }
    }
    catch (Exceptions::BaseException const & e)
    {
        return state.SkipWithError(e.whatUtf8().c_str());
    }
    state.counters["fread64KiB_us"] = baseline * 1e6;
}

std::string samplesFolder()
{
    char const * env = std::getenv("VELLUM_SAMPLES");
    if (env && *env)
        return env;
    // The benchmark lives in the build folder of the project; the samples beside the project.
    char self[4096];
    ssize_t n = ::readlink("/proc/self/exe", self, sizeof self - 1);
    if (n > 0)
    {
        self[n] = 0;
        std::string dir(self);
        for (int up = 0; up < 4 && dir.find('/') != std::string::npos; ++up)
        {
            dir = dir.substr(0, dir.rfind('/'));
            std::string candidate = dir + "/shared/samples";
            if (fileSize(candidate) != 0)
                return candidate;
            candidate = dir + "/../shared/samples";
            if (fileSize(candidate) != 0)
                return candidate;
        }
    }
    return "../shared/samples";
}

// One benchmark for each sample file, and one for the big file when it is there already.
struct RegisterOpenBenchmarks
{
    RegisterOpenBenchmarks()
    {
        std::vector<std::string> files;
        std::string folder = samplesFolder();
        if (DIR * dir = ::opendir(folder.c_str()))
        {
            while (dirent * entry = ::readdir(dir))
            {
                std::string name = entry->d_name;
                if (name.size() > 4 && name.compare(name.size() - 4, 4, ".mxf") == 0)
                    files.push_back(folder + "/" + name);
            }
            ::closedir(dir);
        }
        std::sort(files.begin(), files.end());
        std::string big = tempFolder() + "/vellum-bench-op1a-1GiB.mxf";
        if (fileSize(big) >= GIB)
            files.push_back(big);
        if (files.empty())
            std::fprintf(stderr, "no sample files in %s: set VELLUM_SAMPLES\n", folder.c_str());
        for (std::string const & file : files)
        {
            std::string name = "BM_OpenMetadataFirstUnit/" + file.substr(file.rfind('/') + 1);
            benchmark::RegisterBenchmark(name.c_str(), [file](benchmark::State & state) { openAndReadFirst(state, file); })
                ->Unit(benchmark::kMicrosecond);
        }
    }
} registerOpenBenchmarks;

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::nth_element(values.begin(), values.begin() + long(values.size() / 2), values.end());
    return values[values.size() / 2];
}

void BM_RandomSeekAndRead(benchmark::State & state)
{
    std::string const & path = op1aFile();
    if (path.empty())
        return state.SkipWithError("ffmpeg is absent: no file of 1 GiB to read");
    int const seeks = 10000;
    std::vector<unsigned char> buffer(SLICE);
    freadAll(path, buffer);
    try
    {
        Opened file(path);
        // Edit units of the first picture track (the file's edit rate is 25).
        Time const duration = file.essence->duration();
        long long const units = (long long)(duration.numerator() * 25 / duration.denominator());
        if (units <= 0)
            return state.SkipWithError("the essence has no duration");
        std::mt19937_64 random(7);
        std::uniform_int_distribution<long long> pick(0, units - 1);
        std::vector<double> times, baseline;
        unsigned long long failures = 0, unitBytes = 0;
        for (auto _ : state)
        {
            times.clear();
            for (int i = 0; i < seeks; ++i)
            {
                long long n = pick(random);
                std::chrono::steady_clock::time_point t0 = std::chrono::steady_clock::now();
                bool found = false;
                if (file.essence->seek(Time(n, 25)))
                {
                    MXFIO::EssenceReader::ElementEditUnit unit;
                    // The picture unit of the position (sound units of the same time may come first).
                    for (int k = 0; k < 8 && !found && file.essence->nextElementEditUnit(65536, unit) && unit.element.packet;
                         ++k)
                    {
                        unsigned long long got = readValue(unit, buffer);
                        if ((unit.trackNumber >> 24) == 0x15)
                        {
                            found = true;
                            unitBytes = got;
                        }
                    }
                }
                times.push_back(seconds(std::chrono::steady_clock::now() - t0));
                failures += found ? 0 : 1;
            }
        }
        // The baseline: as many fseek + fread of a unit's size at random places.
        std::FILE * f = std::fopen(path.c_str(), "rb");
        unsigned long long const size = fileSize(path);
        std::uniform_int_distribution<unsigned long long> place(0, size - unitBytes - 1);
        for (int i = 0; i < seeks && f; ++i)
        {
            std::chrono::steady_clock::time_point t0 = std::chrono::steady_clock::now();
            std::fseek(f, long(place(random)), SEEK_SET);
            benchmark::DoNotOptimize(std::fread(buffer.data(), 1, size_t(unitBytes), f));
            baseline.push_back(seconds(std::chrono::steady_clock::now() - t0));
        }
        if (f)
            std::fclose(f);
        state.counters["median_us"] = median(times) * 1e6;
        state.counters["fread_median_us"] = median(baseline) * 1e6;
        state.counters["failed_seeks"] = double(failures);
    }
    catch (Exceptions::BaseException const & e)
    {
        return state.SkipWithError(e.whatUtf8().c_str());
    }
}
BENCHMARK(BM_RandomSeekAndRead)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
} // namespace
