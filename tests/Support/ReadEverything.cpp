#include "Support/ReadEverything.h"

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegment.h"
#include "KLV/Packet.h"
#include "MXFIO/EssenceReader.h"
#include "MXFIO/Reader2.h"
#include "MXFIO/SequentialReader.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Element.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/GenericPackage.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Packs/RandomIndexPack.h"

#include <set>
#include <vector>

namespace VellumTest
{
using namespace Vellum;

namespace
{
uint64 const KEY_SEARCH_LIMIT = 65536;

Templates::SharedPtr<MetaMetadata::Dictionary> standardDictionary()
{
    // Sets of the structural classes are built as such, which the essence reader needs.
    Metadata::Structural::initialize();
    static Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    return dictionary;
}

// Keeps the partitions met, once each, and notes a walk that meets one again.
struct PartitionLog
{
    std::vector<MXFIO::Partition *> order;
    std::set<MXFIO::Partition *> known;

    void note(MXFIO::Partition * partition)
    {
        if (partition != nullptr && known.insert(partition).second)
            order.push_back(partition);
    }
};

template <typename Step>
void guarded(ReadReport & report, Step step)
{
    try
    {
        step();
    }
    catch (Exceptions::BaseException const & e)
    {
        if (report.exceptions++ == 0)
            report.firstException = e.whatUtf8().c_str();
    }
}

void examineMetadata(Metadata::PartitionMetadata & metadata, ReadLimits const & limits, ReadReport & report)
{
    report.metadataSets += unsigned(metadata.size());
    if (!limits.validateMetadata)
        return;
    Templates::vector<Metadata::Element *> elements;
    metadata.openElements(elements);
    metadata.incompleteElements(elements);
    metadata.possiblyOpenElements(elements);
    metadata.possiblyIncompleteElements(elements);
    metadata.possiblyForbiddenElements(elements);
    Templates::vector<Metadata::MetadataSet const *> order;
    metadata.calculateSerializationOrder(order, true, true);
    // Each parent search goes over all the sets: a few are enough.
    Templates::vector<Metadata::MetadataSet *> parents;
    unsigned searched = 0;
    for (Metadata::PartitionMetadata::iterator it = metadata.begin(); it != metadata.end() && searched < 8;
         ++it, ++searched)
        metadata.parentSets(it->second, parents);
}

// Builds an essence reader on every package of the final metadata and reads its edit units.
void readEssence(MXFIO::Reader2 & reader, Metadata::PartitionMetadata & metadata, ReadLimits const & limits,
                 ReadReport & report)
{
    Metadata::Structural::Preface * preface = Metadata::Structural::findPreface(metadata);
    if (preface == nullptr)
        return;
    Metadata::Structural::ContentStorage * storage = nullptr;
    guarded(report, [&] { storage = preface->contentStorage(); });
    if (storage == nullptr)
        return;
    unsigned packages = 0;
    guarded(report, [&] { packages = storage->packagesCount(); });
    for (unsigned i = 0; i < packages; ++i)
    {
        guarded(report, [&] {
            Metadata::Structural::GenericPackage * package = storage->package(i);
            if (package == nullptr)
                return;
            MXFIO::EssenceReader essence(reader, *preface, *package, false, false);
            MXFIO::EssenceReader::ElementEditUnit unit;
            for (unsigned count = 0; count < limits.maximumEditUnits; ++count)
            {
                if (!essence.nextElementEditUnit(KEY_SEARCH_LIMIT, unit))
                    return;
                ++report.editUnits;
            }
        });
    }
}

// A walk from `start`, forward or backward: each step must reach a partition not met in this walk.
void walk(MXFIO::Reader2 & reader, MXFIO::Partition * start, bool forward, PartitionLog & log,
          ReadLimits const & limits, ReadReport & report)
{
    std::set<MXFIO::Partition *> thisWalk;
    MXFIO::Partition * partition = start;
    while (partition != nullptr)
    {
        if (!thisWalk.insert(partition).second || thisWalk.size() > limits.maximumPartitions)
        {
            report.runaway = true;
            return;
        }
        log.note(partition);
        partition = forward ? reader.nextPartition(partition) : reader.previousPartition(partition);
    }
}

void readPartition(MXFIO::Partition & partition, ReadLimits const & limits, ReadReport & report)
{
    if (limits.metadataOfEveryPartition)
    {
        guarded(report, [&] {
            Templates::SharedPtr<Metadata::PartitionMetadata> metadata = partition.metadata();
            if (metadata.get() != nullptr)
                report.metadataSets += unsigned(metadata->size());
        });
    }
    guarded(report, [&] {
        partition.rewind();
        for (unsigned count = 0;; ++count)
        {
            if (count > limits.maximumPacketsPerPartition)
                return;
            Templates::auto_ptr<KLV::Packet> packet = partition.nextIndexTableSegmentsKLV();
            if (packet.get() == nullptr)
                return;
            IndexTables::IndexTableSegment segment(*packet);
            ++report.indexSegments;
        }
    });
    guarded(report, [&] {
        for (unsigned count = 0;; ++count)
        {
            if (count > limits.maximumPacketsPerPartition)
                return;
            Templates::auto_ptr<KLV::Packet> packet = partition.nextBodyKLV(KEY_SEARCH_LIMIT);
            if (packet.get() == nullptr)
                return;
            ++report.bodyPackets;
        }
    });
}

void readRandomAccess(unsigned char const * data, std::size_t size, ReadLimits const & limits, ReadReport & report)
{
    DataIO::Memory::MemoryDataSource source(data, size);
    MXFIO::Reader2 reader(source, standardDictionary(), KEY_SEARCH_LIMIT);
    PartitionLog log;

    MXFIO::Partition * header = nullptr;
    guarded(report, [&] { header = reader.headerPartition(); });
    guarded(report, [&] { reader.runIn(); });
    guarded(report, [&] { walk(reader, header, true, log, limits, report); });
    guarded(report, [&] {
        if (reader.loadRIP() && reader.rip().get() != nullptr)
        {
            Packs::RandomIndexPack::OffsetIndexedMap const entries = reader.rip()->offsetIndexedMap();
            for (auto const & entry : entries)
                guarded(report, [&] { log.note(reader.partitionAtOffset(entry.first)); });
        }
    });
    MXFIO::Partition * footer = nullptr;
    guarded(report, [&] { footer = reader.footerPartition(); });
    guarded(report, [&] { walk(reader, footer, false, log, limits, report); });
    if (footer != nullptr || limits.repeatTailScans)
    {
        MXFIO::Partition * last = nullptr;
        guarded(report, [&] { last = reader.lastPartition(); });
        guarded(report, [&] { walk(reader, last, false, log, limits, report); });
        guarded(report, [&] { reader.loadRipFromFooter(); });
    }
    if (report.runaway)
        return;

    // Every partition met, then those that the body walks brought in.
    for (std::size_t i = 0; i < log.order.size(); ++i)
    {
        if (i >= limits.maximumPartitions)
        {
            report.runaway = true;
            return;
        }
        readPartition(*log.order[i], limits, report);
        log.note(reader.lastLoadedPartition());
        if (report.runaway)
            return;
    }
    report.partitions = unsigned(log.order.size());

    MXFIO::Partition * examined = nullptr;
    for (int route = 0; route < 2; ++route)
    {
        guarded(report, [&] {
            MXFIO::Partition * final =
                route == 0 ? reader.firstPartitionWithFinalMetadata() : reader.backwardFirstPartitionWithFinalMetadata();
            if (final == nullptr || final == examined)
                return;
            examined = final;
            Templates::SharedPtr<Metadata::PartitionMetadata> metadata = final->metadata();
            if (metadata.get() == nullptr)
                return;
            examineMetadata(*metadata, limits, report);
            readEssence(reader, *metadata, limits, report);
        });
    }
}

void readSequentially(unsigned char const * data, std::size_t size, ReadLimits const & limits, ReadReport & report)
{
    DataIO::Memory::MemoryDataSource source(data, size);
    // The handlers of the base class drop what they are handed.
    MXFIO::SequentialReader reader(source, standardDictionary());
    guarded(report, [&] {
        while (reader.next(KEY_SEARCH_LIMIT))
        {
            if (++report.sequentialPackets > limits.maximumSequentialPackets)
                return;
        }
    });
}
} // namespace

ReadReport readEverything(unsigned char const * data, std::size_t size, ReadLimits const & limits)
{
    ReadReport report;
    if (limits.randomAccess)
        guarded(report, [&] { readRandomAccess(data, size, limits, report); });
    if (limits.sequential)
        guarded(report, [&] { readSequentially(data, size, limits, report); });
    return report;
}
} // namespace VellumTest
