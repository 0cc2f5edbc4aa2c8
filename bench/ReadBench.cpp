// Reading speed of the byte layer and of the KLV walk, each beside a plain baseline in the same
// run. The benchmark makes its files once in the temporary folder (they stay in the page cache).

#include <benchmark/benchmark.h>

#include "BenchSupport.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "DataIO/File/FileDataSource.h"
#include "DataIO/File/FileSliceSource.h"
#include "DataIO/SliceReader.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "Utils/Text.h"

using namespace Vellum;
using VellumBench::tempFolder;

namespace
{

bool haveFile(std::string const & path, unsigned long long size)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && (unsigned long long)info.st_size == size;
}

// A file of `count` KLV packets whose values are `valueSize` bytes (4-byte BER lengths).
std::string klvFile(unsigned long long count, unsigned long long valueSize)
{
    std::string path = tempFolder() + "/vellum-bench-klv-" + std::to_string(count) + "x" + std::to_string(valueSize);
    unsigned long long total = count * (20 + valueSize);
    if (haveFile(path, total))
        return path;
    FILE * f = std::fopen(path.c_str(), "wb");
    std::vector<unsigned char> packet(20 + valueSize, 0x5a);
    unsigned char const key[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01,
                                   0x0d, 0x01, 0x03, 0x01, 0x15, 0x01, 0x05, 0x01};
    std::copy(key, key + 16, packet.begin());
    packet[16] = 0x83;
    packet[17] = (unsigned char)(valueSize >> 16);
    packet[18] = (unsigned char)(valueSize >> 8);
    packet[19] = (unsigned char)valueSize;
    for (unsigned long long i = 0; i < count; ++i)
        std::fwrite(packet.data(), 1, packet.size(), f);
    std::fclose(f);
    return path;
}

std::string const & bigKlvFile()
{
    // 1 GiB: 10,486 packets of 100 KiB, rounded to whole packets.
    static std::string path = klvFile((1ull << 30) / (20 + 102400), 102400);
    return path;
}

void BM_FreadBaseline(benchmark::State & state)
{
    std::string const & path = bigKlvFile();
    std::vector<unsigned char> buffer(2 << 20);
    unsigned long long total = 0;
    for (auto _ : state)
    {
        FILE * f = std::fopen(path.c_str(), "rb");
        size_t got;
        while ((got = std::fread(buffer.data(), 1, buffer.size(), f)) != 0)
        {
            total += got;
            benchmark::DoNotOptimize(buffer[got - 1]);
        }
        std::fclose(f);
    }
    state.SetBytesProcessed(total);
}

void BM_FileSliceSourceNextSlice(benchmark::State & state)
{
    std::string const & path = bigKlvFile();
    Templates::wstring widePath = Utils::wide(path.c_str());
    unsigned long long total = 0;
    for (auto _ : state)
    {
        Templates::SharedPtr<DataIO::SliceSource> source(
            new DataIO::File::FileSliceSource(widePath.c_str(), 2 << 20, 2 << 20));
        DataIO::SliceReader reader(source);
        for (;;)
        {
            Templates::auto_ptr<DataIO::Slice> slice = reader.nextSlice(2 << 20);
            if (slice->size() == 0)
                break;
            total += slice->size();
            benchmark::DoNotOptimize(slice->end()[-1]);
        }
    }
    state.SetBytesProcessed(total);
}

void walk(benchmark::State & state, std::string const & path)
{
    Templates::wstring widePath = Utils::wide(path.c_str());
    unsigned long long packets = 0, bytes = 0;
    for (auto _ : state)
    {
        DataIO::File::FileDataSource source(widePath.c_str(), 1 << 20);
        KLV::Reader reader(source);
        while (!source.endOfStream())
        {
            uint64 skipped = 0;
            Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
            ++packets;
            bytes += packet->klvLength();
        }
    }
    state.counters["packets/s"] = benchmark::Counter(double(packets), benchmark::Counter::kIsRate);
    state.SetBytesProcessed(bytes);
}

void BM_KlvWalkLargePackets(benchmark::State & state)
{
    walk(state, bigKlvFile());
}

std::string const & smallPacketFile()
{
    // 1,000,000 packets of 100 bytes, key and length included.
    static std::string path = klvFile(1000000, 80);
    return path;
}

void BM_KlvWalkSmallPackets(benchmark::State & state)
{
    walk(state, smallPacketFile());
}

// The files are made before any benchmark runs, so that no timing includes their writing.
bool const filesReady = !bigKlvFile().empty() && !smallPacketFile().empty();
} // namespace

BENCHMARK(BM_FreadBaseline)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FileSliceSourceNextSlice)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_KlvWalkLargePackets)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_KlvWalkSmallPackets)->Unit(benchmark::kMillisecond)->UseRealTime();
