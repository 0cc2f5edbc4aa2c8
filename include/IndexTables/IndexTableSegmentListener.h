#pragma once
// Hears each item of an index table segment as it is read.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace KLV
{
class Value;
}
namespace Types
{
class LocalTag;
}

namespace IndexTables
{
class IndexTableSegmentListener
{
public:
    virtual ~IndexTableSegmentListener() {}
    // Called with the item's tag and its value before the segment reads the value. What the
    // listener reads of the value, the segment does not see.
    virtual void itemRead(Types::LocalTag const & tag, KLV::Value & value) = 0;
};
} // namespace IndexTables
} // namespace Vellum
