// A DMS-1 clip framework on a descriptive metadata track beside the track it describes.

#include "Metadata/DMS1/ClipFramework.h"

#include "Metadata/DMS1/DMS1MetadataKeys.h"
#include "Metadata/DMS1/DMS1MetadataULs.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/Accessors.h"
#include "Metadata/Structural/DMSegment.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/GenericPackage.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/StructuralAssert.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Types/ISO7String.h"
#include "Types/Integers.h"
#include "Types/UMID.h"
#include "Types/UTF16String.h"

namespace Vellum
{
namespace Metadata
{
namespace DMS1
{
using namespace Structural;

namespace
{
GenericPackage * packageOf(PartitionMetadata & metadata, TimelineTrack * track)
{
    Templates::vector<MetadataSet *> parents;
    metadata.parentSets(track, parents);
    for (MetadataSet * parent : parents)
        if (GenericPackage * package = metadataSetAs<GenericPackage>(parent))
            return package;
    return nullptr;
}

unsigned int nextTrackID(GenericPackage const & package)
{
    unsigned int highest = 0;
    for (unsigned int i = 0, n = package.tracksCount(); i < n; ++i)
    {
        Track const * track = package.track(i);
        Types::UInt32 const * id = track ? track->trackID() : nullptr;
        if (id && id->value() > highest)
            highest = id->value();
    }
    return highest + 1;
}
} // namespace

MetadataSet * createClipFramework(PartitionMetadata & metadata, TimelineTrack * track,
                                  Templates::basic_string<char> const & clipNumber, ClipFrameworkClipKind kind,
                                  Types::UMID64 const * extendedClipID)
{
    VELLUM_STRUCTURAL_ASSERT(track != 0, "No track to describe");
    initialize();
    GenericPackage * package = packageOf(metadata, track);
    VELLUM_STRUCTURAL_ASSERT(package != 0, "The track belongs to no package");

    MetadataSet * framework = metadata.createMetadataSet(DMS1MetadataKeys::clipFramework());
    Types::UTF16String const kindText(clipKindToWString(kind).c_str());
    Types::ISO7String const number(clipNumber.c_str());
    Accessors::setValue(*framework, DMS1MetadataULs::clipKind(), &kindText);
    Accessors::setValue(*framework, DMS1MetadataULs::clipNumber(), &number);
    if (extendedClipID)
        Accessors::setValue(*framework, DMS1MetadataULs::extendedClipID(), extendedClipID);

    Sequence const * described = track->sequence();
    Types::Length const * length = described ? described->duration() : nullptr;
    int64 const duration = length ? length->value() : -1;
    Types::Position const * origin = track->origin();
    Types::Rational const * editRate = track->editRate();
    Templates::Rational<int> const rate =
        editRate ? Templates::Rational<int>(editRate->numerator(), editRate->denominator()) : Templates::Rational<int>(0);

    TimelineTrack * dmTrack =
        createTimelineTrack(metadata, *package, DataDefinitionULs::descriptiveMetadata(), nextTrackID(*package), 0,
                            origin ? origin->value() : 0, rate, duration);

    DMSegment * segment = metadataSetAs<DMSegment>(metadata.createMetadataSet(StructuralMetadataKeys::dmSegment()));
    VELLUM_STRUCTURAL_ASSERT(segment != 0, "The metadata set factory made a set of another class");
    Types::Length const segmentLength(duration);
    Types::Position const start(0);
    segment->dataDefinition(&DataDefinitionULs::descriptiveMetadata());
    segment->duration(&segmentLength);
    segment->eventStartPosition(&start);
    segment->dmFramework(framework);
    if (Types::UInt32 const * id = track->trackID())
        segment->appendDMSegmentTrackID(*id);
    dmTrack->sequence()->appendStructuralComponent(segment);
    return framework;
}
} // namespace DMS1
} // namespace Metadata
} // namespace Vellum
