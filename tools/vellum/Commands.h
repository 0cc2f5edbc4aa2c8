#pragma once
// The subcommands of the vellum program. Each adds itself, with its options, to the program's
// argument parser and gives what runs it once the arguments are parsed: a function that gives
// the process exit code.

#include <functional>

namespace CLI
{
class App;
}

namespace VellumTool
{
struct Command
{
    CLI::App * arguments;
    std::function<int()> run;
};

Command addKlvCommand(CLI::App & program);
Command addInfoCommand(CLI::App & program);
Command addDictCommand(CLI::App & program);
Command addMetaCommand(CLI::App & program);
Command addCheckCommand(CLI::App & program);
Command addUnwrapCommand(CLI::App & program);
Command addWrapCommand(CLI::App & program);
Command addRewrapCommand(CLI::App & program);
} // namespace VellumTool
