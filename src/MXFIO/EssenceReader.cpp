#include "MXFIO/EssenceReader.h"

#include <algorithm>
#include <utility>

#include "DataIO/DataSource.h"
#include "Exceptions/Exceptions.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/EssenceContainerData.h"
#include "Metadata/Structural/MaterialPackage.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourceClip.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralComponent.h"
#include "MXFIO/ContentStorageReader.h"
#include "MXFIO/Reader.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UMID.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
using Metadata::Structural::ContentStorage;
using Metadata::Structural::EssenceContainerData;
using Metadata::Structural::GenericPackage;
using Metadata::Structural::MaterialPackage;
using Metadata::Structural::Sequence;
using Metadata::Structural::SourceClip;
using Metadata::Structural::SourcePackage;
using Metadata::Structural::TimelineTrack;
typedef Templates::Rational<int64> Time;

// Byte 13 of an element key (the element count) is cleared, with the low bits of bytes 8 and 9.
unsigned char const elementKeyMask[16] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                          0xFC, 0xF8, 0xFF, 0xFF, 0xFF, 0x00, 0xFF, 0xFF};

KLV::Key maskedKey(KLV::Key const & key)
{
    unsigned char bytes[16];
    for (unsigned i = 0; i < 16; ++i)
        bytes[i] = static_cast<unsigned char>(key.rawBuffer()[i] & elementKeyMask[i]);
    return KLV::Key(bytes);
}

// The element number of a track number: the element count (its second byte) cleared.
uint32 elementNumber(uint32 trackNumber) { return trackNumber & 0xFF00FFFFu; }

bool isDataElement(uint32 trackNumber)
{
    uint32 itemType = trackNumber >> 24;
    return itemType == 0x17 || itemType == 0x18;
}

bool isUsableRate(Templates::Rational<int> const & rate) { return rate.numerator() > 0 && rate.denominator() > 0; }
} // namespace

struct EssenceReader::Impl
{
    VELLUM_CLASS_ALLOCATION

    struct Track
    {
        VELLUM_CLASS_ALLOCATION

        typedef Templates::map<int64, Templates::auto_ptr<ElementReader>> Clips;

        Track() : position(0), trackID(0), track(0), total(0), nextStart(0), container(0), exhausted(false) {}

        Time position;
        Templates::Rational<int> editRate;
        unsigned int trackID;
        // Clips by their start in the track's edit units.
        Clips clips;
        Clips::iterator current;

        TimelineTrack * track;
        // The track's length in its edit units: the sum of its clips' positive durations.
        int64 total;
        // Where the next clip starts, in the track's edit units.
        int64 nextStart;
        ContentStorageReader * container;
        // Nothing more to read until the next seek or rewind.
        bool exhausted;
    };

    Impl(Reader & reader, Metadata::Structural::Preface & preface, GenericPackage & package, bool growing,
         bool sequential, Templates::SharedPtr<ContentStorageProfile> profile)
        : reader_(reader), contentStorage_(preface.contentStorage()), position_(0), masterPosition_(0),
          lastSeek_(0), masterEditPeriod_(0), openDuration_(false), master_(0), mode_(UseIndexTables),
          profile_(profile), package_(package), growing_(growing), sequential_(sequential)
    {
    }

    // The clip readers go before the containers they read from.
    ~Impl()
    {
        tracks_.clear();
        containerOrder_.clear();
    }

    ContentStorageReader & containerReader(EssenceContainerData & data)
    {
        Templates::map<EssenceContainerData *, ContentStorageReader *>::iterator it = containers_.find(&data);
        if (it != containers_.end())
            return *it->second;
        Templates::auto_ptr<ContentStorageReader> made;
        try
        {
            made.reset(new ContentStorageReader(reader_, data, growing_, sequential_, profile_));
        }
        catch (Exceptions::InvalidFormat const &)
        {
            // A file cut short (no footer behind its last body partition) is read as one whose
            // end has not been written yet: as far as it goes.
            if (growing_)
                throw;
            made.reset(new ContentStorageReader(reader_, data, true, sequential_, profile_));
            openDuration_ = true;
        }
        ContentStorageReader * result = made.get();
        containerOrder_.push_back(std::move(made));
        containers_[&data] = result;
        return *result;
    }

    // A file that may still grow: a streaming source, which cannot say how long it is.
    bool growingSource()
    {
        DataIO::RandomAccessDataSource & source = reader_.source();
        return dynamic_cast<DataIO::StreamingDataSource *>(&source) != 0;
    }

    // Makes the clip reader of one SourceClip and enters it into the track.
    void addClip(Track & record, TimelineTrack & track, SourceClip & clip, MaterialPackage * material)
    {
        if (contentStorage_ == 0)
            return;
        SourcePackage * sourcePackage = 0;
        TimelineTrack * sourceTrack = 0;
        int64 startPosition = 0;
        if (material != 0)
        {
            Types::UMID32 const * packageID = clip.sourcePackageID();
            Types::UInt32 const * sourceTrackID = clip.sourceTrackID();
            if (packageID == 0 || sourceTrackID == 0)
                return;
            sourcePackage = dynamic_cast<SourcePackage *>(contentStorage_->package(*packageID));
            if (sourcePackage == 0)
                return;
            sourceTrack = dynamic_cast<TimelineTrack *>(sourcePackage->track(*sourceTrackID));
            if (clip.startPosition() != 0)
                startPosition = clip.startPosition()->value();
        }
        else
        {
            sourcePackage = dynamic_cast<SourcePackage *>(&package_);
            sourceTrack = &track;
        }
        if (sourcePackage == 0 || sourceTrack == 0 || sourceTrack->trackNumber() == 0 ||
            sourcePackage->packageUID() == 0)
            return;
        EssenceContainerData * data = contentStorage_->essenceContainerData(*sourcePackage->packageUID());
        if (data == 0)
            return;

        uint32 trackNumber = sourceTrack->trackNumber()->value();
        // A second stream of the same data element is not read twice.
        if (isDataElement(trackNumber) && record.clips.empty())
        {
            if (dataElements_.count(elementNumber(trackNumber)) != 0)
                return;
            dataElements_.insert(elementNumber(trackNumber));
        }

        ContentStorageReader & container = containerReader(*data);
        int64 duration = clip.duration() != 0 ? clip.duration()->value() : -1;
        if (duration < 0)
        {
            openDuration_ = true;
            int64 containerDuration = container.duration();
            Templates::Rational<int> containerRate = container.editRate().value();
            if (containerDuration >= 0 && isUsableRate(containerRate))
                duration = Templates::ceilOf(editUnitsConverter(Time(containerDuration), containerRate, record.editRate)) -
                           startPosition;
        }
        if (growingSource())
            openDuration_ = true;

        Templates::auto_ptr<ElementReader> element =
            container.elementReader(trackNumber, startPosition, duration, Types::Rational(record.editRate));
        if (element.get() == 0)
            return;
        if (record.container == 0)
            record.container = &container;
        record.clips[record.nextStart] = std::move(element);
        record.nextStart += duration < 1 ? 1 : duration;
        if (duration > 0)
            record.total += duration;
    }

    void build()
    {
        MaterialPackage * material = dynamic_cast<MaterialPackage *>(&package_);
        Templates::list<TimelineTrack *> tracks;
        Metadata::Structural::getAllEssenceTracks(package_, tracks);
        for (Templates::list<TimelineTrack *>::iterator it = tracks.begin(); it != tracks.end(); ++it)
        {
            TimelineTrack * track = *it;
            if (track->editRate() == 0 || track->sequence() == 0 || track->trackID() == 0)
                continue;
            Templates::Rational<int> rate = track->editRate()->value();
            if (!isUsableRate(rate))
                continue;
            Templates::auto_ptr<Track> record(new Track());
            record->editRate = rate;
            record->trackID = track->trackID()->value();
            record->track = track;
            Sequence * sequence = track->sequence();
            for (unsigned i = 0; i < sequence->structuralComponentsCount(); ++i)
            {
                SourceClip * clip = dynamic_cast<SourceClip *>(sequence->structuralComponent(i));
                if (clip != 0)
                    addClip(*record, *track, *clip, material);
            }
            if (record->clips.empty())
                continue;
            Time period(rate.denominator(), rate.numerator());
            if (masterEditPeriod_ == 0 || period < masterEditPeriod_)
                masterEditPeriod_ = period;
            tracks_.push_back(std::move(record));
        }
        // The master comes first: the track with the shortest edit period.
        std::stable_sort(tracks_.begin(), tracks_.end(), [](Templates::auto_ptr<Track> const & a, Templates::auto_ptr<Track> const & b) {
            return Time(a->editRate.denominator(), a->editRate.numerator()) <
                   Time(b->editRate.denominator(), b->editRate.numerator());
        });
        master_ = 0;
        for (size_t i = 0; i < tracks_.size(); ++i)
        {
            ElementReader * first = tracks_[i]->clips.begin()->second.get();
            uint32 number = first->trackNumber();
            if (elements_.find(elementNumber(number)) == elements_.end())
                elements_[elementNumber(number)] = static_cast<unsigned int>(i);
            KLV::Key key = maskedKey(first->key());
            if (keys_.find(key) == keys_.end())
                keys_.insert(std::make_pair(key, static_cast<unsigned int>(i)));
        }
        THROW_UNLESS(InvalidValue, !(masterEditPeriod_ == 0), "Package does not have valid Essence Tracks.");
    }

    void rewind()
    {
        position_ = 0;
        masterPosition_ = 0;
        lastSeek_ = 0;
        for (size_t i = 0; i < containerOrder_.size(); ++i)
            containerOrder_[i]->seek(0);
        for (size_t i = 0; i < tracks_.size(); ++i)
        {
            Track & track = *tracks_[i];
            track.position = 0;
            track.exhausted = false;
            track.current = track.clips.begin();
            for (Track::Clips::iterator it = track.clips.begin(); it != track.clips.end(); ++it)
                it->second->rewind();
        }
    }

    bool seekTrack(Track & track, Time const & position)
    {
        track.position = position;
        if (position < 0)
        {
            track.exhausted = true;
            return false;
        }
        int64 unit = Templates::floorOf(seconds2EditUnits(position, track.editRate));
        Track::Clips::iterator it = track.clips.upper_bound(unit);
        if (track.clips.empty() || it == track.clips.begin())
        {
            track.exhausted = true;
            return false;
        }
        --it;
        ElementReader & clip = *it->second;
        Templates::Rational<int> clipRate = clip.editRate();
        int64 inClip = unit - it->first;
        if (clipRate != track.editRate)
            inClip = Templates::floorOf(editUnitsConverter(Time(inClip), track.editRate, clipRate));
        track.current = it;
        bool positioned = clip.seek(inClip);
        clip.flush();
        track.exhausted = !positioned;
        return positioned;
    }

    bool seek(Time const & position)
    {
        position_ = position;
        masterPosition_ = position;
        lastSeek_ = position;
        bool result = true;
        for (size_t i = 0; i < tracks_.size(); ++i)
        {
            if (!seekTrack(*tracks_[i], position))
                result = false;
        }
        // The master last, so that the shared container stands where the master reads next.
        if (!tracks_.empty() && !seekTrack(*tracks_[master_], position))
            result = false;
        return result;
    }

    void advance(Track & track, ElementEditUnit & unit)
    {
        Time duration = editUnits2Seconds(Time(unit.element.samples > 0 ? unit.element.samples : 1), track.editRate);
        unit.position = track.position;
        unit.duration = duration;
        track.position += duration;
        if (masterPosition_ < track.position)
            masterPosition_ = track.position;
        position_ = masterPosition_;
    }

    bool nextByTime(uint64 keySearchLimit, ElementEditUnit & unit)
    {
        for (;;)
        {
            Track * chosen = 0;
            for (size_t i = 0; i < tracks_.size(); ++i)
            {
                Track * track = tracks_[i].get();
                if (!track->exhausted && (chosen == 0 || track->position < chosen->position))
                    chosen = track;
            }
            if (chosen == 0)
                return false;
            if (chosen->current == chosen->clips.end())
            {
                chosen->exhausted = true;
                continue;
            }
            ElementReader & clip = *chosen->current->second;
            if (clip.read(keySearchLimit, unit.element))
            {
                unit.trackID = chosen->trackID;
                unit.trackNumber = clip.trackNumber();
                advance(*chosen, unit);
                // Where the unit read lies, as the clip knows it.
                unit.position = editUnits2Seconds(Time(chosen->current->first), chosen->editRate);
                unit.position += clip.lastPosition();
                return true;
            }
            // The clip ends here: the next clip of the track starts from its beginning.
            ++chosen->current;
            if (chosen->current == chosen->clips.end())
                chosen->exhausted = true;
            else
                chosen->current->second->rewind();
        }
    }

    bool nextInFileOrder(uint64 keySearchLimit, ElementEditUnit & unit)
    {
        if (containerOrder_.empty())
            return false;
        ContentStorageReader & container = *containerOrder_.front();
        for (;;)
        {
            Templates::auto_ptr<KLV::Packet> packet = container.nextKLV(keySearchLimit);
            if (packet.get() == 0)
                return false;
            Templates::map<KLV::Key, unsigned int>::iterator it = keys_.find(maskedKey(packet->key()));
            if (it == keys_.end())
            {
                container.discardKLVPacket(std::move(packet));
                continue;
            }
            Track & track = *tracks_[it->second];
            ElementReader & clip = *track.clips.begin()->second;
            unit.trackID = track.trackID;
            unit.trackNumber = clip.trackNumber();
            unit.element.packet = std::move(packet);
            Templates::Rational<int> containerRate = container.editRate().value();
            int64 samples = 1;
            if (isUsableRate(containerRate) && containerRate != track.editRate)
            {
                Time begin = seconds2EditUnits(track.position, track.editRate);
                Time end = editUnitsConverter(Time(1), containerRate, track.editRate);
                end += begin;
                samples = Templates::floorOf(end) - Templates::floorOf(begin);
                if (samples < 1)
                    samples = 1;
            }
            unit.element.samples = samples;
            advance(track, unit);
            return true;
        }
    }

    Reader & reader_;
    ContentStorage * contentStorage_;
    Templates::vector<Templates::auto_ptr<Track>> tracks_;
    Templates::map<uint32, unsigned int> elements_;
    Templates::map<KLV::Key, unsigned int> keys_;
    Time position_;
    Time masterPosition_;
    Time lastSeek_;
    Time masterEditPeriod_;
    bool openDuration_;
    Templates::map<EssenceContainerData *, ContentStorageReader *> containers_;
    unsigned int master_;
    IndexTableHandlingMode mode_;
    Templates::SharedPtr<ContentStorageProfile> profile_;

    GenericPackage & package_;
    bool growing_;
    bool sequential_;
    // The containers in the order they were first met; the map above finds them.
    Templates::vector<Templates::auto_ptr<ContentStorageReader>> containerOrder_;
    Templates::set<uint32> dataElements_;
};

EssenceReader::EssenceReader(Reader & reader, Metadata::Structural::Preface & preface,
                             Metadata::Structural::GenericPackage & package, bool growing, bool sequential,
                             Templates::SharedPtr<ContentStorageProfile> profile)
    : impl_(new Impl(reader, preface, package, growing, sequential, profile))
{
    impl_->build();
    impl_->rewind();
}

EssenceReader::~EssenceReader() = default;

Templates::Rational<int64> EssenceReader::duration() const
{
    Time longest(0);
    for (size_t i = 0; i < impl_->tracks_.size(); ++i)
    {
        Impl::Track const & track = *impl_->tracks_[i];
        Time length = editUnits2Seconds(Time(track.total), track.editRate);
        if (longest < length)
            longest = length;
    }
    return longest;
}

Templates::Rational<int64> EssenceReader::indexableDuration() const
{
    if (impl_->tracks_.empty())
        return Time(0);
    Impl::Track const & master = *impl_->tracks_[impl_->master_];
    if (master.container == 0)
        return Time(0);
    Templates::Rational<int> rate = master.container->editRate().value();
    if (!isUsableRate(rate))
        return Time(0);
    return editUnits2Seconds(Time(static_cast<int64>(master.container->indexableDuration())), rate);
}

Templates::Rational<int64> EssenceReader::position() const { return impl_->position_; }

bool EssenceReader::seek(Templates::Rational<int64> const & position) { return impl_->seek(position); }

void EssenceReader::rewind() { impl_->rewind(); }

bool EssenceReader::nextElementEditUnit(uint64 keySearchLimit, ElementEditUnit & unit)
{
    unit.element.reset();
    unit.trackID = 0;
    unit.trackNumber = 0;
    unit.position = 0;
    unit.duration = 0;
    if (impl_->mode_ == UseIndexTables)
        return impl_->nextByTime(keySearchLimit, unit);
    return impl_->nextInFileOrder(keySearchLimit, unit);
}

Templates::vector<Metadata::Structural::TimelineTrack *> EssenceReader::essenceTracks()
{
    Templates::vector<TimelineTrack *> result;
    for (size_t i = 0; i < impl_->tracks_.size(); ++i)
        result.push_back(impl_->tracks_[i]->track);
    return result;
}

Templates::vector<unsigned int> EssenceReader::essenceTrackIDs()
{
    Templates::vector<unsigned int> result;
    for (size_t i = 0; i < impl_->tracks_.size(); ++i)
        result.push_back(impl_->tracks_[i]->trackID);
    return result;
}

Metadata::Structural::GenericPackage & EssenceReader::package() { return impl_->package_; }

bool EssenceReader::indexTableHandlingMode(IndexTableHandlingMode mode)
{
    if (impl_->containerOrder_.size() > 1)
        return false;
    impl_->mode_ = mode;
    return true;
}

void EssenceReader::registerKLVPacketListener(SystemItemKLVPacketListener * listener)
{
    for (size_t i = 0; i < impl_->containerOrder_.size(); ++i)
        impl_->containerOrder_[i]->registerKLVPacketListener(listener);
}

void EssenceReader::unregisterKLVPacketListener()
{
    for (size_t i = 0; i < impl_->containerOrder_.size(); ++i)
        impl_->containerOrder_[i]->unregisterKLVPacketListener();
}

void EssenceReader::setContentStorageProfile(Templates::SharedPtr<ContentStorageProfile> profile)
{
    for (size_t i = 0; i < impl_->containerOrder_.size(); ++i)
        impl_->containerOrder_[i]->setContentStorageProfile(profile);
    impl_->profile_ = profile;
}

void EssenceReader::refreshSource()
{
    for (size_t i = 0; i < impl_->containerOrder_.size(); ++i)
        impl_->containerOrder_[i]->refreshSource();
}
} // namespace MXFIO
} // namespace Vellum
