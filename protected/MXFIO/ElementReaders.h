#pragma once
// The element readers that ContentStorageReader::elementReader hands out: one for frame wrapped
// (interleaved) essence, one for clip wrapped essence, over a common base that keeps the fields.

#include "MXFIO/ElementReader.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace MXFIO
{
class ContentStorageReader;
class Seeker;

// What both readers keep and answer without reading.
class BaseElementEssenceReader : public ElementReader
{
public:
    VELLUM_CLASS_ALLOCATION

    // trackNumber: the track's number as the metadata states it; startPosition: the SourceClip's
    // StartPosition and duration its Duration (negative when open), both in edit units of
    // editRate, the track's edit rate. The container's edit rate and seeker are the reader's.
    BaseElementEssenceReader(ContentStorageReader & reader, unsigned int trackNumber, int64 startPosition,
                             int64 duration, Templates::Rational<int> const & editRate);
    ~BaseElementEssenceReader() override;

    int64 duration() const override;
    Templates::Rational<int64> position() const override;
    Templates::Rational<int64> lastPosition() const override;
    Templates::Rational<int> editRate() const override;
    unsigned int trackNumber() const override;
    KLV::Key const & key() const override;
    int64 startPosition() const override;

protected:
    // The container's edit unit that holds the element's edit unit `units` (from the clip's start).
    int64 containerUnitOfClipUnit(int64 units) const;
    // The element's edit units (from the clip's start) at the start of a container edit unit.
    Templates::Rational<int64> clipUnitsOfContainerUnit(int64 containerUnit) const;
    // Whether the container edit unit lies at or beyond the end of a closed clip.
    bool pastClipEnd(int64 containerUnit) const;
    // The element's samples that the container edit unit holds.
    int64 samplesOf(int64 containerUnit) const;
    // The container edit unit to go to so that the unit displayed at containerUnit comes out
    // (pictures only: other elements are not reordered); it becomes the first unit of the seek.
    int64 reorderedTarget(int64 containerUnit);
    // Notes the container edit unit to read next, and its position.
    void nextUnit(int64 containerUnit);
    // Fills the pre-charge and the index information of the unit read.
    void describeUnit(int64 containerUnit, ElementData & data);

    ContentStorageReader & reader_;
    Seeker & seeker_;
    // The container edit unit to read next, and its position in seconds from the clip's start.
    int64 editUnit_;
    Templates::Rational<int64> position_;
    Templates::Rational<int64> lastPosition_;
    KLV::Key key_;
    unsigned int trackNumber_;
    Templates::Rational<int> trackEditRate_;
    Templates::Rational<int> containerEditRate_;
    // The clip's start in the track's edit units, and in the container's.
    int64 startPosition_;
    int64 startContainerUnit_;
    int64 duration_;
    // The first container edit unit at or after the last seek: units before it are pre-charge.
    int64 firstUnitAfterSeek_;
    // Edit units read before the one displayed at the seek, through temporal reordering.
    int64 delay_;
    // The container has to be positioned before the next read (after a rewind or a failure).
    bool seekPending_;
};

// Frame wrapped and other interleaved essence: one element in each content package.
class ElementEssenceReader : public BaseElementEssenceReader
{
public:
    VELLUM_CLASS_ALLOCATION

    ElementEssenceReader(ContentStorageReader & reader, unsigned int trackNumber, int64 startPosition,
                         int64 duration, Templates::Rational<int> const & editRate);
    ~ElementEssenceReader() override;

    bool seek(int64 editUnit) override;
    bool seekContainerUnits(int64 editUnit) override;
    bool seekAbsolute(int64 containerEditUnit) override;
    void flush() override;
    void rewind() override;
    bool read(uint64 keySearchLimit, ElementData & data) override;
    bool clipWrapped() const override;

private:
    // Positions the container at the element in the edit unit; on failure takes the container's
    // position.
    bool goTo(int64 containerUnit);
    void takeReaderPosition();
    // The container edit unit whose content package the reader stands in, or before.
    int64 readerContentPackage() const;
    // Whether the container stands at or before this element of the edit unit.
    bool readerReady(int64 containerUnit) const;
};

// Clip wrapped essence: the clip is one KLV packet; each edit unit is handed out as a packet over
// its own bytes inside that value.
class ElementEssenceReaderClipWrap : public BaseElementEssenceReader
{
public:
    VELLUM_CLASS_ALLOCATION

    ElementEssenceReaderClipWrap(ContentStorageReader & reader, unsigned int trackNumber, int64 startPosition,
                                 int64 duration, Templates::Rational<int> const & editRate);
    ~ElementEssenceReaderClipWrap() override;

    bool seek(int64 editUnit) override;
    bool seekContainerUnits(int64 editUnit) override;
    bool seekAbsolute(int64 containerEditUnit) override;
    void flush() override;
    void rewind() override;
    bool read(uint64 keySearchLimit, ElementData & data) override;
    bool clipWrapped() const override;

private:
    // Finds the clip's KLV packet and notes where its value lies; false when there is none.
    bool locateClip(uint64 keySearchLimit);
    // The bytes of a container edit unit inside the value; false when they are not known.
    bool unitBytes(int64 containerUnit, uint64 & offset, uint64 & length);
    bool goTo(int64 containerUnit);

    bool located_;
    unsigned char berLength_;
    uint64 keyAbsoluteOffset_;
    uint64 valueAbsoluteOffset_;
    uint64 valueLength_;
    // The stream offset that the index gives for the clip's first edit unit.
    bool baseKnown_;
    uint64 baseStreamOffset_;
    // The key of the clip's packet as it stands in the file.
    KLV::Key clipKey_;
};
} // namespace MXFIO
} // namespace Vellum
