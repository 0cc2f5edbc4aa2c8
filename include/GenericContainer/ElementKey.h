#pragma once
// The key of a Generic Container essence element and the track number that it gives: bytes 12
// to 15 are the item type, the count of elements in the item, the element type and the element
// number.

#include "KLV/Key.h"
#include "Platform/Types.h"

namespace Vellum
{
namespace GenericContainer
{
// 06.0E.2B.34.01.02.01.01.0D.01.03.01.00.00.00.00.
KLV::Key const & elementKeyTemplate();
KLV::Key elementKey(unsigned char itemType, unsigned char elementCount, unsigned char elementType,
                    unsigned char elementNumber);
// Bytes 12 to 15 of the key as a big-endian number.
uint32 trackNumberOfKey(KLV::Key const & key);
} // namespace GenericContainer
} // namespace Vellum
