// vellum: looks into MXF files and wraps essence into them with the Vellum library.
// Exit codes: 0 done, 1 a file that cannot be read (or, for check, findings), 2 wrong arguments.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <vector>

#include "Commands.h"
#include "Platform/Version.h"
#include "Utils/Text.h"

int main(int argc, char ** argv)
{
    CLI::App program("vellum: looks into MXF files with the Vellum library", "vellum");
    program.set_version_flag("--version", std::string("vellum ") +
                                              Vellum::Utils::narrow(Vellum::Version::versionString()).c_str());
    program.require_subcommand(1);
    std::vector<VellumTool::Command> commands;
    for (auto add : {VellumTool::addInfoCommand, VellumTool::addKlvCommand, VellumTool::addMetaCommand,
                     VellumTool::addCheckCommand, VellumTool::addUnwrapCommand, VellumTool::addWrapCommand,
                     VellumTool::addRewrapCommand, VellumTool::addDictCommand})
        commands.push_back(add(program));
    try
    {
        program.parse(argc, argv);
    }
    catch (CLI::ParseError const & e)
    {
        int const code = program.exit(e);
        return code == 0 ? 0 : 2;
    }
    for (VellumTool::Command const & command : commands)
        if (command.arguments->parsed())
            return command.run();
    return 2;
}
