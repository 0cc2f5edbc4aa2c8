#include "Essence/MPEG/MPEG2VideoParser.h"

#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Essence
{
namespace MPEG
{
namespace
{
enum StartCode
{
    PICTURE = 0x00,
    LAST_SLICE = 0xAF,
    EXTENSION = 0xB5,
    SEQUENCE_HEADER = 0xB3,
    SEQUENCE_END = 0xB7,
    GROUP = 0xB8
};

enum ExtensionId
{
    SEQUENCE_EXTENSION = 1,
    PICTURE_CODING_EXTENSION = 8
};

// The first position of 00 00 01 lying wholly in the `size` bytes, or `size`.
uint64 findPrefix(unsigned char const * p, uint64 size)
{
    uint64 i = 0;
#if defined(__SSE2__)
    // Thirty-two positions at a time; most have no one byte where the code ends, and only those
    // that have are tested for the two zero bytes in front.
    __m128i const zero = _mm_setzero_si128();
    __m128i const one = _mm_set1_epi8(1);
    for (; i + 34 <= size; i += 32)
    {
        __m128i const ones0 = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<__m128i const *>(p + i + 2)), one);
        __m128i const ones1 = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<__m128i const *>(p + i + 18)), one);
        if (_mm_movemask_epi8(_mm_or_si128(ones0, ones1)) == 0)
            continue;
        for (uint64 half = 0; half < 32; half += 16)
        {
            __m128i const a = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<__m128i const *>(p + i + half)), zero);
            __m128i const b = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<__m128i const *>(p + i + half + 1)), zero);
            unsigned hits = unsigned(_mm_movemask_epi8(_mm_and_si128(_mm_and_si128(a, b), half == 0 ? ones0 : ones1)));
            if (hits != 0)
                return i + half + uint64(__builtin_ctz(hits));
        }
    }
#endif
    for (; i + 2 < size; ++i)
        if (p[i + 2] == 1 && p[i + 1] == 0 && p[i] == 0)
            return i;
    return size;
}

int gcd(int a, int b)
{
    while (b != 0)
    {
        int t = a % b;
        a = b;
        b = t;
    }
    return a;
}
} // namespace

MPEG2SequenceInfo::MPEG2SequenceInfo()
    : width(0), height(0), aspectRatioCode(0), frameRateCode(0), bitRateValue(0), hasExtension(false),
      profileAndLevel(0), progressiveSequence(false), chromaFormat(1), lowDelay(false), frameRateExtensionN(0),
      frameRateExtensionD(0)
{
}

Templates::Rational<int> MPEG2SequenceInfo::frameRate() const
{
    static int const numerators[9] = {0, 24000, 24, 25, 30000, 30, 50, 60000, 60};
    static int const denominators[9] = {1, 1001, 1, 1, 1001, 1, 1, 1001, 1};
    if (frameRateCode == 0 || frameRateCode > 8)
        return Templates::Rational<int>(0, 1);
    int n = numerators[frameRateCode] * int(frameRateExtensionN + 1);
    int d = denominators[frameRateCode] * int(frameRateExtensionD + 1);
    int g = gcd(n, d);
    return Templates::Rational<int>(n / g, d / g);
}

Templates::Rational<int> MPEG2SequenceInfo::aspectRatio() const
{
    switch (aspectRatioCode)
    {
    case 2:
        return Templates::Rational<int>(4, 3);
    case 3:
        return Templates::Rational<int>(16, 9);
    case 4:
        return Templates::Rational<int>(221, 100);
    default:
    {
        int g = gcd(int(width), int(height));
        return g == 0 ? Templates::Rational<int>(0, 1) : Templates::Rational<int>(int(width) / g, int(height) / g);
    }
    }
}

MPEG2Frame::MPEG2Frame()
    : position(0), size(0), sequenceHeader(false), gopHeader(false), closedGop(false), brokenLink(false),
      codingType(0), temporalReference(0), pictureStructure(3), pictureCount(0), topFieldFirst(false),
      repeatFirstField(false), progressiveFrame(false)
{
}

MPEG2VideoParser::MPEG2VideoParser(StreamBuffer & buffer)
    : buffer_(buffer), started_(false), haveSequence_(false), nextAt_(0), nextCode_(0), haveNext_(false),
      lastSlice_(0), inPicture_(false)
{
}

MPEG2VideoParser::Search MPEG2VideoParser::findStartCode(uint64 from, uint64 limit, uint64 & at, unsigned & code)
{
    for (uint64 position = from;;)
    {
        if (position >= limit)
            return LIMIT_REACHED;
        if (!buffer_.fill(position + 1))
            return END_OF_STREAM;
        uint64 size = 0;
        unsigned char const * piece = buffer_.piece(position, size);
        uint64 found = findPrefix(piece, size);
        // The last two positions of the piece need bytes of the next one.
        for (uint64 seam = size < 2 ? 0 : size - 2; found == size && seam < size; ++seam)
        {
            if (!buffer_.fill(position + seam + 3))
                return END_OF_STREAM;
            if (buffer_.at(position + seam) == 0 && buffer_.at(position + seam + 1) == 0 &&
                buffer_.at(position + seam + 2) == 1)
                found = seam;
        }
        if (found < size)
        {
            at = position + found;
            if (at >= limit)
                return LIMIT_REACHED;
            if (!buffer_.fill(at + 4))
                return END_OF_STREAM;
            code = found + 3 < size ? piece[found + 3] : buffer_.at(at + 3);
            return FOUND;
        }
        position += size;
    }
}

bool MPEG2VideoParser::readSequenceHeader(uint64 at)
{
    unsigned char b[8];
    if (!buffer_.copy(at + 4, sizeof b, b))
        return false;
    MPEG2SequenceInfo info = sequence_;
    info.width = (unsigned(b[0]) << 4) | (b[1] >> 4);
    info.height = (unsigned(b[1] & 0x0F) << 8) | b[2];
    info.aspectRatioCode = b[3] >> 4;
    info.frameRateCode = b[3] & 0x0F;
    info.bitRateValue = (uint32(b[4]) << 10) | (uint32(b[5]) << 2) | (b[6] >> 6);
    THROW_UNLESS(InvalidFormat,
                 info.width != 0 && info.height != 0 && info.frameRateCode >= 1 && info.frameRateCode <= 8 &&
                     info.aspectRatioCode >= 1 && info.aspectRatioCode <= 4,
                 "The MPEG-2 video sequence header is invalid");
    sequence_ = info;
    haveSequence_ = true;
    return true;
}

bool MPEG2VideoParser::readExtension(uint64 at, MPEG2Frame & frame)
{
    unsigned char b[6];
    if (!buffer_.copy(at + 4, sizeof b, b))
        return false;
    unsigned id = b[0] >> 4;
    if (id == SEQUENCE_EXTENSION && !inPicture_)
    {
        sequence_.hasExtension = true;
        sequence_.profileAndLevel = ((b[0] & 0x0F) << 4) | (b[1] >> 4);
        sequence_.progressiveSequence = (b[1] >> 3) & 1;
        sequence_.chromaFormat = (b[1] >> 1) & 3;
        sequence_.width = (sequence_.width & 0x0FFF) | ((((b[1] & 1) << 1) | (b[2] >> 7)) << 12);
        sequence_.height = (sequence_.height & 0x0FFF) | (((b[2] >> 5) & 3) << 12);
        sequence_.bitRateValue =
            (sequence_.bitRateValue & 0x3FFFF) | (((uint32(b[2] & 0x1F) << 7) | (b[3] >> 1)) << 18);
        sequence_.lowDelay = b[5] >> 7;
        sequence_.frameRateExtensionN = (b[5] >> 5) & 3;
        sequence_.frameRateExtensionD = b[5] & 0x1F;
    }
    else if (id == PICTURE_CODING_EXTENSION && inPicture_ && frame.pictureCount == 1)
    {
        frame.pictureStructure = b[2] & 3;
        frame.topFieldFirst = b[3] >> 7;
        frame.repeatFirstField = (b[3] >> 1) & 1;
        frame.progressiveFrame = b[4] >> 7;
    }
    return true;
}

bool MPEG2VideoParser::readGroupHeader(uint64 at, MPEG2Frame & frame)
{
    unsigned char b[4];
    if (!buffer_.copy(at + 4, sizeof b, b))
        return false;
    frame.gopHeader = true;
    frame.closedGop = (b[3] >> 6) & 1;
    frame.brokenLink = (b[3] >> 5) & 1;
    return true;
}

bool MPEG2VideoParser::readPictureHeader(uint64 at, MPEG2Frame & frame)
{
    unsigned char b[2];
    if (!buffer_.copy(at + 4, sizeof b, b))
        return false;
    THROW_UNLESS(InvalidFormat, haveSequence_, "An MPEG-2 video picture comes before any sequence header");
    frame.temporalReference = (unsigned(b[0]) << 2) | (b[1] >> 6);
    frame.codingType = (b[1] >> 3) & 7;
    THROW_UNLESS(InvalidFormat, frame.codingType >= I_PICTURE && frame.codingType <= B_PICTURE,
                 "The MPEG-2 video picture coding type is invalid");
    return true;
}

MPEG2VideoParser::Step MPEG2VideoParser::take(uint64 at, unsigned code, MPEG2Frame & frame)
{
    bool read = true;
    if (code == SEQUENCE_HEADER || code == GROUP)
    {
        if (inPicture_)
            return FRAME_ENDS;
        read = code == GROUP ? readGroupHeader(at, frame) : readSequenceHeader(at);
        frame.sequenceHeader = frame.sequenceHeader || code == SEQUENCE_HEADER;
    }
    else if (code == PICTURE)
    {
        if (inPicture_)
        {
            // The second field of a pair belongs to the frame of the first.
            if (frame.pictureCount != 1 || frame.pictureStructure == 3)
                return FRAME_ENDS;
            frame.pictureCount = 2;
            return CONTINUE;
        }
        read = readPictureHeader(at, frame);
        inPicture_ = true;
        frame.pictureCount = 1;
    }
    else if (code == EXTENSION)
        read = readExtension(at, frame);
    else if (code <= LAST_SLICE && inPicture_ && code > lastSlice_)
        lastSlice_ = code;
    return read ? CONTINUE : TRUNCATED;
}

bool MPEG2VideoParser::complete(MPEG2Frame const & frame) const
{
    unsigned height = sequence_.height;
    // Beyond 2800 lines the slice codes no longer count the rows on their own.
    if (height > 2800)
        return true;
    bool field = frame.pictureStructure != 3;
    if (field && frame.pictureCount != 2)
        return false;
    unsigned rows = field ? (height + 31) / 32 : sequence_.progressiveSequence ? (height + 15) / 16 : 2 * ((height + 31) / 32);
    return lastSlice_ >= rows;
}

void MPEG2VideoParser::start()
{
    started_ = true;
    uint64 from = 0;
    for (;;)
    {
        Search found = findStartCode(from, SEARCH_LIMIT, nextAt_, nextCode_);
        THROW_UNLESS(InvalidFormat, found == FOUND, "No MPEG-2 video sequence header in the first megabyte of the stream");
        if (nextCode_ == SEQUENCE_HEADER)
            break;
        from = nextAt_ + 3;
    }
    haveNext_ = true;
}

bool MPEG2VideoParser::build(MPEG2Frame & frame, uint64 & end)
{
    frame = MPEG2Frame();
    frame.position = nextAt_;
    inPicture_ = false;
    lastSlice_ = 0;
    uint64 at = nextAt_;
    unsigned code = nextCode_;
    haveNext_ = false;
    for (;;)
    {
        Step step = take(at, code, frame);
        if (step == TRUNCATED)
            return false;
        if (step == FRAME_ENDS)
        {
            nextAt_ = at;
            nextCode_ = code;
            haveNext_ = true;
            end = at;
            return true;
        }
        if (code == SEQUENCE_END)
        {
            end = at + 4;
            haveNext_ = findStartCode(end, end + MAXIMUM_FRAME_SIZE, nextAt_, nextCode_) == FOUND;
            return true;
        }
        Search found = findStartCode(at + 4, frame.position + MAXIMUM_FRAME_SIZE, at, code);
        THROW_UNLESS(InvalidFormat, found != LIMIT_REACHED, "An MPEG-2 video frame is longer than 32 MiB");
        if (found == END_OF_STREAM)
        {
            end = buffer_.end();
            return frame.pictureCount != 0 && complete(frame);
        }
    }
}

bool MPEG2VideoParser::next(MPEG2Frame & frame, DataIO::Chain * data)
{
    if (!started_)
        start();
    while (haveNext_)
    {
        uint64 end = 0;
        if (!build(frame, end))
            return false;
        // What stands behind a sequence end code without a picture of its own carries no frame.
        if (frame.pictureCount == 0)
            continue;
        frame.size = end - frame.position;
        if (data != nullptr)
            buffer_.chain(frame.position, end, *data);
        buffer_.release(end);
        return true;
    }
    return false;
}
} // namespace MPEG
} // namespace Essence
} // namespace Vellum
