// Stands in for the identifier makers until the identifier types are part of the library.
#include "Types/IdentifierMakers.h"

namespace Vellum
{
namespace Types
{
namespace Factories
{
void registerIdentifierMakers(BaseTypeFactory &)
{
}
} // namespace Factories
} // namespace Types
} // namespace Vellum
