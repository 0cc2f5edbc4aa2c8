#include "Essence/JPEG2000/CodestreamParser.h"

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Essence
{
namespace JPEG2000
{
namespace
{
enum Marker
{
    SOC = 0xFF4F,
    SIZ = 0xFF51,
    SOT = 0xFF90,
    EOC = 0xFFD9
};

uint32 be32(unsigned char const * p)
{
    return (uint32(p[0]) << 24) | (uint32(p[1]) << 16) | (uint32(p[2]) << 8) | p[3];
}
} // namespace

CodestreamParser::CodestreamParser(StreamBuffer & buffer) : buffer_(buffer), position_(0) {}

bool CodestreamParser::read16(uint64 position, uint32 & value)
{
    unsigned char b[2];
    if (!buffer_.copy(position, 2, b))
        return false;
    value = (uint32(b[0]) << 8) | b[1];
    return true;
}

void CodestreamParser::readSIZ(uint64 position, uint32 length)
{
    THROW_UNLESS(InvalidFormat, length >= 41 && length <= 2 + 36 + 3 * 16384, "The JPEG 2000 SIZ segment has a wrong length");
    Templates::vector<unsigned char> b(length - 2);
    THROW_UNLESS(InvalidFormat, buffer_.copy(position + 4, b.size(), b.data()), "The stream ends inside a JPEG 2000 SIZ segment");
    ImageSize size;
    size.profile = (unsigned(b[0]) << 8) | b[1];
    size.width = be32(&b[2]);
    size.height = be32(&b[6]);
    size.xOffset = be32(&b[10]);
    size.yOffset = be32(&b[14]);
    unsigned count = (unsigned(b[34]) << 8) | b[35];
    THROW_UNLESS(InvalidFormat, count != 0 && b.size() == 36 + 3 * std::size_t(count) && size.width > size.xOffset &&
                                    size.height > size.yOffset,
                 "The JPEG 2000 SIZ segment is invalid");
    for (unsigned i = 0; i < count; ++i)
    {
        unsigned char const * c = &b[36 + 3 * i];
        size.components.push_back({unsigned(c[0] & 0x7F) + 1, (c[0] & 0x80) != 0, c[1], c[2]});
    }
    size_ = size;
}

CodestreamParser::Step CodestreamParser::walk(uint64 & end)
{
    uint64 const limit = position_ + MAXIMUM_CODESTREAM_SIZE;
    uint32 marker = 0, length = 0;
    if (!read16(position_, marker))
        return CUT_SHORT;
    THROW_UNLESS(InvalidFormat, marker == SOC, "A JPEG 2000 codestream does not begin with SOC");
    bool haveSize = false;
    uint64 at = position_ + 2;
    // The main header, up to the first tile-part.
    for (;;)
    {
        if (!read16(at, marker) || !read16(at + 2, length))
            return CUT_SHORT;
        THROW_UNLESS(InvalidFormat, (marker >> 8) == 0xFF && marker != EOC && marker != SOC,
                     "A JPEG 2000 main header holds no marker where one is due");
        if (marker == SOT)
            break;
        THROW_UNLESS(InvalidFormat, length >= 2, "A JPEG 2000 marker segment has a wrong length");
        if (marker == SIZ)
        {
            readSIZ(at, length);
            haveSize = true;
        }
        at += 2 + length;
        THROW_UNLESS(InvalidFormat, at < limit, "A JPEG 2000 codestream is longer than 256 MiB");
    }
    THROW_UNLESS(InvalidFormat, haveSize, "A JPEG 2000 codestream has no SIZ segment");
    // The tile-parts, each as long as its Psot says, then EOC.
    for (;;)
    {
        if (!read16(at, marker))
        {
            THROW_UNLESS(InvalidFormat, buffer_.end() != at, "A JPEG 2000 codestream has no EOC behind its last tile-part");
            return CUT_SHORT;
        }
        if (marker == EOC)
        {
            end = at + 2;
            return WHOLE;
        }
        THROW_UNLESS(InvalidFormat, marker == SOT, "A JPEG 2000 codestream has no EOC behind its last tile-part");
        unsigned char sot[10];
        if (!buffer_.copy(at + 2, sizeof sot, sot))
            return CUT_SHORT;
        uint32 psot = be32(sot + 4);
        THROW_UNLESS(InvalidFormat, psot != 0, "A JPEG 2000 tile-part runs to the end of the codestream (Psot 0)");
        THROW_UNLESS(InvalidFormat, psot >= 14, "A JPEG 2000 tile-part is shorter than its header");
        at += psot;
        THROW_UNLESS(InvalidFormat, at < limit, "A JPEG 2000 codestream is longer than 256 MiB");
    }
}

bool CodestreamParser::next(DataIO::Chain * data)
{
    uint64 end = 0;
    if (walk(end) == CUT_SHORT || !buffer_.fill(end))
        return false;
    if (data != nullptr)
        buffer_.chain(position_, end, *data);
    buffer_.release(end);
    position_ = end;
    return true;
}
} // namespace JPEG2000
} // namespace Essence
} // namespace Vellum
