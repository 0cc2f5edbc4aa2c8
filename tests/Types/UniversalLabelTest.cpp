#include "Types/UniversalLabel.h"

#include <gtest/gtest.h>

#include "KLV/Key.h"
#include "Types/IdentifierTestSupport.h"

using namespace Vellum;
using namespace Vellum::IdentifierTest;
using Types::UniversalLabel;

namespace
{
// The default fill key: four zero bytes at the end.
unsigned char const FILL[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01,
                                0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00};

Thrown loadingLabel(char const * text, Types::StringRepresentationEncodingType form = Types::OID)
{
    return thrownBy([&] { UniversalLabel label(w(text).c_str(), form); });
}
} // namespace

TEST(UniversalLabelTest, OIDLeavesOutTrailingZerosAndLoadsThemBack)
{
    UniversalLabel fill(FILL);
    EXPECT_EQ("1.3.53.1.1.1.1.3.1.2.16.1", n(fill.toString()));
    EXPECT_EQ("06.0e.2b.34.01.01.01.01.03.01.02.10.01.00.00.00", n(fill.toString(Types::Dotted)));
    EXPECT_EQ(fill, UniversalLabel(w("1.3.53.1.1.1.1.3.1.2.16.1").c_str(), Types::TypeDefault));
    // Written-out zeros at the end load to the same label.
    EXPECT_EQ(fill, UniversalLabel(w("1.3.53.1.1.1.1.3.1.2.16.1.0.0.0").c_str(), Types::OID));

    // Zeros inside stay, zeros at the end go.
    unsigned char const inner[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x00, 0x00, 0x01,
                                     0x0d, 0x00, 0xff, 0x00, 0x00, 0x00, 0x00, 0x05};
    UniversalLabel withInner(inner);
    EXPECT_EQ("1.3.53.4.0.0.1.13.0.255.0.0.0.0.5", n(withInner.toString()));
    EXPECT_EQ(withInner, UniversalLabel(withInner.toString().c_str(), Types::OID));

    // Nothing but the prefix: all twelve bytes behind it are zero.
    unsigned char const bare[16] = {0x06, 0x0e, 0x2b, 0x34};
    UniversalLabel prefixOnly(bare);
    EXPECT_EQ("1.3.53", n(prefixOnly.toString()));
    EXPECT_EQ(prefixOnly, UniversalLabel(w("1.3.53").c_str(), Types::OID));

    // The OID form assumes the SMPTE prefix: other first bytes do not show in it.
    unsigned char foreign[16];
    std::memcpy(foreign, FILL, 16);
    foreign[0] = 0x07;
    EXPECT_EQ("1.3.53.1.1.1.1.3.1.2.16.1", n(UniversalLabel(foreign).toString()));
}

TEST(UniversalLabelTest, TakesTheBytesOfAKey)
{
    KLV::Key key(FILL);
    UniversalLabel label(key);
    EXPECT_EQ(0, std::memcmp(FILL, label.rawBuffer(), 16));
    EXPECT_EQ(n(key.toString(Types::Dotted)), n(label.toString(Types::Dotted)));
}

TEST(UniversalLabelTest, RefusesMalformedOIDs)
{
    // Twelve bytes follow the prefix; a thirteenth number is one too many.
    struct Row
    {
        char const * text;
        Thrown expected;
    } const rows[] = {{"1.3.52.1.1.1.1", thrown<Exceptions::InvalidLabel>("OID contains initial values not according to type")},
                      {"1.3", thrown<Exceptions::InvalidLength>("Not enough data")},
                      {"", thrown<Exceptions::InvalidLength>("Not enough data")},
                      {"1.3.53.1.256", thrown<Exceptions::InvalidLabel>("OID contains values not in [0 - 255].")},
                      {"1.3.53.1.2.3.4.5.6.7.8.9.10.11.12.13",
                       thrown<Exceptions::InvalidLength>("OID contains more elements than expected")}};
    for (Row const & row : rows)
        EXPECT_EQ(row.expected, loadingLabel(row.text)) << row.text;
    UniversalLabel full(w("1.3.53.1.2.3.4.5.6.7.8.9.10.11.12").c_str(), Types::OID);
    EXPECT_EQ(12, full.rawBuffer()[15]);

    // A key's prefix is one number longer: 1.3.53.2 is a label whose byte 4 is 2, not a key.
    UniversalLabel keyLike(w("1.3.53.2.1").c_str(), Types::OID);
    EXPECT_EQ(0x02, keyLike.rawBuffer()[4]);
    EXPECT_EQ(0x01, keyLike.rawBuffer()[5]);
}
