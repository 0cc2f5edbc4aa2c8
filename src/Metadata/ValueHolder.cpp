#include "Metadata/ValueHolder.h"

namespace Vellum
{
namespace Metadata
{
void ValueHolder::checkIfValueIsInEnumeration(Types::SimpleDataType const &) const
{
    // The schema's enumeration is readable through metaValueHolder(), but it is not enforced.
}
} // namespace Metadata
} // namespace Vellum
