// Material Packages, their tracks and clips, and the durations that follow from the sources.

#include "OPBuilders/TrackProxy_impl.h"

#include <limits>

#include "Metadata/PartitionMetadataSupport.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Types/Boolean.h"
#include "Types/Factories/UID.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UMID.h"
#include "Types/UTF16String.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace OPBuilders
{
namespace S = Metadata::Structural;
typedef Templates::Rational<int64> Seconds;

namespace
{
Seconds const UNKNOWN(-1);

// Edit units of `rate` in `seconds`, rounded up; -1 for an unknown time.
int64 editUnitsUp(Seconds const & seconds, Templates::Rational<int> const & rate)
{
    if (seconds == UNKNOWN || rate.numerator() <= 0 || rate.denominator() <= 0)
        return -1;
    Seconds const units = seconds * Seconds(rate.numerator(), rate.denominator());
    int64 whole = units.numerator() / units.denominator();
    if (whole * units.denominator() < units.numerator())
        ++whole;
    return whole;
}

S::TimelineTrack * newTrack(BasicOPBuilder_impl & builder, Types::UniversalLabel const & dataDefinition,
                            Templates::wstring const & name, unsigned int trackID, int64 origin,
                            Templates::Rational<int> const * editRate, S::Sequence *& sequence)
{
    sequence = builder.create<S::Sequence>(S::StructuralMetadataKeys::sequence());
    sequence->dataDefinition(&dataDefinition);
    S::TimelineTrack * track = builder.create<S::TimelineTrack>(S::StructuralMetadataKeys::timelineTrack());
    Types::UTF16String const trackName(name.c_str());
    Types::UInt32 const id(trackID), number(0);
    Types::Position const start(origin);
    track->trackName(&trackName);
    track->trackNumber(&number);
    track->trackID(&id);
    track->origin(&start);
    if (editRate != 0)
    {
        Types::Rational const rate(*editRate);
        track->editRate(&rate);
    }
    track->sequence(sequence);
    return track;
}
} // namespace

bool isEssenceDefinition(Types::UniversalLabel const * dataDefinition)
{
    return dataDefinition != 0 &&
           (*dataDefinition == S::DataDefinitionULs::picture() || *dataDefinition == S::DataDefinitionULs::audio() ||
            *dataDefinition == S::DataDefinitionULs::data());
}

Templates::Rational<int> trackEditRate(S::TimelineTrack const & track)
{
    Types::Rational const * rate = track.editRate();
    return rate == 0 ? Templates::Rational<int>(0) : Templates::Rational<int>(rate->numerator(), rate->denominator());
}

ClipData::ClipData(BasicOPBuilder_impl & builder, S::SourcePackage * source, S::Track * track,
                   Templates::Rational<int> const & editRate)
    : ProxyBase(builder), source_(source), sourceTrack_(S::metadataSetAs<S::TimelineTrack>(track)),
      sourceSequence_(track->sequence()), editRate_(editRate), duration_(UNKNOWN), clip_(0)
{
    clip_ = builder.create<S::SourceClip>(S::StructuralMetadataKeys::sourceClip());
    clip_->sourcePackageID(source->packageUID());
    clip_->sourceTrackID(track->trackID());
    clip_->dataDefinition(sourceSequence_->dataDefinition());
}

Seconds ClipData::sourceDuration() const
{
    Templates::Rational<int> const sourceRate = trackEditRate(*sourceTrack_);
    VELLUM_METADATA_ASSERT(sourceRate.numerator() != 0, "Track edit rate is 0");
    Seconds total(0);
    for (unsigned i = 0; i < sourceSequence_->structuralComponentsCount(); ++i)
    {
        S::SourceClip const * clip = S::metadataSetAs<S::SourceClip>(sourceSequence_->structuralComponent(i));
        VELLUM_METADATA_ASSERT(clip != 0, "The sequence contains a Structural Component that is not a Source Clip.");
        Types::Length const * length = clip->duration();
        if (length == 0 || length->value() < 0)
            return UNKNOWN;
        total += Seconds(length->value()) / Seconds(sourceRate.numerator(), sourceRate.denominator());
    }
    return total;
}

void ClipData::setLength(int64 length)
{
    Types::Length const value(length);
    clip_->duration(&value);
}

// A clip over a whole track follows the track: its duration is taken again at every update, so
// that a source still being written is followed to its end.
void ClipData::update()
{
    duration_ = sourceDuration();
    Types::Position const start(0);
    clip_->startPosition(&start);
    setLength(editUnitsUp(duration_, editRate_));
    clip_->dataDefinition(sourceSequence_->dataDefinition());
}

SubClipData::SubClipData(BasicOPBuilder_impl & builder, S::SourcePackage * source, S::Track * track,
                         Templates::Rational<int> const & editRate, int64 start, Seconds const & duration)
    : ClipData(builder, source, track, editRate), start_(start)
{
    duration_ = duration;
}

void SubClipData::update()
{
    Types::Position const start(start_);
    clip_->startPosition(&start);
    setLength(editUnitsUp(duration_, editRate_));
    clip_->dataDefinition(sourceSequence_->dataDefinition());
}

TrackProxy_impl::TrackProxy_impl(BasicOPBuilder_impl & builder, S::MaterialPackage & package, unsigned int index,
                                 unsigned int number, int64 origin, Templates::Rational<int> const * editRate)
    : ProxyBase(builder), origin_(origin), number_(number), track_(0), sequence_(0),
      editRate_(editRate != 0 ? *editRate : Templates::Rational<int>(-1)), duration_(UNKNOWN)
{
    Templates::wstring const name = Utils::wide("Track ") + Utils::wide(std::to_string(number).c_str());
    track_ = newTrack(builder, Types::UniversalLabel(), name, number, origin, editRate, sequence_);
    package.addTrack(index, track_);
}

TrackProxy_impl::~TrackProxy_impl() {}

void TrackProxy_impl::takeRateAndDefinition(S::Track * track)
{
    VELLUM_METADATA_ASSERT(track != 0, "Track is null");
    S::Sequence const * seq = track->sequence();
    VELLUM_METADATA_ASSERT(seq != 0, "Track has no sequence");
    VELLUM_METADATA_ASSERT(seq->dataDefinition() != 0, "Sequence has no Data Definition");
    S::TimelineTrack const * tt = S::metadataSetAs<S::TimelineTrack>(track);
    VELLUM_METADATA_ASSERT(tt != 0, "Only Timeline Tracks are allowed");
    Types::Rational const * rate = tt->editRate();
    VELLUM_METADATA_ASSERT(rate != 0, "Track has no Edit Rate");
    if (editRate_ == Templates::Rational<int>(-1))
        editRate_ = Templates::Rational<int>(rate->numerator(), rate->denominator());
    Types::UniversalLabel const * dataDefinition = seq->dataDefinition();
    if (dataDefinition_ == Types::UniversalLabel())
        dataDefinition_ = *dataDefinition;
    VELLUM_METADATA_ASSERT(dataDefinition_ == *dataDefinition, "Adding tracks with different Data Definitions");
}

void TrackProxy_impl::appendClip(Templates::auto_ptr<ClipData> clip)
{
    sequence_->addStructuralComponent(sequence_->structuralComponentsCount(), clip->clip());
    clips_.push_back(std::move(clip));
    if (clips_.size() > 1)
        builder_.raiseItemComplexity(2);
}

void TrackProxy_impl::addClip(S::SourcePackage * source, S::Track * track)
{
    takeRateAndDefinition(track);
    appendClip(Templates::auto_ptr<ClipData>(new ClipData(builder_, source, track, editRate_)));
}

void TrackProxy_impl::addSubClip(S::SourcePackage * source, S::Track * track, int64 position, int64 duration)
{
    takeRateAndDefinition(track);
    Types::Length const * whole = track->sequence()->duration();
    if (position == 0 && whole != 0 && whole->value() == duration)
    {
        addClip(source, track);
        return;
    }
    Seconds const seconds = Seconds(duration) * Seconds(editRate_.denominator(), editRate_.numerator());
    appendClip(Templates::auto_ptr<ClipData>(new SubClipData(builder_, source, track, editRate_, position, seconds)));
    builder_.raiseItemComplexity(3);
}

void TrackProxy_impl::update()
{
    if (clips_.empty())
        return;
    duration_ = Seconds(0);
    for (Templates::auto_ptr<ClipData> const & clip : clips_)
    {
        clip->update();
        if (clip->duration() == UNKNOWN)
            duration_ = UNKNOWN;
        else if (duration_ != UNKNOWN)
            duration_ += clip->duration();
    }
    VELLUM_METADATA_ASSERT(sequence_ != 0, "Track has no sequence");
    sequence_->dataDefinition(&dataDefinition_);
    VELLUM_METADATA_ASSERT(sequence_->dataDefinition() != 0, "Sequence has no data definition");
    Types::Rational const rate(editRate_);
    track_->editRate(&rate);
    VELLUM_METADATA_ASSERT(track_->editRate() != 0, "Track has no edit rate");
    Types::Length const length(editUnitsUp(duration_, editRate_));
    sequence_->duration(&length);
}

MaterialPackageProxy_impl::MaterialPackageProxy_impl(BasicOPBuilder_impl & builder, Utils::TimeCode const & start,
                                                     Templates::Rational<int> const & editRate,
                                                     Types::UMID32 const * packageUID)
    : ProxyBase(builder), package_(0), editRate_(editRate), start_(start), timecodeTrack_(0), timecodeSequence_(0),
      timecodeComponent_(0)
{
    S::TimecodeComponent * component = builder.create<S::TimecodeComponent>(S::StructuralMetadataKeys::timecodeComponent());
    component->dataDefinition(&S::DataDefinitionULs::timecode12MInactive());
    Types::UInt16 const base(start.frameRate());
    Types::Boolean const drop(start.dropFrame());
    Types::Position const first(start.isDefined() ? static_cast<int64>(start.toFrameCounter()) : 0);
    component->roundedTimecodeBase(&base);
    component->dropFrame(&drop);
    component->startTimecode(&first);
    timecodeComponent_ = component;

    timecodeTrack_ = newTrack(builder, S::DataDefinitionULs::timecode12MInactive(), Utils::wide("Timecode"), 0, 0,
                              &editRate, timecodeSequence_);
    timecodeSequence_->appendStructuralComponent(component);

    package_ = builder.create<S::MaterialPackage>(S::StructuralMetadataKeys::materialPackage());
    Types::UMID32 const uid = packageUID != 0 ? *packageUID
                                              : Types::Factories::UID::generateBasicUMID(
                                                    Types::Factories::UID::MaterialType(13),
                                                    Types::Factories::UID::MNMI_SMPTE, Types::Factories::UID::INMI_PRS16);
    package_->packageUID(&uid);
    package_->packageCreationDate(&builder.date);
    package_->packageModifiedDate(&builder.date);
    package_->appendTrack(timecodeTrack_);
    builder.contentStorage->appendPackage(package_);
}

MaterialPackageProxy_impl::~MaterialPackageProxy_impl() {}

// Tracks stand behind the time code track, in the order they were made.
TrackProxy * MaterialPackageProxy_impl::createTrack(int64 origin, Templates::Rational<int> const * editRate)
{
    unsigned int const number = static_cast<unsigned int>(tracks_.size()) + 1;
    unsigned int const index = package_->tracksCount() < number ? package_->tracksCount() : number;
    tracks_.push_back(Templates::auto_ptr<TrackProxy_impl>(
        new TrackProxy_impl(builder_, *package_, index, number, origin, editRate)));
    return tracks_.back().get();
}

void MaterialPackageProxy_impl::createTracks(TrackProxies & out, S::SourcePackage * source, S::GenericPackage & package)
{
    for (unsigned i = 0; i < package.tracksCount(); ++i)
    {
        S::Track * track = package.track(i);
        S::Sequence const * sequence = track != 0 ? track->sequence() : 0;
        if (sequence == 0 || !isEssenceDefinition(sequence->dataDefinition()))
            continue;
        TrackProxy * proxy = createTrack(0, 0);
        proxy->addClip(source, track);
        out.push_back(proxy);
    }
}

void MaterialPackageProxy_impl::update()
{
    Seconds start(std::numeric_limits<int64>::max()), end(std::numeric_limits<int64>::min());
    bool unknown = tracks_.empty();
    for (Templates::auto_ptr<TrackProxy_impl> const & track : tracks_)
    {
        track->update();
        Templates::Rational<int> const rate = track->editRate();
        if (track->duration() == UNKNOWN || rate.numerator() <= 0)
        {
            unknown = true;
            continue;
        }
        Seconds const origin = Seconds(track->origin()) * Seconds(rate.denominator(), rate.numerator());
        start = origin < start ? origin : start;
        end = origin + track->duration() > end ? origin + track->duration() : end;
    }
    Types::Length const length(unknown ? -1 : editUnitsUp(end - start, editRate_));
    timecodeSequence_->duration(&length);
    timecodeComponent_->duration(&length);
}
} // namespace OPBuilders
} // namespace Vellum
