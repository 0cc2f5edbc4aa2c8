#pragma once
// One byte: 0 is false, anything else true.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class Boolean : public SimpleDataType
{
public:
    // Reads 1 byte.
    explicit Boolean(KLV::Value & value);
    explicit Boolean(bool value);

    bool value() const;

    VELLUM_VALUE_HANDLE(Boolean)
};
} // namespace Types
} // namespace Vellum
