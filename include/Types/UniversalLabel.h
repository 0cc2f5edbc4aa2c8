#pragma once
// A 16-byte SMPTE universal label. Its own text form is the OID "1.3.53.<bytes 4 to 15>", with
// trailing zero bytes left out.

#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Types/SimpleDataType.h"
#include "Types/StringRepresentationEncodingType.h"

namespace Vellum
{
namespace KLV
{
class Key;
class Value;
} // namespace KLV

namespace Types
{
class UniversalLabel : public UID
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 16
    };

    // All sixteen bytes zero.
    UniversalLabel();
    // Copies 16 bytes.
    explicit UniversalLabel(unsigned char const * bytes);
    explicit UniversalLabel(KLV::Key const & key);
    // Reads the next 16 bytes of the value; a shorter value throws InvalidLength.
    explicit UniversalLabel(KLV::Value & value);
    // Dotted, OID or TypeDefault (OID); other forms throw InvalidFormat.
    UniversalLabel(unsigned short const * text, StringRepresentationEncodingType kind);
    UniversalLabel(UniversalLabel const & other);
    UniversalLabel & operator=(UniversalLabel const & other);
    ~UniversalLabel() override;

    VELLUM_VISITABLE
    unsigned char const * rawBuffer() const override;
    unsigned short serializedSize() const override;
    Templates::auto_ptr<SimpleDataType> clone() const override;

    virtual unsigned short size() const;
    virtual Templates::wstring toString(StringRepresentationEncodingType kind = TypeDefault) const;

private:
    struct Impl;
    // The bytes themselves: labels are made by the hundred thousand when metadata loads, and a
    // value of its own on the heap for each would cost more than the rest of the work.
    unsigned char bytes_[SIZE];
};

bool operator==(UniversalLabel const & a, UniversalLabel const & b);
bool operator!=(UniversalLabel const & a, UniversalLabel const & b);
bool operator<(UniversalLabel const & a, UniversalLabel const & b);
} // namespace Types
} // namespace Vellum
