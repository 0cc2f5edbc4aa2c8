// The kind of a track by the data definition of its sequence.

#include "Metadata/Structural/SubclassHelpers.h"

#include "Exceptions/Exceptions.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimecodeComponent.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Metadata/Structural/Accessors.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace
{
Types::UniversalLabel const * dataDefinitionOf(Track const * track)
{
    Sequence const * sequence = track ? track->sequence() : nullptr;
    return sequence ? sequence->dataDefinition() : nullptr;
}
} // namespace

bool isEssenceDataDefinition(Types::UniversalLabel const & label)
{
    return label == DataDefinitionULs::picture() || label == DataDefinitionULs::audio() ||
           label == DataDefinitionULs::data();
}

bool isTimecodeDataDefinition(Types::UniversalLabel const & label)
{
    return label == DataDefinitionULs::timecode12MInactive() || label == DataDefinitionULs::timecode12MActive() ||
           label == DataDefinitionULs::timecode309M();
}

bool isEssenceTrack(Track const * track)
{
    Types::UniversalLabel const * label = dataDefinitionOf(track);
    return label && isEssenceDataDefinition(*label);
}

bool isTimeCodeTrack(Track const * track)
{
    Types::UniversalLabel const * label = dataDefinitionOf(track);
    return label && isTimecodeDataDefinition(*label);
}

bool isDropFrame(TimelineTrack const * track)
{
    Sequence const * sequence = track ? track->sequence() : nullptr;
    if (!sequence)
        return false;
    for (unsigned int i = 0, n = sequence->structuralComponentsCount(); i < n; ++i)
    {
        TimecodeComponent const * timecode = metadataSetAs<TimecodeComponent>(sequence->structuralComponent(i));
        if (timecode)
            return timecode->dropFrame() && timecode->dropFrame()->value();
    }
    return false;
}

void setReferencedMetadataSet(MetadataSet * holder, Types::UniversalLabel const & label, MetadataSet const * target)
{
    if (!holder)
        return;
    try
    {
        Accessors::setTarget(*holder, label, target);
    }
    catch (Exceptions::NotFound const &)
    {
        // The holder's description has no such element.
    }
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
