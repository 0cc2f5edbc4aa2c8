// Generic Container element keys.

#include "GenericContainer/ElementKey.h"

namespace Vellum
{
namespace GenericContainer
{
namespace
{
unsigned char const ELEMENT_KEY[KLV::Key::SIZE] = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01,
                                                   0x0D, 0x01, 0x03, 0x01, 0x00, 0x00, 0x00, 0x00};
}

KLV::Key const & elementKeyTemplate()
{
    static KLV::Key const key(ELEMENT_KEY);
    return key;
}

KLV::Key elementKey(unsigned char itemType, unsigned char elementCount, unsigned char elementType,
                    unsigned char elementNumber)
{
    unsigned char bytes[KLV::Key::SIZE];
    for (unsigned i = 0; i < 12; ++i)
        bytes[i] = ELEMENT_KEY[i];
    bytes[12] = itemType;
    bytes[13] = elementCount;
    bytes[14] = elementType;
    bytes[15] = elementNumber;
    return KLV::Key(bytes);
}

uint32 trackNumberOfKey(KLV::Key const & key)
{
    unsigned char const * b = key.rawBuffer();
    return (uint32(b[12]) << 24) | (uint32(b[13]) << 16) | (uint32(b[14]) << 8) | uint32(b[15]);
}
} // namespace GenericContainer
} // namespace Vellum
