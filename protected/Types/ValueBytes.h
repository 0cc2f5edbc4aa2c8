#pragma once
// Reading the opaque rest of a value without trusting the length that the file claims for it.

#include "KLV/Value.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Types
{
namespace ValueBytes
{
// Appends all that remains of the value to `out`. The buffer grows as bytes arrive, so a length
// claimed by a damaged file sizes no allocation. A value that ends early throws InvalidLength
// "Invalid data size in Value" carrying every byte appended to `out`.
void readRemaining(KLV::Value & value, Templates::vector<unsigned char> & out);

// Appends what the source still delivers of the value to `out`, and never fails for lack of data.
void readAvailable(KLV::Value & value, Templates::vector<unsigned char> & out);
} // namespace ValueBytes
} // namespace Types
} // namespace Vellum
