// The kind and wrapping of an essence container label, by its family.

#include "GenericContainer/RP224UniversalLabels.h"

#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

#include <string>

namespace Vellum
{
namespace GenericContainer
{
namespace RP224UniversalLabels
{
namespace
{
// How the wrapping is told inside a family.
enum Rule
{
    // Byte 15: 1 frame, 2 clip, anything else refused.
    Byte15Strict,
    // Byte 15: 1 frame, 2 clip, anything else unknown.
    Byte15,
    // Byte 15: 2 clip, anything else unknown.
    Byte15ClipOnly,
    // Always frame.
    FrameOnly,
    // Byte 14 decides kind and wrapping of the sound labels.
    Byte14Sound,
    // Byte 14: 1 frame, 2 clip, 3 custom, anything else refused.
    Byte14WithCustom,
    // Byte 14: 1 frame, 2 clip, anything else refused.
    Byte14Strict
};

struct Family
{
    unsigned char label[16];
    bool shortMask;
    uint32 kind;
    Rule rule;
    char const * lead;
    char const * tail;
};

char const WRAP_LEAD[] = "Invalid wrap kind value ";

Family const FAMILIES[] = {
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x02, 0x00, 0x00}, false, 6,
     Byte15Strict, WRAP_LEAD, ", in the Essence Container UL, "},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x01, 0x00, 0x00}, false, 5,
     FrameOnly, nullptr, nullptr},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x02, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x04, 0x00, 0x00}, false, 7,
     Byte15, nullptr, nullptr},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x05, 0x00, 0x00}, false, 10,
     Byte15, nullptr, nullptr},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x06, 0x00, 0x00}, false, 4,
     Byte14Sound, "Invalid value, byte 15, ", ", in the AES/BWF Wave Essence Container UL, "},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x02, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x08, 0x00, 0x00}, false, 8,
     Byte15ClipOnly, nullptr, nullptr},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x02, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x09, 0x00, 0x00}, false, 9,
     Byte15ClipOnly, nullptr, nullptr},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x03, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x0A, 0x00, 0x00}, false, 11,
     Byte14WithCustom, WRAP_LEAD, ", in the A-Law Essence Container UL, "},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x07, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x0C, 0x00, 0x00}, false, 12,
     Byte14Strict, WRAP_LEAD, ", in the JPEG2000 Essence Container UL, "},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x02, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x0F, 0x00, 0x00}, false, 3,
     Byte15ClipOnly, nullptr, nullptr},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x02, 0x0D, 0x01, 0x03, 0x01, 0x02, 0x10, 0x00, 0x00}, false, 2,
     Byte15ClipOnly, nullptr, nullptr},
    {{0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x08, 0x04, 0x01, 0x02, 0x02, 0x01, 0x00, 0x00, 0x00}, true, 13,
     Byte15, nullptr, nullptr},
};

// Byte 7 (the registry version) never counts, nor do the last two bytes (the last three with the
// short mask).
bool matches(Family const & family, unsigned char const * label)
{
    unsigned const end = family.shortMask ? 13 : 14;
    for (unsigned i = 0; i < end; ++i)
        if (i != 7 && family.label[i] != label[i])
            return false;
    return true;
}

[[noreturn]] void refuse(Family const & family, unsigned value, Types::UniversalLabel const & label, int line)
{
    Templates::string text(family.lead);
    text += std::to_string(value).c_str();
    text += family.tail;
    Templates::wstring message = Utils::wide(text.c_str());
    message += label.toString(Types::Dotted);
    throw Exceptions::InvalidValue(message.c_str(), __FILE__, line);
}

EssenceContainerInfo byteRule(Family const & family, unsigned value, bool strict, bool clipOnly,
                              Types::UniversalLabel const & label)
{
    if (value == 1 && !clipOnly)
        return EssenceContainerInfo(family.kind, FrameWrapped);
    if (value == 2)
        return EssenceContainerInfo(family.kind, ClipWrapped);
    if (strict)
        refuse(family, value, label, __LINE__);
    return EssenceContainerInfo(family.kind, UnknownWrapping);
}

EssenceContainerInfo soundRule(Family const & family, unsigned value, Types::UniversalLabel const & label)
{
    switch (value)
    {
    case 1: return EssenceContainerInfo(4, FrameWrapped);
    case 2: return EssenceContainerInfo(4, ClipWrapped);
    case 3: return EssenceContainerInfo(1, FrameWrapped);
    case 4: return EssenceContainerInfo(1, ClipWrapped);
    case 8: return EssenceContainerInfo(4, UnknownWrapping);
    case 9: return EssenceContainerInfo(1, UnknownWrapping);
    default: refuse(family, value, label, __LINE__);
    }
}

EssenceContainerInfo apply(Family const & family, Types::UniversalLabel const & label)
{
    unsigned char const * b = label.rawBuffer();
    switch (family.rule)
    {
    case Byte15Strict: return byteRule(family, b[15], true, false, label);
    case Byte15: return byteRule(family, b[15], false, false, label);
    case Byte15ClipOnly: return byteRule(family, b[15], false, true, label);
    case FrameOnly: return EssenceContainerInfo(family.kind, FrameWrapped);
    case Byte14Sound: return soundRule(family, b[14], label);
    case Byte14WithCustom:
        if (b[14] == 3)
            return EssenceContainerInfo(family.kind, UnknownWrapping);
        return byteRule(family, b[14], true, false, label);
    case Byte14Strict: return byteRule(family, b[14], true, false, label);
    }
    return EssenceContainerInfo();
}
// The byte of a family that tells the wrapping, and its frame and clip values; false for a
// family with one wrapping only.
bool wrappingByte(Family const & family, unsigned char const * b, unsigned & index, unsigned char & frame,
                  unsigned char & clip)
{
    switch (family.rule)
    {
    case Byte15Strict:
    case Byte15:
        index = 15, frame = 1, clip = 2;
        return b[15] == 1 || b[15] == 2;
    case Byte14Sound:
        index = 14, frame = b[14] <= 2 ? 1 : 3, clip = b[14] <= 2 ? 2 : 4;
        return b[14] >= 1 && b[14] <= 4;
    case Byte14WithCustom:
    case Byte14Strict:
        index = 14, frame = 1, clip = 2;
        return b[14] == 1 || b[14] == 2;
    default:
        return false;
    }
}

// VC-3 mappings: byte 14 is 1 for frame and 2 for clip wrapping.
bool isVC3Mapping(unsigned char const * b)
{
    static unsigned char const prefix[14] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x00,
                                             0x0D, 0x01, 0x03, 0x01, 0x02, 0x11};
    for (unsigned i = 0; i < 14; ++i)
        if (i != 7 && prefix[i] != b[i])
            return false;
    return b[14] == 1 || b[14] == 2;
}
} // namespace

Types::UniversalLabel withWrapping(Types::UniversalLabel const & label, Wrapping wrapping)
{
    if (wrapping == UnknownWrapping)
        return label;
    unsigned char bytes[16];
    for (unsigned i = 0; i < 16; ++i)
        bytes[i] = label.rawBuffer()[i];
    unsigned index = 0;
    unsigned char frame = 0, clip = 0;
    bool known = false;
    for (Family const & family : FAMILIES)
        if (matches(family, bytes))
        {
            known = wrappingByte(family, bytes, index, frame, clip);
            break;
        }
    if (!known && isVC3Mapping(bytes))
        known = true, index = 14, frame = 1, clip = 2;
    if (!known)
        return label;
    bytes[index] = wrapping == FrameWrapped ? frame : clip;
    return Types::UniversalLabel(bytes);
}

EssenceContainerInfo essenceContainerInfo(Types::UniversalLabel const & label)
{
    for (Family const & family : FAMILIES)
        if (matches(family, label.rawBuffer()))
            return apply(family, label);
    return EssenceContainerInfo();
}
} // namespace RP224UniversalLabels
} // namespace GenericContainer
} // namespace Vellum
