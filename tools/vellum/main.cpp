#include <cstdio>
#include <cstring>

#include "Platform/Version.h"
#include "Utils/Text.h"

int main(int argc, char ** argv)
{
    if (argc < 2 || std::strcmp(argv[1], "--version") == 0)
    {
        std::printf("vellum %s\n", Vellum::Utils::narrow(Vellum::Version::versionString()).c_str());
        return argc < 2 ? 2 : 0;
    }
    return 2;
}
