#pragma once
// The data definitions of tracks and components.
// Each returns a constant made once, on first use.

#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace DataDefinitionULs
{
Types::UniversalLabel const & audio();
Types::UniversalLabel const & auxiliaryData();
Types::UniversalLabel const & data();
Types::UniversalLabel const & descriptiveMetadata();
Types::UniversalLabel const & parsedText();
Types::UniversalLabel const & picture();
Types::UniversalLabel const & timecode12MActive();
Types::UniversalLabel const & timecode12MInactive();
Types::UniversalLabel const & timecode309M();
} // namespace DataDefinitionULs
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
