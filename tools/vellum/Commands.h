#pragma once
// The subcommands of the vellum program. Each gets the arguments after its name and gives the
// process exit code.

#include <string>
#include <vector>

namespace VellumTool
{
typedef std::vector<std::string> Arguments;

int klvCommand(Arguments const & arguments);
int infoCommand(Arguments const & arguments);
int dictCommand(Arguments const & arguments);
int metaCommand(Arguments const & arguments);
int checkCommand(Arguments const & arguments);
int unwrapCommand(Arguments const & arguments);
int wrapCommand(Arguments const & arguments);
} // namespace VellumTool
