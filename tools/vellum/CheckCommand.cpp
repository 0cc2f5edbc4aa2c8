// vellum check FILE [--json]: walks a whole file and reports what is inconsistent in it, each
// finding with its byte offset, a code word and a text. Exit 0 when nothing is found, 1 when
// something is, 2 on a usage error.

#include <cinttypes>
#include <cstdio>
#include <exception>
#include <string>

#include "Check.h"
#include "Commands.h"
#include "Exceptions/Exceptions.h"

namespace VellumTool
{
namespace
{
std::string json(std::string const & text)
{
    std::string out = "\"";
    for (unsigned char c : text)
    {
        switch (c)
        {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20)
            {
                char buffer[8];
                std::snprintf(buffer, sizeof buffer, "\\u%04x", c);
                out += buffer;
            }
            else
                out += char(c);
        }
    }
    return out + "\"";
}

int usage()
{
    std::fprintf(stderr, "usage: vellum check FILE [--json]\n");
    return 2;
}
} // namespace

int checkCommand(Arguments const & arguments)
{
    std::string path;
    bool asJson = false;
    for (std::string const & argument : arguments)
    {
        if (argument == "--json" && !asJson)
            asJson = true;
        else if (path.empty() && !argument.empty() && argument.compare(0, 2, "--") != 0)
            path = argument;
        else
            return usage();
    }
    if (path.empty())
        return usage();

    std::vector<Finding> findings;
    try
    {
        Checker checker(path);
        findings = checker.run();
    }
    catch (Vellum::Exceptions::BaseException const & e)
    {
        std::fprintf(stderr, "vellum check: %s\n", e.whatUtf8().c_str());
        return 1;
    }
    catch (std::exception const & e)
    {
        std::fprintf(stderr, "vellum check: %s\n", e.what());
        return 1;
    }
    if (asJson)
    {
        std::printf("{\"file\": %s, \"findings\": [", json(path).c_str());
        for (size_t i = 0; i < findings.size(); ++i)
            std::printf("%s\n  {\"offset\": %" PRIu64 ", \"code\": %s, \"message\": %s}", i != 0 ? "," : "",
                        findings[i].offset, json(findings[i].code).c_str(), json(findings[i].message).c_str());
        std::printf("%s]}\n", findings.empty() ? "" : "\n");
    }
    else
    {
        for (Finding const & finding : findings)
            std::printf("%12" PRIu64 "  %s: %s\n", finding.offset, finding.code.c_str(), finding.message.c_str());
        if (findings.empty())
            std::printf("%s: no findings\n", path.c_str());
        else
            std::printf("%s: %zu finding%s\n", path.c_str(), findings.size(), findings.size() == 1 ? "" : "s");
    }
    return findings.empty() ? 0 : 1;
}
} // namespace VellumTool
