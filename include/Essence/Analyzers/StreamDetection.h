#pragma once
// Tells an elementary stream's kind from its first bytes and opens the library's analyzer for it.

#include "GenericContainer/EssenceAnalyzer.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Essence
{
namespace Analyzers
{
enum StreamKind
{
    UnknownStream = 0,
    MPEG2VideoStream,
    VC3Stream,
    JPEG2000Stream,
    WaveStream
};

// The kind that the first bytes of a stream announce: an MPEG-2 sequence header, a VC-3 frame
// header prefix, a JPEG 2000 codestream's SOC and SIZ markers, a RIFF/RF64 Wave file.
StreamKind detectStreamKind(unsigned char const * bytes, uint64 size);
// "MPEG-2 video", "VC-3", "JPEG 2000", "Wave", "unknown".
char const * streamKindName(StreamKind kind);

// The analyzer of the file at `path`, read in large blocks. `rate` is the edit rate of pictures
// whose stream carries none (VC-3, JPEG 2000), and the picture rate that sound is cut by. A file
// that cannot be opened throws as the file source does; a stream of no known kind throws
// InvalidFormat with "unknown elementary stream".
Templates::SharedPtr<GenericContainer::EssenceAnalyzer> openAnalyzer(Templates::wstring const & path,
                                                                    Templates::Rational<int> const & rate,
                                                                    StreamKind & kind);
} // namespace Analyzers
} // namespace Essence
} // namespace Vellum
