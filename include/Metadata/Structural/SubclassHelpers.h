#pragma once
// What kind of track a track is, by the data definition of its sequence.

#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
class MetadataSet;

namespace Structural
{
class Track;
class TimelineTrack;

// Picture, sound or data essence.
bool isEssenceDataDefinition(Types::UniversalLabel const & label);
// One of the three time code data definitions.
bool isTimecodeDataDefinition(Types::UniversalLabel const & label);
// The track has a sequence whose data definition is an essence one; false for null.
bool isEssenceTrack(Track const * track);
// The track has a sequence whose data definition is a time code one; false for null.
bool isTimeCodeTrack(Track const * track);
// The first time code component of the track's sequence says drop frame; false for null or
// without one.
bool isDropFrame(TimelineTrack const * track);

// The reference element `label` of `holder` refers to `target` (or to nothing for null). A
// holder whose description has no such label is left as it is.
void setReferencedMetadataSet(MetadataSet * holder, Types::UniversalLabel const & label, MetadataSet const * target);
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
