#pragma once
// Labels of the elements of an index table segment.
// Each returns a constant made once, on first use.

#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace IndexTablesULs
{
Types::UniversalLabel const & deltaEntryArray();
Types::UniversalLabel const & editUnitByteCount();
Types::UniversalLabel const & indexDuration();
Types::UniversalLabel const & indexEditRate();
Types::UniversalLabel const & indexEntryArray();
Types::UniversalLabel const & indexStartPosition();
Types::UniversalLabel const & positionTableCount();
Types::UniversalLabel const & sliceCount();
} // namespace IndexTablesULs
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
