#pragma once
// The fixed local tags of the items of an index table segment.

#include "Platform/MallocAlloc.h"
#include "Types/LocalTag.h"

namespace Vellum
{
namespace IndexTables
{
class IndexTableLocalTag
{
public:
    static Types::LocalTag const & instanceID();         // 3C.0A
    static Types::LocalTag const & indexEditRate();      // 3F.0B
    static Types::LocalTag const & indexStartPosition(); // 3F.0C
    static Types::LocalTag const & indexDuration();      // 3F.0D
    static Types::LocalTag const & editUnitByteCount();  // 3F.05
    static Types::LocalTag const & indexSID();           // 3F.06
    static Types::LocalTag const & bodySID();            // 3F.07
    static Types::LocalTag const & sliceCount();         // 3F.08
    static Types::LocalTag const & posTableCount();      // 3F.0E
    static Types::LocalTag const & deltaEntryArray();    // 3F.09
    static Types::LocalTag const & indexEntryArray();    // 3F.0A

private:
    IndexTableLocalTag() = delete;
};
} // namespace IndexTables
} // namespace Vellum
