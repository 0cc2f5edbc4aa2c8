#include "Support/TestContainerSource.h"

#include <cstdio>
#include <cstring>

#include "ByteCoders/BER.h"
#include "DataIO/ChainDataSinkAdapter.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "MetaMetadata/StandardDictionary.h"
#include "MXFIO/FutureUpdater.h"
#include "Packs/PrimerPack.h"
#include "Types/Factories/UID.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Utils/Padding.h"
#include "Utils/Text.h"

namespace VellumTest
{
namespace S = Metadata::Structural;

namespace
{
// Broadcast Wave audio, frame and clip wrapped, and OP1a.
unsigned char const FRAME_CONTAINER[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,
                                           0x0d, 0x01, 0x03, 0x01, 0x02, 0x06, 0x01, 0x00};
unsigned char const CLIP_CONTAINER[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,
                                          0x0d, 0x01, 0x03, 0x01, 0x02, 0x06, 0x02, 0x00};
unsigned char const OP1A[16] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,
                                0x0d, 0x01, 0x02, 0x01, 0x01, 0x01, 0x09, 0x00};
// The sound element key; byte 14 is 1 frame wrapped, 2 clip wrapped.
unsigned char const ELEMENT_KEY[16] = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01,
                                       0x0D, 0x01, 0x03, 0x01, 0x16, 0x01, 0x01, 0x01};
unsigned const TRACK_NUMBER = 0x16010101;
unsigned const CLIP_TRACK_NUMBER = 0x16010201;

Types::UMID32 newUMID()
{
    return Types::Factories::UID::generateBasicUMID(Types::Factories::UID::MaterialType(0x0f),
                                                    Types::Factories::UID::MNMI_UUID,
                                                    Types::Factories::UID::INMI_LOCAL);
}

template <class T>
T * create(Metadata::PartitionMetadata & metadata, KLV::Key const & key)
{
    return S::metadataSetAs<T>(metadata.createMetadataSet(key));
}

// The key and a length of `berSize` bytes.
std::vector<unsigned char> keyAndLength(bool clip, uint64 length, unsigned berSize)
{
    std::vector<unsigned char> kl(ELEMENT_KEY, ELEMENT_KEY + 16);
    kl[14] = clip ? 2 : 1;
    kl.resize(16 + berSize);
    ByteCoders::codeBER(length, berSize, kl.data() + 16);
    return kl;
}

// A constant-size index: one segment over every unit produced.
class TestIndexGenerator : public MXFIO::IndexTableGenerator
{
public:
    explicit TestIndexGenerator(unsigned editUnitByteCount) : byteCount_(editUnitByteCount) {}
    void updateIndex() override {}
    uint64 rawIndexByteCount(bool footer) const override
    {
        return strategy(footer) == MXFIO::IndexTableGenerationNone || units == 0 ? 0 : segment()->serializedSize();
    }
    void writeIndexSegments(bool footer, DataIO::DataSink & sink) override
    {
        if (rawIndexByteCount(footer) != 0)
            segment()->serialize(sink);
    }
    void indexSID(unsigned int sid) override { indexSID_ = sid; }
    void bodySID(unsigned int sid) override { bodySID_ = sid; }
    void indexStrategies(MXFIO::IndexTableGeneration body, MXFIO::IndexTableGeneration closing,
                         MXFIO::IndexTableSegmentType type) override
    {
        body_ = body;
        closing_ = closing;
        type_ = type;
    }
    MXFIO::IndexTableSegmentType indexSegmentType() const override { return type_; }
    bool indexesAfterEndOfEssence() const override { return closing_ != MXFIO::IndexTableGenerationNone; }

    int64 units = 0;

private:
    MXFIO::IndexTableGeneration strategy(bool footer) const { return footer ? closing_ : body_; }
    std::unique_ptr<IndexTables::IndexTableSegment> segment() const
    {
        std::unique_ptr<IndexTables::IndexTableSegment> segment(new IndexTables::IndexTableSegment(4));
        segment->indexEditRate(Types::Rational(25, 1));
        segment->indexStartPosition(int64(0));
        segment->indexDuration(units);
        segment->editUnitByteCount(byteCount_);
        segment->bodySID(bodySID_);
        segment->indexSID(indexSID_);
        return segment;
    }

    unsigned byteCount_;
    unsigned bodySID_ = 0, indexSID_ = 0;
    MXFIO::IndexTableGeneration body_ = MXFIO::IndexTableGenerationNone, closing_ = MXFIO::IndexTableGenerationNone;
    MXFIO::IndexTableSegmentType type_ = MXFIO::IndexSegmentConstant;
};

// Patches the 8-byte length of a clip once the clip has ended.
class TestLengthUpdater : public MXFIO::FutureUpdater
{
public:
    uint64 apply(uint64 position, DataIO::Chain & patch) override
    {
        std::vector<unsigned char> kl = keyAndLength(true, length, 8);
        DataIO::ChainDataSinkAdapter(patch, 0, 0).write(kl.data(), kl.size());
        pendingPatch = false;
        return position;
    }
    bool pending() const override { return pendingPatch; }
    uint64 length = 0;
    bool pendingPatch = false;
};
} // namespace

Templates::SharedPtr<MetaMetadata::Dictionary> writerDictionary()
{
    S::initialize();
    static Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    return dictionary;
}

std::vector<unsigned char> elementBytes(unsigned source, unsigned unit, unsigned size)
{
    std::vector<unsigned char> bytes(size);
    for (unsigned i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(source * 31 + unit * 7 + i * 13 + (i >> 8));
    return bytes;
}

TestHeader::TestHeader() : sources(0)
{
    metadata = Templates::SharedPtr<Metadata::PartitionMetadata>(new Metadata::PartitionMetadata(
        Templates::auto_ptr<Metadata::PartitionDictionary>(new Metadata::PartitionDictionary(
            writerDictionary(), Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack)))));
    Metadata::PartitionMetadata & m = *metadata;
    preface = create<S::Preface>(m, S::StructuralMetadataKeys::preface());
    Types::VersionType const version(1, 3);
    Types::UniversalLabel const pattern(OP1A);
    preface->version(&version);
    preface->operationalPattern(&pattern);
    preface->appendEssenceContainer(Types::UniversalLabel(FRAME_CONTAINER));
    S::ContentStorage * storage = create<S::ContentStorage>(m, S::StructuralMetadataKeys::contentStorage());
    preface->contentStorage(storage);
    material = create<S::MaterialPackage>(m, S::StructuralMetadataKeys::materialPackage());
    Types::UMID32 const uid = newUMID();
    material->packageUID(&uid);
    storage->appendPackage(material);
    preface->primaryPackage(material);
}

struct TestContainerSource::Impl
{
    TestSourceOptions options;
    Templates::Rational<int> rate{25, 1};
    Types::UniversalLabel container;
    S::SourcePackage * package = nullptr;
    S::WAVEAudioEssenceDescriptor * descriptor = nullptr;
    std::vector<S::TimelineTrack *> tracks;
    std::vector<S::SourceClip *> clips;
    std::unique_ptr<MXFIO::IndexTableGenerator> generator;
    TestIndexGenerator * ownGenerator = nullptr;
    Templates::SharedPtr<TestLengthUpdater> updater;

    // The bytes of one unit with its key, length and fill.
    unsigned unitBytes() const
    {
        unsigned const kl = 20 + options.size;
        return kl + unsigned(Utils::alignBytes(options.kag, kl, 20));
    }
};

TestContainerSource::TestContainerSource(TestHeader & header, TestSourceOptions const & options)
    : impl_(new Impl), number_(++header.sources), produced_(0), finalized_(false)
{
    impl_->options = options;
    impl_->container = Types::UniversalLabel(options.clip ? CLIP_CONTAINER : FRAME_CONTAINER);
    Metadata::PartitionMetadata & m = *header.metadata;
    S::SourcePackage * package = create<S::SourcePackage>(m, S::StructuralMetadataKeys::sourcePackage());
    Types::UMID32 const uid = newUMID();
    package->packageUID(&uid);
    S::TimelineTrack * track = S::createTimelineTrack(m, *package, S::DataDefinitionULs::audio(), 1,
                                                      options.clip ? CLIP_TRACK_NUMBER : TRACK_NUMBER, 0,
                                                      impl_->rate, 0);
    impl_->clips.push_back(S::addSourceClip(m, track->sequence(), S::DataDefinitionULs::audio(), 0, 0));
    impl_->tracks.push_back(track);

    S::WAVEAudioEssenceDescriptor * sound =
        create<S::WAVEAudioEssenceDescriptor>(m, S::StructuralMetadataKeys::waveAudioEssenceDescriptor());
    Types::UInt32 const trackID(1), channels(2), bits(24), bytesPerSecond(288000);
    Types::UInt16 const blockAlign(6);
    Types::Rational const rate(25, 1), samplingRate(48000, 1);
    sound->linkedTrackID(&trackID);
    sound->sampleRate(&rate);
    sound->essenceContainer(&impl_->container);
    sound->audioSamplingRate(&samplingRate);
    sound->channelCount(&channels);
    sound->quantizationBits(&bits);
    sound->blockAlign(&blockAlign);
    sound->avgBps(&bytesPerSecond);
    package->descriptor(sound);
    impl_->descriptor = sound;
    impl_->package = package;
    S::findPreface(m)->contentStorage()->appendPackage(package);

    S::TimelineTrack * materialTrack = S::createTimelineTrack(m, *header.material, S::DataDefinitionULs::audio(),
                                                              number_, 0, 0, impl_->rate, 0);
    S::SourceClip * clip = S::addSourceClip(m, materialTrack->sequence(), S::DataDefinitionULs::audio(), 0, 0);
    clip->sourcePackageID(&uid);
    clip->sourceTrackID(&trackID);
    impl_->tracks.push_back(materialTrack);
    impl_->clips.push_back(clip);

    impl_->ownGenerator = new TestIndexGenerator(options.clip ? options.size : impl_->unitBytes());
    impl_->generator.reset(impl_->ownGenerator);
}

TestContainerSource::~TestContainerSource() {}

bool TestContainerSource::next(DataIO::Chain & chain, bool & atBoundary,
                               Templates::SharedPtr<MXFIO::FutureUpdater> & updater,
                               Templates::Rational<int64> & duration)
{
    TestSourceOptions const & o = impl_->options;
    updater.reset();
    if (produced_ == o.units)
        return false;
    DataIO::ChainDataSinkAdapter sink(chain, 0, 0);
    if (o.clip && produced_ == 0)
    {
        impl_->updater = Templates::SharedPtr<TestLengthUpdater>(new TestLengthUpdater);
        updater = impl_->updater;
        std::vector<unsigned char> const placeholder = keyAndLength(true, 0, 8);
        sink.write(placeholder.data(), placeholder.size());
    }
    else if (!o.clip)
    {
        std::vector<unsigned char> const kl = keyAndLength(false, o.size, 4);
        sink.write(kl.data(), kl.size());
    }
    std::vector<unsigned char> const value = elementBytes(number_, produced_, o.size);
    sink.write(value.data(), value.size());
    if (!o.clip && impl_->unitBytes() != 20 + o.size)
        Utils::writeFillKLV(sink, impl_->unitBytes() - 20 - o.size, 4);
    ++produced_;
    if (impl_->ownGenerator != nullptr)
        impl_->ownGenerator->units = produced_;
    if (o.clip && produced_ == o.units)
    {
        impl_->updater->length = uint64(o.size) * o.units;
        impl_->updater->pendingPatch = true;
    }
    atBoundary = !o.clip || produced_ == o.units;
    duration += Templates::Rational<int64>(1, 25);
    return produced_ < o.units;
}

bool TestContainerSource::done() const
{
    return produced_ == impl_->options.units;
}

unsigned int TestContainerSource::kagSize() const
{
    return impl_->options.kag;
}

void TestContainerSource::finalize()
{
    Types::Length const length(produced_);
    for (size_t i = 0; i < impl_->tracks.size(); ++i)
    {
        impl_->tracks[i]->sequence()->duration(&length);
        impl_->clips[i]->duration(&length);
    }
    impl_->descriptor->containerDuration(&length);
    finalized_ = true;
}

Metadata::Structural::SourcePackage & TestContainerSource::sourcePackage()
{
    return *impl_->package;
}

Types::UniversalLabel const & TestContainerSource::essenceContainerUL() const
{
    return impl_->container;
}

Templates::Rational<int> const & TestContainerSource::packageRate() const
{
    return impl_->rate;
}

bool TestContainerSource::isCBE() const
{
    return true;
}

MXFIO::IndexTableGenerator * TestContainerSource::indexTableGenerator()
{
    return impl_->generator.get();
}

void TestContainerSource::indexTableGenerator(Templates::auto_ptr<MXFIO::IndexTableGenerator> generator)
{
    impl_->ownGenerator = nullptr;
    impl_->generator = std::move(generator);
}

void TestMemorySink::write(unsigned char const * data, uint64 size)
{
    uint64 const room = position_ < failAfter_ ? failAfter_ - position_ : 0;
    uint64 const taken = size < room ? size : room;
    if (bytes.size() < position_ + taken)
        bytes.resize(position_ + taken);
    if (taken != 0)
        std::memcpy(bytes.data() + position_, data, taken);
    position_ += taken;
    if (taken != size)
        VELLUM_THROW(IOError, "The test sink is full");
}

uint64 TestMemorySink::seek(uint64 position)
{
    position_ = position < bytes.size() ? position : bytes.size();
    return position_;
}

} // namespace VellumTest
