#pragma once
// What the benchmarks share: the temporary folder, files made once with ffmpeg, a plain fread pass
// as the baseline, and the clocks.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
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
} // namespace VellumBench
