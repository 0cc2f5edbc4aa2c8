#include "Types/ProductVersion.h"

#include "Types/ValueHandleImpl.h"
#include "Types/WireOrder.h"

namespace Vellum
{
namespace Types
{
struct ProductVersion::Impl : FixedBytes<10>
{
    VELLUM_CLASS_ALLOCATION
    using FixedBytes<10>::FixedBytes;

    unsigned short field(unsigned index) const { return WireOrder::load<unsigned short>(bytes + 2 * index); }
};

ProductVersion::ProductVersion(KLV::Value & value) : impl_(new Impl(value)) {}

ProductVersion::ProductVersion(unsigned short major, unsigned short minor, unsigned short patch,
                               unsigned short build, ReleaseVersion releaseVersion)
    : impl_(new Impl)
{
    WireOrder::store(impl_->bytes, major);
    WireOrder::store(impl_->bytes + 2, minor);
    WireOrder::store(impl_->bytes + 4, patch);
    WireOrder::store(impl_->bytes + 6, build);
    WireOrder::store(impl_->bytes + 8, static_cast<unsigned short>(releaseVersion));
}

unsigned short ProductVersion::major() const
{
    return impl_->field(0);
}

unsigned short ProductVersion::minor() const
{
    return impl_->field(1);
}

unsigned short ProductVersion::patch() const
{
    return impl_->field(2);
}

unsigned short ProductVersion::build() const
{
    return impl_->field(3);
}

ProductVersion::ReleaseVersion ProductVersion::releaseVersion() const
{
    return static_cast<ReleaseVersion>(impl_->field(4));
}

VELLUM_DEFINE_VALUE_HANDLE(ProductVersion)
} // namespace Types
} // namespace Vellum
