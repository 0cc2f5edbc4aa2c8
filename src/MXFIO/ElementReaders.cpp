#include "MXFIO/ElementReaders.h"

#include <utility>

#include "DataIO/DataSource.h"
#include "MXFIO/ContentStorageReader.h"
#include "MXFIO/EssenceConversions.h"
#include "MXFIO/Reader.h"
#include "MXFIO/Seeker.h"
#include "Types/CompareMasked.h"
#include "Types/Rational.h"

namespace Vellum
{
namespace MXFIO
{
namespace
{
// Element keys agree but for the element count (byte 13) and the low bits of bytes 8 and 9.
unsigned char const elementKeyMaskBytes[16] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                               0xFC, 0xF8, 0xFF, 0xFF, 0xFF, 0x00, 0xFF, 0xFF};

bool sameElement(KLV::Key const & a, KLV::Key const & b)
{
    return Types::compareMasked(a.rawBuffer(), b.rawBuffer(), elementKeyMaskBytes, KLV::Key::SIZE);
}

// Only pictures are stored out of display order; sound and data follow the content packages.
bool isPictureElement(unsigned int trackNumber)
{
    unsigned int itemType = trackNumber >> 24;
    return itemType == 0x15 || itemType == 0x05;
}

// The search limit for the clip's packet when a seek, not a read, has to find it.
uint64 const clipSearchLimit = 4096;

Templates::Rational<int> rateOrOne(Templates::Rational<int> const & rate)
{
    // A rate of 0 or below would make every conversion meaningless; the caller has checked the
    // metadata already, so this only keeps the arithmetic defined.
    if (rate.numerator() <= 0 || rate.denominator() <= 0)
        return Templates::Rational<int>(1);
    return rate;
}
} // namespace

// ---------------------------------------------------------------------------------------------
// BaseElementEssenceReader

BaseElementEssenceReader::BaseElementEssenceReader(ContentStorageReader & reader, unsigned int trackNumber,
                                                   int64 startPosition, int64 duration,
                                                   Templates::Rational<int> const & editRate)
    : reader_(reader), seeker_(reader.seeker()), editUnit_(0), position_(0), lastPosition_(0),
      key_(trackNumber2Key(trackNumber)), trackNumber_(trackNumber), trackEditRate_(rateOrOne(editRate)),
      containerEditRate_(rateOrOne(reader.editRate().value())), startPosition_(startPosition < 0 ? 0 : startPosition),
      startContainerUnit_(0), duration_(duration), firstUnitAfterSeek_(0), delay_(0), seekPending_(true)
{
    startContainerUnit_ =
        Templates::floorOf(editUnitsConverter(Templates::Rational<int64>(startPosition_), trackEditRate_, containerEditRate_));
    editUnit_ = startContainerUnit_;
    firstUnitAfterSeek_ = startContainerUnit_;
}

BaseElementEssenceReader::~BaseElementEssenceReader() {}

int64 BaseElementEssenceReader::duration() const { return duration_; }

Templates::Rational<int64> BaseElementEssenceReader::position() const { return position_; }

Templates::Rational<int64> BaseElementEssenceReader::lastPosition() const { return lastPosition_; }

Templates::Rational<int> BaseElementEssenceReader::editRate() const { return trackEditRate_; }

unsigned int BaseElementEssenceReader::trackNumber() const { return trackNumber_; }

KLV::Key const & BaseElementEssenceReader::key() const { return key_; }

int64 BaseElementEssenceReader::startPosition() const { return startPosition_; }

int64 BaseElementEssenceReader::containerUnitOfClipUnit(int64 units) const
{
    return Templates::floorOf(
        editUnitsConverter(Templates::Rational<int64>(units) += startPosition_, trackEditRate_, containerEditRate_));
}

Templates::Rational<int64> BaseElementEssenceReader::clipUnitsOfContainerUnit(int64 containerUnit) const
{
    Templates::Rational<int64> units =
        editUnitsConverter(Templates::Rational<int64>(containerUnit), containerEditRate_, trackEditRate_);
    units -= startPosition_;
    return units;
}

bool BaseElementEssenceReader::pastClipEnd(int64 containerUnit) const
{
    return duration_ >= 0 && clipUnitsOfContainerUnit(containerUnit) >= duration_;
}

int64 BaseElementEssenceReader::samplesOf(int64 containerUnit) const
{
    int64 begin = Templates::floorOf(clipUnitsOfContainerUnit(containerUnit));
    int64 end = Templates::floorOf(clipUnitsOfContainerUnit(containerUnit + 1));
    if (duration_ >= 0 && end > duration_)
        end = duration_;
    if (begin < 0)
        begin = 0;
    return end > begin ? end - begin : 0;
}

int64 BaseElementEssenceReader::reorderedTarget(int64 containerUnit)
{
    int64 target = containerUnit;
    if (isPictureElement(trackNumber_))
        target = seeker_.reorderedEditUnit(containerUnit);
    if (target < 0)
        target = 0;
    firstUnitAfterSeek_ = target;
    return target;
}

void BaseElementEssenceReader::nextUnit(int64 containerUnit)
{
    editUnit_ = containerUnit;
    position_ = editUnits2Seconds(Templates::Rational<int64>(containerUnit - startContainerUnit_), containerEditRate_);
}

void BaseElementEssenceReader::describeUnit(int64 containerUnit, ElementData & data)
{
    data.samples = samplesOf(containerUnit);
    delay_ = containerUnit - firstUnitAfterSeek_;
    if (delay_ < 0)
    {
        // Read only so that the unit at the seek can be decoded.
        int64 ahead = Templates::floorOf(clipUnitsOfContainerUnit(firstUnitAfterSeek_)) - Templates::floorOf(clipUnitsOfContainerUnit(containerUnit));
        data.preCharge = ahead < data.samples ? ahead : data.samples;
        if (data.preCharge < 0)
            data.preCharge = 0;
    }
    Seeker::EditUnitInfo info;
    if (seeker_.hasIndex() && seeker_.editUnitInfo(containerUnit, info))
    {
        data.temporalOffset = info.temporalOffset;
        data.keyFrameOffset = info.keyFrameOffset;
        data.flags = info.flags;
        data.hasIndexInfo = true;
    }
}

// ---------------------------------------------------------------------------------------------
// ElementEssenceReader

ElementEssenceReader::ElementEssenceReader(ContentStorageReader & reader, unsigned int trackNumber, int64 startPosition,
                                           int64 duration, Templates::Rational<int> const & editRate)
    : BaseElementEssenceReader(reader, trackNumber, startPosition, duration, editRate)
{
}

ElementEssenceReader::~ElementEssenceReader() {}

bool ElementEssenceReader::clipWrapped() const { return false; }

int64 ElementEssenceReader::readerContentPackage() const
{
    int64 unit = reader_.editUnit();
    // Past the first element, the reader stands inside the package it counted last.
    if (reader_.nextElementIndex() > 0)
        --unit;
    return unit;
}

bool ElementEssenceReader::readerReady(int64 containerUnit) const
{
    if (seekPending_)
        return false;
    unsigned int next = reader_.nextElementIndex();
    int64 package = readerContentPackage();
    bool known = seeker_.trackNumberExists(trackNumber_);
    if (package == containerUnit)
    {
        if (next == 0)
            return true;
        return known && next <= seeker_.elementIndex(trackNumber_);
    }
    // Behind this element of the package before: the next one of the element is the one wanted.
    return package + 1 == containerUnit && known && next > seeker_.elementIndex(trackNumber_);
}

void ElementEssenceReader::takeReaderPosition()
{
    int64 unit = readerContentPackage();
    nextUnit(unit < 0 ? 0 : unit);
    seekPending_ = true;
}

bool ElementEssenceReader::goTo(int64 containerUnit)
{
    if (containerUnit < 0)
    {
        takeReaderPosition();
        return false;
    }
    bool positioned = seeker_.trackNumberExists(trackNumber_) && reader_.fineSeek(containerUnit, trackNumber_);
    if (!positioned)
        positioned = reader_.seek(containerUnit);
    if (!positioned)
    {
        takeReaderPosition();
        return false;
    }
    nextUnit(containerUnit);
    seekPending_ = false;
    return true;
}

bool ElementEssenceReader::seek(int64 editUnit)
{
    if (editUnit < 0 || (duration_ >= 0 && editUnit >= duration_))
    {
        takeReaderPosition();
        return false;
    }
    return goTo(reorderedTarget(containerUnitOfClipUnit(editUnit)));
}

bool ElementEssenceReader::seekContainerUnits(int64 editUnit)
{
    if (editUnit < 0)
    {
        takeReaderPosition();
        return false;
    }
    int64 unit = editUnit + startContainerUnit_;
    if (pastClipEnd(unit))
    {
        takeReaderPosition();
        return false;
    }
    return goTo(reorderedTarget(unit));
}

bool ElementEssenceReader::seekAbsolute(int64 containerEditUnit)
{
    firstUnitAfterSeek_ = containerEditUnit;
    return goTo(containerEditUnit);
}

void ElementEssenceReader::flush()
{
    // Nothing is read ahead: each read takes its packet from the container.
}

void ElementEssenceReader::rewind()
{
    nextUnit(startContainerUnit_);
    lastPosition_ = 0;
    firstUnitAfterSeek_ = startContainerUnit_;
    delay_ = 0;
    seekPending_ = true;
}

bool ElementEssenceReader::read(uint64 keySearchLimit, ElementData & data)
{
    data.reset();
    int64 wanted = editUnit_;
    if (pastClipEnd(wanted))
        return false;
    if (!readerReady(wanted))
    {
        bool positioned = seeker_.trackNumberExists(trackNumber_) && reader_.fineSeek(wanted, trackNumber_);
        if (!positioned)
            positioned = reader_.seek(wanted);
        if (!positioned)
        {
            takeReaderPosition();
            return false;
        }
        seekPending_ = false;
    }
    Templates::auto_ptr<KLV::Packet> packet = reader_.nextKLV(keySearchLimit);
    while (packet.get() != 0 && !sameElement(packet->key(), key_))
    {
        reader_.discardKLVPacket(std::move(packet));
        packet = reader_.nextKLV(keySearchLimit);
    }
    if (packet.get() == 0)
    {
        // The end of the container: the next read has to find its place again.
        seekPending_ = true;
        return false;
    }
    data.packet = std::move(packet);
    describeUnit(wanted, data);
    lastPosition_ = position_;
    nextUnit(wanted + 1);
    return true;
}

// ---------------------------------------------------------------------------------------------
// ElementEssenceReaderClipWrap

ElementEssenceReaderClipWrap::ElementEssenceReaderClipWrap(ContentStorageReader & reader, unsigned int trackNumber,
                                                           int64 startPosition, int64 duration,
                                                           Templates::Rational<int> const & editRate)
    : BaseElementEssenceReader(reader, trackNumber, startPosition, duration, editRate), located_(false),
      berLength_(0), keyAbsoluteOffset_(0), valueAbsoluteOffset_(0), valueLength_(0), baseKnown_(false),
      baseStreamOffset_(0), clipKey_(trackNumber2Key(trackNumber))
{
}

ElementEssenceReaderClipWrap::~ElementEssenceReaderClipWrap() {}

bool ElementEssenceReaderClipWrap::clipWrapped() const { return true; }

bool ElementEssenceReaderClipWrap::locateClip(uint64 keySearchLimit)
{
    if (located_)
        return true;
    // For clip wrapped essence the container's only edit unit is the clip itself.
    if (!reader_.seek(0))
        return false;
    Templates::auto_ptr<KLV::Packet> packet = reader_.nextKLV(keySearchLimit);
    while (packet.get() != 0 && !sameElement(packet->key(), key_))
    {
        reader_.discardKLVPacket(std::move(packet));
        packet = reader_.nextKLV(keySearchLimit);
    }
    if (packet.get() == 0)
        return false;
    clipKey_ = packet->key();
    berLength_ = packet->berLength();
    keyAbsoluteOffset_ = packet->keyAbsoluteOffset();
    valueAbsoluteOffset_ = keyAbsoluteOffset_ + KLV::Key::SIZE + berLength_;
    valueLength_ = packet->length();
    // A value that the file cuts short is served as far as it goes.
    DataIO::RandomAccessDataSource & source = reader_.reader().source();
    uint64 end = source.absoluteOffset() + source.remaining();
    if (end < valueAbsoluteOffset_)
        valueLength_ = 0;
    else if (end - valueAbsoluteOffset_ < valueLength_)
        valueLength_ = end - valueAbsoluteOffset_;
    located_ = true;
    return true;
}

bool ElementEssenceReaderClipWrap::unitBytes(int64 containerUnit, uint64 & offset, uint64 & length)
{
    if (containerUnit < 0)
        return false;
    uint64 unit = static_cast<uint64>(containerUnit);
    unsigned int byteCount = reader_.editUnitByteCount();
    uint64 begin = 0;
    uint64 end = valueLength_;
    if (byteCount != 0)
    {
        if (unit > valueLength_ / byteCount)
            return false;
        begin = unit * byteCount;
        end = begin + byteCount;
    }
    else
    {
        Seeker::EditUnitInfo info;
        if (!baseKnown_)
        {
            if (!seeker_.hasIndex() || !seeker_.editUnitInfo(0, info))
            {
                // No index: the clip can only be handed out whole.
                if (unit != 0)
                    return false;
                offset = 0;
                length = valueLength_;
                return true;
            }
            baseStreamOffset_ = info.streamOffset;
            baseKnown_ = true;
        }
        if (!seeker_.editUnitInfo(containerUnit, info) || info.streamOffset < baseStreamOffset_)
            return false;
        begin = info.streamOffset - baseStreamOffset_;
        if (seeker_.editUnitInfo(containerUnit + 1, info) && info.streamOffset >= baseStreamOffset_)
            end = info.streamOffset - baseStreamOffset_;
    }
    if (end > valueLength_)
        end = valueLength_;
    if (begin >= end)
        return false;
    offset = begin;
    length = end - begin;
    return true;
}

bool ElementEssenceReaderClipWrap::goTo(int64 containerUnit)
{
    uint64 offset = 0;
    uint64 length = 0;
    if (containerUnit < 0 || pastClipEnd(containerUnit) || !locateClip(clipSearchLimit) ||
        !unitBytes(containerUnit, offset, length))
        return false;
    nextUnit(containerUnit);
    return true;
}

bool ElementEssenceReaderClipWrap::seek(int64 editUnit)
{
    if (editUnit < 0)
        return false;
    return goTo(reorderedTarget(containerUnitOfClipUnit(editUnit)));
}

bool ElementEssenceReaderClipWrap::seekContainerUnits(int64 editUnit)
{
    if (editUnit < 0)
        return false;
    int64 unit = editUnit + startContainerUnit_;
    return goTo(reorderedTarget(unit));
}

bool ElementEssenceReaderClipWrap::seekAbsolute(int64 containerEditUnit)
{
    firstUnitAfterSeek_ = containerEditUnit;
    return goTo(containerEditUnit);
}

void ElementEssenceReaderClipWrap::flush()
{
    // Each read positions the source itself; there is nothing held for the current position.
}

void ElementEssenceReaderClipWrap::rewind()
{
    nextUnit(startContainerUnit_);
    lastPosition_ = 0;
    firstUnitAfterSeek_ = startContainerUnit_;
    delay_ = 0;
}

bool ElementEssenceReaderClipWrap::read(uint64 keySearchLimit, ElementData & data)
{
    data.reset();
    int64 wanted = editUnit_;
    if (pastClipEnd(wanted) || !locateClip(keySearchLimit < clipSearchLimit ? clipSearchLimit : keySearchLimit))
        return false;
    uint64 offset = 0;
    uint64 length = 0;
    if (!unitBytes(wanted, offset, length))
        return false;
    DataIO::RandomAccessDataSource & source = reader_.reader().source();
    if (source.seek(valueAbsoluteOffset_ + offset) != valueAbsoluteOffset_ + offset)
        return false;
    data.packet.reset(new KLV::Packet(clipKey_, berLength_, length, source, keyAbsoluteOffset_));
    describeUnit(wanted, data);
    if (length == valueLength_ && offset == 0 && baseKnown_ == false && reader_.editUnitByteCount() == 0)
    {
        // The whole clip in one packet: it holds every unit that is left.
        int64 left = duration_ >= 0 ? duration_ - static_cast<int64>(Templates::floorOf(clipUnitsOfContainerUnit(wanted))) : 1;
        if (left > 1)
        {
            data.samples = left;
            data.units = static_cast<unsigned char>(left > 255 ? 255 : left);
            lastPosition_ = position_;
            nextUnit(containerUnitOfClipUnit(duration_));
            return true;
        }
    }
    lastPosition_ = position_;
    nextUnit(wanted + 1);
    return true;
}
} // namespace MXFIO
} // namespace Vellum
