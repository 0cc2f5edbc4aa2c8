#pragma once
// References between metadata sets: the 16 bytes of the target's instance UUID. A strong
// reference owns its target, a weak one only names it. Both have the text forms of a UUID.

#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Types/SimpleDataType.h"
#include "Types/StringRepresentationEncodingType.h"
#include "Types/UUID.h"

namespace Vellum
{
namespace KLV
{
class Value;
} // namespace KLV

namespace Types
{
class StrongReference : public Reference
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 16
    };

    // All sixteen bytes zero.
    StrongReference();
    // Copies 16 bytes.
    explicit StrongReference(unsigned char const * bytes);
    // A reference to the set whose instance UUID is `target`.
    explicit StrongReference(UUID const & target);
    // Reads the next 16 bytes of the value; a shorter value throws InvalidLength.
    explicit StrongReference(KLV::Value & value);
    // The forms of a UUID: Dotted, RFC4122 or TypeDefault (RFC4122).
    StrongReference(unsigned short const * text, StringRepresentationEncodingType kind);
    StrongReference(StrongReference const & other);
    StrongReference & operator=(StrongReference const & other);
    ~StrongReference() override;

    VELLUM_VISITABLE
    unsigned char const * rawBuffer() const override;
    unsigned short serializedSize() const override;
    Templates::auto_ptr<SimpleDataType> clone() const override;

    virtual unsigned short size() const;
    virtual Templates::wstring toString(StringRepresentationEncodingType kind = TypeDefault) const;

    // The instance UUID of the target.
    UUID uuid() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

class WeakReference : public Reference
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 16
    };

    // All sixteen bytes zero.
    WeakReference();
    // Copies 16 bytes.
    explicit WeakReference(unsigned char const * bytes);
    // A reference to the set whose instance UUID is `target`.
    explicit WeakReference(UUID const & target);
    // Reads the next 16 bytes of the value; a shorter value throws InvalidLength.
    explicit WeakReference(KLV::Value & value);
    // The forms of a UUID: Dotted, RFC4122 or TypeDefault (RFC4122).
    WeakReference(unsigned short const * text, StringRepresentationEncodingType kind);
    WeakReference(WeakReference const & other);
    WeakReference & operator=(WeakReference const & other);
    ~WeakReference() override;

    VELLUM_VISITABLE
    unsigned char const * rawBuffer() const override;
    unsigned short serializedSize() const override;
    Templates::auto_ptr<SimpleDataType> clone() const override;

    virtual unsigned short size() const;
    virtual Templates::wstring toString(StringRepresentationEncodingType kind = TypeDefault) const;

    // The instance UUID of the target.
    UUID uuid() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

bool operator==(StrongReference const & a, StrongReference const & b);
bool operator!=(StrongReference const & a, StrongReference const & b);
bool operator<(StrongReference const & a, StrongReference const & b);

bool operator==(WeakReference const & a, WeakReference const & b);
bool operator!=(WeakReference const & a, WeakReference const & b);
bool operator<(WeakReference const & a, WeakReference const & b);
} // namespace Types
} // namespace Vellum
