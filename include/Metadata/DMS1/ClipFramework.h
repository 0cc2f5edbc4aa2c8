#pragma once
// A DMS-1 clip framework over a track of a package.

#include "Metadata/DMS1/ClipFrameworkClipKind.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Types
{
class UMID64;
} // namespace Types

namespace Metadata
{
class MetadataSet;
class PartitionMetadata;

namespace Structural
{
class TimelineTrack;
} // namespace Structural

namespace DMS1
{
// Builds a clip framework (clip number, the text of `kind` and, if given, the extended clip
// ID) and describes `track` with it: a new descriptive metadata timeline track in the track's
// package, at the track's edit rate and origin, whose sequence holds one DM segment over the
// track's duration that refers to the framework and names the track. Returns the framework.
// A track that belongs to no package ends the process with an assertion.
MetadataSet * createClipFramework(PartitionMetadata & metadata, Structural::TimelineTrack * track,
                                  Templates::basic_string<char> const & clipNumber, ClipFrameworkClipKind kind,
                                  Types::UMID64 const * extendedClipID = nullptr);
} // namespace DMS1
} // namespace Metadata
} // namespace Vellum
