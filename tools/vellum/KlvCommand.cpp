// vellum klv FILE [--limit N] [--primer] [--index] [--entries]: one line per KLV packet, with the
// packs decoded; --index adds index segments, --entries (which implies it) their index entries.

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "Commands.h"
#include "IndexPrint.h"
#include "KlvWalk.h"
#include "PackPrint.h"

namespace VellumTool
{
int klvCommand(Arguments const & arguments)
{
    std::string path;
    std::uint64_t limit = 0;
    bool primerTable = false;
    bool indexSegments = false;
    bool indexEntries = false;
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        if (arguments[i] == "--limit" && i + 1 < arguments.size())
        {
            char * end = nullptr;
            limit = std::strtoull(arguments[++i].c_str(), &end, 10);
            if (end == nullptr || *end != 0)
            {
                std::fprintf(stderr, "vellum klv: --limit takes a whole number\n");
                return 2;
            }
        }
        else if (arguments[i] == "--primer")
            primerTable = true;
        else if (arguments[i] == "--index")
            indexSegments = true;
        else if (arguments[i] == "--entries")
            indexSegments = indexEntries = true;
        else if (path.empty() && arguments[i].compare(0, 2, "--") != 0)
            path = arguments[i];
        else
        {
            std::fprintf(stderr, "usage: vellum klv FILE [--limit N] [--primer] [--index] [--entries]\n");
            return 2;
        }
    }
    if (path.empty())
    {
        std::fprintf(stderr, "usage: vellum klv FILE [--limit N] [--primer] [--index] [--entries]\n");
        return 2;
    }

    bool runInReported = false;
    WalkResult result = walk(path, limit, [&](PacketInfo const & packet, Vellum::KLV::Packet & klv) {
        if (!runInReported)
        {
            runInReported = true;
            if (packet.offset != 0)
                std::printf("run-in: %" PRIu64 " bytes\n", packet.offset);
        }
        std::printf("%10" PRIu64 "  %s  ber %u  length %" PRIu64 "  %s\n", packet.offset, dotted(packet.key).c_str(),
                    packet.berLength, packet.length, describe(packet).c_str());
        if (packet.kind == PacketKind::PartitionPack)
            printPartitionPack(Vellum::Packs::PartitionPack(klv));
        else if (packet.kind == PacketKind::Primer)
            printPrimer(Vellum::Packs::PrimerPack(klv), primerTable);
        else if (packet.kind == PacketKind::RandomIndexPack)
            printRandomIndexPack(Vellum::Packs::RandomIndexPack(klv));
        else if (indexSegments && Vellum::IndexTables::IndexTableSegment::isSegmentKey(klv.key()))
            printIndexSegment(Vellum::IndexTables::IndexTableSegment(klv), indexEntries);
    });
    std::fflush(stdout);
    if (!result.error.empty())
    {
        std::fprintf(stderr, "vellum klv: %s\n", result.error.c_str());
        return 1;
    }
    return 0;
}
} // namespace VellumTool
