#include "Check.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>

#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexEntry.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "KlvWalk.h"
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

namespace VellumTool
{
namespace
{
using namespace Vellum;

// A run-in is at most 64 KiB long.
uint64 const MAXIMUM_RUN_IN = 65535;
// A key and the longest BER length field.
uint64 const LONGEST_KEY_AND_LENGTH = 16 + 9;

std::string number(uint64 n) { return std::to_string(n); }

// The text of a failure of the library, without the place in its source.
std::string reason(Exceptions::BaseException const & e) { return Utils::narrow(e.message()).c_str(); }

char const * kindName(unsigned char kind)
{
    switch (kind)
    {
    case 2:
        return "header";
    case 3:
        return "body";
    case 4:
        return "footer";
    default:
        return "unknown";
    }
}

std::string propertyName(MetaMetadata::PropertyMap const & object)
{
    for (MetaMetadata::PropertyMap::const_iterator i = object.propertiesBegin(); i != object.propertiesEnd(); ++i)
        if (i->first == Utils::wide("name"))
            return Utils::narrow(i->second).c_str();
    return std::string();
}

std::string uuidText(Types::UUID const & uid) { return "urn:uuid:" + std::string(Utils::narrow(uid.toString(Types::RFC4122)).c_str()); }

// "Preface urn:uuid:..." or the set's key when the dictionary does not name it.
std::string setName(Metadata::MetadataSet const & set)
{
    std::string name;
    if (set.metaMetadataSet() != nullptr)
        name = propertyName(*set.metaMetadataSet());
    if (name.empty())
        name = dotted(set.key());
    Types::UUID const * uid = set.instanceUID();
    return uid != nullptr ? name + " " + uuidText(*uid) : name;
}

std::string elementName(Metadata::Element const & element)
{
    MetaMetadata::MetaElement const * meta =
        MetaMetadata::Helpers::abstractMetaAttributeToMetaElement(element.metaAttribute());
    if (meta == nullptr)
        return "<unknown element>";
    std::string name = propertyName(*meta);
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
std::vector<Types::SimpleDataType const *> strongReferences(Metadata::Element const & element)
{
    std::vector<Types::SimpleDataType const *> found;
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
    std::unique_ptr<Packs::PartitionPack> pack;
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
    std::vector<uint64> boundaries;
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

struct Checker::Impl
{
    std::string path;
    std::vector<Finding> findings;
    uint64 fileSize = 0;
    uint64 runIn = 0;
    std::vector<std::unique_ptr<PartitionInfo>> partitions;
    std::vector<IndexSegmentInfo> segments;
    // Body SIDs named by EssenceContainerData sets, with the offset of the first such set.
    std::map<unsigned, uint64> containerDataSIDs;
    bool ripFound = false;
    // The walk met a packet that runs past the end, or bytes that are no packet.
    bool cutShort = false;
    uint64 walkEnd = 0;
    bool behindRip = false;
    uint64 ripOffset = 0;
    std::unique_ptr<Packs::RandomIndexPack> rip;

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    std::unique_ptr<Metadata::PartitionMetadata> metadata;
    std::map<Metadata::MetadataSet const *, uint64> setOffsets;
    Phase phase = Phase::HeaderMetadata;

    void report(uint64 offset, char const * code, std::string const & message)
    {
        findings.push_back(Finding{offset, code, message});
    }

    uint64 relative(uint64 absolute) const { return absolute - runIn; }

    PartitionInfo * current() const { return partitions.empty() ? nullptr : partitions.back().get(); }

    // ---------------------------------------------------------------------------------------
    // The walk

    void walk()
    {
        Templates::wstring widePath = Utils::wide(path.c_str());
        std::unique_ptr<DataIO::File::FileDataSource> source;
        try
        {
            source.reset(new DataIO::File::FileDataSource(widePath.c_str(), 1 << 20));
        }
        catch (Exceptions::BaseException const & e)
        {
            report(0, "file-unreadable", reason(e));
            return;
        }
        fileSize = source->remaining();
        KLV::Reader reader(*source);
        uint64 position = 0;
        bool first = true;
        while (!source->endOfStream())
        {
            Templates::auto_ptr<KLV::Packet> packet;
            try
            {
                uint64 skipped = 0;
                packet = reader.nextKLV(skipped, first ? MAXIMUM_RUN_IN : 0);
                if (first)
                    runIn = skipped;
            }
            catch (Exceptions::BaseException const & e)
            {
                if (fileSize - position < LONGEST_KEY_AND_LENGTH)
                    report(position, "truncated",
                           "the file ends inside the key or length of a packet (" + number(fileSize - position) +
                               " bytes left)");
                else
                    report(position, "klv-unreadable", "no KLV packet can be read here: " + reason(e));
                cutShort = true;
                break;
            }
            if (!packet)
                break;
            PacketInfo info{packet->keyAbsoluteOffset(), packet->key(), packet->berLength(), packet->length(),
                            classify(packet->key())};
            uint64 const valueStart = info.offset + 16 + info.berLength;
            if (first && info.kind != PacketKind::PartitionPack)
                report(info.offset, "no-header-partition", "the file does not begin with a partition pack");
            first = false;
            if (valueStart > fileSize || info.length > fileSize - valueStart)
            {
                report(info.offset, "truncated",
                       std::string("the value of the ") + kindWord(info.kind) + " (length " + number(info.length) +
                           ") runs past the end of the file (" + number(fileSize) + " bytes)");
                cutShort = true;
                endPartition(info.offset);
                position = info.offset;
                break;
            }
            position = valueStart + info.length;
            visit(info, *packet);
        }
        walkEnd = std::min(position, fileSize);
        endPartition(walkEnd);
    }

    void visit(PacketInfo const & info, KLV::Packet & packet)
    {
        uint64 const end = info.offset + 16 + info.berLength + info.length;
        if (ripFound && !behindRip)
        {
            behindRip = true;
            report(info.offset, "rip-not-last", "a packet follows the random index pack");
        }
        switch (info.kind)
        {
        case PacketKind::PartitionPack:
            endPartition(info.offset);
            startPartition(info, packet, end);
            return;
        case PacketKind::RandomIndexPack:
            endPartition(info.offset);
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
            return;
        default:
            break;
        }
        PartitionInfo * partition = current();
        if (partition == nullptr)
            return;
        if (phase != Phase::Body)
            partition->boundaries.push_back(info.offset);
        if (info.kind == PacketKind::FillItem)
            return;
        if (phase == Phase::HeaderMetadata)
        {
            if (info.kind == PacketKind::Primer && !partition->hasPrimer)
            {
                partition->hasPrimer = true;
                partition->primerOffset = info.offset;
                partition->primerKL = 16 + info.berLength;
                partition->metadataLastEnd = end;
                startMetadata(info, packet);
                return;
            }
            bool const metadataPacket = partition->hasPrimer && (info.kind == PacketKind::LocalSet ||
                                                                 info.kind == PacketKind::Other ||
                                                                 info.kind == PacketKind::Primer);
            if (metadataPacket)
            {
                partition->metadataLastEnd = end;
                loadSet(info, packet);
                return;
            }
            endMetadata(info.offset);
        }
        if (info.kind == PacketKind::IndexSegment && phase != Phase::Body)
        {
            phase = Phase::Index;
            if (!partition->hasIndex)
            {
                partition->hasIndex = true;
                partition->indexFirst = info.offset;
                partition->indexKL = 16 + info.berLength;
            }
            partition->indexLastEnd = end;
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

    void startPartition(PacketInfo const & info, KLV::Packet & packet, uint64 end)
    {
        std::unique_ptr<PartitionInfo> partition(new PartitionInfo);
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

    void startMetadata(PacketInfo const & info, KLV::Packet & packet)
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

    void loadSet(PacketInfo const & info, KLV::Packet & packet)
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
        std::map<Metadata::MetadataSet const *, uint64>::const_iterator found = setOffsets.find(set);
        return found != setOffsets.end() ? found->second : current()->primerOffset;
    }

    void checkMetadata()
    {
        PartitionInfo const * partition = current();
        bool const closed = partition == nullptr || !partition->readable || !partition->pack->isOpen();
        std::vector<std::pair<uint64, Metadata::MetadataSet const *>> sets;
        // Instance UIDs are taken from each set itself, so that a set which holds its UID among
        // the items its description does not provide for can still be the target of a reference.
        std::set<Types::UUID> instances;
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
        {
            Metadata::MetadataSet const & set = *entry.second;
            // Strong references, of the valid elements and of those the set does not provide for.
            std::vector<Metadata::Element const *> elements;
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
                        report(entry.first, "dangling-reference",
                               setName(set) + ": " + elementName(*element) + " refers to " + uuidText(target) +
                                   ", which is not in the partition");
                }
            }
            // An open partition may still lack what its writer has not yet learnt.
            if (!closed)
                continue;
            Templates::vector<Metadata::Element *> open;
            set.openElements(open);
            for (Metadata::Element const * element : open)
                report(entry.first, "required-missing",
                       setName(set) + ": the required " + elementName(*element) + " is missing");
        }
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

    void readSegment(PacketInfo const & info, KLV::Packet & packet)
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
        Templates::wstring widePath = Utils::wide(path.c_str());
        std::unique_ptr<DataIO::File::FileDataSource> file;
        try
        {
            file.reset(new DataIO::File::FileDataSource(widePath.c_str(), 1 << 20));
        }
        catch (Exceptions::BaseException const & e)
        {
            report(0, "file-unreadable", reason(e));
            return;
        }
        DataIO::File::FileDataSource & source = *file;
        MXFIO::Reader2 reader(source, dictionary, MAXIMUM_RUN_IN + 1);
        MXFIO::Partition * at = nullptr;
        try
        {
            for (MXFIO::Partition * p = reader.headerPartition(); p != nullptr; p = reader.nextPartition(p))
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
            MXFIO::Partition * found = reader.footerPartition();
            if (footer != nullptr && (found == nullptr || found->partitionAbsoluteOffset() != footer->offset))
                report(footer->offset, "reader-footer",
                       "the reader does not find the footer partition at " + number(relative(footer->offset)));
            for (MXFIO::Partition * p = found; p != nullptr; p = reader.previousPartition(p))
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
        std::vector<std::unique_ptr<PartitionInfo>>::const_iterator after = std::upper_bound(
            partitions.begin(), partitions.end(), absolute,
            [](uint64 offset, std::unique_ptr<PartitionInfo> const & p) { return offset < p->offset; });
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
                       std::string("the first partition is a ") + kindName(p.kind) + " partition, not a header partition");
            if (p.kind == 4)
            {
                if (footer != nullptr)
                    report(p.offset, "partition-order", "a second footer partition");
                footer = &p;
            }
            else if (footer != nullptr)
                report(p.offset, "partition-order",
                       std::string("a ") + kindName(p.kind) + " partition stands behind the footer partition");
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
        for (std::unique_ptr<PartitionInfo> const & p : partitions)
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
        if (partitions.empty() && findings.empty())
            report(0, "no-header-partition", "the file holds no partition");
    }

    // What a partition offset from a pack hits, as the tail of a message.
    std::string pointedAt(uint64 pointer) const
    {
        if (pointer > fileSize || runIn + pointer >= fileSize)
            return " (past the end of the file)";
        if (cutShort && runIn + pointer >= walkEnd)
            return " (behind the damage, where the walk did not reach)";
        PartitionInfo const * hit = partitionAt(runIn + pointer);
        if (hit != nullptr)
            return std::string(" (the ") + kindName(hit->kind) + " partition)";
        hit = partitionHolding(runIn + pointer);
        if (hit != nullptr)
            return std::string(" (inside the ") + kindName(hit->kind) + " partition at " + number(relative(hit->offset)) + ")";
        return " (no partition)";
    }

    void checkRip()
    {
        PartitionInfo const * footer = nullptr;
        for (std::unique_ptr<PartitionInfo> const & p : partitions)
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
        std::set<uint64> listed;
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
        for (std::unique_ptr<PartitionInfo> const & p : partitions)
            if (listed.count(relative(p->offset)) == 0)
                report(p->offset, "rip-incomplete",
                       std::string("the ") + kindName(p->kind) + " partition at " + number(relative(p->offset)) +
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
        for (std::unique_ptr<PartitionInfo> const & pointer : partitions)
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

    static std::string byteRange(uint64 low, uint64 high)
    {
        if (low >= high)
            return number(low) + " bytes";
        return number(low) + " bytes (" + number(high) + " with the fill around them)";
    }

    void checkAlignment()
    {
        for (std::unique_ptr<PartitionInfo> const & pointer : partitions)
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
                           std::string("the ") + what + " stands " + number(at - p.offset) +
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
        std::map<unsigned, uint64> essence;
        for (std::unique_ptr<PartitionInfo> const & p : partitions)
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

Checker::Checker(std::string const & path) : impl_(new Impl)
{
    impl_->path = path;
}

Checker::~Checker() { delete impl_; }

std::vector<Finding> Checker::run()
{
    Impl & impl = *impl_;
    impl.findings.clear();
    Metadata::Structural::initialize();
    impl.dictionary = MetaMetadata::createStandardDictionary();
    impl.walk();
    bool const opened = impl.findings.empty() || impl.findings.front().code != "file-unreadable";
    if (opened)
    {
        impl.checkChain();
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
} // namespace VellumTool
