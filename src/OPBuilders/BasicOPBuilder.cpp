// The shared part of both builders: the skeleton of Preface, Identification and Content
// Storage, and the operational pattern label.

#include "OPBuilders/BasicOPBuilder_impl.h"

#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadataSupport.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Packs/PrimerPack.h"
#include "Platform/Platform.h"
#include "Platform/Version.h"
#include "Types/Factories/TimeStamp.h"
#include "Types/Factories/UID.h"
#include "Types/Integers.h"
#include "Types/ProductVersion.h"
#include "Types/UTF16String.h"
#include "Types/VersionType.h"

namespace Vellum
{
namespace OPBuilders
{
namespace S = Metadata::Structural;

namespace
{
// OP 1a with bytes 12 to 14 still to be set.
unsigned char const BASE_LABEL[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,
                                      0x0d, 0x01, 0x02, 0x01, 0x00, 0x00, 0x00, 0x00};

bool allZero(Types::ProductVersion const & version)
{
    return version.major() == 0 && version.minor() == 0 && version.patch() == 0 && version.build() == 0 &&
           version.releaseVersion() == 0;
}

void fillIdentification(S::Identification & identification, unsigned short const * companyName,
                        unsigned short const * productName, unsigned short const * versionString,
                        Types::UUID const & productUID, Types::ProductVersion const * productVersion,
                        Types::Timestamp const & date)
{
    Types::UUID const generation = Types::Factories::UID::generateUUID();
    identification.thisGenerationUID(&generation);
    Types::UTF16String const company(companyName), product(productName), version(versionString);
    identification.companyName(&company);
    identification.productName(&product);
    Types::ProductVersion const own(Version::major(), Version::minor(), Version::patch(), Version::build(),
                                    Version::releaseVersion());
    if (productVersion != 0)
    {
        identification.productVersion(productVersion);
        identification.toolkitVersion(allZero(*productVersion) ? productVersion : &own);
    }
    else
        identification.toolkitVersion(&own);
    identification.versionString(&version);
    identification.productUID(&productUID);
    identification.modifiedDate(&date);
    Templates::wstring const platformName = Platform::platformName();
    Types::UTF16String const platform(platformName.c_str());
    identification.platform(&platform);
}
} // namespace

BasicOPBuilder_impl::BasicOPBuilder_impl(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
                                         unsigned short const * companyName, unsigned short const * productName,
                                         unsigned short const * versionString, Types::UUID const & productUID,
                                         Types::ProductVersion const * productVersion, Types::Timestamp const * givenDate,
                                         bool isExternal, bool nonStream)
    : preface(0), contentStorage(0),
      date(givenDate != 0 ? *givenDate : Types::Factories::TimeStamp::getCurrentDate()), identification(0),
      label(BASE_LABEL), itemComplexity(1), packageComplexity(1),
      qualifier(1 | (isExternal ? 2 : 0) | (nonStream ? 4 : 0)), external(isExternal)
{
    rewriteLabel();
    S::initialize();
    metadata = Templates::SharedPtr<Metadata::PartitionMetadata>(new Metadata::PartitionMetadata(
        Templates::auto_ptr<Metadata::PartitionDictionary>(new Metadata::PartitionDictionary(
            dictionary, Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack)))));

    preface = create<S::Preface>(S::StructuralMetadataKeys::preface());
    preface->lastModifiedDate(&date);
    Types::UInt32 const objectModel(1);
    preface->objectModelVersion(&objectModel);

    S::Identification * made = create<S::Identification>(S::StructuralMetadataKeys::identification());
    fillIdentification(*made, companyName, productName, versionString, productUID, productVersion, date);
    preface->appendIdentification(made);
    identification = made;
    preface->generation(identification);

    contentStorage = create<S::ContentStorage>(S::StructuralMetadataKeys::contentStorage());
    preface->contentStorage(contentStorage);
    Types::VersionType const version(1, 2);
    preface->version(&version);
    // Leaves an empty batch that is present, written with no members rather than left out.
    preface->appendDMScheme(Types::UniversalLabel());
    preface->removeDMScheme(0);
}

BasicOPBuilder_impl::~BasicOPBuilder_impl() {}

Types::UniversalLabel const & BasicOPBuilder_impl::currentOP() const { return label; }

void BasicOPBuilder_impl::raiseItemComplexity(int value)
{
    if (value > itemComplexity)
    {
        itemComplexity = value;
        rewriteLabel();
    }
}

void BasicOPBuilder_impl::raisePackageComplexity(int value)
{
    if (value > packageComplexity)
    {
        packageComplexity = value;
        rewriteLabel();
    }
}

void BasicOPBuilder_impl::qualifierBit(int bit, bool on)
{
    qualifier = on ? (qualifier | (1 << bit)) : (qualifier & ~(1 << bit));
    rewriteLabel();
}

void BasicOPBuilder_impl::rewriteLabel()
{
    unsigned char bytes[16];
    for (unsigned i = 0; i < 16; ++i)
        bytes[i] = label.rawBuffer()[i];
    bytes[12] = static_cast<unsigned char>(itemComplexity);
    bytes[13] = static_cast<unsigned char>(packageComplexity);
    bytes[14] = static_cast<unsigned char>(qualifier);
    label = Types::UniversalLabel(bytes);
}

namespace
{
void collectContainers(S::GenericDescriptor const * descriptor, Templates::vector<Types::UniversalLabel> & labels)
{
    S::FileDescriptor const * file = S::metadataSetAs<S::FileDescriptor>(descriptor);
    if (file == 0)
        return;
    Types::UniversalLabel const * ul = file->essenceContainer();
    VELLUM_METADATA_ASSERT(ul != 0, "FileDescriptor doesn't have a EssenceContainer UL");
    bool seen = false;
    for (Types::UniversalLabel const & label : labels)
        seen = seen || label == *ul;
    if (!seen)
        labels.push_back(*ul);
    S::MultipleDescriptor const * multiple = S::metadataSetAs<S::MultipleDescriptor>(descriptor);
    for (unsigned i = 0; multiple != 0 && i < multiple->subDescriptorUIDsCount(); ++i)
        collectContainers(multiple->subDescriptorUID(i), labels);
}
} // namespace

void BasicOPBuilder_impl::rebuildEssenceContainers()
{
    while (preface->essenceContainersCount() > 0)
        preface->removeEssenceContainer(preface->essenceContainersCount() - 1);
    if (external)
        return;
    Templates::vector<Types::UniversalLabel> labels;
    for (unsigned i = 0; i < contentStorage->packagesCount(); ++i)
    {
        S::SourcePackage const * source = S::metadataSetAs<S::SourcePackage>(contentStorage->package(i));
        if (source != 0)
            collectContainers(source->descriptor(), labels);
    }
    for (Types::UniversalLabel const & label : labels)
        preface->appendEssenceContainer(label);
}
} // namespace OPBuilders
} // namespace Vellum
