#pragma once
// The helper with which an analyzer describes itself in setMetadata: it makes the essence tracks
// of the Source Package, attaches the descriptor and, at the end, brings durations up to date.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Rational.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
class PartitionMetadata;
namespace Structural
{
class FileDescriptor;
class MultipleDescriptor;
class Preface;
class Sequence;
class SourceClip;
class SourcePackage;
class TimelineTrack;
}
}

namespace GenericContainer
{
class MetadataBuilder
{
public:
    VELLUM_CLASS_ALLOCATION

    // `preCharge` and `duration` in seconds; -1/1 for an unknown duration.
    MetadataBuilder(Metadata::PartitionMetadata & metadata, Metadata::Structural::SourcePackage * package,
                    Metadata::Structural::MultipleDescriptor * multipleDescriptor, unsigned int trackNumber,
                    unsigned int trackId, Templates::Rational<int> const & preCharge,
                    Templates::Rational<int> const & duration);
    virtual ~MetadataBuilder();

    // Once: brings the picture, sound and data tracks up to date.
    virtual void finish();

    Metadata::PartitionMetadata & partitionMetadata() const { return metadata_; }
    Metadata::Structural::SourcePackage * sourcePackage() const { return package_; }
    unsigned int trackNumber() const { return trackNumber_; }
    unsigned int trackId() const { return trackId_; }
    // The package's descriptor, or one more sub descriptor of the multiple descriptor.
    void setDescriptorToPackage(Metadata::Structural::FileDescriptor * descriptor);

protected:
    // A timeline track with one source clip, on the next free ID of this builder, from the
    // current position at the builder's edit rate.
    Metadata::Structural::TimelineTrack * createEssenceTrack(Types::UniversalLabel const & dataDefinition,
                                                             unsigned int trackNumber);
    // Sets the duration of the track's sequence and of its last source clip.
    void updateEssenceTrack(Metadata::Structural::TimelineTrack * track);
    void updateEssenceTracks();
    static Metadata::Structural::SourceClip * getLastSourceClip(Metadata::Structural::Sequence * sequence);
    // Whole edit units in `seconds` at `rate`; -1 for a negative duration.
    static int64 convertSecondsToEditUnit(Templates::Rational<int> const & seconds,
                                          Templates::Rational<int> const & rate);

    Metadata::PartitionMetadata & metadata_;
    Metadata::Structural::SourcePackage * package_;
    Metadata::Structural::MultipleDescriptor * multipleDescriptor_;
    unsigned int trackNumber_;
    unsigned int trackId_;
    Metadata::Structural::Preface * preface_;
    // Kept by the derived builder; null when unused.
    Metadata::Structural::TimelineTrack * pictureTrack_;
    Metadata::Structural::TimelineTrack * soundTrack_;
    Metadata::Structural::TimelineTrack * dataTrack_;
    // In edit units.
    int64 currentPosition_;
    Templates::Rational<int> editRate_;
    bool finished_;
    unsigned int tracksMade_;
    Templates::Rational<int> preCharge_;
    Templates::Rational<int> duration_;

private:
    MetadataBuilder(MetadataBuilder const &) = delete;
    MetadataBuilder & operator=(MetadataBuilder const &) = delete;
};
} // namespace GenericContainer
} // namespace Vellum
