#include "KlvWalk.h"

#include <cstdio>

#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Reader.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
// Bytes 0 to 12 of the partition pack, primer and RIP keys.
unsigned char const PACK_PREFIX[13] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01};
// Bytes 8 to 12 of a Generic Container system item key (content package or generic system item).
unsigned char const GC_PREFIX[4] = {0x0d, 0x01, 0x03, 0x01};
// A run-in is at most 64 KiB long.
std::uint64_t const MAXIMUM_RUN_IN = 65535;

bool hasPackPrefix(Vellum::KLV::Key const & key)
{
    for (unsigned i = 0; i < 13; ++i)
        if (key[i] != PACK_PREFIX[i] && i != 7)
            return false;
    return true;
}

char const * partitionKind(unsigned char b)
{
    switch (b)
    {
    case 0x02:
        return "header";
    case 0x03:
        return "body";
    case 0x04:
        return "footer";
    default:
        return "unknown kind";
    }
}

char const * partitionStatus(unsigned char b)
{
    switch (b)
    {
    case 0x01:
        return "open incomplete";
    case 0x02:
        return "closed incomplete";
    case 0x03:
        return "open complete";
    case 0x04:
        return "closed complete";
    default:
        return "unknown status";
    }
}
} // namespace

PacketKind classify(Vellum::KLV::Key const & key)
{
    if (hasPackPrefix(key))
    {
        unsigned char b13 = key[13];
        if (b13 >= 0x02 && b13 <= 0x04)
            return PacketKind::PartitionPack;
        if (b13 == 0x05 && key[14] == 0x01)
            return PacketKind::Primer;
        if (b13 == 0x11 && key[14] == 0x01)
            return PacketKind::RandomIndexPack;
    }
    if (Vellum::KLV::isIndexTableKlvSegment(key))
        return PacketKind::IndexSegment;
    if (Vellum::KLV::isFillItem(key))
        return PacketKind::FillItem;
    bool gc = key[8] == GC_PREFIX[0] && key[9] == GC_PREFIX[1] && key[10] == GC_PREFIX[2] && key[11] == GC_PREFIX[3];
    if (gc && key[4] == 0x02 && (key[12] == 0x04 || key[12] == 0x14))
        return PacketKind::SystemItem;
    if (Vellum::KLV::isEssence(key))
        return PacketKind::EssenceElement;
    if (Vellum::KLV::isLocalSet(key))
        return PacketKind::LocalSet;
    return PacketKind::Other;
}

std::string dotted(Vellum::KLV::Key const & key)
{
    static char const hex[] = "0123456789abcdef";
    std::string text;
    for (unsigned i = 0; i < 16; ++i)
    {
        if (i != 0)
            text += '.';
        text += hex[key[i] >> 4];
        text += hex[key[i] & 15];
    }
    return text;
}

char const * kindWord(PacketKind kind)
{
    switch (kind)
    {
    case PacketKind::PartitionPack:
        return "partition pack";
    case PacketKind::Primer:
        return "primer";
    case PacketKind::RandomIndexPack:
        return "random index pack";
    case PacketKind::IndexSegment:
        return "index segment";
    case PacketKind::FillItem:
        return "fill item";
    case PacketKind::EssenceElement:
        return "essence element";
    case PacketKind::SystemItem:
        return "system item";
    case PacketKind::LocalSet:
        return "local set";
    case PacketKind::Other:
        break;
    }
    return "other";
}

std::string describe(PacketInfo const & packet)
{
    if (packet.kind == PacketKind::PartitionPack)
        return std::string("partition pack (") + partitionKind(packet.key[13]) + ", " +
               partitionStatus(packet.key[14]) + ")";
    return kindWord(packet.kind);
}

WalkResult walk(std::string const & path, std::uint64_t limit, Visitor const & visit)
{
    WalkResult result;
    try
    {
        Vellum::Templates::wstring widePath = Vellum::Utils::wide(path.c_str());
        Vellum::DataIO::File::FileDataSource source(widePath.c_str(), 1 << 20);
        result.fileSize = source.remaining();
        Vellum::KLV::Reader reader(source);
        while (!source.endOfStream())
        {
            if (limit != 0 && result.packets == limit)
            {
                result.stoppedByLimit = true;
                break;
            }
            Vellum::uint64 skipped = 0;
            // Only the first key may stand behind a run-in; after it packets follow each other.
            Vellum::Templates::auto_ptr<Vellum::KLV::Packet> packet =
                reader.nextKLV(skipped, result.packets == 0 ? MAXIMUM_RUN_IN : 0);
            if (result.packets == 0)
                result.runIn = skipped;
            PacketInfo info{packet->keyAbsoluteOffset(), packet->key(), packet->berLength(), packet->length(),
                            PacketKind::Other};
            info.kind = classify(info.key);
            ++result.packets;
            visit(info, *packet);
            Vellum::uint64 end = info.offset + 16 + info.berLength;
            if (info.length > result.fileSize || end + info.length > result.fileSize)
            {
                result.error = "the value of the packet at offset " + std::to_string(info.offset) + " (length " +
                               std::to_string(info.length) + ") runs past the end of the file (" +
                               std::to_string(result.fileSize) + " bytes)";
                break;
            }
        }
    }
    catch (Vellum::Exceptions::BaseException const & e)
    {
        result.error = Vellum::Utils::narrow(e.what()).c_str();
    }
    return result;
}
} // namespace VellumTool
