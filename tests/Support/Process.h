#pragma once
// Running other programs from a test: a shell command and what it prints, and the ground truth
// that ffmpeg and ffprobe give about a file's packets.

#include <cstddef>
#include <string>
#include <vector>

namespace VellumTest
{
struct CommandRun
{
    int status;
    std::string out;
};

// Runs a shell command and gives its exit status (-1 when it did not exit) and standard output.
CommandRun runCommand(std::string const & command);
// Whether a program of this name is on the path.
bool haveCommand(std::string const & name);
std::string shellQuoted(std::string const & path);

// The packets of one kind of stream ("v" or "a") as `ffmpeg -c copy -f framemd5` lists them, in
// file order: their hashes and presentation times.
struct FramePackets
{
    std::vector<std::string> md5;
    std::vector<long> pts;
};
FramePackets frameMd5(std::string const & path, std::string const & kind);
// One field of each packet of a kind of stream as ffprobe reports it (e.g. "pos", "flags").
std::vector<std::string> ffprobePackets(std::string const & path, std::string const & kind, std::string const & field);
} // namespace VellumTest
