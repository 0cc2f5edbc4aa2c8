#pragma once
// Fixed-width numbers and the 16-bit text unit used throughout the library.

#include <cstddef>
#include <cstdint>

namespace Vellum
{
typedef std::int64_t int64;
typedef std::uint64_t uint64;
typedef std::int32_t int32;
typedef std::uint32_t uint32;

namespace Platform
{
typedef std::int16_t Int16;
typedef std::uint16_t UInt16;
typedef std::int32_t Int32;
typedef std::uint32_t UInt32;
typedef std::int64_t Int64;
typedef std::uint64_t UInt64;
// One unit of interface text (UTF-16).
typedef unsigned short wchar;

// Bases accepted by BigUInt.
enum NumericBase
{
    BINARY = 2,
    DECIMAL = 10,
    HEXADECIMAL = 256
};
} // namespace Platform
} // namespace Vellum
