#pragma once
// The makers of the identifier types, registered by the BaseTypeFactory when it is made.

namespace Vellum
{
namespace Types
{
namespace Factories
{
class BaseTypeFactory;

// Registers fixed-size makers for Key (10), LocalTag (12), UMID32 (21), UMID64 (22), UL (23),
// UUID (27), StrongReference (29) and WeakReference (30).
void registerIdentifierMakers(BaseTypeFactory & factory);
} // namespace Factories
} // namespace Types
} // namespace Vellum
