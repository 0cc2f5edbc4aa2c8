#pragma once
// Exact rational numbers for edit rates and positions in seconds. A value is always kept in
// lowest terms with a positive denominator; a denominator of 0 (n/0 with n of 1 or -1) carries an
// undefined rate.

#include <type_traits>

#include "Platform/BigUInt.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"

namespace Vellum
{
namespace Templates
{
namespace Detail
{
// Integer steps of the rational arithmetic. Products and sums are formed in the unsigned type of
// the same width, so that a value out of range wraps around instead of being undefined, and the
// magnitude of the most negative value is representable.
template <class T>
struct RationalArithmetic
{
    static_assert(std::is_integral<T>::value && std::is_signed<T>::value, "a rational needs a signed integer");
    static_assert(sizeof(T) >= sizeof(int), "narrower types would be promoted to int");
    typedef typename std::make_unsigned<T>::type U;

    static U magnitude(T v) { return v < 0 ? U(U(0) - U(v)) : U(v); }
    static T fromBits(U u) { return static_cast<T>(u); }
    static T negate(T v) { return fromBits(U(U(0) - U(v))); }
    static T add(T a, T b) { return fromBits(U(U(a) + U(b))); }
    static T subtract(T a, T b) { return fromBits(U(U(a) - U(b))); }
    static T multiply(T a, T b) { return fromBits(U(U(a) * U(b))); }

    // Euclid's algorithm by remainders; gcd(0, 0) is 0.
    static U gcd(U a, U b)
    {
        while (b != 0)
        {
            U r = a % b;
            a = b;
            b = r;
        }
        return a;
    }
    // The divisor for cross-reducing: never 0.
    static U reducer(T a, T b)
    {
        U g = gcd(magnitude(a), magnitude(b));
        return g == 0 ? U(1) : g;
    }
    // v / d for a positive d, the sign kept.
    static T divide(T v, U d)
    {
        U q = magnitude(v) / d;
        return v < 0 ? fromBits(U(U(0) - q)) : fromBits(q);
    }
};
} // namespace Detail

template <class T>
class Rational
{
    typedef Detail::RationalArithmetic<T> Arithmetic;
    typedef typename Arithmetic::U U;

public:
    VELLUM_CLASS_ALLOCATION
    typedef T int_type;

    Rational() : num_(0), den_(1) {}
    Rational(T value) : num_(value), den_(1) {}
    Rational(T num, T den) : num_(num), den_(den) { normalize(); }
    Rational(Rational const & other) = default;
    Rational & operator=(Rational const & other) = default;
    Rational & operator=(T value)
    {
        num_ = value;
        den_ = 1;
        return *this;
    }

    Rational & assign(T num, T den)
    {
        num_ = num;
        den_ = den;
        normalize();
        return *this;
    }

    T numerator() const { return num_; }
    T denominator() const { return den_; }

    Rational & operator+=(Rational const & r)
    {
        T a = num_, b = den_, c = r.num_, d = r.den_;
        // a/b + c/d over the least common denominator: b/g * d.
        U g = Arithmetic::reducer(b, d);
        T bg = Arithmetic::divide(b, g);
        T dg = Arithmetic::divide(d, g);
        num_ = Arithmetic::add(Arithmetic::multiply(a, dg), Arithmetic::multiply(c, bg));
        den_ = Arithmetic::multiply(bg, d);
        normalize();
        return *this;
    }

    Rational & operator-=(Rational const & r)
    {
        T a = num_, b = den_, c = r.num_, d = r.den_;
        U g = Arithmetic::reducer(b, d);
        T bg = Arithmetic::divide(b, g);
        T dg = Arithmetic::divide(d, g);
        num_ = Arithmetic::subtract(Arithmetic::multiply(a, dg), Arithmetic::multiply(c, bg));
        den_ = Arithmetic::multiply(bg, d);
        normalize();
        return *this;
    }

    Rational & operator*=(Rational const & r)
    {
        T a = num_, b = den_, c = r.num_, d = r.den_;
        // Cross-reduce first so that the products stay small.
        U g1 = Arithmetic::reducer(a, d);
        U g2 = Arithmetic::reducer(c, b);
        num_ = Arithmetic::multiply(Arithmetic::divide(a, g1), Arithmetic::divide(c, g2));
        den_ = Arithmetic::multiply(Arithmetic::divide(b, g2), Arithmetic::divide(d, g1));
        normalize();
        return *this;
    }

    Rational & operator/=(Rational const & r)
    {
        T a = num_, b = den_, c = r.num_, d = r.den_;
        // a/b * d/c, cross-reduced.
        U g1 = Arithmetic::reducer(a, c);
        U g2 = Arithmetic::reducer(b, d);
        num_ = Arithmetic::multiply(Arithmetic::divide(a, g1), Arithmetic::divide(d, g2));
        den_ = Arithmetic::multiply(Arithmetic::divide(b, g2), Arithmetic::divide(c, g1));
        normalize();
        return *this;
    }

    Rational & operator+=(T i)
    {
        num_ = Arithmetic::add(num_, Arithmetic::multiply(i, den_));
        normalize();
        return *this;
    }

    Rational & operator-=(T i)
    {
        num_ = Arithmetic::subtract(num_, Arithmetic::multiply(i, den_));
        normalize();
        return *this;
    }

    Rational & operator*=(T i)
    {
        U g = Arithmetic::reducer(i, den_);
        num_ = Arithmetic::multiply(num_, Arithmetic::divide(i, g));
        den_ = Arithmetic::divide(den_, g);
        normalize();
        return *this;
    }

    Rational & operator/=(T i)
    {
        U g = Arithmetic::reducer(num_, i);
        num_ = Arithmetic::divide(num_, g);
        den_ = Arithmetic::multiply(den_, Arithmetic::divide(i, g));
        normalize();
        return *this;
    }

    Rational & operator++()
    {
        num_ = Arithmetic::add(num_, den_);
        normalize();
        return *this;
    }
    Rational & operator--()
    {
        num_ = Arithmetic::subtract(num_, den_);
        normalize();
        return *this;
    }
    Rational operator++(int)
    {
        Rational before(*this);
        ++*this;
        return before;
    }
    Rational operator--(int)
    {
        Rational before(*this);
        --*this;
        return before;
    }

    bool operator!() const { return num_ == 0; }

    bool operator==(Rational const & r) const { return num_ == r.num_ && den_ == r.den_; }
    bool operator!=(Rational const & r) const { return !(*this == r); }
    // Exact: the cross products are formed as big integers, so nothing overflows.
    bool operator<(Rational const & r) const
    {
        bool negative = num_ < 0;
        if (negative && !(r.num_ < 0))
            return true;
        if (!negative && !(r.num_ > 0))
            return false;
        U g1 = Arithmetic::reducer(num_, r.num_);
        U g2 = Arithmetic::reducer(den_, r.den_);
        Platform::BigUInt left(uint64(Arithmetic::magnitude(num_) / g1), Platform::HEXADECIMAL);
        left *= Platform::BigUInt(uint64(Arithmetic::magnitude(r.den_) / g2), Platform::HEXADECIMAL);
        Platform::BigUInt right(uint64(Arithmetic::magnitude(r.num_) / g1), Platform::HEXADECIMAL);
        right *= Platform::BigUInt(uint64(Arithmetic::magnitude(den_) / g2), Platform::HEXADECIMAL);
        return negative ? right < left : left < right;
    }
    bool operator>(Rational const & r) const { return r < *this; }
    bool operator<=(Rational const & r) const { return !(r < *this); }
    bool operator>=(Rational const & r) const { return !(*this < r); }

    bool operator==(T i) const { return den_ == 1 && num_ == i; }
    bool operator!=(T i) const { return !(*this == i); }
    bool operator<(T i) const { return *this < Rational(i); }
    bool operator>(T i) const { return Rational(i) < *this; }
    bool operator<=(T i) const { return !(Rational(i) < *this); }
    bool operator>=(T i) const { return !(*this < Rational(i)); }

private:
    void normalize()
    {
        if (num_ == 0)
        {
            den_ = 1;
            return;
        }
        // A denominator of 0 makes the divisor the numerator itself: the value becomes 1/0 or -1/0.
        U g = Arithmetic::gcd(Arithmetic::magnitude(num_), Arithmetic::magnitude(den_));
        num_ = Arithmetic::divide(num_, g);
        den_ = Arithmetic::divide(den_, g);
        if (den_ < 0)
        {
            num_ = Arithmetic::negate(num_);
            den_ = Arithmetic::negate(den_);
        }
    }

    T num_;
    T den_;
};

template <class T>
Rational<T> operator-(Rational<T> const & r)
{
    return Rational<T>(0) -= r;
}

template <class T>
Rational<T> operator+(Rational<T> a, Rational<T> const & b)
{
    return a += b;
}
template <class T>
Rational<T> operator-(Rational<T> a, Rational<T> const & b)
{
    return a -= b;
}
template <class T>
Rational<T> operator*(Rational<T> a, Rational<T> const & b)
{
    return a *= b;
}
template <class T>
Rational<T> operator/(Rational<T> a, Rational<T> const & b)
{
    return a /= b;
}
template <class T>
Rational<T> operator+(Rational<T> a, typename Rational<T>::int_type b)
{
    return a += b;
}
template <class T>
Rational<T> operator-(Rational<T> a, typename Rational<T>::int_type b)
{
    return a -= b;
}
template <class T>
Rational<T> operator*(Rational<T> a, typename Rational<T>::int_type b)
{
    return a *= b;
}
template <class T>
Rational<T> operator/(Rational<T> a, typename Rational<T>::int_type b)
{
    return a /= b;
}
} // namespace Templates
} // namespace Vellum
