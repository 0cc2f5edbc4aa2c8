#include "Utils/SMPTETimeCode.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using Vellum::int64;
using Vellum::uint64;
using Vellum::Utils::TimeCode;
using Vellum::Utils::TimeCodeExtended;

namespace
{
std::string text(TimeCode const & tc, bool showDropFrame = true, bool showFieldPhase = true)
{
    return std::string(Vellum::Utils::narrow(tc.toString(showDropFrame, showFieldPhase)).c_str());
}

// The message of the InvalidValue that f throws, or "" when it throws nothing.
template <class F>
std::string failure(F f)
{
    try
    {
        f();
    }
    catch (Vellum::Exceptions::InvalidValue const & e)
    {
        std::string what = e.whatUtf8().c_str();
        EXPECT_NE(std::string::npos, what.find("(Utils/SMPTETimeCode.cpp:")) << what;
        return Vellum::Utils::narrow(e.message()).c_str();
    }
    return "";
}
} // namespace

TEST(SMPTETimeCodeTest, Construction)
{
    TimeCode undefined;
    EXPECT_FALSE(undefined.isDefined());
    EXPECT_EQ(0, undefined.frameRate());
    EXPECT_EQ("--:--:--:--", text(undefined));

    TimeCode start(25);
    EXPECT_TRUE(start.isDefined());
    EXPECT_EQ(25, start.frameRate());
    EXPECT_FALSE(start.dropFrame());
    EXPECT_EQ("00:00:00:00", text(start));
    EXPECT_EQ(0u, start.toFrameCounter());

    TimeCode tc(25, 10, 20, 30, 24, false, false);
    EXPECT_EQ(10, tc.hours());
    EXPECT_EQ(20, tc.minutes());
    EXPECT_EQ(30, tc.seconds());
    EXPECT_EQ(24, tc.frames());
    EXPECT_EQ("10:20:30:24", text(tc));
    EXPECT_EQ(uint64(((10 * 60 + 20) * 60 + 30) * 25 + 24), tc.toFrameCounter());

    // 29.97 is carried as 30 with drop frame.
    TimeCode ntsc(30, 1, 2, 3, 4, true, false);
    EXPECT_EQ(30, ntsc.frameRate());
    EXPECT_TRUE(ntsc.dropFrame());
    EXPECT_EQ("01:02:03:04 (DF)", text(ntsc));
    EXPECT_EQ("01:02:03:04", text(ntsc, false, true));

    TimeCode copy(tc);
    copy = ntsc;
    EXPECT_EQ("01:02:03:04 (DF)", text(copy));
    copy = undefined;
    EXPECT_FALSE(copy.isDefined());

    std::ostringstream stream;
    stream << ntsc << "|" << undefined;
    EXPECT_EQ("01:02:03:04 (DF)|--:--:--:--", stream.str());
}

TEST(SMPTETimeCodeTest, ConstructionIsChecked)
{
    EXPECT_EQ("frameRate_ > 0: Invalid frameRate.", failure([] { TimeCode(0); }));
    EXPECT_EQ("frameRate_ > 0: Invalid frameRate.", failure([] { TimeCode(0, int64(5), false); }));
    EXPECT_EQ("Drop frame only allowed in 30 or 60 fps timecode and not for 25 fps timecode.",
              failure([] { TimeCode(25, int64(0), true); }));
    EXPECT_EQ("", failure([] { TimeCode(24, int64(0), true); }));

    char const fieldPhase[] =
        "this -> multiplexFactor () != 1: Field Phase value is only supported for frame rate of 60 or 50.";
    struct Row
    {
        int fps, h, m, s, f;
        bool dropFrame, fieldPhase;
        char const * failure;
    } const rows[] = {
        {0, 0, 0, 0, 0, false, false, "frameRate_ > 0: Invalid frameRate."},
        {50, 0, 0, 0, 0, true, false, "Drop frame only allowed in 30 or 60 fps timecode and not for 50 fps timecode."},
        {60, 0, 0, 0, 0, true, false, ""},
        {25, 0, 0, 0, 0, false, true, fieldPhase},
        {50, 0, 0, 0, 0, false, true, ""},
        {25, 24, 0, 0, 0, false, false, "Invalid value of 24:00:00:00 for 25 fps timecode"},
        {25, 0, 60, 0, 0, false, false, "Invalid value of 00:60:00:00 for 25 fps timecode"},
        {25, 0, 0, 60, 0, false, false, "Invalid value of 00:00:60:00 for 25 fps timecode"},
        {25, 0, 0, 0, 25, false, false, "Invalid value of 00:00:00:25 for 25 fps timecode"},
        {25, 1, 2, 3, 255, false, false, "Invalid value of 01:02:03:255 for 25 fps timecode"},
        // At 50 the frames count pairs: the limit is 25.
        {50, 0, 0, 0, 25, false, false, "Invalid value of 00:00:00:25 for 50 fps timecode"},
        {50, 0, 0, 0, 24, false, true, ""},
        // Frame numbers 0 and 1 do not exist at the start of a minute but every tenth.
        {30, 0, 1, 0, 0, true, false, "Invalid value of 00:01:00:00 for 30 fps drop frame timecode"},
        {30, 2, 59, 0, 1, true, false, "Invalid value of 02:59:00:01 for 30 fps drop frame timecode"},
        {30, 0, 10, 0, 0, true, false, ""},
        {30, 0, 1, 0, 2, true, false, ""},
        {30, 0, 1, 1, 0, true, false, ""},
        // The order of the checks: field phase first, then the ranges.
        {25, 30, 0, 0, 0, false, true, fieldPhase}};
    for (Row const & r : rows)
        EXPECT_EQ(r.failure, failure([&] {
                      TimeCode(static_cast<unsigned char>(r.fps), static_cast<unsigned char>(r.h),
                               static_cast<unsigned char>(r.m), static_cast<unsigned char>(r.s),
                               static_cast<unsigned char>(r.f), r.dropFrame, r.fieldPhase);
                  })) << r.fps << " " << r.h << ":" << r.m << ":" << r.s << ":" << r.f;
}

TEST(SMPTETimeCodeTest, SettersValidateAndKeepTheOldValueOnFailure)
{
    TimeCode tc(25, 1, 2, 3, 4, false, false);
    tc.hours(23);
    tc.minutes(59);
    tc.seconds(58);
    tc.frames(24);
    EXPECT_EQ("23:59:58:24", text(tc));
    EXPECT_EQ("Invalid value of 24:59:58:24 for 25 fps timecode", failure([&] { tc.hours(24); }));
    EXPECT_EQ("Invalid value of 23:60:58:24 for 25 fps timecode", failure([&] { tc.minutes(60); }));
    EXPECT_EQ("Invalid value of 23:59:60:24 for 25 fps timecode", failure([&] { tc.seconds(60); }));
    EXPECT_EQ("Invalid value of 23:59:58:25 for 25 fps timecode", failure([&] { tc.frames(25); }));
    EXPECT_EQ("this -> multiplexFactor () != 1: Field Phase value is only supported for frame rate of 60 or 50.",
              failure([&] { tc.fieldPhase(true); }));
    EXPECT_EQ("Drop frame only allowed in 30 or 60 fps timecode and not for 25 fps timecode.",
              failure([&] { tc.dropFrame(true); }));
    EXPECT_EQ("23:59:58:24", text(tc));
    EXPECT_FALSE(tc.fieldPhase());
    EXPECT_FALSE(tc.dropFrame());

    TimeCode fifty(50);
    fifty.fieldPhase(true);
    EXPECT_TRUE(fifty.fieldPhase());
    EXPECT_EQ("00:00:00:00.1", text(fifty));
    fifty.fieldPhase(false);
    EXPECT_EQ("00:00:00:00.0", text(fifty));

    TimeCode thirty(30, 0, 1, 5, 0, false, false);
    thirty.dropFrame(true);
    EXPECT_TRUE(thirty.dropFrame());
    EXPECT_EQ("Invalid value of 00:01:00:00 for 30 fps drop frame timecode", failure([&] { thirty.seconds(0); }));
    EXPECT_EQ(5, thirty.seconds());

    // A default time code has a rate of 0: nothing can be set.
    TimeCode undefined;
    EXPECT_EQ("Invalid value of 00:00:00:00 for 0 fps timecode", failure([&] { undefined.frames(0); }));
}

TEST(SMPTETimeCodeTest, DropFrameCheckOfSettersReadsTheStoredValues)
{
    // The drop frame test looks at the minutes and frames before the change, so a setter can let
    // a dropped frame number in...
    TimeCode tc(30, 0, 1, 0, 5, true, false);
    EXPECT_EQ("", failure([&] { tc.frames(0); }));
    EXPECT_EQ("00:01:00:00 (DF)", text(tc));
    // ...and then refuse a valid one.
    EXPECT_EQ("Invalid value of 00:01:00:05 for 30 fps drop frame timecode", failure([&] { tc.frames(5); }));
    EXPECT_EQ(0, tc.frames());

    TimeCode other(30, 0, 0, 0, 0, true, false);
    EXPECT_EQ("", failure([&] { other.minutes(1); }));
    EXPECT_EQ("00:01:00:00 (DF)", text(other));
    EXPECT_EQ("Invalid value of 00:02:00:00 for 30 fps drop frame timecode", failure([&] { other.minutes(2); }));
    EXPECT_EQ("Invalid value of 00:10:00:00 for 30 fps drop frame timecode", failure([&] { other.minutes(10); }));
    EXPECT_EQ(1, other.minutes());
    // Leaving the start of the minute clears the way again.
    other.seconds(1);
    other.minutes(10);
    other.seconds(0);
    EXPECT_EQ("00:10:00:00 (DF)", text(other));
}

TEST(SMPTETimeCodeTest, FromFrameCounterAndAdvancing)
{
    // Counting with ++ agrees with these over a whole day, below.
    struct Row
    {
        unsigned char fps;
        int64 counter;
        bool dropFrame;
        char const * text;
    } const rows[] = {{30, 1800, true, "00:01:00:02 (DF)"},          {30, 17982, true, "00:10:00:00 (DF)"},
                      {30, 17981, true, "00:09:59:29 (DF)"},         {30, 107892, true, "01:00:00:00 (DF)"},
                      {25, 3661 * 25 + 1, false, "01:01:01:01"},    {50, 1, false, "00:00:00:00.1"},
                      {50, 51, false, "00:00:01:00.1"},              {60, 3599, true, "00:00:59:29.1 (DF)"},
                      {60, 3600, true, "00:01:00:02.0 (DF)"},        {24, 0, true, "00:00:00:00 (DF)"},
                      // A day wraps round; a negative counter is no time, and never tested for drop frame.
                      {30, 107892 * 24 + 1, true, "00:00:00:01 (DF)"}, {25, 25 * 86400, false, "00:00:00:00"},
                      {25, -1, false, "--:--:--:--"},                {25, -5, true, "--:--:--:--"}};
    for (Row const & row : rows)
    {
        TimeCode tc(row.fps, row.counter, row.dropFrame);
        EXPECT_EQ(row.text, text(tc)) << row.counter;
        EXPECT_EQ(row.fps, tc.frameRate());
        if (row.counter >= 0 && row.counter < 86400 * 25)
        {
            EXPECT_EQ(uint64(row.counter), tc.toFrameCounter()) << row.text;
        }
    }
    EXPECT_EQ("00:00:00:01", text(TimeCode(50, int64(2), false), true, false));

    TimeCode plain(25, 0, 59, 59, 24, false, false);
    TimeCode before = plain++;
    EXPECT_EQ("00:59:59:24", text(before));
    EXPECT_EQ("01:00:00:01", text(++plain));
    TimeCode wrap(30, 23, 59, 59, 29, false, false);
    EXPECT_EQ("00:00:00:00", text(++wrap));
    // Not a time: nothing to advance.
    TimeCode undefined;
    ++undefined;
    EXPECT_FALSE(undefined.isDefined());
}

TEST(SMPTETimeCodeTest, Comparison)
{
    TimeCode a(25, 1, 2, 3, 4, false, false);
    TimeCode sameAtOtherRate(30, 1, 2, 3, 4, false, false);
    EXPECT_TRUE(a == sameAtOtherRate && !(a != sameAtOtherRate));
    EXPECT_FALSE(a == TimeCode(30, 1, 2, 3, 4, true, false) || a == TimeCode(25, 1, 2, 3, 5, false, false));
    EXPECT_TRUE(a != TimeCode(25, 0, 2, 3, 4, false, false));
    // The field phase does not count.
    EXPECT_TRUE(TimeCode(50, 0, 0, 0, 1, false, true) == TimeCode(50, 0, 0, 0, 1, false, false));

    TimeCode undefined, alsoUndefined(25, int64(-1), false);
    EXPECT_TRUE(undefined == alsoUndefined && TimeCode(25) != undefined);
    EXPECT_FALSE(undefined == TimeCode(25) || TimeCode(25) == undefined);

    EXPECT_TRUE(TimeCode(25, 0, 0, 0, 1, false, false) < TimeCode(25, 0, 0, 1, 0, false, false));
    EXPECT_TRUE(TimeCode(25, 0, 59, 59, 24, false, false) < TimeCode(25, 1, 0, 0, 0, false, false));
    EXPECT_FALSE(TimeCode(25, 1, 0, 0, 0, false, false) < TimeCode(25, 0, 59, 59, 24, false, false));
    EXPECT_FALSE(a < sameAtOtherRate);
    EXPECT_TRUE(TimeCode(25, 0, 1, 0, 0, false, false) < TimeCode(25, 0, 2, 0, 0, false, false));
}

TEST(SMPTETimeCodeTest, Extended)
{
    TimeCodeExtended::BinaryGroups groups;
    EXPECT_EQ(0, groups.group[10]);
    groups.group[0] = 1;
    groups.group[10] = 0xF;

    TimeCodeExtended tc(25, 1, 2, 3, 4, false, false, groups, true);
    EXPECT_EQ("01:02:03:04", text(tc));
    EXPECT_TRUE(tc.colorFrame());
    EXPECT_TRUE(tc.binaryGroups() == groups);

    // The extras count in the comparison, and copies are independent.
    TimeCodeExtended copy(tc);
    copy.colorFrame(false);
    EXPECT_FALSE(copy == tc);
    EXPECT_TRUE(tc.colorFrame());
    copy.colorFrame(true);
    TimeCodeExtended::BinaryGroups other = groups;
    other.group[5] = 3;
    copy.binaryGroups(other);
    EXPECT_TRUE(copy != tc);
    EXPECT_EQ(0, tc.binaryGroups().group[5]);
    copy = tc;
    EXPECT_TRUE(copy == tc);

    TimeCodeExtended before = copy++;
    EXPECT_EQ("01:02:03:04", text(before));
    EXPECT_EQ("01:02:03:06", text(++copy));
    EXPECT_TRUE(copy.binaryGroups() == groups);

    TimeCodeExtended fromCounter(30, int64(1800), true, groups, false);
    EXPECT_EQ("00:01:00:02 (DF)", text(fromCounter));
    TimeCodeExtended fromPlain(TimeCode(30, 0, 0, 1, 0, false, false), groups, true);
    EXPECT_EQ(30u, fromPlain.toFrameCounter());
    EXPECT_TRUE(fromPlain.colorFrame());
    EXPECT_EQ("00:00:00:00.0", text(TimeCodeExtended(60)));
    EXPECT_FALSE(TimeCodeExtended().isDefined());
    EXPECT_EQ("Drop frame only allowed in 30 or 60 fps timecode and not for 25 fps timecode.",
              failure([&] { TimeCodeExtended(25, int64(0), true, groups, false); }));

    // Sliced to the plain time code, the extras do not count.
    TimeCode const & plain = tc;
    EXPECT_TRUE(plain == TimeCode(25, 1, 2, 3, 4, false, false));
}

// A whole day of frame counters at every common rate: from the counter and back, and by
// counting up one unit at a time, the two roads give the same timecode. At 50 and 60 frames
// per second a unit is one field of a frame pair.
TEST(SMPTETimeCodeTest, WholeDayAtEveryCommonRate)
{
    struct Rate
    {
        unsigned char fps;
        bool dropFrame;
    };
    // 29.97 and 59.94 travel as 30 and 60 with drop frame.
    Rate const rates[] = {{24, false}, {25, false}, {30, true}, {30, false}, {50, false}, {60, true}, {60, false}};
    for (Rate const & rate : rates)
    {
        SCOPED_TRACE(std::to_string(rate.fps) + (rate.dropFrame ? " DF" : ""));
        // A day holds 108 fewer counts an hour with drop frame, per unit of the pair.
        uint64 perDay = uint64(rate.fps) * 86400 - (rate.dropFrame ? 24 * 108 * (rate.fps / 30) : 0);
        TimeCode counted(rate.fps, 0, rate.dropFrame);
        unsigned mismatches = 0;
        for (uint64 n = 0; n < perDay && mismatches < 5; ++n)
        {
            TimeCode fromCounter(rate.fps, int64(n), rate.dropFrame);
            if (fromCounter.toFrameCounter() != n || !(fromCounter == counted) ||
                fromCounter.fieldPhase() != counted.fieldPhase())
            {
                ++mismatches;
                ADD_FAILURE() << "counter " << n << ": " << Vellum::Utils::narrow(fromCounter.toString(true, true)) << " vs "
                              << Vellum::Utils::narrow(counted.toString(true, true));
            }
            ++counted;
        }
        // The day wraps to midnight.
        EXPECT_EQ("00:00:00:00", Vellum::Utils::narrow(counted.toString(false, false)));
        EXPECT_EQ(0u, counted.toFrameCounter());
    }
}
