// Lists the packages of an MXF file and their tracks: ID, kind, edit rate and duration.
//
//   list_tracks FILE

#include <cstdio>

#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "MXFIO/Partition.h"
#include "MXFIO/Reader2.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/GenericPackage.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/MaterialPackage.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Utils/Text.h"

using namespace Vellum;
namespace S = Vellum::Metadata::Structural;

namespace
{
char const * kindOf(Types::UniversalLabel const * dataDefinition)
{
    switch (S::trackKind(dataDefinition))
    {
    case S::UnknownTrack: return "none";
    case S::PictureTrack: return "picture";
    case S::SoundTrack: return "sound";
    case S::DataTrack: return "data";
    case S::TimecodeTrack: return "timecode";
    default: return "other";
    }
}

void listTrack(S::Track * track)
{
    S::TimelineTrack * timeline = S::metadataSetAs<S::TimelineTrack>(static_cast<Metadata::MetadataSet *>(track));
    S::Sequence * sequence = track->sequence();
    std::printf("  track %u: %s", track->trackID() ? track->trackID()->value() : 0u,
                kindOf(sequence ? sequence->dataDefinition() : nullptr));
    if (timeline != nullptr && timeline->editRate() != nullptr)
        std::printf(", edit rate %d/%d", timeline->editRate()->numerator(), timeline->editRate()->denominator());
    if (sequence != nullptr && sequence->duration() != nullptr)
        std::printf(", duration %lld", static_cast<long long>(sequence->duration()->value()));
    std::printf("\n");
}
} // namespace

int main(int argc, char ** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: list_tracks FILE\n");
        return 2;
    }
    try
    {
        // Sets come back as their typed classes (Preface, packages, tracks) once this has run.
        S::initialize();
        Templates::wstring path = Utils::wide(argv[1]);
        DataIO::File::FileDataSource source(path.c_str(), 1 << 20);
        MXFIO::Reader2 reader(source, MetaMetadata::createStandardDictionary(), 65536);
        Templates::SharedPtr<Metadata::PartitionMetadata> metadata =
            reader.firstPartitionWithFinalMetadata()->metadata();
        S::ContentStorage * storage = S::findPreface(*metadata)->contentStorage();
        for (unsigned i = 0; storage != nullptr && i < storage->packagesCount(); ++i)
        {
            S::GenericPackage * package = storage->package(i);
            if (package == nullptr)
                continue;
            Metadata::MetadataSet * set = package;
            char const * kind = S::metadataSetAs<S::MaterialPackage>(set) ? "material"
                                : S::metadataSetAs<S::SourcePackage>(set) ? "source"
                                                                          : "other";
            std::printf("%s package \"%s\", %u tracks\n", kind,
                        package->packageName() ? Utils::narrow(package->packageName()->value()).c_str() : "",
                        package->tracksCount());
            for (unsigned t = 0; t < package->tracksCount(); ++t)
                if (S::Track * track = package->track(t))
                    listTrack(track);
        }
    }
    catch (Exceptions::BaseException const & e)
    {
        std::fprintf(stderr, "list_tracks: %s\n", e.whatUtf8().c_str());
        return 1;
    }
    return 0;
}
