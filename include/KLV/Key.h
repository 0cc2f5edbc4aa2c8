#pragma once
// The 16-byte key of a KLV packet.

#include <iosfwd>

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Types/StringRepresentationEncodingType.h"

namespace Vellum
{
namespace KLV
{
class Value;

class Key
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 16
    };

    // Copies 16 bytes.
    explicit Key(unsigned char const * bytes);
    // Reads the next 16 bytes of the value; a value that ends sooner throws InvalidLength.
    explicit Key(Value & value);
    // Reads a key from text in the form `kind`: Dotted, OID or TypeDefault (which is OID).
    Key(unsigned short const * text, Types::StringRepresentationEncodingType kind);
    Key(Key const & other);
    Key & operator=(Key const & other);
    ~Key();

    // Size of the length fields inside a local set: 0 for keys that are not local sets.
    unsigned char lengthFieldLength() const;
    // Size of the local tags inside a local set: 0 for keys that are not local sets.
    unsigned char localTagFieldLength() const;

    // The key as text: Dotted, OID or TypeDefault (which is OID). Other forms throw InvalidFormat.
    Templates::wstring toString(Types::StringRepresentationEncodingType kind) const;

    unsigned short size() const { return SIZE; }
    uint64 serializedSize() const { return SIZE; }
    unsigned char const * rawBuffer() const;
    // Byte `index` of the key; 16 or more throws IndexOutOfBounds.
    unsigned char operator[](unsigned index) const;
    unsigned char & operator[](unsigned index);

private:
    struct Impl;
    // The bytes themselves, not a value of their own on the heap: keys are made for every packet
    // and every set.
    unsigned char bytes_[SIZE];
};

// Byte by byte; `<` orders by unsigned bytes.
bool operator==(Key const & a, Key const & b);
bool operator!=(Key const & a, Key const & b);
bool operator<(Key const & a, Key const & b);

// Writes the dotted form.
std::ostream & operator<<(std::ostream & stream, Key const & key);
} // namespace KLV
} // namespace Vellum
