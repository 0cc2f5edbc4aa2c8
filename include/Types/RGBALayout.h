#pragma once
// The layout of the components of an RGBA pixel: eight pairs of a component code and its depth
// in bits. Unused pairs are 0.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
struct RGBAComponent
{
    // The component's letter in the pixel ('R', 'G', 'B', 'A', 'F', ...), or 0.
    unsigned char code;
    unsigned char depth;

    RGBAComponent() : code(0), depth(0) {}
    RGBAComponent(unsigned char componentCode, unsigned char componentDepth)
        : code(componentCode), depth(componentDepth)
    {
    }
};

inline bool operator==(RGBAComponent const & a, RGBAComponent const & b)
{
    return a.code == b.code && a.depth == b.depth;
}

inline bool operator!=(RGBAComponent const & a, RGBAComponent const & b)
{
    return !(a == b);
}

class RGBALayout : public SimpleDataType
{
public:
    enum
    {
        COMPONENT_COUNT = 8
    };

    // All 16 bytes 0.
    RGBALayout();
    // Reads 16 bytes.
    explicit RGBALayout(KLV::Value & value);

    // Component `index`, 0 to 7; 8 or more throws InvalidValue "Cannot set in this index".
    RGBAComponent get(unsigned int index) const;
    // Writes bytes 2 * index and 2 * index + 1; an index past 7 throws InvalidValue "Cannot set in
    // this index".
    void set(unsigned int index, RGBAComponent component);

    VELLUM_VALUE_HANDLE(RGBALayout)
};
} // namespace Types
} // namespace Vellum
