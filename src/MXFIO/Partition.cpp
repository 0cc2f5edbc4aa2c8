#include "MXFIO/Partition.h"

#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Reader.h"
#include "MXFIO/Reader.h"
#include "MXFIO/Reader2.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Packs/PrimerPack.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
enum PositionState
{
    Initial = 0,
    InIndex = 1,
    InBody = 2,
    Ended = 3
};

unsigned char const legacyIndexKeyBytes[16] = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                                0x0D, 0x01, 0x02, 0x01, 0x01, 0x10, 0x00, 0x00};

// Keys of the groups registry: the sets of header metadata.
bool isGroupKey(KLV::Key const & key)
{
    return key[0] == 0x06 && key[1] == 0x0E && key[2] == 0x2B && key[3] == 0x34 && key[4] == 0x02;
}
} // namespace

struct Partition::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(Partition * o, Reader & r, Templates::auto_ptr<Packs::PartitionPack> p, uint64 offset, uint64 metadataOffset,
         uint64 limit)
        : owner(o), reader(&r), reader2(dynamic_cast<Reader2 *>(&r)), klvReader(&r.klvReader()),
          source(&r.source()), dictionary(r.dictionary()), pack(std::move(p)), keySearchLimit(limit),
          packLength(metadataOffset - offset), partitionOffset(offset), state(Initial),
          legacyIndexKey(legacyIndexKeyBytes)
    {
    }

    uint64 metadataOffset() const { return partitionOffset + packLength; }
    uint64 indexOffset() const { return metadataOffset() + pack->headerByteCount(); }
    uint64 bodyOffset() const { return indexOffset() + pack->indexByteCount(); }

    Templates::SharedPtr<Metadata::PartitionMetadata> loadMetadata();

    Partition * owner;
    Reader * reader;
    Reader2 * reader2;
    KLV::Reader * klvReader;
    DataIO::RandomAccessDataSource * source;
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    Templates::auto_ptr<Packs::PartitionPack> pack;
    uint64 keySearchLimit;
    uint64 packLength;
    uint64 partitionOffset;
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    uint32 state;
    KLV::Key legacyIndexKey;
    Templates::SharedPtr<PartitionListener> listener;
};

Templates::SharedPtr<Metadata::PartitionMetadata> Partition::Impl::loadMetadata()
{
    source->seek(metadataOffset());
    uint64 const end = metadataOffset() + pack->headerByteCount();
    PartitionListener * host = listener.get();
    Templates::SharedPtr<Metadata::PartitionMetadata> loaded;
    try
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet;
        try
        {
            packet = klvReader->nextKLV(skipped, keySearchLimit);
        }
        catch (Exceptions::KeyNotFound &)
        {
        }
        if (!packet || packet->key() != Packs::PrimerPack::key())
        {
            Templates::wstring text = Utils::wide("This partition (0x");
            text += Utils::hexadecimal(partitionOffset);
            text += Utils::wide(") does not have a primer pack at the beginning of the metadata.");
            VELLUM_THROW(InvalidFormat, text);
        }
        Templates::auto_ptr<Packs::PrimerPack> primer;
        try
        {
            primer.reset(new Packs::PrimerPack(*packet));
        }
        catch (Exceptions::InvalidLength &)
        {
            // A Primer cut short by the end of the file.
            VELLUM_THROW(InvalidFormat, "Expected Primer Pack");
        }
        packet->value().discard();
        packet.reset();
        if (host != nullptr)
            host->primerPackRead(primer.get());
        Templates::auto_ptr<Metadata::PartitionDictionary> partitionDictionary(
            new Metadata::PartitionDictionary(dictionary, std::move(primer)));
        loaded = Templates::SharedPtr<Metadata::PartitionMetadata>(
            new Metadata::PartitionMetadata(std::move(partitionDictionary)));
        if (host != nullptr)
            host->metadataCreated(loaded.get());
        while (source->absoluteOffset() < end)
        {
            packet = klvReader->nextKLV(skipped, keySearchLimit);
            if (isGroupKey(packet->key()))
            {
                try
                {
                    loaded->load(*packet);
                }
                catch (Exceptions::InvalidLength &)
                {
                }
                catch (Exceptions::InvalidMetadataSet &)
                {
                }
            }
            else if (host != nullptr)
            {
                host->unknownPacketRead(packet.get());
            }
            packet->value().discard();
        }
    }
    catch (Exceptions::NotEnoughData &)
    {
        VELLUM_THROW(InvalidFormat, "Expected Primer Pack");
    }
    return loaded;
}

Partition::Partition(Reader & reader, Templates::auto_ptr<Packs::PartitionPack> pack, uint64 partitionOffset,
                     uint64 metadataOffset, uint64 keySearchLimit)
    : impl_(new Impl(this, reader, std::move(pack), partitionOffset, metadataOffset, keySearchLimit))
{
}

Partition::~Partition() = default;

Templates::SharedPtr<Metadata::PartitionMetadata> Partition::metadata()
{
    if (impl_->metadata.get() != nullptr)
        return impl_->metadata;
    if (impl_->pack->headerByteCount() == 0)
        return Templates::SharedPtr<Metadata::PartitionMetadata>();
    impl_->metadata = impl_->loadMetadata();
    return impl_->metadata;
}

Packs::PartitionPack const & Partition::partitionPack() const
{
    return *impl_->pack;
}

bool Partition::partitionEnded() const
{
    return impl_->state == Ended;
}

void Partition::setPartitionListener(Templates::SharedPtr<PartitionListener> listener)
{
    impl_->listener = listener;
}

uint64 Partition::partitionAbsoluteOffset() const
{
    return impl_->partitionOffset;
}

uint64 Partition::metadataAbsoluteOffset() const
{
    return impl_->metadataOffset();
}

uint64 Partition::indexTableAbsoluteOffset() const
{
    return impl_->indexOffset();
}

uint64 Partition::bodyAbsoluteOffset() const
{
    return impl_->bodyOffset();
}

void Partition::rewind()
{
    impl_->state = InIndex;
    impl_->source->seek(impl_->indexOffset());
}

Templates::auto_ptr<KLV::Packet> Partition::nextIndexTableSegmentsKLV()
{
    Templates::auto_ptr<KLV::Packet> packet;
    if (impl_->pack->indexSID() == 0 || impl_->pack->indexByteCount() == 0)
        return packet;
    uint64 const start = impl_->indexOffset();
    uint64 const end = impl_->bodyOffset();
    DataIO::RandomAccessDataSource & source = *impl_->source;
    for (;;)
    {
        uint64 position = source.absoluteOffset();
        if (position < start || position > end)
        {
            source.seek(start);
            impl_->state = InIndex;
            position = start;
        }
        if (position >= end)
            return packet;
        uint64 skipped = 0;
        KLV::Key key = impl_->klvReader->peekNextKey(skipped, impl_->keySearchLimit);
        if (key == IndexTables::IndexTableSegment::key() || key == impl_->legacyIndexKey)
            return impl_->klvReader->nextKLV(skipped, impl_->keySearchLimit);
        if (!KLV::isFillItem(key))
        {
            impl_->state = InBody;
            return packet;
        }
        Templates::auto_ptr<KLV::Packet> fill = impl_->klvReader->nextKLV(skipped, impl_->keySearchLimit);
        fill->value().discard();
        // A fill item that runs past the region ends it: going back to the region's start would
        // meet the same item again, for ever.
        if (source.absoluteOffset() > end)
        {
            impl_->state = InBody;
            return packet;
        }
    }
}

Templates::auto_ptr<KLV::Packet> Partition::nextBodyKLV(uint64 keySearchLimit)
{
    Templates::auto_ptr<KLV::Packet> packet;
    if (impl_->pack->bodySID() == 0)
        return packet;
    DataIO::RandomAccessDataSource & source = *impl_->source;
    uint64 const body = impl_->bodyOffset();
    if (source.absoluteOffset() < body)
        source.seek(body);
    impl_->state = InBody;
    if (source.remaining() == 0)
    {
        impl_->state = Ended;
        return packet;
    }
    uint64 const before = source.absoluteOffset();
    uint64 skipped = 0;
    KLV::Key key = impl_->klvReader->peekNextKey(skipped, keySearchLimit);
    if (!Packs::isPartitionPack(key))
        return impl_->klvReader->nextKLV(skipped, keySearchLimit);
    impl_->state = Ended;
    if (impl_->reader2 != nullptr)
    {
        uint64 const keyOffset = before + skipped;
        uint64 const runIn = impl_->reader->runInLength();
        if (keyOffset >= runIn)
            impl_->reader2->partitionAtOffset(keyOffset - runIn);
    }
    return packet;
}

void Partition::gotoBodyRelativePosition(uint64 position)
{
    uint64 const bodyStart = impl_->pack->bodyOffset();
    if (position < bodyStart)
    {
        Templates::wstring text = Utils::wide("Trying to seek to 0x");
        text += Utils::hexadecimal(position);
        text += Utils::wide(" but partition (0x");
        text += Utils::hexadecimal(impl_->pack->thisPartition());
        text += Utils::wide(") body starts at ");
        text += Utils::hexadecimal(bodyStart);
        VELLUM_THROW(InvalidPosition, text);
    }
    impl_->state = InBody;
    impl_->source->seek(impl_->bodyOffset() + (position - bodyStart));
}
} // namespace MXFIO
} // namespace Vellum
