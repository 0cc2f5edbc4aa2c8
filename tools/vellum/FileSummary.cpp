#include "FileSummary.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/Packet.h"
#include "Format.h"
#include "MXFIO/EssenceConversions.h"
#include "MXFIO/FileChecker.h"
#include "MXFIO/PacketWalk.h"
#include "LabelNames.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "MXFIO/Reader2.h"
#include "Packs/PartitionPack.h"
#include "Packs/RandomIndexPack.h"
#include "Types/Integers.h"
#include "Types/ProductVersion.h"
#include "Types/Rational.h"
#include "Types/Timestamp.h"
#include "Types/UMID.h"
#include "Types/UTF16String.h"
#include "Types/UniversalLabel.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
using namespace Vellum;
namespace S = Metadata::Structural;

// Index segments longer than this are not parsed (a damaged length would make a huge read).
std::uint64_t const MAXIMUM_SEGMENT = 64u << 20;

std::string text(Types::UTF16String const * value) { return value ? narrow(value->value()) : std::string(); }

std::string timestampOf(Types::Timestamp const * v) { return v ? timestamp(*v) : std::string(); }

std::string versionOf(Types::ProductVersion const * v) { return v ? productVersion(*v) : std::string(); }

std::string umidOf(Types::UMID32 const * v) { return v ? umid(v->rawBuffer(), 32) : std::string(); }

std::string rationalOf(Types::Rational const * v)
{
    return v ? rational(v->numerator(), v->denominator()) : std::string();
}

// "hh:mm:ss:ff", or "hh:mm:ss;ff" counted in drop frame at 30 and 60 frames a second.
std::string formatTimecode(std::int64_t frames, unsigned fps, bool drop)
{
    if (fps == 0 || frames < 0)
        return std::string();
    drop = drop && (fps == 30 || fps == 60);
    if (drop)
    {
        std::int64_t const dropped = fps == 30 ? 2 : 4;
        std::int64_t const perTenMinutes = fps * 600 - dropped * 9;
        std::int64_t const perMinute = fps * 60 - dropped;
        std::int64_t const tens = frames / perTenMinutes;
        std::int64_t const rest = frames % perTenMinutes;
        frames += dropped * 9 * tens;
        if (rest > dropped)
            frames += dropped * ((rest - dropped) / perMinute);
    }
    std::int64_t const ff = frames % fps;
    std::int64_t const seconds = frames / fps;
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%02lld:%02lld:%02lld%c%02lld", static_cast<long long>(seconds / 3600),
                  static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60), drop ? ';' : ':',
                  static_cast<long long>(ff));
    return buffer;
}

// The kind of a track from its data definition.
std::string trackKind(Types::UniversalLabel const * label)
{
    switch (S::trackKind(label))
    {
    case S::UnknownTrack: return "unknown";
    case S::PictureTrack: return "picture";
    case S::SoundTrack: return "sound";
    case S::DataTrack: return "data";
    case S::TimecodeTrack: return "timecode";
    case S::DescriptiveMetadataTrack: return "descriptive metadata";
    default: return "other";
    }
}

std::string propertyName(MetaMetadata::PropertyMap const & object)
{
    for (MetaMetadata::PropertyMap::const_iterator i = object.propertiesBegin(); i != object.propertiesEnd(); ++i)
        if (i->first == Utils::wide("name"))
            return narrow(i->second);
    return std::string();
}

// The class of a structural set, or the dictionary's name of another.
class ClassName : public Metadata::Visitors::MetadataSetVisitor
{
public:
    void visit(Metadata::MetadataSet const & set) override
    {
        MetaMetadata::MetaMetadataSet const * description = set.metaMetadataSet();
        name = description ? propertyName(*description) : std::string();
        if (name.empty())
            name = "MetadataSet";
    }
#define VELLUM_INFO_CLASS_NAME_VISIT(Class, Base)                                                 \
    void visit(S::Class const &) override { name = #Class; }
    VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_INFO_CLASS_NAME_VISIT)
#undef VELLUM_INFO_CLASS_NAME_VISIT

    std::string name;
};

// ---------------------------------------------------------------------------------------------
// The walk

PartitionFound readPartition(MXFIO::PacketPlace const & place, KLV::Packet & packet)
{
    PartitionFound p;
    p.offset = place.offset;
    p.kind = place.key[13];
    p.status = place.key[14];
    try
    {
        Packs::PartitionPack pack(packet);
        p.thisPartition = pack.thisPartition();
        p.previousPartition = pack.previousPartition();
        p.footerPartition = pack.footerPartition();
        p.headerByteCount = pack.headerByteCount();
        p.indexByteCount = pack.indexByteCount();
        p.indexSID = pack.indexSID();
        p.bodySID = pack.bodySID();
        p.bodyOffset = pack.bodyOffset();
        p.kagSize = pack.kagSize();
        p.operationalPattern = dotted(pack.operationalPattern().rawBuffer());
        Types::Batch const & containers = pack.essenceContainers();
        for (unsigned i = 0; i < containers.size(); ++i)
            p.essenceContainers.push_back(dotted(containers.at(i).rawBuffer()));
    }
    catch (Exceptions::BaseException const &)
    {
        // The check reports the pack.
    }
    return p;
}

void readSegment(FileSummary & s, MXFIO::PacketPlace const & place, KLV::Packet & packet)
{
    if (place.length > MAXIMUM_SEGMENT)
        return;
    try
    {
        IndexTables::IndexTableSegment segment(packet);
        SegmentFound f;
        f.offset = place.offset;
        f.indexSID = segment.indexSID() ? segment.indexSID()->value() : 0;
        f.bodySID = segment.bodySID().value();
        f.editRateNumerator = segment.indexEditRate().numerator();
        f.editRateDenominator = segment.indexEditRate().denominator();
        f.startPosition = segment.indexStartPosition().value();
        f.duration = segment.indexDuration().value();
        f.editUnitByteCount = segment.editUnitByteCount() ? segment.editUnitByteCount()->value() : 0;
        f.indexEntries = segment.indexEntryCount();
        f.deltaEntries = segment.deltaEntryCount();
        s.segments.push_back(f);
    }
    catch (Exceptions::BaseException const &)
    {
        // The check reports the segment.
    }
}

void readRip(FileSummary & s, KLV::Packet & packet)
{
    try
    {
        Packs::RandomIndexPack rip(packet);
        s.hasRip = true;
        s.rip.clear();
        for (auto const & entry : rip.offsetIndexedMap())
            s.rip.push_back(RipEntry{entry.second, entry.first});
    }
    catch (Exceptions::BaseException const &)
    {
        // The check reports the pack.
    }
}

// What the packets of a file add up to: partitions with the bytes of their regions, segments,
// the RIP and the essence of each track number.
class SummaryWalk
{
public:
    explicit SummaryWalk(FileSummary & s) : s_(s) {}

    void visit(MXFIO::PacketPlace const & place, KLV::Packet & packet)
    {
        std::uint64_t const bytes = place.end() - place.offset;
        PartitionFound * current = s_.partitions.empty() ? nullptr : &s_.partitions.back();
        switch (place.kind)
        {
        case MXFIO::PacketKind::PartitionPack:
            s_.partitions.push_back(readPartition(place, packet));
            region_ = Region::AfterPack;
            return;
        case MXFIO::PacketKind::Primer:
            if (region_ == Region::AfterPack)
                region_ = Region::Header;
            if (current && region_ == Region::Header)
                current->headerBytesFound += bytes;
            return;
        case MXFIO::PacketKind::LocalSet:
            if (current && region_ == Region::Header)
                current->headerBytesFound += bytes;
            else
                other();
            return;
        case MXFIO::PacketKind::FillItem:
            if (current && region_ == Region::Header)
                current->headerBytesFound += bytes;
            if (current && region_ == Region::Index)
                current->indexBytesFound += bytes;
            return;
        case MXFIO::PacketKind::IndexSegment:
            if (region_ == Region::AfterPack || region_ == Region::Header)
                region_ = Region::Index;
            if (current && region_ == Region::Index)
                current->indexBytesFound += bytes;
            readSegment(s_, place, packet);
            return;
        case MXFIO::PacketKind::RandomIndexPack:
            region_ = Region::Body;
            readRip(s_, packet);
            return;
        case MXFIO::PacketKind::EssenceElement:
            essence(place, current);
            return;
        case MXFIO::PacketKind::SystemItem:
            region_ = Region::Body;
            ++s_.systemItems;
            return;
        case MXFIO::PacketKind::Other:
            other();
            return;
        }
    }

private:
    enum class Region
    {
        AfterPack,
        Header,
        Index,
        Body
    };

    void other()
    {
        region_ = Region::Body;
        ++s_.unknownPackets;
    }

    void essence(MXFIO::PacketPlace const & place, PartitionFound * current)
    {
        region_ = Region::Body;
        unsigned const sid = current ? current->bodySID : 0;
        std::pair<unsigned, std::uint32_t> const id(sid, MXFIO::key2TrackNumber(place.key));
        auto at = streamAt_.find(id);
        if (at == streamAt_.end())
        {
            at = streamAt_.insert(std::make_pair(id, s_.streams.size())).first;
            s_.streams.push_back(StreamFound{sid, id.second, 0, 0, place.offset});
        }
        ++s_.streams[at->second].elements;
        s_.streams[at->second].bytes += place.length;
        if (current)
        {
            ++current->essenceElements;
            current->essenceBytes += place.length;
        }
    }

    FileSummary & s_;
    Region region_ = Region::Body;
    std::map<std::pair<unsigned, std::uint32_t>, size_t> streamAt_;
};

// The walk stops where no packet can be read or a value runs past the end; the check says why.
void walkFile(FileSummary & s)
{
    DataIO::File::FileDataSource source(Utils::wide(s.path.c_str()).c_str(), 1 << 20);
    MXFIO::PacketWalk walk(source);
    s.fileSize = walk.size();
    SummaryWalk summary(s);
    try
    {
        while (Templates::auto_ptr<KLV::Packet> packet = walk.next())
        {
            if (walk.valueCutShort())
                break;
            summary.visit(walk.place(), *packet);
        }
    }
    catch (Exceptions::BaseException const &)
    {
    }
    s.runIn = walk.runIn();
    s.packets = walk.packets();
}

// ---------------------------------------------------------------------------------------------
// The metadata

// What a picture or sound descriptor adds.
void addEssenceDetails(DescriptorInfo & d, S::GenericDescriptor const * descriptor)
{
    if (S::GenericPictureEssenceDescriptor const * picture = S::metadataSetAs<S::GenericPictureEssenceDescriptor>(
            static_cast<Metadata::MetadataSet const *>(descriptor)))
    {
        d.storedWidth = picture->storedWidth() ? picture->storedWidth()->value() : 0;
        d.storedHeight = picture->storedHeight() ? picture->storedHeight()->value() : 0;
        if (picture->pictureEssenceCoding())
        {
            d.pictureCoding = dotted(picture->pictureEssenceCoding()->rawBuffer());
            d.pictureCodingName = labelName(picture->pictureEssenceCoding()->rawBuffer());
        }
    }
    if (S::GenericSoundEssenceDescriptor const * sound = S::metadataSetAs<S::GenericSoundEssenceDescriptor>(
            static_cast<Metadata::MetadataSet const *>(descriptor)))
    {
        d.audioSamplingRate = rationalOf(sound->audioSamplingRate());
        d.channels = sound->channelCount() ? sound->channelCount()->value() : 0;
        d.quantizationBits = sound->quantizationBits() ? sound->quantizationBits()->value() : 0;
    }
    if (S::WAVEAudioEssenceDescriptor const * wave = S::metadataSetAs<S::WAVEAudioEssenceDescriptor>(
            static_cast<Metadata::MetadataSet const *>(descriptor)))
        d.blockAlign = wave->blockAlign() ? wave->blockAlign()->value() : 0;
}

void readDescriptor(S::GenericDescriptor const * descriptor, std::vector<DescriptorInfo> & out)
{
    if (!descriptor)
        return;
    if (S::MultipleDescriptor const * multiple = S::metadataSetAs<S::MultipleDescriptor>(
            static_cast<Metadata::MetadataSet const *>(descriptor)))
    {
        DescriptorInfo d;
        ClassName name;
        multiple->accept(name);
        d.className = name.name;
        Types::UniversalLabel const * container = multiple->essenceContainer();
        if (container)
        {
            d.essenceContainer = dotted(container->rawBuffer());
            d.essenceContainerName = labelName(container->rawBuffer());
        }
        d.sampleRate = rationalOf(multiple->sampleRate());
        out.push_back(d);
        for (unsigned i = 0; i < multiple->subDescriptorUIDsCount(); ++i)
            if (multiple->subDescriptorUID(i) != descriptor)
                readDescriptor(multiple->subDescriptorUID(i), out);
        return;
    }
    DescriptorInfo d;
    ClassName name;
    descriptor->accept(name);
    d.className = name.name;
    if (S::FileDescriptor const * file =
            S::metadataSetAs<S::FileDescriptor>(static_cast<Metadata::MetadataSet const *>(descriptor)))
    {
        if (file->linkedTrackID())
        {
            d.hasLinkedTrackID = true;
            d.linkedTrackID = file->linkedTrackID()->value();
        }
        if (file->essenceContainer())
        {
            d.essenceContainer = dotted(file->essenceContainer()->rawBuffer());
            d.essenceContainerName = labelName(file->essenceContainer()->rawBuffer());
        }
        d.sampleRate = rationalOf(file->sampleRate());
        if (file->containerDuration())
        {
            d.hasContainerDuration = true;
            d.containerDuration = file->containerDuration()->value();
        }
    }
    addEssenceDetails(d, descriptor);
    out.push_back(d);
}

// Frames a second of the package's time code, and whether it drops frames; 0 without one.
unsigned timecodeBase(S::GenericPackage const & package, bool & drop, std::int64_t & start)
{
    drop = false;
    start = 0;
    S::TimelineTrack * track = S::getTimecodeTrack(package);
    if (!track || !track->sequence())
        return 0;
    S::Sequence const * sequence = track->sequence();
    for (unsigned i = 0; i < sequence->structuralComponentsCount(); ++i)
    {
        S::TimecodeComponent const * tc = S::metadataSetAs<S::TimecodeComponent>(
            static_cast<Metadata::MetadataSet const *>(sequence->structuralComponent(i)));
        if (tc && tc->roundedTimecodeBase())
        {
            drop = tc->dropFrame() && tc->dropFrame()->value();
            start = tc->startTimecode() ? tc->startTimecode()->value() : 0;
            return tc->roundedTimecodeBase()->value();
        }
    }
    return 0;
}

PackageInfo readPackage(S::GenericPackage const & package)
{
    PackageInfo info;
    Metadata::MetadataSet const * set = &package;
    S::SourcePackage const * source = S::metadataSetAs<S::SourcePackage>(set);
    info.kind = S::metadataSetAs<S::MaterialPackage>(set) ? "material" : source ? "source" : "other";
    info.uid = umidOf(package.packageUID());
    info.name = text(package.packageName());
    bool drop = false;
    std::int64_t start = 0;
    unsigned base = timecodeBase(package, drop, start);
    if (base != 0)
        info.startTimecode = formatTimecode(start, base, drop);

    Templates::list<S::TimelineTrack *> tracks;
    S::getAllTimelineTracks(package, tracks);
    // Without a time code track, durations are shown at the rate of the first picture track.
    if (base == 0)
        for (S::TimelineTrack * track : tracks)
            if (track->editRate() && track->editRate()->denominator() > 0 && track->sequence() &&
                trackKind(track->sequence()->dataDefinition()) == "picture")
            {
                base = unsigned((track->editRate()->numerator() + track->editRate()->denominator() / 2) /
                                track->editRate()->denominator());
                break;
            }
    for (S::TimelineTrack * track : tracks)
    {
        TrackInfo t;
        t.id = track->trackID() ? track->trackID()->value() : 0;
        t.number = track->trackNumber() ? track->trackNumber()->value() : 0;
        t.name = text(track->trackName());
        if (track->editRate())
        {
            t.editRateNumerator = track->editRate()->numerator();
            t.editRateDenominator = track->editRate()->denominator();
        }
        t.origin = track->origin() ? track->origin()->value() : 0;
        S::Sequence const * sequence = track->sequence();
        Types::UniversalLabel const * definition = sequence ? sequence->dataDefinition() : nullptr;
        t.kind = trackKind(definition);
        t.dataDefinition = definition ? dotted(definition->rawBuffer()) : std::string();
        if (sequence && sequence->duration())
        {
            t.hasDuration = true;
            t.duration = sequence->duration()->value();
            unsigned fps = base;
            if (fps == 0 && t.editRateDenominator > 0 && t.editRateNumerator / t.editRateDenominator <= 120)
                fps = unsigned((t.editRateNumerator + t.editRateDenominator / 2) / t.editRateDenominator);
            if (fps != 0 && t.editRateNumerator > 0 && t.editRateDenominator > 0 && t.duration >= 0)
            {
                // Whole frames of the time code in the duration.
                std::int64_t const frames = static_cast<std::int64_t>(
                    static_cast<long double>(t.duration) * fps * t.editRateDenominator / t.editRateNumerator);
                t.durationTimecode = formatTimecode(frames, fps, drop);
            }
        }
        info.tracks.push_back(t);
    }
    if (source)
        readDescriptor(source->descriptor(), info.descriptors);
    return info;
}

// The packages of the content storage, with the body and index SIDs of their essence.
std::vector<PackageInfo> packagesOf(S::ContentStorage const & storage)
{
    std::vector<PackageInfo> packages;
    std::map<std::string, std::pair<unsigned, unsigned>> containerData; // package UID -> body SID, index SID
    for (unsigned i = 0; i < storage.essenceContainerDataCount(); ++i)
    {
        S::EssenceContainerData const * data = storage.essenceContainerData(i);
        if (data && data->linkedPackageUID())
            containerData[umidOf(data->linkedPackageUID())] =
                std::make_pair(data->bodySID() ? data->bodySID()->value() : 0u,
                               data->indexSID() ? data->indexSID()->value() : 0u);
    }
    for (unsigned i = 0; i < storage.packagesCount(); ++i)
    {
        S::GenericPackage const * package = storage.package(i);
        if (!package)
            continue;
        PackageInfo info = readPackage(*package);
        auto found = containerData.find(info.uid);
        if (found != containerData.end())
        {
            info.hasEssenceContainerData = true;
            info.bodySID = found->second.first;
            info.indexSID = found->second.second;
        }
        packages.push_back(info);
    }
    return packages;
}

// The header partition's own metadata against the metadata shown: packages and track durations.
void compareWithHeader(FileSummary & s, MXFIO::Partition & header)
{
    std::vector<PackageInfo> packages;
    try
    {
        Templates::SharedPtr<Metadata::PartitionMetadata> metadata = header.metadata();
        if (!metadata.get())
            return;
        S::ContentStorage const * storage = S::findPreface(*metadata)->contentStorage();
        if (!storage)
            return;
        packages = packagesOf(*storage);
    }
    catch (Exceptions::BaseException const & e)
    {
        s.warnings.push_back(std::string("the header metadata of the header partition cannot be read: ") +
                             reason(e));
        return;
    }
    std::string const shown = "the partition at " + std::to_string(s.metadataPartition);
    for (PackageInfo const & final : s.packages)
    {
        PackageInfo const * early = nullptr;
        for (PackageInfo const & p : packages)
            if (p.uid == final.uid)
                early = &p;
        if (!early)
        {
            s.warnings.push_back("the package " + final.uid + " of " + shown + " is not in the header metadata");
            continue;
        }
        for (TrackInfo const & t : final.tracks)
            for (TrackInfo const & e : early->tracks)
                if (e.id == t.id && (e.hasDuration != t.hasDuration || e.duration != t.duration))
                    s.warnings.push_back("the header metadata gives track " + std::to_string(t.id) + " of the " +
                                         final.kind + " package a duration of " +
                                         (e.hasDuration ? std::to_string(e.duration) : std::string("none")) + ", " +
                                         shown + " " + (t.hasDuration ? std::to_string(t.duration) : std::string("none")));
    }
}

// The metadata of `partition`, or null with a warning.
Templates::SharedPtr<Metadata::PartitionMetadata> metadataOf(FileSummary & s, MXFIO::Partition & partition)
{
    try
    {
        return partition.metadata();
    }
    catch (Exceptions::BaseException const & e)
    {
        s.warnings.push_back("the header metadata of the partition at offset " +
                             std::to_string(partition.partitionAbsoluteOffset()) + " cannot be read: " + reason(e));
    }
    return Templates::SharedPtr<Metadata::PartitionMetadata>();
}

// The partition whose metadata is final: the newest that has metadata, else the header.
MXFIO::Partition * finalPartition(FileSummary & s, MXFIO::Reader2 & reader, MXFIO::Partition * header)
{
    try
    {
        MXFIO::Partition * newest = reader.backwardFirstPartitionWithFinalMetadata();
        if (newest && newest->partitionPack().headerByteCount() != 0)
            return newest;
    }
    catch (Exceptions::BaseException const & e)
    {
        s.warnings.push_back(std::string("the search for the final header metadata failed: ") + reason(e));
    }
    return header;
}

void readPreface(FileSummary & s, Metadata::PartitionMetadata const & metadata, MXFIO::Partition & header,
                 bool fromHeader);

void readMetadata(FileSummary & s)
{
    S::initialize();
    DataIO::File::FileDataSource source(Utils::wide(s.path.c_str()).c_str(), 1 << 16);
    MXFIO::Reader2 reader(source, MetaMetadata::createStandardDictionary(), MXFIO::PacketWalk::MAXIMUM_RUN_IN + 1);
    MXFIO::Partition * header = reader.headerPartition();
    if (!header)
    {
        s.warnings.push_back("the library's reader finds no header partition");
        return;
    }
    MXFIO::Partition * chosen = finalPartition(s, reader, header);
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata = metadataOf(s, *chosen);
    if (!metadata.get() && chosen != header)
    {
        chosen = header;
        metadata = metadataOf(s, *header);
    }
    if (!metadata.get())
    {
        s.warnings.push_back("no header metadata was read");
        return;
    }
    s.metadataPartition = static_cast<std::int64_t>(chosen->partitionAbsoluteOffset());
    readPreface(s, *metadata, *header, chosen == header);
}

void readPreface(FileSummary & s, Metadata::PartitionMetadata const & metadata, MXFIO::Partition & header,
                 bool fromHeader)
{

    S::Preface const * preface = nullptr;
    try
    {
        preface = S::findPreface(metadata);
    }
    catch (Exceptions::BaseException const &)
    {
        s.warnings.push_back("the header metadata has no Preface");
        return;
    }
    if (Types::UniversalLabel const * op = preface->operationalPattern())
    {
        s.operationalPattern = dotted(op->rawBuffer());
        s.operationalPatternName = labelName(op->rawBuffer());
    }
    for (unsigned i = 0; i < preface->essenceContainersCount(); ++i)
        if (Types::UniversalLabel const * label = preface->essenceContainer(i))
        {
            s.essenceContainers.push_back(dotted(label->rawBuffer()));
            s.essenceContainerNames.push_back(labelName(label->rawBuffer()));
        }
    for (unsigned i = 0; i < preface->identificationsCount(); ++i)
    {
        S::Identification const * id = preface->identification(i);
        if (!id)
            continue;
        IdentificationInfo info;
        info.company = text(id->companyName());
        info.product = text(id->productName());
        info.productVersion = versionOf(id->productVersion());
        info.versionString = text(id->versionString());
        info.platform = text(id->platform());
        info.date = timestampOf(id->modifiedDate());
        s.identifications.push_back(info);
    }
    S::ContentStorage const * storage = preface->contentStorage();
    if (!storage)
    {
        s.warnings.push_back("the Preface has no content storage");
        return;
    }
    s.packages = packagesOf(*storage);
    if (!fromHeader && header.partitionPack().headerByteCount() != 0)
        compareWithHeader(s, header);
}

// ---------------------------------------------------------------------------------------------
// Comparisons

// The findings of the file's check, in the words of `vellum check`.
void addFindings(FileSummary & s)
{
    MXFIO::FileChecker checker(Utils::wide(s.path.c_str()).c_str());
    Templates::vector<MXFIO::Finding> const findings = checker.run();
    for (MXFIO::Finding const & f : findings)
        s.warnings.push_back(std::string(f.code) + " at " + std::to_string(f.offset) + ": " + narrow(f.message));
}

// The index segments of each essence container, each span once (a segment repeated in a later
// partition counts once).
std::map<unsigned, std::vector<SegmentFound const *>> segmentsBySID(FileSummary const & s)
{
    std::map<unsigned, std::vector<SegmentFound const *>> bySID;
    std::set<std::pair<unsigned, std::int64_t>> seen;
    for (SegmentFound const & g : s.segments)
        if (seen.insert(std::make_pair(g.bodySID, g.startPosition)).second)
            bySID[g.bodySID].push_back(&g);
    return bySID;
}

// The edit units of a clip of sound from its bytes, the bytes of a sample and the sampling rate;
// -1 when they cannot be told so.
std::int64_t soundEditUnits(TrackInfo const & t, DescriptorInfo const * descriptor, StreamFound const & stream)
{
    unsigned blockAlign = descriptor ? descriptor->blockAlign : 0;
    if (descriptor && blockAlign == 0 && descriptor->channels != 0 && descriptor->quantizationBits != 0)
        blockAlign = descriptor->channels * ((descriptor->quantizationBits + 7) / 8);
    long long rateNumerator = 0, rateDenominator = 0;
    if (!descriptor ||
        std::sscanf(descriptor->audioSamplingRate.c_str(), "%lld/%lld", &rateNumerator, &rateDenominator) != 2 ||
        blockAlign == 0 || rateDenominator <= 0 || t.editRateNumerator <= 0 || t.editRateDenominator <= 0)
        return -1;
    // Samples in one edit unit: the sampling rate over the edit rate.
    long double const samples = static_cast<long double>(rateNumerator) * t.editRateDenominator /
                                (static_cast<long double>(rateDenominator) * t.editRateNumerator);
    return static_cast<std::int64_t>(stream.bytes / (samples * blockAlign) + 1e-9L);
}

void countEditUnits(FileSummary & s)
{
    std::map<unsigned, std::vector<SegmentFound const *>> const index = segmentsBySID(s);
    // Packages without essence container data describe essence elsewhere (tapes, imports), unless
    // the file has no such data at all.
    bool anyContainerData = false;
    for (PackageInfo const & package : s.packages)
        anyContainerData = anyContainerData || package.hasEssenceContainerData;
    for (PackageInfo & package : s.packages)
    {
        if (package.kind != "source" || (anyContainerData && !package.hasEssenceContainerData))
            continue;
        for (TrackInfo & t : package.tracks)
        {
            if (t.number == 0 || (t.kind != "picture" && t.kind != "sound" && t.kind != "data"))
                continue;
            StreamFound const * stream = nullptr;
            for (StreamFound const & f : s.streams)
                if (f.trackNumber == t.number && (!package.hasEssenceContainerData || f.bodySID == package.bodySID))
                    stream = &f;
            t.elementsFound = stream ? std::int64_t(stream->elements) : 0;
            t.bytesFound = stream ? std::int64_t(stream->bytes) : 0;
            DescriptorInfo const * descriptor = nullptr;
            for (DescriptorInfo const & d : package.descriptors)
                if (!d.className.empty() && d.className != "MultipleDescriptor" &&
                    (d.hasLinkedTrackID ? d.linkedTrackID == t.id : package.descriptors.size() == 1))
                    descriptor = &d;
            // The label may say frame wrapping while one element holds the whole track.
            t.clipWrapped = (descriptor && descriptor->essenceContainerName.find("Clip-wrapped") != std::string::npos) ||
                            (t.elementsFound == 1 && t.hasDuration && t.duration > 1);
            if (!t.clipWrapped || !stream)
            {
                t.editUnitsFound = t.elementsFound;
                continue;
            }
            // A clip: its edit units follow from the bytes of a sample, or from the index.
            t.editUnitsFound = soundEditUnits(t, descriptor, *stream);
            if (t.editUnitsFound >= 0)
                continue;
            auto segments = index.find(stream->bodySID);
            if (segments == index.end())
                continue;
            std::int64_t total = 0;
            for (SegmentFound const * g : segments->second)
            {
                if (g->editUnitByteCount != 0)
                {
                    t.editUnitsFound = std::int64_t(stream->bytes / g->editUnitByteCount);
                    total = -1;
                    break;
                }
                total += g->duration;
            }
            if (total >= 0)
                t.editUnitsFound = total;
        }
    }
}

void checkTracks(FileSummary & s)
{
    std::vector<std::string> & w = s.warnings;
    std::map<unsigned, std::int64_t> foundBySID;
    for (PackageInfo const & package : s.packages)
        for (TrackInfo const & t : package.tracks)
        {
            if (t.editUnitsFound < 0)
                continue;
            if (t.hasDuration && t.duration >= 0 && t.duration != t.editUnitsFound)
                w.push_back("track " + std::to_string(t.id) + " (number " + hex(t.number, 8) + ") of the " +
                            package.kind + " package has a duration of " + std::to_string(t.duration) +
                            " edit units, but " + std::to_string(t.editUnitsFound) + " were found in the body");
            std::int64_t & found = foundBySID[package.bodySID];
            found = std::max(found, t.editUnitsFound);
        }
    std::set<unsigned> bodySIDs;
    for (StreamFound const & f : s.streams)
        bodySIDs.insert(f.bodySID);
    for (PackageInfo const & package : s.packages)
    {
        bool expectsEssence = false;
        for (TrackInfo const & t : package.tracks)
            expectsEssence = expectsEssence || (t.number != 0 && t.hasDuration && t.duration != 0);
        if (expectsEssence && package.hasEssenceContainerData && package.bodySID != 0 &&
            bodySIDs.count(package.bodySID) == 0)
            w.push_back("no essence of body SID " + std::to_string(package.bodySID) + " (source package " +
                        package.uid + ") was found in the file");
    }

    std::map<unsigned, std::vector<SegmentFound const *>> const index = segmentsBySID(s);
    for (auto const & entry : index)
    {
        std::int64_t total = 0;
        bool constant = false;
        for (SegmentFound const * g : entry.second)
        {
            total += g->duration;
            constant = constant || g->editUnitByteCount != 0;
            if (g->editUnitByteCount == 0 && g->indexEntries != 0 && std::int64_t(g->indexEntries) != g->duration)
                w.push_back("the index table segment at offset " + std::to_string(g->offset) + " has " +
                            std::to_string(g->indexEntries) + " index entries for a duration of " +
                            std::to_string(g->duration));
        }
        auto found = foundBySID.find(entry.first);
        if (found != foundBySID.end() && total != 0 && total != found->second)
            w.push_back("the index of body SID " + std::to_string(entry.first) + " covers " + std::to_string(total) +
                        " edit units, but " + std::to_string(found->second) + " were found in the body");
    }
}
} // namespace

FileSummary summarize(std::string const & path)
{
    FileSummary s;
    s.path = path;
    walkFile(s);
    if (s.partitions.empty())
        VELLUM_THROW(InvalidFormat, "no partition pack was found: this is not an MXF file");
    addFindings(s);
    try
    {
        readMetadata(s);
    }
    catch (Exceptions::BaseException const & e)
    {
        s.warnings.push_back(std::string("the header metadata cannot be read: ") + reason(e));
    }
    countEditUnits(s);
    checkTracks(s);
    return s;
}
} // namespace VellumTool
