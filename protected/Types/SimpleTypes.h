#pragma once
// The implementation base of the fixed-size numeric values: the bytes of one number in wire order.

#include <cstring>
#include <type_traits>

#include "KLV/Value.h"
#include "Platform/MallocAlloc.h"
#include "Types/WireOrder.h"

namespace Vellum
{
namespace Types
{
template <class T>
class SimpleTypes
{
public:
    VELLUM_CLASS_ALLOCATION

    SimpleTypes() { std::memset(bytes_, 0, sizeof(T)); }
    explicit SimpleTypes(T value) { WireOrder::store(bytes_, value); }
    // Reads sizeof(T) bytes; a shorter value throws InvalidLength "Invalid data size in Value".
    explicit SimpleTypes(KLV::Value & value) { value.readValue(bytes_, sizeof(T)); }
    SimpleTypes(SimpleTypes const & other) { std::memcpy(bytes_, other.bytes_, sizeof(T)); }
    SimpleTypes & operator=(SimpleTypes const & other)
    {
        std::memcpy(bytes_, other.bytes_, sizeof(T));
        return *this;
    }
    virtual ~SimpleTypes() {}

    virtual unsigned char const * rawBuffer() const { return bytes_; }
    virtual unsigned short size() const { return sizeof(T); }

    // The native number assembled from the wire bytes.
    T value() const { return WireOrder::load<T>(bytes_); }

protected:
    unsigned char bytes_[sizeof(T)];
};
} // namespace Types
} // namespace Vellum
