#pragma once
// The part of an element that holds plain values: the permitted values of the schema.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaValueHolder;
} // namespace MetaMetadata

namespace Types
{
class SimpleDataType;
} // namespace Types

namespace Metadata
{
class ValueHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~ValueHolder() {}

    // The schema's holder, null when there is none.
    MetaMetadata::MetaValueHolder const * metaValueHolder() const { return metaValueHolder_; }

protected:
    explicit ValueHolder(MetaMetadata::MetaValueHolder const * holder) : metaValueHolder_(holder) {}

    // The enumeration of the schema is kept but not enforced: every value passes.
    void checkIfValueIsInEnumeration(Types::SimpleDataType const & value) const;

private:
    MetaMetadata::MetaValueHolder const * metaValueHolder_;
};
} // namespace Metadata
} // namespace Vellum
