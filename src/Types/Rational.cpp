#include "Types/Rational.h"

#include "Exceptions/Exceptions.h"
#include "Types/ValueHandleImpl.h"
#include "Types/WireOrder.h"

namespace Vellum
{
namespace Types
{
namespace
{
// Wide enough for every sum of two products of 32-bit numbers.
typedef __int128 Wide;

Wide greatestCommonDivisor(Wide a, Wide b)
{
    if (a < 0)
        a = -a;
    if (b < 0)
        b = -b;
    while (b != 0)
    {
        Wide r = a % b;
        a = b;
        b = r;
    }
    return a;
}
} // namespace

struct Rational::Impl : FixedBytes<8>
{
    VELLUM_CLASS_ALLOCATION
    bool undefined;

    Impl(int numerator, int denominator) { store(numerator, denominator); }

    explicit Impl(KLV::Value & value) : FixedBytes<8>(value) { undefined = denominator() == 0; }

    int numerator() const { return WireOrder::load<int32>(bytes); }
    int denominator() const { return WireOrder::load<int32>(bytes + 4); }

    void store(Wide numerator, Wide denominator)
    {
        WireOrder::store(bytes, static_cast<int32>(numerator));
        WireOrder::store(bytes + 4, static_cast<int32>(denominator));
        undefined = denominator == 0;
    }

    // Stores numerator / denominator in lowest terms, the sign on the numerator. The denominator
    // is never 0 here. A result beyond 32 bits keeps its low 32 bits.
    void storeReduced(Wide numerator, Wide denominator)
    {
        if (numerator == 0)
        {
            store(0, 1);
            return;
        }
        Wide g = greatestCommonDivisor(numerator, denominator);
        numerator /= g;
        denominator /= g;
        if (denominator < 0)
        {
            numerator = -numerator;
            denominator = -denominator;
        }
        store(numerator, denominator);
    }
};

Rational::Rational(int numerator, int denominator) : impl_(new Impl(numerator, denominator)) {}

Rational::Rational(Templates::Rational<int> const & value) : impl_(new Impl(value.numerator(), value.denominator()))
{
}

Rational::Rational(KLV::Value & value) : impl_(new Impl(value)) {}

int Rational::numerator() const
{
    return impl_->numerator();
}

int Rational::denominator() const
{
    return impl_->denominator();
}

bool Rational::isUndefined() const
{
    return impl_->undefined;
}

double Rational::toDouble() const
{
    if (impl_->undefined)
        return impl_->numerator();
    return double(impl_->numerator()) / double(impl_->denominator());
}

Templates::Rational<int> Rational::value() const
{
    return Templates::Rational<int>(impl_->numerator(), impl_->denominator());
}

void Rational::normalize()
{
    if (impl_->undefined || impl_->numerator() == 0)
        return;
    impl_->storeReduced(impl_->numerator(), impl_->denominator());
}

// Every operation tests this value, then the operand.
#define VELLUM_CHECK_OPERANDS(r)                                                                  \
    THROW_UNLESS_TEXT(InvalidFormat, !isUndefined(), "this -> isUndefined () == false",           \
                      "Operation with undefined value.");                                         \
    THROW_UNLESS_TEXT(InvalidFormat, !(r).isUndefined(), "r.isUndefined () == false",             \
                      "Operation with undefined value.")

Rational & Rational::operator+=(Rational const & r)
{
    VELLUM_CHECK_OPERANDS(r);
    Wide n = Wide(numerator()) * r.denominator() + Wide(r.numerator()) * denominator();
    impl_->storeReduced(n, Wide(denominator()) * r.denominator());
    return *this;
}

Rational & Rational::operator-=(Rational const & r)
{
    VELLUM_CHECK_OPERANDS(r);
    Wide n = Wide(numerator()) * r.denominator() - Wide(r.numerator()) * denominator();
    impl_->storeReduced(n, Wide(denominator()) * r.denominator());
    return *this;
}

Rational & Rational::operator*=(Rational const & r)
{
    VELLUM_CHECK_OPERANDS(r);
    impl_->storeReduced(Wide(numerator()) * r.numerator(), Wide(denominator()) * r.denominator());
    return *this;
}

Rational & Rational::operator/=(Rational const & r)
{
    VELLUM_CHECK_OPERANDS(r);
    int const divisorNumerator = r.numerator();
    THROW_UNLESS_TEXT(InvalidFormat, divisorNumerator != 0, "r_num != 0", "Division by 0.");
    impl_->storeReduced(Wide(numerator()) * r.denominator(), Wide(denominator()) * divisorNumerator);
    return *this;
}

#undef VELLUM_CHECK_OPERANDS

VELLUM_DEFINE_VALUE_HANDLE(Rational)
} // namespace Types
} // namespace Vellum
