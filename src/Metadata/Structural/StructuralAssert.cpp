// The end of the process on a wrong use of the structural helpers.

#include "Metadata/Structural/StructuralAssert.h"

#include <cstdio>
#include <cstdlib>

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace Detail
{
void failAssertion(char const * condition, char const * message, char const * file, int line)
{
    std::fprintf(stderr, "Assertion failed (%s:%d): %s: %s\n", file, line, condition, message);
    std::fflush(stderr);
    std::abort();
}
} // namespace Detail
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
