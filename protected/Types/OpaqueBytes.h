#pragma once
// The Impl base of values kept as a run of bytes of any length.

#include "KLV/Value.h"
#include "Platform/MallocAlloc.h"
#include "Templates/Containers.h"
#include "Types/ValueBytes.h"

namespace Vellum
{
namespace Types
{
struct OpaqueBytes
{
    VELLUM_CLASS_ALLOCATION
    Templates::vector<unsigned char> bytes;

    OpaqueBytes() {}
    OpaqueBytes(unsigned char const * data, uint64 size) : bytes(data, data + size) {}
    explicit OpaqueBytes(KLV::Value & value) { ValueBytes::readRemaining(value, bytes); }

    // Never null: an empty run points at a zero byte.
    unsigned char const * rawBuffer() const
    {
        static unsigned char const none = 0;
        return bytes.empty() ? &none : bytes.data();
    }
    // The size in 16 bits, as the interface of simple values has it.
    unsigned short size() const { return static_cast<unsigned short>(bytes.size()); }
};
} // namespace Types
} // namespace Vellum
