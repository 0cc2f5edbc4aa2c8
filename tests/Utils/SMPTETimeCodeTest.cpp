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
    EXPECT_TRUE(copy == tc);
    copy.frames(1);
    EXPECT_EQ(24, tc.frames());
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
    EXPECT_EQ("frameRate_ > 0: Invalid frameRate.", failure([] { TimeCode(0, 0, 0, 0, 0, false, false); }));
    EXPECT_EQ("frameRate_ > 0: Invalid frameRate.", failure([] { TimeCode(0, int64(5), false); }));

    EXPECT_EQ("Drop frame only allowed in 30 or 60 fps timecode and not for 25 fps timecode.",
              failure([] { TimeCode(25, int64(0), true); }));
    EXPECT_EQ("Drop frame only allowed in 30 or 60 fps timecode and not for 50 fps timecode.",
              failure([] { TimeCode(50, 0, 0, 0, 0, true, false); }));
    EXPECT_EQ("", failure([] { TimeCode(24, int64(0), true); }));
    EXPECT_EQ("", failure([] { TimeCode(60, 0, 0, 0, 0, true, false); }));

    EXPECT_EQ("this -> multiplexFactor () != 1: Field Phase value is only supported for frame rate of 60 or 50.",
              failure([] { TimeCode(25, 0, 0, 0, 0, false, true); }));
    EXPECT_EQ("", failure([] { TimeCode(50, 0, 0, 0, 0, false, true); }));

    EXPECT_EQ("Invalid value of 24:00:00:00 for 25 fps timecode", failure([] { TimeCode(25, 24, 0, 0, 0, false, false); }));
    EXPECT_EQ("Invalid value of 00:60:00:00 for 25 fps timecode", failure([] { TimeCode(25, 0, 60, 0, 0, false, false); }));
    EXPECT_EQ("Invalid value of 00:00:60:00 for 25 fps timecode", failure([] { TimeCode(25, 0, 0, 60, 0, false, false); }));
    EXPECT_EQ("Invalid value of 00:00:00:25 for 25 fps timecode", failure([] { TimeCode(25, 0, 0, 0, 25, false, false); }));
    EXPECT_EQ("Invalid value of 01:02:03:255 for 25 fps timecode", failure([] { TimeCode(25, 1, 2, 3, 255, false, false); }));
    // At 50 the frames count pairs: the limit is 25.
    EXPECT_EQ("Invalid value of 00:00:00:25 for 50 fps timecode", failure([] { TimeCode(50, 0, 0, 0, 25, false, false); }));
    EXPECT_EQ("", failure([] { TimeCode(50, 0, 0, 0, 24, false, true); }));

    // Frame numbers 0 and 1 do not exist at the start of a minute but every tenth.
    EXPECT_EQ("Invalid value of 00:01:00:00 for 30 fps drop frame timecode",
              failure([] { TimeCode(30, 0, 1, 0, 0, true, false); }));
    EXPECT_EQ("Invalid value of 02:59:00:01 for 30 fps drop frame timecode",
              failure([] { TimeCode(30, 2, 59, 0, 1, true, false); }));
    EXPECT_EQ("", failure([] { TimeCode(30, 0, 10, 0, 0, true, false); }));
    EXPECT_EQ("", failure([] { TimeCode(30, 0, 1, 0, 2, true, false); }));
    EXPECT_EQ("", failure([] { TimeCode(30, 0, 1, 1, 0, true, false); }));

    // The order of the checks: field phase first, then the ranges.
    EXPECT_EQ("this -> multiplexFactor () != 1: Field Phase value is only supported for frame rate of 60 or 50.",
              failure([] { TimeCode(25, 30, 0, 0, 0, false, true); }));
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

TEST(SMPTETimeCodeTest, Advancing)
{
    TimeCode tc(30, 0, 0, 59, 29, true, false);
    ++tc;
    EXPECT_EQ("00:01:00:02 (DF)", text(tc));
    EXPECT_EQ(1800u, tc.toFrameCounter());

    TimeCode decade(30, 0, 9, 59, 29, true, false);
    ++decade;
    EXPECT_EQ("00:10:00:00 (DF)", text(decade));
    EXPECT_EQ(17982u, decade.toFrameCounter());

    TimeCode wrap(30, 23, 59, 59, 29, false, false);
    ++wrap;
    EXPECT_EQ("00:00:00:00", text(wrap));

    TimeCode plain(25, 0, 59, 59, 24, false, false);
    TimeCode before = plain++;
    EXPECT_EQ("00:59:59:24", text(before));
    EXPECT_EQ("01:00:00:00", text(plain));
    EXPECT_EQ("01:00:00:01", text(++plain));

    // At 50 the field phase comes first.
    TimeCode fifty(50);
    EXPECT_EQ(0u, fifty.toFrameCounter());
    ++fifty;
    EXPECT_EQ("00:00:00:00.1", text(fifty));
    EXPECT_EQ(1u, fifty.toFrameCounter());
    ++fifty;
    EXPECT_EQ("00:00:00:01.0", text(fifty));
    EXPECT_EQ(2u, fifty.toFrameCounter());
    EXPECT_EQ("00:00:00:01", text(fifty, true, false));

    // At 60 drop frame the skip is two pairs.
    TimeCode sixty(60, 0, 0, 59, 29, true, true);
    EXPECT_EQ("00:00:59:29.1 (DF)", text(sixty));
    EXPECT_EQ(3599u, sixty.toFrameCounter());
    ++sixty;
    EXPECT_EQ("00:01:00:02.0 (DF)", text(sixty));
    EXPECT_EQ(3600u, sixty.toFrameCounter());

    // Counting with ++ and converting agree over more than ten minutes of drop frame.
    TimeCode counted(30, int64(0), true);
    for (uint64 i = 0; i < 20000; ++i)
    {
        ASSERT_EQ(i, counted.toFrameCounter()) << text(counted);
        ASSERT_TRUE(TimeCode(30, int64(i), true) == counted) << i;
        ++counted;
    }
    TimeCode fields(60, int64(0), true);
    for (uint64 i = 0; i < 40000; ++i)
    {
        ASSERT_EQ(i, fields.toFrameCounter()) << text(fields);
        TimeCode converted(60, int64(i), true);
        ASSERT_TRUE(converted == fields && converted.fieldPhase() == fields.fieldPhase()) << i;
        ++fields;
    }

    // Not a time: nothing to advance.
    TimeCode undefined;
    ++undefined;
    EXPECT_FALSE(undefined.isDefined());
}

TEST(SMPTETimeCodeTest, FromFrameCounter)
{
    TimeCode df(30, int64(1800), true);
    EXPECT_EQ("00:01:00:02 (DF)", text(df));
    EXPECT_EQ("00:10:00:00 (DF)", text(TimeCode(30, int64(17982), true)));
    EXPECT_EQ("00:09:59:29 (DF)", text(TimeCode(30, int64(17981), true)));
    EXPECT_EQ("01:00:00:00 (DF)", text(TimeCode(30, int64(107892), true)));
    // A day wraps round.
    EXPECT_EQ("00:00:00:01 (DF)", text(TimeCode(30, int64(107892) * 24 + 1, true)));
    EXPECT_EQ("00:00:00:00", text(TimeCode(25, int64(25) * 86400, false)));
    EXPECT_EQ("01:01:01:01", text(TimeCode(25, int64(3600 + 60 + 1) * 25 + 1, false)));

    TimeCode fifty(50, int64(51), false);
    EXPECT_EQ("00:00:01:00.1", text(fifty));
    EXPECT_TRUE(fifty.fieldPhase());
    EXPECT_EQ(51u, fifty.toFrameCounter());

    TimeCode twentyFour(24, int64(0), true);
    EXPECT_TRUE(twentyFour.dropFrame());
    EXPECT_EQ("00:00:00:00 (DF)", text(twentyFour));

    TimeCode negative(25, int64(-1), false);
    EXPECT_FALSE(negative.isDefined());
    EXPECT_EQ("--:--:--:--", text(negative));
    EXPECT_EQ(25, negative.frameRate());
    // A negative counter is never tested for drop frame.
    EXPECT_FALSE(TimeCode(25, int64(-5), true).isDefined());
}

TEST(SMPTETimeCodeTest, Comparison)
{
    TimeCode a(25, 1, 2, 3, 4, false, false);
    TimeCode sameAtOtherRate(30, 1, 2, 3, 4, false, false);
    EXPECT_TRUE(a == sameAtOtherRate);
    EXPECT_FALSE(a != sameAtOtherRate);
    EXPECT_FALSE(a == TimeCode(30, 1, 2, 3, 4, true, false));
    EXPECT_FALSE(a == TimeCode(25, 1, 2, 3, 5, false, false));
    EXPECT_TRUE(a != TimeCode(25, 0, 2, 3, 4, false, false));
    // The field phase does not count.
    EXPECT_TRUE(TimeCode(50, 0, 0, 0, 1, false, true) == TimeCode(50, 0, 0, 0, 1, false, false));

    TimeCode undefined, alsoUndefined(25, int64(-1), false);
    EXPECT_TRUE(undefined == alsoUndefined);
    EXPECT_FALSE(undefined == TimeCode(25));
    EXPECT_FALSE(TimeCode(25) == undefined);
    EXPECT_TRUE(TimeCode(25) != undefined);

    EXPECT_TRUE(TimeCode(25, 0, 0, 0, 1, false, false) < TimeCode(25, 0, 0, 1, 0, false, false));
    EXPECT_TRUE(TimeCode(25, 0, 59, 59, 24, false, false) < TimeCode(25, 1, 0, 0, 0, false, false));
    EXPECT_FALSE(TimeCode(25, 1, 0, 0, 0, false, false) < TimeCode(25, 0, 59, 59, 24, false, false));
    EXPECT_FALSE(a < sameAtOtherRate);
    EXPECT_TRUE(TimeCode(25, 0, 1, 0, 0, false, false) < TimeCode(25, 0, 2, 0, 0, false, false));
}

TEST(SMPTETimeCodeTest, Extended)
{
    TimeCodeExtended::BinaryGroups groups;
    for (unsigned i = 0; i < 11; ++i)
        EXPECT_EQ(0, groups.group[i]);
    groups.group[0] = 1;
    groups.group[10] = 0xF;

    TimeCodeExtended tc(25, 1, 2, 3, 4, false, false, groups, true);
    EXPECT_EQ("01:02:03:04", text(tc));
    EXPECT_TRUE(tc.colorFrame());
    EXPECT_TRUE(tc.binaryGroups() == groups);

    TimeCodeExtended copy(tc);
    EXPECT_TRUE(copy == tc);
    copy.colorFrame(false);
    EXPECT_FALSE(copy == tc);
    EXPECT_TRUE(tc.colorFrame());
    copy.colorFrame(true);
    TimeCodeExtended::BinaryGroups other = groups;
    other.group[5] = 3;
    copy.binaryGroups(other);
    EXPECT_TRUE(copy != tc);
    EXPECT_EQ(3, copy.binaryGroups().group[5]);
    EXPECT_EQ(0, tc.binaryGroups().group[5]);
    copy = tc;
    EXPECT_TRUE(copy == tc);
    copy.frames(5);
    EXPECT_TRUE(copy != tc);

    TimeCodeExtended before = copy++;
    EXPECT_EQ("01:02:03:05", text(before));
    EXPECT_EQ("01:02:03:06", text(copy));
    EXPECT_TRUE(copy.binaryGroups() == groups);
    EXPECT_EQ("01:02:03:07", text(++copy));

    TimeCodeExtended fromCounter(30, int64(1800), true, groups, false);
    EXPECT_EQ("00:01:00:02 (DF)", text(fromCounter));
    EXPECT_TRUE(fromCounter.binaryGroups() == groups);
    TimeCodeExtended fromPlain(TimeCode(30, 0, 0, 1, 0, false, false), groups, true);
    EXPECT_EQ(30u, fromPlain.toFrameCounter());
    EXPECT_TRUE(fromPlain.colorFrame());
    TimeCodeExtended atRate(60);
    EXPECT_EQ("00:00:00:00.0", text(atRate));
    EXPECT_FALSE(atRate.colorFrame());
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
