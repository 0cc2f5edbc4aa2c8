#pragma once
// The visitors over every concrete value type: one visit for each, in the alphabetical order of
// the type names.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace Types
{
class Array;
class Batch;
class Boolean;
class DataStream;
class DataValue;
class ISO7String;
class Int16;
class Int32;
class Int64;
class Int8;
class J2KCodingStyleDefault;
class J2KPictureComponent;
class J2KQuantisationDefault;
class Length;
class LocalTag;
class Orientation;
class Position;
class ProductVersion;
class RGBALayout;
class Rational;
class SignalStandard;
class StrongReference;
class Timestamp;
class UInt16;
class UInt32;
class UInt64;
class UInt8;
class UMID32;
class UMID64;
class UTF16;
class UTF16String;
class UUID;
class UniversalLabel;
class Unknown;
class VersionType;
class WeakReference;

namespace Visitors
{
// Expands X(Type) once for each concrete value type, in visit order.
#define VELLUM_FOR_EACH_VALUE_TYPE(X)                                                            \
    X(Array)                                                                                      \
    X(Batch)                                                                                      \
    X(Boolean)                                                                                    \
    X(DataStream)                                                                                 \
    X(DataValue)                                                                                  \
    X(ISO7String)                                                                                 \
    X(Int16)                                                                                      \
    X(Int32)                                                                                      \
    X(Int64)                                                                                      \
    X(Int8)                                                                                       \
    X(J2KCodingStyleDefault)                                                                      \
    X(J2KPictureComponent)                                                                        \
    X(J2KQuantisationDefault)                                                                     \
    X(Length)                                                                                     \
    X(LocalTag)                                                                                   \
    X(Orientation)                                                                                \
    X(Position)                                                                                   \
    X(ProductVersion)                                                                             \
    X(RGBALayout)                                                                                 \
    X(Rational)                                                                                   \
    X(SignalStandard)                                                                             \
    X(StrongReference)                                                                            \
    X(Timestamp)                                                                                  \
    X(UInt16)                                                                                     \
    X(UInt32)                                                                                     \
    X(UInt64)                                                                                     \
    X(UInt8)                                                                                      \
    X(UMID32)                                                                                     \
    X(UMID64)                                                                                     \
    X(UTF16)                                                                                      \
    X(UTF16String)                                                                                \
    X(UUID)                                                                                       \
    X(UniversalLabel)                                                                             \
    X(Unknown)                                                                                    \
    X(VersionType)                                                                                \
    X(WeakReference)

// Visits values that stay unchanged.
class Visitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~Visitor() {}
#define VELLUM_PURE_VISIT(Type) virtual void visit(Type const & value) = 0;
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_PURE_VISIT)
#undef VELLUM_PURE_VISIT
};

// Visits values that may be changed.
class NonConstVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~NonConstVisitor() {}
#define VELLUM_PURE_VISIT(Type) virtual void visit(Type & value) = 0;
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_PURE_VISIT)
#undef VELLUM_PURE_VISIT
};

class Visitable
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~Visitable() {}
    virtual void accept(NonConstVisitor & visitor) = 0;
    virtual void accept(Visitor & visitor) const = 0;
};
} // namespace Visitors
} // namespace Types
} // namespace Vellum

// Declares the two accept overrides of a concrete value class.
#define VELLUM_VISITABLE                                                                          \
    void accept(::Vellum::Types::Visitors::NonConstVisitor & visitor) override { visitor.visit(*this); } \
    void accept(::Vellum::Types::Visitors::Visitor & visitor) const override { visitor.visit(*this); }
