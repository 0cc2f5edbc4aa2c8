#include "Types/CompareMasked.h"

namespace Vellum
{
namespace Types
{
bool compareMasked(unsigned char const * a, unsigned char const * b, unsigned char const * mask, unsigned size)
{
    for (unsigned i = 0; i < size; ++i)
    {
        if (((a[i] ^ b[i]) & mask[i]) != 0)
            return false;
    }
    return true;
}

bool compareMasked(KLV::Key const & a, KLV::Key const & b, KLV::Key const & mask)
{
    return compareMasked(a.rawBuffer(), b.rawBuffer(), mask.rawBuffer(), KLV::Key::SIZE);
}

bool compareMasked(UniversalLabel const & a, UniversalLabel const & b, UniversalLabel const & mask)
{
    return compareMasked(a.rawBuffer(), b.rawBuffer(), mask.rawBuffer(), UniversalLabel::SIZE);
}
} // namespace Types
} // namespace Vellum
