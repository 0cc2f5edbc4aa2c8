#pragma once
// The bytes of a UUID and its text forms; the references keep their bytes in the same kind of
// Impl.

#include "KLV/FixedLengthIdentificationType.h"
#include "Types/UUID.h"

namespace Vellum
{
namespace Types
{
struct UUID::Impl : public KLV::FixedLengthIdentificationType<UUID::SIZE>
{
    VELLUM_CLASS_ALLOCATION
    Impl() {}
    explicit Impl(unsigned char const * bytes) : KLV::FixedLengthIdentificationType<UUID::SIZE>(bytes) {}

    void loadFromString(unsigned short const * text, StringRepresentationEncodingType kind) override;
    Templates::wstring toString(StringRepresentationEncodingType kind) const override;
};
} // namespace Types
} // namespace Vellum
