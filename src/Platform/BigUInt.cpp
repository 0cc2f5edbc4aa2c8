#include "Platform/BigUInt.h"

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Platform
{
BigUInt::BigUInt(uint64 value, unsigned short base) : base_(base)
{
    THROW_UNLESS_TEXT(InvalidValue, base >= BINARY && base <= HEXADECIMAL,
                      "IS_INSIDE(Vellum::Platform::Int16 (BINARY), base, Vellum::Platform::Int16 (HEXADECIMAL))",
                      "Invalid base.");
    while (value != 0)
    {
        digits_.push_back(static_cast<unsigned char>(value % base));
        value /= base;
    }
}

BigUInt::BigUInt(BigUInt const & other) = default;

BigUInt & BigUInt::operator=(BigUInt const & other) = default;

BigUInt::~BigUInt() {}

BigUInt & BigUInt::operator*=(BigUInt const & multiplier)
{
    THROW_UNLESS(InvalidValue, base_ == multiplier.base_, "The two objects, must have the same base.");
    Templates::vector<unsigned char> const & a = digits_;
    Templates::vector<unsigned char> const & b = multiplier.digits_;
    Templates::vector<unsigned char> product;
    if (!a.empty() && !b.empty())
    {
        // Schoolbook: every digit pair lands at the sum of its positions, the carry moving up.
        product.assign(a.size() + b.size() - 1, 0);
        for (std::size_t i = 0; i < a.size(); ++i)
        {
            unsigned carry = 0;
            std::size_t k = i;
            for (std::size_t j = 0; j < b.size(); ++j, ++k)
            {
                unsigned sum = unsigned(product[k]) + unsigned(a[i]) * unsigned(b[j]) + carry;
                product[k] = static_cast<unsigned char>(sum % base_);
                carry = sum / base_;
            }
            for (; carry != 0; ++k)
            {
                if (k == product.size())
                    product.push_back(0);
                unsigned sum = unsigned(product[k]) + carry;
                product[k] = static_cast<unsigned char>(sum % base_);
                carry = sum / base_;
            }
        }
    }
    digits_.swap(product);
    return *this;
}

int BigUInt::compare(BigUInt const & compar) const
{
    THROW_UNLESS(InvalidValue, base_ == compar.base_, "The two objects, must have the same base.");
    std::size_t length = digits_.size() > compar.digits_.size() ? digits_.size() : compar.digits_.size();
    for (std::size_t i = length; i-- != 0;)
    {
        unsigned mine = i < digits_.size() ? digits_[i] : 0u;
        unsigned theirs = i < compar.digits_.size() ? compar.digits_[i] : 0u;
        if (mine != theirs)
            return mine < theirs ? -1 : 1;
    }
    return 0;
}

bool BigUInt::operator==(BigUInt const & compar) const
{
    return compare(compar) == 0;
}

bool BigUInt::operator!=(BigUInt const & compar) const
{
    return compare(compar) != 0;
}

bool BigUInt::operator<(BigUInt const & compar) const
{
    return compare(compar) < 0;
}

bool BigUInt::operator<=(BigUInt const & compar) const
{
    return compare(compar) <= 0;
}

bool BigUInt::operator>(BigUInt const & compar) const
{
    return compare(compar) > 0;
}

bool BigUInt::operator>=(BigUInt const & compar) const
{
    return compare(compar) >= 0;
}

bool BigUInt::value(uint64 & out) const
{
    uint64 const maximum = ~uint64(0);
    out = 0;
    uint64 power = 1;
    for (std::size_t i = 0; i < digits_.size(); ++i)
    {
        if (i != 0)
        {
            if (power > maximum / base_)
                return false;
            power *= base_;
        }
        uint64 digit = digits_[i];
        if (digit != 0 && power > maximum / digit)
            return false;
        uint64 term = digit * power;
        if (out > maximum - term)
            return false;
        out += term;
    }
    return true;
}

unsigned short BigUInt::base() const
{
    return base_;
}

Templates::vector<unsigned char> const & BigUInt::digits() const
{
    return digits_;
}
} // namespace Platform
} // namespace Vellum
