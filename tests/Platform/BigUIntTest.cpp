#include "Platform/BigUInt.h"

#include <gtest/gtest.h>

#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using Vellum::uint64;
using Vellum::Platform::BigUInt;

namespace
{
typedef Vellum::Templates::vector<unsigned char> Digits;

Digits digits(std::initializer_list<unsigned char> list)
{
    return Digits(list);
}
} // namespace

TEST(BigUIntTest, DigitsInTheChosenBase)
{
    EXPECT_EQ(digits({44, 1}), BigUInt(300, 256).digits());
    EXPECT_EQ(256, BigUInt(300, 256).base());
    EXPECT_EQ(digits({0, 0, 3}), BigUInt(300, 10).digits());
    EXPECT_EQ(digits({0, 0, 1, 1, 0, 1, 0, 0, 1}), BigUInt(300, 2).digits());
    EXPECT_TRUE(BigUInt(0, 256).digits().empty());
    EXPECT_EQ(8u, BigUInt(~uint64(0), 256).digits().size());
    EXPECT_EQ(64u, BigUInt(~uint64(0), 2).digits().size());

}

TEST(BigUIntTest, BaseOutsideTwoTo256Throws)
{
    for (unsigned short base : {0, 1, 257, 300})
    {
        try
        {
            BigUInt(1, base);
            ADD_FAILURE() << "base " << base << " accepted";
        }
        catch (Vellum::Exceptions::InvalidValue const & e)
        {
            EXPECT_EQ("IS_INSIDE(Vellum::Platform::Int16 (BINARY), base, Vellum::Platform::Int16 (HEXADECIMAL)): "
                      "Invalid base.",
                      Vellum::Utils::narrow(e.message()));
            EXPECT_NE(std::string::npos, e.whatUtf8().find("(Platform/BigUInt.cpp:")) << e.whatUtf8();
            EXPECT_EQ(16, e.errorCode());
        }
    }
}

TEST(BigUIntTest, MultiplicationAndValue)
{
    BigUInt a(65535, 256);
    a *= BigUInt(65537, 256);
    uint64 out = 0;
    EXPECT_TRUE(a.value(out));
    EXPECT_EQ(uint64(4294967295u), out);
    EXPECT_EQ(4u, a.digits().size());

    BigUInt d(999, 10);
    d *= BigUInt(999, 10);
    EXPECT_EQ(digits({1, 0, 0, 8, 9, 9}), d.digits());

    BigUInt z(12345, 256);
    z *= BigUInt(0, 256);
    EXPECT_TRUE(z.digits().empty());
    EXPECT_TRUE(z.value(out));
    EXPECT_EQ(0u, out);

    // A product beyond 64 bits: value() refuses it.
    BigUInt big((uint64(1) << 40) - 3, 256);
    big *= BigUInt((uint64(1) << 40) + 7, 256);
    EXPECT_FALSE(big.value(out));
    BigUInt almost(uint64(1) << 32, 256);
    almost *= BigUInt((uint64(1) << 32) - 1, 256);
    EXPECT_TRUE(almost.value(out));
    EXPECT_EQ((uint64(1) << 32) * ((uint64(1) << 32) - 1), out);
    almost *= BigUInt(2, 256);
    EXPECT_FALSE(almost.value(out));
    // Small bases carry over many positions.
    BigUInt binary(255, 2);
    binary *= BigUInt(255, 2);
    EXPECT_TRUE(binary.value(out));
    EXPECT_EQ(65025u, out);

    try
    {
        BigUInt x(5, 256);
        x *= BigUInt(5, 10);
        ADD_FAILURE() << "different bases multiplied";
    }
    catch (Vellum::Exceptions::InvalidValue const & e)
    {
        EXPECT_EQ("base_ == multiplier.base_: The two objects, must have the same base.",
                  Vellum::Utils::narrow(e.message()));
    }
}

TEST(BigUIntTest, Comparison)
{
    BigUInt small(255, 256), large(256, 256), same(256, 256);
    EXPECT_TRUE(small < large && !(large < small) && !(large < same));
    EXPECT_TRUE(large <= same && small <= large && !(large <= small));
    EXPECT_TRUE(large > small && !(large > same) && large >= same && !(small >= large));
    EXPECT_TRUE(large == same && !(large == small) && large != small && !(large != same));

    // Products of different lengths compare by value.
    BigUInt p(uint64(1) << 40, 256);
    p *= BigUInt(uint64(1) << 40, 256);
    BigUInt q(~uint64(0), 256);
    EXPECT_TRUE(q < p);
    EXPECT_TRUE(p > q);

    try
    {
        bool result = BigUInt(5, 256) < BigUInt(5, 16);
        ADD_FAILURE() << "different bases compared: " << result;
    }
    catch (Vellum::Exceptions::InvalidValue const & e)
    {
        EXPECT_EQ("base_ == compar.base_: The two objects, must have the same base.",
                  Vellum::Utils::narrow(e.message()));
    }
    EXPECT_THROW((void)(BigUInt(5, 256) == BigUInt(5, 16)), Vellum::Exceptions::InvalidValue);
}
