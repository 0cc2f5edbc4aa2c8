#pragma once
// Labels that the metadata model itself uses, without the structural classes. null() is
// sixteen zero bytes and stands for no label.
// Each returns a constant made once, on first use.

#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
namespace MetadataULs
{
Types::UniversalLabel const & instanceUID();
Types::UniversalLabel const & linkedPackageUID();
Types::UniversalLabel const & null();
Types::UniversalLabel const & packageUID();
Types::UniversalLabel const & packages();
Types::UniversalLabel const & thisGenerationUID();
Types::UniversalLabel const & trackID();
} // namespace MetadataULs
} // namespace Metadata
} // namespace Vellum
