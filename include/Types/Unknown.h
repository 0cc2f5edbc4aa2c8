#pragma once
// The bytes of a value whose type the schema does not know, kept as they are.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class Unknown : public SimpleDataType
{
public:
    // Reads all that remains of the value; one that ends early throws InvalidLength "Invalid data
    // size in Value".
    explicit Unknown(KLV::Value & value);
    // Copies `size` bytes.
    Unknown(unsigned char const * data, unsigned int size);

    // The bytes; never null, even when there are none.
    unsigned char const * value() const;
    unsigned int size() const;

    VELLUM_VALUE_HANDLE(Unknown)
};
} // namespace Types
} // namespace Vellum
