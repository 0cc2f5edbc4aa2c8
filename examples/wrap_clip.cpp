// Wraps elementary streams (MPEG-2 video, VC-3, JPEG 2000, Wave) into an OP1a file, then reads the
// file back and counts the edit units and bytes of each essence track.
//
//   wrap_clip OUT.mxf INPUT...

#include <cstdio>
#include <map>

#include "Essence/Analyzers/StreamDetection.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Structural/Initialize.h"
#include "MXFIO/EssenceFile.h"
#include "OPBuilders/FileWrapper.h"
#include "Utils/Text.h"

using namespace Vellum;

int main(int argc, char ** argv)
{
    if (argc < 3)
    {
        std::fprintf(stderr, "usage: wrap_clip OUT.mxf INPUT...\n");
        return 2;
    }
    try
    {
        Metadata::Structural::initialize();
        // Pictures whose stream carries no rate (VC-3, JPEG 2000) take 25 frames a second.
        OPBuilders::FileWrapper wrapper(MetaMetadata::createStandardDictionary(), OPBuilders::FileWrapper::Options());
        for (int i = 2; i < argc; ++i)
        {
            Essence::Analyzers::StreamKind kind;
            wrapper.addStream(Essence::Analyzers::openAnalyzer(Utils::wide(argv[i]), Templates::Rational<int>(25), kind),
                              Utils::wide(argv[i]));
            std::printf("%s: %s\n", argv[i], Essence::Analyzers::streamKindName(kind));
        }
        wrapper.write(Utils::wide(argv[1]), OPBuilders::FileWrapper::Progress());

        MXFIO::EssenceFile file(Utils::wide(argv[1]));
        Templates::auto_ptr<MXFIO::EssenceReader> essence = file.essenceReader();
        std::map<unsigned, std::pair<unsigned long long, unsigned long long>> tracks;
        MXFIO::EssenceReader::ElementEditUnit unit;
        while (essence->nextElementEditUnit(65536, unit) && unit.element.packet)
        {
            tracks[unit.trackID].first += 1;
            tracks[unit.trackID].second += unit.element.packet->length();
        }
        for (auto const & track : tracks)
            std::printf("%s: track %u, %llu edit units, %llu bytes\n", argv[1], track.first, track.second.first,
                        track.second.second);
    }
    catch (Exceptions::BaseException const & e)
    {
        std::fprintf(stderr, "wrap_clip: %s\n", e.whatUtf8().c_str());
        return 1;
    }
    return 0;
}
