// Analyzers over frames held in memory.

#include "Support/MemoryAnalyzer.h"

#include "DataIO/Memory/MemoryBlock.h"
#include "DataIO/Slice.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/FileDescriptor.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/MultipleDescriptor.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourceClip.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Packs/PrimerPack.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Utils/Text.h"

namespace VellumTest
{
using namespace Vellum;
namespace S = Metadata::Structural;

std::vector<DataIO::BlockHolder> makeFrames(std::vector<unsigned int> const & sizes)
{
    std::vector<DataIO::BlockHolder> frames;
    for (std::size_t n = 0; n < sizes.size(); ++n)
    {
        DataIO::BlockHolder block = DataIO::Memory::MemoryBlockFactory::instance().create(sizes[n]);
        for (unsigned int i = 0; i < sizes[n]; ++i)
            block->data()[i] = static_cast<unsigned char>((n * 7 + i) & 0xFF);
        frames.push_back(block);
    }
    return frames;
}

Types::UniversalLabel testContainerLabel()
{
    return Types::UniversalLabel(Utils::wide("06.0e.2b.34.04.01.01.01.0d.01.03.01.02.05.7f.01").c_str(),
                                 Types::Dotted);
}

Templates::SharedPtr<Metadata::PartitionMetadata> newHeaderMetadata()
{
    S::initialize();
    static Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata(new Metadata::PartitionMetadata(
        Templates::auto_ptr<Metadata::PartitionDictionary>(new Metadata::PartitionDictionary(
            dictionary, Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack)))));
    S::Preface * preface = S::metadataSetAs<S::Preface>(metadata->createMetadataSet(S::StructuralMetadataKeys::preface()));
    S::ContentStorage * storage =
        S::metadataSetAs<S::ContentStorage>(metadata->createMetadataSet(S::StructuralMetadataKeys::contentStorage()));
    preface->contentStorage(storage);
    return metadata;
}

namespace
{
S::MultipleDescriptor * multipleDescriptorOf(S::SourcePackage * package)
{
    return package != nullptr ? S::metadataSetAs<S::MultipleDescriptor>(package->descriptor()) : nullptr;
}
} // namespace

MemoryStream constantStream(unsigned int count, unsigned int size)
{
    MemoryStream stream;
    stream.frames = makeFrames(std::vector<unsigned int>(count, size));
    stream.cbe = true;
    stream.boundedSize = size;
    return stream;
}

MemoryTrackBuilder::MemoryTrackBuilder(Metadata::PartitionMetadata & metadata, S::SourcePackage * package,
                                       unsigned int trackNumber, unsigned int trackId,
                                       Templates::Rational<int> const & editRate)
    : GC::MetadataBuilder(metadata, package, multipleDescriptorOf(package), trackNumber, trackId,
                          Templates::Rational<int>(0, 1), Templates::Rational<int>(-1, 1))
{
    editRate_ = editRate;
}

void MemoryTrackBuilder::describe(GC::EssenceAnalyzer::EssenceAnalyzerType kind)
{
    KLV::Key const * key = &S::StructuralMetadataKeys::cdciEssenceDescriptor();
    Types::UniversalLabel const * definition = &S::DataDefinitionULs::picture();
    if (kind == GC::EssenceAnalyzer::Sound)
    {
        key = &S::StructuralMetadataKeys::genericSoundEssenceDescriptor();
        definition = &S::DataDefinitionULs::audio();
    }
    else if (kind == GC::EssenceAnalyzer::Data)
    {
        key = &S::StructuralMetadataKeys::genericDataEssenceDescriptor();
        definition = &S::DataDefinitionULs::data();
    }
    S::TimelineTrack * track = createEssenceTrack(*definition, trackNumber());
    (kind == GC::EssenceAnalyzer::Sound ? soundTrack_ : kind == GC::EssenceAnalyzer::Data ? dataTrack_ : pictureTrack_) =
        track;
    S::FileDescriptor * descriptor = S::metadataSetAs<S::FileDescriptor>(partitionMetadata().createMetadataSet(*key));
    Types::UInt32 const linked(trackId());
    Types::Rational const rate(editRate_);
    Types::UniversalLabel const label = testContainerLabel();
    descriptor->linkedTrackID(&linked);
    descriptor->sampleRate(&rate);
    descriptor->essenceContainer(&label);
    setDescriptorToPackage(descriptor);
}

template <class Kind>
bool MemoryAnalyzer<Kind>::setMetadata(Metadata::PartitionMetadata & metadata, S::SourcePackage * package,
                                       unsigned int trackNumber, unsigned int trackId)
{
    trackNumber_ = trackNumber;
    trackId_ = trackId;
    builder_.reset(new MemoryTrackBuilder(metadata, package, trackNumber, trackId, stream_.editRate));
    builder_->describe(this->essenceAnalyzerType());
    return true;
}

template <class Kind>
bool MemoryAnalyzer<Kind>::nextEditUnit(GC::EditUnit & unit)
{
    if (next_ >= stream_.frames.size())
        return false;
    DataIO::Block * block = stream_.frames[next_].block();
    unit.data.push_back(Templates::auto_ptr<DataIO::Slice>(new DataIO::Slice(block, 0, block->size())));
    unit.duration = next_ < stream_.durations.size() ? stream_.durations[next_]
                                                     : Templates::Rational<int>(1) / stream_.editRate;
    if (next_ < stream_.flags.size())
        unit.flags = stream_.flags[next_];
    if (next_ < stream_.temporalReferences.size())
        unit.temporalReference = stream_.temporalReferences[next_];
    unit.valid = true;
    ++next_;
    return true;
}

template <class Kind>
bool MemoryAnalyzer<Kind>::finalize()
{
    if (builder_)
    {
        builder_->delivered(next_);
        builder_->finish();
    }
    return true;
}

template class MemoryAnalyzer<GC::PictureAnalyzer>;
template class MemoryAnalyzer<GC::SoundAnalyzer>;
template class MemoryAnalyzer<GC::DataAnalyzer>;
template class MemoryAnalyzer<GC::CompoundAnalyzer>;
template class MemoryAnalyzer<GC::SystemAnalyzer>;
} // namespace VellumTest
