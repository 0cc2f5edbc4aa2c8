#pragma once
// A two-part version: major and minor, one byte each.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class VersionType : public SimpleDataType
{
public:
    // Reads 2 bytes.
    explicit VersionType(KLV::Value & value);
    VersionType(unsigned char major, unsigned char minor);

    unsigned char major() const;
    unsigned char minor() const;

    VELLUM_VALUE_HANDLE(VersionType)
};
} // namespace Types
} // namespace Vellum
