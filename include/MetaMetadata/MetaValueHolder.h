#pragma once
// The permitted values of a simple element or collection, if the schema lists any.

#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Types
{
class BaseType;
} // namespace Types

namespace MetaMetadata
{
class MetaValueHolder
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::vector<Types::BaseType *> Enumeration;

    MetaValueHolder();
    // Copies the vector; the values stay where they are and must outlive the holder.
    explicit MetaValueHolder(Enumeration const & enumeration);
    MetaValueHolder(MetaValueHolder const & other);
    virtual MetaValueHolder & operator=(MetaValueHolder const & other);
    virtual ~MetaValueHolder();

    // A copy of the list, empty when every value is permitted.
    Enumeration enumeration() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// Holders are alike whatever their lists: the enumeration is not compared.
bool operator==(MetaValueHolder const & a, MetaValueHolder const & b);
bool operator!=(MetaValueHolder const & a, MetaValueHolder const & b);
} // namespace MetaMetadata
} // namespace Vellum
