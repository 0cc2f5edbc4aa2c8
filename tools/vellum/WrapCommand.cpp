// vellum wrap: elementary streams into an MXF file (OP1a) or a folder of OP-Atom files.

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

#include "Commands.h"
#include "Essence/Analyzers/StreamDetection.h"
#include "Exceptions/Exceptions.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Structural/Initialize.h"
#include "OPBuilders/FileWrapper.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
using namespace Vellum;

void wrapUsage()
{
    std::fprintf(stderr, "usage: vellum wrap OUT INPUT... [--opatom] [--clip-wrap] [--rate R] [--partition-seconds N]\n"
                         "                   [--kag N] [--timecode HH:MM:SS:FF]\n");
}

struct WrapArguments
{
    std::string out;
    std::vector<std::string> inputs;
    OPBuilders::FileWrapper::Options options;
    Templates::Rational<int> rate = Templates::Rational<int>(25);
};

// "25", "30000/1001".
bool parseRate(std::string const & text, Templates::Rational<int> & rate)
{
    int n = 0, d = 1;
    char tail = 0;
    int const fields = std::sscanf(text.c_str(), "%d/%d%c", &n, &d, &tail);
    if (!(fields == 1 || fields == 2) || n <= 0 || d <= 0)
        return false;
    rate = Templates::Rational<int>(n, d);
    return true;
}

bool parseTimecode(std::string const & text, Templates::Rational<int> const & rate, Utils::TimeCode & tc)
{
    unsigned h = 0, m = 0, s = 0, f = 0;
    char sep = 0;
    if (std::sscanf(text.c_str(), "%u:%u:%u%c%u", &h, &m, &s, &sep, &f) != 5 || (sep != ':' && sep != ';'))
        return false;
    unsigned const fps = unsigned((rate.numerator() + rate.denominator() - 1) / rate.denominator());
    try
    {
        tc = Utils::TimeCode(static_cast<unsigned char>(fps), static_cast<unsigned char>(h), static_cast<unsigned char>(m),
                             static_cast<unsigned char>(s), static_cast<unsigned char>(f), sep == ';', false);
    }
    catch (Exceptions::BaseException const &)
    {
        return false;
    }
    return true;
}

bool parseWrap(Arguments const & a, WrapArguments & w)
{
    std::string timecode;
    for (size_t i = 0; i < a.size(); ++i)
    {
        bool const hasValue = i + 1 < a.size();
        if (a[i] == "--opatom")
            w.options.opAtom = true;
        else if (a[i] == "--clip-wrap")
            w.options.clipWrap = true;
        else if (a[i] == "--rate" && hasValue)
        {
            if (!parseRate(a[++i], w.rate))
                return false;
        }
        else if (a[i] == "--partition-seconds" && hasValue)
            w.options.partitionSeconds = Templates::Rational<int64>(std::atoi(a[++i].c_str()));
        else if (a[i] == "--kag" && hasValue)
            w.options.kagSize = unsigned(std::atoi(a[++i].c_str()));
        else if (a[i] == "--timecode" && hasValue)
            timecode = a[++i];
        else if (!a[i].empty() && a[i][0] == '-')
            return false;
        else if (w.out.empty())
            w.out = a[i];
        else
            w.inputs.push_back(a[i]);
    }
    if (w.out.empty() || w.inputs.empty() || w.options.kagSize == 0)
        return false;
    return timecode.empty() || parseTimecode(timecode, w.rate, w.options.start);
}

// The name of an OP-Atom file: the input's name without folder and extension.
Templates::wstring streamName(std::string const & path, size_t index)
{
    std::string name = path.substr(path.find_last_of('/') == std::string::npos ? 0 : path.find_last_of('/') + 1);
    name = name.substr(0, name.find_last_of('.'));
    return Utils::wide((std::to_string(index + 1) + "-" + (name.empty() ? "stream" : name)).c_str());
}
} // namespace

int wrapCommand(Arguments const & arguments)
{
    WrapArguments w;
    if (!parseWrap(arguments, w))
    {
        wrapUsage();
        return 2;
    }
    std::string current;
    try
    {
        Metadata::Structural::initialize();
        OPBuilders::FileWrapper wrapper(MetaMetadata::createStandardDictionary(), w.options);
        for (size_t i = 0; i < w.inputs.size(); ++i)
        {
            current = w.inputs[i];
            Essence::Analyzers::StreamKind kind;
            wrapper.addStream(Essence::Analyzers::openAnalyzer(Utils::wide(current.c_str()), w.rate, kind),
                              streamName(current, i));
            std::printf("%s: %s\n", current.c_str(), Essence::Analyzers::streamKindName(kind));
        }
        current = w.out;
        if (w.options.opAtom)
            ::mkdir(w.out.c_str(), 0777);
        bool const terminal = ::isatty(::fileno(stderr)) != 0;
        Templates::vector<Templates::wstring> written =
            wrapper.write(Utils::wide(w.out.c_str()), [terminal](uint64 bytes) {
                if (terminal)
                    std::fprintf(stderr, "\rvellum wrap: %" PRIu64 " MiB", bytes >> 20);
            });
        if (terminal)
            std::fprintf(stderr, "\n");
        for (Templates::wstring const & path : written)
            std::printf("wrote %s\n", Utils::narrow(path).c_str());
        return 0;
    }
    catch (Exceptions::BaseException const & e)
    {
        std::fprintf(stderr, "vellum: %s: %s\n", current.c_str(), Utils::narrow(e.message()).c_str());
        return 1;
    }
}
} // namespace VellumTool
