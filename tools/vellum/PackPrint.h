#pragma once
// Detail lines of the packs that `vellum klv` decodes.

#include <string>

#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Packs/RandomIndexPack.h"

namespace VellumTool
{
void printPartitionPack(Vellum::Packs::PartitionPack const & pack);
// The entry count and duplicates; with `table`, every entry too.
void printPrimer(Vellum::Packs::PrimerPack const & primer, bool table);
void printRandomIndexPack(Vellum::Packs::RandomIndexPack const & rip);
} // namespace VellumTool
