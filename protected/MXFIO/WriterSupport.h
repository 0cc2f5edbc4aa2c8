#pragma once
// What the writers take from the header metadata for their partition packs, and the constants of
// the partition layout.

#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Types/Collection.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
class PartitionMetadata;
}

namespace MXFIO
{
// Packs, metadata and index go through blocks of this size.
uint64 const PARTITION_BLOCK_SIZE = 10240;
// The smallest fill item: a key and a 4-byte length.
unsigned const FILL_MINIMUM = 20;
unsigned char const FILL_BER_LENGTH = 4;

// The Preface's operational pattern; the zero label without metadata, Preface or pattern.
Types::UniversalLabel packOperationalPattern(Metadata::PartitionMetadata const * metadata);
// The Preface's essence container labels; empty without metadata or Preface.
Templates::auto_ptr<Types::Batch> packEssenceContainers(Metadata::PartitionMetadata const * metadata);
} // namespace MXFIO
} // namespace Vellum
