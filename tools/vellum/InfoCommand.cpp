// vellum info FILE [--json]: a summary of a file. Partitions, RIP, index segments and essence
// elements come from a walk over every packet; packages, tracks and descriptors from the header
// metadata that the reader takes as final. Where the two disagree, a "warning:" line says so.

#include <CLI/CLI.hpp>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Commands.h"
#include "FileSummary.h"
#include "Format.h"
#include "MXFIO/PacketWalk.h"

namespace VellumTool
{
namespace
{
using Json = nlohmann::ordered_json;

struct InfoOptions
{
    std::string path;
    bool json = false;
};

char const * kindWord(unsigned kind) { return Vellum::MXFIO::partitionKindWord(static_cast<unsigned char>(kind)); }
char const * statusWord(unsigned status)
{
    return Vellum::MXFIO::partitionStatusWord(static_cast<unsigned char>(status));
}

std::string withName(std::string const & label, std::string const & name)
{
    if (label.empty())
        return "(none)";
    return name.empty() ? label : name + " (" + label + ")";
}

std::string hex8(std::uint32_t value) { return hex(value, 8).substr(2); }

Json textOrNull(std::string const & text) { return text.empty() ? Json() : Json(text); }

Json labelJson(std::string const & label, std::string const & name)
{
    if (label.empty())
        return Json();
    return Json{{"label", label}, {"name", textOrNull(name)}};
}

Json partitionJson(PartitionFound const & p)
{
    return Json{{"offset", p.offset},
                {"kind", kindWord(p.kind)},
                {"status", statusWord(p.status)},
                {"thisPartition", p.thisPartition},
                {"previousPartition", p.previousPartition},
                {"footerPartition", p.footerPartition},
                {"bodySID", p.bodySID},
                {"indexSID", p.indexSID},
                {"bodyOffset", p.bodyOffset},
                {"kagSize", p.kagSize},
                {"headerByteCount", p.headerByteCount},
                {"headerBytesFound", p.headerBytesFound},
                {"indexByteCount", p.indexByteCount},
                {"indexBytesFound", p.indexBytesFound},
                {"essenceElements", p.essenceElements},
                {"essenceBytes", p.essenceBytes},
                {"operationalPattern", textOrNull(p.operationalPattern)},
                {"essenceContainers", p.essenceContainers}};
}

Json trackJson(TrackInfo const & t)
{
    Json track{{"id", t.id},
               {"number", t.number},
               {"name", textOrNull(t.name)},
               {"kind", t.kind},
               {"dataDefinition", textOrNull(t.dataDefinition)},
               {"editRate", rational(t.editRateNumerator, t.editRateDenominator)},
               {"origin", t.origin},
               {"duration", t.hasDuration ? Json(t.duration) : Json()},
               {"durationTimecode", textOrNull(t.durationTimecode)}};
    if (t.editUnitsFound >= 0 || t.elementsFound >= 0)
        track["found"] = Json{{"elements", t.elementsFound},
                              {"editUnits", t.editUnitsFound < 0 ? Json() : Json(t.editUnitsFound)},
                              {"bytes", t.bytesFound},
                              {"clipWrapped", t.clipWrapped}};
    return track;
}

Json descriptorJson(DescriptorInfo const & d)
{
    Json descriptor{{"class", d.className},
                    {"linkedTrackID", d.hasLinkedTrackID ? Json(d.linkedTrackID) : Json()},
                    {"essenceContainer", labelJson(d.essenceContainer, d.essenceContainerName)},
                    {"sampleRate", textOrNull(d.sampleRate)},
                    {"containerDuration", d.hasContainerDuration ? Json(d.containerDuration) : Json()}};
    if (d.storedWidth != 0 || d.storedHeight != 0)
    {
        descriptor["storedWidth"] = d.storedWidth;
        descriptor["storedHeight"] = d.storedHeight;
    }
    if (!d.pictureCoding.empty())
        descriptor["pictureEssenceCoding"] = labelJson(d.pictureCoding, d.pictureCodingName);
    if (!d.audioSamplingRate.empty())
    {
        descriptor["audioSamplingRate"] = d.audioSamplingRate;
        descriptor["channels"] = d.channels;
        descriptor["quantizationBits"] = d.quantizationBits;
        if (d.blockAlign != 0)
            descriptor["blockAlign"] = d.blockAlign;
    }
    return descriptor;
}

Json packageJson(PackageInfo const & p)
{
    Json tracks = Json::array(), descriptors = Json::array();
    for (TrackInfo const & t : p.tracks)
        tracks.push_back(trackJson(t));
    for (DescriptorInfo const & d : p.descriptors)
        descriptors.push_back(descriptorJson(d));
    return Json{{"kind", p.kind},
                {"uid", textOrNull(p.uid)},
                {"name", textOrNull(p.name)},
                {"startTimecode", textOrNull(p.startTimecode)},
                {"bodySID", p.hasEssenceContainerData ? Json(p.bodySID) : Json()},
                {"indexSID", p.hasEssenceContainerData ? Json(p.indexSID) : Json()},
                {"tracks", tracks},
                {"descriptors", descriptors}};
}

Json segmentJson(SegmentFound const & g)
{
    return Json{{"offset", g.offset},
                {"indexSID", g.indexSID},
                {"bodySID", g.bodySID},
                {"editRate", rational(g.editRateNumerator, g.editRateDenominator)},
                {"startPosition", g.startPosition},
                {"duration", g.duration},
                {"editUnitByteCount", g.editUnitByteCount},
                {"indexEntries", g.indexEntries},
                {"deltaEntries", g.deltaEntries}};
}

// Each item of `items` as JSON.
template <class Item, class Convert> Json each(std::vector<Item> const & items, Convert convert)
{
    Json all = Json::array();
    for (Item const & item : items)
        all.push_back(convert(item));
    return all;
}

Json toJson(FileSummary const & s)
{
    Json root{{"file", s.path}, {"size", s.fileSize}, {"runIn", s.runIn}, {"packets", s.packets}};
    root["partitions"] = each(s.partitions, partitionJson);
    root["rip"] = s.hasRip ? each(s.rip, [](RipEntry const & e) { return Json{{"bodySID", e.bodySID}, {"offset", e.offset}}; })
                           : Json();
    root["metadataPartition"] = s.metadataPartition < 0 ? Json() : Json(s.metadataPartition);
    root["operationalPattern"] = labelJson(s.operationalPattern, s.operationalPatternName);
    root["essenceContainers"] = Json::array();
    for (size_t i = 0; i < s.essenceContainers.size(); ++i)
        root["essenceContainers"].push_back(labelJson(s.essenceContainers[i], s.essenceContainerNames[i]));
    root["identifications"] = each(s.identifications, [](IdentificationInfo const & id) {
        return Json{{"company", textOrNull(id.company)},       {"product", textOrNull(id.product)},
                    {"productVersion", textOrNull(id.productVersion)}, {"versionString", textOrNull(id.versionString)},
                    {"platform", textOrNull(id.platform)},     {"date", textOrNull(id.date)}};
    });
    root["packages"] = each(s.packages, packageJson);
    root["indexSegments"] = each(s.segments, segmentJson);
    root["essenceStreams"] = each(s.streams, [](StreamFound const & f) {
        return Json{{"bodySID", f.bodySID}, {"trackNumber", f.trackNumber}, {"elements", f.elements},
                    {"bytes", f.bytes},     {"firstOffset", f.firstOffset}};
    });
    root["systemItems"] = s.systemItems;
    root["unknownPackets"] = s.unknownPackets;
    root["warnings"] = s.warnings;
    return root;
}

void printHead(FileSummary const & s)
{
    std::printf("file: %s\n", s.path.c_str());
    std::printf("size: %" PRIu64 " bytes\n", s.fileSize);
    std::printf("run-in: %" PRIu64 " bytes\n", s.runIn);
    std::printf("operational pattern: %s\n", withName(s.operationalPattern, s.operationalPatternName).c_str());
    for (size_t i = 0; i < s.essenceContainers.size(); ++i)
        std::printf("essence container: %s\n", withName(s.essenceContainers[i], s.essenceContainerNames[i]).c_str());
    for (IdentificationInfo const & id : s.identifications)
        std::printf("written by: %s, %s %s%s%s, %s\n", id.company.empty() ? "?" : id.company.c_str(),
                    id.product.empty() ? "?" : id.product.c_str(), id.productVersion.c_str(),
                    id.versionString.empty() ? "" : " ", id.versionString.c_str(), id.date.c_str());
    std::printf("partitions: %zu\n", s.partitions.size());
    for (PartitionFound const & p : s.partitions)
        std::printf("  %10" PRIu64 "  %-6s %-17s  body SID %u  index SID %u  header %" PRIu64 " bytes  index %" PRIu64
                    " bytes  essence %" PRIu64 " elements\n",
                    p.offset, kindWord(p.kind), statusWord(p.status), p.bodySID, p.indexSID, p.headerByteCount,
                    p.indexByteCount, p.essenceElements);
    if (s.hasRip)
        std::printf("random index pack: %zu entries\n", s.rip.size());
    else
        std::printf("random index pack: none\n");
    for (RipEntry const & e : s.rip)
        std::printf("  %10" PRIu64 "  body SID %u\n", e.offset, e.bodySID);
    if (s.metadataPartition >= 0)
        std::printf("header metadata from the partition at %" PRId64 "\n", s.metadataPartition);
}

void printTrack(TrackInfo const & t)
{
    std::string duration = t.hasDuration ? std::to_string(t.duration) : std::string("?");
    if (!t.durationTimecode.empty())
        duration += " (" + t.durationTimecode + ")";
    std::printf("  track %u  %-10s number %s  edit rate %s  origin %" PRId64 "  duration %s\n", t.id, t.kind.c_str(),
                hex8(t.number).c_str(), rational(t.editRateNumerator, t.editRateDenominator).c_str(), t.origin,
                duration.c_str());
    if (t.elementsFound >= 0)
        std::printf("    found: %" PRId64 " edit units in %" PRId64 " elements, %" PRId64 " bytes%s\n", t.editUnitsFound,
                    t.elementsFound, t.bytesFound, t.clipWrapped ? " (clip wrapped)" : "");
}

void printDescriptor(DescriptorInfo const & d)
{
    std::string line = "  descriptor " + d.className;
    if (d.hasLinkedTrackID)
        line += " of track " + std::to_string(d.linkedTrackID);
    if (!d.essenceContainer.empty())
        line += ": " + withName(d.essenceContainer, d.essenceContainerName);
    std::printf("%s\n", line.c_str());
    std::string details;
    if (d.storedWidth != 0 || d.storedHeight != 0)
        details += " picture " + std::to_string(d.storedWidth) + "x" + std::to_string(d.storedHeight);
    if (!d.pictureCodingName.empty())
        details += " " + d.pictureCodingName;
    if (!d.sampleRate.empty())
        details += " sample rate " + d.sampleRate;
    if (!d.audioSamplingRate.empty())
        details += " audio " + d.audioSamplingRate + " Hz, " + std::to_string(d.channels) + " channels, " +
                   std::to_string(d.quantizationBits) + " bits";
    if (d.hasContainerDuration)
        details += " container duration " + std::to_string(d.containerDuration);
    if (!details.empty())
        std::printf("   %s\n", details.c_str());
}

void printPackage(PackageInfo const & p)
{
    std::printf("%s package %s%s%s%s\n", p.kind.c_str(), p.uid.c_str(), p.name.empty() ? "" : " \"", p.name.c_str(),
                p.name.empty() ? "" : "\"");
    if (p.hasEssenceContainerData)
        std::printf("  essence in body SID %u, index SID %u\n", p.bodySID, p.indexSID);
    if (!p.startTimecode.empty())
        std::printf("  start timecode %s\n", p.startTimecode.c_str());
    for (TrackInfo const & t : p.tracks)
        printTrack(t);
    for (DescriptorInfo const & d : p.descriptors)
        printDescriptor(d);
}

void printTail(FileSummary const & s)
{
    std::printf("index table segments: %zu\n", s.segments.size());
    for (SegmentFound const & g : s.segments)
    {
        std::printf("  %10" PRIu64 "  index SID %u  body SID %u  edit rate %s  start %" PRId64 "  duration %" PRId64,
                    g.offset, g.indexSID, g.bodySID, rational(g.editRateNumerator, g.editRateDenominator).c_str(),
                    g.startPosition, g.duration);
        if (g.editUnitByteCount != 0)
            std::printf("  constant edit unit size %u bytes\n", g.editUnitByteCount);
        else
            std::printf("  %u index entries\n", g.indexEntries);
    }
    std::printf("essence in the body: %zu streams\n", s.streams.size());
    for (StreamFound const & f : s.streams)
        std::printf("  body SID %u  track number %s  %" PRIu64 " elements  %" PRIu64 " bytes\n", f.bodySID,
                    hex8(f.trackNumber).c_str(), f.elements, f.bytes);
    if (s.systemItems != 0)
        std::printf("system items: %" PRIu64 "\n", s.systemItems);
    if (s.unknownPackets != 0)
        std::printf("other packets: %" PRIu64 "\n", s.unknownPackets);
    for (std::string const & w : s.warnings)
        std::printf("warning: %s\n", w.c_str());
}

int info(InfoOptions const & options)
{
    try
    {
        FileSummary const summary = summarize(options.path);
        if (options.json)
            printJson(toJson(summary));
        else
        {
            printHead(summary);
            for (PackageInfo const & p : summary.packages)
                printPackage(p);
            printTail(summary);
        }
    }
    catch (Vellum::Exceptions::BaseException const & e)
    {
        return fileFailure(options.path, e);
    }
    return 0;
}
} // namespace

Command addInfoCommand(CLI::App & program)
{
    auto options = std::make_shared<InfoOptions>();
    CLI::App * command = program.add_subcommand("info", "a summary: partitions, RIP, packages and tracks, descriptors, "
                                                        "index, the essence found in the body, and warnings");
    command->add_option("FILE", options->path, "the MXF file")->required();
    command->add_flag("--json", options->json, "print the summary as JSON");
    return Command{command, [options] { return info(*options); }};
}
} // namespace VellumTool
