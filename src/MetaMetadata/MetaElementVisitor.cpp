#include "MetaMetadata/MetaElementVisitor.h"

#include "MetaMetadata/MetaCollection.h"
#include "MetaMetadata/MetaReferenceCollection.h"
#include "MetaMetadata/MetaReferenceElement.h"
#include "MetaMetadata/MetaSimpleElement.h"

namespace Vellum
{
namespace MetaMetadata
{
namespace Visitors
{
void NullMetaElementVisitor::visit(MetaCollectionElement const &) {}

void NullMetaElementVisitor::visit(MetaReferenceHolder const &) {}

void NullMetaElementVisitor::visit(MetaValueHolder const &) {}

void NullMetaElementVisitor::visit(MetaReferenceCollection const & element)
{
    visit(static_cast<MetaReferenceHolder const &>(element));
    visit(static_cast<MetaCollectionElement const &>(element));
}

void NullMetaElementVisitor::visit(MetaReferenceElement const & element)
{
    visit(static_cast<MetaReferenceHolder const &>(element));
}

void NullMetaElementVisitor::visit(MetaCollection const & element)
{
    visit(static_cast<MetaValueHolder const &>(element));
    visit(static_cast<MetaCollectionElement const &>(element));
}

void NullMetaElementVisitor::visit(MetaSimpleElement const &) {}

void NullNonConstMetaElementVisitor::visit(MetaCollectionElement &) {}

void NullNonConstMetaElementVisitor::visit(MetaReferenceHolder &) {}

void NullNonConstMetaElementVisitor::visit(MetaValueHolder &) {}

void NullNonConstMetaElementVisitor::visit(MetaReferenceCollection & element)
{
    visit(static_cast<MetaReferenceHolder &>(element));
    visit(static_cast<MetaCollectionElement &>(element));
}

void NullNonConstMetaElementVisitor::visit(MetaReferenceElement & element)
{
    visit(static_cast<MetaReferenceHolder &>(element));
}

void NullNonConstMetaElementVisitor::visit(MetaCollection & element)
{
    visit(static_cast<MetaValueHolder &>(element));
    visit(static_cast<MetaCollectionElement &>(element));
}

void NullNonConstMetaElementVisitor::visit(MetaSimpleElement &) {}
} // namespace Visitors
} // namespace MetaMetadata
} // namespace Vellum
