#pragma once
// A stream of opaque bytes, kept as they are on the wire.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class DataStream : public SimpleDataType
{
public:
    // Reads all that remains of the value; one that ends early throws InvalidLength "Invalid data
    // size in Value".
    explicit DataStream(KLV::Value & value);
    // Copies `size` bytes.
    DataStream(unsigned char const * data, unsigned int size);

    // The bytes; never null, even when there are none.
    unsigned char const * value() const;
    unsigned int size() const;

    VELLUM_VALUE_HANDLE(DataStream)
};
} // namespace Types
} // namespace Vellum
