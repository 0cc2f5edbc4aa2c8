#pragma once
// The orientation of a picture: one byte, whether made here or read from a file, as the schema
// uses it (the type table gives 4).

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class Orientation : public SimpleDataType
{
public:
    // Reads 1 byte.
    explicit Orientation(KLV::Value & value);
    explicit Orientation(unsigned char value);

    unsigned char value() const;

    VELLUM_VALUE_HANDLE(Orientation)
};
} // namespace Types
} // namespace Vellum
