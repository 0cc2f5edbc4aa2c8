#include "Essence/Analyzers/StreamDetection.h"

#include <cstdio>
#include <cstring>

#include "DataIO/File/FileDataSource.h"
#include "Essence/Analyzers/PCMAnalyzer.h"
#include "Essence/JPEG2000/JPEG2000Analyzer.h"
#include "Essence/MPEG/MPEG2VideoAnalyzer.h"
#include "Essence/VC3/VC3Analyzer.h"
#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace Essence
{
namespace Analyzers
{
namespace
{
bool startsWith(unsigned char const * bytes, uint64 size, char const * magic, uint64 length)
{
    return size >= length && std::memcmp(bytes, magic, static_cast<size_t>(length)) == 0;
}

// Large reads for streams that are read once from start to end.
int const READ_BLOCK = 1 << 20;
} // namespace

StreamKind detectStreamKind(unsigned char const * bytes, uint64 size)
{
    if (startsWith(bytes, size, "\x00\x00\x01\xb3", 4))
        return MPEG2VideoStream;
    if (startsWith(bytes, size, "\x00\x00\x02\x80", 4) && size >= 5 && bytes[4] >= 1 && bytes[4] <= 3)
        return VC3Stream;
    if (startsWith(bytes, size, "\xff\x4f\xff\x51", 4))
        return JPEG2000Stream;
    if ((startsWith(bytes, size, "RIFF", 4) || startsWith(bytes, size, "RF64", 4)) && size >= 12 &&
        std::memcmp(bytes + 8, "WAVE", 4) == 0)
        return WaveStream;
    return UnknownStream;
}

char const * streamKindName(StreamKind kind)
{
    switch (kind)
    {
    case MPEG2VideoStream:
        return "MPEG-2 video";
    case VC3Stream:
        return "VC-3";
    case JPEG2000Stream:
        return "JPEG 2000";
    case WaveStream:
        return "Wave";
    default:
        return "unknown";
    }
}

Templates::SharedPtr<GenericContainer::EssenceAnalyzer> openAnalyzer(Templates::wstring const & path,
                                                                    Templates::Rational<int> const & rate,
                                                                    StreamKind & kind)
{
    unsigned char head[16] = {0};
    uint64 got = 0;
    {
        DataIO::File::FileDataSource probe(path.c_str(), 4096);
        got = probe.read(head, sizeof head);
    }
    kind = detectStreamKind(head, got);
    Templates::SharedPtr<DataIO::DataSource> source(new DataIO::File::FileDataSource(path.c_str(), READ_BLOCK));
    typedef Templates::SharedPtr<GenericContainer::EssenceAnalyzer> Analyzer;
    switch (kind)
    {
    case MPEG2VideoStream:
        return Analyzer(new MPEG::MPEG2VideoAnalyzer(source));
    case VC3Stream:
        return Analyzer(new VC3::VC3Analyzer(source, rate));
    case JPEG2000Stream:
        return Analyzer(new JPEG2000::JPEG2000Analyzer(source, rate));
    case WaveStream:
        return Analyzer(new PCMAnalyzer(source, rate));
    default:
        THROW_UNLESS_TEXT(InvalidFormat, false, "kind != UnknownStream", "unknown elementary stream");
    }
    return Analyzer();
}
} // namespace Analyzers
} // namespace Essence
} // namespace Vellum
