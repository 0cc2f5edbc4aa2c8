#pragma once
// UMIDs of all zero bytes, which stand for "no package".

#include "Types/UMID.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace DistiguishedValue
{
// 32 zero bytes.
Types::UMID32 const & nullUMID32();
} // namespace DistiguishedValue

namespace NullValues
{
// 64 zero bytes.
Types::UMID64 const & nullUMID64();
} // namespace NullValues
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
