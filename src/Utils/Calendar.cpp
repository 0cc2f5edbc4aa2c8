#include "Utils/Calendar.h"

namespace Vellum
{
namespace Utils
{
namespace
{
struct ZoneCode
{
    int minutesWest;
    unsigned char code;
};

ZoneCode const zoneCodes[] = {
    {0, 0},     {30, 10},   {60, 1},    {90, 11},   {120, 2},   {150, 12},  {180, 3},   {210, 13},
    {240, 4},   {270, 14},  {300, 5},   {330, 15},  {360, 6},   {390, 26},  {420, 7},   {450, 27},
    {480, 8},   {510, 28},  {540, 9},   {570, 29},  {600, 16},  {630, 30},  {660, 17},  {690, 31},
    {720, 18},  {-30, 63},  {-60, 37},  {-90, 62},  {-120, 36}, {-150, 61}, {-180, 35}, {-210, 60},
    {-240, 34}, {-270, 59}, {-300, 33}, {-330, 58}, {-360, 32}, {-390, 47}, {-420, 25}, {-450, 46},
    {-480, 24}, {-510, 45}, {-540, 23}, {-570, 44}, {-600, 22}, {-630, 43}, {-660, 21}, {-690, 42},
    {-720, 20}, {-765, 50}, {-780, 19}};

// The code of an offset that is not in the table.
unsigned char const undefinedZone = 57;
} // namespace

unsigned int Calendar::getModifiedJulianDate()
{
    return getModifiedJulianDate(Platform::utctime());
}

unsigned int Calendar::getModifiedJulianDate(Platform::Time const & time)
{
    // Whole four-year cycles since 1901, the years of the current cycle, the day in the year;
    // 15385 is 1 January 1901.
    int64 y = int64(time.year) - 1;
    int64 days = (y & 3) * 365 + (y >> 2) * 1461 + time.dayOfYear + 15385;
    return static_cast<unsigned int>(days);
}

unsigned char Calendar::getTimeZone()
{
    return timeZoneCode(Platform::getTimezone());
}

unsigned char Calendar::timeZoneCode(int minutesWest)
{
    for (ZoneCode const & zone : zoneCodes)
        if (zone.minutesWest == minutesWest)
            return zone.code;
    return undefinedZone;
}
} // namespace Utils
} // namespace Vellum
