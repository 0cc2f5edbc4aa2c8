#include "Packs/PartitionPack.h"

#include <cstring>

#include "ByteCoders/BER.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "Types/Identifiers.h"
#include "Types/Integers.h"

namespace Vellum
{
namespace Packs
{
namespace
{
// The first 13 bytes of every partition pack key.
unsigned char const PREFIX[13] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01};
// The value up to the essence container batch.
uint64 const FIXED_VALUE_SIZE = 80;

bool hasPrefix(KLV::Key const & key)
{
    return std::memcmp(key.rawBuffer(), PREFIX, sizeof PREFIX) == 0;
}

// Refuses what is not a partition pack key, in this order: prefix, kind, status.
void checkKey(KLV::Key const & key)
{
    if (!hasPrefix(key))
        throw Exceptions::InvalidKey("The key is not a PartitionPack key", __FILE__, __LINE__);
    unsigned char kind = key.rawBuffer()[13];
    if (kind < 2 || kind > 4)
        throw Exceptions::InvalidPartitionKind("The key defines an invalid partition kind", __FILE__, __LINE__);
    signed char status = static_cast<signed char>(key.rawBuffer()[14]);
    bool valid = status > 0 && (status < 5 || (status == PartitionPack::GenericStream && kind == 3));
    if (!valid)
        throw Exceptions::InvalidPartitionStatus("The key defines an invalid partition status", __FILE__, __LINE__);
}

Templates::auto_ptr<Types::Batch> copyLabels(Types::Batch const & labels)
{
    Templates::auto_ptr<Types::Batch> copy(new Types::Batch(16));
    for (unsigned int i = 0; i < labels.size(); ++i)
        copy->append(labels.at(i).clone());
    return copy;
}
} // namespace

struct PartitionPack::Impl
{
    VELLUM_CLASS_ALLOCATION

    // Reads the fields in wire order: members are initialised in the order they are declared.
    explicit Impl(KLV::Packet & packet)
        : keyValid(false), berLength(packet.berLength()), majorVersion(packet.value()), minorVersion(packet.value()),
          kagSize(packet.value()), thisPartition(packet.value()), previousPartition(packet.value()),
          footerPartition(packet.value()), headerByteCount(packet.value()), indexByteCount(packet.value()),
          indexSID(packet.value()), bodyOffset(packet.value()), bodySID(packet.value()),
          operationalPattern(packet.value()),
          essenceContainers(new Types::Batch(packet.value(), Types::Identifiers::UL)), key(packet.key())
    {
        keyValid = true;
    }

    Impl(KLV::Key const & k, unsigned int kag, uint64 self, uint64 body, Types::UniversalLabel const & pattern,
         Templates::auto_ptr<Types::Batch> containers)
        : keyValid(true), berLength(4), majorVersion(1), minorVersion(2), kagSize(kag), thisPartition(self),
          previousPartition(0), footerPartition(0), headerByteCount(0), indexByteCount(0), indexSID(0),
          bodyOffset(body), bodySID(0), operationalPattern(pattern), essenceContainers(std::move(containers)),
          key(k)
    {
        if (essenceContainers.get() == nullptr)
            essenceContainers.reset(new Types::Batch(16));
    }

    Impl(Impl const & other)
        : keyValid(other.keyValid), berLength(other.berLength), majorVersion(other.majorVersion),
          minorVersion(other.minorVersion), kagSize(other.kagSize), thisPartition(other.thisPartition),
          previousPartition(other.previousPartition), footerPartition(other.footerPartition),
          headerByteCount(other.headerByteCount), indexByteCount(other.indexByteCount), indexSID(other.indexSID),
          bodyOffset(other.bodyOffset), bodySID(other.bodySID), operationalPattern(other.operationalPattern),
          essenceContainers(copyLabels(*other.essenceContainers)), key(other.key)
    {
    }

    bool keyValid;
    unsigned char berLength;
    Types::UInt16 majorVersion;
    Types::UInt16 minorVersion;
    Types::UInt32 kagSize;
    Types::UInt64 thisPartition;
    Types::UInt64 previousPartition;
    Types::UInt64 footerPartition;
    Types::UInt64 headerByteCount;
    Types::UInt64 indexByteCount;
    Types::UInt32 indexSID;
    Types::UInt64 bodyOffset;
    Types::UInt32 bodySID;
    Types::UniversalLabel operationalPattern;
    Templates::auto_ptr<Types::Batch> essenceContainers;
    KLV::Key key;
};

PartitionPack::PartitionPack(KLV::Packet & packet) : impl_(nullptr)
{
    checkKey(packet.key());
    impl_.reset(new Impl(packet));
}

PartitionPack::PartitionPack(KLV::Key const & key, unsigned int const & kagSize, uint64 const & thisPartition,
                             uint64 const & bodyOffset, Types::UniversalLabel const & operationalPattern,
                             Templates::auto_ptr<Types::Batch> essenceContainers)
    : impl_(nullptr)
{
    checkKey(key);
    impl_.reset(new Impl(key, kagSize, thisPartition, bodyOffset, operationalPattern, std::move(essenceContainers)));
}

PartitionPack::PartitionPack(PartitionPack const & other) : impl_(new Impl(*other.impl_)) {}

PartitionPack & PartitionPack::operator=(PartitionPack const & other)
{
    if (this != &other)
    {
        impl_.reset(new Impl(*other.impl_));
    }
    return *this;
}

PartitionPack::~PartitionPack() = default;

unsigned char PartitionPack::berLength() const
{
    return impl_->berLength;
}
void PartitionPack::berLength(unsigned char length)
{
    impl_->berLength = length;
}
unsigned short PartitionPack::majorVersion() const
{
    return impl_->majorVersion.value();
}
void PartitionPack::majorVersion(unsigned short version)
{
    impl_->majorVersion = Types::UInt16(version);
}
unsigned short PartitionPack::minorVersion() const
{
    return impl_->minorVersion.value();
}
void PartitionPack::minorVersion(unsigned short version)
{
    impl_->minorVersion = Types::UInt16(version);
}
unsigned int PartitionPack::kagSize() const
{
    return impl_->kagSize.value();
}
void PartitionPack::kagSize(unsigned int size)
{
    impl_->kagSize = Types::UInt32(size);
}
uint64 PartitionPack::thisPartition() const
{
    return impl_->thisPartition.value();
}
void PartitionPack::thisPartition(uint64 offset)
{
    impl_->thisPartition = Types::UInt64(offset);
}
uint64 PartitionPack::previousPartition() const
{
    return impl_->previousPartition.value();
}
void PartitionPack::previousPartition(uint64 offset)
{
    impl_->previousPartition = Types::UInt64(offset);
}
uint64 PartitionPack::footerPartition() const
{
    return impl_->footerPartition.value();
}
void PartitionPack::footerPartition(uint64 offset)
{
    impl_->footerPartition = Types::UInt64(offset);
}
uint64 PartitionPack::headerByteCount() const
{
    return impl_->headerByteCount.value();
}
void PartitionPack::headerByteCount(uint64 count)
{
    impl_->headerByteCount = Types::UInt64(count);
}
uint64 PartitionPack::indexByteCount() const
{
    return impl_->indexByteCount.value();
}
void PartitionPack::indexByteCount(uint64 count)
{
    impl_->indexByteCount = Types::UInt64(count);
}
unsigned int PartitionPack::indexSID() const
{
    return impl_->indexSID.value();
}
void PartitionPack::indexSID(unsigned int sid)
{
    impl_->indexSID = Types::UInt32(sid);
}
uint64 PartitionPack::bodyOffset() const
{
    return impl_->bodyOffset.value();
}
void PartitionPack::bodyOffset(uint64 offset)
{
    impl_->bodyOffset = Types::UInt64(offset);
}
unsigned int PartitionPack::bodySID() const
{
    return impl_->bodySID.value();
}
void PartitionPack::bodySID(unsigned int sid)
{
    impl_->bodySID = Types::UInt32(sid);
}
Types::UniversalLabel const & PartitionPack::operationalPattern() const
{
    return impl_->operationalPattern;
}
void PartitionPack::operationalPattern(Types::UniversalLabel const & label)
{
    impl_->operationalPattern = label;
}
Types::Batch const & PartitionPack::essenceContainers() const
{
    return *impl_->essenceContainers;
}
void PartitionPack::essenceContainers(Templates::auto_ptr<Types::Batch> labels)
{
    if (labels.get() == nullptr)
        labels.reset(new Types::Batch(16));
    impl_->essenceContainers = std::move(labels);
}
KLV::Key const & PartitionPack::key() const
{
    return impl_->key;
}
void PartitionPack::key(KLV::Key const & key)
{
    checkKey(key);
    impl_->key = key;
    impl_->keyValid = true;
}

void PartitionPack::serialize(DataIO::DataSink & sink) const
{
    Impl const & p = *impl_;
    sink.write(p.key.rawBuffer(), 16);
    unsigned char length[9];
    ByteCoders::codeBER(FIXED_VALUE_SIZE + p.essenceContainers->serializedSize(), p.berLength, length);
    sink.write(length, p.berLength);
    p.majorVersion.serialize(sink);
    p.minorVersion.serialize(sink);
    p.kagSize.serialize(sink);
    p.thisPartition.serialize(sink);
    p.previousPartition.serialize(sink);
    p.footerPartition.serialize(sink);
    p.headerByteCount.serialize(sink);
    p.indexByteCount.serialize(sink);
    p.indexSID.serialize(sink);
    p.bodyOffset.serialize(sink);
    p.bodySID.serialize(sink);
    p.operationalPattern.serialize(sink);
    p.essenceContainers->serialize(sink);
}

uint64 PartitionPack::serializedSize() const
{
    return 16 + impl_->berLength + FIXED_VALUE_SIZE + impl_->essenceContainers->serializedSize();
}

PartitionPack::PartitionKind PartitionPack::partitionKind() const
{
    switch (impl_->key.rawBuffer()[13])
    {
    case 2:
        return HeaderPartition;
    case 3:
        return BodyPartition;
    default:
        return FooterPartition;
    }
}

bool PartitionPack::isOpen() const
{
    unsigned char status = impl_->key.rawBuffer()[14];
    return status == OpenIncomplete || status == OpenComplete;
}

bool PartitionPack::isComplete() const
{
    unsigned char status = impl_->key.rawBuffer()[14];
    return status == OpenComplete || status == ClosedComplete || status == GenericStream;
}

bool PartitionPack::isGenericStreamsPartition() const
{
    return impl_->key.rawBuffer()[13] == BodyPartition && impl_->key.rawBuffer()[14] == GenericStream;
}

KLV::Key buildPartitionPackKey(PartitionPack::PartitionKind kind, PartitionPack::PartitionStatus status)
{
    unsigned char bytes[16];
    std::memcpy(bytes, PREFIX, sizeof PREFIX);
    bytes[13] = static_cast<unsigned char>(kind);
    bytes[14] = static_cast<unsigned char>(status);
    bytes[15] = 0;
    return KLV::Key(bytes);
}

KLV::Key buildPartitionPackKey(PartitionPack::PartitionKind kind, bool open, bool complete)
{
    PartitionPack::PartitionStatus status =
        open ? (complete ? PartitionPack::OpenComplete : PartitionPack::OpenIncomplete)
             : (complete ? PartitionPack::ClosedComplete : PartitionPack::ClosedIncomplete);
    return buildPartitionPackKey(kind, status);
}

bool isPartitionPack(KLV::Key const & key)
{
    return hasPrefix(key) && static_cast<unsigned char>(key.rawBuffer()[13] - 2) < 3;
}
} // namespace Packs
} // namespace Vellum
