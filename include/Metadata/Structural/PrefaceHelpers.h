#pragma once
// Questions asked of a partition's whole structural metadata through its Preface.

#include "Templates/Containers.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
class PartitionMetadata;

namespace Structural
{
class Preface;
class SourcePackage;

// The first Preface of the partition; none throws NotFound.
Preface * findPreface(PartitionMetadata const & metadata);
// The Preface's operational pattern label, or null.
Types::UniversalLabel const * operationalPattern(PartitionMetadata const & metadata);
// The Preface's essence container labels, in order.
Templates::vector<Types::UniversalLabel> essenceContainers(PartitionMetadata const & metadata);
// Whether any source package of the partition has its essence outside the file.
bool hasExternalEssence(PartitionMetadata const & metadata);
// Whether the package's descriptor has locators while no essence container of the file (one
// with a body SID other than 0) holds the package's essence.
bool isExternalEssence(PartitionMetadata const & metadata, SourcePackage const & package);
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
