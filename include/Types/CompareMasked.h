#pragma once
// Comparison of two 16-byte identifiers on the bits a mask selects, as for essence element keys
// whose element count or version bits may differ.

#include "KLV/Key.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Types
{
// Whether a and b agree on every bit set in mask, over `size` bytes.
bool compareMasked(unsigned char const * a, unsigned char const * b, unsigned char const * mask, unsigned size);
// The same over the sixteen bytes of two keys.
bool compareMasked(KLV::Key const & a, KLV::Key const & b, KLV::Key const & mask);
bool compareMasked(UniversalLabel const & a, UniversalLabel const & b, UniversalLabel const & mask);
} // namespace Types
} // namespace Vellum
