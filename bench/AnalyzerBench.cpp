// Against a plain fread loop over the same files in the same run:
// - draining the MPEG-2 video analyzer over a long elementary stream (about 300 MiB, made once with
//   ffmpeg in the temporary folder: 720x576 long GOP at 50 Mbit/s);
// - draining the Generic Container source of a frame multiplexer over an MPEG-2 analyzer and a PCM
//   analyzer, about 1 GiB of essence (a longer stream of the same kind, and 16-bit stereo sound of
//   the same length), into a sink that drops what it gets.
// The counter vs_fread is the fastest fread pass over the fastest drain; each iteration times one
// of each, which keeps the noise of a shared machine out of the ratio. The files must sit in the
// page cache: they are read once before anything is measured. Without ffmpeg the benchmarks are
// skipped.

#include <benchmark/benchmark.h>

#include "BenchSupport.h"

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
#include "Essence/Analyzers/PCMAnalyzer.h"
#include "Essence/MPEG/MPEG2VideoAnalyzer.h"
#include "GenericContainer/Multiplexer/Mux.h"
#include "MXFIO/FutureUpdater.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Packs/PrimerPack.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using namespace Vellum;
using namespace VellumBench;

namespace
{
unsigned long long const MIB = 1ull << 20;
std::size_t const READ = 1 << 20;
// The analyzer's blocks: small enough that the scan finds them still in the cache behind the copy.
std::size_t const BLOCK = 256 << 10;



std::string mpeg2Arguments(int seconds)
{
    return "-f lavfi -i testsrc=size=720x576:rate=25 -t " + std::to_string(seconds) +
           " -c:v mpeg2video -g 12 -bf 2 -b:v 50M -minrate 50M -maxrate 50M -bufsize 2000000 -f mpeg2video";
}

std::string const & stream()
{
    static std::string const path = makeFile("vellum-bench-mpeg2-300MiB.m2v", 250 * MIB, mpeg2Arguments(50));
    return path;
}

// 172 seconds: about 1 GiB of pictures, and their sound.
std::string const & longStream()
{
    static std::string const path = makeFile("vellum-bench-mpeg2-1GiB.m2v", 1000 * MIB, mpeg2Arguments(172));
    return path;
}

std::string const & longSound()
{
    static std::string const path = makeFile("vellum-bench-pcm-172s.wav", 30 * MIB,
                                             "-f lavfi -i sine=frequency=1000:sample_rate=48000 -t 172 -ac 2 "
                                             "-c:a pcm_s16le -f wav");
    return path;
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


void run(benchmark::State & state, bool slices)
{
    std::string const & path = stream();
    if (path.empty())
        return state.SkipWithError("ffmpeg is absent: no stream to read");
    std::vector<unsigned char> buffer(READ);
    freadAll(path, buffer);
    Templates::wstring wide = Utils::wide(path.c_str());
    unsigned long long bytes = 0, units = 0, fileBytes = 0;
    BestTime freadTime, drainTime;
    try
    {
        for (auto _ : state)
        {
            fileBytes = freadTime([&] { return freadAll(path, buffer); });
            bytes += drainTime([&] {
                if (slices)
                    return drain(Templates::SharedPtr<DataIO::SliceSource>(new DataIO::File::FileSliceSource(
                                     wide.c_str(), Templates::SharedPtr<DataIO::BlockFactory>(new Essence::BlockPool(BLOCK)),
                                     BLOCK, BLOCK)),
                                 units);
                return drain(Templates::SharedPtr<DataIO::DataSource>(new DataIO::File::FileDataSource(wide.c_str(), 0)),
                             units);
            });
        }
    }
    catch (Exceptions::BaseException const & e)
    {
        return state.SkipWithError(e.whatUtf8().c_str());
    }
    state.SetBytesProcessed(int64_t(bytes));
    state.counters["file_MiB"] = double(fileBytes) / MIB;
    state.counters["units"] = double(units) / double(state.iterations());
    reportAgainstFread(state, "drain", freadTime, drainTime);
}

// Blocks of 256 KiB from a pool, read by a FileSliceSource.
void BM_MPEG2AnalyzerOverSlices(benchmark::State & state) { run(state, true); }
BENCHMARK(BM_MPEG2AnalyzerOverSlices)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

// Blocks of 256 KiB filled from an unbuffered FileDataSource.
void BM_MPEG2AnalyzerOverBytes(benchmark::State & state) { run(state, false); }
BENCHMARK(BM_MPEG2AnalyzerOverBytes)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();
} // namespace

namespace
{
Templates::SharedPtr<DataIO::SliceSource> pooledFile(std::string const & path)
{
    Templates::wstring wide = Utils::wide(path.c_str());
    return Templates::SharedPtr<DataIO::SliceSource>(new DataIO::File::FileSliceSource(
        wide.c_str(), Templates::SharedPtr<DataIO::BlockFactory>(new Essence::BlockPool(BLOCK)), BLOCK, BLOCK));
}

// Header metadata with a Preface, for the multiplexer to describe its package in.
Templates::SharedPtr<Metadata::PartitionMetadata> headerMetadata()
{
    Metadata::Structural::initialize();
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata(new Metadata::PartitionMetadata(
        Templates::auto_ptr<Metadata::PartitionDictionary>(new Metadata::PartitionDictionary(
            MetaMetadata::createStandardDictionary(), Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack)))));
    metadata->createMetadataSet(Metadata::Structural::StructuralMetadataKeys::preface());
    return metadata;
}

// All the KLV data of the container; gives its bytes.
unsigned long long multiplex(std::string const & video, std::string const & sound, unsigned long long & packages)
{
    Templates::SharedPtr<GenericContainer::EssenceAnalyzer> picture(new Essence::MPEG::MPEG2VideoAnalyzer(pooledFile(video)));
    Templates::SharedPtr<GenericContainer::EssenceAnalyzer> pcm(
        new Essence::Analyzers::PCMAnalyzer(pooledFile(sound), Templates::Rational<int>(25, 1)));
    GenericContainer::Multiplexer::Mux mux(headerMetadata(), picture->universalLabel(), Templates::Rational<int>(25, 1));
    mux.addAnalyzer(picture, false, Templates::Rational<int64>(0, 1));
    mux.addAnalyzer(pcm, false, Templates::Rational<int64>(0, 1));
    Templates::auto_ptr<GenericContainer::Source> source = mux.commit();
    unsigned long long bytes = 0;
    for (bool more = true; more;)
    {
        DataIO::Chain chain;
        bool atBoundary = false;
        Templates::SharedPtr<MXFIO::FutureUpdater> updater;
        Templates::Rational<int64> duration;
        more = source->next(chain, atBoundary, updater, duration);
        bytes += chain.data_size();
        ++packages;
    }
    source->finalize();
    return bytes;
}

void BM_MuxMPEG2AndPCM(benchmark::State & state)
{
    std::string const & video = longStream();
    std::string const & sound = longSound();
    if (video.empty() || sound.empty())
        return state.SkipWithError("ffmpeg is absent: no streams to multiplex");
    std::vector<unsigned char> buffer(READ);
    freadAll(video, buffer);
    freadAll(sound, buffer);
    unsigned long long bytes = 0, packages = 0, fileBytes = 0;
    double freadSeconds = 1e9, drainSeconds = 1e9, freadCpu = 1e9, drainCpu = 1e9;
    try
    {
        for (auto _ : state)
        {
            std::chrono::steady_clock::time_point t0 = std::chrono::steady_clock::now();
            double c0 = cpuSeconds();
            fileBytes = freadAll(video, buffer) + freadAll(sound, buffer);
            freadSeconds = std::min(freadSeconds, seconds(std::chrono::steady_clock::now() - t0));
            freadCpu = std::min(freadCpu, cpuSeconds() - c0);
            t0 = std::chrono::steady_clock::now();
            c0 = cpuSeconds();
            bytes += multiplex(video, sound, packages);
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
    state.counters["files_MiB"] = double(fileBytes) / MIB;
    state.counters["container_MiB"] = double(bytes) / iterations / MIB;
    state.counters["next_calls"] = double(packages) / iterations;
    state.counters["fread_ms"] = freadSeconds * 1000;
    state.counters["drain_ms"] = drainSeconds * 1000;
    state.counters["vs_fread"] = freadSeconds / drainSeconds;
    state.counters["vs_fread_cpu"] = freadCpu / drainCpu;
    rusage usage;
    ::getrusage(RUSAGE_SELF, &usage);
    state.counters["maxrss_MiB"] = double(usage.ru_maxrss) / 1024;
}
BENCHMARK(BM_MuxMPEG2AndPCM)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
} // namespace
