#pragma once
// A string of 7-bit characters, one byte each, with no terminator on the wire.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class ISO7String : public SimpleDataType
{
public:
    // Reads all that remains of the value; more than 4 GiB throws InvalidLength.
    explicit ISO7String(KLV::Value & value);
    // Copies a zero-terminated text; null is the empty string.
    explicit ISO7String(char const * text);

    // The characters, zero-terminated.
    char const * value() const;
    // Bytes on the wire.
    unsigned int size() const;
    // Characters, without the terminator.
    unsigned int stringLength() const;

    VELLUM_VALUE_HANDLE(ISO7String)
};
} // namespace Types
} // namespace Vellum
