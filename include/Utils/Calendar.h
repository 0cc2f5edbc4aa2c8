#pragma once
// Calendar values written into system items and identifiers.

#include "Platform/Platform.h"

namespace Vellum
{
namespace Utils
{
class Calendar
{
public:
    // Today's Modified Julian Date, from the clock that Platform::utctime() reads. Exact from
    // 1901 to 2099.
    static unsigned int getModifiedJulianDate();
    // The Modified Julian Date of a broken-down time.
    static unsigned int getModifiedJulianDate(Platform::Time const & time);

    // The SMPTE 12M code of the current time zone.
    static unsigned char getTimeZone();
    // The SMPTE 12M code of an offset in minutes west of UTC; 57 for an offset without a code.
    static unsigned char timeZoneCode(int minutesWest);

private:
    Calendar();
};
} // namespace Utils
} // namespace Vellum
