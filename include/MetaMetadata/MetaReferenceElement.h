#pragma once
// The description of a single strong or weak reference.

#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/MetaReferenceHolder.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaReferenceElement : public MetaElement, public MetaReferenceHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // A dataType other than StrongReference or WeakReference throws InvalidMetaElement.
    MetaReferenceElement(Types::UniversalLabel const & label, Keys const & allowed,
                         Types::Identifiers::Identifier dataType);
    MetaReferenceElement(MetaReferenceElement const & other);
    virtual MetaReferenceElement & operator=(MetaReferenceElement const & other);
    ~MetaReferenceElement() override;

    void accept(Visitors::NonConstMetaElementVisitor & visitor) override;
    void accept(Visitors::MetaElementVisitor & visitor) const override;
};

bool operator==(MetaReferenceElement const & a, MetaReferenceElement const & b);
bool operator!=(MetaReferenceElement const & a, MetaReferenceElement const & b);
} // namespace MetaMetadata
} // namespace Vellum
