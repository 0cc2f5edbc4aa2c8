#pragma once
// Fill items and alignment to the KLV Alignment Grid (KAG).

#include "DataIO/DataSink.h"
#include "Platform/Types.h"

namespace Vellum
{
namespace Utils
{
// Writes one fill packet of exactly `totalSize` bytes: the fill key, a length field of
// `berLength` bytes, and zeros. Throws InvalidValue when it cannot be that small or the length
// field cannot hold the value's length; nothing is written then.
void writeFillKLV(DataIO::DataSink & sink, uint64 totalSize, unsigned char berLength);

// Pads the sink with one fill packet up to the next multiple of `kag` (0 counts as 1). When the
// gap is too small for a fill packet the padding runs over one or more further grid steps. An
// aligned position gets nothing.
void kagAlign(DataIO::DataSink & sink, unsigned int kag, unsigned char berLength);

// The padding that alignment at `position` needs: 0 when aligned, else the distance to the next
// grid point, grown by whole grid steps until it is at least `minimum`.
uint64 alignBytes(unsigned kag, uint64 position, unsigned minimum);
} // namespace Utils
} // namespace Vellum
