// vellum info FILE [--json]: a summary of a file. Partitions, RIP, index segments and essence
// elements come from a walk over every packet; packages, tracks and descriptors from the header
// metadata that the reader takes as final. Where the two disagree, a "warning:" line says so.

#include <cinttypes>
#include <cstdio>
#include <string>

#include "Commands.h"
#include "Exceptions/Exceptions.h"
#include "FileSummary.h"
#include "JsonValue.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
char const * partitionKind(unsigned kind)
{
    switch (kind)
    {
    case 2:
        return "header";
    case 3:
        return "body";
    case 4:
        return "footer";
    default:
        return "unknown";
    }
}

char const * partitionStatus(unsigned status)
{
    switch (status)
    {
    case 1:
        return "open incomplete";
    case 2:
        return "closed incomplete";
    case 3:
        return "open complete";
    case 4:
        return "closed complete";
    case 0x11:
        return "generic stream";
    default:
        return "unknown";
    }
}

std::string withName(std::string const & label, std::string const & name)
{
    if (label.empty())
        return "(none)";
    return name.empty() ? label : name + " (" + label + ")";
}

std::string rate(int numerator, int denominator)
{
    return std::to_string(numerator) + "/" + std::to_string(denominator);
}

std::string hex8(std::uint32_t value)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%08x", value);
    return buffer;
}

JsonValue textOrNull(std::string const & text)
{
    return text.empty() ? JsonValue::null() : JsonValue::text(text);
}

JsonValue labelJson(std::string const & label, std::string const & name)
{
    if (label.empty())
        return JsonValue::null();
    return JsonValue::object().set("label", JsonValue::text(label)).set("name", textOrNull(name));
}

JsonValue toJson(FileSummary const & s)
{
    JsonValue root = JsonValue::object();
    root.set("file", JsonValue::text(s.path));
    root.set("size", JsonValue::unsignedNumber(s.fileSize));
    root.set("runIn", JsonValue::unsignedNumber(s.runIn));
    root.set("packets", JsonValue::unsignedNumber(s.packets));

    JsonValue partitions = JsonValue::array();
    for (PartitionFound const & p : s.partitions)
    {
        JsonValue containers = JsonValue::array();
        for (std::string const & c : p.essenceContainers)
            containers.push(JsonValue::text(c));
        partitions.push(JsonValue::object()
                            .set("offset", JsonValue::unsignedNumber(p.offset))
                            .set("kind", JsonValue::text(partitionKind(p.kind)))
                            .set("status", JsonValue::text(partitionStatus(p.status)))
                            .set("thisPartition", JsonValue::unsignedNumber(p.thisPartition))
                            .set("previousPartition", JsonValue::unsignedNumber(p.previousPartition))
                            .set("footerPartition", JsonValue::unsignedNumber(p.footerPartition))
                            .set("bodySID", JsonValue::unsignedNumber(p.bodySID))
                            .set("indexSID", JsonValue::unsignedNumber(p.indexSID))
                            .set("bodyOffset", JsonValue::unsignedNumber(p.bodyOffset))
                            .set("kagSize", JsonValue::unsignedNumber(p.kagSize))
                            .set("headerByteCount", JsonValue::unsignedNumber(p.headerByteCount))
                            .set("headerBytesFound", JsonValue::unsignedNumber(p.headerBytesFound))
                            .set("indexByteCount", JsonValue::unsignedNumber(p.indexByteCount))
                            .set("indexBytesFound", JsonValue::unsignedNumber(p.indexBytesFound))
                            .set("essenceElements", JsonValue::unsignedNumber(p.essenceElements))
                            .set("essenceBytes", JsonValue::unsignedNumber(p.essenceBytes))
                            .set("operationalPattern", textOrNull(p.operationalPattern))
                            .set("essenceContainers", containers));
    }
    root.set("partitions", partitions);

    if (s.hasRip)
    {
        JsonValue rip = JsonValue::array();
        for (RipEntry const & e : s.rip)
            rip.push(JsonValue::object()
                         .set("bodySID", JsonValue::unsignedNumber(e.bodySID))
                         .set("offset", JsonValue::unsignedNumber(e.offset)));
        root.set("rip", rip);
    }
    else
        root.set("rip", JsonValue::null());

    root.set("metadataPartition", s.metadataPartition < 0 ? JsonValue::null() : JsonValue::number(s.metadataPartition));
    root.set("operationalPattern", labelJson(s.operationalPattern, s.operationalPatternName));
    JsonValue containers = JsonValue::array();
    for (size_t i = 0; i < s.essenceContainers.size(); ++i)
        containers.push(labelJson(s.essenceContainers[i], s.essenceContainerNames[i]));
    root.set("essenceContainers", containers);

    JsonValue identifications = JsonValue::array();
    for (IdentificationInfo const & id : s.identifications)
        identifications.push(JsonValue::object()
                                 .set("company", textOrNull(id.company))
                                 .set("product", textOrNull(id.product))
                                 .set("productVersion", textOrNull(id.productVersion))
                                 .set("versionString", textOrNull(id.versionString))
                                 .set("platform", textOrNull(id.platform))
                                 .set("date", textOrNull(id.date)));
    root.set("identifications", identifications);

    JsonValue packages = JsonValue::array();
    for (PackageInfo const & p : s.packages)
    {
        JsonValue tracks = JsonValue::array();
        for (TrackInfo const & t : p.tracks)
        {
            JsonValue track = JsonValue::object()
                                  .set("id", JsonValue::unsignedNumber(t.id))
                                  .set("number", JsonValue::unsignedNumber(t.number))
                                  .set("name", textOrNull(t.name))
                                  .set("kind", JsonValue::text(t.kind))
                                  .set("dataDefinition", textOrNull(t.dataDefinition))
                                  .set("editRate", JsonValue::text(rate(t.editRateNumerator, t.editRateDenominator)))
                                  .set("origin", JsonValue::number(t.origin))
                                  .set("duration", t.hasDuration ? JsonValue::number(t.duration) : JsonValue::null())
                                  .set("durationTimecode", textOrNull(t.durationTimecode));
            if (t.editUnitsFound >= 0 || t.elementsFound >= 0)
                track.set("found", JsonValue::object()
                                       .set("elements", JsonValue::number(t.elementsFound))
                                       .set("editUnits", t.editUnitsFound < 0 ? JsonValue::null()
                                                                              : JsonValue::number(t.editUnitsFound))
                                       .set("bytes", JsonValue::number(t.bytesFound))
                                       .set("clipWrapped", JsonValue::boolean(t.clipWrapped)));
            tracks.push(track);
        }
        JsonValue descriptors = JsonValue::array();
        for (DescriptorInfo const & d : p.descriptors)
        {
            JsonValue descriptor = JsonValue::object().set("class", JsonValue::text(d.className));
            descriptor.set("linkedTrackID",
                           d.hasLinkedTrackID ? JsonValue::unsignedNumber(d.linkedTrackID) : JsonValue::null());
            descriptor.set("essenceContainer", labelJson(d.essenceContainer, d.essenceContainerName));
            descriptor.set("sampleRate", textOrNull(d.sampleRate));
            descriptor.set("containerDuration",
                           d.hasContainerDuration ? JsonValue::number(d.containerDuration) : JsonValue::null());
            if (d.storedWidth != 0 || d.storedHeight != 0)
            {
                descriptor.set("storedWidth", JsonValue::unsignedNumber(d.storedWidth));
                descriptor.set("storedHeight", JsonValue::unsignedNumber(d.storedHeight));
            }
            if (!d.pictureCoding.empty())
                descriptor.set("pictureEssenceCoding", labelJson(d.pictureCoding, d.pictureCodingName));
            if (!d.audioSamplingRate.empty())
            {
                descriptor.set("audioSamplingRate", JsonValue::text(d.audioSamplingRate));
                descriptor.set("channels", JsonValue::unsignedNumber(d.channels));
                descriptor.set("quantizationBits", JsonValue::unsignedNumber(d.quantizationBits));
                if (d.blockAlign != 0)
                    descriptor.set("blockAlign", JsonValue::unsignedNumber(d.blockAlign));
            }
            descriptors.push(descriptor);
        }
        packages.push(JsonValue::object()
                          .set("kind", JsonValue::text(p.kind))
                          .set("uid", textOrNull(p.uid))
                          .set("name", textOrNull(p.name))
                          .set("startTimecode", textOrNull(p.startTimecode))
                          .set("bodySID", p.hasEssenceContainerData ? JsonValue::unsignedNumber(p.bodySID)
                                                                    : JsonValue::null())
                          .set("indexSID", p.hasEssenceContainerData ? JsonValue::unsignedNumber(p.indexSID)
                                                                     : JsonValue::null())
                          .set("tracks", tracks)
                          .set("descriptors", descriptors));
    }
    root.set("packages", packages);

    JsonValue segments = JsonValue::array();
    for (SegmentFound const & g : s.segments)
        segments.push(JsonValue::object()
                          .set("offset", JsonValue::unsignedNumber(g.offset))
                          .set("indexSID", JsonValue::unsignedNumber(g.indexSID))
                          .set("bodySID", JsonValue::unsignedNumber(g.bodySID))
                          .set("editRate", JsonValue::text(rate(g.editRateNumerator, g.editRateDenominator)))
                          .set("startPosition", JsonValue::number(g.startPosition))
                          .set("duration", JsonValue::number(g.duration))
                          .set("editUnitByteCount", JsonValue::unsignedNumber(g.editUnitByteCount))
                          .set("indexEntries", JsonValue::unsignedNumber(g.indexEntries))
                          .set("deltaEntries", JsonValue::unsignedNumber(g.deltaEntries)));
    root.set("indexSegments", segments);

    JsonValue streams = JsonValue::array();
    for (StreamFound const & f : s.streams)
        streams.push(JsonValue::object()
                         .set("bodySID", JsonValue::unsignedNumber(f.bodySID))
                         .set("trackNumber", JsonValue::unsignedNumber(f.trackNumber))
                         .set("elements", JsonValue::unsignedNumber(f.elements))
                         .set("bytes", JsonValue::unsignedNumber(f.bytes))
                         .set("firstOffset", JsonValue::unsignedNumber(f.firstOffset)));
    root.set("essenceStreams", streams);
    root.set("systemItems", JsonValue::unsignedNumber(s.systemItems));
    root.set("unknownPackets", JsonValue::unsignedNumber(s.unknownPackets));

    JsonValue warnings = JsonValue::array();
    for (std::string const & w : s.warnings)
        warnings.push(JsonValue::text(w));
    root.set("warnings", warnings);
    return root;
}

void printText(FileSummary const & s)
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
                    p.offset, partitionKind(p.kind), partitionStatus(p.status), p.bodySID, p.indexSID,
                    p.headerByteCount, p.indexByteCount, p.essenceElements);
    if (s.hasRip)
    {
        std::printf("random index pack: %zu entries\n", s.rip.size());
        for (RipEntry const & e : s.rip)
            std::printf("  %10" PRIu64 "  body SID %u\n", e.offset, e.bodySID);
    }
    else
        std::printf("random index pack: none\n");
    if (s.metadataPartition >= 0)
        std::printf("header metadata from the partition at %" PRId64 "\n", s.metadataPartition);

    for (PackageInfo const & p : s.packages)
    {
        std::printf("%s package %s%s%s%s\n", p.kind.c_str(), p.uid.c_str(), p.name.empty() ? "" : " \"",
                    p.name.c_str(), p.name.empty() ? "" : "\"");
        if (p.hasEssenceContainerData)
            std::printf("  essence in body SID %u, index SID %u\n", p.bodySID, p.indexSID);
        if (!p.startTimecode.empty())
            std::printf("  start timecode %s\n", p.startTimecode.c_str());
        for (TrackInfo const & t : p.tracks)
        {
            std::string duration = t.hasDuration ? std::to_string(t.duration) : std::string("?");
            if (!t.durationTimecode.empty())
                duration += " (" + t.durationTimecode + ")";
            std::printf("  track %u  %-10s number %s  edit rate %s  origin %" PRId64 "  duration %s\n", t.id,
                        t.kind.c_str(), hex8(t.number).c_str(), rate(t.editRateNumerator, t.editRateDenominator).c_str(),
                        t.origin, duration.c_str());
            if (t.elementsFound >= 0)
                std::printf("    found: %" PRId64 " edit units in %" PRId64 " elements, %" PRId64 " bytes%s\n",
                            t.editUnitsFound, t.elementsFound, t.bytesFound, t.clipWrapped ? " (clip wrapped)" : "");
        }
        for (DescriptorInfo const & d : p.descriptors)
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
    }

    std::printf("index table segments: %zu\n", s.segments.size());
    for (SegmentFound const & g : s.segments)
    {
        std::printf("  %10" PRIu64 "  index SID %u  body SID %u  edit rate %s  start %" PRId64 "  duration %" PRId64,
                    g.offset, g.indexSID, g.bodySID, rate(g.editRateNumerator, g.editRateDenominator).c_str(),
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
} // namespace

int infoCommand(Arguments const & arguments)
{
    std::string path;
    bool asJson = false;
    bool wrong = false;
    for (std::string const & argument : arguments)
    {
        if (argument == "--json")
            asJson = true;
        else if (path.empty() && argument.compare(0, 2, "--") != 0)
            path = argument;
        else
            wrong = true;
    }
    if (path.empty() || wrong)
    {
        std::fprintf(stderr, "usage: vellum info FILE [--json]\n");
        return 2;
    }
    try
    {
        FileSummary summary = summarize(path);
        if (asJson)
            std::printf("%s\n", toJson(summary).write().c_str());
        else
            printText(summary);
    }
    catch (Vellum::Exceptions::BaseException const & e)
    {
        std::fprintf(stderr, "vellum info: %s\n", Vellum::Utils::narrow(e.message()).c_str());
        return 1;
    }
    return 0;
}
} // namespace VellumTool
