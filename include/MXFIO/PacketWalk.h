#pragma once
// A walk over every KLV packet of a source, in file order, with each packet's place and kind. It
// reads keys and lengths; a value is read only by a caller that asks for it, else stepped over.

#include "DataIO/DataSource.h"
#include "KLV/Key.h"
#include "KLV/Packet.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace MXFIO
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

PacketKind packetKind(KLV::Key const & key);
// "partition pack", "primer", "random index pack", "index segment", "fill item",
// "essence element", "system item", "local set", "other".
char const * packetKindWord(PacketKind kind);
// "header", "body", "footer" for bytes 2, 3, 4 of a partition pack key's byte 13, else "unknown".
char const * partitionKindWord(unsigned char kind);
// "open incomplete" ... "closed complete" for a partition pack key's byte 14, "generic stream"
// for 0x11, else "unknown".
char const * partitionStatusWord(unsigned char status);

// Where one packet stands.
struct PacketPlace
{
    PacketPlace();

    uint64 offset = 0; // of the key, absolute in the source
    KLV::Key key;
    unsigned berLength = 0;
    uint64 length = 0;
    PacketKind kind = PacketKind::Other;

    uint64 valueOffset() const { return offset + 16 + berLength; }
    uint64 end() const { return valueOffset() + length; }
};

class PacketWalk
{
public:
    VELLUM_CLASS_ALLOCATION
    // A run-in in front of the first key is at most this long.
    static uint64 const MAXIMUM_RUN_IN = 65535;
    // A key and the longest BER length.
    static uint64 const LONGEST_KEY_AND_LENGTH = 16 + 9;

    // The walk reads `source` from where it stands to its end; it neither owns nor seeks it.
    explicit PacketWalk(DataIO::BoundedDataSource & source);
    ~PacketWalk();
    PacketWalk(PacketWalk const &) = delete;
    PacketWalk & operator=(PacketWalk const &) = delete;

    // The next packet (its value still unread in the source), or null at the end of the source.
    // The bytes before the first key are the run-in; after it packets follow each other. Throws
    // the KLV reader's exceptions where no packet can be read at position().
    Templates::auto_ptr<KLV::Packet> next();
    // The last packet that next() gave.
    PacketPlace const & place() const;
    // Whether the last packet's value runs past the end of the source.
    bool valueCutShort() const;
    // Where the next key is looked for: the end of the last packet, or the start.
    uint64 position() const;
    uint64 runIn() const;
    uint64 packets() const;
    // The size of the source (its offset at the start plus what remained).
    uint64 size() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
