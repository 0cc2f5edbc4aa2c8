#pragma once
// One index table segment: where each edit unit of a span of an essence container lies. On the
// wire one KLV packet whose value is a local set with 2-byte tags and 2-byte lengths.

#include "DataIO/DataSink.h"
#include "IndexTables/DeltaEntryArray.h"
#include "IndexTables/IndexEntryArray.h"
#include "IndexTables/IndexTableSegmentListener.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"
#include "Types/Integers.h"
#include "Types/LocalTag.h"
#include "Types/Rational.h"
#include "Types/UUID.h"
#include "Types/Unknown.h"

namespace Vellum
{
namespace KLV
{
class Key;
class Packet;
}

namespace IndexTables
{
class IndexTableSegment
{
public:
    VELLUM_CLASS_ALLOCATION

    // An item of the set that the segment does not know, kept as it was read.
    struct UnknownElement
    {
        Types::LocalTag tag;
        Templates::SharedPtr<Types::Unknown> value;
    };
    typedef Templates::vector<UnknownElement> UnknownElements;

    // A new, empty segment: a fresh instance UID, edit rate 0/1, start and duration 0, no
    // optional item set and no arrays. `berLength` is the size of the length field that
    // serialize writes (1 to 9; the library writes 4).
    explicit IndexTableSegment(unsigned char berLength = 4);
    // Reads a segment packet under either key. The listener, if any, is not owned.
    explicit IndexTableSegment(KLV::Packet & packet, IndexTableSegmentListener * listener = nullptr);
    virtual ~IndexTableSegment();
    IndexTableSegment(IndexTableSegment const &) = delete;
    IndexTableSegment & operator=(IndexTableSegment const &) = delete;

    // The key under which segments are written: 06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00.
    static KLV::Key const & key();
    // True for that key, and for the older one ending 10.00.00 that is accepted on reading.
    static bool isSegmentKey(KLV::Key const & key);

    Types::UUID const & instanceUID() const;
    void instanceUID(Types::UUID const & uid);

    Types::Rational const & indexEditRate() const;
    void indexEditRate(Types::Rational const & rate);
    Types::Position const & indexStartPosition() const;
    void indexStartPosition(Types::Position const & position);
    void indexStartPosition(int64 position);
    // 0 for a segment that is still open.
    Types::Length const & indexDuration() const;
    void indexDuration(Types::Length const & duration);
    void indexDuration(int64 duration);
    Types::UInt32 const & bodySID() const;
    void bodySID(unsigned int sid);

    // The optional items: null until set.
    Types::UInt32 const * editUnitByteCount() const;
    void editUnitByteCount(unsigned int count);
    void resetEditUnitByteCount();
    Types::UInt32 const * indexSID() const;
    void indexSID(unsigned int sid);
    void resetIndexSID();
    // Both refuse with InvalidIndexSegment while an index entry array exists, even an empty one:
    // the size of its entries hangs on them (resetIndexEntryArray clears the way).
    Types::UInt8 const * sliceCount() const;
    void sliceCount(unsigned char count);
    Types::UInt8 const * posTableCount() const;
    void posTableCount(unsigned char count);

    // Makes the array on first use. A first index entry must have as many slice offsets as the
    // SliceCount and as many position table entries as the PosTableCount (InvalidElement).
    void addDeltaEntry(unsigned int position, DeltaEntry const & entry);
    void addIndexEntry(unsigned int position, IndexEntry const & entry);
    // An absent array throws IndexOutOfBounds. The array stays when its last entry goes.
    void removeDeltaEntry(unsigned int position);
    void removeIndexEntry(unsigned int position);
    // A position out of range, or an absent array, throws IndexOutOfBounds.
    DeltaEntry const & deltaEntry(unsigned int position) const;
    DeltaEntry & deltaEntry(unsigned int position);
    IndexEntry const & indexEntry(unsigned int position) const;
    IndexEntry & indexEntry(unsigned int position);
    // 0 for an absent array.
    unsigned int deltaEntryCount() const;
    unsigned int indexEntryCount() const;
    // Null when absent.
    DeltaEntryArray const * deltaEntryArray() const;
    DeltaEntryArray * deltaEntryArray();
    IndexEntryArray const * indexEntryArray() const;
    IndexEntryArray * indexEntryArray();
    // Delete the array.
    void resetDeltaEntryArray();
    void resetIndexEntryArray();

    // Items of unknown tags, in file order. They are not written.
    UnknownElements const & unknownElements() const;
    // The size of the length field, as read or as given.
    unsigned char berLength() const;

    IndexTableSegmentListener * listener() const;
    void listener(IndexTableSegmentListener * listener);

    // Key, length and the known items in their fixed order, under the current key.
    void serialize(DataIO::DataSink & sink) const;
    // 16 + berLength() + the size of the items.
    virtual uint64 serializedSize() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace IndexTables
} // namespace Vellum
