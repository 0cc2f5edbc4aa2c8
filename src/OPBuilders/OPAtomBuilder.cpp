// OP-Atom files and the aggregation of several into one clip.

#include "OPBuilders/OPAtomBuilder.h"

#include "Metadata/PartitionMetadataSupport.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "OPBuilders/TrackProxy_impl.h"
#include "Types/Integers.h"
#include "Types/UMID.h"

namespace Vellum
{
namespace OPBuilders
{
namespace S = Metadata::Structural;

namespace
{
unsigned char const ATOM_LABEL[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x02,
                                      0x0d, 0x01, 0x02, 0x01, 0x10, 0x00, 0x00, 0x00};
}

struct OPAtomBuilder::Impl : public BasicOPBuilder_impl
{
    Impl(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, unsigned short const * companyName,
         unsigned short const * productName, unsigned short const * versionString, Types::UUID const & productUID,
         Types::ProductVersion const * productVersion, Types::Timestamp const * date)
        : BasicOPBuilder_impl(dictionary, companyName, productName, versionString, productUID, productVersion, date,
                              false, false),
          atomLabel(ATOM_LABEL)
    {
        preface->operationalPattern(&atomLabel);
    }

    Types::UniversalLabel const & currentOP() const override { return atomLabel; }

    // Byte 13 collects its flags; they are only ever set.
    void setFlag(unsigned char flag)
    {
        unsigned char bytes[16];
        for (unsigned i = 0; i < 16; ++i)
            bytes[i] = atomLabel.rawBuffer()[i];
        bytes[13] = static_cast<unsigned char>(bytes[13] | flag);
        atomLabel = Types::UniversalLabel(bytes);
    }

    // The Preface's primary package when it is a Material Package, else the first one there is.
    S::MaterialPackage * materialPackage() const
    {
        S::MaterialPackage * primary = S::metadataSetAs<S::MaterialPackage>(preface->primaryPackage());
        for (unsigned i = 0; primary == 0 && i < contentStorage->packagesCount(); ++i)
            primary = S::metadataSetAs<S::MaterialPackage>(contentStorage->package(i));
        return primary;
    }

    Templates::auto_ptr<MaterialPackageProxy_impl> proxy;
    Types::UniversalLabel atomLabel;
};

OPAtomBuilder::OPAtomBuilder(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
                             unsigned short const * companyName, unsigned short const * productName,
                             unsigned short const * versionString, Types::UUID const & productUID,
                             Types::ProductVersion const * productVersion, Types::Timestamp const * date)
    : impl_(new Impl(dictionary, companyName, productName, versionString, productUID, productVersion, date))
{
}

OPAtomBuilder::~OPAtomBuilder() {}

MaterialPackageProxy * OPAtomBuilder::createMaterialPackage(Utils::TimeCode const & start,
                                                            Templates::Rational<int> const & editRate)
{
    impl_->proxy.reset(new MaterialPackageProxy_impl(*impl_, start, editRate, 0));
    return impl_->proxy.get();
}

void OPAtomBuilder::topLevelFilePackage(S::SourcePackage const & package) { impl_->preface->primaryPackage(&package); }

void OPAtomBuilder::update()
{
    Impl & b = *impl_;
    if (b.proxy.get() != 0)
        b.proxy->update();
    S::MaterialPackage * package = b.materialPackage();
    if (package != 0)
    {
        Templates::list<S::TimelineTrack *> tracks;
        S::getAllEssenceTracks(*package, tracks);
        for (S::TimelineTrack * track : tracks)
            if (track->sequence() != 0 && track->sequence()->structuralComponentsCount() > 1)
                b.setFlag(1);
        if (tracks.size() > 1)
            b.setFlag(2);
    }
    b.preface->operationalPattern(&b.atomLabel);
    b.rebuildEssenceContainers();
}

Types::UniversalLabel const & OPAtomBuilder::currentOP() const { return impl_->currentOP(); }

Templates::SharedPtr<Metadata::PartitionMetadata> OPAtomBuilder::metadata() const { return impl_->metadata; }

OPAtomAggregator::OPAtomAggregator() {}

OPAtomAggregator::~OPAtomAggregator() {}

void OPAtomAggregator::addOPAtomBuilder(OPAtomBuilder * builder)
{
    if (builder != 0)
        builders_.push_back(builder);
}

namespace
{
bool isTimecodeDefinition(Types::UniversalLabel const * dataDefinition)
{
    return dataDefinition != 0 && (*dataDefinition == S::DataDefinitionULs::timecode12MInactive() ||
                                   *dataDefinition == S::DataDefinitionULs::timecode12MActive() ||
                                   *dataDefinition == S::DataDefinitionULs::timecode309M());
}

bool isPictureOrSound(Types::UniversalLabel const * dataDefinition)
{
    return dataDefinition != 0 &&
           (*dataDefinition == S::DataDefinitionULs::picture() || *dataDefinition == S::DataDefinitionULs::audio());
}

S::MaterialPackage * firstMaterialPackage(S::ContentStorage const & storage)
{
    for (unsigned i = 0; i < storage.packagesCount(); ++i)
        if (S::MaterialPackage * package = S::metadataSetAs<S::MaterialPackage>(storage.package(i)))
            return package;
    return 0;
}

// Numbers the essence track of one package `n` and puts its time code track first; gives the
// essence track of a Material Package.
S::TimelineTrack * renumberPackage(S::GenericPackage & package, unsigned int n)
{
    S::TimelineTrack * essence = 0;
    Types::UInt32 const id(n), zero(0);
    S::MaterialPackage * material = S::metadataSetAs<S::MaterialPackage>(&package);
    S::SourcePackage * source = S::metadataSetAs<S::SourcePackage>(&package);
    for (unsigned i = 0; i < package.tracksCount(); ++i)
    {
        S::TimelineTrack * track = S::metadataSetAs<S::TimelineTrack>(package.track(i));
        S::Sequence * sequence = track != 0 ? track->sequence() : 0;
        if (sequence == 0)
            continue;
        if (isPictureOrSound(sequence->dataDefinition()))
        {
            track->trackID(&id);
            S::SourceClip * clip = sequence->structuralComponentsCount() > 0
                                       ? S::metadataSetAs<S::SourceClip>(sequence->structuralComponent(0))
                                       : 0;
            if (material != 0 && clip != 0)
                clip->sourceTrackID(&id);
            essence = material != 0 ? track : essence;
            S::FileDescriptor * descriptor =
                source != 0 ? S::metadataSetAs<S::FileDescriptor>(source->descriptor()) : 0;
            if (descriptor != 0)
            {
                descriptor->linkedTrackID(&id);
                if (sequence->duration() != 0)
                    descriptor->containerDuration(sequence->duration());
            }
        }
        else if (isTimecodeDefinition(sequence->dataDefinition()))
        {
            track->trackID(&zero);
            package.removeTrack(i);
            package.addTrack(0, track);
        }
    }
    return essence;
}
} // namespace

void OPAtomAggregator::commit()
{
    VELLUM_METADATA_ASSERT(builders_.size() > 1, "Can only aggregate 2 or more OPAtomBuilder's.");
    S::MaterialPackage * first = firstMaterialPackage(*builders_[0]->impl_->contentStorage);
    Types::UMID32 const * identity = first != 0 ? first->packageUID() : 0;
    Templates::vector<S::TimelineTrack *> essence(builders_.size(), static_cast<S::TimelineTrack *>(0));
    for (size_t b = 0; b < builders_.size(); ++b)
    {
        S::ContentStorage & storage = *builders_[b]->impl_->contentStorage;
        S::MaterialPackage * material = firstMaterialPackage(storage);
        if (material != 0 && identity != 0 && b > 0)
            material->packageUID(identity);
        for (unsigned p = 0; p < storage.packagesCount(); ++p)
        {
            S::TimelineTrack * track = renumberPackage(*storage.package(p), static_cast<unsigned int>(b + 1));
            if (track != 0 && S::metadataSetAs<S::MaterialPackage>(storage.package(p)) != 0)
                essence[b] = track;
        }
    }
    for (size_t i = 0; i < builders_.size(); ++i)
    {
        Metadata::PartitionMetadata & target = *builders_[i]->impl_->metadata;
        S::MaterialPackage * material = firstMaterialPackage(*builders_[i]->impl_->contentStorage);
        for (size_t j = 0; material != 0 && j < builders_.size(); ++j)
        {
            if (j == i || essence[j] == 0)
                continue;
            S::Track * clone = S::metadataSetAs<S::Track>(essence[j]->clone(true, &target));
            unsigned int const index = static_cast<unsigned int>(j + 1);
            material->addTrack(index < material->tracksCount() ? index : material->tracksCount(), clone);
        }
    }
}
} // namespace OPBuilders
} // namespace Vellum
