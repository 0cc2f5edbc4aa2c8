#pragma once
// What the benchmarks share: the temporary folder, files made once with ffmpeg, a plain fread pass
// as the baseline, and the clocks.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <vector>

namespace VellumBench
{
inline std::string tempFolder()
{
    char const * tmp = std::getenv("TMPDIR");
    return tmp != nullptr && *tmp != 0 ? tmp : "/tmp";
}

inline unsigned long long fileSize(std::string const & path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 ? (unsigned long long)info.st_size : 0;
}

inline bool haveFfmpeg() { return std::system("command -v ffmpeg >/dev/null 2>&1") == 0; }

// A file of the temporary folder made with ffmpeg on first use (`arguments` stand between the
// inputs and the output), kept while it holds at least `size` bytes; "" without ffmpeg or when
// ffmpeg fails.
inline std::string makeFile(std::string const & name, unsigned long long size, std::string const & arguments)
{
    std::string file = tempFolder() + "/" + name;
    if (fileSize(file) >= size)
        return file;
    if (!haveFfmpeg())
        return std::string();
    std::fprintf(stderr, "making %s with ffmpeg\n", file.c_str());
    std::string command = "ffmpeg -v error -nostdin -y " + arguments + " '" + file + ".partial' && mv '" + file +
                          ".partial' '" + file + "'";
    if (std::system(command.c_str()) != 0 || fileSize(file) < size)
        return std::string();
    return file;
}

// Reads the whole file with fread in pieces of the buffer's size; gives the bytes read.
inline unsigned long long freadAll(std::string const & path, std::vector<unsigned char> & buffer)
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

inline double seconds(std::chrono::steady_clock::duration d) { return std::chrono::duration<double>(d).count(); }

// The processor time of this thread, user and system: on a shared machine it shows the work done
// better than the wall clock does.
inline double cpuSeconds()
{
    timespec now;
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}
// The fastest wall-clock and processor time of a piece of work over a benchmark's iterations.
class BestTime
{
public:
    BestTime() : seconds_(1e9), cpu_(1e9) {}

    // Runs `work` once and keeps its times when they are the fastest yet; gives what it gave.
    template <class Work>
    auto operator()(Work work) -> decltype(work())
    {
        std::chrono::steady_clock::time_point const start = std::chrono::steady_clock::now();
        double const cpuStart = cpuSeconds();
        struct Keep
        {
            BestTime & best;
            std::chrono::steady_clock::time_point start;
            double cpuStart;
            ~Keep()
            {
                best.seconds_ = std::min(best.seconds_, seconds(std::chrono::steady_clock::now() - start));
                best.cpu_ = std::min(best.cpu_, cpuSeconds() - cpuStart);
            }
        } keep{*this, start, cpuStart};
        return work();
    }

    double seconds() const { return seconds_; }
    double cpu() const { return cpu_; }

private:
    static double seconds(std::chrono::steady_clock::duration d) { return VellumBench::seconds(d); }
    double seconds_;
    double cpu_;
};

// The counters of a benchmark held against a plain fread pass in the same run: the times in
// milliseconds, the ratios of wall-clock and processor time (above 1: faster than fread), and the
// peak resident memory of the process.
template <class State>
void reportAgainstFread(State & state, char const * name, BestTime const & fread, BestTime const & measured)
{
    state.counters["fread_ms"] = fread.seconds() * 1000;
    state.counters[std::string(name) + "_ms"] = measured.seconds() * 1000;
    state.counters["vs_fread"] = fread.seconds() / measured.seconds();
    state.counters["vs_fread_cpu"] = fread.cpu() / measured.cpu();
    rusage usage;
    ::getrusage(RUSAGE_SELF, &usage);
    state.counters["maxrss_MiB"] = double(usage.ru_maxrss) / 1024;
}
} // namespace VellumBench
