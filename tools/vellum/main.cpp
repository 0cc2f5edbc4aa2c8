// vellum: looks into MXF files with the Vellum library.

#include <cstdio>
#include <cstring>

#include "Commands.h"
#include "Platform/Version.h"
#include "Utils/Text.h"

namespace
{
void usage(std::FILE * out)
{
    std::fprintf(out,
                 "usage: vellum COMMAND [OPTIONS] FILE\n"
                 "\n"
                 "commands:\n"
                 "  info FILE [--json]      a summary: partitions, RIP, packages and tracks, descriptors, index,\n"
                 "                          the essence found in the body, and warnings where they disagree\n"
                 "  klv FILE [--limit N] [--primer] [--index] [--entries]\n"
                 "                          one line per KLV packet: offset, key, BER size, length, kind;\n"
                 "                          partition packs, the Primer and the RIP decoded (--primer: its table;\n"
                 "                          --index: index segments; --entries: their index entries too)\n"
                 "  dict [SET]              the sets of the built-in dictionary, or one set's attributes\n"
                 "  meta FILE [--json]      the header metadata as a tree from the Preface down\n"
                 "  check FILE [--json]     what is inconsistent in the file, each with its offset;\n"
                 "                          exit 0 when nothing is found, 1 when something is\n"
                 "  unwrap FILE DIR [--track ID] [--range FIRST:COUNT]\n"
                 "                          each essence track's edit units, as stored, to DIR/track-ID.EXT\n"
                 "  wrap OUT INPUT... [--opatom] [--clip-wrap] [--rate R] [--partition-seconds N] [--kag N]\n"
                 "       [--timecode HH:MM:SS:FF]\n"
                 "                          elementary streams (MPEG-2 video, VC-3, JPEG 2000, Wave) into OP1a\n"
                 "                          (OUT a file) or OP-Atom (OUT a folder, one file per stream)\n"
                 "  --version               the library's version\n");
}
} // namespace

int main(int argc, char ** argv)
{
    if (argc < 2)
    {
        usage(stderr);
        return 2;
    }
    std::string command = argv[1];
    VellumTool::Arguments arguments(argv + 2, argv + argc);
    if (command == "--version" || command == "version")
    {
        std::printf("vellum %s\n", Vellum::Utils::narrow(Vellum::Version::versionString()).c_str());
        return 0;
    }
    if (command == "--help" || command == "-h" || command == "help")
    {
        usage(stdout);
        return 0;
    }
    if (command == "klv")
        return VellumTool::klvCommand(arguments);
    if (command == "info")
        return VellumTool::infoCommand(arguments);
    if (command == "dict")
        return VellumTool::dictCommand(arguments);
    if (command == "meta")
        return VellumTool::metaCommand(arguments);
    if (command == "check")
        return VellumTool::checkCommand(arguments);
    if (command == "unwrap")
        return VellumTool::unwrapCommand(arguments);
    if (command == "wrap")
        return VellumTool::wrapCommand(arguments);
    std::fprintf(stderr, "vellum: unknown command '%s'\n", command.c_str());
    usage(stderr);
    return 2;
}
