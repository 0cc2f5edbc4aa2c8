// The builder of operational patterns 1a to 3c.

#include "OPBuilders/GenericOPBuilder.h"

#include "MetaMetadata/Dictionary.h"

#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Wrappings.h"
#include "OPBuilders/TrackProxy_impl.h"
#include "Types/UMID.h"

namespace Vellum
{
namespace OPBuilders
{
namespace S = Metadata::Structural;

struct GenericOPBuilder::Impl : public BasicOPBuilder_impl
{
    Impl(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, unsigned short const * companyName,
         unsigned short const * productName, unsigned short const * versionString, Types::UUID const & productUID,
         Types::ProductVersion const * productVersion, Types::Timestamp const * date, bool isExternal, bool nonStream)
        : BasicOPBuilder_impl(dictionary, companyName, productName, versionString, productUID, productVersion, date,
                              isExternal, nonStream),
          externalFlag(isExternal), suppressMultipleWrappings(false)
    {
    }

    MaterialPackageProxy * addPackage(Templates::auto_ptr<MaterialPackageProxy_impl> proxy)
    {
        packages.push_back(std::move(proxy));
        if (packages.size() > 1)
            raisePackageComplexity(3);
        return packages.back().get();
    }

    // Whether a source package of the content storage carries more than one essence track.
    bool multiTrackSource() const
    {
        for (unsigned i = 0; i < contentStorage->packagesCount(); ++i)
        {
            S::SourcePackage const * source = S::metadataSetAs<S::SourcePackage>(contentStorage->package(i));
            if (source == 0)
                continue;
            unsigned essenceTracks = 0;
            for (unsigned t = 0; t < source->tracksCount(); ++t)
            {
                S::Sequence const * sequence = source->track(t) != 0 ? source->track(t)->sequence() : 0;
                essenceTracks += sequence != 0 && isEssenceDefinition(sequence->dataDefinition()) ? 1 : 0;
            }
            if (essenceTracks >= 2)
                return true;
        }
        return false;
    }

    // With one Material Package: do the first clips of its tracks name more than one source?
    bool severalFirstSources() const
    {
        Types::UMID32 const * first = 0;
        for (Templates::auto_ptr<TrackProxy_impl> const & track : packages.front()->tracks())
        {
            ClipData const * clip = track->firstClip();
            Types::UMID32 const * uid = clip != 0 ? clip->source()->packageUID() : 0;
            if (uid == 0)
                continue;
            if (first != 0 && !(*first == *uid))
                return true;
            first = first != 0 ? first : uid;
        }
        return false;
    }

    Templates::vector<Templates::auto_ptr<MaterialPackageProxy_impl>> packages;
    bool externalFlag;
    bool suppressMultipleWrappings;
};

GenericOPBuilder::GenericOPBuilder(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
                                   unsigned short const * companyName, unsigned short const * productName,
                                   unsigned short const * versionString, Types::UUID const & productUID,
                                   Types::ProductVersion const * productVersion, Types::Timestamp const * date,
                                   bool external, bool nonStream)
    : impl_(new Impl(dictionary, companyName, productName, versionString, productUID, productVersion, date, external,
                     nonStream))
{
}

GenericOPBuilder::~GenericOPBuilder() {}

MaterialPackageProxy * GenericOPBuilder::createMaterialPackage(Utils::TimeCode const & start,
                                                               Templates::Rational<int> const & editRate)
{
    return impl_->addPackage(
        Templates::auto_ptr<MaterialPackageProxy_impl>(new MaterialPackageProxy_impl(*impl_, start, editRate, 0)));
}

MaterialPackageProxy * GenericOPBuilder::createMaterialPackage(Utils::TimeCode const & start,
                                                               Templates::Rational<int> const & editRate,
                                                               Types::UMID32 const & packageUID)
{
    return impl_->addPackage(Templates::auto_ptr<MaterialPackageProxy_impl>(
        new MaterialPackageProxy_impl(*impl_, start, editRate, &packageUID)));
}

void GenericOPBuilder::update()
{
    Impl & b = *impl_;
    b.qualifierBit(1, b.external);
    b.qualifierBit(3, b.multiTrackSource());
    if (b.packages.size() == 1 && b.severalFirstSources())
        b.raisePackageComplexity(2);
    for (Templates::auto_ptr<MaterialPackageProxy_impl> const & package : b.packages)
        package->update();
    b.preface->operationalPattern(&b.label);
    b.rebuildEssenceContainers();
    for (unsigned i = b.preface->essenceContainersCount(); b.suppressMultipleWrappings && i > 0; --i)
        if (*b.preface->essenceContainer(i - 1) == S::Wrappings::multipleWrapping())
            b.preface->removeEssenceContainer(i - 1);
}

Types::UniversalLabel const & GenericOPBuilder::currentOP() const { return impl_->currentOP(); }

Templates::SharedPtr<Metadata::PartitionMetadata> GenericOPBuilder::metadata() const { return impl_->metadata; }

void GenericOPBuilder::externalEssence(bool external)
{
    impl_->external = external;
    impl_->externalFlag = external;
}

void GenericOPBuilder::suppressMultipleWrappingsUL(bool suppress) { impl_->suppressMultipleWrappings = suppress; }
} // namespace OPBuilders
} // namespace Vellum
