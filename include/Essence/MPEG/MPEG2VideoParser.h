#pragma once
// Cuts an MPEG-2 video elementary stream (ISO/IEC 13818-2) into coded frames and reads the
// headers that describe them. A frame is one frame picture or two field pictures, with the
// sequence and group of pictures headers that stand in front of it.

#include "DataIO/Chain.h"
#include "Essence/StreamBuffer.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace Essence
{
namespace MPEG
{
// The sequence header and its extension.
struct MPEG2SequenceInfo
{
    MPEG2SequenceInfo();

    unsigned width;
    unsigned height;
    unsigned aspectRatioCode;
    unsigned frameRateCode;
    // In units of 400 bit/s, with the extension's high bits.
    uint32 bitRateValue;
    bool hasExtension;
    unsigned profileAndLevel;
    bool progressiveSequence;
    // 1 4:2:0, 2 4:2:2, 3 4:4:4.
    unsigned chromaFormat;
    bool lowDelay;
    unsigned frameRateExtensionN;
    unsigned frameRateExtensionD;

    // Frames per second; 0/1 for a forbidden code.
    Templates::Rational<int> frameRate() const;
    // The display aspect ratio; the picture's own ratio for square samples.
    Templates::Rational<int> aspectRatio() const;
    uint64 bitRate() const { return uint64(bitRateValue) * 400; }
};

enum PictureCodingType
{
    I_PICTURE = 1,
    P_PICTURE = 2,
    B_PICTURE = 3
};

// One coded frame: where it lies in the stream and what its headers say.
struct MPEG2Frame
{
    MPEG2Frame();

    uint64 position;
    uint64 size;
    bool sequenceHeader;
    bool gopHeader;
    bool closedGop;
    bool brokenLink;
    unsigned codingType;
    unsigned temporalReference;
    // 1 top field, 2 bottom field, 3 frame; the first field for a pair of field pictures.
    unsigned pictureStructure;
    unsigned pictureCount;
    bool topFieldFirst;
    bool repeatFirstField;
    bool progressiveFrame;
};

class MPEG2VideoParser
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        // Searches this far for the first sequence header before it gives up on the stream.
        SEARCH_LIMIT = 1 << 20,
        // No coded frame is longer.
        MAXIMUM_FRAME_SIZE = 32 << 20
    };

    explicit MPEG2VideoParser(StreamBuffer & buffer);

    // The next whole frame, its bytes appended to `data` when given; false at the end of the
    // stream. A frame cut short by the end of the stream is not given. Throws InvalidFormat for
    // a stream that is no MPEG-2 video.
    bool next(MPEG2Frame & frame, DataIO::Chain * data);
    // The last sequence header read.
    MPEG2SequenceInfo const & sequence() const { return sequence_; }

private:
    MPEG2VideoParser(MPEG2VideoParser const &) = delete;
    MPEG2VideoParser & operator=(MPEG2VideoParser const &) = delete;

    enum Search
    {
        FOUND,
        END_OF_STREAM,
        LIMIT_REACHED
    };
    enum Step
    {
        CONTINUE,
        FRAME_ENDS,
        TRUNCATED
    };
    // The next start code whose prefix lies in [from, limit): its position and the byte behind
    // its prefix.
    Search findStartCode(uint64 from, uint64 limit, uint64 & at, unsigned & code);
    // Reads the header behind the start code at `at` into the frame being built.
    Step take(uint64 at, unsigned code, MPEG2Frame & frame);
    bool readSequenceHeader(uint64 at);
    bool readExtension(uint64 at, MPEG2Frame & frame);
    bool readGroupHeader(uint64 at, MPEG2Frame & frame);
    bool readPictureHeader(uint64 at, MPEG2Frame & frame);
    // Builds one frame from the start code in nextAt_; false at the end of the stream.
    bool build(MPEG2Frame & frame, uint64 & end);
    // The frame's slices reach the last row of macroblocks.
    bool complete(MPEG2Frame const & frame) const;
    // The first start code of the stream, then the position of the first frame.
    void start();

    StreamBuffer & buffer_;
    MPEG2SequenceInfo sequence_;
    bool started_;
    bool haveSequence_;
    // The start code that opens the next frame, found while ending the last one.
    uint64 nextAt_;
    unsigned nextCode_;
    bool haveNext_;
    // The highest slice start code of the frame being built.
    unsigned lastSlice_;
    bool inPicture_;
};
} // namespace MPEG
} // namespace Essence
} // namespace Vellum
