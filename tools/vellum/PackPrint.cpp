#include "PackPrint.h"

#include <cinttypes>
#include <cstdio>

#include "Format.h"

namespace VellumTool
{
namespace
{
char const * const INDENT = "            ";

std::string label(Vellum::Types::UniversalLabel const & l)
{
    return dotted(l.rawBuffer(), 16);
}

std::string tag(Vellum::Types::LocalTag const & t)
{
    return dotted(t.rawBuffer(), 2);
}
} // namespace

void printPartitionPack(Vellum::Packs::PartitionPack const & pack)
{
    std::printf("%sversion %u.%u  KAG %u  this %" PRIu64 "  previous %" PRIu64 "  footer %" PRIu64 "\n", INDENT,
                pack.majorVersion(), pack.minorVersion(), pack.kagSize(), pack.thisPartition(),
                pack.previousPartition(), pack.footerPartition());
    std::printf("%sheader bytes %" PRIu64 "  index bytes %" PRIu64 "  index SID %u  body offset %" PRIu64
                "  body SID %u\n",
                INDENT, pack.headerByteCount(), pack.indexByteCount(), pack.indexSID(), pack.bodyOffset(),
                pack.bodySID());
    std::printf("%soperational pattern %s\n", INDENT, label(pack.operationalPattern()).c_str());
    Vellum::Types::Batch const & containers = pack.essenceContainers();
    std::printf("%sessence containers %u\n", INDENT, containers.size());
    for (unsigned int i = 0; i < containers.size(); ++i)
        std::printf("%s  container %s\n", INDENT, dotted(containers.at(i).rawBuffer(), 16).c_str());
}

void printPrimer(Vellum::Packs::PrimerPack const & primer, bool table)
{
    std::printf("%sentries %u  duplicates %u\n", INDENT, primer.count(), primer.countDuplicates());
    for (unsigned int i = 0; i < primer.countDuplicates(); ++i)
    {
        Vellum::Packs::PrimerPack::Entry entry = primer.atDuplicates(i);
        std::printf("%sduplicate tag %s  label %s\n", INDENT, tag(entry.first).c_str(), label(entry.second).c_str());
    }
    if (!table)
        return;
    for (unsigned int i = 0; i < primer.count(); ++i)
    {
        Vellum::Packs::PrimerPack::Entry entry = primer.at(i);
        std::printf("%stag %s  label %s\n", INDENT, tag(entry.first).c_str(), label(entry.second).c_str());
    }
}

void printRandomIndexPack(Vellum::Packs::RandomIndexPack const & rip)
{
    std::printf("%sentries %u\n", INDENT, rip.size());
    for (auto const & entry : rip.offsetIndexedMap())
        std::printf("%spartition at %" PRIu64 "  body SID %u\n", INDENT, entry.first, entry.second);
}
} // namespace VellumTool
