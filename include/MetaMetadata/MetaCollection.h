#pragma once
// The description of an array or a batch of simple values.

#include "MetaMetadata/MetaCollectionElement.h"
#include "MetaMetadata/MetaValueHolder.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaCollection : public MetaCollectionElement, public MetaValueHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Checks the dataType and the limits first, then refuses a dataSubType of Array, Batch,
    // StrongReference or WeakReference; all with InvalidMetaElement.
    MetaCollection(Types::UniversalLabel const & label, CollectionSizeLimits limits,
                   Types::Identifiers::Identifier dataType, Types::Identifiers::Identifier dataSubType);
    MetaCollection(Types::UniversalLabel const & label, CollectionSizeLimits limits, Enumeration const & enumeration,
                   Types::Identifiers::Identifier dataType, Types::Identifiers::Identifier dataSubType);
    MetaCollection(MetaCollection const & other);
    virtual MetaCollection & operator=(MetaCollection const & other);
    ~MetaCollection() override;

    void accept(Visitors::NonConstMetaElementVisitor & visitor) override;
    void accept(Visitors::MetaElementVisitor & visitor) const override;
};

bool operator==(MetaCollection const & a, MetaCollection const & b);
bool operator!=(MetaCollection const & a, MetaCollection const & b);
} // namespace MetaMetadata
} // namespace Vellum
