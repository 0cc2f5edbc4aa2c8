// vellum klv FILE [--limit N] [--primer] [--index] [--entries]: one line per KLV packet, with the
// packs decoded; --index adds index segments, --entries (which implies it) their index entries.

#include <CLI/CLI.hpp>
#include <cinttypes>
#include <cstdio>
#include <memory>

#include "Commands.h"
#include "DataIO/File/FileDataSource.h"
#include "Format.h"
#include "IndexPrint.h"
#include "MXFIO/PacketWalk.h"
#include "PackPrint.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
using namespace Vellum;
using MXFIO::PacketKind;

struct KlvOptions
{
    std::string path;
    std::uint64_t limit = 0;
    bool primer = false;
    bool index = false;
    bool entries = false;
};

void printPacket(KlvOptions const & options, MXFIO::PacketPlace const & place, KLV::Packet & packet)
{
    std::string kind = MXFIO::packetKindWord(place.kind);
    if (place.kind == PacketKind::PartitionPack)
        kind += std::string(" (") + MXFIO::partitionKindWord(place.key[13]) + ", " +
                MXFIO::partitionStatusWord(place.key[14]) + ")";
    std::printf("%10" PRIu64 "  %s  ber %u  length %" PRIu64 "  %s\n", place.offset, dotted(place.key).c_str(),
                place.berLength, place.length, kind.c_str());
    if (place.kind == PacketKind::PartitionPack)
        printPartitionPack(Packs::PartitionPack(packet));
    else if (place.kind == PacketKind::Primer)
        printPrimer(Packs::PrimerPack(packet), options.primer);
    else if (place.kind == PacketKind::RandomIndexPack)
        printRandomIndexPack(Packs::RandomIndexPack(packet));
    else if ((options.index || options.entries) && place.kind == PacketKind::IndexSegment)
        printIndexSegment(IndexTables::IndexTableSegment(packet), options.entries);
}

int klv(KlvOptions const & options)
{
    try
    {
        DataIO::File::FileDataSource source(Utils::wide(options.path.c_str()).c_str(), 1 << 20);
        MXFIO::PacketWalk walk(source);
        while (options.limit == 0 || walk.packets() < options.limit)
        {
            Templates::auto_ptr<KLV::Packet> packet = walk.next();
            if (!packet)
                break;
            MXFIO::PacketPlace const & place = walk.place();
            if (walk.packets() == 1 && walk.runIn() != 0)
                std::printf("run-in: %" PRIu64 " bytes\n", walk.runIn());
            printPacket(options, place, *packet);
            if (walk.valueCutShort())
                return fileFailure(options.path, "the value of the " + std::string(MXFIO::packetKindWord(place.kind)) +
                                                     " at offset " + std::to_string(place.offset) + " (length " +
                                                     std::to_string(place.length) + ") runs past the end of the file (" +
                                                     std::to_string(walk.size()) + " bytes)");
        }
    }
    catch (Exceptions::BaseException const & e)
    {
        return fileFailure(options.path, e);
    }
    return 0;
}
} // namespace

Command addKlvCommand(CLI::App & program)
{
    auto options = std::make_shared<KlvOptions>();
    CLI::App * command = program.add_subcommand("klv", "one line per KLV packet: offset, key, BER size, length, "
                                                       "kind; partition packs, the Primer and the RIP decoded");
    command->add_option("FILE", options->path, "the MXF file")->required();
    command->add_option("--limit", options->limit, "list at most N packets (0: all)");
    command->add_flag("--primer", options->primer, "print the Primer's table");
    command->add_flag("--index", options->index, "decode index table segments");
    command->add_flag("--entries", options->entries, "decode index segments with their index entries");
    return Command{command, [options] { return klv(*options); }};
}
} // namespace VellumTool
