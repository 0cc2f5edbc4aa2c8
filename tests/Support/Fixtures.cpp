#include "Support/Fixtures.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace VellumTest
{
namespace
{
bool exists(std::string const & path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0;
}

bool haveFfmpeg()
{
    static int have = -1;
    if (have < 0)
        have = std::system("command -v ffmpeg >/dev/null 2>&1") == 0 ? 1 : 0;
    return have == 1;
}
} // namespace

std::string sharedDir()
{
    // VELLUM_SHARED_DIR in the environment stands in for the folder beside the project, so that a
    // run can hide it and show which tests still run on their own files.
    char const * chosen = std::getenv("VELLUM_SHARED_DIR");
    std::string dir = chosen != nullptr ? chosen : VELLUM_SHARED_DIR;
    return exists(dir + "/samples") ? dir : std::string();
}

std::vector<std::string> sampleFiles()
{
    std::vector<std::string> files;
    std::string dir = sharedDir();
    if (dir.empty())
        return files;
    dir += "/samples";
    DIR * d = ::opendir(dir.c_str());
    if (d == nullptr)
        return files;
    while (struct dirent * entry = ::readdir(d))
    {
        std::string name = entry->d_name;
        if (name.size() > 4 && name.compare(name.size() - 4, 4, ".mxf") == 0)
            files.push_back(dir + "/" + name);
    }
    ::closedir(d);
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> ffmpegFixtureNames()
{
    return {"op1a-mpeg2-pcm.mxf", "op1a-mpeg2-pcm-2997.mxf", "op1a-mpeg2-open-gop.mxf", "opatom-dnxhd.mxf", "opatom-pcm.mxf", "d10.mxf",
            "op1a-partitions.mxf"};
}

std::vector<std::string> ffmpegFixtureFiles()
{
    std::vector<std::string> files;
    for (std::string const & name : ffmpegFixtureNames())
    {
        std::string path = ffmpegFixture(name);
        if (!path.empty())
            files.push_back(path);
    }
    return files;
}

std::vector<std::string> sampleAndFixtureFiles()
{
    std::vector<std::string> files = sampleFiles();
    for (std::string const & path : ffmpegFixtureFiles())
        files.push_back(path);
    return files;
}

std::string ffmpegFixture(std::string const & name)
{
    if (!haveFfmpeg())
        return std::string();
    std::string dir = VELLUM_FIXTURE_DIR;
    ::mkdir(dir.c_str(), 0755);
    std::string path = dir + "/" + name;
    if (exists(path))
        return path;
    // Made under a name of this process, then renamed: tests running side by side never see a
    // half-written file.
    std::string partial = path + ".partial." + std::to_string(::getpid());
    std::string command = std::string("bash '") + VELLUM_SOURCE_DIR + "/tests/fixtures/make-fixture.sh' '" + name +
                          "' '" + partial + "'";
    if (std::system(command.c_str()) != 0)
    {
        std::remove(partial.c_str());
        return std::string();
    }
    std::rename(partial.c_str(), path.c_str());
    return path;
}

std::vector<unsigned char> readFile(std::string const & path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string temporaryPath(std::string const & suffix)
{
    static int counter = 0;
    char const * tmp = std::getenv("TMPDIR");
    std::string dir = tmp != nullptr && *tmp != 0 ? tmp : "/tmp";
    return dir + "/vellum-test-" + std::to_string(::getpid()) + "-" + std::to_string(++counter) + suffix;
}
} // namespace VellumTest
