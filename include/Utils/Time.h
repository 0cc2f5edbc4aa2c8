#pragma once
// Conversions between times in seconds and edit units.

#include "Platform/Types.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace Utils
{
class Time
{
public:
    // The whole edit units in a time, truncated toward zero. -1/1 second stands for "no value"
    // and gives -1; so does a time without a defined value (a denominator of 0).
    static int64 convertSecondsToEditUnit(Templates::Rational<int> const & seconds,
                                          Templates::Rational<int> const & editRate);
    static int64 convertSecondsToEditUnit(Templates::Rational<int64> const & seconds,
                                          Templates::Rational<int> const & editRate);

private:
    Time();
};
} // namespace Utils
} // namespace Vellum
