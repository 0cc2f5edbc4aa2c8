#pragma once
// What the writers take from the header metadata for their partition packs, the constants of the
// partition layout, and the pull of data from a container's source.

#include "DataIO/Chain.h"
#include "MXFIO/FutureUpdater.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Rational.h"
#include "Templates/SharedPtr.h"
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

// Asks a container's source for data until it gives some, adding up the time it reports; false
// when the source ends without any.
template <class Source>
bool pullData(Source & source, DataIO::Chain & own, bool & atBoundary, Templates::SharedPtr<FutureUpdater> & updater,
              Templates::Rational<int64> & duration)
{
    for (;;)
    {
        Templates::Rational<int64> increment(0, 1);
        bool const more = source.next(own, atBoundary, updater, increment);
        duration += increment;
        if (!own.empty())
            return true;
        if (!more)
            return false;
    }
}
} // namespace MXFIO
} // namespace Vellum
