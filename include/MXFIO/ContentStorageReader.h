#pragma once
// Reads one essence container, named by its EssenceContainerData: follows its body SID across
// partitions, delivers its KLV packets in file order, keeps the position in edit units and seeks
// with a Seeker.

#include "KLV/Packet.h"
#include "Metadata/Structural/EssenceContainerData.h"
#include "MXFIO/ContentStorageProfile.h"
#include "MXFIO/ElementReader.h"
#include "MXFIO/SystemItemKLVPacketListener.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"
#include "Types/Rational.h"

namespace Vellum
{
namespace MXFIO
{
class Partition;
class Reader;
class Seeker;

class ContentStorageReader
{
public:
    VELLUM_CLASS_ALLOCATION

    // growing: the file may still grow (streaming providers); sequential: the container is read
    // in file order only, so no index is loaded ahead. The profile (null for the automatic one)
    // may override the providers chosen.
    //
    // The providers, where the profile leaves the choice to the reader:
    // - index: none without an index SID or when sequential; the streaming provider for a growing
    //   file; the whole-file parse when the file has a RIP (from its end or through the footer);
    //   otherwise the parse on request, which walks the index partitions forward as needed.
    // - partitions: the streaming provider for a growing file; with a Reader2 and a RIP, the fixed
    //   edit unit count provider when the profile states a count, else the estimating provider
    //   when the RIP lists more than one partition of the body SID; otherwise the basic provider.
    // A choice that needs a Reader2 falls back to the walking providers over a plain Reader.
    // A constant edit unit size stated by the first index segment is taken once, at construction;
    // seeks then need no index.
    ContentStorageReader(Reader & reader, Metadata::Structural::EssenceContainerData & essenceContainerData,
                         bool growing, bool sequential, Templates::SharedPtr<ContentStorageProfile> profile);
    ~ContentStorageReader();
    ContentStorageReader(ContentStorageReader const &) = delete;
    ContentStorageReader & operator=(ContentStorageReader const &) = delete;

    // Positions the container at the start of an edit unit (of the container; 0 for clip wrapped
    // essence). False for a negative unit, one at or beyond a known duration, or one the seeker
    // cannot place; the position is then kept.
    bool seek(int64 editUnit);
    // Positions at the element of the track number in the edit unit.
    bool fineSeek(int64 editUnit, unsigned int trackNumber);
    // The edit unit reached: the number of content packages started so far since the last seek.
    int64 editUnit() const;
    // The element reached in the edit unit.
    unsigned int nextElementIndex() const;
    // The next packet of the container, across its partitions; null at the end.
    Templates::auto_ptr<KLV::Packet> nextKLV(uint64 keySearchLimit);
    // Gives a system item to the listener that wants it, or skips the packet's value.
    void discardKLVPacket(Templates::auto_ptr<KLV::Packet> packet);

    // In edit units of the container; negative when unknown.
    int64 duration() const;
    // The edit units that the index covers.
    uint64 indexableDuration() const;
    Types::Rational editRate();
    // 0 when not constant.
    unsigned int editUnitByteCount() const;
    // The track numbers of the container's elements, in content package order.
    Templates::vector<unsigned int> elements();
    Templates::auto_ptr<ElementReader> elementReader(unsigned int trackNumber, int64 startPosition, int64 duration,
                                                     Types::Rational const & editRate);
    // The largest temporal reordering of the index (0 without an index).
    unsigned int temporalReordering();
    unsigned int trackNumber2TrackID(unsigned int trackNumber);
    void registerKLVPacketListener(SystemItemKLVPacketListener * listener);
    void unregisterKLVPacketListener();
    // Takes note of a file that has grown since the providers last looked.
    void refreshSource();
    void setContentStorageProfile(Templates::SharedPtr<ContentStorageProfile> profile);

    bool clipWrapped() const;
    unsigned int bodySID() const;
    Metadata::Structural::EssenceContainerData & essenceContainerData();
    Reader & reader();
    Seeker & seeker();
    // The key of the first element of a content package.
    KLV::Key const & firstElementKey() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
