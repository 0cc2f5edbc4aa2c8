#pragma once
// The key of the set that the metadata model itself looks for.
// Each returns a constant made once, on first use.

#include "KLV/Key.h"

namespace Vellum
{
namespace Metadata
{
namespace MetadataKeys
{
KLV::Key const & preface();
} // namespace MetadataKeys
} // namespace Metadata
} // namespace Vellum
