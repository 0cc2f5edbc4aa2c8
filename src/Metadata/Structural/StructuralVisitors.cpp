// The delegating visitors: each structural class passes its visit on to its base class.

#include "Metadata/Structural/StructuralVisitors.h"

#include "Metadata/Structural/StructuralClasses.h"

namespace Vellum
{
namespace Metadata
{
namespace Visitors
{
// The bases in the class list are named without their namespace.
using namespace ::Vellum::Metadata::Structural;

void DelegateMetadataSetVisitor::visit(MetadataSet const &) {}

#define VELLUM_DEFINE_DELEGATE_CONST_VISIT(Class, Base)                                           \
    void DelegateMetadataSetVisitor::visit(Structural::Class const & set) { visit(static_cast<Base const &>(set)); }
VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_DEFINE_DELEGATE_CONST_VISIT)
#undef VELLUM_DEFINE_DELEGATE_CONST_VISIT

void NonConstDelegateMetadataSetVisitor::visit(MetadataSet &) {}

#define VELLUM_DEFINE_DELEGATE_NON_CONST_VISIT(Class, Base)                                       \
    void NonConstDelegateMetadataSetVisitor::visit(Structural::Class & set) { visit(static_cast<Base &>(set)); }
VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_DEFINE_DELEGATE_NON_CONST_VISIT)
#undef VELLUM_DEFINE_DELEGATE_NON_CONST_VISIT
} // namespace Visitors
} // namespace Metadata
} // namespace Vellum
