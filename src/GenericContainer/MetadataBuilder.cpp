// Essence tracks, descriptors and durations of an analyzer's part of a Source Package.

#include "GenericContainer/MetadataBuilder.h"

#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/FileDescriptor.h"
#include "Metadata/Structural/MultipleDescriptor.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourceClip.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/SubclassHelpers.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Types/Integers.h"

namespace Vellum
{
namespace GenericContainer
{
using namespace Metadata::Structural;
using Templates::Rational;

MetadataBuilder::MetadataBuilder(Metadata::PartitionMetadata & metadata, SourcePackage * package,
                                 MultipleDescriptor * multipleDescriptor, unsigned int trackNumber,
                                 unsigned int trackId, Rational<int> const & preCharge,
                                 Rational<int> const & duration)
    : metadata_(metadata), package_(package), multipleDescriptor_(multipleDescriptor), trackNumber_(trackNumber),
      trackId_(trackId), preface_(findPreface(metadata)), pictureTrack_(nullptr), soundTrack_(nullptr),
      dataTrack_(nullptr), currentPosition_(0), editRate_(1, 1), finished_(false), tracksMade_(0),
      preCharge_(preCharge), duration_(duration)
{
}

MetadataBuilder::~MetadataBuilder() {}

void MetadataBuilder::finish()
{
    if (finished_)
        return;
    finished_ = true;
    updateEssenceTracks();
}

void MetadataBuilder::setDescriptorToPackage(FileDescriptor * descriptor)
{
    if (multipleDescriptor_ != nullptr)
    {
        multipleDescriptor_->appendSubDescriptorUID(descriptor);
        return;
    }
    if (package_ == nullptr)
        return;
    // Setting the reference replaces the one that was there.
    package_->descriptor(descriptor);
}

int64 MetadataBuilder::convertSecondsToEditUnit(Rational<int> const & seconds, Rational<int> const & rate)
{
    if (seconds.numerator() < 0)
        return -1;
    int64 const denominator = int64(rate.denominator()) * seconds.denominator();
    if (denominator == 0)
        return -1;
    return (int64(rate.numerator()) * seconds.numerator()) / denominator;
}

TimelineTrack * MetadataBuilder::createEssenceTrack(Types::UniversalLabel const & dataDefinition,
                                                    unsigned int trackNumber)
{
    if (package_ == nullptr)
        return nullptr;
    int64 const length = convertSecondsToEditUnit(duration_, editRate_);
    TimelineTrack * track = createTimelineTrack(metadata_, *package_, dataDefinition, trackId_ + tracksMade_,
                                                trackNumber, currentPosition_, editRate_, length);
    addSourceClip(metadata_, track->sequence(), dataDefinition, uint64(currentPosition_), length);
    ++tracksMade_;
    return track;
}

void MetadataBuilder::updateEssenceTrack(TimelineTrack * track)
{
    if (track == nullptr || !isEssenceTrack(track))
        return;
    Sequence * sequence = track->sequence();
    int64 const preCharge = convertSecondsToEditUnit(preCharge_, editRate_);
    int64 total = currentPosition_ + 1;
    if (Types::Length const * duration = sequence->duration())
    {
        total = duration->value();
        if (total < 0)
            total = currentPosition_ - preCharge + 1;
        Types::Length const length(total);
        sequence->duration(&length);
    }
    if (SourceClip * clip = getLastSourceClip(sequence))
    {
        Types::Position const * start = clip->startPosition();
        Types::Length const length(total - (start != nullptr ? start->value() : 0));
        clip->duration(&length);
    }
}

void MetadataBuilder::updateEssenceTracks()
{
    if (package_ == nullptr)
        return;
    updateEssenceTrack(pictureTrack_);
    updateEssenceTrack(soundTrack_);
    updateEssenceTrack(dataTrack_);
}

SourceClip * MetadataBuilder::getLastSourceClip(Sequence * sequence)
{
    if (sequence == nullptr || sequence->structuralComponentsCount() == 0)
        return nullptr;
    return metadataSetAs<SourceClip>(sequence->structuralComponent(sequence->structuralComponentsCount() - 1));
}
} // namespace GenericContainer
} // namespace Vellum
