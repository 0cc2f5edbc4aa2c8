#pragma once
// Follows one element (one track number) of one essence container through a clip, edit unit by
// edit unit. Made by ContentStorageReader::elementReader; frame wrapped (interleaved) and clip
// wrapped essence have their own readers.

#include "KLV/Key.h"
#include "KLV/Packet.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace MXFIO
{
// What an element reader fills for one edit unit.
struct ElementData
{
    VELLUM_CLASS_ALLOCATION

    ElementData() { reset(); }
    // Frees the packet and zeroes every field; flags become 0x80 (random access) and units 1.
    void reset()
    {
        packet.reset();
        samples = 0;
        preCharge = 0;
        temporalOffset = 0;
        keyFrameOffset = 0;
        flags = 0x80;
        units = 1;
        hasIndexInfo = false;
    }

    // The element as it stands in the file; null when there is none (end of clip or container).
    Templates::auto_ptr<KLV::Packet> packet;
    // The samples of the unit at the track's edit rate (1 for a frame; samples for sound at the
    // sampling rate).
    int64 samples;
    // How many of those samples lie before the position of the last seek (decoder warm-up).
    int64 preCharge;
    signed char temporalOffset;
    signed char keyFrameOffset;
    unsigned char flags;
    // The number of edit units the packet holds: 1, or, for a wrapped clip whose units cannot be
    // told apart (no index, no constant size), those left in the clip, at most 255 (samples then
    // holds the whole count).
    unsigned char units;
    bool hasIndexInfo;
};

class ElementReader
{
public:
    VELLUM_CLASS_ALLOCATION

    virtual ~ElementReader() {}
    // Seeks to a position in the clip, in the element's edit units. False when the file cannot
    // be positioned there; the reader then stands where the container reader stands.
    virtual bool seek(int64 editUnit) = 0;
    // As seek, with a position already in the container's edit units.
    virtual bool seekContainerUnits(int64 editUnit) = 0;
    // Seeks straight to an absolute edit unit of the container.
    virtual bool seekAbsolute(int64 containerEditUnit) = 0;
    // Forgets what was read ahead for the current position.
    virtual void flush() = 0;
    virtual void rewind() = 0;
    // Reads the next edit unit of the element into data; false (no packet) at the end.
    virtual bool read(uint64 keySearchLimit, ElementData & data) = 0;
    // The clip's length in the element's edit units; negative when open.
    virtual int64 duration() const = 0;
    // The position of the next read in seconds from the start of the clip.
    virtual Templates::Rational<int64> position() const = 0;
    // The position of the last read in seconds.
    virtual Templates::Rational<int64> lastPosition() const = 0;
    virtual Templates::Rational<int> editRate() const = 0;
    virtual unsigned int trackNumber() const = 0;
    virtual KLV::Key const & key() const = 0;
    // The clip's start in the container (the SourceClip's StartPosition).
    virtual int64 startPosition() const = 0;
    virtual bool clipWrapped() const = 0;
};
} // namespace MXFIO
} // namespace Vellum
