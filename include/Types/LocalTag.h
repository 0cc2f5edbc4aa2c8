#pragma once
// The two-byte tag of an item in a local set, big-endian on the wire. Its own text form is
// "0x" and four hexadecimal digits.

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
class LocalTag : public SimpleDataType
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 2
    };

    // The tag 0x0000.
    LocalTag();
    // Stores the tag big-endian.
    explicit LocalTag(unsigned short value);
    // Copies 2 bytes in wire order.
    explicit LocalTag(unsigned char const * bytes);
    // Reads the next 2 bytes of the value; a shorter value throws InvalidLength.
    explicit LocalTag(KLV::Value & value);
    // Dotted, Hexadecimal or TypeDefault (Hexadecimal); other forms throw InvalidFormat.
    LocalTag(unsigned short const * text, StringRepresentationEncodingType kind);
    LocalTag(LocalTag const & other);
    LocalTag & operator=(LocalTag const & other);
    ~LocalTag() override;

    VELLUM_VISITABLE
    unsigned char const * rawBuffer() const override;
    unsigned short serializedSize() const override;
    Templates::auto_ptr<SimpleDataType> clone() const override;

    virtual unsigned short size() const;
    virtual Templates::wstring toString(StringRepresentationEncodingType kind = TypeDefault) const;

    // The tag as a native number.
    unsigned short value() const;
    // Tags 0x0100 to 0x7FFF are static, given by the schema; 0x00xx and 0x8000 up are dynamic.
    bool isStaticLocalTag() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

bool operator==(LocalTag const & a, LocalTag const & b);
bool operator!=(LocalTag const & a, LocalTag const & b);
bool operator<(LocalTag const & a, LocalTag const & b);
} // namespace Types
} // namespace Vellum
