#pragma once
// An opaque data value, kept as its bytes are on the wire.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class DataValue : public SimpleDataType
{
public:
    // Reads all that remains of the value; one that ends early throws InvalidLength "Invalid data
    // size in Value".
    explicit DataValue(KLV::Value & value);
    // Copies `size` bytes.
    DataValue(unsigned char const * data, unsigned int size);

    // The bytes; never null, even when there are none.
    unsigned char const * value() const;
    unsigned int size() const;

    VELLUM_VALUE_HANDLE(DataValue)
};
} // namespace Types
} // namespace Vellum
