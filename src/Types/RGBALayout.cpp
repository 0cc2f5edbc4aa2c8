#include "Types/RGBALayout.h"

#include "Exceptions/Exceptions.h"
#include "Types/ValueHandleImpl.h"

namespace Vellum
{
namespace Types
{
struct RGBALayout::Impl : FixedBytes<2 * COMPONENT_COUNT>
{
    VELLUM_CLASS_ALLOCATION
    using FixedBytes<2 * COMPONENT_COUNT>::FixedBytes;
};

RGBALayout::RGBALayout() : impl_(new Impl) {}

RGBALayout::RGBALayout(KLV::Value & value) : impl_(new Impl(value)) {}

RGBAComponent RGBALayout::get(unsigned int index) const
{
    if (index >= COMPONENT_COUNT)
        VELLUM_THROW(InvalidValue, "Cannot set in this index");
    return RGBAComponent(impl_->bytes[2 * index], impl_->bytes[2 * index + 1]);
}

void RGBALayout::set(unsigned int index, RGBAComponent component)
{
    if (index >= COMPONENT_COUNT)
        VELLUM_THROW(InvalidValue, "Cannot set in this index");
    impl_->bytes[2 * index] = component.code;
    impl_->bytes[2 * index + 1] = component.depth;
}

VELLUM_DEFINE_VALUE_HANDLE(RGBALayout)
} // namespace Types
} // namespace Vellum
