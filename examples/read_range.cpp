// Reads the essence of one track of an MXF file's Material Package (else of its first package),
// edit units FIRST to FIRST+COUNT-1 at the track's edit rate. Prints each unit's position and
// size, or writes the bytes as stored to OUT.
//
//   read_range FILE TRACK-ID FIRST COUNT [OUT]

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "MXFIO/EssenceReader.h"
#include "MXFIO/Partition.h"
#include "MXFIO/Reader2.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/MaterialPackage.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Utils/Text.h"

using namespace Vellum;
namespace S = Vellum::Metadata::Structural;
typedef Templates::Rational<int64> Seconds;

namespace
{
S::GenericPackage * packageToRead(S::ContentStorage & storage)
{
    for (unsigned i = 0; i < storage.packagesCount(); ++i)
        if (S::metadataSetAs<S::MaterialPackage>(static_cast<Metadata::MetadataSet *>(storage.package(i))))
            return storage.package(i);
    return storage.packagesCount() > 0 ? storage.package(0) : nullptr;
}

// Copies the element's value to `out` in slices of 1 MiB.
void copyValue(KLV::Value & value, std::FILE * out)
{
    std::vector<unsigned char> buffer(1 << 20);
    while (value.remaining() != 0)
    {
        uint64 const got = value.read(buffer.data(), buffer.size());
        if (got == 0 || std::fwrite(buffer.data(), 1, got, out) != got)
            throw std::runtime_error("the element cannot be copied");
    }
}
} // namespace

int main(int argc, char ** argv)
{
    if (argc != 5 && argc != 6)
    {
        std::fprintf(stderr, "usage: read_range FILE TRACK-ID FIRST COUNT [OUT]\n");
        return 2;
    }
    unsigned const trackID = unsigned(std::strtoul(argv[2], nullptr, 10));
    int64 const first = std::strtoll(argv[3], nullptr, 10), count = std::strtoll(argv[4], nullptr, 10);
    try
    {
        S::initialize();
        Templates::wstring path = Utils::wide(argv[1]);
        DataIO::File::FileDataSource source(path.c_str(), 1 << 20);
        MXFIO::Reader2 reader(source, MetaMetadata::createStandardDictionary(), 65536);
        Templates::SharedPtr<Metadata::PartitionMetadata> metadata =
            reader.firstPartitionWithFinalMetadata()->metadata();
        S::Preface * preface = S::findPreface(*metadata);
        S::GenericPackage * package = preface->contentStorage() ? packageToRead(*preface->contentStorage()) : nullptr;
        if (package == nullptr)
        {
            std::fprintf(stderr, "read_range: the file has no package\n");
            return 1;
        }
        MXFIO::EssenceReader essence(reader, *preface, *package, false, false);

        // The range in seconds, at the track's own edit rate.
        S::TimelineTrack * track = nullptr;
        for (S::TimelineTrack * candidate : essence.essenceTracks())
            if (candidate->trackID() && candidate->trackID()->value() == trackID)
                track = candidate;
        if (track == nullptr || track->editRate() == nullptr || track->editRate()->numerator() <= 0)
        {
            std::fprintf(stderr, "read_range: the package has no essence track %u with an edit rate\n", trackID);
            return 2;
        }
        Seconds const unit(track->editRate()->denominator(), track->editRate()->numerator());
        Seconds const start = Seconds(first) * unit, end = Seconds(first + count) * unit;
        if (count <= 0 || !essence.seek(start))
            return count <= 0 ? 0 : 1;

        std::FILE * out = argc == 6 ? std::fopen(argv[5], "wb") : nullptr;
        if (argc == 6 && out == nullptr)
        {
            std::perror(argv[5]);
            return 1;
        }
        MXFIO::EssenceReader::ElementEditUnit element;
        while (essence.nextElementEditUnit(65536, element) && element.element.packet)
        {
            if (element.trackID != trackID)
                continue;
            if (!(element.position < end))
                break;
            // A seek hands out the units a decoder needs before the start; they are left out.
            if (!(start < element.position + element.duration))
                continue;
            KLV::Value & value = element.element.packet->value();
            if (out != nullptr)
                copyValue(value, out);
            else
                std::printf("%lld/%lld s: %llu bytes\n", static_cast<long long>(element.position.numerator()),
                            static_cast<long long>(element.position.denominator()),
                            static_cast<unsigned long long>(value.remaining()));
        }
        if (out != nullptr && std::fclose(out) != 0)
            return 1;
    }
    catch (Exceptions::BaseException const & e)
    {
        std::fprintf(stderr, "read_range: %s\n", e.whatUtf8().c_str());
        return 1;
    }
    catch (std::exception const & e)
    {
        std::fprintf(stderr, "read_range: %s\n", e.what());
        return 1;
    }
    return 0;
}
