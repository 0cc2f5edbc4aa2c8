#pragma once
// A header metadata built from scratch for the structural tests: a Preface with an
// Identification and a Content Storage, a Material Package over a Source Package with a time
// code, a picture and a sound track each, sequences and clips, a multiple descriptor with a
// picture and a sound descriptor, and the essence container data of the source package.

#include <memory>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralTestSupport.h"
#include "Metadata/Structural/Wrappings.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Packs/RandomIndexPack.h"
#include "Types/Boolean.h"
#include "Types/Collection.h"
#include "Types/Factories/UID.h"
#include "Types/Integers.h"
#include "Types/ProductVersion.h"
#include "Types/Rational.h"
#include "Types/Timestamp.h"
#include "Types/UMID.h"
#include "Types/UTF16String.h"
#include "Types/VersionType.h"

namespace Vellum
{
namespace StructuralTest
{
namespace S = Metadata::Structural;

inline Types::UniversalLabel labelOf(char const * dotted)
{
    return Types::UniversalLabel(w(dotted).c_str(), Types::Dotted);
}

inline Types::UniversalLabel op1a() { return labelOf("06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00"); }
// MPEG-2 video elementary stream, frame wrapped.
inline Types::UniversalLabel mpegContainer() { return labelOf("06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.01"); }
// MPEG-2 422P@HL long GOP.
inline Types::UniversalLabel mpegCoding() { return labelOf("06.0e.2b.34.04.01.01.03.04.01.02.02.01.02.03.00"); }
// Broadcast Wave audio, frame wrapped.
inline Types::UniversalLabel waveContainer() { return labelOf("06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.01.00"); }

inline std::unique_ptr<Metadata::PartitionMetadata> newPartitionMetadata()
{
    S::initialize();
    return std::unique_ptr<Metadata::PartitionMetadata>(new Metadata::PartitionMetadata(
        Templates::auto_ptr<Metadata::PartitionDictionary>(new Metadata::PartitionDictionary(
            standardDictionary(), Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack)))));
}

template <class T>
T * createSet(Metadata::PartitionMetadata & metadata, KLV::Key const & key)
{
    return S::metadataSetAs<T>(metadata.createMetadataSet(key));
}

struct BuiltHeader
{
    std::unique_ptr<Metadata::PartitionMetadata> metadata;
    S::Preface * preface = nullptr;
    S::Identification * identification = nullptr;
    S::ContentStorage * storage = nullptr;
    S::EssenceContainerData * containerData = nullptr;
    S::MaterialPackage * material = nullptr;
    S::SourcePackage * source = nullptr;
    S::MultipleDescriptor * descriptor = nullptr;
    S::CDCIEssenceDescriptor * picture = nullptr;
    S::WAVEAudioEssenceDescriptor * sound = nullptr;
    S::TimelineTrack * sourcePicture = nullptr;
    S::TimelineTrack * sourceSound = nullptr;
    S::TimelineTrack * materialTimecode = nullptr;
    S::TimelineTrack * materialPicture = nullptr;
    S::TimelineTrack * materialSound = nullptr;
};

// A time code track of a package: a sequence with one time code component.
inline S::TimelineTrack * addTimecodeTrack(Metadata::PartitionMetadata & metadata, S::GenericPackage & package,
                                           unsigned int trackID, int64 start, int64 duration, bool dropFrame)
{
    unsigned short const base = dropFrame ? 30 : 25;
    Templates::Rational<int> const rate = dropFrame ? Templates::Rational<int>(30000, 1001) : Templates::Rational<int>(25);
    S::TimelineTrack * track = S::createTimelineTrack(metadata, package, S::DataDefinitionULs::timecode12MInactive(),
                                                      trackID, 0, 0, rate, duration);
    S::TimecodeComponent * timecode = createSet<S::TimecodeComponent>(metadata, S::StructuralMetadataKeys::timecodeComponent());
    Types::Length const length(duration);
    Types::UInt16 const fps(base);
    Types::Position const startTimecode(start);
    Types::Boolean const drop(dropFrame);
    timecode->dataDefinition(&S::DataDefinitionULs::timecode12MInactive());
    timecode->duration(&length);
    timecode->roundedTimecodeBase(&fps);
    timecode->startTimecode(&startTimecode);
    timecode->dropFrame(&drop);
    track->sequence()->appendStructuralComponent(timecode);
    return track;
}

// `frames` edit units of 25 per second: picture at 25, sound at 48000 per second.
inline BuiltHeader buildHeader(int64 frames)
{
    BuiltHeader h;
    h.metadata = newPartitionMetadata();
    Metadata::PartitionMetadata & m = *h.metadata;
    Types::Timestamp const now(2024, 5, 17, 10, 30, 0, static_cast<unsigned short>(0));

    h.identification = createSet<S::Identification>(m, S::StructuralMetadataKeys::identification());
    Types::UUID const generation = Types::Factories::UID::generateUUID();
    Types::UTF16String const company(w("Vellum").c_str()), product(w("structural tests").c_str()),
        versionText(w("1.0").c_str()), platform(w("linux").c_str());
    Types::ProductVersion const version(1, 0, 0, 0, Types::ProductVersion::RELEASED_VERSION);
    h.identification->thisGenerationUID(&generation);
    h.identification->companyName(&company);
    h.identification->productName(&product);
    h.identification->productVersion(&version);
    h.identification->versionString(&versionText);
    h.identification->productUID(&generation);
    h.identification->modifiedDate(&now);
    h.identification->toolkitVersion(&version);
    h.identification->platform(&platform);

    h.preface = createSet<S::Preface>(m, S::StructuralMetadataKeys::preface());
    Types::VersionType const formatVersion(1, 3);
    Types::UInt32 const objectModel(1);
    Types::UniversalLabel const pattern = op1a();
    h.preface->lastModifiedDate(&now);
    h.preface->version(&formatVersion);
    h.preface->objectModelVersion(&objectModel);
    h.preface->operationalPattern(&pattern);
    h.preface->appendEssenceContainer(S::Wrappings::multipleWrapping());
    h.preface->appendEssenceContainer(mpegContainer());
    h.preface->appendEssenceContainer(waveContainer());
    h.preface->appendIdentification(h.identification);

    h.storage = createSet<S::ContentStorage>(m, S::StructuralMetadataKeys::contentStorage());
    h.preface->contentStorage(h.storage);

    // The source package.
    h.source = createSet<S::SourcePackage>(m, S::StructuralMetadataKeys::sourcePackage());
    Types::UMID32 const sourceUID = Types::Factories::UID::generateBasicUMID(
        Types::Factories::UID::MaterialType(0x0f), Types::Factories::UID::MNMI_UUID, Types::Factories::UID::INMI_LOCAL);
    Types::UTF16String const sourceName(w("File Package").c_str());
    h.source->packageUID(&sourceUID);
    h.source->packageName(&sourceName);
    h.source->packageCreationDate(&now);
    h.source->packageModifiedDate(&now);
    addTimecodeTrack(m, *h.source, 1, 90000, frames, false);
    h.sourcePicture = S::createTimelineTrack(m, *h.source, S::DataDefinitionULs::picture(), 2, 0x15010500, 0,
                                             Templates::Rational<int>(25), frames);
    S::addSourceClip(m, h.sourcePicture->sequence(), S::DataDefinitionULs::picture(), 0, frames);
    h.sourceSound = S::createTimelineTrack(m, *h.source, S::DataDefinitionULs::audio(), 3, 0x16010101, 0,
                                           Templates::Rational<int>(48000), frames * 1920);
    S::addSourceClip(m, h.sourceSound->sequence(), S::DataDefinitionULs::audio(), 0, frames * 1920);

    h.descriptor = createSet<S::MultipleDescriptor>(m, S::StructuralMetadataKeys::multipleDescriptor());
    Types::Rational const pictureRate(25, 1), soundRate(48000, 1);
    Types::Length const containerDuration(frames);
    h.descriptor->sampleRate(&pictureRate);
    h.descriptor->containerDuration(&containerDuration);
    h.descriptor->essenceContainer(&S::Wrappings::multipleWrapping());

    h.picture = createSet<S::CDCIEssenceDescriptor>(m, S::StructuralMetadataKeys::cdciEssenceDescriptor());
    Types::UInt32 const pictureTrack(2), width(1920), height(1080), depth(8), subsampling(2), vertical(1);
    Types::UInt8 const layout(0);
    Types::Rational const aspect(16, 9);
    Types::UniversalLabel const pictureContainer = mpegContainer(), coding = mpegCoding();
    h.picture->linkedTrackID(&pictureTrack);
    h.picture->sampleRate(&pictureRate);
    h.picture->containerDuration(&containerDuration);
    h.picture->essenceContainer(&pictureContainer);
    h.picture->pictureEssenceCoding(&coding);
    h.picture->storedWidth(&width);
    h.picture->storedHeight(&height);
    h.picture->frameLayout(&layout);
    h.picture->aspectRatio(&aspect);
    h.picture->componentDepth(&depth);
    h.picture->horizontalSubsampling(&subsampling);
    h.picture->verticalSubsampling(&vertical);
    h.picture->appendVideoLineMap(Types::Int32(21));
    h.picture->appendVideoLineMap(Types::Int32(584));

    h.sound = createSet<S::WAVEAudioEssenceDescriptor>(m, S::StructuralMetadataKeys::waveAudioEssenceDescriptor());
    Types::UInt32 const soundTrack(3), channels(2), bits(24), bytesPerSecond(288000);
    Types::UInt16 const blockAlign(6);
    Types::Boolean const locked(true);
    Types::UniversalLabel const soundContainer = waveContainer();
    h.sound->linkedTrackID(&soundTrack);
    h.sound->sampleRate(&pictureRate);
    h.sound->containerDuration(&containerDuration);
    h.sound->essenceContainer(&soundContainer);
    h.sound->audioSamplingRate(&soundRate);
    h.sound->channelCount(&channels);
    h.sound->quantizationBits(&bits);
    h.sound->blockAlign(&blockAlign);
    h.sound->avgBps(&bytesPerSecond);
    h.sound->lockedUnlocked(&locked);

    h.descriptor->appendSubDescriptorUID(h.picture);
    h.descriptor->appendSubDescriptorUID(h.sound);
    h.source->descriptor(h.descriptor);

    // The material package over it.
    h.material = createSet<S::MaterialPackage>(m, S::StructuralMetadataKeys::materialPackage());
    Types::UMID32 const materialUID = Types::Factories::UID::generateBasicUMID(
        Types::Factories::UID::MaterialType(0x0f), Types::Factories::UID::MNMI_UUID, Types::Factories::UID::INMI_LOCAL);
    Types::UTF16String const materialName(w("Material Package").c_str());
    h.material->packageUID(&materialUID);
    h.material->packageName(&materialName);
    h.material->packageCreationDate(&now);
    h.material->packageModifiedDate(&now);
    h.materialTimecode = addTimecodeTrack(m, *h.material, 1, 90000, frames, false);
    h.materialPicture = S::createTimelineTrack(m, *h.material, S::DataDefinitionULs::picture(), 2, 0, 0,
                                               Templates::Rational<int>(25), frames);
    h.materialSound = S::createTimelineTrack(m, *h.material, S::DataDefinitionULs::audio(), 3, 0, 0,
                                             Templates::Rational<int>(48000), frames * 1920);
    S::SourceClip * pictureClip =
        S::addSourceClip(m, h.materialPicture->sequence(), S::DataDefinitionULs::picture(), 0, frames);
    S::SourceClip * soundClip =
        S::addSourceClip(m, h.materialSound->sequence(), S::DataDefinitionULs::audio(), 0, frames * 1920);
    pictureClip->sourcePackageID(&sourceUID);
    pictureClip->sourceTrackID(&pictureTrack);
    soundClip->sourcePackageID(&sourceUID);
    soundClip->sourceTrackID(&soundTrack);

    h.storage->appendPackage(h.material);
    h.storage->appendPackage(h.source);
    h.preface->primaryPackage(h.material);

    h.containerData = createSet<S::EssenceContainerData>(m, S::StructuralMetadataKeys::essenceContainerData());
    Types::UInt32 const bodySID(1), indexSID(2);
    h.containerData->linkedPackageUID(&sourceUID);
    h.containerData->bodySID(&bodySID);
    h.containerData->indexSID(&indexSID);
    h.storage->appendEssenceContainerData(h.containerData);
    return h;
}

// A file of header metadata only: header partition pack, Primer and sets, footer partition
// pack, Random Index Pack.
inline std::vector<unsigned char> headerOnlyFile(Metadata::PartitionMetadata & metadata)
{
    Templates::auto_ptr<Types::Batch> containers(new Types::Batch(16));
    Metadata::Structural::Preface const * preface = S::findPreface(metadata);
    for (unsigned int i = 0; i < preface->essenceContainersCount(); ++i)
        containers->append(preface->essenceContainer(i)->clone());
    Types::UniversalLabel const pattern = *preface->operationalPattern();

    uint64 const headerBytes = metadata.serializedSize(false, true);
    Packs::PartitionPack header(Packs::buildPartitionPackKey(Packs::PartitionPack::HeaderPartition,
                                                             Packs::PartitionPack::ClosedComplete),
                                1, 0, 0, pattern, Templates::auto_ptr<Types::Batch>(new Types::Batch(*containers)));
    header.headerByteCount(headerBytes);
    uint64 const footerOffset = header.serializedSize() + headerBytes;
    header.footerPartition(footerOffset);
    Packs::PartitionPack footer(Packs::buildPartitionPackKey(Packs::PartitionPack::FooterPartition,
                                                             Packs::PartitionPack::ClosedComplete),
                                1, footerOffset, 0, pattern, std::move(containers));
    footer.footerPartition(footerOffset);
    Packs::RandomIndexPack rip;
    rip.add(0, 0);
    rip.add(0, footerOffset);

    DataIO::Memory::MemoryDataSink sink;
    header.serialize(sink);
    metadata.serialize(sink, false, Metadata::PartitionMetadata::PrefaceThenKeys, true);
    footer.serialize(sink);
    rip.serialize(sink);
    return std::vector<unsigned char>(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}
} // namespace StructuralTest
} // namespace Vellum
