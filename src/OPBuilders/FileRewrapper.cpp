// An MXF file's essence tracks, as stored, into a new file of another layout.

#include "OPBuilders/FileRewrapper.h"

#include "Exceptions/Exceptions.h"
#include "Metadata/Structural/GenericPackage.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "MXFIO/EssenceFile.h"
#include "OPBuilders/TrackCopyAnalyzer.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UTF16String.h"
#include "Utils/Text.h"

#include <string>

namespace Vellum
{
namespace OPBuilders
{
namespace S = Metadata::Structural;

FileRewrapper::FileRewrapper(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
                             FileWrapper::Options const & options)
    : dictionary_(dictionary), options_(options)
{
}

FileRewrapper::~FileRewrapper() {}

Templates::vector<Templates::wstring> FileRewrapper::rewrap(Templates::wstring const & source,
                                                            Templates::wstring const & target,
                                                            FileWrapper::Progress const & progress)
{
    FileWrapper::Options options = options_;
    Templates::vector<unsigned int> trackIDs;
    Templates::vector<Templates::wstring> names;
    Templates::Rational<int> pictureRate(0, 1);
    {
        MXFIO::EssenceFile file(source);
        S::GenericPackage & package = file.package();
        if (!options.start.isDefined())
            options.start = S::startTimecode(package);
        if (options.packageName.empty() && package.packageName())
            options.packageName = package.packageName()->value();
        Templates::auto_ptr<MXFIO::EssenceReader> reader = file.essenceReader();
        for (S::TimelineTrack * track : reader->essenceTracks())
        {
            if (!track->trackID())
                continue;
            unsigned int const id = track->trackID()->value();
            Types::Rational const * rate = track->editRate();
            if (pictureRate.numerator() == 0 && S::trackKind(*track) == S::PictureTrack && rate &&
                rate->numerator() > 0 && rate->denominator() > 0)
                pictureRate = Templates::Rational<int>(rate->numerator(), rate->denominator());
            trackIDs.push_back(id);
            names.push_back(Utils::wide(("track-" + std::to_string(id)).c_str()));
        }
    }
    THROW_UNLESS(NotFound, !trackIDs.empty(), "the file has no essence track to write again");
    FileWrapper wrapper(dictionary_, options);
    for (size_t i = 0; i < trackIDs.size(); ++i)
        wrapper.addStream(makeTrackCopyAnalyzer(source, trackIDs[i], pictureRate), names[i]);
    return wrapper.write(target, progress);
}
} // namespace OPBuilders
} // namespace Vellum
