// Header metadata of 10,000 sets: loading it from its bytes, one load() per packet, and writing
// it again, in key order and down the strong references. Both report sets per second.

#include <benchmark/benchmark.h>

#include <stdexcept>

#include "DataIO/Memory/MemoryDataSource.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "Metadata/CollectionReferenceElement.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Packs/PrimerPack.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UniversalLabel.h"

using namespace Vellum;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
namespace Keys = Metadata::Structural::StructuralMetadataKeys;
namespace ULs = Metadata::Structural::StructuralMetadataULs;

namespace
{
typedef Templates::SharedPtr<PartitionMetadata> MetadataPtr;

Templates::SharedPtr<MetaMetadata::Dictionary> dictionary()
{
    static Templates::SharedPtr<MetaMetadata::Dictionary> standard = MetaMetadata::createStandardDictionary();
    return standard;
}

MetadataPtr emptyPartition(Packs::PrimerPack * primer)
{
    Templates::auto_ptr<Metadata::PartitionDictionary> partitionDictionary(
        new Metadata::PartitionDictionary(dictionary(), Templates::auto_ptr<Packs::PrimerPack>(primer)));
    return MetadataPtr(new PartitionMetadata(std::move(partitionDictionary)));
}

template <class T>
void set(MetadataSet & set, Types::UniversalLabel const & label, T const & value)
{
    Metadata::Visitors::GetNonConstElementVisitor<Metadata::SimpleElement> visitor;
    set.find(label).accept(visitor);
    visitor.value()->set(value.clone(), false);
}

void refer(MetadataSet & set, Types::UniversalLabel const & label, MetadataSet * target)
{
    Metadata::Visitors::GetNonConstElementVisitor<Metadata::ReferenceElement> visitor;
    set.find(label).accept(visitor);
    visitor.value()->set(target);
}

void append(MetadataSet & set, Types::UniversalLabel const & label, MetadataSet * target)
{
    Metadata::Element & element = set.find(label);
    Metadata::Visitors::GetNonConstElementVisitor<Metadata::ArrayReferenceElement> array;
    element.accept(array);
    if (array.value() != nullptr)
    {
        array.value()->append(target);
        return;
    }
    Metadata::Visitors::GetNonConstElementVisitor<Metadata::BatchReferenceElement> batch;
    element.accept(batch);
    batch.value()->append(target);
}

// Preface, Identification, Content Storage, and source packages of one track, one sequence and
// one clip each, until there are `count` sets.
MetadataPtr buildHeader(unsigned count)
{
    MetadataPtr metadata = emptyPartition(nullptr);
    MetadataSet * preface = metadata->createMetadataSet(Keys::preface());
    append(*preface, ULs::identificationList(), metadata->createMetadataSet(Keys::identification()));
    MetadataSet * storage = metadata->createMetadataSet(Keys::contentStorage());
    refer(*preface, ULs::contentStorage(), storage);
    for (unsigned number = 0; metadata->size() + 4 <= count; ++number)
    {
        MetadataSet * package = metadata->createMetadataSet(Keys::sourcePackage());
        MetadataSet * track = metadata->createMetadataSet(Keys::timelineTrack());
        MetadataSet * sequence = metadata->createMetadataSet(Keys::sequence());
        MetadataSet * clip = metadata->createMetadataSet(Keys::sourceClip());
        set(*track, ULs::trackID(), Types::UInt32(number + 1));
        set(*track, ULs::editRate(), Types::Rational(25, 1));
        set(*track, ULs::origin(), Types::Position(0));
        set(*sequence, ULs::dataDefinition(), Metadata::Structural::DataDefinitionULs::picture());
        set(*sequence, ULs::duration(), Types::Length(number));
        set(*clip, ULs::dataDefinition(), Metadata::Structural::DataDefinitionULs::picture());
        set(*clip, ULs::duration(), Types::Length(number));
        set(*clip, ULs::startPosition(), Types::Position(0));
        append(*sequence, ULs::structuralComponents(), clip);
        refer(*track, ULs::sequence(), sequence);
        append(*package, ULs::tracks(), track);
        append(*storage, ULs::packages(), package);
    }
    return metadata;
}

std::vector<unsigned char> serialized(PartitionMetadata & metadata, PartitionMetadata::SerializationOrder order)
{
    DataIO::Memory::MemoryDataSink sink(metadata.serializedSize(true, true));
    metadata.serialize(sink, true, order, true);
    return std::vector<unsigned char>(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

// The Primer and the sets behind it, one load() each.
MetadataPtr load(std::vector<unsigned char> const & bytes)
{
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> primerPacket = reader.nextKLV(skipped, 0);
    MetadataPtr metadata = emptyPartition(new Packs::PrimerPack(*primerPacket));
    primerPacket.reset();
    while (source.remaining() > 0)
    {
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        metadata->load(*packet);
    }
    return metadata;
}

unsigned const setCount = 10000;

std::vector<unsigned char> const & headerBytes()
{
    static std::vector<unsigned char> bytes;
    if (bytes.empty())
    {
        MetadataPtr metadata = buildHeader(setCount);
        bytes = serialized(*metadata, PartitionMetadata::PrefaceThenKeys);
    }
    return bytes;
}
} // namespace

static void BM_LoadHeaderMetadata(benchmark::State & state)
{
    std::vector<unsigned char> const & bytes = headerBytes();
    uint64 sets = 0;
    for (auto _ : state)
    {
        MetadataPtr metadata = load(bytes);
        sets += metadata->size();
        benchmark::DoNotOptimize(metadata.get());
    }
    state.SetItemsProcessed(static_cast<int64_t>(sets));
    state.counters["sets"] = static_cast<double>(sets / state.iterations());
}
BENCHMARK(BM_LoadHeaderMetadata)->Unit(benchmark::kMillisecond);

static void serializeIn(benchmark::State & state, PartitionMetadata::SerializationOrder order)
{
    MetadataPtr metadata = load(headerBytes());
    uint64 const size = metadata->serializedSize(true, true);
    uint64 sets = 0;
    for (auto _ : state)
    {
        DataIO::Memory::MemoryDataSink sink(size);
        metadata->serialize(sink, true, order, true);
        if (sink.serializedSize() != size)
            state.SkipWithError("the written size differs from serializedSize()");
        sets += metadata->size();
    }
    state.SetItemsProcessed(static_cast<int64_t>(sets));
}

static void BM_SerializeHeaderMetadataPrefaceThenKeys(benchmark::State & state)
{
    serializeIn(state, PartitionMetadata::PrefaceThenKeys);
}
BENCHMARK(BM_SerializeHeaderMetadataPrefaceThenKeys)->Unit(benchmark::kMillisecond);

// Each strong reference is looked up through the index.
static void BM_SerializeHeaderMetadataForwardDepthFirst(benchmark::State & state)
{
    serializeIn(state, PartitionMetadata::ForwardDepthFirst);
}
BENCHMARK(BM_SerializeHeaderMetadataForwardDepthFirst)->Unit(benchmark::kMillisecond);
