// The visits of the identifier and reference classes that need their full declarations: forwarding
// to their base classes, and assignment.
#include "Types/Visitors.h"

#include "Types/LocalTag.h"
#include "Types/References.h"
#include "Types/UMID.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Types
{
namespace Visitors
{
#define VELLUM_DELEGATE_TO(Type, Base)                                                            \
    void DelegateToBaseVisitor::visit(Type const & value) { visit(static_cast<Base const &>(value)); } \
    void NonConstDelegateToBaseVisitor::visit(Type & value) { visit(static_cast<Base &>(value)); }
VELLUM_DELEGATE_TO(UniversalLabel, UID)
VELLUM_DELEGATE_TO(UUID, UID)
VELLUM_DELEGATE_TO(UMID32, UID)
VELLUM_DELEGATE_TO(UMID64, UID)
VELLUM_DELEGATE_TO(StrongReference, Reference)
VELLUM_DELEGATE_TO(WeakReference, Reference)
VELLUM_DELEGATE_TO(LocalTag, SimpleDataType)
#undef VELLUM_DELEGATE_TO

#define VELLUM_SET_FROM_SOURCE(Type)                                                              \
    void SetterVisitor::visit(Type & target)                                                      \
    {                                                                                             \
        Type const * source = getAs<Type>(source_);                                               \
        if (source == nullptr)                                                                    \
            Detail::throwTypeMismatch();                                                          \
        target = *source;                                                                         \
    }
VELLUM_SET_FROM_SOURCE(UniversalLabel)
VELLUM_SET_FROM_SOURCE(UUID)
VELLUM_SET_FROM_SOURCE(UMID32)
VELLUM_SET_FROM_SOURCE(UMID64)
VELLUM_SET_FROM_SOURCE(StrongReference)
VELLUM_SET_FROM_SOURCE(WeakReference)
VELLUM_SET_FROM_SOURCE(LocalTag)
#undef VELLUM_SET_FROM_SOURCE
} // namespace Visitors
} // namespace Types
} // namespace Vellum


