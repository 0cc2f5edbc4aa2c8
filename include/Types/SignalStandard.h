#pragma once
// The signal standard of a picture: one byte.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class SignalStandard : public SimpleDataType
{
public:
    // Reads 1 byte.
    explicit SignalStandard(KLV::Value & value);
    explicit SignalStandard(unsigned char value);

    unsigned char value() const;

    VELLUM_VALUE_HANDLE(SignalStandard)
};
} // namespace Types
} // namespace Vellum
