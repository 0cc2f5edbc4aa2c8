#pragma once
// A rational number on the wire: numerator and denominator, two signed 32-bit numbers. A
// denominator of 0 makes the value undefined.

#include "Templates/Rational.h"
#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class Rational : public SimpleDataType
{
public:
    // Keeps the numbers as given: nothing is reduced until normalize().
    Rational(int numerator, int denominator);
    // The rational's numbers, which are in lowest terms.
    Rational(Templates::Rational<int> const & value);
    // Reads 8 bytes.
    explicit Rational(KLV::Value & value);

    int numerator() const;
    int denominator() const;
    bool isUndefined() const;
    // The quotient; for an undefined value the numerator alone.
    double toDouble() const;
    // The value as an edit-rate rational, put in lowest terms by it (an undefined value becomes 1/0
    // or -1/0).
    Templates::Rational<int> value() const;
    // Puts a defined, non-zero value in lowest terms, with the sign on the numerator.
    void normalize();

    // Arithmetic in lowest terms. An undefined operand throws InvalidFormat, and so does a division
    // by 0; the value is then unchanged.
    Rational & operator+=(Rational const & r);
    Rational & operator-=(Rational const & r);
    Rational & operator*=(Rational const & r);
    Rational & operator/=(Rational const & r);

    VELLUM_VALUE_HANDLE(Rational)
};
} // namespace Types
} // namespace Vellum
