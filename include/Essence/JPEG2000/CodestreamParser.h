#pragma once
// Cuts a run of JPEG 2000 codestreams (ISO/IEC 15444-1), one per frame, from SOC to EOC: the
// marker segments of the main header by their lengths, the tile-parts by their Psot lengths.

#include "DataIO/Chain.h"
#include "Essence/StreamBuffer.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Essence
{
namespace JPEG2000
{
// The image and tile size segment.
struct ImageSize
{
    ImageSize() : profile(0), width(0), height(0), xOffset(0), yOffset(0) {}

    unsigned profile;
    uint32 width;
    uint32 height;
    uint32 xOffset;
    uint32 yOffset;
    struct Component
    {
        unsigned depth;
        bool isSigned;
        unsigned xSubsampling;
        unsigned ySubsampling;
    };
    Templates::vector<Component> components;
};

class CodestreamParser
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        MAXIMUM_CODESTREAM_SIZE = 256 << 20
    };

    explicit CodestreamParser(StreamBuffer & buffer);

    // The next whole codestream, appended to `data` when given; false at the end of the stream.
    // Throws InvalidFormat for a codestream that is damaged or has no EOC.
    bool next(DataIO::Chain * data);
    // The SIZ segment of the last codestream.
    ImageSize const & imageSize() const { return size_; }

private:
    CodestreamParser(CodestreamParser const &) = delete;
    CodestreamParser & operator=(CodestreamParser const &) = delete;

    enum Step
    {
        WHOLE,
        CUT_SHORT
    };
    // Walks the codestream at position_; `end` behind its EOC.
    Step walk(uint64 & end);
    void readSIZ(uint64 position, uint32 length);
    // Two bytes, or false at the end of the stream.
    bool read16(uint64 position, uint32 & value);

    StreamBuffer & buffer_;
    ImageSize size_;
    uint64 position_;
};
} // namespace JPEG2000
} // namespace Essence
} // namespace Vellum
