#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "ByteCoders/BCD.h"
#include "ByteCoders/BER.h"
#include "KLV/KLVTestSupport.h"

using namespace Vellum;
using namespace Vellum::KLVTest;

TEST(BER, CalculatesTheShortestSize)
{
    std::pair<uint64, int> const table[] = {{0, 1},        {0x7F, 1},      {0x80, 2},         {0xFF, 2},
                                            {0x100, 3},    {0xFFFFFF, 4},  {0x1000000, 5},    {0x7FFFFFFFFFFFFFFFull, 9}};
    for (auto const & row : table)
        EXPECT_EQ(row.second, ByteCoders::calculateBERSize(row.first)) << row.first;
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
        EXPECT_EQ(thrown<Exceptions::InvalidFormat>("Invalid BER size"),
                  thrownBy([&] { ByteCoders::codeBER(5, size, untouched); }));
    }
    EXPECT_EQ(0xAA, untouched[0]);
}

TEST(BER, DecodesSizesAndRefusesTheIndefiniteAndReservedForms)
{
    std::pair<unsigned char, int> const table[] = {{0x00, 1}, {0x7F, 1}, {0x81, 2}, {0x83, 4}, {0x88, 9}, {0xFE, 127}};
    for (auto const & row : table)
        EXPECT_EQ(row.second, ByteCoders::decodeBERSize(row.first)) << int(row.first);
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

    unsigned char indefinite[] = {0x80, 0x00};
    EXPECT_EQ(thrown<Exceptions::InvalidFormat>("Invalid BER size: 0x80"),
              thrownBy([&] { ByteCoders::decodeBER(indefinite, 2, value); }));

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
    EXPECT_EQ(thrown<Exceptions::InvalidFormat>("Invalid BCD digit"),
              thrownBy([&] { ByteCoders::decodeBCD(bad, 1, value); }));
    EXPECT_EQ(7, value);

    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, thrownBy([&] { ByteCoders::encodeBCD(out, -1); }).code);
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, thrownBy([&] { ByteCoders::decodeBCD(four, 5, value); }).code);
}
