#pragma once
// Unique material identifiers: the 32-byte basic UMID and the 64-byte extended UMID. Their own
// text form is "0x" and all bytes in hexadecimal.

#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Types/SimpleDataType.h"
#include "Types/StringRepresentationEncodingType.h"

namespace Vellum
{
namespace KLV
{
class Value;
} // namespace KLV

namespace Types
{
class UMID32 : public UID
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 32
    };

    // All bytes zero.
    UMID32();
    // Copies 32 bytes.
    explicit UMID32(unsigned char const * bytes);
    // Reads the next 32 bytes of the value; a shorter value throws InvalidLength.
    explicit UMID32(KLV::Value & value);
    // Dotted, Hexadecimal or TypeDefault (Hexadecimal); other forms throw InvalidFormat.
    UMID32(unsigned short const * text, StringRepresentationEncodingType kind);
    UMID32(UMID32 const & other);
    UMID32 & operator=(UMID32 const & other);
    ~UMID32() override;

    VELLUM_VISITABLE
    unsigned char const * rawBuffer() const override;
    unsigned short serializedSize() const override;
    Templates::auto_ptr<SimpleDataType> clone() const override;

    virtual unsigned short size() const;
    virtual Templates::wstring toString(StringRepresentationEncodingType kind = TypeDefault) const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

class UMID64 : public UID
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 64
    };

    // All bytes zero.
    UMID64();
    // Copies 64 bytes.
    explicit UMID64(unsigned char const * bytes);
    // Reads the next 64 bytes of the value; a shorter value throws InvalidLength.
    explicit UMID64(KLV::Value & value);
    // Dotted, Hexadecimal or TypeDefault (Hexadecimal); other forms throw InvalidFormat.
    UMID64(unsigned short const * text, StringRepresentationEncodingType kind);
    UMID64(UMID64 const & other);
    UMID64 & operator=(UMID64 const & other);
    ~UMID64() override;

    VELLUM_VISITABLE
    unsigned char const * rawBuffer() const override;
    unsigned short serializedSize() const override;
    Templates::auto_ptr<SimpleDataType> clone() const override;

    virtual unsigned short size() const;
    virtual Templates::wstring toString(StringRepresentationEncodingType kind = TypeDefault) const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

bool operator==(UMID32 const & a, UMID32 const & b);
bool operator!=(UMID32 const & a, UMID32 const & b);
bool operator<(UMID32 const & a, UMID32 const & b);

bool operator==(UMID64 const & a, UMID64 const & b);
bool operator!=(UMID64 const & a, UMID64 const & b);
bool operator<(UMID64 const & a, UMID64 const & b);
} // namespace Types
} // namespace Vellum
