#pragma once
// Reads a file from start to end without ever seeking, for pipes and streams. Each call of next()
// takes one item off the stream and hands it to one of the handlers, which a subclass overrides;
// the reader keeps nothing of what it hands over.

#include "DataIO/DataSource.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace KLV
{
class Packet;
}
namespace MetaMetadata
{
class Dictionary;
}
namespace Metadata
{
class PartitionMetadata;
}
namespace Packs
{
class PartitionPack;
class RandomIndexPack;
} // namespace Packs
namespace IndexTables
{
class IndexTableSegment;
}

namespace MXFIO
{
class SequentialReader
{
public:
    VELLUM_CLASS_ALLOCATION
    // Neither owns the source nor takes it over; the dictionary drives the metadata of every
    // partition read.
    SequentialReader(DataIO::DataSource & source, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary);
    // The copy reads on from the same source.
    SequentialReader(SequentialReader const & other);
    virtual ~SequentialReader();

    // Takes one item and hands it to its handler. `keySearchLimit` bounds the bytes passed over in
    // front of the item's key. False at the end of the stream, also when the stream ends inside
    // the item; malformed data throws.
    bool next(uint64 keySearchLimit);

private:
    SequentialReader & operator=(SequentialReader const &) = delete;

    // Each handler by default drops what it is given; a packet's unread value is discarded.
    // A partition without header metadata comes with a null metadata.
    virtual void handlePartition(Templates::auto_ptr<Packs::PartitionPack> pack,
                                 Templates::auto_ptr<Metadata::PartitionMetadata> metadata);
    virtual void handleIndexTableSegment(Templates::auto_ptr<IndexTables::IndexTableSegment> segment);
    // The packet's value still lies in the source: read it or let it go before the next call.
    virtual void handleEssence(Templates::auto_ptr<KLV::Packet> packet);
    virtual void handleRIP(Templates::auto_ptr<Packs::RandomIndexPack> rip);
    virtual void handleFillItem(Templates::auto_ptr<KLV::Packet> packet);
    virtual void handleUnknown(Templates::auto_ptr<KLV::Packet> packet);

    Templates::auto_ptr<KLV::Packet> readPacket();
    void loadPartition();
    void loadIndexTableSegment();
    void loadRIP();
    void skipFillItem();

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
