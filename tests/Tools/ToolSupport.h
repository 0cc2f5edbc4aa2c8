#pragma once
// Running the built vellum program and other commands from a test.

#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "Support/Process.h"

namespace VellumToolTest
{
using VellumTest::CommandRun;
using VellumTest::runCommand;
using VellumTest::shellQuoted;
using VellumTest::haveCommand;

// `vellum ARGUMENTS`, standard error with standard output.
inline CommandRun runVellum(std::string const & arguments)
{
    return runCommand(std::string(VELLUM_TOOL_PATH) + " " + arguments + " 2>&1");
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
