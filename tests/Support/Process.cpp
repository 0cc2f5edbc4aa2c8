#include "Support/Process.h"

#include <array>
#include <cstdio>
#include <sstream>
#include <sys/wait.h>

namespace VellumTest
{
CommandRun runCommand(std::string const & command)
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

bool haveCommand(std::string const & name)
{
    return runCommand("command -v " + name + " >/dev/null 2>&1").status == 0;
}

std::string shellQuoted(std::string const & path) { return "'" + path + "'"; }

FramePackets frameMd5(std::string const & path, std::string const & kind)
{
    std::istringstream lines(runCommand("ffmpeg -v error -nostdin -i " + shellQuoted(path) + " -map 0:" + kind +
                                        "? -c copy -f framemd5 - 2>/dev/null")
                                 .out);
    FramePackets result;
    std::string line;
    while (std::getline(lines, line))
    {
        if (line.empty() || line[0] == '#')
            continue;
        // stream, dts, pts, duration, size, hash, then side data if any.
        std::istringstream fields(line);
        std::string field;
        for (int i = 0; i < 6; ++i)
        {
            std::getline(fields, field, ',');
            if (i == 2)
                result.pts.push_back(std::stol(field));
        }
        field.erase(0, field.find_first_not_of(' '));
        result.md5.push_back(field);
    }
    return result;
}

std::vector<std::string> ffprobePackets(std::string const & path, std::string const & kind, std::string const & field)
{
    std::istringstream lines(runCommand("ffprobe -v error -select_streams " + kind + " -show_entries packet=" + field +
                                        " -of csv=p=0 " + shellQuoted(path) + " 2>/dev/null")
                                 .out);
    std::vector<std::string> values;
    std::string line;
    while (std::getline(lines, line))
        if (!line.empty())
            values.push_back(line);
    return values;
}
} // namespace VellumTest
