#pragma once
// Statically assigned local tags, in both directions.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace Types
{
class LocalTag;
class UniversalLabel;
} // namespace Types

namespace MetaMetadata
{
class LocalTagMap
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~LocalTagMap() {}
    virtual void add(Types::LocalTag const & tag, Types::UniversalLabel const & label) = 0;
    // Null when the label has no tag.
    virtual Types::LocalTag const * find(Types::UniversalLabel const & label) const = 0;
    // Null when the tag is not assigned.
    virtual Types::UniversalLabel const * find(Types::LocalTag const & tag) const = 0;
};
} // namespace MetaMetadata
} // namespace Vellum
