#pragma once
// A rational number on the wire: numerator and denominator, two signed 32-bit numbers. A
// denominator of 0 makes the value undefined.

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
    // Reads 8 bytes.
    explicit Rational(KLV::Value & value);

    int numerator() const;
    int denominator() const;
    bool isUndefined() const;
    // The quotient; for an undefined value the numerator alone.
    double toDouble() const;
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
