#include <gtest/gtest.h>

#include "ByteCoders/BCD.h"
#include "ByteCoders/BER.h"
#include "KLV/KLVTestSupport.h"

using namespace Vellum;
using namespace Vellum::KLVTest;

TEST(BER, CalculatesTheShortestSize)
{
    EXPECT_EQ(1, ByteCoders::calculateBERSize(0));
    EXPECT_EQ(1, ByteCoders::calculateBERSize(0x7F));
    EXPECT_EQ(2, ByteCoders::calculateBERSize(0x80));
    EXPECT_EQ(2, ByteCoders::calculateBERSize(0xFF));
    EXPECT_EQ(3, ByteCoders::calculateBERSize(0x100));
    EXPECT_EQ(4, ByteCoders::calculateBERSize(0xFFFFFF));
    EXPECT_EQ(5, ByteCoders::calculateBERSize(0x1000000));
    EXPECT_EQ(9, ByteCoders::calculateBERSize(0x7FFFFFFFFFFFFFFFull));
}

TEST(BER, CodesWithTheSizeThatTheCallerPicks)
{
    unsigned char out[9] = {0};
    ByteCoders::codeBER(5, 1, out);
    EXPECT_EQ(0x05, out[0]);

    ByteCoders::codeBER(5, 4, out);
    EXPECT_EQ(Bytes({0x83, 0x00, 0x00, 0x05}), Bytes(out, out + 4));

    ByteCoders::codeBER(0x0102030405060708ull, 9, out);
    EXPECT_EQ(Bytes({0x88, 1, 2, 3, 4, 5, 6, 7, 8}), Bytes(out, out + 9));

    // Too large for the field: cut on the left.
    ByteCoders::codeBER(0x123456, 3, out);
    EXPECT_EQ(Bytes({0x82, 0x34, 0x56}), Bytes(out, out + 3));

    unsigned char untouched[10] = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
    for (unsigned char size : {0, 10, 200})
    {
        Thrown t = thrownBy([&] { ByteCoders::codeBER(5, size, untouched); });
        EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
        EXPECT_EQ("Invalid BER size", t.message);
    }
    EXPECT_EQ(0xAA, untouched[0]);
}

TEST(BER, DecodesSizesAndRefusesTheIndefiniteAndReservedForms)
{
    EXPECT_EQ(1, ByteCoders::decodeBERSize(0x00));
    EXPECT_EQ(1, ByteCoders::decodeBERSize(0x7F));
    EXPECT_EQ(2, ByteCoders::decodeBERSize(0x81));
    EXPECT_EQ(4, ByteCoders::decodeBERSize(0x83));
    EXPECT_EQ(9, ByteCoders::decodeBERSize(0x88));
    EXPECT_EQ(10, ByteCoders::decodeBERSize(0x89));
    EXPECT_EQ(127, ByteCoders::decodeBERSize(0xFE));

    Thrown t = thrownBy([] { ByteCoders::decodeBERSize(0x80); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid BER size: 0x80", t.message);
    t = thrownBy([] { ByteCoders::decodeBERSize(0xFF); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid BER size: 0xff", t.message);
}

TEST(BER, DecodesValuesAndRoundTrips)
{
    uint64 value = 99;
    unsigned char shortForm[] = {0x7F};
    ByteCoders::decodeBER(shortForm, 1, value);
    EXPECT_EQ(0x7Fu, value);

    unsigned char longForm[] = {0x83, 0x01, 0x02, 0x03};
    ByteCoders::decodeBER(longForm, 4, value);
    EXPECT_EQ(0x010203u, value);

    unsigned char nine[] = {0x88, 0xFF, 0xEE, 0xDD, 0xCC, 0xBB, 0xAA, 0x99, 0x88};
    ByteCoders::decodeBER(nine, 9, value);
    EXPECT_EQ(0xFFEEDDCCBBAA9988ull, value);

    unsigned char indefinite[] = {0x80, 0x00};
    Thrown t = thrownBy([&] { ByteCoders::decodeBER(indefinite, 2, value); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid BER size: 0x80", t.message);

    for (uint64 v : {uint64(0), uint64(1), uint64(0x7F), uint64(0x80), uint64(0xFFFF), uint64(0x10000),
                     uint64(0x123456789Aull), ~uint64(0) >> 1})
    {
        unsigned char coded[9];
        unsigned char size = ByteCoders::calculateBERSize(v);
        ByteCoders::codeBER(v, size, coded);
        ASSERT_EQ(size, ByteCoders::decodeBERSize(coded[0]));
        uint64 back = 0;
        ByteCoders::decodeBER(coded, size, back);
        EXPECT_EQ(v, back);
    }
}

TEST(BCD, PacksSixDigitsAndReadsThemBack)
{
    unsigned char out[3] = {0};
    ByteCoders::encodeBCD(out, 60321);
    EXPECT_EQ(Bytes({0x06, 0x03, 0x21}), Bytes(out, out + 3));
    int value = 0;
    ByteCoders::decodeBCD(out, 3, value);
    EXPECT_EQ(60321, value);

    ByteCoders::encodeBCD(out, 1234567);
    EXPECT_EQ(Bytes({0x23, 0x45, 0x67}), Bytes(out, out + 3));

    unsigned char four[] = {0x12, 0x34, 0x56, 0x78};
    ByteCoders::decodeBCD(four, 4, value);
    EXPECT_EQ(12345678, value);
    ByteCoders::decodeBCD(four, 0, value);
    EXPECT_EQ(0, value);

    unsigned char bad[] = {0x1A};
    value = 7;
    Thrown t = thrownBy([&] { ByteCoders::decodeBCD(bad, 1, value); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid BCD digit", t.message);
    EXPECT_EQ(7, value);

    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, thrownBy([&] { ByteCoders::encodeBCD(out, -1); }).code);
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, thrownBy([&] { ByteCoders::decodeBCD(four, 5, value); }).code);
}
