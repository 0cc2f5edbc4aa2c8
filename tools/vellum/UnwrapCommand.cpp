// vellum unwrap FILE DIR [--track ID] [--range FIRST:COUNT]: writes the edit units of each essence
// track, as they are stored, to one file per track in DIR, through the library's EssenceReader.
// Values are copied in slices through one buffer; nothing holds a whole edit unit.

#include <CLI/CLI.hpp>
#include <cerrno>
#include <memory>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "Commands.h"
#include "Exceptions/Exceptions.h"
#include "Format.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "LabelNames.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/FileDescriptor.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/MaterialPackage.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "MXFIO/EssenceFile.h"
#include "MXFIO/EssenceReader.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UniversalLabel.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
using namespace Vellum;
namespace S = Metadata::Structural;
typedef Templates::Rational<int64> Time;

// Values are copied through a buffer of this size.
size_t const SLICE = 1 << 20;
// Files above this size show a progress line on a terminal.
std::uint64_t const PROGRESS_SIZE = std::uint64_t(64) << 20;

// The file name extension for the essence of a track, by the family of its essence container label
// (byte 13 of the Generic Container labels) and what the track carries.
std::string extensionOf(Types::UniversalLabel const * label, S::TrackKind kind)
{
    if (!label)
        return "bin";
    unsigned char const * b = label->rawBuffer();
    bool const generic = b[8] == 0x0D && b[9] == 0x01 && b[10] == 0x03 && b[11] == 0x01 && b[12] == 0x02;
    bool const dcinemaPictures = b[8] == 0x04 && b[9] == 0x01 && b[10] == 0x02 && b[11] == 0x02 && b[12] == 0x01;
    if (dcinemaPictures)
        return "j2c";
    if (!generic)
        return "bin";
    switch (b[13])
    {
    case 0x01: return kind == S::SoundTrack ? "aes3" : "m2v"; // D-10 pictures and their eight-channel sound
    case 0x02: return "dv";
    case 0x04: return "m2v";
    case 0x05: return "yuv";
    case 0x06: return b[14] >= 3 && b[14] <= 4 ? "aes3" : "pcm";
    case 0x0A: return "alaw";
    case 0x0C: return "j2c";
    case 0x10: return "h264";
    case 0x11: return "vc3";
    case 0x13: return "xml";
    case 0x1D: return "iab";
    case 0x25: return "mga";
    default: return "bin";
    }
}

// Extensions of the essence by track number, from the descriptors of the source packages.
std::map<unsigned, std::string> extensionsByTrackNumber(S::ContentStorage const & storage)
{
    std::map<unsigned, std::string> extensions;
    for (unsigned i = 0; i < storage.packagesCount(); ++i)
    {
        S::SourcePackage const * package =
            S::metadataSetAs<S::SourcePackage>(static_cast<Metadata::MetadataSet const *>(storage.package(i)));
        if (!package)
            continue;
        Templates::list<S::TimelineTrack *> tracks;
        S::getAllEssenceTracks(*package, tracks);
        for (S::TimelineTrack * track : tracks)
        {
            if (!track->trackID() || !track->trackNumber() || track->trackNumber()->value() == 0)
                continue;
            S::FileDescriptor const * descriptor = S::fileDescriptorForTrack(*package, track->trackID()->value());
            extensions[track->trackNumber()->value()] =
                extensionOf(descriptor ? descriptor->essenceContainer() : nullptr, S::trackKind(*track));
        }
    }
    return extensions;
}

struct Output
{
    std::FILE * file = nullptr;
    std::string name;
    std::uint64_t packets = 0, bytes = 0;
    bool done = false;

};

class Progress
{
public:
    Progress(std::uint64_t fileSize)
        : fileSize_(fileSize), shown_(::isatty(::fileno(stderr)) != 0 && fileSize > PROGRESS_SIZE),
          last_(std::chrono::steady_clock::now()), any_(false)
    {
    }
    void update(std::uint64_t offset)
    {
        if (!shown_)
            return;
        std::chrono::steady_clock::time_point now = std::chrono::steady_clock::now();
        if (any_ && now - last_ < std::chrono::milliseconds(250))
            return;
        last_ = now;
        any_ = true;
        std::fprintf(stderr, "\rvellum unwrap: %3u%%  %" PRIu64 " of %" PRIu64 " MiB", unsigned(offset * 100 / fileSize_),
                     offset >> 20, fileSize_ >> 20);
    }
    void finish()
    {
        if (shown_ && any_)
            std::fprintf(stderr, "\rvellum unwrap: 100%%  %" PRIu64 " of %" PRIu64 " MiB\n", fileSize_ >> 20,
                         fileSize_ >> 20);
    }

private:
    std::uint64_t fileSize_;
    bool shown_;
    std::chrono::steady_clock::time_point last_;
    bool any_;
};

// Makes the folder and those above it that are missing.
bool makeDirectories(std::string const & path)
{
    for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        if (::mkdir(path.substr(0, slash).c_str(), 0755) != 0 && errno != EEXIST)
            return false;
    return ::mkdir(path.c_str(), 0755) == 0 || errno == EEXIST;
}

bool parseUnsigned(std::string const & text, std::uint64_t & value)
{
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 18)
        return false;
    value = std::stoull(text);
    return true;
}
struct UnwrapOptions
{
    std::string path, directory;
    bool oneTrack = false, ranged = false;
    std::uint64_t trackID = 0, first = 0, count = 0;
};

// The range in seconds, at the edit rate of the first picture track (else the first track).
void rangeInSeconds(MXFIO::EssenceReader & essence, UnwrapOptions const & options, Time & start, Time & end)
{
    Templates::vector<S::TimelineTrack *> tracks = essence.essenceTracks();
    Types::Rational const * rate = nullptr;
    for (S::TimelineTrack * track : tracks)
        if (!rate && track->editRate() && S::trackKind(*track) == S::PictureTrack)
            rate = track->editRate();
    if (!rate && !tracks.empty())
        rate = tracks.front()->editRate();
    if (!rate || rate->numerator() <= 0 || rate->denominator() <= 0)
        VELLUM_THROW(InvalidValue, "the tracks have no edit rate to count the range in");
    start = Time(int64(options.first) * rate->denominator(), rate->numerator());
    end = Time(int64(options.first + options.count) * rate->denominator(), rate->numerator());
}

// Whether a unit of the range is to be written; marks the track done behind the range.
bool inRange(UnwrapOptions const & options, Time const & start, Time const & end,
             MXFIO::EssenceReader::ElementEditUnit const & unit, Output & out, size_t & tracksDone)
{
    if (!options.ranged)
        return true;
    Time unitEnd = unit.position;
    unitEnd += unit.duration;
    // Units before the range (decoder warm-up after a seek) are left out.
    if (!(start < unitEnd))
        return false;
    if (unit.position < end)
        return true;
    out.done = true;
    ++tracksDone;
    return false;
}

void copyValue(MXFIO::EssenceReader::ElementEditUnit & unit, Output & out, std::vector<unsigned char> & buffer)
{
    KLV::Value & value = unit.element.packet->value();
    while (value.remaining() != 0)
    {
        uint64 const got = value.read(buffer.data(), buffer.size());
        if (got == 0)
            VELLUM_THROW(InvalidValue,
                         ("the element of track " + std::to_string(unit.trackID) + " ends early, the file is cut").c_str());
        if (std::fwrite(buffer.data(), 1, size_t(got), out.file) != size_t(got))
            VELLUM_THROW(InvalidValue, ("cannot write " + out.name + ": " + std::strerror(errno)).c_str());
        out.bytes += got;
    }
    ++out.packets;
}

void openOutput(std::map<unsigned, std::string> const & extensions, UnwrapOptions const & options, unsigned trackID,
                unsigned trackNumber, Output & out)
{
    auto extension = extensions.find(trackNumber);
    out.name = options.directory + "/track-" + std::to_string(trackID) + "." +
               (extension != extensions.end() ? extension->second : std::string("bin"));
    out.file = std::fopen(out.name.c_str(), "wb");
    if (!out.file)
        VELLUM_THROW(InvalidValue, ("cannot write " + out.name + ": " + std::strerror(errno)).c_str());
}

void writeTracks(MXFIO::EssenceFile & file, MXFIO::EssenceReader & essence, UnwrapOptions const & options,
                 Time const & start, Time const & end, std::map<unsigned, Output> & outputs)
{
    std::vector<unsigned char> buffer(SLICE);
    Progress progress(file.fileSize());
    std::map<unsigned, std::string> const extensions = extensionsByTrackNumber(file.contentStorage());
    MXFIO::EssenceReader::ElementEditUnit unit;
    size_t tracksDone = 0;
    size_t const tracksWanted = options.oneTrack ? 1 : essence.essenceTrackIDs().size();
    while (tracksDone < tracksWanted && essence.nextElementEditUnit(65536, unit))
    {
        if (!unit.element.packet)
            break;
        if (options.oneTrack && unit.trackID != options.trackID)
            continue;
        Output & out = outputs[unit.trackID];
        if (out.done || !inRange(options, start, end, unit, out, tracksDone))
            continue;
        if (!out.file)
            openOutput(extensions, options, unit.trackID, unit.trackNumber, out);
        progress.update(unit.element.packet->keyAbsoluteOffset());
        copyValue(unit, out, buffer);
    }
    progress.finish();
}

// 0 when the track is there or none was asked for; else 2, with the tracks there are.
int checkTrack(MXFIO::EssenceReader & essence, UnwrapOptions const & options)
{
    Templates::vector<unsigned int> const ids = essence.essenceTrackIDs();
    std::string list;
    for (unsigned id : ids)
    {
        if (!options.oneTrack || id == options.trackID)
            return 0;
        list += " " + std::to_string(id);
    }
    if (!options.oneTrack)
        return 0;
    std::fprintf(stderr, "vellum unwrap: the package has no essence track %" PRIu64 " (its tracks:%s)\n",
                 options.trackID, list.c_str());
    return 2;
}

int unwrapInto(UnwrapOptions const & options, std::map<unsigned, Output> & outputs)
{
    MXFIO::EssenceFile file(Utils::wide(options.path.c_str()));
    Templates::auto_ptr<MXFIO::EssenceReader> reader = file.essenceReader();
    MXFIO::EssenceReader & essence = *reader;
    if (int const wrong = checkTrack(essence, options))
        return wrong;
    Time start(0), end(0);
    if (options.ranged)
    {
        rangeInSeconds(essence, options, start, end);
        if (options.count == 0)
            return 0;
        if (!essence.seek(start))
            return fileFailure(options.path,
                               "edit unit " + std::to_string(options.first) + " is beyond the end of the essence");
    }
    if (!makeDirectories(options.directory))
        VELLUM_THROW(InvalidValue, ("cannot make the folder " + options.directory + ": " + std::strerror(errno)).c_str());
    writeTracks(file, essence, options, start, end, outputs);
    return 0;
}

int unwrap(UnwrapOptions const & options)
{
    std::map<unsigned, Output> outputs;
    int status = 0;
    try
    {
        status = unwrapInto(options, outputs);
    }
    catch (Exceptions::BaseException const & e)
    {
        status = fileFailure(options.path, e);
    }
    for (auto & entry : outputs)
    {
        Output & out = entry.second;
        if (!out.file)
            continue;
        if (std::fclose(out.file) != 0)
            status = 1;
        std::printf("%s: %" PRIu64 " packets, %" PRIu64 " bytes\n", out.name.c_str(), out.packets, out.bytes);
    }
    return status;
}
} // namespace

Command addUnwrapCommand(CLI::App & program)
{
    auto options = std::make_shared<UnwrapOptions>();
    CLI::App * command =
        program.add_subcommand("unwrap", "each essence track's edit units, as stored, to DIR/track-ID.EXT");
    command->add_option("FILE", options->path, "the MXF file")->required();
    command->add_option("DIR", options->directory, "the folder to write to (made when missing)")->required();
    command->add_option_function<std::uint64_t>(
        "--track", [options](std::uint64_t const & id) { options->trackID = id, options->oneTrack = true; },
        "write this track only");
    command
        ->add_option_function<std::string>(
            "--range",
            [options](std::string const & range) {
                size_t const colon = range.find(':');
                if (colon == std::string::npos || !parseUnsigned(range.substr(0, colon), options->first) ||
                    !parseUnsigned(range.substr(colon + 1), options->count))
                    throw CLI::ValidationError("--range", "FIRST:COUNT takes two whole numbers");
                options->ranged = true;
            },
            "write the edit units FIRST to FIRST+COUNT-1")
        ->type_name("FIRST:COUNT");
    return Command{command, [options] { return unwrap(*options); }};
}
} // namespace VellumTool
