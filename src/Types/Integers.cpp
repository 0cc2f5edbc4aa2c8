#include "Types/Integers.h"

#include "Types/SimpleTypes.h"
#include "Types/ValueHandleImpl.h"

namespace Vellum
{
namespace Types
{
#define VELLUM_DEFINE_INTEGER_VALUE(Name, Native)                                                 \
    struct Name::Impl : SimpleTypes<Native>                                                       \
    {                                                                                             \
        VELLUM_CLASS_ALLOCATION                                                                   \
        using SimpleTypes<Native>::SimpleTypes;                                                   \
    };                                                                                            \
                                                                                                  \
    Name::Name(KLV::Value & value) : impl_(new Impl(value)) {}                                    \
    Name::Name(Native value) : impl_(new Impl(value)) {}                                          \
    Native Name::value() const { return impl_->value(); }                                         \
    VELLUM_DEFINE_VALUE_HANDLE(Name)

VELLUM_DEFINE_INTEGER_VALUE(Int8, signed char)
VELLUM_DEFINE_INTEGER_VALUE(Int16, Platform::Int16)
VELLUM_DEFINE_INTEGER_VALUE(Int32, Platform::Int32)
VELLUM_DEFINE_INTEGER_VALUE(Int64, Platform::Int64)
VELLUM_DEFINE_INTEGER_VALUE(UInt8, unsigned char)
VELLUM_DEFINE_INTEGER_VALUE(UInt16, Platform::UInt16)
VELLUM_DEFINE_INTEGER_VALUE(UInt32, Platform::UInt32)
VELLUM_DEFINE_INTEGER_VALUE(UInt64, Platform::UInt64)
VELLUM_DEFINE_INTEGER_VALUE(Length, Platform::Int64)
VELLUM_DEFINE_INTEGER_VALUE(Position, Platform::Int64)

#undef VELLUM_DEFINE_INTEGER_VALUE
} // namespace Types
} // namespace Vellum
