#pragma once
// The time code options of a container: a default start time code, whether it overrides the
// analyzers' own, whether breaks are ignored, and whether a timecode track is made at all.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace GenericContainer
{
struct TimecodeInfo
{
    VELLUM_CLASS_ALLOCATION

    TimecodeInfo()
        : defaultTimecodePresent(0), hours(0), minutes(0), seconds(0), frames(0), forceDefaultTimecode(0),
          suppressTimecodeDiscontinuities(0), generateTimecodeTrack(1)
    {
    }

    unsigned char defaultTimecodePresent;
    unsigned char hours;
    unsigned char minutes;
    unsigned char seconds;
    unsigned char frames;
    // The default replaces the analyzers' time code.
    unsigned char forceDefaultTimecode;
    unsigned char suppressTimecodeDiscontinuities;
    unsigned char generateTimecodeTrack;
};
} // namespace GenericContainer
} // namespace Vellum
