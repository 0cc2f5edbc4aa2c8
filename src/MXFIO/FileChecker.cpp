#include "MXFIO/FileChecker.h"

#include <algorithm>
#include <cstring>

#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexEntry.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/Packet.h"
#include "MXFIO/PacketWalk.h"
#include "MXFIO/Partition.h"
#include "MXFIO/Reader2.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/Helpers.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/Element.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Packs/RandomIndexPack.h"
#include "Types/Collection.h"
#include "Types/Integers.h"
#include "Types/References.h"
#include "Types/UUID.h"
#include "Types/Visitors.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
Templates::string number(uint64 n) { return Utils::narrow(Utils::decimal(n)); }

Templates::string dotted(KLV::Key const & key) { return Utils::narrow(key.toString(Types::Dotted)); }

// The text of a failure of the library, without the place in its source.
Templates::string reason(Exceptions::BaseException const & e) { return Utils::narrow(e.message()).c_str(); }

Templates::string propertyName(MetaMetadata::PropertyMap const & object)
{
    for (MetaMetadata::PropertyMap::const_iterator i = object.propertiesBegin(); i != object.propertiesEnd(); ++i)
        if (i->first == Utils::wide("name"))
            return Utils::narrow(i->second).c_str();
    return Templates::string();
}

Templates::string uuidText(Types::UUID const & uid) { return "urn:uuid:" + Utils::narrow(uid.toString(Types::RFC4122)); }

// "Preface urn:uuid:..." or the set's key when the dictionary does not name it.
Templates::string setName(Metadata::MetadataSet const & set)
{
    Templates::string name;
    if (set.metaMetadataSet() != nullptr)
        name = propertyName(*set.metaMetadataSet());
    if (name.empty())
        name = dotted(set.key());
    Types::UUID const * uid = set.instanceUID();
    return uid != nullptr ? name + " " + uuidText(*uid) : name;
}

Templates::string elementName(Metadata::Element const & element)
{
    MetaMetadata::MetaElement const * meta =
        MetaMetadata::Helpers::abstractMetaAttributeToMetaElement(element.metaAttribute());
    if (meta == nullptr)
        return "<unknown element>";
    Templates::string name = propertyName(*meta);
    return name.empty() ? dotted(KLV::Key(meta->universalLabel().rawBuffer())) : name;
}

// The value objects of an element of any kind.
class ElementValue : public Metadata::Visitors::ElementVisitor
{
public:
    void visit(Metadata::BatchReferenceElement const & e) override { collection = e.value(); }
    void visit(Metadata::ArrayReferenceElement const & e) override { collection = e.value(); }
    void visit(Metadata::ReferenceElement const & e) override { single = e.value(); }
    void visit(Metadata::BatchElement const & e) override { collection = e.value(); }
    void visit(Metadata::ArrayElement const & e) override { collection = e.value(); }
    void visit(Metadata::SimpleElement const & e) override { single = e.value(); }

    Types::SimpleDataType const * single = nullptr;
    Types::Collection const * collection = nullptr;
};

// The strong references an element holds.
Templates::vector<Types::SimpleDataType const *> strongReferences(Metadata::Element const & element)
{
    Templates::vector<Types::SimpleDataType const *> found;
    ElementValue value;
    element.accept(value);
    if (value.single != nullptr && Types::Visitors::getAs<Types::StrongReference>(*value.single) != nullptr)
        found.push_back(value.single);
    if (value.collection != nullptr)
        for (unsigned i = 0; i < value.collection->size(); ++i)
            if (Types::Visitors::getAs<Types::StrongReference>(value.collection->at(i)) != nullptr)
                found.push_back(&value.collection->at(i));
    return found;
}

// What the walk learns of one partition.
struct PartitionInfo
{
    uint64 offset = 0; // of the pack's key, absolute
    unsigned char kind = 0;
    bool readable = false;
    Templates::auto_ptr<Packs::PartitionPack> pack;
    uint64 packEnd = 0;
    // Where the next partition, the Random Index Pack or the end of the file begins.
    bool ended = false;
    uint64 end = 0;

    // Each region's first packet, with the size of its key and length.
    bool hasPrimer = false;
    uint64 primerOffset = 0;
    uint64 primerKL = 0;
    // End of the last metadata packet that is not fill, and where the first packet behind the
    // header metadata begins.
    uint64 metadataLastEnd = 0;
    uint64 metadataRegionEnd = 0;

    bool hasIndex = false;
    uint64 indexFirst = 0;
    uint64 indexKL = 0;
    uint64 indexLastEnd = 0;
    uint64 indexRegionEnd = 0;

    bool hasBody = false;
    uint64 bodyStart = 0;
    uint64 bodyKL = 0;

    // Offsets of the packets ahead of the body, and the body's first one.
    Templates::vector<uint64> boundaries;
};

struct IndexSegmentInfo
{
    uint64 offset;
    unsigned bodySID;
    // The greatest stream offset of an entry and that entry's position; or for a segment with a
    // constant edit unit size, the end of its last edit unit.
    bool hasEntries = false;
    uint64 greatestStreamOffset = 0;
    unsigned entry = 0;
    bool constantSize = false;
    uint64 end = 0;
};

enum class Phase
{
    HeaderMetadata,
    Index,
    Body
};
} // namespace

struct FileChecker::Impl
{
    Templates::wstring path;
    Templates::vector<Finding> findings;
    uint64 fileSize = 0;
    uint64 runIn = 0;
    Templates::vector<Templates::auto_ptr<PartitionInfo>> partitions;
    Templates::vector<IndexSegmentInfo> segments;
    // Body SIDs named by EssenceContainerData sets, with the offset of the first such set.
    Templates::map<unsigned, uint64> containerDataSIDs;
    bool ripFound = false;
    // The walk met a packet that runs past the end, or bytes that are no packet.
    bool cutShort = false;
    uint64 walkEnd = 0;
    bool behindRip = false;
    uint64 ripOffset = 0;
    Templates::auto_ptr<Packs::RandomIndexPack> rip;

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    Templates::auto_ptr<Metadata::PartitionMetadata> metadata;
    Templates::map<Metadata::MetadataSet const *, uint64> setOffsets;
    Phase phase = Phase::HeaderMetadata;

    void report(uint64 offset, char const * code, Templates::string const & message)
    {
        findings.push_back(Finding{offset, code, Utils::wide(message.c_str())});
    }

    uint64 relative(uint64 absolute) const { return absolute - runIn; }

    PartitionInfo * current() const { return partitions.empty() ? nullptr : partitions.back().get(); }

    // ---------------------------------------------------------------------------------------
    // The walk

    void walk()
    {
        Templates::auto_ptr<DataIO::File::FileDataSource> source;
        try
        {
            source.reset(new DataIO::File::FileDataSource(path.c_str(), 1 << 20));
        }
        catch (Exceptions::BaseException const & e)
        {
            report(0, "file-unreadable", reason(e));
            return;
        }
        PacketWalk packets(*source);
        fileSize = packets.size();
        for (;;)
        {
            Templates::auto_ptr<KLV::Packet> packet;
            try
            {
                packet = packets.next();
            }
            catch (Exceptions::BaseException const & e)
            {
                unreadable(packets.position(), e);
                break;
            }
            if (!packet)
                break;
            runIn = packets.runIn();
            PacketPlace const & info = packets.place();
            if (packets.packets() == 1 && info.kind != PacketKind::PartitionPack)
                report(info.offset, "no-header-partition", "the file does not begin with a partition pack");
            if (packets.valueCutShort())
            {
                report(info.offset, "truncated",
                       Templates::string("the value of the ") + packetKindWord(info.kind) + " (length " +
                           number(info.length) + ") runs past the end of the file (" + number(fileSize) + " bytes)");
                cutShort = true;
                endPartition(info.offset);
                walkEnd = info.offset;
                return;
            }
            visit(info, *packet);
        }
        walkEnd = std::min(packets.position(), fileSize);
        endPartition(walkEnd);
    }

    // No packet can be read at `position`: the file ends there, or the bytes are none.
    void unreadable(uint64 position, Exceptions::BaseException const & e)
    {
        if (fileSize - position < PacketWalk::LONGEST_KEY_AND_LENGTH)
            report(position, "truncated",
                   "the file ends inside the key or length of a packet (" + number(fileSize - position) +
                       " bytes left)");
        else
            report(position, "klv-unreadable", "no KLV packet can be read here: " + reason(e));
        cutShort = true;
    }

    void visit(PacketPlace const & info, KLV::Packet & packet)
    {
        if (ripFound && !behindRip)
        {
            behindRip = true;
            report(info.offset, "rip-not-last", "a packet follows the random index pack");
        }
        if (info.kind == PacketKind::PartitionPack)
        {
            endPartition(info.offset);
            startPartition(info, packet, info.end());
            return;
        }
        if (info.kind == PacketKind::RandomIndexPack)
        {
            endPartition(info.offset);
            readRip(info, packet);
            return;
        }
        PartitionInfo * partition = current();
        if (partition == nullptr)
            return;
        if (phase != Phase::Body)
            partition->boundaries.push_back(info.offset);
        if (info.kind == PacketKind::FillItem)
            return;
        if (phase == Phase::HeaderMetadata && visitHeaderMetadata(*partition, info, packet))
            return;
        if (info.kind == PacketKind::IndexSegment && phase != Phase::Body)
        {
            phase = Phase::Index;
            if (!partition->hasIndex)
            {
                partition->hasIndex = true;
                partition->indexFirst = info.offset;
                partition->indexKL = 16 + info.berLength;
            }
            partition->indexLastEnd = info.end();
            readSegment(info, packet);
            return;
        }
        if (phase == Phase::Index)
            partition->indexRegionEnd = info.offset;
        if (phase != Phase::Body)
        {
            phase = Phase::Body;
            partition->hasBody = true;
            partition->bodyStart = info.offset;
            partition->bodyKL = 16 + info.berLength;
        }
        if (info.kind == PacketKind::IndexSegment)
            readSegment(info, packet);
    }

    void readRip(PacketPlace const & info, KLV::Packet & packet)
    {
        ripFound = true;
        ripOffset = info.offset;
        try
        {
            rip.reset(new Packs::RandomIndexPack(packet));
        }
        catch (Exceptions::BaseException const & e)
        {
            report(info.offset, "rip-unreadable", "the random index pack cannot be read: " + reason(e));
        }
    }

    // A packet while the header metadata may still go on: true when it belongs to it.
    bool visitHeaderMetadata(PartitionInfo & partition, PacketPlace const & info, KLV::Packet & packet)
    {
        if (info.kind == PacketKind::Primer && !partition.hasPrimer)
        {
            partition.hasPrimer = true;
            partition.primerOffset = info.offset;
            partition.primerKL = 16 + info.berLength;
            partition.metadataLastEnd = info.end();
            startMetadata(info, packet);
            return true;
        }
        bool const metadataPacket = partition.hasPrimer && (info.kind == PacketKind::LocalSet ||
                                                            info.kind == PacketKind::Other ||
                                                            info.kind == PacketKind::Primer);
        if (!metadataPacket)
        {
            endMetadata(info.offset);
            return false;
        }
        partition.metadataLastEnd = info.end();
        loadSet(info, packet);
        return true;
    }

    void startPartition(PacketPlace const & info, KLV::Packet & packet, uint64 end)
    {
        Templates::auto_ptr<PartitionInfo> partition(new PartitionInfo);
        partition->offset = info.offset;
        partition->kind = info.key[13];
        partition->packEnd = end;
        try
        {
            partition->pack.reset(new Packs::PartitionPack(packet));
            partition->readable = true;
        }
        catch (Exceptions::BaseException const & e)
        {
            report(info.offset, "partition-unreadable", "the partition pack cannot be read: " + reason(e));
        }
        partitions.push_back(std::move(partition));
        phase = Phase::HeaderMetadata;
    }

    // Closes the regions of the partition that ends at `offset`.
    void endPartition(uint64 offset)
    {
        PartitionInfo * partition = current();
        if (partition == nullptr || partition->ended)
            return;
        partition->ended = true;
        partition->end = offset;
        if (phase == Phase::HeaderMetadata)
            endMetadata(offset);
        if (phase == Phase::Index)
            partition->indexRegionEnd = offset;
        phase = Phase::Body;
        partition->boundaries.push_back(offset);
    }

    // ---------------------------------------------------------------------------------------
    // Header metadata

    void startMetadata(PacketPlace const & info, KLV::Packet & packet)
    {
        try
        {
            Templates::auto_ptr<Packs::PrimerPack> primer(new Packs::PrimerPack(packet));
            metadata.reset(new Metadata::PartitionMetadata(Templates::auto_ptr<Metadata::PartitionDictionary>(
                new Metadata::PartitionDictionary(dictionary, std::move(primer)))));
        }
        catch (Exceptions::BaseException const & e)
        {
            report(info.offset, "metadata-unreadable", "the primer pack cannot be read: " + reason(e));
        }
        setOffsets.clear();
    }

    void loadSet(PacketPlace const & info, KLV::Packet & packet)
    {
        if (!metadata || info.kind == PacketKind::Primer)
            return;
        try
        {
            Metadata::MetadataSet * set = metadata->load(packet);
            if (set != nullptr)
                setOffsets[set] = info.offset;
        }
        catch (Exceptions::BaseException const & e)
        {
            report(info.offset, "metadata-unreadable", "a metadata set cannot be read: " + reason(e));
        }
    }

    // The header metadata of the current partition ends where `offset` begins.
    void endMetadata(uint64 offset)
    {
        PartitionInfo * partition = current();
        if (partition != nullptr && phase == Phase::HeaderMetadata && partition->hasPrimer)
            partition->metadataRegionEnd = offset;
        phase = Phase::Index;
        // Metadata cut short lacks what stood behind the cut: no use in listing that.
        if (metadata && !cutShort)
            checkMetadata();
        metadata.reset();
        setOffsets.clear();
    }

    uint64 setOffset(Metadata::MetadataSet const * set) const
    {
        Templates::map<Metadata::MetadataSet const *, uint64>::const_iterator found = setOffsets.find(set);
        return found != setOffsets.end() ? found->second : current()->primerOffset;
    }

    void checkMetadata()
    {
        PartitionInfo const * partition = current();
        bool const closed = partition == nullptr || !partition->readable || !partition->pack->isOpen();
        Templates::vector<std::pair<uint64, Metadata::MetadataSet const *>> sets;
        // Instance UIDs are taken from each set itself, so that a set which holds its UID among
        // the items its description does not provide for can still be the target of a reference.
        Templates::set<Types::UUID> instances;
        for (Metadata::PartitionMetadata::const_iterator i = metadata->begin(); i != metadata->end(); ++i)
        {
            sets.push_back(std::make_pair(setOffset(i->second), i->second));
            if (i->second->instanceUID() != nullptr)
                instances.insert(*i->second->instanceUID());
        }
        std::stable_sort(sets.begin(), sets.end(),
                         [](std::pair<uint64, Metadata::MetadataSet const *> const & a,
                            std::pair<uint64, Metadata::MetadataSet const *> const & b) { return a.first < b.first; });
        for (auto const & entry : sets)
            checkSet(entry.first, *entry.second, instances, closed);
        noteContainerData();
    }

    void checkSet(uint64 offset, Metadata::MetadataSet const & set, Templates::set<Types::UUID> const & instances,
                  bool closed)
    {
        // Strong references, of the valid elements and of those the set does not provide for.
        Templates::vector<Metadata::Element const *> elements;
        for (Metadata::MetadataSet::const_iterator e = set.begin(); e != set.end(); ++e)
            elements.push_back(e->second);
        for (Metadata::Element * const * e = set.invalidBegin(); e != set.invalidEnd(); ++e)
            elements.push_back(*e);
        for (Metadata::Element const * element : elements)
        {
            if (element->empty())
                continue;
            for (Types::SimpleDataType const * reference : strongReferences(*element))
            {
                Types::UUID const target(reference->rawBuffer());
                if (instances.count(target) == 0)
                    report(offset, "dangling-reference",
                           setName(set) + ": " + elementName(*element) + " refers to " + uuidText(target) +
                               ", which is not in the partition");
            }
        }
        // An open partition may still lack what its writer has not yet learnt.
        if (!closed)
            return;
        Templates::vector<Metadata::Element *> open;
        set.openElements(open);
        for (Metadata::Element const * element : open)
            report(offset, "required-missing", setName(set) + ": the required " + elementName(*element) + " is missing");
    }

    // The body SIDs that the EssenceContainerData sets name.
    void noteContainerData()
    {
        Templates::vector<Metadata::MetadataSet *> containerData =
            metadata->find(Metadata::Structural::StructuralMetadataKeys::essenceContainerData());
        for (Metadata::MetadataSet const * set : containerData)
        {
            try
            {
                Metadata::Element const & element = set->find(Metadata::Structural::StructuralMetadataULs::bodySID());
                ElementValue value;
                element.accept(value);
                Types::UInt32 const * sid =
                    value.single ? Types::Visitors::getAs<Types::UInt32>(*value.single) : nullptr;
                if (sid != nullptr && sid->value() != 0)
                    containerDataSIDs.insert(std::make_pair(unsigned(sid->value()), setOffset(set)));
            }
            catch (Exceptions::BaseException const &)
            {
                // A set without the element: the required check has said so.
            }
        }
    }

    // ---------------------------------------------------------------------------------------
    // Index table segments

    void readSegment(PacketPlace const & info, KLV::Packet & packet)
    {
        try
        {
            IndexTables::IndexTableSegment segment(packet);
            IndexSegmentInfo found;
            found.offset = info.offset;
            found.bodySID = segment.bodySID().value();
            unsigned const count = segment.indexEntryCount();
            for (unsigned i = 0; i < count; ++i)
            {
                uint64 const streamOffset = segment.indexEntry(i).streamOffset();
                if (!found.hasEntries || streamOffset > found.greatestStreamOffset)
                {
                    found.greatestStreamOffset = streamOffset;
                    found.entry = i;
                }
                found.hasEntries = true;
            }
            Types::UInt32 const * byteCount = segment.editUnitByteCount();
            int64 const start = segment.indexStartPosition().value();
            int64 const duration = segment.indexDuration().value();
            if (count == 0 && byteCount != nullptr && byteCount->value() != 0 && start >= 0 && duration > 0)
            {
                found.constantSize = true;
                // Kept from overflowing: a product past 2^63 is past any file anyway.
                uint64 const units = uint64(start) + uint64(duration);
                uint64 const size = byteCount->value();
                found.end = units > (uint64(1) << 62) / size ? (uint64(1) << 62) : units * size;
            }
            segments.push_back(found);
        }
        catch (Exceptions::BaseException const & e)
        {
            report(info.offset, "index-unreadable", "the index table segment cannot be read: " + reason(e));
        }
    }

    // ---------------------------------------------------------------------------------------
    // The random access reader

    // What a host that opens the file with the random access reader meets: its forward walk from
    // the header, the footer it finds, its backward walk from there, and the metadata it trusts.
    // A refusal is reported at the partition where the walk stood.
    void checkWithReader()
    {
        if (partitions.empty())
            return;
        Templates::auto_ptr<DataIO::File::FileDataSource> file;
        try
        {
            file.reset(new DataIO::File::FileDataSource(path.c_str(), 1 << 20));
        }
        catch (Exceptions::BaseException const & e)
        {
            report(0, "file-unreadable", reason(e));
            return;
        }
        DataIO::File::FileDataSource & source = *file;
        Reader2 reader(source, dictionary, PacketWalk::MAXIMUM_RUN_IN + 1);
        Partition * at = nullptr;
        try
        {
            for (Partition * p = reader.headerPartition(); p != nullptr; p = reader.nextPartition(p))
                at = p;
        }
        catch (Exceptions::BaseException const & e)
        {
            report(at != nullptr ? at->partitionAbsoluteOffset() : 0, "reader-forward",
                   "the reader's walk forward stops: " + reason(e));
        }
        PartitionInfo const * footer = partitions.back()->kind == 4 ? partitions.back().get() : nullptr;
        at = nullptr;
        try
        {
            Partition * found = reader.footerPartition();
            if (footer != nullptr && (found == nullptr || found->partitionAbsoluteOffset() != footer->offset))
                report(footer->offset, "reader-footer",
                       "the reader does not find the footer partition at " + number(relative(footer->offset)));
            for (Partition * p = found; p != nullptr; p = reader.previousPartition(p))
                at = p;
        }
        catch (Exceptions::BaseException const & e)
        {
            report(at != nullptr ? at->partitionAbsoluteOffset() : 0, "reader-backward",
                   "the reader's walk backward stops: " + reason(e));
        }
        // A set whose value runs past the end holds the reader's metadata loading up for long;
        // the walk has reported that already.
        if (cutShort)
            return;
        at = nullptr;
        try
        {
            at = reader.firstPartitionWithFinalMetadata();
            if (at != nullptr)
                at->metadata();
        }
        catch (Exceptions::BaseException const & e)
        {
            report(at != nullptr ? at->partitionAbsoluteOffset() : 0, "reader-metadata",
                   "the reader cannot load the metadata it trusts: " + reason(e));
        }
    }

    // ---------------------------------------------------------------------------------------
    // The cross checks

    // Partitions stand in the order of their offsets.
    PartitionInfo const * partitionHolding(uint64 absolute) const
    {
        Templates::vector<Templates::auto_ptr<PartitionInfo>>::const_iterator after = std::upper_bound(
            partitions.begin(), partitions.end(), absolute,
            [](uint64 offset, Templates::auto_ptr<PartitionInfo> const & p) { return offset < p->offset; });
        if (after == partitions.begin())
            return nullptr;
        PartitionInfo const * p = (after - 1)->get();
        return absolute < p->end ? p : nullptr;
    }

    PartitionInfo const * partitionAt(uint64 absolute) const
    {
        PartitionInfo const * p = partitionHolding(absolute);
        return p != nullptr && p->offset == absolute ? p : nullptr;
    }

    void checkChain()
    {
        PartitionInfo const * footer = nullptr;
        for (size_t i = 0; i < partitions.size(); ++i)
        {
            PartitionInfo const & p = *partitions[i];
            if (p.kind == 2 && i != 0)
                report(p.offset, "partition-order", "a header partition stands behind the first partition");
            if (i == 0 && p.kind != 2)
                report(p.offset, "partition-order",
                       Templates::string("the first partition is a ") + partitionKindWord(p.kind) + " partition, not a header partition");
            if (p.kind == 4)
            {
                if (footer != nullptr)
                    report(p.offset, "partition-order", "a second footer partition");
                footer = &p;
            }
            else if (footer != nullptr)
                report(p.offset, "partition-order",
                       Templates::string("a ") + partitionKindWord(p.kind) + " partition stands behind the footer partition");
            if (!p.readable)
                continue;
            uint64 const here = relative(p.offset);
            if (p.pack->thisPartition() != here)
                report(p.offset, "this-partition",
                       "ThisPartition is " + number(p.pack->thisPartition()) + ", but the partition stands at " +
                           number(here));
            uint64 const previous = i == 0 ? 0 : relative(partitions[i - 1]->offset);
            if (p.pack->previousPartition() != previous)
                report(p.offset, "previous-partition",
                       "PreviousPartition is " + number(p.pack->previousPartition()) + ", but the partition before it stands at " +
                           number(previous));
        }
        if (partitions.empty() && findings.empty())
            report(0, "no-header-partition", "the file holds no partition");
    }

    PartitionInfo const * footerPartition() const
    {
        PartitionInfo const * footer = nullptr;
        for (Templates::auto_ptr<PartitionInfo> const & p : partitions)
            if (p->kind == 4)
                footer = p.get();
        return footer;
    }

    void checkFooterPointers()
    {
        PartitionInfo const * footer = footerPartition();
        for (Templates::auto_ptr<PartitionInfo> const & p : partitions)
        {
            if (!p->readable)
                continue;
            uint64 const pointer = p->pack->footerPartition();
            if (footer == nullptr)
            {
                if (pointer != 0)
                    report(p->offset, "footer-pointer",
                           "FooterPartition is " + number(pointer) + ", but the file has no footer partition" +
                               pointedAt(pointer));
                continue;
            }
            uint64 const expected = relative(footer->offset);
            if (pointer == expected)
                continue;
            if (pointer == 0 && p.get() != footer)
                continue; // not known when the partition was written
            report(p->offset, "footer-pointer",
                   "FooterPartition is " + number(pointer) + ", but the footer partition stands at " + number(expected) +
                       pointedAt(pointer));
        }
    }

    // What a partition offset from a pack hits, as the tail of a message.
    Templates::string pointedAt(uint64 pointer) const
    {
        if (pointer > fileSize || runIn + pointer >= fileSize)
            return " (past the end of the file)";
        if (cutShort && runIn + pointer >= walkEnd)
            return " (behind the damage, where the walk did not reach)";
        PartitionInfo const * hit = partitionAt(runIn + pointer);
        if (hit != nullptr)
            return Templates::string(" (the ") + partitionKindWord(hit->kind) + " partition)";
        hit = partitionHolding(runIn + pointer);
        if (hit != nullptr)
            return Templates::string(" (inside the ") + partitionKindWord(hit->kind) + " partition at " + number(relative(hit->offset)) + ")";
        return " (no partition)";
    }

    void checkRip()
    {
        PartitionInfo const * footer = nullptr;
        for (Templates::auto_ptr<PartitionInfo> const & p : partitions)
            if (p->kind == 4)
                footer = p.get();
        if (!ripFound)
        {
            // The footer marks a file that its writer closed; a closed file carries its index of
            // partitions behind the footer.
            if (footer != nullptr)
                report(fileSize, "rip-missing", "the file has a footer partition but no random index pack");
            return;
        }
        if (!rip)
            return;
        Templates::set<uint64> listed;
        for (Packs::RandomIndexPack::OffsetIndexedMap::const_iterator i = rip->offsetIndexedMap().begin();
             i != rip->offsetIndexedMap().end(); ++i)
        {
            listed.insert(i->first);
            PartitionInfo const * p =
                i->first < fileSize && runIn + i->first < fileSize ? partitionAt(runIn + i->first) : nullptr;
            if (p == nullptr)
            {
                report(ripOffset, "rip-entry",
                       "the entry for offset " + number(i->first) + " (BodySID " + number(i->second) +
                           ") does not point at a partition" + pointedAt(i->first));
                continue;
            }
            if (p->readable && p->pack->bodySID() != i->second)
                report(ripOffset, "rip-body-sid",
                       "the entry for the partition at " + number(i->first) + " gives BodySID " + number(i->second) +
                           ", but the partition has BodySID " + number(p->pack->bodySID()));
        }
        for (Templates::auto_ptr<PartitionInfo> const & p : partitions)
            if (listed.count(relative(p->offset)) == 0)
                report(p->offset, "rip-incomplete",
                       Templates::string("the ") + partitionKindWord(p->kind) + " partition at " + number(relative(p->offset)) +
                           " is missing from the random index pack");
    }

    // Is there a pair of packet boundaries `start` in [startLow, startHigh] and `end` in
    // [endLow, endHigh] that lie `count` bytes apart?
    static bool spans(PartitionInfo const & p, uint64 startLow, uint64 startHigh, uint64 endLow, uint64 endHigh,
                      uint64 count)
    {
        // The boundaries rise with the walk.
        for (uint64 end : p.boundaries)
        {
            if (end < endLow || end > endHigh || end < count)
                continue;
            uint64 const start = end - count;
            if (start >= startLow && start <= startHigh &&
                (start == p.packEnd || std::binary_search(p.boundaries.begin(), p.boundaries.end(), start)))
                return true;
        }
        return false;
    }

    void checkByteCounts()
    {
        for (Templates::auto_ptr<PartitionInfo> const & pointer : partitions)
        {
            PartitionInfo const & p = *pointer;
            // The partition where the walk stopped has lost its end.
            if (!p.readable || (cutShort && pointer == partitions.back()))
                continue;
            uint64 const headerCount = p.pack->headerByteCount();
            if (!p.hasPrimer)
            {
                if (headerCount != 0)
                    report(p.offset, "header-byte-count",
                           "HeaderByteCount is " + number(headerCount) + ", but the partition holds no header metadata");
                else if (p.kind == 2)
                    report(p.offset, "no-header-metadata", "the header partition holds no header metadata");
            }
            else if (headerCount == 0)
                report(p.offset, "header-byte-count",
                       "HeaderByteCount is 0, but the partition holds " + number(p.metadataLastEnd - p.primerOffset) +
                           " bytes of header metadata");
            else if (!spans(p, p.primerOffset, p.primerOffset, p.metadataLastEnd, p.metadataRegionEnd, headerCount))
                report(p.offset, "header-byte-count",
                       "HeaderByteCount is " + number(headerCount) + ", but the header metadata takes " +
                           byteRange(p.metadataLastEnd - p.primerOffset, p.metadataRegionEnd - p.primerOffset));

            uint64 const indexCount = p.pack->indexByteCount();
            if (!p.hasIndex)
            {
                if (indexCount != 0)
                    report(p.offset, "index-byte-count",
                           "IndexByteCount is " + number(indexCount) + ", but the partition holds no index table segment");
            }
            else if (indexCount == 0)
                report(p.offset, "index-byte-count",
                       "IndexByteCount is 0, but the partition holds " + number(p.indexLastEnd - p.indexFirst) +
                           " bytes of index table segments");
            else
            {
                uint64 const startLow = p.hasPrimer ? p.metadataLastEnd : p.packEnd;
                if (!spans(p, startLow, p.indexFirst, p.indexLastEnd, p.indexRegionEnd, indexCount))
                    report(p.offset, "index-byte-count",
                           "IndexByteCount is " + number(indexCount) + ", but the index table segments take " +
                               byteRange(p.indexLastEnd - p.indexFirst, p.indexRegionEnd - startLow));
            }
        }
    }

    static Templates::string byteRange(uint64 low, uint64 high)
    {
        if (low >= high)
            return number(low) + " bytes";
        return number(low) + " bytes (" + number(high) + " with the fill around them)";
    }

    void checkAlignment()
    {
        for (Templates::auto_ptr<PartitionInfo> const & pointer : partitions)
        {
            PartitionInfo const & p = *pointer;
            if (!p.readable || p.pack->kagSize() <= 1 || (cutShort && pointer == partitions.back()))
                continue;
            uint64 const kag = p.pack->kagSize();
            // Writers put either the key or the value on the grid, and count it from the
            // partition pack or from the start of the file; any of the four will do.
            auto onGrid = [&](uint64 at) { return (at - p.offset) % kag == 0 || relative(at) % kag == 0; };
            auto check = [&](bool present, uint64 at, uint64 keyAndLength, char const * what) {
                if (present && !onGrid(at) && !onGrid(at + keyAndLength))
                    report(at, "kag-alignment",
                           Templates::string("the ") + what + " stands " + number(at - p.offset) +
                               " bytes behind its partition pack, off the KAG of " + number(kag));
            };
            check(p.hasPrimer, p.primerOffset, p.primerKL, "header metadata");
            check(p.hasIndex, p.indexFirst, p.indexKL, "first index table segment");
            check(p.hasBody && !p.pack->isGenericStreamsPartition(), p.bodyStart, p.bodyKL, "essence container");
        }
    }

    void checkEssence()
    {
        // The bytes of each essence container, over all partitions of its body SID.
        Templates::map<unsigned, uint64> essence;
        for (Templates::auto_ptr<PartitionInfo> const & p : partitions)
            if (p->readable && p->pack->bodySID() != 0)
                essence[p->pack->bodySID()] += p->hasBody && p->end > p->bodyStart ? p->end - p->bodyStart : 0;
        for (auto const & sid : containerDataSIDs)
            if (essence.count(sid.first) == 0)
                report(sid.second, "container-data",
                       "EssenceContainerData names BodySID " + number(sid.first) +
                           ", but no partition carries that body SID");
        for (IndexSegmentInfo const & segment : segments)
        {
            if (segment.bodySID == 0)
                continue;
            uint64 const bytes = essence.count(segment.bodySID) != 0 ? essence[segment.bodySID] : 0;
            if (segment.hasEntries && segment.greatestStreamOffset >= bytes)
                report(segment.offset, "index-beyond-essence",
                       "index entry " + number(segment.entry) + " has StreamOffset " +
                           number(segment.greatestStreamOffset) + ", but the essence of BodySID " +
                           number(segment.bodySID) + " holds " + number(bytes) + " bytes");
            if (segment.constantSize && segment.end > bytes)
                report(segment.offset, "index-beyond-essence",
                       "the segment's edit units end at stream offset " + number(segment.end) +
                           ", but the essence of BodySID " + number(segment.bodySID) + " holds " + number(bytes) +
                           " bytes");
        }
    }
};

FileChecker::FileChecker(unsigned short const * path) : impl_(new Impl)
{
    impl_->path = path;
}

FileChecker::~FileChecker() = default;

Templates::vector<Finding> FileChecker::run()
{
    Templates::auto_ptr<Impl> fresh(new Impl);
    fresh->path = impl_->path;
    impl_ = std::move(fresh);
    Impl & impl = *impl_;
    Metadata::Structural::initialize();
    impl.dictionary = MetaMetadata::createStandardDictionary();
    impl.walk();
    bool const opened = impl.findings.empty() || std::strcmp(impl.findings.front().code, "file-unreadable") != 0;
    if (opened)
    {
        impl.checkChain();
        impl.checkFooterPointers();
        impl.checkRip();
        impl.checkByteCounts();
        impl.checkAlignment();
        impl.checkEssence();
        impl.checkWithReader();
    }
    std::stable_sort(impl.findings.begin(), impl.findings.end(),
                     [](Finding const & a, Finding const & b) { return a.offset < b.offset; });
    return impl.findings;
}
} // namespace MXFIO
} // namespace Vellum
