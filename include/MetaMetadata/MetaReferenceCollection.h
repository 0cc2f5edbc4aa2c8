#pragma once
// The description of an array or a batch of strong or weak references.

#include "MetaMetadata/MetaCollectionElement.h"
#include "MetaMetadata/MetaReferenceHolder.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaReferenceCollection : public MetaCollectionElement, public MetaReferenceHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    // Checks the dataType and the limits first, then demands a dataSubType of StrongReference
    // or WeakReference; all with InvalidMetaElement.
    MetaReferenceCollection(Types::UniversalLabel const & label, CollectionSizeLimits limits, Keys const & allowed,
                            Types::Identifiers::Identifier dataType, Types::Identifiers::Identifier dataSubType);
    MetaReferenceCollection(MetaReferenceCollection const & other);
    virtual MetaReferenceCollection & operator=(MetaReferenceCollection const & other);
    ~MetaReferenceCollection() override;

    void accept(Visitors::NonConstMetaElementVisitor & visitor) override;
    void accept(Visitors::MetaElementVisitor & visitor) const override;
};

bool operator==(MetaReferenceCollection const & a, MetaReferenceCollection const & b);
bool operator!=(MetaReferenceCollection const & a, MetaReferenceCollection const & b);
} // namespace MetaMetadata
} // namespace Vellum
