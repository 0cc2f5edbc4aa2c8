#pragma once
// What kind of packet a key announces.

#include "KLV/Key.h"
#include "KLV/KeyConstants.h"

namespace Vellum
{
namespace KLV
{
// A group key (06.0e.2b.34.02) coded as a local set.
bool isLocalSet(Key const & key);
// A group key of a fixed-length pack.
bool isFixedPack(Key const & key);
// A group key of a local set with 2-byte tags and 2-byte lengths (byte 5 is 0x53).
bool isMXFDefaultLocalSet(Key const & key);
bool isStructuralMetadataSet(Key const & key);
bool isDescriptiveMetadataSet(Key const & key);
// Structural or descriptive.
bool isMetadataSet(Key const & key);
bool isIndexTableKlvSegment(Key const & key);
// The fill key in any version (byte 7), with the present byte 15.
bool isFillItem(Key const & key);
// A Generic Container essence element, or a Generic Container key in the groups dictionary.
bool isEssence(Key const & key);
} // namespace KLV
} // namespace Vellum
