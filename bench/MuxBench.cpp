// Multiplexing content packages of a 256 KiB picture and four 7680-byte sound elements through
// GenericContainer::Multiplexer::Mux, draining each package's chain and counting its bytes,
// beside a baseline that only copies the same bytes into one reused buffer per package (the
// least a multiplexer that copies essence would do). The counter vs_memcpy is the baseline's time
// over the multiplexer's, both in processor time of the thread.

#include <benchmark/benchmark.h>

#include <time.h>
#include <cstring>
#include <vector>

#include "DataIO/Chain.h"
#include "DataIO/Memory/MemoryBlock.h"
#include "GenericContainer/Multiplexer/Mux.h"
#include "MXFIO/FutureUpdater.h"
#include "Types/UniversalLabel.h"

using namespace Vellum;
namespace GC = GenericContainer;

namespace
{
// Seconds of this thread's processor time: steadier than the wall clock on a busy machine.
double threadSeconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

unsigned int const PICTURE = 256 * 1024;
unsigned int const SOUND = 7680;
unsigned int const PACKAGES = 2000;

// Hands out the same block as every edit unit, for ever.
template <class Kind>
class RepeatingAnalyzer : public Kind
{
public:
    RepeatingAnalyzer(unsigned int size, unsigned char itemType)
        : block_(DataIO::Memory::MemoryBlockFactory::instance().create(size)), size_(size), itemType_(itemType)
    {
        std::memset(block_->data(), 0x5A, size);
    }
    Templates::Rational<int> editRate() const override { return Templates::Rational<int>(25, 1); }
    void editRate(Templates::Rational<int> const &) override {}
    uint64 maximumToSkip() const override { return 0; }
    void maximumToSkip(uint64) override {}
    bool preload() override { return true; }
    bool setMetadata(Metadata::PartitionMetadata &, Metadata::Structural::SourcePackage *, unsigned int,
                     unsigned int) override
    {
        return true;
    }
    bool nextEditUnit(GC::EditUnit & unit) override
    {
        unit.data.push_back(Templates::auto_ptr<DataIO::Slice>(new DataIO::Slice(block_.block(), 0, size_)));
        unit.duration = Templates::Rational<int>(1, 25);
        unit.valid = true;
        return true;
    }
    bool finalize() override { return true; }
    Types::UniversalLabel universalLabel() const override { return Types::UniversalLabel(); }
    bool isCBE() const override { return true; }
    void boundedEditUnitSize(int) override {}
    unsigned int boundedEditUnitSize() const override { return size_; }
    bool containsTemporalDependencies() const override { return false; }
    Utils::TimeCode currentTimeCode() const override { return Utils::TimeCode(); }
    unsigned char itemTypeIdentifier() const override { return itemType_; }
    unsigned char essenceElementType() const override { return 1; }
    unsigned int requiredKAGSize() const override { return 512; }
    bool done() override { return false; }

private:
    DataIO::BlockHolder block_;
    unsigned int size_;
    unsigned char itemType_;
};

// Bytes of a chain, read through once as a writer would.
uint64 consume(DataIO::Chain const & chain)
{
    uint64 sum = 0;
    for (DataIO::Slice const & slice : chain)
        sum += slice.size() + slice.begin()[0];
    return sum;
}

double muxPass(uint64 & bytes)
{
    GC::Multiplexer::Mux mux(static_cast<Metadata::Structural::SourcePackage *>(nullptr), Types::UniversalLabel(),
                             Templates::Rational<int>(25, 1));
    mux.addAnalyzer(Templates::SharedPtr<GC::EssenceAnalyzer>(new RepeatingAnalyzer<GC::PictureAnalyzer>(PICTURE, 0x15)),
                    true, Templates::Rational<int64>(0, 1));
    for (int i = 0; i < 4; ++i)
        mux.addAnalyzer(Templates::SharedPtr<GC::EssenceAnalyzer>(new RepeatingAnalyzer<GC::SoundAnalyzer>(SOUND, 0x16)),
                        true, Templates::Rational<int64>(0, 1));
    Templates::auto_ptr<GC::Source> source = mux.commit();
    double const start = threadSeconds();
    for (unsigned int n = 0; n < PACKAGES; ++n)
    {
        DataIO::Chain chain;
        bool atBoundary = false;
        Templates::SharedPtr<MXFIO::FutureUpdater> updater;
        Templates::Rational<int64> duration;
        source->next(chain, atBoundary, updater, duration);
        bytes += consume(chain);
    }
    return threadSeconds() - start;
}

double copyPass(uint64 & bytes)
{
    std::vector<unsigned char> picture(PICTURE, 0x5A), sound(SOUND, 0x5A), package(PICTURE + 4 * SOUND + 4096);
    double const start = threadSeconds();
    for (unsigned int n = 0; n < PACKAGES; ++n)
    {
        std::memcpy(package.data(), picture.data(), PICTURE);
        for (unsigned int i = 0; i < 4; ++i)
            std::memcpy(package.data() + PICTURE + i * SOUND, sound.data(), SOUND);
        benchmark::DoNotOptimize(package.data());
        bytes += package[n % package.size()];
    }
    return threadSeconds() - start;
}

void BM_MuxPackages(benchmark::State & state)
{
    double fastestMux = 1e9, fastestCopy = 1e9;
    uint64 bytes = 0;
    for (auto _ : state)
    {
        double const mux = muxPass(bytes);
        state.SetIterationTime(mux);
        fastestMux = std::min(fastestMux, mux);
        fastestCopy = std::min(fastestCopy, copyPass(bytes));
    }
    benchmark::DoNotOptimize(bytes);
    state.SetBytesProcessed(int64_t(state.iterations()) * PACKAGES * (PICTURE + 4 * SOUND));
    state.counters["vs_memcpy"] = fastestCopy / fastestMux;
}
BENCHMARK(BM_MuxPackages)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
} // namespace
