// Draining the MPEG-2 video analyzer over a long elementary stream (about 300 MiB, made once with
// ffmpeg in the temporary folder: 720x576 long GOP at 50 Mbit/s) against a plain fread loop over
// the same file in the same run. The counter vs_fread is the fastest fread pass over the fastest
// drain; each iteration times one of each, which keeps the noise of a shared machine out of the
// ratio. The file must sit in the page cache: it is read once before anything is measured.
// Without ffmpeg the benchmark is skipped.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <vector>

#include "DataIO/File/FileDataSource.h"
#include "DataIO/File/FileSliceSource.h"
#include "Essence/BlockPool.h"
#include "Essence/MPEG/MPEG2VideoAnalyzer.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using namespace Vellum;

namespace
{
unsigned long long const MIB = 1ull << 20;
std::size_t const READ = 1 << 20;
// The analyzer's blocks: small enough that the scan finds them still in the cache behind the copy.
std::size_t const BLOCK = 256 << 10;

unsigned long long fileSize(std::string const & path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 ? (unsigned long long)info.st_size : 0;
}

// The elementary stream, made on first use; "" without ffmpeg.
std::string const & stream()
{
    static std::string const path = [] {
        char const * tmp = std::getenv("TMPDIR");
        std::string file = std::string(tmp != nullptr && *tmp != 0 ? tmp : "/tmp") + "/vellum-bench-mpeg2-300MiB.m2v";
        if (fileSize(file) >= 250 * MIB)
            return file;
        if (std::system("command -v ffmpeg >/dev/null 2>&1") != 0)
            return std::string();
        std::fprintf(stderr, "making %s with ffmpeg (about a minute)\n", file.c_str());
        std::string command = "ffmpeg -v error -nostdin -y -f lavfi -i testsrc=size=720x576:rate=25 -t 50 -c:v mpeg2video "
                              "-g 12 -bf 2 -b:v 50M -minrate 50M -maxrate 50M -bufsize 2000000 -f mpeg2video '" +
                              file + ".partial' && mv '" + file + ".partial' '" + file + "'";
        if (std::system(command.c_str()) != 0)
            return std::string();
        return file;
    }();
    return path;
}

unsigned long long freadAll(std::string const & path, std::vector<unsigned char> & buffer)
{
    std::FILE * f = std::fopen(path.c_str(), "rb");
    if (!f)
        return 0;
    unsigned long long total = 0;
    std::size_t got;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), f)) != 0)
        total += got;
    std::fclose(f);
    return total;
}

// Every edit unit of the stream; gives the bytes of all units.
template <class Source>
unsigned long long drain(Templates::SharedPtr<Source> source, unsigned long long & units)
{
    Essence::MPEG::MPEG2VideoAnalyzer analyzer(source, BLOCK);
    analyzer.preload();
    GenericContainer::EditUnit unit;
    unsigned long long bytes = 0;
    while (analyzer.nextEditUnit(unit))
    {
        bytes += unit.data.data_size();
        ++units;
    }
    return bytes;
}

double seconds(std::chrono::steady_clock::duration d) { return std::chrono::duration<double>(d).count(); }

// The processor time of this thread, user and system: on a shared machine it shows the work done
// better than the wall clock does.
double cpuSeconds()
{
    timespec now;
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

void run(benchmark::State & state, bool slices)
{
    std::string const & path = stream();
    if (path.empty())
        return state.SkipWithError("ffmpeg is absent: no stream to read");
    std::vector<unsigned char> buffer(READ);
    freadAll(path, buffer);
    Templates::wstring wide = Utils::wide(path.c_str());
    unsigned long long bytes = 0, units = 0, fileBytes = 0;
    double freadSeconds = 1e9, drainSeconds = 1e9, freadCpu = 1e9, drainCpu = 1e9;
    try
    {
        for (auto _ : state)
        {
            std::chrono::steady_clock::time_point t0 = std::chrono::steady_clock::now();
            double c0 = cpuSeconds();
            fileBytes = freadAll(path, buffer);
            freadSeconds = std::min(freadSeconds, seconds(std::chrono::steady_clock::now() - t0));
            freadCpu = std::min(freadCpu, cpuSeconds() - c0);
            t0 = std::chrono::steady_clock::now();
            c0 = cpuSeconds();
            if (slices)
                bytes += drain(Templates::SharedPtr<DataIO::SliceSource>(
                                   new DataIO::File::FileSliceSource(
                                   wide.c_str(), Templates::SharedPtr<DataIO::BlockFactory>(new Essence::BlockPool(BLOCK)),
                                   BLOCK, BLOCK)),
                               units);
            else
                bytes += drain(Templates::SharedPtr<DataIO::DataSource>(new DataIO::File::FileDataSource(wide.c_str(), 0)),
                               units);
            drainSeconds = std::min(drainSeconds, seconds(std::chrono::steady_clock::now() - t0));
            drainCpu = std::min(drainCpu, cpuSeconds() - c0);
        }
    }
    catch (Exceptions::BaseException const & e)
    {
        return state.SkipWithError(e.whatUtf8().c_str());
    }
    double const iterations = double(state.iterations());
    state.SetBytesProcessed(int64_t(bytes));
    state.counters["file_MiB"] = double(fileBytes) / MIB;
    state.counters["units"] = double(units) / iterations;
    state.counters["fread_ms"] = freadSeconds * 1000;
    state.counters["drain_ms"] = drainSeconds * 1000;
    state.counters["vs_fread"] = freadSeconds / drainSeconds;
    state.counters["vs_fread_cpu"] = freadCpu / drainCpu;
    rusage usage;
    ::getrusage(RUSAGE_SELF, &usage);
    state.counters["maxrss_MiB"] = double(usage.ru_maxrss) / 1024;
}

// Blocks of 256 KiB from a pool, read by a FileSliceSource.
void BM_MPEG2AnalyzerOverSlices(benchmark::State & state) { run(state, true); }
BENCHMARK(BM_MPEG2AnalyzerOverSlices)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

// Blocks of 256 KiB filled from an unbuffered FileDataSource.
void BM_MPEG2AnalyzerOverBytes(benchmark::State & state) { run(state, false); }
BENCHMARK(BM_MPEG2AnalyzerOverBytes)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();
} // namespace
