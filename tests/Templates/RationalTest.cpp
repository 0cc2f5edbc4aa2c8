#include "Templates/Rational.h"

#include <climits>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

using Vellum::int64;
using Vellum::Templates::Rational;

namespace
{
template <class T>
::testing::AssertionResult Is(Rational<T> const & r, T num, T den)
{
    if (r.numerator() == num && r.denominator() == den)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << r.numerator() << "/" << r.denominator() << " instead of " << num << "/"
                                         << den;
}
} // namespace

TEST(RationalTest, ConstructionKeepsLowestTermsAndPositiveDenominator)
{
    EXPECT_TRUE(Is(Rational<int>(), 0, 1));
    EXPECT_TRUE(Is(Rational<int>(7), 7, 1));
    EXPECT_TRUE(Is(Rational<int>(2, 4), 1, 2));
    EXPECT_TRUE(Is(Rational<int>(1, -2), -1, 2));
    EXPECT_TRUE(Is(Rational<int>(-6, -4), 3, 2));
    EXPECT_TRUE(Is(Rational<int>(0, 5), 0, 1));
    EXPECT_TRUE(Is(Rational<int>(0, -5), 0, 1));
    EXPECT_TRUE(Is(Rational<int>(30000, 1001), 30000, 1001));
    EXPECT_TRUE(Is(Rational<int64>(int64(50) << 40, int64(2) << 40), int64(25), int64(1)));

    // A zero denominator is no error: it carries an undefined rate as 1/0 or -1/0.
    EXPECT_TRUE(Is(Rational<int>(25, 0), 1, 0));
    EXPECT_TRUE(Is(Rational<int>(-25, 0), -1, 0));

    Rational<int> r(1, 3);
    r.assign(10, -15);
    EXPECT_TRUE(Is(r, -2, 3));
    r = 4;
    EXPECT_TRUE(Is(r, 4, 1));
    Rational<int> copy(r);
    EXPECT_TRUE(Is(copy, 4, 1));
}

TEST(RationalTest, ExtremeValuesAreHandledWithoutOverflow)
{
    // These run under the undefined-behaviour sanitizer: none of them may overflow.
    EXPECT_TRUE(Is(Rational<int>(INT_MIN, 1), INT_MIN, 1));
    EXPECT_TRUE(Is(Rational<int>(INT_MIN, 2), INT_MIN / 2, 1));
    EXPECT_TRUE(Is(Rational<int>(INT_MIN, INT_MIN), 1, 1));
    EXPECT_TRUE(Is(Rational<int>(INT_MIN, -2), -(INT_MIN / 2), 1));
    EXPECT_TRUE(Is(Rational<int>(INT_MIN, 0), -1, 0));
    // The reduced denominator 2^31 has no representation; it must still not trap.
    Rational<int> unrepresentable(INT_MAX, INT_MIN);
    EXPECT_EQ(-INT_MAX, unrepresentable.numerator());
    EXPECT_TRUE(Is(Rational<int64>(INT64_MIN, INT64_MIN), int64(1), int64(1)));
    EXPECT_TRUE(Is(Rational<int64>(INT64_MIN, 4), INT64_MIN / 4, int64(1)));
    // Intermediate sums beyond 64 bits still give the exact result.
    EXPECT_TRUE(Is(Rational<int64>(INT64_MIN, 3) + Rational<int64>(-1, 3), int64(-3074457345618258603), int64(1)));
    EXPECT_TRUE(Is(Rational<int64>(INT64_MAX, 2) + Rational<int64>(INT64_MAX, 2), INT64_MAX, int64(1)));
    EXPECT_TRUE(Is(Rational<int64>(INT64_MAX, 7) * int64(7), INT64_MAX, int64(1)));
    Rational<int64> wrapped(INT64_MAX);
    wrapped += 1;
    EXPECT_EQ(int64(1), wrapped.denominator());

    Rational<int> big(INT_MAX, 2);
    big *= 2;
    EXPECT_TRUE(Is(big, INT_MAX, 1));
    Rational<int> small(INT_MIN);
    small /= -2;
    EXPECT_TRUE(Is(small, 1 << 30, 1));
    Rational<int> product(INT_MAX, 3);
    product *= Rational<int>(3, INT_MAX);
    EXPECT_TRUE(Is(product, 1, 1));

    EXPECT_TRUE(Rational<int>(INT_MIN) < Rational<int>(INT_MIN + 1));
    EXPECT_TRUE(Rational<int>(INT_MIN, 3) < Rational<int>(INT_MAX, 3));
    EXPECT_FALSE(Rational<int>(INT_MIN) < Rational<int>(INT_MIN));
    EXPECT_TRUE(Rational<int64>(INT64_MIN, 3) < Rational<int64>(INT64_MIN + 1, 3));
    EXPECT_FALSE(Rational<int64>(INT64_MAX - 1, INT64_MAX) < Rational<int64>(INT64_MAX - 2, INT64_MAX - 1));
    EXPECT_TRUE(Rational<int64>(INT64_MAX - 2, INT64_MAX - 1) < Rational<int64>(INT64_MAX - 1, INT64_MAX));
}

TEST(RationalTest, EdgesTheWideComparisonDoesNotReach)
{
    // Rates: one frame at 30000/1001 lasts 1001/30000 s; 30000 of them last 1001 s.
    Rational<int64> frameDuration = Rational<int64>(1) / Rational<int64>(30000, 1001);
    EXPECT_TRUE(Is(frameDuration * int64(30000), int64(1001), int64(1)));
    EXPECT_TRUE(Is(-Rational<int>(2, 3), -2, 3));

    // Operating on itself.
    Rational<int> c(2, 3);
    c *= c;
    EXPECT_TRUE(Is(c, 4, 9));
    c /= c;
    EXPECT_TRUE(Is(c, 1, 1));
    c += c;
    EXPECT_TRUE(Is(c, 2, 1));
    c -= c;
    EXPECT_TRUE(Is(c, 0, 1));

    // Dividing by zero makes an undefined value, no trap; 0/0 stays 0.
    Rational<int> d(3, 4);
    d /= Rational<int>(0);
    EXPECT_EQ(0, d.denominator());
    Rational<int> s(3, 10);
    s /= 0;
    EXPECT_TRUE(Is(s, 1, 0));
    Rational<int> zero;
    zero /= Rational<int>(0);
    zero /= 0;
    zero *= 0;
    EXPECT_EQ(1, zero.denominator());

    Rational<int> counter(1, 2);
    counter -= 2;
    EXPECT_TRUE(Is(counter, -3, 2));
    EXPECT_TRUE(Is(Rational<int64>(1, 3) - 1, int64(-2), int64(3)));
    EXPECT_TRUE(Is(counter++, -3, 2));
    EXPECT_TRUE(Is(++counter, 1, 2));
    EXPECT_TRUE(Is(counter--, 1, 2));
    EXPECT_TRUE(Is(--counter, -3, 2));
    EXPECT_TRUE(!Rational<int>(0, 7));
    EXPECT_FALSE(!Rational<int>(1, 0));

    Rational<int> third(1, 3), half(1, 2);
    EXPECT_TRUE(third <= half && !(half <= third) && half > third && !(third > third));
    EXPECT_TRUE(third != half && !(third != Rational<int>(-3, -9)));
    EXPECT_FALSE(Rational<int64>(INT64_MAX, INT64_MAX - 1) > Rational<int64>(INT64_MAX - 1, INT64_MAX - 2));
    EXPECT_TRUE(Rational<int64>(INT64_MAX - 1, INT64_MAX - 2) > Rational<int64>(INT64_MAX, INT64_MAX - 1));
    // Against integers.
    EXPECT_TRUE(Rational<int>(25) == 25);
    EXPECT_FALSE(Rational<int>(50, 3) == 16);
    EXPECT_TRUE(Rational<int>(50, 3) != 16 && Rational<int>(50, 3) > 16 && Rational<int>(50, 3) < 17);
    EXPECT_TRUE(Rational<int>(50, 3) >= 16 && !(Rational<int>(50, 3) <= 16) && Rational<int>(48, 3) <= 16);
    EXPECT_TRUE(Rational<int64>(-1, 3) < 0);
    // The undefined rate sorts above every finite positive value.
    EXPECT_TRUE(Rational<int>(1000000) < Rational<int>(1, 0));
    EXPECT_FALSE(Rational<int>(1, 0) < Rational<int>(1, 0));
}

namespace
{
typedef __int128 Wide;

Wide wideGcd(Wide a, Wide b)
{
    if (a < 0)
        a = -a;
    if (b < 0)
        b = -b;
    while (b != 0)
    {
        Wide r = a % b;
        a = b;
        b = r;
    }
    return a;
}

// Checks r against the exact n/d when the reduced value fits in an int.
void expectExact(Rational<int> const & r, Wide n, Wide d, char const * op, Rational<int> const & x,
                 Rational<int> const & y)
{
    if (d < 0)
    {
        n = -n;
        d = -d;
    }
    Wide g = wideGcd(n, d);
    if (n == 0)
        d = 1;
    else
    {
        n /= g;
        d /= g;
    }
    if (n < INT_MIN || n > INT_MAX || d > INT_MAX)
        return;
    EXPECT_TRUE(r.numerator() == int(n) && r.denominator() == int(d))
        << x.numerator() << "/" << x.denominator() << " " << op << " " << y.numerator() << "/" << y.denominator()
        << " gave " << r.numerator() << "/" << r.denominator() << ", expected " << int(n) << "/" << int(d);
}
} // namespace

TEST(RationalTest, AgreesWithWideArithmeticOverExtremeOperands)
{
    int const numerators[] = {INT_MIN, INT_MIN + 1, -65536, -7, -1, 0, 1, 2, 3, 46341, 65536, INT_MAX - 1, INT_MAX};
    int const denominators[] = {1, 2, 3, 7, 1001, 65536, INT_MAX};
    std::vector<Rational<int>> values;
    for (int n : numerators)
        for (int d : denominators)
            values.push_back(Rational<int>(n, d));
    for (Rational<int> const & x : values)
        for (Rational<int> const & y : values)
        {
            Wide a = x.numerator(), b = x.denominator(), c = y.numerator(), d = y.denominator();
            expectExact(x + y, a * d + c * b, b * d, "+", x, y);
            expectExact(x - y, a * d - c * b, b * d, "-", x, y);
            expectExact(x * y, a * c, b * d, "*", x, y);
            if (c != 0)
                expectExact(x / y, a * d, b * c, "/", x, y);
            if (d == 1)
            {
                expectExact(x + int(c), a + c * b, b, "+ int", x, y);
                expectExact(x * int(c), a * c, b, "* int", x, y);
                if (c != 0)
                    expectExact(x / int(c), a, b * c, "/ int", x, y);
            }
            ASSERT_EQ(a * d < c * b, x < y) << x.numerator() << "/" << x.denominator() << " < " << y.numerator()
                                            << "/" << y.denominator();
            ASSERT_EQ(a * d == c * b, x == y);
            ASSERT_EQ(a * d >= c * b, x >= y);
        }
}
