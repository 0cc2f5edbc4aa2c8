#pragma once
// A 16-byte UUID. Its own text form is "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx".

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
class StrongReference;
class WeakReference;

class UUID : public UID
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 16
    };

    // All sixteen bytes zero.
    UUID();
    // Copies 16 bytes.
    explicit UUID(unsigned char const * bytes);
    // Reads the next 16 bytes of the value; a shorter value throws InvalidLength.
    explicit UUID(KLV::Value & value);
    // Dotted, RFC4122 or TypeDefault (RFC4122); other forms throw InvalidFormat.
    UUID(unsigned short const * text, StringRepresentationEncodingType kind);
    UUID(UUID const & other);
    UUID & operator=(UUID const & other);
    ~UUID() override;

    VELLUM_VISITABLE
    unsigned char const * rawBuffer() const override;
    unsigned short serializedSize() const override;
    Templates::auto_ptr<SimpleDataType> clone() const override;

    virtual unsigned short size() const;
    virtual Templates::wstring toString(StringRepresentationEncodingType kind = TypeDefault) const;

private:
    // The references keep their bytes in an Impl of the same kind.
    friend class StrongReference;
    friend class WeakReference;
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

bool operator==(UUID const & a, UUID const & b);
bool operator!=(UUID const & a, UUID const & b);
bool operator<(UUID const & a, UUID const & b);
} // namespace Types
} // namespace Vellum
