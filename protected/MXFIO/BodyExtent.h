#pragma once
// How far the essence of one partition reaches: from the start of its body to the pack of the
// partition behind it, or to the end of the file.

#include "Exceptions/Exceptions.h"
#include "MXFIO/Partition.h"
#include "MXFIO/Reader.h"
#include "Templates/Containers.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace MXFIO
{
namespace Detail
{
// The absolute offset just past the last byte of the source.
inline uint64 sourceEnd(Reader & reader)
{
    DataIO::RandomAccessDataSource & source = reader.source();
    return source.absoluteOffset() + source.remaining();
}

// "<lead><body> <tail><limit>)" with both offsets in hexadecimal.
inline Templates::wstring bodyBeyondText(char const * lead, uint64 body, char const * tail, uint64 limit)
{
    Templates::wstring text = Utils::wide(lead);
    text += Utils::hexadecimal(body);
    text += Utils::wide(" ");
    text += Utils::wide(tail);
    text += Utils::hexadecimal(limit);
    text += Utils::wide(")");
    return text;
}

// The bytes of essence of the last body partition of a body SID, which must have a partition
// behind it.
inline uint64 lastBodySize(Partition & partition, Partition * partitionAfter)
{
    THROW_UNLESS(InvalidFormat, partitionAfter != 0,
                 "File has no footer. No partition found after the last body partition for this bodySID.");
    uint64 const body = partition.bodyAbsoluteOffset();
    uint64 const next = partitionAfter->partitionAbsoluteOffset();
    THROW_UNLESS(InvalidFormat, body <= next,
                 bodyBeyondText("Expected body absolute offset of last body partition 0x", body,
                                "is higher than begin of footer/next partition (0x", next));
    return next - body;
}
} // namespace Detail
} // namespace MXFIO
} // namespace Vellum
