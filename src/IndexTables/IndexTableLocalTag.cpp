#include "IndexTables/IndexTableLocalTag.h"

namespace Vellum
{
namespace IndexTables
{
#define VELLUM_INDEX_TAG(Name, Tag)                                                               \
    Types::LocalTag const & IndexTableLocalTag::Name()                                            \
    {                                                                                             \
        static Types::LocalTag const tag(static_cast<unsigned short>(Tag));                       \
        return tag;                                                                               \
    }

VELLUM_INDEX_TAG(instanceID, 0x3C0A)
VELLUM_INDEX_TAG(indexEditRate, 0x3F0B)
VELLUM_INDEX_TAG(indexStartPosition, 0x3F0C)
VELLUM_INDEX_TAG(indexDuration, 0x3F0D)
VELLUM_INDEX_TAG(editUnitByteCount, 0x3F05)
VELLUM_INDEX_TAG(indexSID, 0x3F06)
VELLUM_INDEX_TAG(bodySID, 0x3F07)
VELLUM_INDEX_TAG(sliceCount, 0x3F08)
VELLUM_INDEX_TAG(posTableCount, 0x3F0E)
VELLUM_INDEX_TAG(deltaEntryArray, 0x3F09)
VELLUM_INDEX_TAG(indexEntryArray, 0x3F0A)

#undef VELLUM_INDEX_TAG
} // namespace IndexTables
} // namespace Vellum
