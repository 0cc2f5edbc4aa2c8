#include "Essence/VC3/VC3Parser.h"

#include <cstring>
#include <string>

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Essence
{
namespace VC3
{
namespace
{
CompressionInfo const table[] = {
    {1235, 917504, 1920, 1080, 10, false, false}, {1237, 606208, 1920, 1080, 8, false, false},
    {1238, 917504, 1920, 1080, 8, false, false},  {1241, 917504, 1920, 1080, 10, true, false},
    {1242, 606208, 1920, 1080, 8, true, false},   {1243, 917504, 1920, 1080, 8, true, false},
    {1244, 606208, 1440, 1080, 8, true, false},   {1250, 458752, 1280, 720, 10, false, false},
    {1251, 458752, 1280, 720, 8, false, false},   {1252, 303104, 1280, 720, 8, false, false},
    {1253, 188416, 1920, 1080, 8, false, false},  {1256, 1835008, 1920, 1080, 10, false, true},
    {1258, 212992, 960, 720, 8, false, false},    {1259, 417792, 1440, 1080, 8, false, false},
    {1260, 835584, 1440, 1080, 8, true, false},   {1270, 0, 0, 0, 10, false, true},
    {1271, 0, 0, 0, 10, false, false},            {1272, 0, 0, 0, 8, false, false},
    {1273, 0, 0, 0, 8, false, false},             {1274, 0, 0, 0, 8, false, false},
};

bool isPrefix(unsigned char const * p)
{
    return p[0] == 0 && p[1] == 0 && p[2] == 0x02 && p[3] == 0x80 && p[4] >= 1 && p[4] <= 3;
}
} // namespace

CompressionInfo const * compressionInfo(uint32 compressionId)
{
    for (CompressionInfo const & info : table)
        if (info.compressionId == compressionId)
            return &info;
    return nullptr;
}

VC3Parser::VC3Parser(StreamBuffer & buffer) : buffer_(buffer), haveHeader_(false), position_(0) {}

bool VC3Parser::prefixAt(uint64 position)
{
    unsigned char p[5];
    return buffer_.copy(position, sizeof p, p) && isPrefix(p);
}

bool VC3Parser::readHeader()
{
    if (haveHeader_)
        return true;
    unsigned char h[0x2C];
    if (!buffer_.copy(0, sizeof h, h))
    {
        THROW_UNLESS(InvalidFormat, buffer_.end() == 0, "The stream ends inside its first VC-3 frame header");
        return false;
    }
    THROW_UNLESS(InvalidFormat, isPrefix(h), "The stream does not begin with a VC-3 frame header");
    header_.compressionId = (uint32(h[0x28]) << 24) | (uint32(h[0x29]) << 16) | (uint32(h[0x2A]) << 8) | h[0x2B];
    header_.height = (unsigned(h[0x18]) << 8) | h[0x19];
    header_.width = (unsigned(h[0x1A]) << 8) | h[0x1B];
    header_.info = compressionInfo(header_.compressionId);
    std::string message = "Unknown VC-3 compression ID " + std::to_string(header_.compressionId);
    THROW_UNLESS(InvalidFormat, header_.info != nullptr, message.c_str());
    THROW_UNLESS(InvalidFormat, header_.width != 0 && header_.height != 0, "The VC-3 frame header has no picture size");
    header_.frameSize = header_.info->frameSize != 0 ? header_.info->frameSize : measureFrameSize();
    haveHeader_ = true;
    return true;
}

uint32 VC3Parser::measureFrameSize()
{
    uint64 position = HEADER_SIZE;
    for (;;)
    {
        THROW_UNLESS(InvalidFormat, position < MAXIMUM_FRAME_SIZE, "A VC-3 frame is longer than 64 MiB");
        if (!buffer_.fill(position + 5))
            return uint32(buffer_.end());
        uint64 size = 0;
        unsigned char const * piece = buffer_.piece(position, size);
        unsigned char const * hit = static_cast<unsigned char const *>(std::memchr(piece, 0x02, size));
        if (hit == nullptr)
        {
            position += size;
            continue;
        }
        uint64 at = position + uint64(hit - piece) - 2;
        if (prefixAt(at))
            return uint32(at);
        position = at + 3;
    }
}

bool VC3Parser::next(DataIO::Chain * data)
{
    if (!readHeader())
        return false;
    uint64 end = position_ + header_.frameSize;
    if (!buffer_.fill(end))
        return false;
    THROW_UNLESS(InvalidFormat, prefixAt(position_), "A VC-3 frame does not begin with the frame header prefix");
    if (data != nullptr)
        buffer_.chain(position_, end, *data);
    buffer_.release(end);
    position_ = end;
    return true;
}
} // namespace VC3
} // namespace Essence
} // namespace Vellum
