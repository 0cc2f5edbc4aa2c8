#include "Essence/Analyzers/BasicAnalyzer.h"

#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/FileDescriptor.h"
#include "Metadata/Structural/GenericPictureEssenceDescriptor.h"
#include "Metadata/Structural/MultipleDescriptor.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Types/Integers.h"
#include "Types/Rational.h"

namespace Vellum
{
namespace Essence
{
namespace Analyzers
{
using namespace Metadata::Structural;

namespace
{
// The multiple descriptor that a multiplexer of several streams gave the package, if any: the
// descriptors of the tracks go under it.
MultipleDescriptor * multipleDescriptorOf(SourcePackage * package)
{
    return package != nullptr ? Metadata::Structural::metadataSetAs<MultipleDescriptor>(package->descriptor()) : nullptr;
}

// The first active lines of each field by the picture's stored height, for a descriptor that
// has none: 625 and 525 line systems, 1080 and 720 line pictures; progressive pictures give 0
// for the second field.
void defaultLineMap(GenericPictureEssenceDescriptor & picture)
{
    if (picture.videoLineMapCount() > 0 || picture.storedHeight() == nullptr)
        return;
    bool const progressive = picture.frameLayout() != nullptr && picture.frameLayout()->value() == 0;
    uint32 const height = picture.storedHeight()->value();
    int first = 1, second = 0;
    if (height == 576 || height == 608 || height == 288 || height == 304)
        first = 23, second = 336;
    else if (height == 480 || height == 486 || height == 512 || height == 240 || height == 256)
        first = 21, second = 283;
    else if (height == 1080 || height == 540)
        first = 21, second = 584;
    else if (height == 720)
        first = 26;
    picture.appendVideoLineMap(Types::Int32(first));
    picture.appendVideoLineMap(Types::Int32(progressive ? 0 : second));
}
} // namespace

TrackBuilder::TrackBuilder(Metadata::PartitionMetadata & metadata, SourcePackage * package, unsigned int trackNumber,
                           unsigned int trackId, Templates::Rational<int> const & rate,
                           Templates::Rational<int> const & duration)
    : GenericContainer::MetadataBuilder(metadata, package, multipleDescriptorOf(package), trackNumber, trackId,
                                        Templates::Rational<int>(0, 1), duration),
      descriptor_(nullptr)
{
    editRate_ = rate;
}

void TrackBuilder::describe(Types::UniversalLabel const & dataDefinition, FileDescriptor & descriptor,
                            Types::UniversalLabel const & containerLabel)
{
    TimelineTrack * track = createEssenceTrack(dataDefinition, trackNumber_);
    if (dataDefinition == DataDefinitionULs::picture())
        pictureTrack_ = track;
    else
        soundTrack_ = track;
    Types::Rational const rate(editRate_);
    Types::UInt32 const linked(trackId_);
    descriptor.sampleRate(&rate);
    descriptor.essenceContainer(&containerLabel);
    descriptor.linkedTrackID(&linked);
    if (GenericPictureEssenceDescriptor * picture = metadataSetAs<GenericPictureEssenceDescriptor>(&descriptor))
        defaultLineMap(*picture);
    setDescriptorToPackage(&descriptor);
    descriptor_ = &descriptor;
}

void TrackBuilder::finish(int64 units)
{
    currentPosition_ = units - 1;
    MetadataBuilder::finish();
    if (descriptor_ != nullptr)
    {
        Types::Length const length(units);
        descriptor_->containerDuration(&length);
    }
}

Types::UniversalLabel label(unsigned char const (&bytes)[16])
{
    return Types::UniversalLabel(bytes);
}
} // namespace Analyzers
} // namespace Essence
} // namespace Vellum
