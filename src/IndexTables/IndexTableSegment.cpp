#include "IndexTables/IndexTableSegment.h"

#include <cstring>

#include "ByteCoders/BER.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableLocalTag.h"
#include "KLV/Key.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "Types/Factories/BaseTypeFactory.h"
#include "Types/Factories/UID.h"
#include "Types/Visitors.h"
#include "Types/WireOrder.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace IndexTables
{
namespace
{
unsigned char const CURRENT_KEY[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                                       0x0d, 0x01, 0x02, 0x01, 0x01, 0x10, 0x01, 0x00};
// Accepted on reading; a segment read under it is written under the current key.
unsigned char const SECOND_KEY[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                                      0x0d, 0x01, 0x02, 0x01, 0x01, 0x10, 0x00, 0x00};

// The items that are always written, with their tags and lengths: instance UID (20), edit rate
// (12), start position (12), duration (12) and BodySID (8).
uint64 const FIXED_BODY_SIZE = 64;

// Copies a value that the type factory made into the field it was made for.
template <class T>
void assignField(void * field, Types::SimpleDataType const & made)
{
    T const * typed = Types::Visitors::getAs<T>(made);
    if (typed == nullptr)
        VELLUM_THROW(NoFactory, "No Factory for type");
    *static_cast<T *>(field) = *typed;
}

// Tag, length and the value's bytes.
unsigned char * putItem(unsigned char * out, Types::LocalTag const & tag, Types::SimpleDataType const & value)
{
    unsigned short size = value.serializedSize();
    std::memcpy(out, tag.rawBuffer(), 2);
    Types::WireOrder::store<Platform::UInt16>(out + 2, size);
    std::memcpy(out + 4, value.rawBuffer(), size);
    return out + 4 + size;
}

void putArrayItemHeader(DataIO::DataSink & sink, Types::LocalTag const & tag, uint64 size)
{
    unsigned char header[4];
    std::memcpy(header, tag.rawBuffer(), 2);
    // The length field has 16 bits: a larger array gives a corrupt item, which writers avoid by
    // keeping their segments small.
    Types::WireOrder::store<Platform::UInt16>(header + 2, static_cast<Platform::UInt16>(size & 0xFFFF));
    sink.write(header, sizeof header);
}
} // namespace

struct IndexTableSegment::Impl
{
    VELLUM_CLASS_ALLOCATION

    // Where the value of a known item goes.
    struct Field
    {
        Types::Identifiers::Identifier type;
        void * target;
        void (*assign)(void *, Types::SimpleDataType const &);
        // Set when the item is read; null for the items that are always there.
        bool * isSet;
    };
    typedef Templates::map<Types::LocalTag, Field> Fields;

    explicit Impl(unsigned char berLengthSize)
        : berLength(berLengthSize), instanceUID(Types::Factories::UID::generateUUID()), editRate(0, 1),
          startPosition(0), duration(0), editUnitByteCount(0u), editUnitByteCountSet(false), indexSID(0u),
          indexSIDSet(false), bodySID(0u), sliceCount(static_cast<unsigned char>(0)), sliceCountSet(false),
          posTableCount(static_cast<unsigned char>(0)), posTableCountSet(false), listener(nullptr)
    {
        addField<Types::UUID>(IndexTableLocalTag::instanceID(), Types::Identifiers::UUID, &instanceUID, nullptr);
        addField<Types::Rational>(IndexTableLocalTag::indexEditRate(), Types::Identifiers::Rational, &editRate,
                                  nullptr);
        addField<Types::Position>(IndexTableLocalTag::indexStartPosition(), Types::Identifiers::Position,
                                  &startPosition, nullptr);
        addField<Types::Length>(IndexTableLocalTag::indexDuration(), Types::Identifiers::Length, &duration, nullptr);
        addField<Types::UInt32>(IndexTableLocalTag::editUnitByteCount(), Types::Identifiers::UInt32,
                                &editUnitByteCount, &editUnitByteCountSet);
        addField<Types::UInt32>(IndexTableLocalTag::indexSID(), Types::Identifiers::UInt32, &indexSID, &indexSIDSet);
        addField<Types::UInt32>(IndexTableLocalTag::bodySID(), Types::Identifiers::UInt32, &bodySID, nullptr);
        addField<Types::UInt8>(IndexTableLocalTag::sliceCount(), Types::Identifiers::UInt8, &sliceCount,
                               &sliceCountSet);
        addField<Types::UInt8>(IndexTableLocalTag::posTableCount(), Types::Identifiers::UInt8, &posTableCount,
                               &posTableCountSet);
    }

    template <class T>
    void addField(Types::LocalTag const & tag, Types::Identifiers::Identifier type, T * target, bool * isSet)
    {
        Field field = {type, target, &assignField<T>, isSet};
        fields.insert(Fields::value_type(tag, field));
    }

    unsigned char currentSliceCount() const { return sliceCountSet ? sliceCount.value() : 0; }
    unsigned char currentPosTableCount() const { return posTableCountSet ? posTableCount.value() : 0; }

    // One item of a segment being read.
    void dispatch(Types::LocalTag const & tag, KLV::Value & item)
    {
        if (listener != nullptr)
            listener->itemRead(tag, item);
        if (tag == IndexTableLocalTag::deltaEntryArray())
        {
            deltaEntries.reset(new DeltaEntryArray(item));
            return;
        }
        if (tag == IndexTableLocalTag::indexEntryArray())
        {
            // The counts as they stand now: a SliceCount or PosTableCount behind the array comes
            // too late for it.
            indexEntries.reset(new IndexEntryArray(item, currentSliceCount(), currentPosTableCount()));
            return;
        }
        Fields::const_iterator found = fields.find(tag);
        if (found != fields.end())
        {
            Templates::auto_ptr<Types::SimpleDataType> made =
                Types::Factories::BaseTypeFactory::instance().create(item, found->second.type);
            found->second.assign(found->second.target, *made);
            if (found->second.isSet != nullptr)
                *found->second.isSet = true;
            return;
        }
        UnknownElement unknown = {tag, Templates::SharedPtr<Types::Unknown>(new Types::Unknown(item))};
        unknownElements.push_back(unknown);
    }

    uint64 bodySize() const
    {
        uint64 size = FIXED_BODY_SIZE;
        if (editUnitByteCountSet)
            size += 8;
        if (indexSIDSet)
            size += 8;
        if (sliceCountSet)
            size += 5;
        if (posTableCountSet)
            size += 5;
        if (deltaEntries)
            size += 4 + deltaEntries->serializedSize();
        if (indexEntries)
            size += 4 + indexEntries->serializedSize();
        if (size > 0xFFFFFFFFull)
            VELLUM_THROW(InvalidIndexSegment, "Type size exceeded");
        return size;
    }

    unsigned char berLength;
    Types::UUID instanceUID;
    Types::Rational editRate;
    Types::Position startPosition;
    Types::Length duration;
    Types::UInt32 editUnitByteCount;
    bool editUnitByteCountSet;
    Types::UInt32 indexSID;
    bool indexSIDSet;
    Types::UInt32 bodySID;
    Types::UInt8 sliceCount;
    bool sliceCountSet;
    Types::UInt8 posTableCount;
    bool posTableCountSet;
    Templates::auto_ptr<DeltaEntryArray> deltaEntries;
    Templates::auto_ptr<IndexEntryArray> indexEntries;
    Fields fields;
    UnknownElements unknownElements;
    IndexTableSegmentListener * listener;
};

IndexTableSegment::IndexTableSegment(unsigned char berLength) : impl_(new Impl(berLength)) {}

IndexTableSegment::IndexTableSegment(KLV::Packet & packet, IndexTableSegmentListener * listener) : impl_(nullptr)
{
    if (!isSegmentKey(packet.key()))
        VELLUM_THROW(InvalidIndexSegment, "Trying to load a Index Segment with an invalid key");
    Templates::auto_ptr<Impl> impl(new Impl(packet.berLength()));
    impl->listener = listener;
    if (packet.key().localTagFieldLength() != 2 || packet.key().lengthFieldLength() != 2)
        VELLUM_THROW(InvalidIndexSegment,
                     "Invalid MXF Index Segment set (local tag should be 2 bytes and length field 2 bytes.)");

    KLV::Value & value = packet.value();
    while (value.remaining() != 0)
    {
        Types::LocalTag tag(value);
        unsigned char lengthBytes[2];
        value.readValue(lengthBytes, sizeof lengthBytes);
        KLV::Value item(value, Types::WireOrder::load<Platform::UInt16>(lengthBytes));
        impl->dispatch(tag, item);
        uint64 left = item.remaining();
        if (left != 0)
        {
            if (left > 0xFFFFFFFFull)
                VELLUM_THROW(InvalidIndexSegment, "Type size exceeded");
            // At most 65535 bytes: the length field of an item has 16 bits.
            Templates::vector<unsigned char> rest(static_cast<std::size_t>(left));
            uint64 got = item.read(rest.data(), left);
            throw Exceptions::InvalidLength(rest.data(), got,
                                            "Invalid data size in Local Value. Value still contains data to be read.",
                                            __FILE__, __LINE__);
        }
    }
    impl_ = std::move(impl);
}

IndexTableSegment::~IndexTableSegment() = default;

KLV::Key const & IndexTableSegment::key()
{
    static KLV::Key const current(CURRENT_KEY);
    return current;
}

bool IndexTableSegment::isSegmentKey(KLV::Key const & key)
{
    return std::memcmp(key.rawBuffer(), CURRENT_KEY, 16) == 0 || std::memcmp(key.rawBuffer(), SECOND_KEY, 16) == 0;
}

Types::UUID const & IndexTableSegment::instanceUID() const { return impl_->instanceUID; }

void IndexTableSegment::instanceUID(Types::UUID const & uid) { impl_->instanceUID = uid; }

Types::Rational const & IndexTableSegment::indexEditRate() const { return impl_->editRate; }

void IndexTableSegment::indexEditRate(Types::Rational const & rate) { impl_->editRate = rate; }

Types::Position const & IndexTableSegment::indexStartPosition() const { return impl_->startPosition; }

void IndexTableSegment::indexStartPosition(Types::Position const & position) { impl_->startPosition = position; }

void IndexTableSegment::indexStartPosition(int64 position) { impl_->startPosition = Types::Position(position); }

Types::Length const & IndexTableSegment::indexDuration() const { return impl_->duration; }

void IndexTableSegment::indexDuration(Types::Length const & duration) { impl_->duration = duration; }

void IndexTableSegment::indexDuration(int64 duration) { impl_->duration = Types::Length(duration); }

Types::UInt32 const & IndexTableSegment::bodySID() const { return impl_->bodySID; }

void IndexTableSegment::bodySID(unsigned int sid) { impl_->bodySID = Types::UInt32(sid); }

Types::UInt32 const * IndexTableSegment::editUnitByteCount() const
{
    return impl_->editUnitByteCountSet ? &impl_->editUnitByteCount : nullptr;
}

void IndexTableSegment::editUnitByteCount(unsigned int count)
{
    impl_->editUnitByteCount = Types::UInt32(count);
    impl_->editUnitByteCountSet = true;
}

void IndexTableSegment::resetEditUnitByteCount() { impl_->editUnitByteCountSet = false; }

Types::UInt32 const * IndexTableSegment::indexSID() const { return impl_->indexSIDSet ? &impl_->indexSID : nullptr; }

void IndexTableSegment::indexSID(unsigned int sid)
{
    impl_->indexSID = Types::UInt32(sid);
    impl_->indexSIDSet = true;
}

void IndexTableSegment::resetIndexSID() { impl_->indexSIDSet = false; }

Types::UInt8 const * IndexTableSegment::sliceCount() const
{
    return impl_->sliceCountSet ? &impl_->sliceCount : nullptr;
}

void IndexTableSegment::sliceCount(unsigned char count)
{
    if (impl_->indexEntries)
        VELLUM_THROW(InvalidIndexSegment,
                     "IndexEntryArray still contains value. Please empty IndexEntryArray before setting sliceCount");
    impl_->sliceCount = Types::UInt8(count);
    impl_->sliceCountSet = true;
}

Types::UInt8 const * IndexTableSegment::posTableCount() const
{
    return impl_->posTableCountSet ? &impl_->posTableCount : nullptr;
}

void IndexTableSegment::posTableCount(unsigned char count)
{
    if (impl_->indexEntries)
        VELLUM_THROW(InvalidIndexSegment,
                     "IndexEntryArray still contains value. Please empty IndexEntryArray before setting posTableCount");
    impl_->posTableCount = Types::UInt8(count);
    impl_->posTableCountSet = true;
}

void IndexTableSegment::addDeltaEntry(unsigned int position, DeltaEntry const & entry)
{
    if (impl_->deltaEntries)
    {
        impl_->deltaEntries->insertAt(position, entry);
        return;
    }
    Templates::auto_ptr<DeltaEntryArray> array(new DeltaEntryArray);
    array->insertAt(position, entry);
    impl_->deltaEntries = std::move(array);
}

void IndexTableSegment::addIndexEntry(unsigned int position, IndexEntry const & entry)
{
    if (impl_->indexEntries)
    {
        impl_->indexEntries->insertAt(position, entry);
        return;
    }
    unsigned char nsl = impl_->currentSliceCount();
    unsigned char npe = impl_->currentPosTableCount();
    if (entry.sliceOffsetCount() != nsl || entry.posTableCount() != npe)
    {
        Templates::wstring text = Utils::wide("Error: NSL in segment has value: ") + Utils::decimal(unsigned(nsl)) +
                                  Utils::wide(" while IndexEntry has NSL: ") +
                                  Utils::decimal(unsigned(entry.sliceOffsetCount())) +
                                  Utils::wide("\nError: NPE in segment has value: ") + Utils::decimal(unsigned(npe)) +
                                  Utils::wide(" while IndexEntry has NPE: ") +
                                  Utils::decimal(unsigned(entry.posTableCount()));
        VELLUM_THROW(InvalidElement, text);
    }
    Templates::auto_ptr<IndexEntryArray> array(new IndexEntryArray(nsl, npe));
    array->insertAt(position, entry);
    impl_->indexEntries = std::move(array);
}

void IndexTableSegment::removeDeltaEntry(unsigned int position)
{
    if (!impl_->deltaEntries)
        VELLUM_THROW(IndexOutOfBounds, "Trying to remove element from empty deltaEntryArray.");
    impl_->deltaEntries->remove(position);
}

void IndexTableSegment::removeIndexEntry(unsigned int position)
{
    if (!impl_->indexEntries)
        VELLUM_THROW(IndexOutOfBounds, "Trying to remove element from empty indexEntryArray.");
    impl_->indexEntries->remove(position);
}

DeltaEntry const & IndexTableSegment::deltaEntry(unsigned int position) const
{
    if (!impl_->deltaEntries || position >= impl_->deltaEntries->size())
        VELLUM_THROW(IndexOutOfBounds, "IndexTableSegment::deltaEntry IndexOutOfBounds");
    DeltaEntryArray const & array = *impl_->deltaEntries;
    return array.at(position);
}

DeltaEntry & IndexTableSegment::deltaEntry(unsigned int position)
{
    if (!impl_->deltaEntries || position >= impl_->deltaEntries->size())
        VELLUM_THROW(IndexOutOfBounds, "IndexTableSegment::deltaEntry IndexOutOfBounds");
    return impl_->deltaEntries->at(position);
}

IndexEntry const & IndexTableSegment::indexEntry(unsigned int position) const
{
    if (!impl_->indexEntries || position >= impl_->indexEntries->size())
        VELLUM_THROW(IndexOutOfBounds, "IndexTableSegment::indexEntry IndexOutOfBounds");
    IndexEntryArray const & array = *impl_->indexEntries;
    return array.at(position);
}

IndexEntry & IndexTableSegment::indexEntry(unsigned int position)
{
    if (!impl_->indexEntries || position >= impl_->indexEntries->size())
        VELLUM_THROW(IndexOutOfBounds, "IndexTableSegment::indexEntry IndexOutOfBounds");
    return impl_->indexEntries->at(position);
}

unsigned int IndexTableSegment::deltaEntryCount() const
{
    return impl_->deltaEntries ? impl_->deltaEntries->size() : 0;
}

unsigned int IndexTableSegment::indexEntryCount() const
{
    return impl_->indexEntries ? impl_->indexEntries->size() : 0;
}

DeltaEntryArray const * IndexTableSegment::deltaEntryArray() const { return impl_->deltaEntries.get(); }

DeltaEntryArray * IndexTableSegment::deltaEntryArray() { return impl_->deltaEntries.get(); }

IndexEntryArray const * IndexTableSegment::indexEntryArray() const { return impl_->indexEntries.get(); }

IndexEntryArray * IndexTableSegment::indexEntryArray() { return impl_->indexEntries.get(); }

void IndexTableSegment::resetDeltaEntryArray() { impl_->deltaEntries.reset(); }

void IndexTableSegment::resetIndexEntryArray() { impl_->indexEntries.reset(); }

IndexTableSegment::UnknownElements const & IndexTableSegment::unknownElements() const
{
    return impl_->unknownElements;
}

unsigned char IndexTableSegment::berLength() const { return impl_->berLength; }

IndexTableSegmentListener * IndexTableSegment::listener() const { return impl_->listener; }

void IndexTableSegment::listener(IndexTableSegmentListener * listener) { impl_->listener = listener; }

void IndexTableSegment::serialize(DataIO::DataSink & sink) const
{
    Impl const & d = *impl_;
    uint64 body = d.bodySize();
    // The length field must hold the body: a short form up to 127, else berLength - 1 bytes.
    bool fits = d.berLength == 1 ? body <= 0x7F : d.berLength > 8 || (body >> (8 * (d.berLength - 1))) == 0;
    if (!fits)
        VELLUM_THROW(InvalidIndexSegment, "Type size exceeded");

    // Key, length and the items up to the arrays: at most 16 + 9 + 64 + 8 + 8 + 5 + 5 bytes.
    unsigned char head[128];
    std::memcpy(head, CURRENT_KEY, 16);
    ByteCoders::codeBER(body, d.berLength, head + 16);
    unsigned char * p = head + 16 + d.berLength;
    p = putItem(p, IndexTableLocalTag::instanceID(), d.instanceUID);
    p = putItem(p, IndexTableLocalTag::indexEditRate(), d.editRate);
    p = putItem(p, IndexTableLocalTag::indexStartPosition(), d.startPosition);
    p = putItem(p, IndexTableLocalTag::indexDuration(), d.duration);
    if (d.editUnitByteCountSet)
        p = putItem(p, IndexTableLocalTag::editUnitByteCount(), d.editUnitByteCount);
    if (d.indexSIDSet)
        p = putItem(p, IndexTableLocalTag::indexSID(), d.indexSID);
    p = putItem(p, IndexTableLocalTag::bodySID(), d.bodySID);
    if (d.sliceCountSet)
        p = putItem(p, IndexTableLocalTag::sliceCount(), d.sliceCount);
    if (d.posTableCountSet)
        p = putItem(p, IndexTableLocalTag::posTableCount(), d.posTableCount);
    sink.write(head, static_cast<uint64>(p - head));

    if (d.deltaEntries)
    {
        putArrayItemHeader(sink, IndexTableLocalTag::deltaEntryArray(), d.deltaEntries->serializedSize());
        d.deltaEntries->serialize(sink);
    }
    if (d.indexEntries)
    {
        putArrayItemHeader(sink, IndexTableLocalTag::indexEntryArray(), d.indexEntries->serializedSize());
        d.indexEntries->serialize(sink);
    }
}

uint64 IndexTableSegment::serializedSize() const { return 16 + impl_->berLength + impl_->bodySize(); }
} // namespace IndexTables
} // namespace Vellum
