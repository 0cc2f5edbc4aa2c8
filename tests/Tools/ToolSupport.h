#pragma once
// Running the built vellum program and other commands from a test.

#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace VellumToolTest
{
struct CommandRun
{
    int status;
    std::string out;
};

// Runs a shell command and gives its exit status and standard output (and error, when the
// command says 2>&1).
inline CommandRun runCommand(std::string const & command)
{
    CommandRun run{-1, std::string()};
    FILE * pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    std::array<char, 65536> buffer;
    size_t got;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), pipe)) != 0)
        run.out.append(buffer.data(), got);
    int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

inline std::string shellQuoted(std::string const & path) { return "'" + path + "'"; }

// `vellum ARGUMENTS`, standard error with standard output.
inline CommandRun runVellum(std::string const & arguments)
{
    return runCommand(std::string(VELLUM_TOOL_PATH) + " " + arguments + " 2>&1");
}

inline bool haveCommand(std::string const & name)
{
    return runCommand("command -v " + name + " >/dev/null 2>&1").status == 0;
}

inline bool has(std::string const & text, std::string const & part) { return text.find(part) != std::string::npos; }

inline size_t occurrences(std::string const & text, std::string const & part)
{
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++n;
    return n;
}

inline void writeBytes(std::string const & path, std::vector<unsigned char> const & bytes)
{
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const *>(bytes.data()), std::streamsize(bytes.size()));
}

inline std::string smallExample() { return std::string(VELLUM_SOURCE_DIR) + "/examples/small.mxf"; }
} // namespace VellumToolTest
