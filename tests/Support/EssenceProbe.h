#pragma once
// What ffmpeg and ffprobe say about an elementary stream, to hold the analyzers' units against.

#include <string>
#include <vector>

#include "DataIO/Chain.h"

namespace VellumTest
{
// The standard output of a shell command.
std::string commandOutput(std::string const & command);
// The size and MD5 of each packet that `ffmpeg <inputOptions> -i path -c copy -f framemd5` gives.
struct PacketDigest
{
    unsigned long long size;
    std::string md5;
};
std::vector<PacketDigest> ffmpegPacketDigests(std::string const & path, std::string const & inputOptions = "");
// The picture types ('I', 'P', 'B') of the stream's frames in coded order, and their display
// positions counted from the first picture of their group (the first picture in display order
// of the run of pictures from one I picture to the next, in coded order).
struct ProbedPicture
{
    char type;
    unsigned temporalReference;
};
std::vector<ProbedPicture> ffprobePictures(std::string const & path);
// The MD5 of the bytes of a chain.
std::string chainMd5(Vellum::DataIO::Chain const & chain);
} // namespace VellumTest
