#include "Essence/Analyzers/BasicAnalyzer.h"

#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/FileDescriptor.h"
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

TrackBuilder::TrackBuilder(Metadata::PartitionMetadata & metadata, SourcePackage * package, unsigned int trackNumber,
                           unsigned int trackId, Templates::Rational<int> const & rate,
                           Templates::Rational<int> const & duration)
    : GenericContainer::MetadataBuilder(metadata, package, nullptr, trackNumber, trackId,
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
