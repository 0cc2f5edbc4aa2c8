#pragma once
// The descriptions of values, by label.

#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Types
{
class UniversalLabel;
} // namespace Types

namespace MetaMetadata
{
class MetaElement;

class UniversalLabelMap
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~UniversalLabelMap() {}
    // Takes the element over.
    virtual void add(Types::UniversalLabel const & label, Templates::auto_ptr<MetaElement> element) = 0;
    // Null when there is none.
    virtual MetaElement const * findMetaElement(Types::UniversalLabel const & label) const = 0;
};
} // namespace MetaMetadata
} // namespace Vellum
