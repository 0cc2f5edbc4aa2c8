#pragma once
// Definitions of the handle members declared by VELLUM_VALUE_HANDLE, and the fixed-size byte
// image that most simple values keep in their Impl.

#include <cstring>

#include "KLV/Value.h"
#include "Platform/MallocAlloc.h"
#include "Types/ValueHandle.h"

namespace Vellum
{
namespace Types
{
// N bytes in wire order.
template <unsigned N>
struct FixedBytes
{
    VELLUM_CLASS_ALLOCATION
    unsigned char bytes[N];

    FixedBytes() { std::memset(bytes, 0, N); }
    // Reads N bytes; a shorter value throws InvalidLength "Invalid data size in Value".
    explicit FixedBytes(KLV::Value & value) { value.readValue(bytes, N); }

    unsigned char const * rawBuffer() const { return bytes; }
    unsigned short size() const { return N; }
};
} // namespace Types
} // namespace Vellum

// Defines the members of VELLUM_VALUE_HANDLE(Name) over a copyable Name::Impl that has
// rawBuffer() and size(). Assignment copies into the present Impl, so that references into the
// value stay good.
#define VELLUM_DEFINE_VALUE_HANDLE(Name)                                                          \
    Name::Name(Name const & other) : SimpleDataType(other), impl_(new Impl(*other.impl_)) {}      \
    Name & Name::operator=(Name const & other)                                                    \
    {                                                                                             \
        if (this != &other)                                                                       \
            *impl_ = *other.impl_;                                                                \
        return *this;                                                                             \
    }                                                                                             \
    Name::~Name() = default;                                                                      \
    unsigned char const * Name::rawBuffer() const { return impl_->rawBuffer(); }                  \
    unsigned short Name::serializedSize() const { return impl_->size(); }                         \
    ::Vellum::Templates::auto_ptr<::Vellum::Types::SimpleDataType> Name::clone() const            \
    {                                                                                             \
        return ::Vellum::Templates::auto_ptr<::Vellum::Types::SimpleDataType>(new Name(*this));   \
    }
