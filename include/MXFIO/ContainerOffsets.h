#pragma once
// Where the essence of a container lies in a file: its size over all partitions of its body SID,
// and the partition holding a stream offset.

#include "Platform/Types.h"

namespace Vellum
{
namespace MXFIO
{
class Partition;
class Reader;
class Reader2;

// The bytes of essence in all partitions of the body SID.
uint64 containerSize(Reader & reader, unsigned int bodySID);
uint64 containerSize(Reader2 & reader, unsigned int bodySID);

// The partition of the body SID whose essence holds the stream offset; null when none.
Partition * partitionContainingRelativeOffset(Reader & reader, unsigned int bodySID, uint64 offset);
// Walks back from the footer, or from the last partition loaded when fromLastLoaded is set or
// there is no footer.
Partition * partitionContainingRelativeOffset(Reader2 & reader, unsigned int bodySID, uint64 offset,
                                              bool fromLastLoaded);
} // namespace MXFIO
} // namespace Vellum
