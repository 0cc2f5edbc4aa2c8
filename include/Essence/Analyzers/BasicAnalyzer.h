#pragma once
// What the library's analyzers of elementary streams share: the edit rate, the sizes, the element
// key bytes, and the track and descriptor that they make in setMetadata.

#include "Exceptions/Exceptions.h"
#include "GenericContainer/EssenceAnalyzer.h"
#include "GenericContainer/MetadataBuilder.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
class FileDescriptor;
}
} // namespace Metadata

namespace Essence
{
namespace Analyzers
{
// Makes one essence track of an analyzer and keeps its duration up to date.
class TrackBuilder : public GenericContainer::MetadataBuilder
{
public:
    TrackBuilder(Metadata::PartitionMetadata & metadata, Metadata::Structural::SourcePackage * package,
                 unsigned int trackNumber, unsigned int trackId, Templates::Rational<int> const & rate,
                 Templates::Rational<int> const & duration);
    // The track, a picture or a sound one by its data definition, with the descriptor of the
    // package: its essence container label, sample rate and linked track filled in.
    void describe(Types::UniversalLabel const & dataDefinition, Metadata::Structural::FileDescriptor & descriptor,
                  Types::UniversalLabel const & containerLabel);
    // Ends the track at `units` edit units, and the descriptor's container duration with it.
    void finish(int64 units);

private:
    Metadata::Structural::FileDescriptor * descriptor_;
};

// The analyzers of this library. Kind is PictureAnalyzer or SoundAnalyzer.
template <class Kind>
class BasicAnalyzer : public Kind
{
public:
    Templates::Rational<int> editRate() const override { return editRate_; }
    // The stream keeps its own rate.
    void editRate(Templates::Rational<int> const &) override {}
    uint64 maximumToSkip() const override { return maximumToSkip_; }
    void maximumToSkip(uint64 count) override { maximumToSkip_ = count; }
    bool setMetadata(Metadata::PartitionMetadata & metadata, Metadata::Structural::SourcePackage * package,
                     unsigned int trackNumber, unsigned int trackId) override
    {
        builder_.reset(new TrackBuilder(metadata, package, trackNumber, trackId, editRate_, duration_));
        Metadata::Structural::FileDescriptor * descriptor = makeDescriptor(metadata);
        builder_->describe(dataDefinition(), *descriptor, containerLabel_);
        this->customizeDescriptor(*descriptor);
        return true;
    }
    bool finalize() override
    {
        if (builder_.get() != nullptr)
            builder_->finish(int64(units_));
        return true;
    }
    Types::UniversalLabel universalLabel() const override { return containerLabel_; }
    bool isCBE() const override { return constantSize_ != 0; }
    void boundedEditUnitSize(int size) override { bound_ = size > 0 ? unsigned(size) : 0; }
    unsigned int boundedEditUnitSize() const override { return constantSize_ != 0 ? constantSize_ : bound_; }
    bool containsTemporalDependencies() const override { return false; }
    Utils::TimeCode currentTimeCode() const override { return Utils::TimeCode(); }
    unsigned char itemTypeIdentifier() const override { return itemType_; }
    unsigned char essenceElementType() const override { return elementType_; }
    unsigned int requiredKAGSize() const override { return 1; }
    bool done() override { return done_; }
    void setDuration(Templates::Rational<int> const & duration) override { duration_ = duration; }
    Templates::Rational<int> getDuration() const override { return duration_; }
    // Edit units handed out so far.
    uint64 unitCount() const { return units_; }

protected:
    BasicAnalyzer()
        : editRate_(0, 1), duration_(-1, 1), maximumToSkip_(0), constantSize_(0), bound_(0), itemType_(0),
          elementType_(0), units_(0), done_(false)
    {
    }
    // Throws InvalidValue "The edit rate is invalid" for a rate of 0 or below.
    void checkEditRate() const;
    // Ends a unit that the stream gave (`got`) as one edit unit at the analyzer's rate, or marks
    // the stream finished; gives `got`.
    bool endUnit(GenericContainer::EditUnit & unit, bool got)
    {
        if (!got)
        {
            done_ = true;
            return false;
        }
        unit.duration = Templates::Rational<int>(editRate_.denominator(), editRate_.numerator());
        unit.valid = true;
        ++units_;
        return true;
    }
    // A new descriptor of the stream in `metadata`, with the fields of its own class filled.
    virtual Metadata::Structural::FileDescriptor * makeDescriptor(Metadata::PartitionMetadata & metadata) = 0;
    virtual Types::UniversalLabel const & dataDefinition() const = 0;

    Templates::Rational<int> editRate_;
    Templates::Rational<int> duration_;
    uint64 maximumToSkip_;
    // Non-zero for a stream of constant edit units.
    unsigned int constantSize_;
    unsigned int bound_;
    Types::UniversalLabel containerLabel_;
    unsigned char itemType_;
    unsigned char elementType_;
    uint64 units_;
    bool done_;

private:
    BasicAnalyzer(BasicAnalyzer const &) = delete;
    BasicAnalyzer & operator=(BasicAnalyzer const &) = delete;

    Templates::auto_ptr<TrackBuilder> builder_;
};

template <class Kind>
void BasicAnalyzer<Kind>::checkEditRate() const
{
    THROW_UNLESS(InvalidValue, editRate_.numerator() > 0 && editRate_.denominator() > 0, "The edit rate is invalid");
}

// Item type and element type bytes of the element keys.
enum ElementKeyBytes
{
    GC_PICTURE_ITEM = 0x15,
    GC_SOUND_ITEM = 0x16,
    CP_PICTURE_ITEM = 0x05,
    MPEG_FRAME_WRAPPED = 0x05,
    D10_PICTURE = 0x01,
    VC3_FRAME_WRAPPED = 0x0C,
    JPEG2000_FRAME_WRAPPED = 0x08,
    WAVE_FRAME_WRAPPED = 0x01
};

// A label from its 16 bytes.
Types::UniversalLabel label(unsigned char const (&bytes)[16]);
} // namespace Analyzers
} // namespace Essence
} // namespace Vellum
