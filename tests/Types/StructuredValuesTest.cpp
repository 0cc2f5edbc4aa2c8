#include <gtest/gtest.h>

#include "Platform/Version.h"
#include "Types/Boolean.h"
#include "Types/Orientation.h"
#include "Types/ProductVersion.h"
#include "Types/RGBALayout.h"
#include "Types/Rational.h"
#include "Types/SignalStandard.h"
#include "Types/Timestamp.h"
#include "Types/UTF16.h"
#include "Types/VersionType.h"
#include "ValueTestSupport.h"

using namespace Vellum;
using namespace ValueTest;

namespace
{
// A Timestamp from milliseconds; the casts pick the overload.
Types::Timestamp timestampMs(unsigned short year, int month, int day, int hour, int minute, int second, int ms)
{
    return Types::Timestamp(year, static_cast<unsigned char>(month), static_cast<unsigned char>(day),
                            static_cast<unsigned char>(hour), static_cast<unsigned char>(minute),
                            static_cast<unsigned char>(second), static_cast<unsigned short>(ms));
}

Types::Timestamp timestampQuarter(unsigned short year, int month, int day, int hour, int minute, int second,
                                  int mSec4)
{
    return Types::Timestamp(year, static_cast<unsigned char>(month), static_cast<unsigned char>(day),
                            static_cast<unsigned char>(hour), static_cast<unsigned char>(minute),
                            static_cast<unsigned char>(second), static_cast<unsigned char>(mSec4));
}

std::string failureOf(std::function<void()> const & call)
{
    Thrown t = thrownBy(call);
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, t.code);
    return t.message;
}
} // namespace

TEST(StructuredValues, TimestampLayoutAndMilliseconds)
{
    Types::Timestamp t = timestampMs(2024, 12, 31, 23, 59, 58, 999);
    EXPECT_EQ(Bytes({0x07, 0xE8, 12, 31, 23, 59, 58, 249}), wire(t));
    EXPECT_EQ(996, t.milliSecond());
    EXPECT_EQ(31 * 100 + 23, t.day() * 100 + t.hour());

    // An unknown date is allowed.
    Types::Timestamp unknownDate = timestampQuarter(0, 0, 0, 0, 0, 0, 249);
    EXPECT_EQ(Bytes({0, 0, 0, 0, 0, 0, 0, 249}), wire(unknownDate));

    // Read back without checks.
    ValueOver over(Bytes{0xFF, 0xFF, 99, 99, 99, 99, 99, 255});
    Types::Timestamp odd(over.value());
    EXPECT_EQ(65535, odd.year());
    EXPECT_EQ(99, odd.hour());
    EXPECT_EQ(1020, odd.milliSecond());

    ValueOver shortOver(Bytes{1, 2, 3});
    EXPECT_EQ("Invalid data size in Value", thrownBy([&] { Types::Timestamp x(shortOver.value()); }).message);
}

TEST(StructuredValues, TimestampChecksInOrder)
{
    EXPECT_EQ("milliSecond < 1000: Invalid Time: Millisecond must be smaller than 1000",
              failureOf([] { timestampMs(2024, 13, 32, 24, 60, 60, 1000); }));
    EXPECT_EQ("mSec4 < 250: Invalid Time: Millisecond must be smaller than 250",
              failureOf([] { timestampQuarter(2024, 13, 32, 24, 60, 60, 250); }));
    EXPECT_EQ("second < 60: Invalid Time: Second must be smaller than 60",
              failureOf([] { timestampMs(2024, 13, 32, 24, 60, 60, 0); }));
    EXPECT_EQ("minute < 60: Invalid Time: Minute must be smaller than 60",
              failureOf([] { timestampQuarter(2024, 13, 32, 24, 60, 59, 0); }));
    EXPECT_EQ("hour < 24: Invalid Time: Hour must be smaller than 60",
              failureOf([] { timestampMs(2024, 13, 32, 24, 59, 59, 0); }));
    EXPECT_EQ("day < 32: Invalid Date: Day must be smaller than 32",
              failureOf([] { timestampQuarter(2024, 13, 32, 23, 59, 59, 0); }));
    EXPECT_EQ("month < 13: Invalid Date: Month must be smaller than 13",
              failureOf([] { timestampMs(2024, 13, 31, 23, 59, 59, 0); }));
}

TEST(StructuredValues, VersionsAndTheirReleaseKind)
{
    Types::ProductVersion v(4, 2, 2, 319, Types::ProductVersion::PATCHED_VERSION);
    EXPECT_EQ(Bytes({0, 4, 0, 2, 0, 2, 0x01, 0x3F, 0, 3}), wire(v));
    EXPECT_EQ(4 + 2 + 2 + 319, v.major() + v.minor() + v.patch() + v.build());
    // The library's own version reports the same enumeration.
    Types::ProductVersion::ReleaseVersion own = Version::releaseVersion();
    EXPECT_EQ(3, static_cast<int>(own));

    // Any 16-bit release number read from a file is kept.
    ValueOver over(Bytes{0xFF, 0xFE, 0, 1, 0, 2, 0, 3, 0x12, 0x34});
    Types::ProductVersion read(over.value());
    EXPECT_EQ(0xFFFE, read.major());
    EXPECT_EQ(0x1234, static_cast<int>(read.releaseVersion()));

    EXPECT_EQ(Bytes({1, 3}), wire(Types::VersionType(1, 3)));
    ValueOver vtOver(Bytes{2, 9});
    Types::VersionType vtRead(vtOver.value());
    EXPECT_EQ(29, vtRead.major() * 10 + vtRead.minor());
}

TEST(StructuredValues, RationalWireAndUndefined)
{
    Types::Rational r(30000, -1001);
    EXPECT_EQ(Bytes({0, 0, 0x75, 0x30, 0xFF, 0xFF, 0xFC, 0x17}), wire(r));
    EXPECT_FALSE(r.isUndefined());

    Types::Rational undefined(1, 0);
    EXPECT_TRUE(undefined.isUndefined());
    EXPECT_DOUBLE_EQ(1.0, undefined.toDouble());
    undefined.normalize();
    EXPECT_EQ(1, undefined.numerator());
    EXPECT_EQ(0, undefined.denominator());

    Types::Rational fromRate(Templates::Rational<int>(60000, 2002));
    EXPECT_EQ(Bytes({0, 0, 0x75, 0x30, 0, 0, 0x03, 0xE9}), wire(fromRate));
    Templates::Rational<int> rate = Types::Rational(50, -4).value();
    EXPECT_EQ(-25, rate.numerator());
    EXPECT_EQ(2, rate.denominator());

    ValueOver over(Bytes{0, 0, 0, 5, 0, 0, 0, 0});
    Types::Rational read(over.value());
    EXPECT_TRUE(read.isUndefined());
    ValueOver defined(Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 2});
    Types::Rational half(defined.value());
    EXPECT_FALSE(half.isUndefined());
    EXPECT_DOUBLE_EQ(-0.5, half.toDouble());
}

namespace
{
::testing::AssertionResult Is(Types::Rational const & r, int num, int den)
{
    if (r.numerator() == num && r.denominator() == den)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << r.numerator() << "/" << r.denominator();
}
} // namespace

TEST(StructuredValues, RationalNormalizeAndArithmetic)
{
    Types::Rational a(50, 2), b(1, -2), zero(0, -5);
    a.normalize();
    b.normalize();
    zero.normalize();
    EXPECT_TRUE(Is(a, 25, 1));
    EXPECT_TRUE(Is(b, -1, 2));
    EXPECT_TRUE(Is(zero, 0, -5));

    Types::Rational x(1, 6);
    x += Types::Rational(1, 3);
    EXPECT_TRUE(Is(x, 1, 2));
    x -= Types::Rational(3, 4);
    EXPECT_TRUE(Is(x, -1, 4));
    x *= Types::Rational(-2, 3);
    EXPECT_TRUE(Is(x, 1, 6));
    x /= Types::Rational(-1, 3);
    EXPECT_TRUE(Is(x, -1, 2));
    x += x;
    EXPECT_TRUE(Is(x, -1, 1));

    // Products beyond 32 bits are reduced before they are stored.
    Types::Rational big(2147483647, 2);
    big *= Types::Rational(2, 2147483647);
    EXPECT_TRUE(Is(big, 1, 1));
    Types::Rational extreme(-2147483647 - 1, -2147483647 - 1);
    extreme += extreme;
    EXPECT_TRUE(Is(extreme, 2, 1));

    Types::Rational undefined(1, 0);
    Thrown t = thrownBy([&] { undefined += Types::Rational(1, 2); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
    EXPECT_EQ("this -> isUndefined () == false: Operation with undefined value.", t.message);
    Types::Rational defined(1, 2);
    EXPECT_EQ("r.isUndefined () == false: Operation with undefined value.",
              thrownBy([&] { defined *= Types::Rational(3, 0); }).message);
    t = thrownBy([&] { defined /= Types::Rational(0, 7); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
    EXPECT_EQ("r_num != 0: Division by 0.", t.message);
    EXPECT_TRUE(Is(defined, 1, 2));
}

TEST(StructuredValues, RGBALayoutComponents)
{
    Types::RGBALayout layout;
    EXPECT_EQ(Bytes(16, 0), wire(layout));
    layout.set(0, Types::RGBAComponent('R', 8));
    layout.set(7, Types::RGBAComponent('A', 10));
    Bytes expected(16, 0);
    expected[0] = 'R';
    expected[1] = 8;
    expected[14] = 'A';
    expected[15] = 10;
    EXPECT_EQ(expected, wire(layout));
    EXPECT_EQ(Types::RGBAComponent('A', 10), layout.get(7));
    EXPECT_EQ(Types::RGBAComponent(), layout.get(3));

    EXPECT_EQ("Cannot set in this index", failureOf([&] { layout.set(8, Types::RGBAComponent('B', 8)); }));
    EXPECT_EQ("Cannot set in this index", failureOf([&] { layout.get(8); }));
    EXPECT_EQ(expected, wire(layout));

    ValueOver over(expected);
    Types::RGBALayout read(over.value());
    EXPECT_EQ(Types::RGBAComponent('R', 8), read.get(0));
}

TEST(StructuredValues, OneAndTwoByteValues)
{
    EXPECT_EQ(Bytes({1}), wire(Types::Boolean(true)));
    EXPECT_EQ(Bytes({0}), wire(Types::Boolean(false)));
    ValueOver anyNonZero(Bytes{0x80});
    Types::Boolean b(anyNonZero.value());
    EXPECT_TRUE(b.value());
    EXPECT_EQ(Bytes({0x80}), raw(b));

    Types::Orientation o(2);
    EXPECT_EQ(Bytes({2}), wire(o));
    ValueOver orientation(Bytes{1, 0xEE});
    Types::Orientation oRead(orientation.value());
    EXPECT_EQ(1, oRead.value());
    EXPECT_EQ(1u, orientation.value().remaining());

    EXPECT_EQ(Bytes({5}), wire(Types::SignalStandard(5)));
    EXPECT_EQ(Bytes({0x20, 0xAC}), wire(Types::UTF16(0x20AC)));
    ValueOver unit(Bytes{0x00, 0x41});
    EXPECT_EQ(0x41, Types::UTF16(unit.value()).value());
    ValueOver shortUnit(Bytes{0x00});
    EXPECT_EQ("Invalid data size in Value", thrownBy([&] { Types::UTF16 u(shortUnit.value()); }).message);
}
