#include "MXFIO/EssenceConversions.h"

#include "Exceptions/Exceptions.h"
#include "Metadata/Structural/DataDefinitionULs.h"

#include <gtest/gtest.h>

using namespace Vellum;
using Templates::Rational;

TEST(EssenceConversions, RatesSecondsAndKeys)
{
    // Half a second is 12.5 frames at 25, 24000 samples at 48 kHz, 15000/1001 units at 30000/1001.
    Rational<int64> half(1, 2);
    EXPECT_EQ(MXFIO::seconds2EditUnits(half, Rational<int>(25, 1)), Rational<int64>(25, 2));
    EXPECT_EQ(MXFIO::seconds2EditUnits(half, Rational<int>(48000, 1)), Rational<int64>(24000, 1));
    EXPECT_EQ(MXFIO::seconds2EditUnits(half, Rational<int>(30000, 1001)), Rational<int64>(15000, 1001));
    EXPECT_EQ(MXFIO::editUnits2Seconds(Rational<int64>(1001), Rational<int>(30000, 1001)), Rational<int64>(1002001, 30000));
    // 3 frames at 25 are 5760 samples at 48 kHz, and back.
    EXPECT_EQ(MXFIO::editUnitsConverter(Rational<int64>(3), Rational<int>(25, 1), Rational<int>(48000, 1)),
              Rational<int64>(5760));
    EXPECT_EQ(MXFIO::editUnitsConverter(Rational<int64>(5760), Rational<int>(48000, 1), Rational<int>(25, 1)),
              Rational<int64>(3));
    // A rate of zero is refused rather than divided by.
    EXPECT_THROW(MXFIO::editUnits2Seconds(Rational<int64>(1), Rational<int>(0, 1)), Exceptions::InvalidValue);

    KLV::Key key = MXFIO::trackNumber2Key(0x15010501);
    unsigned char const expected[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01,
                                        0x0d, 0x01, 0x03, 0x01, 0x15, 0x01, 0x05, 0x01};
    EXPECT_EQ(key, KLV::Key(expected));
    EXPECT_EQ(0xff010580u, MXFIO::key2TrackNumber(MXFIO::trackNumber2Key(0xff010580)));

    EXPECT_TRUE(MXFIO::isDataDefinitionEssence(Metadata::Structural::DataDefinitionULs::picture()));
    EXPECT_TRUE(MXFIO::isDataDefinitionEssence(Metadata::Structural::DataDefinitionULs::audio()));
    EXPECT_FALSE(MXFIO::isDataDefinitionEssence(Metadata::Structural::DataDefinitionULs::timecode12MActive()));
}
