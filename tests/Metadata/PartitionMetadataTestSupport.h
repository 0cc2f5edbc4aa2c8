#pragma once
// Helpers of the partition metadata tests: the built-in dictionary, header metadata read from a
// file or from bytes, sets built by hand over the built-in schema, and a listener that writes
// down what it hears.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/KLVTestSupport.h"
#include "Support/ThrownCompare.h"
#include "Metadata/MetadataSetTestSupport.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/CollectionReferenceElement.h"
#include "Metadata/Element.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/PartitionMetadataListener.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Types/Boolean.h"
#include "Types/Factories/UID.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/SimpleDataType.h"
#include "Types/UMID.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace PartitionMetadataTest
{
using KLVTest::Bytes;
using KLVTest::n;
using KLVTest::Thrown;
using KLVTest::thrown;
using KLVTest::thrownBy;
using KLVTest::w;
namespace Keys = Metadata::Structural::StructuralMetadataKeys;
namespace ULs = Metadata::Structural::StructuralMetadataULs;
typedef Templates::SharedPtr<Metadata::PartitionMetadata> MetadataPtr;

using MetadataSetTest::standardDictionary;

// An empty partition over the built-in dictionary, with the Primer given or an empty one.
inline MetadataPtr emptyPartition(Packs::PrimerPack * primer = nullptr)
{
    Templates::auto_ptr<Metadata::PartitionDictionary> dictionary(
        new Metadata::PartitionDictionary(standardDictionary(), Templates::auto_ptr<Packs::PrimerPack>(primer)));
    return MetadataPtr(new Metadata::PartitionMetadata(std::move(dictionary)));
}

struct LoadReport
{
    unsigned loaded = 0;     // packets handed to load()
    unsigned refused = 0;    // of those, how many threw
    unsigned dark = 0;       // of those, how many became dark sets
    std::vector<std::string> failures;
};

// Loads packets from `source` until `end` (absolute) or the end of the source: fill items are
// passed over, other group keys go to load(), whose format failures are counted and passed over
// like a reader does.
inline void loadPackets(Metadata::PartitionMetadata & metadata, DataIO::RandomAccessDataSource & source, KLV::Reader & reader,
                        uint64 end, LoadReport & report)
{
    while (source.absoluteOffset() < end && source.remaining() > 0)
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        if (KLV::isFillItem(packet->key()))
            continue;
        unsigned char const * key = packet->key().rawBuffer();
        if (!(key[0] == 0x06 && key[1] == 0x0e && key[2] == 0x2b && key[3] == 0x34 && key[4] == 0x02))
            continue;
        ++report.loaded;
        try
        {
            if (metadata.load(*packet) == nullptr)
                ++report.dark;
        }
        catch (Exceptions::InvalidLength const & e)
        {
            ++report.refused;
            report.failures.push_back(e.whatUtf8().c_str());
        }
        catch (Exceptions::InvalidMetadataSet const & e)
        {
            ++report.refused;
            report.failures.push_back(e.whatUtf8().c_str());
        }
    }
}

// The bytes from a Primer on: the Primer and the packets behind it, as serialize() writes them.
inline MetadataPtr loadSerialized(Bytes const & bytes, LoadReport & report)
{
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> primerPacket = reader.nextKLV(skipped, 0);
    if (!Packs::isPrimerPack(primerPacket->key()))
        throw std::runtime_error("no Primer at the start of the metadata");
    Packs::PrimerPack * primer = new Packs::PrimerPack(*primerPacket);
    primerPacket.reset();
    MetadataPtr metadata = emptyPartition(primer);
    loadPackets(*metadata, source, reader, bytes.size(), report);
    return metadata;
}

// The header metadata of a whole file: the header partition pack, its Primer, and the packets
// that its HeaderByteCount covers.
inline MetadataPtr loadHeader(Bytes const & file, LoadReport & report)
{
    DataIO::Memory::MemoryDataSource source(file.data(), file.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> packPacket = reader.nextKLV(skipped, 1 << 16);
    if (!Packs::isPartitionPack(packPacket->key()))
        throw std::runtime_error("no header partition pack");
    Packs::PartitionPack pack(*packPacket);
    packPacket.reset();
    Templates::auto_ptr<KLV::Packet> primerPacket;
    uint64 start = 0;
    for (;;)
    {
        // The packet before must die first: that skips its value.
        primerPacket.reset();
        start = source.absoluteOffset();
        primerPacket = reader.nextKLV(skipped, 0);
        if (!KLV::isFillItem(primerPacket->key()))
            break;
    }
    if (!Packs::isPrimerPack(primerPacket->key()))
        throw std::runtime_error("no Primer at the start of the header metadata");
    Packs::PrimerPack * primer = new Packs::PrimerPack(*primerPacket);
    primerPacket.reset();
    MetadataPtr metadata = emptyPartition(primer);
    loadPackets(*metadata, source, reader, start + pack.headerByteCount(), report);
    return metadata;
}

inline Bytes serialized(Metadata::PartitionMetadata & metadata, Metadata::PartitionMetadata::SerializationOrder order,
                        bool withDark = true, bool withPrimer = true)
{
    DataIO::Memory::MemoryDataSink sink;
    metadata.serialize(sink, withDark, order, withPrimer);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

inline Bytes setBytes(Metadata::MetadataSet const & set, Metadata::PartitionDictionary const & dictionary,
                      bool includeInvalid = true)
{
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink, dictionary, includeInvalid);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

inline Bytes valueBytes(Types::SimpleDataType const & value)
{
    return Bytes(value.rawBuffer(), value.rawBuffer() + value.serializedSize());
}

// Building sets by hand.

template <class T>
T & elementAs(Metadata::MetadataSet & set, Types::UniversalLabel const & label)
{
    Metadata::Visitors::GetNonConstElementVisitor<T> visitor;
    set.find(label).accept(visitor);
    if (visitor.value() == nullptr)
        throw std::runtime_error("an element of another class");
    return *visitor.value();
}

inline Metadata::SimpleElement & simple(Metadata::MetadataSet & set, Types::UniversalLabel const & label)
{
    return elementAs<Metadata::SimpleElement>(set, label);
}

inline Metadata::ReferenceElement & reference(Metadata::MetadataSet & set, Types::UniversalLabel const & label)
{
    return elementAs<Metadata::ReferenceElement>(set, label);
}

inline Metadata::CollectionReferenceElement & references(Metadata::MetadataSet & set,
                                                         Types::UniversalLabel const & label)
{
    Metadata::Element & element = set.find(label);
    Metadata::Visitors::GetNonConstElementVisitor<Metadata::ArrayReferenceElement> array;
    element.accept(array);
    if (array.value() != nullptr)
        return *array.value();
    Metadata::Visitors::GetNonConstElementVisitor<Metadata::BatchReferenceElement> batch;
    element.accept(batch);
    if (batch.value() == nullptr)
        throw std::runtime_error("not a reference collection");
    return *batch.value();
}

template <class T>
void setValue(Metadata::MetadataSet & set, Types::UniversalLabel const & label, T const & value)
{
    simple(set, label).set(value.clone(), false);
}

inline Types::UUID const & uidOf(Metadata::MetadataSet const & set)
{
    Types::UUID const * uid = set.instanceUID();
    if (uid == nullptr)
        throw std::runtime_error("set without instance UID");
    return *uid;
}

// A small header built with createMetadataSet: Preface, Identification, Content Storage with a
// Source Package (first) and a Material Package; the material one has a picture track and a time
// code track (in that order), the source one a sound track and a descriptor. Each track has a
// sequence with one component.
struct Header
{
    Metadata::MetadataSet * preface = nullptr;
    Metadata::MetadataSet * identification = nullptr;
    Metadata::MetadataSet * contentStorage = nullptr;
    Metadata::MetadataSet * material = nullptr;
    Metadata::MetadataSet * source = nullptr;
    Metadata::MetadataSet * pictureTrack = nullptr;
    Metadata::MetadataSet * timecodeTrack = nullptr;
    Metadata::MetadataSet * soundTrack = nullptr;
    Metadata::MetadataSet * pictureSequence = nullptr;
    Metadata::MetadataSet * timecodeSequence = nullptr;
    Metadata::MetadataSet * soundSequence = nullptr;
    Metadata::MetadataSet * pictureClip = nullptr;
    Metadata::MetadataSet * timecodeComponent = nullptr;
    Metadata::MetadataSet * soundClip = nullptr;
    Metadata::MetadataSet * descriptor = nullptr;
};

inline Types::UMID32 newUMID()
{
    return Types::Factories::UID::generateBasicUMID(Types::Factories::UID::MaterialType(0x0d),
                                                    Types::Factories::UID::MNMI_UUID,
                                                    Types::Factories::UID::INMI_LOCAL);
}

inline Metadata::MetadataSet * addTrack(Metadata::PartitionMetadata & metadata, Metadata::MetadataSet & package,
                                        unsigned trackID, Types::UniversalLabel const & dataDefinition,
                                        Metadata::MetadataSet *& sequence, Metadata::MetadataSet *& component,
                                        bool timecode, long long duration)
{
    Metadata::MetadataSet * track = metadata.createMetadataSet(Keys::timelineTrack());
    setValue(*track, ULs::trackID(), Types::UInt32(trackID));
    setValue(*track, ULs::trackNumber(), Types::UInt32(0));
    setValue(*track, ULs::editRate(), Types::Rational(25, 1));
    setValue(*track, ULs::origin(), Types::Position(0));
    sequence = metadata.createMetadataSet(Keys::sequence());
    setValue(*sequence, ULs::dataDefinition(), dataDefinition);
    setValue(*sequence, ULs::duration(), Types::Length(duration));
    component = metadata.createMetadataSet(timecode ? Keys::timecodeComponent() : Keys::sourceClip());
    setValue(*component, ULs::dataDefinition(), dataDefinition);
    setValue(*component, ULs::duration(), Types::Length(duration));
    if (timecode)
    {
        setValue(*component, ULs::roundedTimecodeBase(), Types::UInt16(25));
        setValue(*component, ULs::startTimecode(), Types::Position(90000));
        setValue(*component, ULs::dropFrame(), Types::Boolean(false));
    }
    else
    {
        setValue(*component, ULs::startPosition(), Types::Position(0));
        setValue(*component, ULs::sourceTrackID(), Types::UInt32(0));
        setValue(*component, ULs::sourcePackageID(), Types::UMID32());
    }
    references(*sequence, ULs::structuralComponents()).append(component);
    reference(*track, ULs::sequence()).set(sequence);
    references(package, ULs::tracks()).append(track);
    return track;
}

inline Header buildHeader(Metadata::PartitionMetadata & metadata)
{
    namespace DD = Metadata::Structural::DataDefinitionULs;
    Header h;
    h.preface = metadata.createMetadataSet(Keys::preface());
    h.identification = metadata.createMetadataSet(Keys::identification());
    setValue(*h.identification, ULs::thisGenerationUID(), Types::Factories::UID::generateUUID());
    references(*h.preface, ULs::identificationList()).append(h.identification);
    h.contentStorage = metadata.createMetadataSet(Keys::contentStorage());
    reference(*h.preface, ULs::contentStorage()).set(h.contentStorage);
    h.source = metadata.createMetadataSet(Keys::sourcePackage());
    setValue(*h.source, ULs::packageUID(), newUMID());
    h.material = metadata.createMetadataSet(Keys::materialPackage());
    setValue(*h.material, ULs::packageUID(), newUMID());
    references(*h.contentStorage, ULs::packages()).append(h.source);
    references(*h.contentStorage, ULs::packages()).append(h.material);
    h.pictureTrack = addTrack(metadata, *h.material, 1, DD::picture(), h.pictureSequence, h.pictureClip, false, 50);
    h.timecodeTrack =
        addTrack(metadata, *h.material, 2, DD::timecode12MInactive(), h.timecodeSequence, h.timecodeComponent, true, 50);
    h.soundTrack = addTrack(metadata, *h.source, 1, DD::audio(), h.soundSequence, h.soundClip, false, 50);
    h.descriptor = metadata.createMetadataSet(Keys::waveAudioEssenceDescriptor());
    reference(*h.source, ULs::descriptor()).set(h.descriptor);
    return h;
}

// What a listener heard, one line for each call, in order, with the set of each call.
class RecordingListener : public Metadata::PartitionMetadataListener
{
public:
    std::vector<std::string> calls;
    std::vector<Metadata::MetadataSet *> sets;

    void metadataSetKey(KLV::Key &) override { calls.push_back("key"); }
    void createdMetadataSet(Metadata::MetadataSet * set) override { note("created", *set); }
    void removedMetadataSet(Metadata::MetadataSet * set) override { note("removed", *set); }
    void addedElement(Metadata::MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                      Metadata::Element &, Types::BaseType const &) override
    {
        note(metaElement != nullptr ? "added" : "added unknown", set);
    }
    void updatedElement(Metadata::MetadataSet & set, MetaMetadata::MetaElement const *, Metadata::Element &,
                        Types::Collection const &, Types::Collection const &) override
    {
        note("updated collection", set);
    }
    void updatedElement(Metadata::MetadataSet & set, MetaMetadata::MetaElement const *, Metadata::Element &,
                        Types::SimpleDataType const &, Types::SimpleDataType const &) override
    {
        note("updated", set);
    }
    void updatedElementCollection(Metadata::MetadataSet & set, MetaMetadata::MetaElement const *,
                                  Metadata::Element &, Types::Collection const &, unsigned int,
                                  Types::BaseType const * member) override
    {
        note(member != nullptr ? "member in" : "member out", set);
    }
    void removedElement(Metadata::MetadataSet & set, MetaMetadata::MetaElement const *, Metadata::Element &,
                        Types::BaseType const &) override
    {
        note("removed value", set);
    }

    void clear()
    {
        calls.clear();
        sets.clear();
    }
    unsigned count(std::string const & call) const
    {
        return static_cast<unsigned>(std::count(calls.begin(), calls.end(), call));
    }

private:
    void note(char const * call, Metadata::MetadataSet & set)
    {
        calls.push_back(call);
        sets.push_back(&set);
    }
};
} // namespace PartitionMetadataTest
} // namespace Vellum
