// vellum check FILE [--json]: the findings of MXFIO::FileChecker, each with its byte offset, code
// word and text. Exit 0 when nothing is found, 1 when something is or the file cannot be read.

#include <CLI/CLI.hpp>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Format.h"
#include "MXFIO/FileChecker.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
struct CheckOptions
{
    std::string path;
    bool json = false;
};

void printFindings(CheckOptions const & options, Vellum::Templates::vector<Vellum::MXFIO::Finding> const & findings)
{
    if (options.json)
    {
        nlohmann::ordered_json all = nlohmann::ordered_json::array();
        for (Vellum::MXFIO::Finding const & f : findings)
            all.push_back({{"offset", f.offset}, {"code", f.code}, {"message", narrow(f.message)}});
        nlohmann::ordered_json root = {{"file", options.path}, {"findings", all}};
        printJson(root);
        return;
    }
    for (Vellum::MXFIO::Finding const & f : findings)
        std::printf("%12" PRIu64 "  %s: %s\n", f.offset, f.code, narrow(f.message).c_str());
    if (findings.empty())
        std::printf("%s: no findings\n", options.path.c_str());
    else
        std::printf("%s: %zu finding%s\n", options.path.c_str(), findings.size(), findings.size() == 1 ? "" : "s");
}

int check(CheckOptions const & options)
{
    Vellum::MXFIO::FileChecker checker(Vellum::Utils::wide(options.path.c_str()).c_str());
    Vellum::Templates::vector<Vellum::MXFIO::Finding> const findings = checker.run();
    if (findings.size() == 1 && std::string(findings[0].code) == "file-unreadable")
        return fileFailure(options.path, narrow(findings[0].message));
    printFindings(options, findings);
    return findings.empty() ? 0 : 1;
}
} // namespace

Command addCheckCommand(CLI::App & program)
{
    auto options = std::make_shared<CheckOptions>();
    CLI::App * command = program.add_subcommand("check", "what is inconsistent in a file, each with its offset; "
                                                         "exit 0 when nothing is found, 1 when something is");
    command->add_option("FILE", options->path, "the MXF file")->required();
    command->add_flag("--json", options->json, "print the findings as JSON");
    return Command{command, [options] { return check(*options); }};
}
} // namespace VellumTool
