#include "MXFIO/ContentStorageReader.h"

#include "Exceptions/Exceptions.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Value.h"
#include "MXFIO/ContainerOffsets.h"
#include "MXFIO/ElementReaders.h"
#include "MXFIO/EssenceConversions.h"
#include "MXFIO/IndexTableProvider.h"
#include "MXFIO/Partition.h"
#include "MXFIO/PartitionProvider.h"
#include "MXFIO/Reader2.h"
#include "MXFIO/Seeker.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/FileDescriptor.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Types/Integers.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
// How many packets the first content package may hold before the element table gives up.
unsigned int const maximumElements = 256;
// The key search limit used while reading ahead at construction.
uint64 const firstPacketKeySearchLimit = 4096;
// Stands for the first element's key until the first content package has been seen.
unsigned char const noKey[16] = {0};

enum Wrapping
{
    UnknownWrapping = 0,
    FrameWrapping,
    ClipWrapping
};

bool positiveRational(Types::Rational const * rate)
{
    return rate != nullptr && rate->numerator() > 0 && rate->denominator() > 0;
}

unsigned int trackNumberOfKey(KLV::Key const & key)
{
    return (unsigned int)(key[12]) << 24 | (unsigned int)(key[13]) << 16 | (unsigned int)(key[14]) << 8 |
           (unsigned int)(key[15]);
}

// Whether the label matches the bytes, leaving out the registry version (byte 7) and the bytes from
// `free` on.
bool matches(unsigned char const * label, unsigned char const * bytes, unsigned int free)
{
    for (unsigned int i = 0; i < free; ++i)
        if (i != 7 && label[i] != bytes[i])
            return false;
    return true;
}

// The wrapping that the essence container label states, where it states one.
Wrapping wrappingOfLabel(Types::UniversalLabel const & ul)
{
    unsigned char const * label = ul.rawBuffer();
    static unsigned char const gc[14] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x01,
                                         0x0D, 0x01, 0x03, 0x01, 0x02, 0x00};
    static unsigned char const dcinema[13] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x08,
                                              0x04, 0x01, 0x02, 0x02, 0x01};
    unsigned char const byte14 = label[14];
    unsigned char const byte15 = label[15];
    if (matches(label, dcinema, 13))
        return byte15 == 1 ? FrameWrapping : byte15 == 2 ? ClipWrapping : UnknownWrapping;
    if (!matches(label, gc, 13))
        return UnknownWrapping;
    switch (label[13])
    {
    case 0x01: // D-10
        return FrameWrapping;
    case 0x02: // DV
    case 0x04: // MPEG
    case 0x05: // uncompressed pictures
        return byte15 == 1 ? FrameWrapping : byte15 == 2 ? ClipWrapping : UnknownWrapping;
    case 0x06: // AES3 and Broadcast Wave
        switch (byte14)
        {
        case 1:
        case 3:
            return FrameWrapping;
        case 2:
        case 4:
            return ClipWrapping;
        default:
            return UnknownWrapping;
        }
    case 0x08: // JPEG 2000 (legacy), AVC and the rest: only clip wrapping is told apart
    case 0x09:
    case 0x0F:
    case 0x10:
        return byte15 == 2 ? ClipWrapping : UnknownWrapping;
    case 0x0A: // A-law
    case 0x0C: // JPEG 2000
        return byte14 == 1 ? FrameWrapping : byte14 == 2 ? ClipWrapping : UnknownWrapping;
    default:
        return UnknownWrapping;
    }
}

// The constant edit unit size that the first index segment states; 0 when none does.
unsigned int constantEditUnitByteCount(DataIO::RandomAccessDataSource & source, IndexTableProvider & provider)
{
    uint64 const before = source.absoluteOffset();
    IndexTableSegmentPtr segment = provider.segment(0);
    if (source.absoluteOffset() != before)
        source.seek(before);
    if (segment.get() == nullptr || segment->editUnitByteCount() == nullptr)
        return 0;
    return segment->editUnitByteCount()->value();
}

// The edit units that the index covers from 0: each segment ends where the next begins.
int64 indexedDuration(DataIO::RandomAccessDataSource & source, IndexTableProvider & provider)
{
    uint64 const before = source.absoluteOffset();
    int64 covered = 0;
    for (;;)
    {
        IndexTableSegmentPtr segment = provider.segment(covered);
        if (segment.get() == nullptr)
            break;
        int64 const start = segment->indexStartPosition().value();
        int64 length = segment->indexDuration().value();
        if (length < 1)
            length = int64(segment->indexEntryCount());
        if (length < 1 || start + length <= covered)
            break;
        covered = start + length;
    }
    if (source.absoluteOffset() != before)
        source.seek(before);
    return covered;
}

Metadata::Structural::TimelineTrack * trackOfNumber(Metadata::Structural::SourcePackage const & package,
                                                     unsigned int trackNumber)
{
    Metadata::Structural::TimelineTrack * close = nullptr;
    for (unsigned int i = 0; i < package.tracksCount(); ++i)
    {
        Metadata::Structural::TimelineTrack * track =
            dynamic_cast<Metadata::Structural::TimelineTrack *>(package.track(i));
        if (track == nullptr || track->trackNumber() == nullptr)
            continue;
        unsigned int const number = track->trackNumber()->value();
        if (number == trackNumber)
            return track;
        if (close == nullptr && (number & 0xFF00FFFFu) == (trackNumber & 0xFF00FFFFu))
            close = track;
    }
    return close;
}
} // namespace

struct ContentStorageReader::Impl
{
    VELLUM_CLASS_ALLOCATION

    struct MetadataInfo
    {
        Templates::map<unsigned int, unsigned int> trackNumber2TrackID;
    };

    Impl(Reader & r, Metadata::Structural::EssenceContainerData & data)
        : nextElementIndex(0), reader(r), reader2(dynamic_cast<Reader2 *>(&r)), essenceContainerData(data),
          bodySID(0), indexSID(0), current(nullptr), streamOffset(0), editUnit(0), position(0),
          firstInPartition(false), firstElementKey(noKey), clipWrapped(false), systemItemListener_(nullptr), sourcePackage(nullptr),
          descriptor(nullptr), editRate(0, 0), growing(false), sequential(false), editUnitByteCount(0),
          duration(-1), containerSize(0), reordering(-1), wrapping(UnknownWrapping)
    {
    }

    bool growingFile() const { return growing || (profile.get() != nullptr && profile->growingFile()); }

    // The packets of the container in file order, without the bookkeeping of the position in edit
    // units.
    Templates::auto_ptr<KLV::Packet> rawNext(uint64 keySearchLimit);
    bool gotoStart();
    bool gotoOffset(uint64 offset, int64 unit);
    void chooseProviders(Templates::auto_ptr<IndexTableProvider> & index,
                         Templates::auto_ptr<PartitionProvider> & partitions);
    void measureContainer(IndexTableProvider & index);
    void readFirstContentPackage();

    unsigned int nextElementIndex;
    Reader & reader;
    Reader2 * reader2;
    Metadata::Structural::EssenceContainerData & essenceContainerData;
    unsigned int bodySID;
    unsigned int indexSID;
    Partition * current;
    uint64 streamOffset;
    int64 editUnit;
    uint64 position;
    bool firstInPartition;
    KLV::Key firstElementKey;
    bool clipWrapped;
    Templates::auto_ptr<Seeker> seeker_;
    SystemItemKLVPacketListener * systemItemListener_;
    MetadataInfo metadataInfo_;

    Metadata::Structural::SourcePackage * sourcePackage;
    Metadata::Structural::FileDescriptor * descriptor;
    Types::Rational editRate;
    Templates::SharedPtr<ContentStorageProfile> profile;
    bool growing;
    bool sequential;
    unsigned int editUnitByteCount;
    int64 duration;
    uint64 containerSize;
    // The track numbers of the first content package, in order.
    Templates::vector<unsigned int> elementNumbers;
    int64 reordering;
    Wrapping wrapping;
};

Templates::auto_ptr<KLV::Packet> ContentStorageReader::Impl::rawNext(uint64 keySearchLimit)
{
    Templates::auto_ptr<KLV::Packet> packet;
    if (current == nullptr && !gotoStart())
        return packet;
    DataIO::RandomAccessDataSource & source = reader.source();
    for (;;)
    {
        if (source.absoluteOffset() != position)
            source.seek(position);
        packet = current->nextBodyKLV(keySearchLimit);
        if (packet.get() != nullptr)
            break;
        // The end of this partition's body: the container goes on in the next partition of its
        // body SID, if there is one. Otherwise the position stays at the end, so that every
        // later read ends at once.
        Partition * next = reader.nextPartition(current, bodySID);
        if (next == nullptr)
            return packet;
        current = next;
        current->rewind();
        streamOffset = current->partitionPack().bodyOffset();
        position = current->bodyAbsoluteOffset();
        firstInPartition = true;
    }
    if (firstInPartition && clipWrapped)
        seeker_->checkClipWrappedPacket(packet->key());
    firstInPartition = false;
    uint64 const valueStart = source.absoluteOffset();
    uint64 const left = source.remaining();
    position = valueStart + (packet->length() < left ? packet->length() : left);
    return packet;
}

bool ContentStorageReader::Impl::gotoStart()
{
    Partition * partition = reader.headerPartition();
    if (partition != nullptr && partition->partitionPack().bodySID() != bodySID)
        partition = reader.nextPartition(partition, bodySID);
    if (partition == nullptr)
        return false;
    current = partition;
    editUnit = 0;
    streamOffset = 0;
    nextElementIndex = 0;
    current->rewind();
    streamOffset = current->partitionPack().bodyOffset();
    position = current->bodyAbsoluteOffset();
    firstInPartition = true;
    return true;
}

bool ContentStorageReader::Impl::gotoOffset(uint64 offset, int64 unit)
{
    Partition * partition = seeker_->partition(offset, unit);
    if (partition == nullptr)
        return false;
    partition->gotoBodyRelativePosition(offset);
    current = partition;
    streamOffset = offset;
    position = reader.source().absoluteOffset();
    firstInPartition = offset == partition->partitionPack().bodyOffset();
    return true;
}

void ContentStorageReader::Impl::chooseProviders(Templates::auto_ptr<IndexTableProvider> & index,
                                                 Templates::auto_ptr<PartitionProvider> & partitions)
{
    ContentStorageProfile::IndexProviderChoice indexChoice = ContentStorageProfile::AutomaticIndex;
    ContentStorageProfile::PartitionProviderChoice partitionChoice = ContentStorageProfile::AutomaticPartitions;
    unsigned int editUnitsPerPartition = 0;
    if (profile.get() != nullptr)
    {
        indexChoice = profile->indexProvider();
        partitionChoice = profile->partitionProvider();
        editUnitsPerPartition = profile->editUnitsPerPartition();
    }
    bool const grows = growingFile();
    bool rip = false;
    if (!grows && (indexChoice == ContentStorageProfile::AutomaticIndex ||
                   partitionChoice == ContentStorageProfile::AutomaticPartitions))
        rip = reader.rip().get() != nullptr || reader.loadRIP() ||
              (reader2 != nullptr && reader2->loadRipFromFooter());
    uint64 bodyPartitions = 0;
    if (rip && reader.rip().get() != nullptr)
        bodyPartitions = reader.rip()->find(bodySID).size();

    if (indexChoice == ContentStorageProfile::AutomaticIndex)
    {
        if (indexSID == 0 || sequential)
            indexChoice = ContentStorageProfile::NoIndex;
        else if (grows)
            indexChoice = ContentStorageProfile::StreamingIndex;
        else if (rip)
            indexChoice = ContentStorageProfile::FullFileParseIndex;
        else
            indexChoice = ContentStorageProfile::ParseOnRequestIndex;
    }
    if (partitionChoice == ContentStorageProfile::AutomaticPartitions)
    {
        if (grows)
            partitionChoice = ContentStorageProfile::StreamingPartitions;
        else if (reader2 != nullptr && editUnitsPerPartition != 0 && rip)
            partitionChoice = ContentStorageProfile::FixedEditUnitCountPartitions;
        else if (reader2 != nullptr && rip && bodyPartitions > 1)
            partitionChoice = ContentStorageProfile::EstimatePartitions;
        else
            partitionChoice = ContentStorageProfile::BasicPartitions;
    }
    // The providers that need the footer and the RIP fall back to those that walk the file.
    if (reader2 == nullptr && (partitionChoice == ContentStorageProfile::EstimatePartitions ||
                               partitionChoice == ContentStorageProfile::FixedEditUnitCountPartitions))
        partitionChoice = ContentStorageProfile::BasicPartitions;
    if (reader2 == nullptr && indexChoice == ContentStorageProfile::PositionEstimateIndex)
        indexChoice = ContentStorageProfile::ParseOnRequestIndex;

    switch (indexChoice)
    {
    case ContentStorageProfile::FullFileParseIndex:
        index.reset(new IndexTableFullFileParseProvider(reader, indexSID));
        break;
    case ContentStorageProfile::ParseOnRequestIndex:
        index.reset(new IndexTableParseOnRequestProvider(reader, indexSID));
        break;
    case ContentStorageProfile::PositionEstimateIndex:
        index.reset(new IndexTablePositionEstimateProvider(*reader2, indexSID,
                                                           editUnitsPerPartition != 0 ? editUnitsPerPartition : 1));
        break;
    case ContentStorageProfile::StreamingIndex:
        index.reset(new IndexTableStreamingProvider(reader, indexSID));
        break;
    default:
        index.reset(new IndexTableNullProvider());
        break;
    }
    switch (partitionChoice)
    {
    case ContentStorageProfile::EstimatePartitions:
        partitions.reset(new EstimatePartitionProvider(*reader2, bodySID));
        break;
    case ContentStorageProfile::FixedEditUnitCountPartitions:
        partitions.reset(new FixedEditUnitCountPartitionProvider(*reader2, bodySID, editUnitsPerPartition));
        break;
    case ContentStorageProfile::StreamingPartitions:
        partitions.reset(new StreamingPartitionProvider(reader, bodySID));
        break;
    default:
        partitions.reset(new BasicPartitionProvider(reader, bodySID, grows));
        break;
    }
}

// The size of the container's essence and its duration: from the descriptor, else from a constant
// edit unit size, else from the index.
void ContentStorageReader::Impl::measureContainer(IndexTableProvider & index)
{
    DataIO::RandomAccessDataSource & source = reader.source();
    uint64 const before = source.absoluteOffset();
    try
    {
        containerSize = reader2 != nullptr ? MXFIO::containerSize(*reader2, bodySID)
                                           : MXFIO::containerSize(reader, bodySID);
    }
    catch (Exceptions::BaseException const &)
    {
        // A file being written has no footer yet: its size is not known.
        if (!growingFile())
            throw;
        containerSize = 0;
    }
    if (source.absoluteOffset() != before)
        source.seek(before);
    duration = -1;
    Types::Length const * length = descriptor->containerDuration();
    if (length != nullptr && length->value() >= 0)
        duration = length->value();
    else if (editUnitByteCount != 0)
        duration = int64(containerSize / editUnitByteCount);
    else if (int64 const indexed = indexedDuration(source, index))
        duration = indexed;
    else
    {
        // The longest essence track of the source package, in the container's edit units.
        for (unsigned int i = 0; i < sourcePackage->tracksCount(); ++i)
        {
            Metadata::Structural::TimelineTrack * track =
                dynamic_cast<Metadata::Structural::TimelineTrack *>(sourcePackage->track(i));
            if (track == nullptr || track->trackNumber() == nullptr || track->trackNumber()->value() == 0 ||
                track->sequence() == nullptr || track->sequence()->duration() == nullptr ||
                !positiveRational(track->editRate()))
                continue;
            int64 const length = track->sequence()->duration()->value();
            if (length < 0)
                continue;
            Templates::Rational<int64> units =
                editUnitsConverter(Templates::Rational<int64>(length), track->editRate()->value(), editRate.value());
            int64 const rounded = (units.numerator() + units.denominator() - 1) / units.denominator();
            if (rounded > duration)
                duration = rounded;
        }
    }
}

// Reads the first content package: its element keys, in order, up to the return of the first.
// Where the label leaves the wrapping open, the essence is clip wrapped when the first packet
// holds the whole container, a trailing fill item aside.
void ContentStorageReader::Impl::readFirstContentPackage()
{
    DataIO::RandomAccessDataSource & source = reader.source();
    uint64 const before = source.absoluteOffset();
    Templates::vector<unsigned int> numbers;
    bool seen = false;
    bool alone = false;
    current = nullptr;
    for (unsigned int n = 0; n < maximumElements; ++n)
    {
        Templates::auto_ptr<KLV::Packet> packet = rawNext(firstPacketKeySearchLimit);
        if (packet.get() == nullptr)
            break;
        KLV::Key const key = packet->key();
        uint64 const length = packet->length();
        packet->value().discard();
        packet.reset();
        if (KLV::isFillItem(key))
            continue;
        if (!seen)
        {
            seen = true;
            firstElementKey = key;
            numbers.push_back(trackNumberOfKey(key));
            if (wrapping == UnknownWrapping && containerSize != 0 && length == containerSize)
                clipWrapped = true;
            alone = true;
            if (clipWrapped)
                break;
            continue;
        }
        alone = false;
        if (key == firstElementKey)
            break;
        numbers.push_back(trackNumberOfKey(key));
    }
    if (seen && alone && wrapping == UnknownWrapping)
        clipWrapped = true;
    if (seen)
        elementNumbers.swap(numbers);
    current = nullptr;
    editUnit = 0;
    streamOffset = 0;
    nextElementIndex = 0;
    if (source.absoluteOffset() != before)
        source.seek(before);
}

ContentStorageReader::ContentStorageReader(Reader & reader,
                                           Metadata::Structural::EssenceContainerData & essenceContainerData,
                                           bool growing, bool sequential,
                                           Templates::SharedPtr<ContentStorageProfile> profile)
    : impl_(nullptr)
{
    Templates::auto_ptr<Impl> impl(new Impl(reader, essenceContainerData));
    impl->growing = growing;
    impl->sequential = sequential;
    impl->profile = profile;

    Metadata::PartitionMetadata * metadata = dynamic_cast<Metadata::PartitionMetadata *>(essenceContainerData.owner());
    THROW_UNLESS(OperationNotAllowed, metadata != 0, "Invalid MetadataSetOwner. Only PartitionMetadata is supported.");
    Metadata::Structural::SourcePackage * linkedPackage =
        dynamic_cast<Metadata::Structural::SourcePackage *>(essenceContainerData.linkedPackage());
    THROW_UNLESS(BrokenLink, linkedPackage != 0, "Source package not found.");
    Metadata::Structural::FileDescriptor * descriptor =
        dynamic_cast<Metadata::Structural::FileDescriptor *>(linkedPackage->descriptor());
    THROW_UNLESS(BrokenLink, descriptor != 0, "File Descriptor not found.");
    Types::UniversalLabel const * essenceContainerUL = descriptor->essenceContainer();
    THROW_UNLESS(NotFound, essenceContainerUL != 0, "Essence Container UL not found.");
    Types::UInt32 const * sid = essenceContainerData.bodySID();
    unsigned int const bodySID = sid != nullptr ? sid->value() : 0;
    THROW_UNLESS(InvalidID, bodySID != 0, "missing bodySID from essenceContainerdata.");
    impl->bodySID = bodySID;
    impl->indexSID = essenceContainerData.indexSID() != nullptr ? essenceContainerData.indexSID()->value() : 0;

    Partition * bodySIDPartition = reader.headerPartition();
    if (bodySIDPartition != nullptr && bodySIDPartition->partitionPack().bodySID() != bodySID)
        bodySIDPartition = reader.nextPartition(bodySIDPartition, bodySID);
    THROW_UNLESS(NotFound, bodySIDPartition != 0, "Unable to find partition for the bodySID specified.");

    // The container's edit rate: the descriptor's sample rate, else that of its first track.
    Types::Rational const * editRate = descriptor->sampleRate();
    for (unsigned int i = 0; i < linkedPackage->tracksCount(); ++i)
    {
        Metadata::Structural::TimelineTrack * track =
            dynamic_cast<Metadata::Structural::TimelineTrack *>(linkedPackage->track(i));
        if (track == nullptr)
            continue;
        if (track->trackNumber() != nullptr && track->trackID() != nullptr)
            impl->metadataInfo_.trackNumber2TrackID[track->trackNumber()->value()] = track->trackID()->value();
        if (track->trackNumber() == nullptr || track->trackNumber()->value() == 0)
            continue;
        Types::Rational const * currentEditRate = track->editRate();
        THROW_UNLESS_TEXT(InvalidValue, positiveRational(currentEditRate), "currentEditRate > 0",
                          "Edit rate non-greater than zero.");
        if (editRate == nullptr)
            editRate = currentEditRate;
    }
    THROW_UNLESS_TEXT(InvalidValue, positiveRational(editRate), "editRate > 0", "Edit rate non-greater than zero.");
    impl->sourcePackage = linkedPackage;
    impl->descriptor = descriptor;
    impl->editRate = *editRate;

    impl->wrapping = wrappingOfLabel(*essenceContainerUL);
    impl->clipWrapped = impl->wrapping == ClipWrapping;

    Templates::auto_ptr<IndexTableProvider> indexProvider;
    Templates::auto_ptr<PartitionProvider> partitionProvider;
    impl->chooseProviders(indexProvider, partitionProvider);
    impl->editUnitByteCount = constantEditUnitByteCount(reader.source(), *indexProvider);
    impl->measureContainer(*indexProvider);
    impl->seeker_.reset(new Seeker(reader.source(), std::move(indexProvider), std::move(partitionProvider),
                                   impl->editUnitByteCount, impl->containerSize, impl->duration));
    impl->readFirstContentPackage();
    impl->seeker_->elements(impl->elementNumbers);
    impl_ = std::move(impl);
}

ContentStorageReader::~ContentStorageReader() = default;

bool ContentStorageReader::seek(int64 editUnit)
{
    if (editUnit < 0)
        return false;
    int64 const d = impl_->duration;
    if (d > 0 && editUnit >= d)
        return false;
    int64 const target = impl_->clipWrapped ? 0 : editUnit;
    uint64 offset = 0;
    if (!impl_->seeker_->streamOffset(target, offset))
        return false;
    if (!impl_->gotoOffset(offset, target))
        return false;
    impl_->nextElementIndex = 0;
    impl_->editUnit = target;
    return true;
}

bool ContentStorageReader::fineSeek(int64 editUnit, unsigned int trackNumber)
{
    if (editUnit < 0 || impl_->clipWrapped)
        return false;
    int64 const d = impl_->duration;
    if (d > 0 && editUnit >= d)
        return false;
    uint64 offset = 0;
    if (!impl_->seeker_->elementStreamOffset(editUnit, trackNumber, offset))
        return false;
    // The packets of the system item share its place in the content package: a seek to any of
    // them lands on the item's start, the package's first element.
    unsigned int const index = impl_->seeker_->elementIndex(trackNumber);
    if (!impl_->gotoOffset(offset, editUnit))
        return false;
    // Behind the first element the content package has begun: the unit reached is the next one.
    if (index != 0)
    {
        impl_->nextElementIndex = index;
        impl_->editUnit = editUnit + 1;
    }
    else
    {
        impl_->nextElementIndex = 0;
        impl_->editUnit = editUnit;
    }
    return true;
}

int64 ContentStorageReader::editUnit() const
{
    return impl_->editUnit;
}

unsigned int ContentStorageReader::nextElementIndex() const
{
    return impl_->nextElementIndex;
}

Templates::auto_ptr<KLV::Packet> ContentStorageReader::nextKLV(uint64 keySearchLimit)
{
    Templates::auto_ptr<KLV::Packet> packet = impl_->rawNext(keySearchLimit);
    if (packet.get() == nullptr)
        return packet;
    KLV::Key const & key = packet->key();
    unsigned int const number = trackNumberOfKey(key);
    if (!KLV::isFillItem(key) && impl_->seeker_->trackNumberExists(number))
        impl_->nextElementIndex = impl_->seeker_->elementIndex(number) + 1;
    if (key == impl_->firstElementKey)
    {
        impl_->seeker_->learnStreamOffset(impl_->editUnit, impl_->streamOffset);
        ++impl_->editUnit;
        impl_->nextElementIndex = 1;
    }
    impl_->streamOffset += packet->klvLength();
    return packet;
}

void ContentStorageReader::discardKLVPacket(Templates::auto_ptr<KLV::Packet> packet)
{
    if (packet.get() == nullptr)
        return;
    if (impl_->systemItemListener_ != nullptr && impl_->systemItemListener_->wantsPacket(packet->key()))
    {
        impl_->systemItemListener_->handlePacket(std::move(packet));
        return;
    }
    packet->value().discard();
}

int64 ContentStorageReader::duration() const
{
    return impl_->duration;
}

uint64 ContentStorageReader::indexableDuration() const
{
    if (impl_->editUnitByteCount != 0)
        return impl_->duration > 0 ? uint64(impl_->duration) : 0;
    return uint64(indexedDuration(impl_->reader.source(), impl_->seeker_->indexProvider()));
}

Types::Rational ContentStorageReader::editRate()
{
    return impl_->editRate;
}

unsigned int ContentStorageReader::editUnitByteCount() const
{
    return impl_->editUnitByteCount;
}

Templates::vector<unsigned int> ContentStorageReader::elements()
{
    return impl_->elementNumbers;
}

Templates::auto_ptr<ElementReader> ContentStorageReader::elementReader(unsigned int trackNumber, int64 startPosition,
                                                                       int64 duration, Types::Rational const & editRate)
{
    Metadata::Structural::SourcePackage * sourcePackage =
        dynamic_cast<Metadata::Structural::SourcePackage *>(impl_->essenceContainerData.linkedPackage());
    THROW_UNLESS(BrokenLink, sourcePackage != 0, "Source package not found.");
    Metadata::Structural::TimelineTrack * track = trackOfNumber(*sourcePackage, trackNumber);
    THROW_UNLESS(NotFound, track != 0, "Track not found.");
    Types::Rational const * trackEditRate = track->editRate();
    THROW_UNLESS_TEXT(InvalidElement, trackEditRate != 0 && trackEditRate->numerator() != 0, "editRate != 0",
                      "Track with invalid editRate");
    Metadata::Structural::Sequence * sequence = track->sequence();
    THROW_UNLESS(InvalidElement, sequence != 0, "Sequence not present in track.");
    // The track may not claim more than the container holds.
    if (sequence->duration() != nullptr && impl_->duration >= 0 && positiveRational(trackEditRate))
    {
        int64 const sourcePackageDuration = sequence->duration()->value();
        Templates::Rational<int64> units = editUnitsConverter(Templates::Rational<int64>(impl_->duration),
                                                              impl_->editRate.value(), trackEditRate->value());
        int64 const trackDuration = (units.numerator() + units.denominator() - 1) / units.denominator();
        THROW_UNLESS(InvalidElement, (sourcePackageDuration - trackDuration) < 1, "duration with bad value.");
    }
    THROW_UNLESS(NotFound, trackNumber != 0, "Track Number not found.");
    unsigned int const trackNumberValue = trackNumber;
    THROW_UNLESS(NotFound, impl_ -> seeker_ -> trackNumberExists (trackNumberValue),
                 "Track Number not found in this content Storage.");
    Templates::Rational<int> const rate = editRate.value();
    if (impl_->clipWrapped)
        return Templates::auto_ptr<ElementReader>(
            new ElementEssenceReaderClipWrap(*this, trackNumber, startPosition, duration, rate));
    return Templates::auto_ptr<ElementReader>(
        new ElementEssenceReader(*this, trackNumber, startPosition, duration, rate));
}

unsigned int ContentStorageReader::temporalReordering()
{
    if (impl_->reordering < 0)
    {
        int64 largest = 0;
        if (impl_->editUnitByteCount == 0)
        {
            DataIO::RandomAccessDataSource & source = impl_->reader.source();
            uint64 const before = source.absoluteOffset();
            IndexTableSegmentPtr segment = impl_->seeker_->indexProvider().segment(0);
            if (source.absoluteOffset() != before)
                source.seek(before);
            if (segment.get() != nullptr)
                for (unsigned int i = 0; i < segment->indexEntryCount(); ++i)
                {
                    int64 const offset = segment->indexEntry(i).temporalOffset();
                    if (offset > largest)
                        largest = offset;
                    if (-offset > largest)
                        largest = -offset;
                }
        }
        impl_->reordering = largest;
    }
    return (unsigned int)impl_->reordering;
}

unsigned int ContentStorageReader::trackNumber2TrackID(unsigned int trackNumber)
{
    Templates::map<unsigned int, unsigned int>::const_iterator it =
        impl_->metadataInfo_.trackNumber2TrackID.find(trackNumber);
    if (it == impl_->metadataInfo_.trackNumber2TrackID.end())
        for (it = impl_->metadataInfo_.trackNumber2TrackID.begin();
             it != impl_->metadataInfo_.trackNumber2TrackID.end(); ++it)
            if ((it->first & 0xFF00FFFFu) == (trackNumber & 0xFF00FFFFu))
                break;
    THROW_UNLESS(NotFound, it != impl_ -> metadataInfo_.trackNumber2TrackID.end (),
                 "TrackNumber has no trackID correnpondent.");
    return it->second;
}

void ContentStorageReader::registerKLVPacketListener(SystemItemKLVPacketListener * listener)
{
    THROW_UNLESS(OperationNotAllowed, impl_ -> systemItemListener_ == 0,
                 "Only one SystemItemKLVPacketListener can be registered.");
    impl_->systemItemListener_ = listener;
}

void ContentStorageReader::unregisterKLVPacketListener()
{
    impl_->systemItemListener_ = nullptr;
}

void ContentStorageReader::refreshSource()
{
    impl_->measureContainer(impl_->seeker_->indexProvider());
    impl_->seeker_->containerSize(impl_->containerSize, impl_->duration);
    if (impl_->elementNumbers.empty())
    {
        // Nothing of the container had been written: look at its first content package again,
        // keeping the position of the reader.
        Partition * current = impl_->current;
        uint64 const streamOffset = impl_->streamOffset;
        int64 const editUnit = impl_->editUnit;
        uint64 const position = impl_->position;
        impl_->readFirstContentPackage();
        impl_->seeker_->elements(impl_->elementNumbers);
        impl_->current = current;
        impl_->streamOffset = streamOffset;
        impl_->editUnit = editUnit;
        impl_->position = position;
    }
}

void ContentStorageReader::setContentStorageProfile(Templates::SharedPtr<ContentStorageProfile> profile)
{
    Templates::SharedPtr<ContentStorageProfile> previous = impl_->profile;
    impl_->profile = profile;
    Templates::auto_ptr<IndexTableProvider> indexProvider;
    Templates::auto_ptr<PartitionProvider> partitionProvider;
    try
    {
        impl_->chooseProviders(indexProvider, partitionProvider);
    }
    catch (...)
    {
        impl_->profile = previous;
        throw;
    }
    impl_->seeker_->indexProvider(std::move(indexProvider));
    impl_->seeker_->partitionProvider(std::move(partitionProvider));
}

bool ContentStorageReader::clipWrapped() const
{
    return impl_->clipWrapped;
}

unsigned int ContentStorageReader::bodySID() const
{
    return impl_->bodySID;
}

Metadata::Structural::EssenceContainerData & ContentStorageReader::essenceContainerData()
{
    return impl_->essenceContainerData;
}

Reader & ContentStorageReader::reader()
{
    return impl_->reader;
}

Seeker & ContentStorageReader::seeker()
{
    return *impl_->seeker_;
}

KLV::Key const & ContentStorageReader::firstElementKey() const
{
    return impl_->firstElementKey;
}
} // namespace MXFIO
} // namespace Vellum
