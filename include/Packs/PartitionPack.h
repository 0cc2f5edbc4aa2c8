#pragma once
// The fixed pack that opens every partition: header, body or footer.

#include "DataIO/DataSink.h"
#include "KLV/Key.h"
#include "Templates/AutoPtr.h"
#include "Types/Collection.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace KLV
{
class Packet;
}

namespace Packs
{
class PartitionPack
{
public:
    VELLUM_CLASS_ALLOCATION

    // Key byte 13.
    enum PartitionKind
    {
        HeaderPartition = 2,
        BodyPartition = 3,
        FooterPartition = 4
    };

    // Key byte 14.
    enum PartitionStatus
    {
        OpenIncomplete = 1,
        ClosedIncomplete = 2,
        OpenComplete = 3,
        ClosedComplete = 4,
        // A body partition that carries a generic stream.
        GenericStream = 17
    };

    // Parses a pack; the key is checked first.
    explicit PartitionPack(KLV::Packet & packet);
    // A new pack: versions 1.2, a 4-byte BER length, the other numbers 0.
    PartitionPack(KLV::Key const & key, unsigned int const & kagSize, uint64 const & thisPartition,
                  uint64 const & bodyOffset, Types::UniversalLabel const & operationalPattern,
                  Templates::auto_ptr<Types::Batch> essenceContainers);
    PartitionPack(PartitionPack const & other);
    PartitionPack & operator=(PartitionPack const & other);
    ~PartitionPack();

    unsigned char berLength() const;
    void berLength(unsigned char length);
    unsigned short majorVersion() const;
    void majorVersion(unsigned short version);
    unsigned short minorVersion() const;
    void minorVersion(unsigned short version);
    unsigned int kagSize() const;
    void kagSize(unsigned int size);
    uint64 thisPartition() const;
    void thisPartition(uint64 offset);
    uint64 previousPartition() const;
    void previousPartition(uint64 offset);
    uint64 footerPartition() const;
    void footerPartition(uint64 offset);
    uint64 headerByteCount() const;
    void headerByteCount(uint64 count);
    uint64 indexByteCount() const;
    void indexByteCount(uint64 count);
    unsigned int indexSID() const;
    void indexSID(unsigned int sid);
    uint64 bodyOffset() const;
    void bodyOffset(uint64 offset);
    unsigned int bodySID() const;
    void bodySID(unsigned int sid);
    Types::UniversalLabel const & operationalPattern() const;
    void operationalPattern(Types::UniversalLabel const & label);
    Types::Batch const & essenceContainers() const;
    void essenceContainers(Templates::auto_ptr<Types::Batch> labels);
    KLV::Key const & key() const;
    // Checks the key first: a refused key leaves the old one in place.
    void key(KLV::Key const & key);

    void serialize(DataIO::DataSink & sink) const;
    // Key, length field and value.
    uint64 serializedSize() const;

    PartitionKind partitionKind() const;
    bool isOpen() const;
    bool isComplete() const;
    bool isGenericStreamsPartition() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

KLV::Key buildPartitionPackKey(PartitionPack::PartitionKind kind, PartitionPack::PartitionStatus status);
KLV::Key buildPartitionPackKey(PartitionPack::PartitionKind kind, bool open, bool complete);
// The partition pack prefix and a kind of 2, 3 or 4; the status is not looked at.
bool isPartitionPack(KLV::Key const & key);
} // namespace Packs
} // namespace Vellum
