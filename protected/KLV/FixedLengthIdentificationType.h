#pragma once
// The common root of the fixed-length identifiers and the text forms they share. Each identifier
// (Key, UniversalLabel, UUID, UMID32, UMID64, LocalTag) keeps its bytes in an Impl derived from
// FixedLengthIdentificationType<N> and overrides the two text operations with the forms it
// accepts, passing its own prefix, fixed bytes or hyphen positions to the functions below.

#include <cstring>

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Containers.h"
#include "Types/StringRepresentationEncodingType.h"

namespace Vellum
{
namespace KLV
{
class FixedLengthIdentificationTypeBase
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~FixedLengthIdentificationTypeBase();
    // Replaces the value by the one that `text` gives in the form `kind`. The root knows no form
    // and throws InvalidValue.
    virtual void loadFromString(unsigned short const * text, Types::StringRepresentationEncodingType kind);
    // The value as text in the form `kind`. The root knows no form and throws InvalidValue.
    virtual Templates::wstring toString(Types::StringRepresentationEncodingType kind) const;
};

template <unsigned N>
class FixedLengthIdentificationType : public FixedLengthIdentificationTypeBase
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = N
    };

    FixedLengthIdentificationType() { std::memset(value_, 0, N); }
    explicit FixedLengthIdentificationType(unsigned char const * bytes) { std::memcpy(value_, bytes, N); }

    unsigned char const * rawBuffer() const { return value_; }
    unsigned char * rawBuffer() { return value_; }

    // The dotted form is common to all identifiers and needs no virtual call.
    void loadFromStringDotted(unsigned short const * text);
    Templates::wstring toStringDotted() const;

    unsigned char value_[N];
};

// Decimal numbers joined by ".": first the `prefixCount` numbers of `prefix`, then the bytes
// value[from] to value[to - 1]. Zero bytes at the end are left out.
Templates::wstring toStringOID(unsigned char const * value, unsigned const * prefix, unsigned prefixCount,
                               unsigned from, unsigned to);

// Reads an OID text into `size` bytes. The first `prefixCount` elements must equal `prefix`; the
// first `fixedCount` bytes of `out` come from `fixedBytes`, the rest from the elements that follow
// the prefix, and 0 where the text has ended. `out` is changed only on success.
void loadFromStringOID(unsigned short const * text, unsigned char * out, unsigned size, unsigned const * prefix,
                       unsigned prefixCount, unsigned char const * fixedBytes, unsigned fixedCount);

// "0x" and 2 * size lower-case hexadecimal digits.
Templates::wstring toStringHexadecimal(unsigned char const * value, unsigned size);
void loadFromStringHexadecimal(unsigned short const * text, unsigned char * out, unsigned size);

// Lower-case hexadecimal pairs with "-" behind each byte index of `hyphenAfter`.
Templates::wstring toStringRFC4122(unsigned char const * value, unsigned size, unsigned const * hyphenAfter,
                                   unsigned hyphenCount);
void loadFromStringRFC4122(unsigned short const * text, unsigned char * out, unsigned size,
                           unsigned const * hyphenAfter, unsigned hyphenCount);

// Lower-case hexadecimal pairs joined by ".".
Templates::wstring toStringDotted(unsigned char const * value, unsigned size);
void loadFromStringDotted(unsigned short const * text, unsigned char * out, unsigned size);

// "Don't know how to initialize <typeName> in the given string representation format", for the
// InvalidFormat that an identifier throws on a form it does not read.
Templates::wstring unknownLoadFormText(char const * typeName);
// "Don't know how to represent <typeName> in the given string representation format".
Templates::wstring unknownRenderFormText(char const * typeName);

template <unsigned N>
void FixedLengthIdentificationType<N>::loadFromStringDotted(unsigned short const * text)
{
    KLV::loadFromStringDotted(text, value_, N);
}

template <unsigned N>
Templates::wstring FixedLengthIdentificationType<N>::toStringDotted() const
{
    return KLV::toStringDotted(value_, N);
}
} // namespace KLV
} // namespace Vellum
