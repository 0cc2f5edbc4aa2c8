#include "Types/UUID.h"

#include <gtest/gtest.h>

#include "Types/IdentifierTestSupport.h"

using namespace Vellum;
using namespace Vellum::IdentifierTest;
using Types::UUID;

namespace
{
unsigned char const COUNTING[16] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                                    0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff};

Thrown loadingUUID(char const * text)
{
    return thrownBy([&] { UUID uuid(w(text).c_str(), Types::RFC4122); });
}
} // namespace

TEST(UUIDTest, PrintsAndLoadsTheHyphenatedForm)
{
    UUID uuid(COUNTING);
    EXPECT_EQ("00112233-4455-6677-8899-aabbccddeeff", n(uuid.toString()));
    EXPECT_EQ("00112233-4455-6677-8899-aabbccddeeff", n(uuid.toString(Types::RFC4122)));
    EXPECT_EQ(uuid, UUID(w("00112233-4455-6677-8899-aabbccddeeff").c_str(), Types::TypeDefault));
    EXPECT_EQ(uuid, UUID(w("00112233-4455-6677-8899-AABBCCDDEEFF").c_str(), Types::RFC4122));
    // Any separator that is not a digit will do.
    EXPECT_EQ(uuid, UUID(w("00112233_4455 6677:8899{aabbccddeeff").c_str(), Types::RFC4122));

    unsigned char const low[16] = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08,
                                   0x09, 0x0a, 0x0b, 0x0c, 0x0d, 0x0e, 0x0f, 0x00};
    EXPECT_EQ("01020304-0506-0708-090a-0b0c0d0e0f00", n(UUID(low).toString()));
}

TEST(UUIDTest, RefusesMalformedText)
{
    struct Row
    {
        char const * text;
        Thrown expected;
    } const rows[] = {
        {"00112233-4455-6677-8899-aabbccddeef", thrown<Exceptions::InvalidLength>("Not enough data")},
        // The hyphens count: thirty-two digits alone are too short.
        {"00112233445566778899aabbccddeeff", thrown<Exceptions::InvalidLength>("Not enough data")},
        // A digit where a separator belongs.
        {"001122334-455-6677-8899-aabbccddeeff",
         thrown<Exceptions::InvalidLabel>("Expections an separator that was not a hexadecimal character")},
        {"00112233-4455-6677-8899-aabbccddeegf", thrown<Exceptions::InvalidLabel>("Label contains non Hexadecimal characters")}};
    for (Row const & row : rows)
        EXPECT_EQ(row.expected, loadingUUID(row.text)) << row.text;
}
