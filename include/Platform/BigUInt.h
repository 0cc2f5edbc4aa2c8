#pragma once
// An unsigned integer of any size, held as digits in a chosen base from 2 to 256, least
// significant first. It lets exact comparisons of rationals multiply without overflow.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Platform
{
class BigUInt
{
public:
    VELLUM_CLASS_ALLOCATION
    // Throws Exceptions::InvalidValue for a base outside 2 to 256.
    BigUInt(uint64 value, unsigned short base);
    BigUInt(BigUInt const & other);
    BigUInt & operator=(BigUInt const & other);
    virtual ~BigUInt();

    // Both numbers must have the same base (Exceptions::InvalidValue otherwise); so must the
    // operands of the comparisons.
    BigUInt & operator*=(BigUInt const & multiplier);

    bool operator==(BigUInt const & compar) const;
    bool operator!=(BigUInt const & compar) const;
    bool operator<(BigUInt const & compar) const;
    bool operator<=(BigUInt const & compar) const;
    bool operator>(BigUInt const & compar) const;
    bool operator>=(BigUInt const & compar) const;

    // The number as 64 bits; false when it does not fit, with out as far as it was built.
    bool value(uint64 & out) const;

    unsigned short base() const;
    // Least significant first; no leading zero digits (zero has none).
    Templates::vector<unsigned char> const & digits() const;

private:
    // -1, 0 or 1 as this is below, equal to or above compar.
    int compare(BigUInt const & compar) const;

    unsigned short base_;
    Templates::vector<unsigned char> digits_;
};
} // namespace Platform
} // namespace Vellum
