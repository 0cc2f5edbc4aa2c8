#pragma once
// Narrowing of 64-bit sizes to 32 bits, refused with "Type size exceeded" when the value does not
// fit. The exception class is the caller's: file code reports IOError, metadata and index code
// their own classes.

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Templates
{
template <class E = Exceptions::IOError>
inline unsigned int safeCast(uint64 value)
{
    if (value > 0xFFFFFFFFull)
        throw E("Type size exceeded", __FILE__, __LINE__);
    return static_cast<unsigned int>(value);
}
} // namespace Templates
} // namespace Vellum
