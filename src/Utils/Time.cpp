#include "Utils/Time.h"

namespace Vellum
{
namespace Utils
{
int64 Time::convertSecondsToEditUnit(Templates::Rational<int> const & seconds,
                                     Templates::Rational<int> const & editRate)
{
    return convertSecondsToEditUnit(Templates::Rational<int64>(seconds.numerator(), seconds.denominator()),
                                    editRate);
}

int64 Time::convertSecondsToEditUnit(Templates::Rational<int64> const & seconds,
                                     Templates::Rational<int> const & editRate)
{
    if (seconds.numerator() == -1 && seconds.denominator() == 1)
        return -1;
    Templates::Rational<int64> units(seconds);
    units *= Templates::Rational<int64>(editRate.numerator(), editRate.denominator());
    if (units.denominator() == 0)
        return -1;
    return units.numerator() / units.denominator();
}
} // namespace Utils
} // namespace Vellum
