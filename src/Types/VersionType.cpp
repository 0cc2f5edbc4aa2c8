#include "Types/VersionType.h"

#include "Types/ValueHandleImpl.h"

namespace Vellum
{
namespace Types
{
struct VersionType::Impl : FixedBytes<2>
{
    VELLUM_CLASS_ALLOCATION
    using FixedBytes<2>::FixedBytes;
};

VersionType::VersionType(KLV::Value & value) : impl_(new Impl(value)) {}

VersionType::VersionType(unsigned char major, unsigned char minor) : impl_(new Impl)
{
    impl_->bytes[0] = major;
    impl_->bytes[1] = minor;
}

unsigned char VersionType::major() const
{
    return impl_->bytes[0];
}

unsigned char VersionType::minor() const
{
    return impl_->bytes[1];
}

VELLUM_DEFINE_VALUE_HANDLE(VersionType)
} // namespace Types
} // namespace Vellum
