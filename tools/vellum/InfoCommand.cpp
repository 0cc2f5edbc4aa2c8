// vellum info FILE: a summary of a file from its KLV packets.

#include <cinttypes>
#include <cstdio>
#include <map>
#include <vector>

#include "Commands.h"
#include "KlvWalk.h"

namespace VellumTool
{
int infoCommand(Arguments const & arguments)
{
    if (arguments.size() != 1)
    {
        std::fprintf(stderr, "usage: vellum info FILE\n");
        return 2;
    }
    std::vector<PacketInfo> partitions;
    std::map<PacketKind, std::pair<std::uint64_t, std::uint64_t>> byKind; // count, bytes
    // Essence element keys with their count and value bytes: one line for each stream.
    std::map<std::string, std::pair<std::uint64_t, std::uint64_t>> streams;
    WalkResult result = walk(arguments[0], 0, [&](PacketInfo const & packet, Vellum::KLV::Packet &) {
        std::pair<std::uint64_t, std::uint64_t> & k = byKind[packet.kind];
        ++k.first;
        k.second += packet.length;
        if (packet.kind == PacketKind::PartitionPack)
            partitions.push_back(packet);
        if (packet.kind == PacketKind::EssenceElement)
        {
            std::pair<std::uint64_t, std::uint64_t> & s = streams[dotted(packet.key)];
            ++s.first;
            s.second += packet.length;
        }
    });

    std::printf("file: %s\n", arguments[0].c_str());
    std::printf("size: %" PRIu64 " bytes\n", result.fileSize);
    std::printf("run-in: %" PRIu64 " bytes\n", result.runIn);
    std::printf("packets: %" PRIu64 "\n", result.packets);
    std::printf("partitions: %zu\n", partitions.size());
    for (PacketInfo const & p : partitions)
        std::printf("  %10" PRIu64 "  %s\n", p.offset, describe(p).c_str());
    std::printf("packets by kind:\n");
    for (auto const & k : byKind)
        std::printf("  %-18s %8" PRIu64 " packets  %12" PRIu64 " value bytes\n", kindWord(k.first), k.second.first,
                    k.second.second);
    std::printf("essence streams: %zu\n", streams.size());
    for (auto const & s : streams)
        std::printf("  %s  %8" PRIu64 " elements  %12" PRIu64 " bytes\n", s.first.c_str(), s.second.first,
                    s.second.second);
    if (!result.error.empty())
    {
        std::fprintf(stderr, "vellum info: %s\n", result.error.c_str());
        return 1;
    }
    return 0;
}
} // namespace VellumTool
