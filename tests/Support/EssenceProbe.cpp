#include "Support/EssenceProbe.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "Support/Md5.h"

namespace VellumTest
{
std::string commandOutput(std::string const & command)
{
    std::string out;
    FILE * pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return out;
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        out.append(buffer, n);
    ::pclose(pipe);
    return out;
}

std::vector<PacketDigest> ffmpegPacketDigests(std::string const & path, std::string const & inputOptions)
{
    std::vector<PacketDigest> digests;
    std::istringstream lines(
        commandOutput("ffmpeg -v error -nostdin " + inputOptions + " -i '" + path + "' -c copy -f framemd5 -"));
    std::string line;
    while (std::getline(lines, line))
    {
        if (line.empty() || line[0] == '#')
            continue;
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream fields(line);
        std::string stream, dts, pts, duration;
        PacketDigest digest;
        if (fields >> stream >> dts >> pts >> duration >> digest.size >> digest.md5)
            digests.push_back(digest);
    }
    return digests;
}

std::vector<ProbedPicture> ffprobePictures(std::string const & path)
{
    // Display order, with each frame's coded position.
    std::istringstream lines(commandOutput("ffprobe -v error -show_entries frame=pict_type,coded_picture_number -of csv=p=0 '" +
                                           path + "'"));
    std::vector<std::pair<unsigned, char>> display;
    std::string line;
    while (std::getline(lines, line))
    {
        std::size_t comma = line.find(',');
        if (comma != std::string::npos && comma > 0)
            display.push_back({unsigned(std::stoul(line.substr(comma + 1))), line[0]});
    }
    std::vector<unsigned> shown(display.size());
    std::vector<ProbedPicture> coded(display.size());
    for (unsigned i = 0; i < display.size(); ++i)
    {
        coded.at(display[i].first).type = display[i].second;
        shown[display[i].first] = i;
    }
    for (std::size_t first = 0; first < coded.size();)
    {
        std::size_t last = first + 1;
        while (last < coded.size() && coded[last].type != 'I')
            ++last;
        unsigned earliest = *std::min_element(shown.begin() + first, shown.begin() + last);
        for (std::size_t k = first; k < last; ++k)
            coded[k].temporalReference = shown[k] - earliest;
        first = last;
    }
    return coded;
}

std::string chainMd5(Vellum::DataIO::Chain const & chain)
{
    Md5 md5;
    for (Vellum::DataIO::Slice const & slice : chain)
        md5.update(slice.begin(), slice.size());
    return md5.hex();
}
} // namespace VellumTest
