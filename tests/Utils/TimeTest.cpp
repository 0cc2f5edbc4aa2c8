#include "Utils/Time.h"

#include <climits>

#include <gtest/gtest.h>

using Vellum::int64;
using Vellum::Templates::Rational;
using Vellum::Utils::Time;

TEST(TimeTest, ConvertSecondsToEditUnit)
{
    EXPECT_EQ(25, Time::convertSecondsToEditUnit(Rational<int>(1, 1), Rational<int>(25, 1)));
    EXPECT_EQ(14, Time::convertSecondsToEditUnit(Rational<int>(1, 2), Rational<int>(30000, 1001)));
    EXPECT_EQ(30000, Time::convertSecondsToEditUnit(Rational<int>(1001, 1), Rational<int>(30000, 1001)));
    EXPECT_EQ(0, Time::convertSecondsToEditUnit(Rational<int>(0), Rational<int>(25)));
    EXPECT_EQ(0, Time::convertSecondsToEditUnit(Rational<int>(1, 26), Rational<int>(25)));
    // Truncation is toward zero.
    EXPECT_EQ(-12, Time::convertSecondsToEditUnit(Rational<int>(-1, 2), Rational<int>(25)));
    EXPECT_EQ(-50, Time::convertSecondsToEditUnit(Rational<int>(-2, 1), Rational<int>(25)));

    // -1/1 marks "no value", in either form and in any spelling that reduces to it.
    EXPECT_EQ(-1, Time::convertSecondsToEditUnit(Rational<int>(-1, 1), Rational<int>(25)));
    EXPECT_EQ(-1, Time::convertSecondsToEditUnit(Rational<int>(3, -3), Rational<int>(25)));
    EXPECT_EQ(-1, Time::convertSecondsToEditUnit(Rational<int64>(-1, 1), Rational<int>(30000, 1001)));
    // An undefined time has no edit unit either.
    EXPECT_EQ(-1, Time::convertSecondsToEditUnit(Rational<int>(1, 0), Rational<int>(25)));

    // 64-bit times: a day of 48 kHz samples, and products beyond 32 bits.
    EXPECT_EQ(int64(86400) * 48000, Time::convertSecondsToEditUnit(Rational<int64>(86400), Rational<int>(48000)));
    EXPECT_EQ(int64(INT_MAX) * 1001,
              Time::convertSecondsToEditUnit(Rational<int64>(int64(INT_MAX) * 1001, 1), Rational<int>(1)));
    EXPECT_EQ(int64(1) << 40,
              Time::convertSecondsToEditUnit(Rational<int64>(int64(1001) << 40, 30000), Rational<int>(30000, 1001)));
}
