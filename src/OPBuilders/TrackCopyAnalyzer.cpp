// One essence track of an MXF file, edit unit by edit unit as stored, for a new file.

#include "OPBuilders/TrackCopyAnalyzer.h"

#include "DataIO/Slice.h"
#include "Essence/Analyzers/BasicAnalyzer.h"
#include "Essence/Analyzers/PCMAnalyzer.h"
#include "Essence/BlockPool.h"
#include "Essence/MPEG/MPEG2VideoAnalyzer.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/FileDescriptor.h"
#include "Metadata/Structural/GenericSoundEssenceDescriptor.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "MXFIO/EssenceFile.h"
#include "Types/Integers.h"
#include "Types/Rational.h"

#include <algorithm>
#include <limits>
#include <string>

namespace Vellum
{
namespace OPBuilders
{
namespace S = Metadata::Structural;

namespace
{
// The start codes ahead of the first picture of an MPEG-2 video unit: whether a sequence header
// and a group header stand there, the group's flags, and the picture's type and temporal
// reference. False when the unit holds no picture header.
bool readPictureHeaders(unsigned char const * p, uint64 size, Essence::MPEG::MPEG2Frame & frame)
{
    for (uint64 i = 0; i + 6 <= size; ++i)
    {
        if (p[i] != 0 || p[i + 1] != 0 || p[i + 2] != 1)
            continue;
        unsigned char const code = p[i + 3];
        if (code == 0xB3)
            frame.sequenceHeader = true;
        else if (code == 0xB8 && i + 8 <= size)
        {
            frame.gopHeader = true;
            frame.closedGop = (p[i + 7] & 0x40) != 0;
            frame.brokenLink = (p[i + 7] & 0x20) != 0;
        }
        else if (code == 0x00)
        {
            frame.temporalReference = (unsigned(p[i + 4]) << 2) | (p[i + 5] >> 6);
            frame.codingType = (p[i + 5] >> 3) & 7;
            return true;
        }
    }
    return false;
}

// MPEG-2 video in an MPEG elementary stream container (long GOP possible) or in D-10 (intra).
bool isMPEGVideoContainer(Types::UniversalLabel const & label)
{
    unsigned char const * b = label.rawBuffer();
    return b[8] == 0x0D && b[9] == 0x01 && b[10] == 0x03 && b[11] == 0x01 && b[12] == 0x02 &&
           (b[13] == 0x04 || b[13] == 0x01) && (b[13] == 0x01 || (b[14] & 0xF0) == 0x60);
}

bool isD10Container(Types::UniversalLabel const & label)
{
    unsigned char const * b = label.rawBuffer();
    return b[8] == 0x0D && b[9] == 0x01 && b[10] == 0x03 && b[11] == 0x01 && b[12] == 0x02 && b[13] == 0x01;
}

int narrowed(int64 value)
{
    THROW_UNLESS(InvalidValue, value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max(),
                 "an edit unit's duration does not fit the rational of an edit unit");
    return static_cast<int>(value);
}

// What the analyzer of a track keeps: the file opened for the track, its descriptor and the next
// unit.
struct TrackCopy
{
    VELLUM_CLASS_ALLOCATION

    TrackCopy(Templates::wstring const & p, unsigned int id, Templates::Rational<int> const & r)
        : path(p), trackID(id), pictureRate(r), rate(0, 1), track(nullptr), descriptor(nullptr), kind(S::UnknownTrack),
          itemType(0), elementType(0), mpegVideo(false), longGop(false), pending(false),
          constantSize(0), splitSound(false), samplingRate(0), blockAlign(0), pieceSize(0), pieceUsed(0), units(0)
    {
    }

    // Fetches the track's next unit into `next`; false at the end of its essence.
    bool readNext()
    {
        pending = false;
        while (reader->nextElementEditUnit(65536, next))
        {
            if (!next.element.packet)
                return false;
            if (next.trackID != trackID)
                continue;
            THROW_UNLESS(InvalidFormat, next.element.units <= 1 || kind == S::SoundTrack,
                         "the edit units of an essence track cannot be told apart in its clip");
            pending = true;
            return true;
        }
        return false;
    }

    void load();
    // The rate of the units handed out, whether sound is cut from pieces, and the constant size.
    void chooseUnits(Templates::Rational<int> const & trackRate, uint64 firstSize);
    // The track and a copy of the descriptor in the new package.
    S::FileDescriptor & describe(Metadata::PartitionMetadata & metadata, S::SourcePackage * package,
                                 unsigned int trackNumber, unsigned int trackId);
    bool nextUnit(GenericContainer::EditUnit & unit);
    // The length of the pending element, checked against the file.
    uint64 checkedLength() const;
    // The next `size` bytes of the pending element's value, in a block of their own.
    DataIO::BlockHolder readBytes(uint64 size);

    Templates::wstring path;
    unsigned int trackID;
    Templates::Rational<int> pictureRate;
    Templates::Rational<int> rate;
    Templates::auto_ptr<MXFIO::EssenceFile> file;
    Templates::auto_ptr<MXFIO::EssenceReader> reader;
    S::TimelineTrack * track;
    S::FileDescriptor * descriptor;
    S::TrackKind kind;
    Types::UniversalLabel label;
    unsigned char itemType;
    unsigned char elementType;
    bool mpegVideo;
    bool longGop;
    bool pending;
    // Non-zero for a track whose units all have this size.
    unsigned int constantSize;
    // Sound stored as one piece for many units (a clip that the reader cannot cut) is handed out
    // in units of `rate`, read from the piece as they go: its size and the bytes of it handed out.
    bool splitSound;
    uint32 samplingRate;
    unsigned int blockAlign;
    uint64 pieceSize;
    uint64 pieceUsed;
    MXFIO::EssenceReader::ElementEditUnit next;
    Templates::auto_ptr<Essence::BlockPool> pool;
    Templates::auto_ptr<Essence::Analyzers::TrackBuilder> builder;
    uint64 units;
};

void TrackCopy::load()
{
    file.reset(new MXFIO::EssenceFile(path));
    reader = file->essenceReader();
    for (S::TimelineTrack * candidate : reader->essenceTracks())
        if (candidate->trackID() && candidate->trackID()->value() == trackID)
            track = candidate;
    THROW_UNLESS(NotFound, track != nullptr, "the package has no essence track of that ID");
    kind = S::trackKind(*track);
    S::SourcePackage * filePackage = nullptr;
    S::TimelineTrack * fileTrack = nullptr;
    THROW_UNLESS(NotFound, S::fileTrackOf(file->contentStorage(), file->package(), *track, filePackage, fileTrack),
                 "the file package of an essence track is not in the file");
    descriptor = fileTrack->trackID() ? S::fileDescriptorForTrack(*filePackage, fileTrack->trackID()->value()) : nullptr;
    THROW_UNLESS(NotFound, descriptor != nullptr, "an essence track has no file descriptor");
    if (descriptor->essenceContainer())
        label = *descriptor->essenceContainer();
    mpegVideo = kind == S::PictureTrack && isMPEGVideoContainer(label);
    longGop = mpegVideo && !isD10Container(label);
    Types::Rational const * editRate = track->editRate();
    THROW_UNLESS(InvalidValue, editRate && editRate->numerator() > 0 && editRate->denominator() > 0,
                 "an essence track has no usable edit rate");
    Templates::Rational<int> const trackRate(editRate->numerator(), editRate->denominator());
    uint32 const number = fileTrack->trackNumber() ? fileTrack->trackNumber()->value() : 0;
    rate = trackRate;
    if (readNext())
    {
        uint64 const size = std::min(next.element.packet->length(), file->fileSize());
        chooseUnits(trackRate, size);
        // Blocks of the size of the first unit serve a stream of constant or similar units.
        uint64 const blockSize = splitSound ? (Essence::Analyzers::samplesOfUnit(0, samplingRate, rate) + 1) * blockAlign : size;
        pool.reset(new Essence::BlockPool(blockSize > 0 ? blockSize : 1, 16));
        unsigned char const * key = next.element.packet->key().rawBuffer();
        itemType = number != 0 ? static_cast<unsigned char>(number >> 24) : key[12];
        elementType = number != 0 ? static_cast<unsigned char>(number >> 8) : key[14];
    }
}

void TrackCopy::chooseUnits(Templates::Rational<int> const & trackRate, uint64 firstSize)
{
    typedef Templates::Rational<int64> Time;
    Time const pictures(pictureRate.numerator(), pictureRate.denominator());
    Time const perTrack(trackRate.numerator(), trackRate.denominator());
    rate = trackRate;
    S::GenericSoundEssenceDescriptor const * sound =
        S::metadataSetAs<S::GenericSoundEssenceDescriptor>(static_cast<Metadata::MetadataSet const *>(descriptor));
    Types::Rational const * sampling = sound ? sound->audioSamplingRate() : nullptr;
    Types::UInt32 const * channels = sound ? sound->channelCount() : nullptr;
    Types::UInt32 const * bits = sound ? sound->quantizationBits() : nullptr;
    if (kind != S::SoundTrack || !sampling || sampling->denominator() != 1 || sampling->numerator() <= 0 || !channels ||
        !bits || channels->value() == 0 || channels->value() > 64 || bits->value() == 0 || bits->value() > 32)
    {
        // Pictures and data, and sound not described well enough to count its samples: the units
        // stand as stored, one edit unit of the track each; D-10 pictures are of constant size.
        if (isD10Container(label))
            constantSize = static_cast<unsigned int>(std::min<uint64>(firstSize, 0xFFFFFFFFu));
        return;
    }
    samplingRate = static_cast<uint32>(sampling->numerator());
    blockAlign = channels->value() * ((bits->value() + 7) / 8);
    // The time of the first unit, by its samples: some files label a clip as frames.
    Time const seconds(int64(firstSize / blockAlign), int64(samplingRate));
    Time const inPictures = seconds * pictures;
    if (seconds * perTrack == Time(1))
        rate = trackRate;
    else if (pictureRate.numerator() > 0 && Time(9, 10) < inPictures && inPictures < Time(11, 10))
        rate = pictureRate;
    else if (Time(1) < seconds * perTrack)
    {
        // One piece of many units: cut in units of the picture rate (25 without pictures).
        splitSound = true;
        rate = pictureRate.numerator() > 0 ? pictureRate : Templates::Rational<int>(25);
    }
    // Units of the same count of samples each are of constant size.
    if ((Time(int64(samplingRate)) / Time(rate.numerator(), rate.denominator())).denominator() == 1)
        constantSize = Essence::Analyzers::samplesOfUnit(0, samplingRate, rate) * blockAlign;
}

S::FileDescriptor & TrackCopy::describe(Metadata::PartitionMetadata & metadata, S::SourcePackage * package,
                                        unsigned int trackNumber, unsigned int trackId)
{
    builder.reset(new Essence::Analyzers::TrackBuilder(metadata, package, trackNumber, trackId, rate,
                                                       Templates::Rational<int>(-1, 1)));
    S::FileDescriptor * copy = S::metadataSetAs<S::FileDescriptor>(descriptor->clone(true, &metadata));
    THROW_UNLESS(InvalidState, copy != nullptr, "the copy of a file descriptor is no file descriptor");
    Types::UniversalLabel const & definition = kind == S::PictureTrack ? S::DataDefinitionULs::picture()
                                               : kind == S::SoundTrack ? S::DataDefinitionULs::audio()
                                                                       : S::DataDefinitionULs::data();
    builder->describe(definition, *copy, label);
    return *copy;
}

uint64 TrackCopy::checkedLength() const
{
    KLV::Packet const & packet = *next.element.packet;
    uint64 const size = packet.length();
    // The length comes from the file: it must lie within it before it sizes a block.
    THROW_UNLESS(InvalidFormat,
                 packet.keyAbsoluteOffset() <= file->fileSize() && size <= file->fileSize() - packet.keyAbsoluteOffset(),
                 "an essence element ends beyond the end of the file");
    return size;
}

DataIO::BlockHolder TrackCopy::readBytes(uint64 size)
{
    KLV::Value & value = next.element.packet->value();
    DataIO::BlockHolder block = pool->create(size);
    for (uint64 done = 0; done < size;)
    {
        uint64 const got = value.read(block->data() + done, size - done);
        THROW_UNLESS(InvalidFormat, got != 0, "an essence element ends before its length, the file is cut");
        done += got;
    }
    return block;
}

bool TrackCopy::nextUnit(GenericContainer::EditUnit & unit)
{
    unit.valid = false;
    unit.data.clear();
    unit.temporalReference = 0;
    unit.flags = GenericContainer::EditUnit::DEFAULT_FLAGS;
    if (splitSound)
    {
        while (pending && pieceUsed == 0 && (pieceSize = checkedLength()) == 0)
            readNext();
        if (!pending)
            return false;
        uint64 const samples = Essence::Analyzers::samplesOfUnit(units, samplingRate, rate);
        uint64 const bytes = std::min<uint64>(samples * blockAlign, pieceSize - pieceUsed);
        DataIO::BlockHolder block = readBytes(bytes);
        unit.data.push_back(Templates::auto_ptr<DataIO::Slice>(new DataIO::Slice(block.block(), 0, bytes)));
        unit.duration = Templates::Rational<int>(narrowed(int64(bytes / blockAlign)), narrowed(samplingRate));
        pieceUsed += bytes;
        if (pieceUsed == pieceSize)
        {
            pieceUsed = 0;
            readNext();
        }
    }
    else
    {
        if (!pending)
            return false;
        uint64 const size = checkedLength();
        THROW_UNLESS(InvalidFormat, constantSize == 0 || size == constantSize,
                     "an edit unit of a track of constant edit units differs in size");
        DataIO::BlockHolder block = readBytes(size);
        unit.data.push_back(Templates::auto_ptr<DataIO::Slice>(new DataIO::Slice(block.block(), 0, size)));
        unit.duration = blockAlign != 0 ? Templates::Rational<int>(narrowed(int64(size / blockAlign)), narrowed(samplingRate))
                                         : Templates::Rational<int>(narrowed(next.duration.numerator()),
                                                                    narrowed(next.duration.denominator()));
        if (next.element.hasIndexInfo)
            unit.flags = next.element.flags;
        Essence::MPEG::MPEG2Frame frame;
        if (mpegVideo && readPictureHeaders(block->data(), size, frame))
        {
            unit.temporalReference = static_cast<signed char>(frame.temporalReference < 127 ? frame.temporalReference : 127);
            unit.flags = Essence::MPEG::MPEG2VideoAnalyzer::indexFlags(frame);
        }
        readNext();
    }
    unit.valid = true;
    ++units;
    return true;
}

// The analyzer of one kind (picture, sound or data) over a track copy.
template <class Kind>
class TrackCopyAnalyzer : public Kind
{
public:
    explicit TrackCopyAnalyzer(Templates::auto_ptr<TrackCopy> copy) : owned_(std::move(copy)), copy_(*owned_) {}

    Templates::Rational<int> editRate() const override { return copy_.rate; }
    void editRate(Templates::Rational<int> const &) override {}
    uint64 maximumToSkip() const override { return 0; }
    void maximumToSkip(uint64) override {}
    bool preload() override { return copy_.track != nullptr; }
    bool setMetadata(Metadata::PartitionMetadata & metadata, S::SourcePackage * package, unsigned int trackNumber,
                     unsigned int trackId) override
    {
        this->customizeDescriptor(copy_.describe(metadata, package, trackNumber, trackId));
        return true;
    }
    bool nextEditUnit(GenericContainer::EditUnit & unit) override { return copy_.nextUnit(unit); }
    bool finalize() override
    {
        if (copy_.builder.get() != nullptr)
            copy_.builder->finish(int64(copy_.units));
        return true;
    }
    Types::UniversalLabel universalLabel() const override { return copy_.label; }
    bool isCBE() const override { return copy_.constantSize != 0; }
    void boundedEditUnitSize(int) override {}
    unsigned int boundedEditUnitSize() const override { return copy_.constantSize; }
    bool containsTemporalDependencies() const override { return copy_.longGop; }
    Utils::TimeCode currentTimeCode() const override { return Utils::TimeCode(); }
    unsigned char itemTypeIdentifier() const override { return copy_.itemType; }
    unsigned char essenceElementType() const override { return copy_.elementType; }
    unsigned int requiredKAGSize() const override { return 1; }
    bool done() override { return !copy_.pending; }

private:
    Templates::auto_ptr<TrackCopy> owned_;
    TrackCopy & copy_;
};
} // namespace

Templates::SharedPtr<GenericContainer::EssenceAnalyzer> makeTrackCopyAnalyzer(Templates::wstring const & path,
                                                                              unsigned int trackID,
                                                                              Templates::Rational<int> const & pictureRate)
{
    Templates::auto_ptr<TrackCopy> copy(new TrackCopy(path, trackID, pictureRate));
    copy->load();
    typedef Templates::SharedPtr<GenericContainer::EssenceAnalyzer> Analyzer;
    switch (copy->kind)
    {
    case S::PictureTrack:
        return Analyzer(new TrackCopyAnalyzer<GenericContainer::PictureAnalyzer>(std::move(copy)));
    case S::SoundTrack:
        return Analyzer(new TrackCopyAnalyzer<GenericContainer::SoundAnalyzer>(std::move(copy)));
    default:
        return Analyzer(new TrackCopyAnalyzer<GenericContainer::DataAnalyzer>(std::move(copy)));
    }
}
} // namespace OPBuilders
} // namespace Vellum
