#pragma once
// The integer values: Int8 to Int64, UInt8 to UInt64, Length and Position. Each holds the bytes
// of its number in wire order (big-endian) and assembles the native number in value().

#include "Platform/Types.h"
#include "Types/SimpleDataType.h"
#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
// Declares one integer class over the native type `Native`. Each has: a constructor that reads
// sizeof(Native) bytes of a KLV value (a shorter value throws InvalidLength "Invalid data size in
// Value"), one from the native number, copy and assignment (which copy the bytes), and value().
#define VELLUM_DECLARE_INTEGER_VALUE(Name, Native)                                                \
    class Name : public SimpleDataType                                                            \
    {                                                                                             \
    public:                                                                                       \
        typedef Native NativeType;                                                                \
                                                                                                  \
        explicit Name(KLV::Value & value);                                                        \
        explicit Name(Native value);                                                              \
                                                                                                  \
        Native value() const;                                                                     \
                                                                                                  \
        VELLUM_VALUE_HANDLE(Name)                                                                 \
    };

VELLUM_DECLARE_INTEGER_VALUE(Int8, signed char)
VELLUM_DECLARE_INTEGER_VALUE(Int16, Platform::Int16)
VELLUM_DECLARE_INTEGER_VALUE(Int32, Platform::Int32)
VELLUM_DECLARE_INTEGER_VALUE(Int64, Platform::Int64)
VELLUM_DECLARE_INTEGER_VALUE(UInt8, unsigned char)
VELLUM_DECLARE_INTEGER_VALUE(UInt16, Platform::UInt16)
VELLUM_DECLARE_INTEGER_VALUE(UInt32, Platform::UInt32)
VELLUM_DECLARE_INTEGER_VALUE(UInt64, Platform::UInt64)
// A length in bytes or edit units: a signed 64-bit number.
VELLUM_DECLARE_INTEGER_VALUE(Length, Platform::Int64)
// A position in edit units: a signed 64-bit number.
VELLUM_DECLARE_INTEGER_VALUE(Position, Platform::Int64)

#undef VELLUM_DECLARE_INTEGER_VALUE
} // namespace Types
} // namespace Vellum
