// The values kept as opaque bytes: DataStream, DataValue, Unknown.
#include "Types/DataStream.h"
#include "Types/DataValue.h"
#include "Types/Unknown.h"

#include "Types/OpaqueBytes.h"
#include "Types/ValueHandleImpl.h"

namespace Vellum
{
namespace Types
{
#define VELLUM_DEFINE_OPAQUE_VALUE(Name)                                                          \
    struct Name::Impl : OpaqueBytes                                                               \
    {                                                                                             \
        VELLUM_CLASS_ALLOCATION                                                                   \
        using OpaqueBytes::OpaqueBytes;                                                           \
    };                                                                                            \
                                                                                                  \
    Name::Name(KLV::Value & value) : impl_(new Impl(value)) {}                                    \
    Name::Name(unsigned char const * data, unsigned int size) : impl_(new Impl(data, size)) {}    \
    unsigned char const * Name::value() const { return impl_->rawBuffer(); }                      \
    unsigned int Name::size() const { return static_cast<unsigned int>(impl_->bytes.size()); }   \
    VELLUM_DEFINE_VALUE_HANDLE(Name)

VELLUM_DEFINE_OPAQUE_VALUE(DataStream)
VELLUM_DEFINE_OPAQUE_VALUE(DataValue)
VELLUM_DEFINE_OPAQUE_VALUE(Unknown)

#undef VELLUM_DEFINE_OPAQUE_VALUE
} // namespace Types
} // namespace Vellum
