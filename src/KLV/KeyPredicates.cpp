#include "KLV/KeyPredicates.h"

#include <cstring>

namespace Vellum
{
namespace KLV
{
namespace
{
// 06 0e 2b 34 02: a key of the groups registry.
bool isGroupKey(unsigned char const * b)
{
    return std::memcmp(b, groupKeyPattern, 5) == 0;
}

bool isLocalSetByte(unsigned char b5)
{
    return (b5 & 0x87) == 3;
}
} // namespace

bool isLocalSet(Key const & key)
{
    unsigned char const * b = key.rawBuffer();
    return isGroupKey(b) && isLocalSetByte(b[5]);
}

bool isFixedPack(Key const & key)
{
    unsigned char const * b = key.rawBuffer();
    return isGroupKey(b) && b[5] == 0x05;
}

bool isMXFDefaultLocalSet(Key const & key)
{
    unsigned char const * b = key.rawBuffer();
    return isGroupKey(b) && b[5] == 0x53;
}

bool isStructuralMetadataSet(Key const & key)
{
    unsigned char const * b = key.rawBuffer();
    return isGroupKey(b) && b[5] == 0x53 && b[15] == 0 && std::memcmp(b + 6, mxfStructuralKeyPattern, 7) == 0;
}

bool isDescriptiveMetadataSet(Key const & key)
{
    unsigned char const * b = key.rawBuffer();
    return isGroupKey(b) && isLocalSetByte(b[5]) && std::memcmp(b + 6, mxfDescriptiveKeyPattern, 6) == 0;
}

bool isMetadataSet(Key const & key)
{
    return isStructuralMetadataSet(key) || isDescriptiveMetadataSet(key);
}

bool isIndexTableKlvSegment(Key const & key)
{
    return std::memcmp(key.rawBuffer(), INDEXTABLE_SEGMENT_KEY, 16) == 0;
}

bool isFillItem(Key const & key)
{
    // Byte 7 is the registry version, which differs between writers.
    unsigned char const * b = key.rawBuffer();
    return std::memcmp(b, FILL_ITEM_PACK_KEY, 7) == 0 && std::memcmp(b + 8, FILL_ITEM_PACK_KEY + 8, 8) == 0;
}

bool isEssence(Key const & key)
{
    unsigned char const * b = key.rawBuffer();
    if (std::memcmp(b, mxfEssenceDictionaryGenericContainerV1Keys, 12) == 0)
        return true;
    return isGroupKey(b) && (isLocalSetByte(b[5]) || b[5] == 0x05) &&
           std::memcmp(b + 6, mxfGroupsDictionaryGCApplicationsV1_byte6, 6) == 0;
}
} // namespace KLV
} // namespace Vellum
