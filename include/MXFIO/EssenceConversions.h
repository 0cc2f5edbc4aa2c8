#pragma once
// Conversions between edit units of different rates, seconds and essence element keys.

#include "KLV/Key.h"
#include "Platform/Types.h"
#include "Templates/Rational.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MXFIO
{
// A count of edit units at rate `from` as edit units at rate `to` (exact; callers truncate or round).
Templates::Rational<int64> editUnitsConverter(Templates::Rational<int64> const & editUnits,
                                              Templates::Rational<int> const & from,
                                              Templates::Rational<int> const & to);
Templates::Rational<int64> editUnits2Seconds(Templates::Rational<int64> const & editUnits,
                                             Templates::Rational<int> const & editRate);
Templates::Rational<int64> seconds2EditUnits(Templates::Rational<int64> const & seconds,
                                             Templates::Rational<int> const & editRate);
// The Generic Container essence element key of a track number:
// 06.0e.2b.34.01.02.01.01.0d.01.03.01 followed by the four bytes of the number, high first.
KLV::Key trackNumber2Key(unsigned int trackNumber);
// The track number that an essence element key carries in its last four bytes.
unsigned int key2TrackNumber(KLV::Key const & key);
// Whether a data definition is that of picture, sound or data essence.
bool isDataDefinitionEssence(Types::UniversalLabel const & dataDefinition);
} // namespace MXFIO
} // namespace Vellum
