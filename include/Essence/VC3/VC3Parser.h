#pragma once
// Cuts a VC-3 (DNxHD, DNxHR) stream into frames. Every frame starts with the header prefix and
// has the size that its compression ID gives; for the resolution-independent IDs of the 1270s the
// size is the distance between the first two frame headers.

#include "DataIO/Chain.h"
#include "Essence/StreamBuffer.h"

namespace Vellum
{
namespace Essence
{
namespace VC3
{
// What a compression ID stands for. frameSize 0: the size follows the picture size.
struct CompressionInfo
{
    uint32 compressionId;
    uint32 frameSize;
    unsigned width;
    unsigned height;
    unsigned bitDepth;
    bool interlaced;
    bool chroma444;
};

// The entry of a known compression ID, or null.
CompressionInfo const * compressionInfo(uint32 compressionId);

struct VC3Header
{
    VC3Header() : compressionId(0), width(0), height(0), frameSize(0), info(nullptr) {}

    uint32 compressionId;
    // Samples per line and lines, as the header gives them.
    unsigned width;
    unsigned height;
    uint32 frameSize;
    CompressionInfo const * info;
};

class VC3Parser
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        HEADER_SIZE = 0x280,
        MAXIMUM_FRAME_SIZE = 64 << 20
    };

    explicit VC3Parser(StreamBuffer & buffer);

    // Reads the first frame's header; throws InvalidFormat for a stream that is no VC-3 or has
    // an unknown compression ID. False for an empty stream.
    bool readHeader();
    VC3Header const & header() const { return header_; }
    // The next whole frame, appended to `data` when given; false at the end of the stream.
    bool next(DataIO::Chain * data);

private:
    VC3Parser(VC3Parser const &) = delete;
    VC3Parser & operator=(VC3Parser const &) = delete;

    // The prefix stands at `position`.
    bool prefixAt(uint64 position);
    // The distance from the first frame to the second frame header, or all the stream.
    uint32 measureFrameSize();

    StreamBuffer & buffer_;
    VC3Header header_;
    bool haveHeader_;
    uint64 position_;
};
} // namespace VC3
} // namespace Essence
} // namespace Vellum
