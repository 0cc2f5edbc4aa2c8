#pragma once
// What the identifier handles share: making an Impl from bytes, from a value or from text, and
// rendering it, with the dotted form taken care of before the Impl's own forms are asked.

#include <cstring>

#include "KLV/FixedLengthIdentificationType.h"
#include "KLV/Value.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Types/StringRepresentationEncodingType.h"

namespace Vellum
{
namespace Types
{
namespace IdentifierSupport
{
// Reads the identifier's bytes from the value; a short value throws InvalidLength and leaves
// nothing behind.
template <class Impl>
Templates::auto_ptr<Impl> fromValue(KLV::Value & value)
{
    unsigned char bytes[Impl::SIZE];
    value.readValue(bytes, Impl::SIZE);
    return Templates::auto_ptr<Impl>(new Impl(bytes));
}

// Reads the identifier from text in the form `kind`; on failure nothing is left behind.
template <class Impl>
Templates::auto_ptr<Impl> fromText(unsigned short const * text, StringRepresentationEncodingType kind)
{
    Templates::auto_ptr<Impl> impl(new Impl);
    if (kind == Dotted)
        impl->loadFromStringDotted(text);
    else
        impl->loadFromString(text, kind);
    return impl;
}

template <class Impl>
Templates::wstring toText(Impl const & impl, StringRepresentationEncodingType kind)
{
    if (kind == Dotted)
        return impl.toStringDotted();
    return impl.toString(kind);
}

template <unsigned N>
bool equal(unsigned char const * a, unsigned char const * b)
{
    return std::memcmp(a, b, N) == 0;
}

// Unsigned byte-wise order.
template <unsigned N>
bool less(unsigned char const * a, unsigned char const * b)
{
    return std::memcmp(a, b, N) < 0;
}
} // namespace IdentifierSupport
} // namespace Types
} // namespace Vellum
