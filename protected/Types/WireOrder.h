#pragma once
// Big-endian numbers in byte buffers: the order of every number on the wire.

#include <type_traits>

#include "Platform/Types.h"

namespace Vellum
{
namespace Types
{
namespace WireOrder
{
// Stores `value` most significant byte first in sizeof(T) bytes.
template <class T>
inline void store(unsigned char * out, T value)
{
    typedef typename std::make_unsigned<T>::type Unsigned;
    uint64 bits = static_cast<Unsigned>(value);
    for (unsigned i = sizeof(T); i != 0; --i)
    {
        out[i - 1] = static_cast<unsigned char>(bits & 0xFF);
        bits >>= 8;
    }
}

// Assembles sizeof(T) bytes, most significant first, into a native number.
template <class T>
inline T load(unsigned char const * in)
{
    typedef typename std::make_unsigned<T>::type Unsigned;
    uint64 bits = 0;
    for (unsigned i = 0; i < sizeof(T); ++i)
        bits = (bits << 8) | in[i];
    return static_cast<T>(static_cast<Unsigned>(bits));
}
} // namespace WireOrder
} // namespace Types
} // namespace Vellum
