#pragma once
// Questions asked of a package and its tracks, and the building of timeline tracks and clips.

#include "Platform/Types.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"
#include "Types/UniversalLabel.h"
#include "Utils/SMPTETimeCode.h"

namespace Vellum
{
namespace Metadata
{
class PartitionMetadata;

namespace Structural
{
class ContentStorage;
class FileDescriptor;
class GenericPackage;
class Sequence;
class SourceClip;
class SourcePackage;
class TimelineTrack;

// What a track carries, by the data definition of its sequence (byte 7, the register version, is
// not compared).
enum TrackKind
{
    UnknownTrack,
    PictureTrack,
    SoundTrack,
    DataTrack,
    TimecodeTrack,
    DescriptiveMetadataTrack,
    OtherTrack
};
TrackKind trackKind(Types::UniversalLabel const * dataDefinition);
TrackKind trackKind(TimelineTrack const & track);

// The file package and its track that a track's first source clip names, found in the storage; the
// track itself in its own package when that is a source package. False when neither is found.
bool fileTrackOf(ContentStorage const & storage, GenericPackage & package, TimelineTrack & track,
                 SourcePackage *& filePackage, TimelineTrack *& fileTrack);

// Appends the package's timeline tracks that carry essence (picture, sound, data), in order.
void getAllEssenceTracks(GenericPackage const & package, Templates::list<TimelineTrack *> & tracks);
// Appends all of the package's timeline tracks, in order.
void getAllTimelineTracks(GenericPackage const & package, Templates::list<TimelineTrack *> & tracks);
// The first timeline track whose sequence has a time code data definition, or null.
TimelineTrack * getTimecodeTrack(GenericPackage const & package);

// The essence container label of the descriptor of the track, or null.
Types::UniversalLabel const * essenceULOfTrack(SourcePackage const & package, TimelineTrack const * track);
// The file descriptor of the package that describes the track `trackID`, or null.
FileDescriptor * fileDescriptorForTrack(SourcePackage const & package, unsigned int trackID);

// The track's origin and origin plus duration, in seconds; false when the track, its sequence,
// a duration other than -1, its origin or a usable edit rate is missing.
bool trackBoundsInSeconds(TimelineTrack const * track, Templates::Rational<int64> & start,
                          Templates::Rational<int64> & end);
// The longest span of the package's timeline tracks, in seconds; 0 without one.
Templates::Rational<int64> packageDurationInSeconds(GenericPackage const & package);
// That duration as a time code at the rate of the package's time code (or of its first track);
// undefined without one.
Utils::TimeCode packageDurationAsTimeCode(GenericPackage const & package);
// The start of the package's time code track; undefined without one.
Utils::TimeCode startTimecode(GenericPackage const & package);

// A new timeline track at the end of the package's tracks, with its sequence: the data
// definition and duration go to the sequence; ID, number, origin and edit rate to the track.
TimelineTrack * createTimelineTrack(PartitionMetadata & metadata, GenericPackage & package,
                                    Types::UniversalLabel const & dataDefinition, unsigned int trackID,
                                    unsigned int trackNumber, int64 origin, Templates::Rational<int> const & editRate,
                                    int64 duration);
// A new source clip at the end of the sequence, with that data definition, start position and
// duration, naming no source package (a null UMID and track 0). The sequence's duration is left
// as it is.
SourceClip * addSourceClip(PartitionMetadata & metadata, Sequence * sequence, Types::UniversalLabel const & dataDefinition,
                           uint64 startPosition, int64 duration);
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
