// The one- and two-byte values: Boolean, Orientation, SignalStandard, UTF16.
#include "Types/Boolean.h"
#include "Types/Orientation.h"
#include "Types/SignalStandard.h"
#include "Types/UTF16.h"

#include "Types/SimpleTypes.h"
#include "Types/ValueHandleImpl.h"

namespace Vellum
{
namespace Types
{
struct Boolean::Impl : SimpleTypes<unsigned char>
{
    VELLUM_CLASS_ALLOCATION
    using SimpleTypes<unsigned char>::SimpleTypes;
};

Boolean::Boolean(KLV::Value & value) : impl_(new Impl(value)) {}

Boolean::Boolean(bool value) : impl_(new Impl(static_cast<unsigned char>(value ? 1 : 0))) {}

bool Boolean::value() const
{
    return impl_->value() != 0;
}

VELLUM_DEFINE_VALUE_HANDLE(Boolean)

struct Orientation::Impl : SimpleTypes<unsigned char>
{
    VELLUM_CLASS_ALLOCATION
    using SimpleTypes<unsigned char>::SimpleTypes;
};

Orientation::Orientation(KLV::Value & value) : impl_(new Impl(value)) {}

Orientation::Orientation(unsigned char value) : impl_(new Impl(value)) {}

unsigned char Orientation::value() const
{
    return impl_->value();
}

VELLUM_DEFINE_VALUE_HANDLE(Orientation)

struct SignalStandard::Impl : SimpleTypes<unsigned char>
{
    VELLUM_CLASS_ALLOCATION
    using SimpleTypes<unsigned char>::SimpleTypes;
};

SignalStandard::SignalStandard(KLV::Value & value) : impl_(new Impl(value)) {}

SignalStandard::SignalStandard(unsigned char value) : impl_(new Impl(value)) {}

unsigned char SignalStandard::value() const
{
    return impl_->value();
}

VELLUM_DEFINE_VALUE_HANDLE(SignalStandard)

struct UTF16::Impl : SimpleTypes<unsigned short>
{
    VELLUM_CLASS_ALLOCATION
    using SimpleTypes<unsigned short>::SimpleTypes;
};

UTF16::UTF16(KLV::Value & value) : impl_(new Impl(value)) {}

UTF16::UTF16(unsigned short value) : impl_(new Impl(value)) {}

unsigned short UTF16::value() const
{
    return impl_->value();
}

VELLUM_DEFINE_VALUE_HANDLE(UTF16)
} // namespace Types
} // namespace Vellum
