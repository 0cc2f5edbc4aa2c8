#pragma once
// A string of 16-bit units, big-endian on the wire, with no terminator there.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class UTF16String : public SimpleDataType
{
public:
    // Reads all that remains of the value. More than 4 GiB throws InvalidLength; an odd number of
    // bytes throws InvalidFormat.
    explicit UTF16String(KLV::Value & value);
    // Copies a zero-terminated text; null is the empty string.
    explicit UTF16String(unsigned short const * text);

    // The units in the host's order, zero-terminated.
    unsigned short const * value() const;
    // Bytes on the wire.
    unsigned int size() const;
    // Units, without the terminator.
    unsigned int stringLength() const;

    VELLUM_VALUE_HANDLE(UTF16String)
};
} // namespace Types
} // namespace Vellum
