#include "MXFIO/SequentialReader.h"

#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "MetaMetadata/Dictionary.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Packs/RandomIndexPack.h"

#include <utility>

namespace Vellum
{
namespace MXFIO
{
struct SequentialReader::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(DataIO::DataSource & source, Templates::SharedPtr<MetaMetadata::Dictionary> const & dictionary)
        : reader(source), dictionary(dictionary), keySearchLimit(0)
    {
    }

    KLV::Reader reader;
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    // The limit of the item being read.
    uint64 keySearchLimit;
};

namespace
{
void discardValue(KLV::Packet * packet)
{
    if (packet != nullptr)
        packet->value().discard();
}
} // namespace

SequentialReader::SequentialReader(DataIO::DataSource & source,
                                   Templates::SharedPtr<MetaMetadata::Dictionary> dictionary)
    : impl_(new Impl(source, dictionary))
{
}

SequentialReader::SequentialReader(SequentialReader const & other)
    : impl_(new Impl(other.impl_->reader.source(), other.impl_->dictionary))
{
}

SequentialReader::~SequentialReader() = default;

bool SequentialReader::next(uint64 keySearchLimit)
{
    DataIO::DataSource & source = impl_->reader.source();
    if (source.endOfStream())
        return false;
    try
    {
        impl_->keySearchLimit = keySearchLimit;
        uint64 skipped = 0;
        KLV::Key key = impl_->reader.peekNextKey(skipped, keySearchLimit);
        if (Packs::isPartitionPack(key))
            loadPartition();
        else if (KLV::isIndexTableKlvSegment(key))
            loadIndexTableSegment();
        else if (KLV::isEssence(key))
            handleEssence(readPacket());
        else if (Packs::isRandomIndexPack(key))
            loadRIP();
        else if (KLV::isFillItem(key))
            handleFillItem(readPacket());
        else
            handleUnknown(readPacket());
    }
    catch (Exceptions::NotEnoughData const &)
    {
        return false;
    }
    catch (Exceptions::InvalidLength const &)
    {
        // A value cut short by the end of the stream ends the reading; a wrong length inside
        // data that goes on is a fault of the file.
        if (!source.endOfStream())
            throw;
        return false;
    }
    return true;
}

Templates::auto_ptr<KLV::Packet> SequentialReader::readPacket()
{
    uint64 skipped = 0;
    return impl_->reader.nextKLV(skipped, impl_->keySearchLimit);
}

void SequentialReader::loadPartition()
{
    Templates::auto_ptr<Packs::PartitionPack> pack;
    {
        Templates::auto_ptr<KLV::Packet> packet = readPacket();
        pack.reset(new Packs::PartitionPack(*packet));
    }
    Templates::auto_ptr<Metadata::PartitionMetadata> metadata;
    uint64 const headerByteCount = pack->headerByteCount();
    if (headerByteCount != 0)
    {
        // The count starts at the Primer: a fill item in front of it is not part of it.
        uint64 used = 0;
        uint64 skipped = 0;
        KLV::Key key = impl_->reader.peekNextKey(skipped, 0);
        if (KLV::isFillItem(key))
            skipFillItem();
        Templates::auto_ptr<Packs::PrimerPack> primer;
        {
            Templates::auto_ptr<KLV::Packet> packet = impl_->reader.nextKLV(skipped, 0);
            used = packet->klvLength();
            THROW_UNLESS_TEXT(InvalidFormat, packet->key() == Packs::PrimerPack::key(),
                              "packet -> key () == PrimerPack::key ()",
                              "This partition does not have a primer at the beginning of the metadata.");
            primer.reset(new Packs::PrimerPack(*packet));
        }
        uint64 budget = headerByteCount > used ? headerByteCount - used : 0;
        Templates::auto_ptr<Metadata::PartitionDictionary> dictionary(
            new Metadata::PartitionDictionary(impl_->dictionary, std::move(primer)));
        metadata.reset(new Metadata::PartitionMetadata(std::move(dictionary)));
        while (budget > 0)
        {
            Templates::auto_ptr<KLV::Packet> packet = impl_->reader.nextKLV(skipped, 0);
            if (packet->klvLength() > budget)
                break;
            budget -= packet->klvLength();
            if (KLV::isMXFDefaultLocalSet(packet->key()))
                metadata->load(*packet);
            packet->value().discard();
        }
    }
    handlePartition(std::move(pack), std::move(metadata));
}

void SequentialReader::loadIndexTableSegment()
{
    Templates::auto_ptr<KLV::Packet> packet = readPacket();
    Templates::auto_ptr<IndexTables::IndexTableSegment> segment(new IndexTables::IndexTableSegment(*packet, nullptr));
    packet.reset();
    handleIndexTableSegment(std::move(segment));
}

void SequentialReader::loadRIP()
{
    Templates::auto_ptr<KLV::Packet> packet = readPacket();
    Templates::auto_ptr<Packs::RandomIndexPack> rip(new Packs::RandomIndexPack(*packet));
    packet.reset();
    handleRIP(std::move(rip));
}

void SequentialReader::skipFillItem()
{
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> fill = impl_->reader.nextKLV(skipped, 0);
    fill->value().discard();
}

void SequentialReader::handlePartition(Templates::auto_ptr<Packs::PartitionPack>,
                                       Templates::auto_ptr<Metadata::PartitionMetadata>)
{
}

void SequentialReader::handleIndexTableSegment(Templates::auto_ptr<IndexTables::IndexTableSegment>) {}

void SequentialReader::handleEssence(Templates::auto_ptr<KLV::Packet> packet) { discardValue(packet.get()); }

void SequentialReader::handleRIP(Templates::auto_ptr<Packs::RandomIndexPack>) {}

void SequentialReader::handleFillItem(Templates::auto_ptr<KLV::Packet> packet) { discardValue(packet.get()); }

void SequentialReader::handleUnknown(Templates::auto_ptr<KLV::Packet> packet) { discardValue(packet.get()); }
} // namespace MXFIO
} // namespace Vellum
