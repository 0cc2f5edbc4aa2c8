#include "MXFIO/PacketWalk.h"

#include "KLV/KeyPredicates.h"
#include "KLV/Reader.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
// Bytes 0 to 12 of the partition pack, Primer and RIP keys (byte 7, the version, aside).
unsigned char const PACK_PREFIX[13] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01};

bool hasPackPrefix(KLV::Key const & key)
{
    for (unsigned i = 0; i < 13; ++i)
        if (key[i] != PACK_PREFIX[i] && i != 7)
            return false;
    return true;
}

// A Generic Container system item: content package or generic system item.
bool isSystemItem(KLV::Key const & key)
{
    return key[4] == 0x02 && key[8] == 0x0d && key[9] == 0x01 && key[10] == 0x03 && key[11] == 0x01 &&
           (key[12] == 0x04 || key[12] == 0x14);
}
} // namespace

PacketKind packetKind(KLV::Key const & key)
{
    if (hasPackPrefix(key))
    {
        if (key[13] >= 0x02 && key[13] <= 0x04)
            return PacketKind::PartitionPack;
        if (key[13] == 0x05 && key[14] == 0x01)
            return PacketKind::Primer;
        if (key[13] == 0x11 && key[14] == 0x01)
            return PacketKind::RandomIndexPack;
    }
    if (KLV::isIndexTableKlvSegment(key))
        return PacketKind::IndexSegment;
    if (KLV::isFillItem(key))
        return PacketKind::FillItem;
    if (isSystemItem(key))
        return PacketKind::SystemItem;
    if (KLV::isEssence(key))
        return PacketKind::EssenceElement;
    if (KLV::isLocalSet(key))
        return PacketKind::LocalSet;
    return PacketKind::Other;
}

char const * packetKindWord(PacketKind kind)
{
    static char const * const words[] = {"partition pack", "primer",          "random index pack",
                                          "index segment",  "fill item",       "essence element",
                                          "system item",    "local set",       "other"};
    return words[static_cast<unsigned>(kind)];
}

char const * partitionKindWord(unsigned char kind)
{
    static char const * const words[] = {"header", "body", "footer"};
    return kind >= 2 && kind <= 4 ? words[kind - 2] : "unknown";
}

char const * partitionStatusWord(unsigned char status)
{
    static char const * const words[] = {"open incomplete", "closed incomplete", "open complete", "closed complete"};
    if (status == 0x11)
        return "generic stream";
    return status >= 1 && status <= 4 ? words[status - 1] : "unknown";
}

namespace
{
unsigned char const NO_KEY[16] = {};
} // namespace

PacketPlace::PacketPlace() : key(NO_KEY) {}

struct PacketWalk::Impl
{
    explicit Impl(DataIO::BoundedDataSource & s) : source(s), reader(s) {}

    DataIO::BoundedDataSource & source;
    KLV::Reader reader;
    PacketPlace place;
    uint64 start = 0;
    uint64 size = 0;
    uint64 position = 0;
    uint64 runIn = 0;
    uint64 packets = 0;
};

PacketWalk::PacketWalk(DataIO::BoundedDataSource & source) : impl_(new Impl(source))
{
    impl_->start = source.absoluteOffset();
    impl_->size = impl_->start + source.remaining();
    impl_->position = impl_->start;
}

PacketWalk::~PacketWalk() = default;

Templates::auto_ptr<KLV::Packet> PacketWalk::next()
{
    Impl & w = *impl_;
    if (w.position >= w.size || w.source.endOfStream())
        return Templates::auto_ptr<KLV::Packet>();
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> packet = w.reader.nextKLV(skipped, w.packets == 0 ? MAXIMUM_RUN_IN : 0);
    if (w.packets == 0)
        w.runIn = skipped;
    ++w.packets;
    w.place.offset = packet->keyAbsoluteOffset();
    w.place.key = packet->key();
    w.place.berLength = packet->berLength();
    w.place.length = packet->length();
    w.place.kind = packetKind(w.place.key);
    w.position = valueCutShort() ? w.size : w.place.end();
    return packet;
}

PacketPlace const & PacketWalk::place() const { return impl_->place; }

bool PacketWalk::valueCutShort() const
{
    PacketPlace const & p = impl_->place;
    return p.valueOffset() > impl_->size || p.length > impl_->size - p.valueOffset();
}

uint64 PacketWalk::position() const { return impl_->position; }
uint64 PacketWalk::runIn() const { return impl_->runIn; }
uint64 PacketWalk::packets() const { return impl_->packets; }
uint64 PacketWalk::size() const { return impl_->size; }
} // namespace MXFIO
} // namespace Vellum
