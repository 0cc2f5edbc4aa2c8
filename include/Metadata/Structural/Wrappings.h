#pragma once
// Essence container labels that the structural code itself needs.

#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace Wrappings
{
// The essence container of a file that holds more than one wrapping:
// 06.0e.2b.34.04.01.01.03.0d.01.03.01.02.7f.01.00.
Types::UniversalLabel const & multipleWrapping();
} // namespace Wrappings
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
