#include "Utils/Calendar.h"

#include <cstdlib>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "Platform/Platform.h"

using Vellum::Utils::Calendar;

namespace
{
Vellum::Platform::Time date(int yearSince1900, int dayOfYear)
{
    Vellum::Platform::Time t = Vellum::Platform::Time();
    t.year = yearSince1900;
    t.dayOfYear = dayOfYear;
    return t;
}

// Sets TZ for the life of the object and puts the old value back.
class TimeZone
{
public:
    explicit TimeZone(char const * value)
    {
        char const * old = std::getenv("TZ");
        hadOld_ = old != nullptr;
        if (hadOld_)
            old_ = old;
        ::setenv("TZ", value, 1);
        ::tzset();
    }
    ~TimeZone()
    {
        if (hadOld_)
            ::setenv("TZ", old_.c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }

private:
    bool hadOld_;
    std::string old_;
};
} // namespace

TEST(CalendarTest, ModifiedJulianDate)
{
    EXPECT_EQ(15385u, Calendar::getModifiedJulianDate(date(1, 0)));
    EXPECT_EQ(15385u + 364u, Calendar::getModifiedJulianDate(date(1, 364)));
    EXPECT_EQ(51544u, Calendar::getModifiedJulianDate(date(100, 0)));  // 1 January 2000
    EXPECT_EQ(51603u, Calendar::getModifiedJulianDate(date(100, 59))); // 29 February 2000
    EXPECT_EQ(40587u, Calendar::getModifiedJulianDate(date(70, 0)));   // 1 January 1970
    EXPECT_EQ(60370u, Calendar::getModifiedJulianDate(date(124, 60))); // 1 March 2024
    EXPECT_EQ(88068u, Calendar::getModifiedJulianDate(date(199, 364))); // 31 December 2099

    // Today, from the same clock: seconds since 1970 at local midnight are whole days.
    Vellum::Platform::Time now = Vellum::Platform::utctime();
    unsigned mjd = Calendar::getModifiedJulianDate();
    std::tm parts = std::tm();
    parts.tm_year = now.year;
    parts.tm_mon = now.month;
    parts.tm_mday = now.dayOfMonth;
    unsigned expected = unsigned(40587 + ::timegm(&parts) / 86400);
    // The day may have turned between the two readings.
    EXPECT_TRUE(mjd == expected || mjd == expected + 1) << mjd << " vs " << expected;
}

TEST(CalendarTest, TimeZoneCodes)
{
    // Minutes east of UTC and their codes; offsets with no code give 57.
    int const table[][2] = {{0, 0},     {30, 10},   {60, 1},    {390, 26},  {690, 31},   {720, 18},
                            {-30, 63},  {-60, 37},  {-270, 59}, {-330, 58}, {-390, 47},  {-720, 20},
                            {-765, 50}, {-780, 19}, {45, 57},   {750, 57},  {-840, 57}};
    for (auto const & row : table)
        EXPECT_EQ(row[1], Calendar::timeZoneCode(row[0])) << row[0];

    // Through the runtime's time zone: POSIX offsets count west of UTC as positive.
    {
        TimeZone zone("XXX0:45");
        EXPECT_EQ(57, Calendar::getTimeZone());
    }
    {
        TimeZone zone("XXX5");
        EXPECT_EQ(5, Calendar::getTimeZone());
    }
    {
        TimeZone zone("XXX-5:30");
        EXPECT_EQ(58, Calendar::getTimeZone());
    }
    {
        TimeZone zone("UTC0");
        EXPECT_EQ(0, Calendar::getTimeZone());
    }
}
