#pragma once
// One 16-bit text unit, big-endian on the wire.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class UTF16 : public SimpleDataType
{
public:
    // Reads 2 bytes.
    explicit UTF16(KLV::Value & value);
    explicit UTF16(unsigned short value);

    unsigned short value() const;

    VELLUM_VALUE_HANDLE(UTF16)
};
} // namespace Types
} // namespace Vellum
