// The timecode track of a container's Source Package. This keeps one Timecode Component that
// starts at the primary analyzer's first time code (or the default one) and runs to the end.

#include "GenericContainer/TimecodeHandler.h"

#include "Exceptions/Exceptions.h"

#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimecodeComponent.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Types/Boolean.h"
#include "Types/Integers.h"
#include "Utils/Time.h"

namespace Vellum
{
namespace GenericContainer
{
using Metadata::Structural::TimecodeComponent;
using Templates::Rational;

struct TimecodeHandler::Impl
{
    Impl(Templates::SharedPtr<Metadata::PartitionMetadata> m, Metadata::Structural::SourcePackage * p,
         Rational<int> const & r, TimecodeInfo const & i)
        : metadata(m), package(p), rate(r), info(i), preCharge(0, 1), elapsed(0, 1), track(nullptr),
          sequence(nullptr), component(nullptr)
    {
    }

    bool generating() const { return info.generateTimecodeTrack != 0 && metadata.get() != nullptr && package != nullptr; }

    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    Metadata::Structural::SourcePackage * package;
    Rational<int> rate;
    TimecodeInfo info;
    Rational<int> preCharge;
    Utils::TimeCode start;
    Rational<int64> elapsed;
    Metadata::Structural::TimelineTrack * track;
    Metadata::Structural::Sequence * sequence;
    TimecodeComponent * component;
};

TimecodeHandler::TimecodeHandler(Templates::SharedPtr<Metadata::PartitionMetadata> metadata,
                                 Metadata::Structural::SourcePackage * package, Rational<int> const & rate,
                                 TimecodeInfo const & info)
    : impl_(new Impl(metadata, package, rate, info))
{
}

TimecodeHandler::~TimecodeHandler() {}

void TimecodeHandler::precharge(Rational<int> const & preCharge) { impl_->preCharge = preCharge; }

void TimecodeHandler::setupTimecodeTrack(Utils::TimeCode timeCode, Rational<int> const & rate,
                                         Rational<int> const & duration)
{
    if (impl_->info.generateTimecodeTrack == 0 || impl_->track != nullptr)
        return;
    int const n = rate.numerator(), d = rate.denominator();
    if (d <= 0 || (d != 1001 && d != 1))
        return;
    unsigned char const base = static_cast<unsigned char>((2 * int64(n) + d) / (2 * int64(d)));
    if (!timeCode.isDefined() && impl_->info.defaultTimecodePresent != 0)
    {
        TimecodeInfo const & i = impl_->info;
        try
        {
            timeCode = Utils::TimeCode(base, i.hours, i.minutes, i.seconds, i.frames, d == 1001, false);
        }
        catch (Exceptions::BaseException const &)
        {
            timeCode = Utils::TimeCode();
        }
    }
    if (!timeCode.isDefined())
        return;
    impl_->start = timeCode;
    impl_->elapsed = Rational<int64>(0, 1);
    createTimecodeTrack(0, rate, duration);
    if (impl_->sequence == nullptr)
        return;
    Metadata::Structural::initialize();
    impl_->component = Metadata::Structural::metadataSetAs<TimecodeComponent>(
        impl_->metadata->createMetadataSet(Metadata::Structural::StructuralMetadataKeys::timecodeComponent()));
    if (impl_->component == nullptr)
        return;
    int64 const first = int64(timeCode.toFrameCounter()) +
                        Utils::Time::convertSecondsToEditUnit(impl_->preCharge, impl_->rate);
    Types::Length const length(Utils::Time::convertSecondsToEditUnit(duration, Rational<int>(timeCode.frameRate())));
    Types::UInt16 const roundedBase(timeCode.frameRate());
    Types::Position const startTimecode(first);
    Types::Boolean const dropFrame(timeCode.dropFrame());
    impl_->component->dataDefinition(&Metadata::Structural::DataDefinitionULs::timecode12MInactive());
    impl_->component->duration(&length);
    impl_->component->roundedTimecodeBase(&roundedBase);
    impl_->component->startTimecode(&startTimecode);
    impl_->component->dropFrame(&dropFrame);
    impl_->sequence->appendStructuralComponent(impl_->component);
}

void TimecodeHandler::createTimecodeTrack(int64 origin, Rational<int> const & rate, Rational<int> const & duration)
{
    if (!impl_->generating())
        return;
    impl_->track = Metadata::Structural::createTimelineTrack(
        *impl_->metadata, *impl_->package, Metadata::Structural::DataDefinitionULs::timecode12MInactive(), 1, 0,
        origin, rate, Utils::Time::convertSecondsToEditUnit(duration, rate));
    impl_->sequence = impl_->track->sequence();
}

void TimecodeHandler::checkTimeCode(EditUnit const & unit, Rational<int> const & rate)
{
    if (impl_->info.generateTimecodeTrack == 0)
        return;
    if (impl_->track == nullptr)
        setupTimecodeTrack(unit.timeCode, rate, Rational<int>(-1, 1));
    if (impl_->start.isDefined())
        impl_->elapsed += Rational<int64>(unit.duration.numerator(), unit.duration.denominator());
}

void TimecodeHandler::updateTimecodeComponent()
{
    if (impl_->component == nullptr)
        return;
    Types::Length const length(Utils::Time::convertSecondsToEditUnit(impl_->elapsed, impl_->rate));
    impl_->component->duration(&length);
}

void TimecodeHandler::updateTimecodeSequenceDuration()
{
    if (impl_->sequence == nullptr)
        return;
    Types::Length const length(Utils::Time::convertSecondsToEditUnit(impl_->elapsed, impl_->rate));
    impl_->sequence->duration(&length);
}

bool TimecodeHandler::constantTimecode() const { return false; }
} // namespace GenericContainer
} // namespace Vellum
