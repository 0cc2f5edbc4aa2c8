#pragma once
// The description of an array or a batch: how many members, and of which type.

#include "MetaMetadata/MetaElement.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaCollectionElement : public MetaElement
{
public:
    VELLUM_CLASS_ALLOCATION
    // How many members a collection may have, both bounds included.
    struct CollectionSizeLimits
    {
        unsigned int minimum;
        unsigned int maximum;

        // Any number of members.
        CollectionSizeLimits() : minimum(0), maximum(0xFFFFFFFFu) {}
        CollectionSizeLimits(unsigned int minimumCount, unsigned int maximumCount)
            : minimum(minimumCount), maximum(maximumCount)
        {
        }
    };

    // A dataType other than Array or Batch, or a maximum below the minimum, throws
    // InvalidMetaElement.
    MetaCollectionElement(Types::UniversalLabel const & label, CollectionSizeLimits limits,
                          Types::Identifiers::Identifier dataType, Types::Identifiers::Identifier dataSubType);
    MetaCollectionElement(MetaCollectionElement const & other);
    virtual MetaCollectionElement & operator=(MetaCollectionElement const & other);
    ~MetaCollectionElement() override;

    virtual CollectionSizeLimits collectionSizeLimits() const;
    // The type of a member.
    virtual Types::Identifiers::Identifier dataSubType() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

bool operator==(MetaCollectionElement::CollectionSizeLimits const & a,
                MetaCollectionElement::CollectionSizeLimits const & b);
// Equal MetaElement parts.
bool operator==(MetaCollectionElement const & a, MetaCollectionElement const & b);
bool operator!=(MetaCollectionElement const & a, MetaCollectionElement const & b);
} // namespace MetaMetadata
} // namespace Vellum
