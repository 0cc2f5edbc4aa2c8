#pragma once
// The keys of the sets that a reference may point at, in the order given.

#include "KLV/Key.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Types
{
class UniversalLabel;
} // namespace Types

namespace MetaMetadata
{
class MetaReferenceHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::vector<KLV::Key> Keys;

    // The label is the element's; the holder keeps only the keys.
    MetaReferenceHolder(Types::UniversalLabel const & label, Keys const & allowed);
    MetaReferenceHolder(MetaReferenceHolder const & other);
    virtual MetaReferenceHolder & operator=(MetaReferenceHolder const & other);
    virtual ~MetaReferenceHolder();

    void addAllowedMetadataSet(KLV::Key const & key);
    // A copy of the keys.
    Keys allowedMetadataSets() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// The same keys in the same order.
bool operator==(MetaReferenceHolder const & a, MetaReferenceHolder const & b);
bool operator!=(MetaReferenceHolder const & a, MetaReferenceHolder const & b);
} // namespace MetaMetadata
} // namespace Vellum
