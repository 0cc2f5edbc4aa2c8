#pragma once
// A walk over the KLV packets of a file through KLV::Reader over a FileDataSource, shared by the
// subcommands that list or summarise packets.

#include <cstdint>
#include <functional>
#include <string>

#include "KLV/Key.h"
#include "KLV/Packet.h"

namespace VellumTool
{
enum class PacketKind
{
    PartitionPack,
    Primer,
    RandomIndexPack,
    IndexSegment,
    FillItem,
    EssenceElement,
    SystemItem,
    LocalSet,
    Other
};

struct PacketInfo
{
    std::uint64_t offset;   // of the key, absolute in the file
    Vellum::KLV::Key key;
    unsigned berLength;
    std::uint64_t length;
    PacketKind kind;
};

PacketKind classify(Vellum::KLV::Key const & key);
// The plain kind word: "partition pack", "fill item", ...
char const * kindWord(PacketKind kind);
// The kind word, with a partition pack's kind and status ("partition pack (header, closed complete)").
std::string describe(PacketInfo const & packet);
std::string dotted(Vellum::KLV::Key const & key);

struct WalkResult
{
    std::uint64_t runIn = 0;
    std::uint64_t packets = 0;
    std::uint64_t fileSize = 0;
    bool stoppedByLimit = false;
    // Empty when the walk reached the end of the file cleanly.
    std::string error;
};

// Calls `visit` for each packet, in file order, until the end, the limit (0: none) or a failure.
// The visitor may read the packet's value; what it leaves is skipped. An exception of the library
// thrown by the visitor ends the walk as a failure.
typedef std::function<void(PacketInfo const &, Vellum::KLV::Packet &)> Visitor;
WalkResult walk(std::string const & path, std::uint64_t limit, Visitor const & visit);
} // namespace VellumTool
