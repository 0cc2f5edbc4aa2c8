#pragma once
// Exact rational numbers for edit rates and positions in seconds. A value is always kept in
// lowest terms with a positive denominator; a denominator of 0 (n/0 with n of 1 or -1) carries an
// undefined rate.

#include <limits>
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
__extension__ typedef __int128 RationalInt128;
__extension__ typedef unsigned __int128 RationalUInt128;

// Integer steps on a signed type S through its unsigned twin U: sums and products wrap around
// instead of being undefined, and the magnitude of the most negative value is representable.
template <class S, class U>
struct WrappingArithmetic
{
    static U magnitude(S v) { return v < 0 ? U(U(0) - U(v)) : U(v); }
    static S fromBits(U u) { return static_cast<S>(u); }
    static S negate(S v) { return fromBits(U(U(0) - U(v))); }
    static S add(S a, S b) { return fromBits(U(U(a) + U(b))); }
    static S subtract(S a, S b) { return fromBits(U(U(a) - U(b))); }
    static S multiply(S a, S b) { return fromBits(U(U(a) * U(b))); }

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
    // A divisor for cross-reducing: never 0.
    static U reducer(S a, S b)
    {
        U g = gcd(magnitude(a), magnitude(b));
        return g == 0 ? U(1) : g;
    }
    // v / d for a positive d, the sign kept.
    static S divide(S v, U d)
    {
        U q = magnitude(v) / d;
        return v < 0 ? fromBits(U(U(0) - q)) : fromBits(q);
    }
};

// The arithmetic of Rational<T>: on T itself, and on a type of twice the width in which the
// products of two T values are exact.
template <class T>
struct RationalTraits
{
    static_assert(std::is_integral<T>::value && std::is_signed<T>::value, "a rational needs a signed integer");
    static_assert(sizeof(T) == 4 || sizeof(T) == 8, "a rational is made of 32-bit or 64-bit integers");
    typedef typename std::make_unsigned<T>::type U;
    typedef typename std::conditional<sizeof(T) == 4, int64, RationalInt128>::type W;
    typedef typename std::conditional<sizeof(T) == 4, uint64, RationalUInt128>::type UW;
    typedef WrappingArithmetic<T, U> Narrow;
    typedef WrappingArithmetic<W, UW> Wide;
};
} // namespace Detail

template <class T>
class Rational
{
    typedef Detail::RationalTraits<T> Traits;
    typedef typename Traits::U U;
    typedef typename Traits::W W;
    typedef typename Traits::Narrow Narrow;
    typedef typename Traits::Wide Wide;

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

    // The operands are cross-reduced first and the products formed at twice the width, so that a
    // result is exact whenever it fits in T.
    Rational & operator+=(Rational const & r)
    {
        T a = num_, b = den_, c = r.num_, d = r.den_;
        // a/b + c/d over the least common denominator b/g * d.
        U g = Narrow::reducer(b, d);
        T bg = Narrow::divide(b, g);
        T dg = Narrow::divide(d, g);
        assignReduced(Wide::add(Wide::multiply(a, dg), Wide::multiply(c, bg)), Wide::multiply(bg, d));
        return *this;
    }

    Rational & operator-=(Rational const & r)
    {
        T a = num_, b = den_, c = r.num_, d = r.den_;
        U g = Narrow::reducer(b, d);
        T bg = Narrow::divide(b, g);
        T dg = Narrow::divide(d, g);
        assignReduced(Wide::subtract(Wide::multiply(a, dg), Wide::multiply(c, bg)), Wide::multiply(bg, d));
        return *this;
    }

    Rational & operator*=(Rational const & r)
    {
        T a = num_, b = den_, c = r.num_, d = r.den_;
        U g1 = Narrow::reducer(a, d);
        U g2 = Narrow::reducer(c, b);
        assignReduced(Wide::multiply(Narrow::divide(a, g1), Narrow::divide(c, g2)),
                      Wide::multiply(Narrow::divide(b, g2), Narrow::divide(d, g1)));
        return *this;
    }

    Rational & operator/=(Rational const & r)
    {
        T a = num_, b = den_, c = r.num_, d = r.den_;
        // a/b * d/c
        U g1 = Narrow::reducer(a, c);
        U g2 = Narrow::reducer(b, d);
        assignReduced(Wide::multiply(Narrow::divide(a, g1), Narrow::divide(d, g2)),
                      Wide::multiply(Narrow::divide(b, g2), Narrow::divide(c, g1)));
        return *this;
    }

    Rational & operator+=(T i)
    {
        assignReduced(Wide::add(num_, Wide::multiply(i, den_)), den_);
        return *this;
    }

    Rational & operator-=(T i)
    {
        assignReduced(Wide::subtract(num_, Wide::multiply(i, den_)), den_);
        return *this;
    }

    Rational & operator*=(T i)
    {
        U g = Narrow::reducer(i, den_);
        assignReduced(Wide::multiply(num_, Narrow::divide(i, g)), Narrow::divide(den_, g));
        return *this;
    }

    Rational & operator/=(T i)
    {
        U g = Narrow::reducer(num_, i);
        assignReduced(Narrow::divide(num_, g), Wide::multiply(den_, Narrow::divide(i, g)));
        return *this;
    }

    Rational & operator++()
    {
        assignReduced(Wide::add(num_, den_), den_);
        return *this;
    }
    Rational & operator--()
    {
        assignReduced(Wide::subtract(num_, den_), den_);
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
    // Exact: the cross products are formed as big integers.
    bool operator<(Rational const & r) const
    {
        bool negative = num_ < 0;
        if (negative && !(r.num_ < 0))
            return true;
        if (!negative && !(r.num_ > 0))
            return false;
        U g1 = Narrow::reducer(num_, r.num_);
        U g2 = Narrow::reducer(den_, r.den_);
        Platform::BigUInt left(uint64(Narrow::magnitude(num_) / g1), Platform::HEXADECIMAL);
        left *= Platform::BigUInt(uint64(Narrow::magnitude(r.den_) / g2), Platform::HEXADECIMAL);
        Platform::BigUInt right(uint64(Narrow::magnitude(r.num_) / g1), Platform::HEXADECIMAL);
        right *= Platform::BigUInt(uint64(Narrow::magnitude(den_) / g2), Platform::HEXADECIMAL);
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
        U g = Narrow::gcd(Narrow::magnitude(num_), Narrow::magnitude(den_));
        num_ = Narrow::divide(num_, g);
        den_ = Narrow::divide(den_, g);
        if (den_ < 0)
        {
            num_ = Narrow::negate(num_);
            den_ = Narrow::negate(den_);
        }
    }

    // Takes n/d, formed at twice the width, in lowest terms. A value that does not fit in T
    // wraps around.
    void assignReduced(W n, W d)
    {
        W const low = std::numeric_limits<T>::min();
        W const high = std::numeric_limits<T>::max();
        if (n >= low && n <= high && d >= low && d <= high)
        {
            // The common case: reduce at the narrow width.
            num_ = static_cast<T>(n);
            den_ = static_cast<T>(d);
            normalize();
            return;
        }
        typename Traits::UW g = Wide::gcd(Wide::magnitude(n), Wide::magnitude(d));
        n = Wide::divide(n, g);
        d = Wide::divide(d, g);
        if (d < 0)
        {
            n = Wide::negate(n);
            d = Wide::negate(d);
        }
        num_ = static_cast<T>(n);
        den_ = static_cast<T>(d);
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
// The greatest integer not above r, and the least integer not below it.
template <class T>
T floorOf(Rational<T> const & r)
{
    T q = r.numerator() / r.denominator();
    if (r.numerator() % r.denominator() != 0 && ((r.numerator() < 0) != (r.denominator() < 0)))
        --q;
    return q;
}
template <class T>
T ceilOf(Rational<T> const & r)
{
    T q = r.numerator() / r.denominator();
    if (r.numerator() % r.denominator() != 0 && ((r.numerator() < 0) == (r.denominator() < 0)))
        ++q;
    return q;
}
} // namespace Templates
} // namespace Vellum
