#pragma once
// Well-known keys and key patterns, and the key of the fill items that this library writes.

#include "KLV/Key.h"

namespace Vellum
{
namespace KLV
{
// 06.0e.2b.34.01.01.01.01.03.01.02.10.01.00.00.00. Byte 15 follows fillItemKey(unsigned char).
extern unsigned char FILL_ITEM_PACK_KEY[16];
// 06.0e.2b.34.02.53.01.01.0d.01.02.01.01.10.01.00
extern unsigned char const INDEXTABLE_SEGMENT_KEY[16];
// 06.0e.2b.34.02.00.00.00: group keys; bytes 5 to 7 are wild.
extern unsigned char const groupKeyPattern[8];
// 01.01.0d.01.01.01.01.00: bytes 8 to 15 of structural sets, less the last.
extern unsigned char const mxfStructuralKeyPattern[8];
// 01.01.0d.01.04.01.00.00: bytes 8 to 15 of descriptive sets.
extern unsigned char const mxfDescriptiveKeyPattern[8];
// 06.0e.2b.34.04.01.01.01.0d.01.03.00.00.00.00.00: prefix of essence container labels.
extern unsigned char const mxfEssenceContainerLabels[16];
// 06.0e.2b.34.01.02.01.01.0d.01.03.01: prefix of Generic Container essence element keys.
extern unsigned char const mxfEssenceDictionaryGenericContainerV1Keys[12];
// 01.01.0d.01.03.01.00.00: Generic Container keys in the groups dictionary, from byte 6 on.
extern unsigned char const mxfGroupsDictionaryGCApplicationsV1_byte6[8];

// The key of fill items, as FILL_ITEM_PACK_KEY stands now.
Key const & fillItemKey();
// Sets byte 15 of the fill key for the whole process. Not locked: call it before writing starts.
void fillItemKey(unsigned char version);
} // namespace KLV
} // namespace Vellum
