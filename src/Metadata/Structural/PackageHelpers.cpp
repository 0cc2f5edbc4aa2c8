// Tracks, descriptors, spans and time codes of a package, and the building of timeline tracks
// and source clips.

#include "Metadata/Structural/PackageHelpers.h"

#include "Exceptions/Exceptions.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/GenericDataEssenceDescriptor.h"
#include "Metadata/Structural/GenericPictureEssenceDescriptor.h"
#include "Metadata/Structural/GenericSoundEssenceDescriptor.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/MultipleDescriptor.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourceClip.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralAssert.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/SubclassHelpers.h"
#include "Metadata/Structural/TimecodeComponent.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UMID.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace
{
// Whether `descriptor` is a file descriptor that describes track `trackID` of a package with
// `trackCount` tracks: its linked track is that one, or it has none and there is one track.
bool describesTrack(FileDescriptor const * descriptor, unsigned int trackID, unsigned int trackCount)
{
    if (!descriptor)
        return false;
    Types::UInt32 const * linked = descriptor->linkedTrackID();
    if (linked)
        return linked->value() == trackID;
    return trackCount == 1;
}

// Whether `descriptor` is of the kind that describes essence of that data definition.
bool describesDataDefinition(GenericDescriptor const * descriptor, Types::UniversalLabel const & dataDefinition)
{
    if (dataDefinition == DataDefinitionULs::picture())
        return metadataSetAs<GenericPictureEssenceDescriptor>(descriptor) != nullptr;
    if (dataDefinition == DataDefinitionULs::audio())
        return metadataSetAs<GenericSoundEssenceDescriptor>(descriptor) != nullptr;
    if (dataDefinition == DataDefinitionULs::data())
        return metadataSetAs<GenericDataEssenceDescriptor>(descriptor) != nullptr;
    return false;
}

FileDescriptor * descriptorByDataDefinition(SourcePackage const & package, Types::UniversalLabel const & dataDefinition)
{
    GenericDescriptor * descriptor = package.descriptor();
    if (MultipleDescriptor * multiple = metadataSetAs<MultipleDescriptor>(descriptor))
    {
        for (unsigned int i = 0, n = multiple->subDescriptorUIDsCount(); i < n; ++i)
        {
            GenericDescriptor * sub = multiple->subDescriptorUID(i);
            if (describesDataDefinition(sub, dataDefinition))
                return metadataSetAs<FileDescriptor>(sub);
        }
        return nullptr;
    }
    return describesDataDefinition(descriptor, dataDefinition) ? metadataSetAs<FileDescriptor>(descriptor) : nullptr;
}

// The first time code component of the sequence of the package's time code track.
TimecodeComponent * timecodeComponentOf(GenericPackage const & package, TimelineTrack ** trackOut = nullptr)
{
    TimelineTrack * track = getTimecodeTrack(package);
    if (trackOut)
        *trackOut = track;
    Sequence * sequence = track ? track->sequence() : nullptr;
    if (!sequence)
        return nullptr;
    for (unsigned int i = 0, n = sequence->structuralComponentsCount(); i < n; ++i)
        if (TimecodeComponent * timecode = metadataSetAs<TimecodeComponent>(sequence->structuralComponent(i)))
            return timecode;
    return nullptr;
}

template <class T>
T * createSet(PartitionMetadata & metadata, KLV::Key const & key)
{
    initialize();
    T * set = metadataSetAs<T>(metadata.createMetadataSet(key));
    VELLUM_STRUCTURAL_ASSERT(set != 0, "The metadata set factory made a set of another class");
    return set;
}
} // namespace

void getAllTimelineTracks(GenericPackage const & package, Templates::list<TimelineTrack *> & tracks)
{
    for (unsigned int i = 0, n = package.tracksCount(); i < n; ++i)
        if (TimelineTrack * track = metadataSetAs<TimelineTrack>(package.track(i)))
            tracks.push_back(track);
}

void getAllEssenceTracks(GenericPackage const & package, Templates::list<TimelineTrack *> & tracks)
{
    for (unsigned int i = 0, n = package.tracksCount(); i < n; ++i)
    {
        TimelineTrack * track = metadataSetAs<TimelineTrack>(package.track(i));
        if (track && isEssenceTrack(track))
            tracks.push_back(track);
    }
}

TimelineTrack * getTimecodeTrack(GenericPackage const & package)
{
    for (unsigned int i = 0, n = package.tracksCount(); i < n; ++i)
    {
        TimelineTrack * track = metadataSetAs<TimelineTrack>(package.track(i));
        if (track && isTimeCodeTrack(track))
            return track;
    }
    return nullptr;
}

TrackKind trackKind(Types::UniversalLabel const * label)
{
    if (!label)
        return UnknownTrack;
    unsigned char const * b = label->rawBuffer();
    if (b[8] != 0x01 || b[9] != 0x03 || b[10] != 0x02)
        return OtherTrack;
    if (b[11] == 0x02 && b[12] >= 0x01 && b[12] <= 0x03)
        return b[12] == 0x01 ? PictureTrack : b[12] == 0x02 ? SoundTrack : DataTrack;
    if (b[11] == 0x01 && b[12] == 0x01)
        return TimecodeTrack;
    if (b[11] == 0x01 && b[12] == 0x10)
        return DescriptiveMetadataTrack;
    return OtherTrack;
}

TrackKind trackKind(TimelineTrack const & track)
{
    Sequence const * sequence = track.sequence();
    return trackKind(sequence ? sequence->dataDefinition() : nullptr);
}

bool fileTrackOf(ContentStorage const & storage, GenericPackage & package, TimelineTrack & track,
                 SourcePackage *& filePackage, TimelineTrack *& fileTrack)
{
    filePackage = nullptr;
    fileTrack = nullptr;
    if (SourcePackage * source = metadataSetAs<SourcePackage>(static_cast<MetadataSet *>(&package)))
    {
        filePackage = source;
        fileTrack = &track;
        return true;
    }
    Sequence const * sequence = track.sequence();
    for (unsigned int i = 0, n = sequence ? sequence->structuralComponentsCount() : 0; i < n; ++i)
    {
        SourceClip const * clip = metadataSetAs<SourceClip>(sequence->structuralComponent(i));
        if (!clip || !clip->sourcePackageID() || !clip->sourceTrackID())
            continue;
        SourcePackage * source =
            metadataSetAs<SourcePackage>(static_cast<MetadataSet *>(storage.package(*clip->sourcePackageID())));
        TimelineTrack * target =
            source ? metadataSetAs<TimelineTrack>(source->track(*clip->sourceTrackID())) : nullptr;
        if (!target)
            return false;
        filePackage = source;
        fileTrack = target;
        return true;
    }
    return false;
}

FileDescriptor * fileDescriptorForTrack(SourcePackage const & package, unsigned int trackID)
{
    GenericDescriptor * descriptor = package.descriptor();
    unsigned int const trackCount = package.tracksCount();
    if (MultipleDescriptor * multiple = metadataSetAs<MultipleDescriptor>(descriptor))
    {
        for (unsigned int i = 0, n = multiple->subDescriptorUIDsCount(); i < n; ++i)
        {
            FileDescriptor * sub = metadataSetAs<FileDescriptor>(multiple->subDescriptorUID(i));
            if (describesTrack(sub, trackID, trackCount))
                return sub;
        }
        return nullptr;
    }
    FileDescriptor * file = metadataSetAs<FileDescriptor>(descriptor);
    return describesTrack(file, trackID, trackCount) ? file : nullptr;
}

Types::UniversalLabel const * essenceULOfTrack(SourcePackage const & package, TimelineTrack const * track)
{
    Types::UInt32 const * trackID = track ? track->trackID() : nullptr;
    if (!trackID)
        return nullptr;
    FileDescriptor * descriptor = fileDescriptorForTrack(package, trackID->value());
    if (!descriptor)
    {
        Sequence const * sequence = track->sequence();
        Types::UniversalLabel const * dataDefinition = sequence ? sequence->dataDefinition() : nullptr;
        if (dataDefinition)
            descriptor = descriptorByDataDefinition(package, *dataDefinition);
    }
    return descriptor ? descriptor->essenceContainer() : nullptr;
}

bool trackBoundsInSeconds(TimelineTrack const * track, Templates::Rational<int64> & start, Templates::Rational<int64> & end)
{
    if (!track)
        return false;
    Sequence const * sequence = track->sequence();
    if (!sequence)
        return false;
    Types::Length const * duration = sequence->duration();
    if (!duration || duration->value() == -1)
        return false;
    Types::Position const * origin = track->origin();
    if (!origin)
        return false;
    Types::Rational const * editRate = track->editRate();
    if (!editRate || editRate->denominator() == 0)
        return false;
    Templates::Rational<int64> const rate(editRate->numerator(), editRate->denominator());
    start = Templates::Rational<int64>(origin->value()) / rate;
    end = Templates::Rational<int64>(origin->value() + duration->value()) / rate;
    return true;
}

Templates::Rational<int64> packageDurationInSeconds(GenericPackage const & package)
{
    Templates::list<TimelineTrack *> tracks;
    getAllTimelineTracks(package, tracks);
    Templates::Rational<int64> longest(0);
    for (TimelineTrack * track : tracks)
    {
        Templates::Rational<int64> start, end;
        if (trackBoundsInSeconds(track, start, end) && longest < end - start)
            longest = end - start;
    }
    return longest;
}

Utils::TimeCode packageDurationAsTimeCode(GenericPackage const & package)
{
    TimelineTrack * track = nullptr;
    TimecodeComponent * timecode = timecodeComponentOf(package, &track);
    if (!track)
    {
        Templates::list<TimelineTrack *> tracks;
        getAllTimelineTracks(package, tracks);
        track = tracks.empty() ? nullptr : tracks.front();
    }
    Types::Rational const * editRate = track ? track->editRate() : nullptr;
    if (!editRate || editRate->numerator() <= 0 || editRate->denominator() <= 0)
        return Utils::TimeCode();
    unsigned int frameRate = 0;
    bool dropFrame = false;
    if (timecode && timecode->roundedTimecodeBase())
    {
        frameRate = timecode->roundedTimecodeBase()->value();
        dropFrame = timecode->dropFrame() && timecode->dropFrame()->value();
    }
    else
        frameRate = static_cast<unsigned int>((editRate->numerator() + editRate->denominator() / 2) / editRate->denominator());
    if (frameRate == 0 || frameRate > 255)
        return Utils::TimeCode();
    Templates::Rational<int64> const frames =
        packageDurationInSeconds(package) * Templates::Rational<int64>(editRate->numerator(), editRate->denominator());
    return Utils::TimeCode(static_cast<unsigned char>(frameRate), frames.numerator() / frames.denominator(), dropFrame);
}

Utils::TimeCode startTimecode(GenericPackage const & package)
{
    TimecodeComponent * timecode = timecodeComponentOf(package);
    if (!timecode || !timecode->roundedTimecodeBase() || !timecode->startTimecode())
        return Utils::TimeCode();
    unsigned int const frameRate = timecode->roundedTimecodeBase()->value();
    if (frameRate == 0 || frameRate > 255)
        return Utils::TimeCode();
    bool const dropFrame = timecode->dropFrame() && timecode->dropFrame()->value();
    return Utils::TimeCode(static_cast<unsigned char>(frameRate), timecode->startTimecode()->value(), dropFrame);
}

TimelineTrack * createTimelineTrack(PartitionMetadata & metadata, GenericPackage & package,
                                    Types::UniversalLabel const & dataDefinition, unsigned int trackID,
                                    unsigned int trackNumber, int64 origin, Templates::Rational<int> const & editRate,
                                    int64 duration)
{
    TimelineTrack * track = createSet<TimelineTrack>(metadata, StructuralMetadataKeys::timelineTrack());
    Sequence * sequence = createSet<Sequence>(metadata, StructuralMetadataKeys::sequence());

    Types::Length const length(duration);
    sequence->dataDefinition(&dataDefinition);
    sequence->duration(&length);

    Types::UInt32 const id(trackID);
    Types::UInt32 const number(trackNumber);
    Types::Position const start(origin);
    Types::Rational const rate(editRate);
    track->trackID(&id);
    track->trackNumber(&number);
    track->origin(&start);
    track->editRate(&rate);
    track->sequence(sequence);
    package.appendTrack(track);
    return track;
}

SourceClip * addSourceClip(PartitionMetadata & metadata, Sequence * sequence, Types::UniversalLabel const & dataDefinition,
                           uint64 startPosition, int64 duration)
{
    VELLUM_STRUCTURAL_ASSERT(sequence != 0, "No sequence to add the source clip to");
    SourceClip * clip = createSet<SourceClip>(metadata, StructuralMetadataKeys::sourceClip());
    Types::Length const length(duration);
    Types::Position const start(static_cast<int64>(startPosition));
    Types::UMID32 const noPackage;
    Types::UInt32 const noTrack(0);
    clip->dataDefinition(&dataDefinition);
    clip->duration(&length);
    clip->startPosition(&start);
    clip->sourcePackageID(&noPackage);
    clip->sourceTrackID(&noTrack);
    sequence->appendStructuralComponent(clip);
    return clip;
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
