#pragma once
// The description of a value that is neither a collection nor a reference.

#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/MetaValueHolder.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaSimpleElement : public MetaElement, public MetaValueHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Array, Batch, StrongReference and WeakReference throw InvalidMetaElement.
    MetaSimpleElement(Types::UniversalLabel const & label, Types::Identifiers::Identifier dataType);
    MetaSimpleElement(Types::UniversalLabel const & label, Enumeration const & enumeration,
                      Types::Identifiers::Identifier dataType);
    MetaSimpleElement(MetaSimpleElement const & other);
    virtual MetaSimpleElement & operator=(MetaSimpleElement const & other);
    ~MetaSimpleElement() override;

    void accept(Visitors::NonConstMetaElementVisitor & visitor) override;
    void accept(Visitors::MetaElementVisitor & visitor) const override;
};

bool operator==(MetaSimpleElement const & a, MetaSimpleElement const & b);
bool operator!=(MetaSimpleElement const & a, MetaSimpleElement const & b);
} // namespace MetaMetadata
} // namespace Vellum
