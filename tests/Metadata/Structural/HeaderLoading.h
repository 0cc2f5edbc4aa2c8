#pragma once
// Reads the header metadata of a file for the structural tests: the header partition pack, the
// Primer behind it and every set up to the end of the header metadata, each loaded into a
// PartitionMetadata with the built-in dictionary. A set that fails to load is counted and
// skipped.

#include <memory>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/StructuralTestSupport.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Support/Fixtures.h"

namespace Vellum
{
namespace StructuralTest
{
struct LoadedHeader
{
    std::unique_ptr<Metadata::PartitionMetadata> metadata;
    unsigned int skipped = 0;
};

inline LoadedHeader loadHeader(std::vector<unsigned char> const & bytes)
{
    Metadata::Structural::initialize();
    LoadedHeader loaded;
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> first = reader.nextKLV(skipped, 65535);
    if (!Packs::isPartitionPack(first->key()))
        return loaded;
    Packs::PartitionPack const pack(*first);
    uint64 const end = first->keyAbsoluteOffset() + first->klvLength() + pack.headerByteCount();
    first.reset();
    while (!source.endOfStream())
    {
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        if (packet->keyAbsoluteOffset() >= end || packet->klvLength() > bytes.size() - packet->keyAbsoluteOffset())
            break;
        if (KLV::isFillItem(packet->key()))
            continue;
        if (Packs::isPrimerPack(packet->key()))
        {
            Templates::auto_ptr<Packs::PrimerPack> primer(new Packs::PrimerPack(*packet));
            loaded.metadata.reset(new Metadata::PartitionMetadata(Templates::auto_ptr<Metadata::PartitionDictionary>(
                new Metadata::PartitionDictionary(standardDictionary(), std::move(primer)))));
            continue;
        }
        if (!loaded.metadata)
            break;
        try
        {
            loaded.metadata->load(*packet);
        }
        catch (Exceptions::BaseException const &)
        {
            ++loaded.skipped;
        }
    }
    return loaded;
}

inline LoadedHeader loadHeader(std::string const & path) { return loadHeader(VellumTest::readFile(path)); }
} // namespace StructuralTest
} // namespace Vellum
