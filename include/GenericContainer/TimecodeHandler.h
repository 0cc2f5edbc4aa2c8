#pragma once
// Keeps the timecode track of a container's Source Package: follows the time code of the primary
// analyzer's units and closes the track's durations at the end. Every worker has one.

#include "GenericContainer/EditUnit.h"
#include "GenericContainer/TimecodeInfo.h"
#include "Metadata/PartitionMetadata.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Rational.h"
#include "Templates/SharedPtr.h"
#include "Utils/SMPTETimeCode.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
class SourcePackage;
}
}

namespace GenericContainer
{
class TimecodeHandler
{
public:
    VELLUM_CLASS_ALLOCATION

    TimecodeHandler(Templates::SharedPtr<Metadata::PartitionMetadata> metadata,
                    Metadata::Structural::SourcePackage * package, Templates::Rational<int> const & rate,
                    TimecodeInfo const & info);
    ~TimecodeHandler();

    // The pre-charge of the container, in seconds.
    void precharge(Templates::Rational<int> const & preCharge);
    // Starts the track at `timeCode` (or the default); `duration` in seconds, -1/1 unknown.
    void setupTimecodeTrack(Utils::TimeCode timeCode, Templates::Rational<int> const & rate,
                            Templates::Rational<int> const & duration);
    void createTimecodeTrack(int64 origin, Templates::Rational<int> const & rate,
                             Templates::Rational<int> const & duration);
    // Called for each unit of the primary analyzer.
    void checkTimeCode(EditUnit const & unit, Templates::Rational<int> const & rate);
    // Closes the open component.
    void updateTimecodeComponent();
    void updateTimecodeSequenceDuration();
    // The time code stopped following the units: durations are unknown.
    bool constantTimecode() const;

private:
    TimecodeHandler(TimecodeHandler const &) = delete;
    TimecodeHandler & operator=(TimecodeHandler const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace GenericContainer
} // namespace Vellum
