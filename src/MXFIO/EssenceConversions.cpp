#include "MXFIO/EssenceConversions.h"

#include "Exceptions/Exceptions.h"
#include "Metadata/Structural/SubclassHelpers.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
Templates::Rational<int64> wide(Templates::Rational<int> const & r)
{
    return Templates::Rational<int64>(r.numerator(), r.denominator());
}
} // namespace

Templates::Rational<int64> editUnitsConverter(Templates::Rational<int64> const & editUnits,
                                              Templates::Rational<int> const & from,
                                              Templates::Rational<int> const & to)
{
    THROW_UNLESS(InvalidValue, from.numerator() != 0, "Edit rate of zero.");
    // units / from * to, each rate a count of units per second.
    Templates::Rational<int64> result(editUnits);
    result *= wide(to);
    result /= wide(from);
    return result;
}

Templates::Rational<int64> editUnits2Seconds(Templates::Rational<int64> const & editUnits,
                                             Templates::Rational<int> const & editRate)
{
    THROW_UNLESS(InvalidValue, editRate.numerator() != 0, "Edit rate of zero.");
    Templates::Rational<int64> result(editUnits);
    result /= wide(editRate);
    return result;
}

Templates::Rational<int64> seconds2EditUnits(Templates::Rational<int64> const & seconds,
                                             Templates::Rational<int> const & editRate)
{
    Templates::Rational<int64> result(seconds);
    result *= wide(editRate);
    return result;
}

KLV::Key trackNumber2Key(unsigned int trackNumber)
{
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01,
                               0x0d, 0x01, 0x03, 0x01, 0x00, 0x00, 0x00, 0x00};
    bytes[12] = static_cast<unsigned char>(trackNumber >> 24);
    bytes[13] = static_cast<unsigned char>(trackNumber >> 16);
    bytes[14] = static_cast<unsigned char>(trackNumber >> 8);
    bytes[15] = static_cast<unsigned char>(trackNumber);
    return KLV::Key(bytes);
}

unsigned int key2TrackNumber(KLV::Key const & key)
{
    return (unsigned(key[12]) << 24) | (unsigned(key[13]) << 16) | (unsigned(key[14]) << 8) | unsigned(key[15]);
}

bool isDataDefinitionEssence(Types::UniversalLabel const & dataDefinition)
{
    return Metadata::Structural::isEssenceDataDefinition(dataDefinition);
}
} // namespace MXFIO
} // namespace Vellum
