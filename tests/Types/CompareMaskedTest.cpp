#include <gtest/gtest.h>

#include <algorithm>

#include "KLV/Key.h"
#include "Types/CompareMasked.h"

using namespace Vellum;

TEST(TypesCompareMasked, ComparesOnlyTheMaskedBits)
{
    unsigned char const element[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01,
                                       0x0d, 0x01, 0x03, 0x01, 0x15, 0x01, 0x05, 0x00};
    unsigned char const maskBytes[16] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                         0xFC, 0xF8, 0xFF, 0xFF, 0xFF, 0x00, 0xFF, 0xFF};
    KLV::Key key(element);
    KLV::Key mask(maskBytes);
    EXPECT_TRUE(Types::compareMasked(key, key, mask));

    unsigned char other[16];
    std::copy(element, element + 16, other);
    other[13] = 0x7f; // element count
    other[8] = 0x0e;  // low bits of byte 8
    other[9] = 0x07;  // low bits of byte 9
    EXPECT_TRUE(Types::compareMasked(key, KLV::Key(other), mask));
    EXPECT_FALSE(Types::compareMasked(key, KLV::Key(other), KLV::Key(element)));

    for (unsigned byte : {0u, 7u, 10u, 12u, 14u, 15u})
    {
        std::copy(element, element + 16, other);
        other[byte] ^= 0x01;
        EXPECT_FALSE(Types::compareMasked(key, KLV::Key(other), mask)) << byte;
    }
    std::copy(element, element + 16, other);
    other[8] ^= 0x04;
    EXPECT_FALSE(Types::compareMasked(key, KLV::Key(other), mask));
    other[8] ^= 0x04;
    other[9] ^= 0x08;
    EXPECT_FALSE(Types::compareMasked(key.rawBuffer(), other, maskBytes, 16));
    EXPECT_TRUE(Types::compareMasked(key.rawBuffer(), other, maskBytes, 9));
}
