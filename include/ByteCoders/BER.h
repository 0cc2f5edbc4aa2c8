#pragma once
// BER lengths as KLV packets carry them: one byte for lengths up to 0x7F, otherwise a first byte
// 0x80 | n followed by n bytes of big-endian length.

#include "Platform/Types.h"

namespace Vellum
{
namespace ByteCoders
{
// How many bytes the shortest BER form of `length` takes, the first byte included.
unsigned char calculateBERSize(uint64 length);

// Writes `value` as a BER length of exactly `size` bytes (1 to 9) to `out`. A value that does not
// fit is cut on the left. Throws InvalidFormat "Invalid BER size" for a size of 0 or over 9.
void codeBER(uint64 value, unsigned char size, unsigned char * out);

// The size of a whole BER field, told by its first byte. Throws InvalidFormat
// "Invalid BER size: 0x80" (or 0xff) for the indefinite and the reserved form.
unsigned char decodeBERSize(unsigned char first);

// Reads a BER field of `size` bytes whose first byte is `in[0]`.
void decodeBER(unsigned char const * in, unsigned char size, uint64 & out);
} // namespace ByteCoders
} // namespace Vellum
