// vellum wrap: elementary streams into an MXF file (OP1a) or a folder of OP-Atom files.
// vellum rewrap: the essence of an MXF file into another layout.

#include <CLI/CLI.hpp>
#include <cinttypes>
#include <memory>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

#include "Commands.h"
#include "Essence/Analyzers/StreamDetection.h"
#include "Exceptions/Exceptions.h"
#include "Format.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Structural/Initialize.h"
#include "OPBuilders/FileRewrapper.h"
#include "OPBuilders/FileWrapper.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
using namespace Vellum;

struct WrapArguments
{
    std::string out;
    std::vector<std::string> inputs;
    OPBuilders::FileWrapper::Options options;
    Templates::Rational<int> rate = Templates::Rational<int>(25);
    std::string timecode;
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

// HH:MM:SS:FF, or HH:MM:SS;FF for drop frame, at the rate rounded up to whole frames.
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

// The name of an OP-Atom file: the input's name without folder and extension.
Templates::wstring streamName(std::string const & path, size_t index)
{
    std::string name = path.substr(path.find_last_of('/') == std::string::npos ? 0 : path.find_last_of('/') + 1);
    name = name.substr(0, name.find_last_of('.'));
    return Utils::wide((std::to_string(index + 1) + "-" + (name.empty() ? "stream" : name)).c_str());
}
// Bytes written so far, on a terminal only.
OPBuilders::FileWrapper::Progress progressLine(char const * command)
{
    bool const terminal = ::isatty(::fileno(stderr)) != 0;
    return [terminal, command](uint64 bytes) {
        if (terminal)
            std::fprintf(stderr, "\rvellum %s: %" PRIu64 " MiB", command, bytes >> 20);
    };
}

// Prints the paths written, behind the progress line.
int written(Templates::vector<Templates::wstring> const & paths)
{
    if (::isatty(::fileno(stderr)) != 0)
        std::fprintf(stderr, "\n");
    for (Templates::wstring const & path : paths)
        std::printf("wrote %s\n", Utils::narrow(path).c_str());
    return 0;
}

// The options of the layout that both commands take.
void addLayoutOptions(CLI::App & command, OPBuilders::FileWrapper::Options & options)
{
    command.add_flag("--opatom", options.opAtom, "one OP-Atom file per stream (OUT a folder)");
    command.add_flag("--clip-wrap", options.clipWrap, "each stream as one KLV packet");
    command
        .add_option_function<unsigned>(
            "--partition-seconds",
            [&options](unsigned const & n) { options.partitionSeconds = Templates::Rational<int64>(n); },
            "seconds of essence in each body partition (default 10; 0: one body partition)")
        ->type_name("N");
}

int wrap(WrapArguments & w)
{
    if (!w.timecode.empty() && !parseTimecode(w.timecode, w.rate, w.options.start))
    {
        std::fprintf(stderr, "vellum wrap: --timecode %s is no time code at %d/%d\nRun with --help for more information.\n",
                     w.timecode.c_str(), w.rate.numerator(), w.rate.denominator());
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
        return written(wrapper.write(Utils::wide(w.out.c_str()), progressLine("wrap")));
    }
    catch (Exceptions::BaseException const & e)
    {
        return fileFailure(current, e);
    }
}
} // namespace

Command addWrapCommand(CLI::App & program)
{
    auto w = std::make_shared<WrapArguments>();
    CLI::App * command = program.add_subcommand(
        "wrap", "elementary streams (MPEG-2 video, VC-3, JPEG 2000, Wave) into OP1a (OUT a file) or OP-Atom (OUT a "
                "folder, one file per stream)");
    command->add_option("OUT", w->out, "the MXF file, or the folder of OP-Atom files")->required();
    command->add_option("INPUT", w->inputs, "the elementary streams, in the order of their tracks")->required();
    addLayoutOptions(*command, w->options);
    command
        ->add_option_function<std::string>(
            "--rate",
            [w](std::string const & text) {
                if (!parseRate(text, w->rate))
                    throw CLI::ValidationError("--rate", "R is a rate such as 25 or 30000/1001");
            },
            "the edit rate of pictures whose stream carries none (VC-3, JPEG 2000); default 25")
        ->type_name("R");
    command->add_option("--kag", w->options.kagSize, "the KLV alignment grid of the essence")
        ->type_name("N")
        ->check(CLI::PositiveNumber);
    command->add_option("--timecode", w->timecode, "the start time code")->type_name("HH:MM:SS:FF");
    return Command{command, [w] { return wrap(*w); }};
}

namespace
{
struct RewrapArguments
{
    std::string in, out;
    OPBuilders::FileWrapper::Options options;
};

int rewrap(RewrapArguments & r)
{
    try
    {
        Metadata::Structural::initialize();
        OPBuilders::FileRewrapper rewrapper(MetaMetadata::createStandardDictionary(), r.options);
        if (r.options.opAtom)
            ::mkdir(r.out.c_str(), 0777);
        return written(rewrapper.rewrap(Utils::wide(r.in.c_str()), Utils::wide(r.out.c_str()), progressLine("rewrap")));
    }
    catch (Exceptions::BaseException const & e)
    {
        return fileFailure(r.in, e);
    }
}
} // namespace

Command addRewrapCommand(CLI::App & program)
{
    auto r = std::make_shared<RewrapArguments>();
    CLI::App * command = program.add_subcommand(
        "rewrap", "the essence of an MXF file, as stored, into OP1a (OUT a file) or OP-Atom (OUT a folder)");
    command->add_option("IN", r->in, "the MXF file to read")->required();
    command->add_option("OUT", r->out, "the MXF file, or the folder of OP-Atom files")->required();
    addLayoutOptions(*command, r->options);
    return Command{command, [r] { return rewrap(*r); }};
}
} // namespace VellumTool
