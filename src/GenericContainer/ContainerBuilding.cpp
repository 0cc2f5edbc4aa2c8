// Shared steps of committing a container.

#include "GenericContainer/ContainerBuilding.h"

#include "Exceptions/Exceptions.h"
#include "GenericContainer/EssenceAnalyzer.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/Initialize.h"
#include "GenericContainer/RP224UniversalLabels.h"
#include "Metadata/Structural/FileDescriptor.h"
#include "Metadata/Structural/MultipleDescriptor.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Types/Factories/TimeStamp.h"
#include "Types/Factories/UID.h"
#include "Types/Rational.h"
#include "Types/Timestamp.h"
#include "Types/UMID.h"
#include "Types/UTF16String.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace GenericContainer
{
using namespace Metadata::Structural;

unsigned char packageMaterialType(size_t compound, size_t picture, size_t sound, size_t data)
{
    if (compound != 0 || (picture != 0 && sound != 0) || (picture != 0 && data != 0) || (sound != 0 && data != 0))
        return 13;
    if (picture != 0)
        return picture == 1 ? 5 : 6;
    if (sound != 0)
        return sound == 1 ? 8 : 9;
    if (data != 0)
        return data == 1 ? 11 : 12;
    return 15;
}

SourcePackage * createSourcePackage(Metadata::PartitionMetadata & metadata, unsigned char materialType)
{
    initialize();
    SourcePackage * package = metadataSetAs<SourcePackage>(metadata.createMetadataSet(StructuralMetadataKeys::sourcePackage()));
    THROW_UNLESS(InvalidMetadataSet, package != nullptr, "The metadata set factory made no Source Package");
    Types::UMID32 const uid = Types::Factories::UID::generateBasicUMID(
        static_cast<Types::Factories::UID::MaterialType>(materialType), Types::Factories::UID::MNMI_SMPTE,
        Types::Factories::UID::INMI_PRS16);
    Types::UTF16String const name(Utils::wide("Source Package").c_str());
    Types::Timestamp const now = Types::Factories::TimeStamp::getCurrentDate();
    package->packageUID(&uid);
    package->packageName(&name);
    package->packageCreationDate(&now);
    package->packageModifiedDate(&now);
    Preface * preface = findPreface(metadata);
    if (preface != nullptr && preface->contentStorage() != nullptr)
        preface->contentStorage()->appendPackage(package);
    return package;
}

MultipleDescriptor * createMultipleDescriptor(Metadata::PartitionMetadata & metadata, SourcePackage & package,
                                              Templates::Rational<int> const & rate,
                                              Types::UniversalLabel const & essenceContainer)
{
    initialize();
    MultipleDescriptor * descriptor =
        metadataSetAs<MultipleDescriptor>(metadata.createMetadataSet(StructuralMetadataKeys::multipleDescriptor()));
    THROW_UNLESS(InvalidMetadataSet, descriptor != nullptr, "The metadata set factory made no Multiple Descriptor");
    Types::Rational const sampleRate(rate);
    descriptor->sampleRate(&sampleRate);
    descriptor->essenceContainer(&essenceContainer);
    package.descriptor(descriptor);
    return descriptor;
}

bool prepareAnalyzer(EssenceAnalyzer & analyzer, Templates::Rational<int> const & packageRate, bool & temporalReordering)
{
    analyzer.editRate(packageRate);
    bool const isValid = analyzer.preload();
    THROW_UNLESS(InvalidFormat, isValid, "The essence format is invalid");
    if (analyzer.containsTemporalDependencies())
    {
        THROW_UNLESS_TEXT(InvalidFormat, !temporalReordering, "temporalReordoring_ == false",
                          "Trying to set two sources with temporal reordoring to the same generic container. MXF "
                          "only allows for one source with temporal reordoring.");
        temporalReordering = true;
        THROW_UNLESS_TEXT(InvalidFormat, analyzer.editRate() == packageRate, "preEntry.analyzer -> editRate () == rate_",
                          "Trying to set an essence analyzer with temporal reordoring and with editRate different "
                          "from the content package.");
        return true;
    }
    return false;
}

void setDescriptorWrapping(SourcePackage & package, unsigned int trackId, bool clipWrapped)
{
    FileDescriptor * descriptor = fileDescriptorForTrack(package, trackId);
    if (descriptor == nullptr || descriptor->essenceContainer() == nullptr)
        return;
    Types::UniversalLabel const label = RP224UniversalLabels::withWrapping(
        *descriptor->essenceContainer(), clipWrapped ? RP224UniversalLabels::ClipWrapped : RP224UniversalLabels::FrameWrapped);
    descriptor->essenceContainer(&label);
}

unsigned int combineKAG(unsigned int a, unsigned int b)
{
    if (a == 0 || b == 0)
        return 0;
    unsigned int x = a, y = b;
    while (y != 0)
    {
        unsigned int const r = x % y;
        x = y;
        y = r;
    }
    return a / x * b;
}

unsigned int takeTrackID(unsigned int & next, TrackIDs & used, EssenceAnalyzer * analyzer)
{
    while (used.find(next) != used.end())
        next += 256;
    used[next] = analyzer;
    return next;
}

} // namespace GenericContainer
} // namespace Vellum
