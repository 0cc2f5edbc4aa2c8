#pragma once
// Packed binary coded decimal: two decimal digits to a byte, the more significant digit in the
// high nibble, the most significant byte first.

namespace Vellum
{
namespace ByteCoders
{
// Writes the six low decimal digits of `value` (0 or more) to out[0..2]; a Modified Julian Date
// fits in them. A negative value throws InvalidValue.
void encodeBCD(unsigned char * out, int value);

// Reads `size` bytes (at most 4, so eight digits) of packed BCD into `out`. A nibble above 9
// throws InvalidFormat "Invalid BCD digit"; a size over 4 throws InvalidValue.
void decodeBCD(unsigned char const * in, unsigned short size, int & out);
} // namespace ByteCoders
} // namespace Vellum
