#include "Types/Visitors.h"

#include "Exceptions/Exceptions.h"
#include "Types/ValueClasses.h"

namespace Vellum
{
namespace Types
{
namespace Visitors
{
namespace Detail
{
void throwTypeMismatch()
{
    VELLUM_THROW(InvalidType, "The value to set is of another type than the value visited");
}
} // namespace Detail

// Forwarding to the base classes. The identifiers and references are in IdentifierVisits.cpp.
#define VELLUM_DELEGATE_TO(Type, Base)                                                            \
    void DelegateToBaseVisitor::visit(Type const & value) { visit(static_cast<Base const &>(value)); } \
    void NonConstDelegateToBaseVisitor::visit(Type & value) { visit(static_cast<Base &>(value)); }
#define VELLUM_DELEGATE_TO_SIMPLE(Type) VELLUM_DELEGATE_TO(Type, SimpleDataType)
VELLUM_FOR_EACH_PLAIN_SIMPLE_TYPE(VELLUM_DELEGATE_TO_SIMPLE)
#undef VELLUM_DELEGATE_TO_SIMPLE
VELLUM_DELEGATE_TO(Array, Collection)
VELLUM_DELEGATE_TO(Batch, Collection)
VELLUM_DELEGATE_TO(UID, SimpleDataType)
VELLUM_DELEGATE_TO(Reference, SimpleDataType)
VELLUM_DELEGATE_TO(SimpleDataType, BaseType)
VELLUM_DELEGATE_TO(Collection, BaseType)
#undef VELLUM_DELEGATE_TO

void DelegateToBaseVisitor::visit(BaseType const &) {}
void NonConstDelegateToBaseVisitor::visit(BaseType &) {}

GetIdentifierVisitor::GetIdentifierVisitor() : identifier_(Identifiers::Unknown) {}

#define VELLUM_IDENTIFIER_OF(Type, Id)                                                            \
    void GetIdentifierVisitor::visit(Type const &) { identifier_ = Identifiers::Id; }
VELLUM_IDENTIFIER_OF(Array, Array)
VELLUM_IDENTIFIER_OF(Batch, Batch)
VELLUM_IDENTIFIER_OF(Boolean, Boolean)
VELLUM_IDENTIFIER_OF(DataStream, DataStream)
VELLUM_IDENTIFIER_OF(DataValue, DataValue)
VELLUM_IDENTIFIER_OF(ISO7String, ISO7bitCharString)
VELLUM_IDENTIFIER_OF(Int16, Int16)
VELLUM_IDENTIFIER_OF(Int32, Int32)
VELLUM_IDENTIFIER_OF(Int64, Int64)
VELLUM_IDENTIFIER_OF(Int8, Int8)
VELLUM_IDENTIFIER_OF(J2KCodingStyleDefault, J2KCodingStyleDefault)
VELLUM_IDENTIFIER_OF(J2KPictureComponent, J2KPictureComponentType)
VELLUM_IDENTIFIER_OF(J2KQuantisationDefault, J2KQuantisationDefault)
VELLUM_IDENTIFIER_OF(Length, Length)
VELLUM_IDENTIFIER_OF(LocalTag, LocalTag)
VELLUM_IDENTIFIER_OF(Orientation, Orientation)
VELLUM_IDENTIFIER_OF(Position, Position)
VELLUM_IDENTIFIER_OF(ProductVersion, ProductVersionType)
VELLUM_IDENTIFIER_OF(RGBALayout, RGBALayout)
VELLUM_IDENTIFIER_OF(Rational, Rational)
VELLUM_IDENTIFIER_OF(SignalStandard, SignalStandard)
VELLUM_IDENTIFIER_OF(StrongReference, StrongReference)
VELLUM_IDENTIFIER_OF(Timestamp, TimestampType)
VELLUM_IDENTIFIER_OF(UInt16, UInt16)
VELLUM_IDENTIFIER_OF(UInt32, UInt32)
VELLUM_IDENTIFIER_OF(UInt64, UInt64)
VELLUM_IDENTIFIER_OF(UInt8, UInt8)
VELLUM_IDENTIFIER_OF(UMID32, UMID32)
VELLUM_IDENTIFIER_OF(UMID64, UMID64)
VELLUM_IDENTIFIER_OF(UTF16, UTF16)
VELLUM_IDENTIFIER_OF(UTF16String, UTF16CharString)
VELLUM_IDENTIFIER_OF(UUID, UUID)
VELLUM_IDENTIFIER_OF(UniversalLabel, UL)
VELLUM_IDENTIFIER_OF(Unknown, Unknown)
VELLUM_IDENTIFIER_OF(VersionType, VersionType)
VELLUM_IDENTIFIER_OF(WeakReference, WeakReference)
#undef VELLUM_IDENTIFIER_OF

// Assignment from the source when it is of the target's type. The identifiers and references
// are in IdentifierVisits.cpp.
#define VELLUM_SET_FROM_SOURCE(Type)                                                              \
    void SetterVisitor::visit(Type & target)                                                      \
    {                                                                                             \
        Type const * source = getAs<Type>(source_);                                               \
        if (source == nullptr)                                                                    \
            Detail::throwTypeMismatch();                                                          \
        target = *source;                                                                         \
    }
VELLUM_FOR_EACH_PLAIN_SIMPLE_TYPE(VELLUM_SET_FROM_SOURCE)
VELLUM_SET_FROM_SOURCE(Array)
VELLUM_SET_FROM_SOURCE(Batch)
#undef VELLUM_SET_FROM_SOURCE
} // namespace Visitors
} // namespace Types
} // namespace Vellum
