#pragma once
// Wrong use of the structural helpers ends the process: the condition and the message go to the
// standard error stream with the source position, then the process aborts.

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace Detail
{
[[noreturn]] void failAssertion(char const * condition, char const * message, char const * file, int line);
} // namespace Detail
} // namespace Structural
} // namespace Metadata
} // namespace Vellum

#define VELLUM_STRUCTURAL_ASSERT(condition, message)                                              \
    do                                                                                            \
    {                                                                                             \
        if (!(condition))                                                                         \
            ::Vellum::Metadata::Structural::Detail::failAssertion(#condition, message, __FILE__, __LINE__); \
    } while (false)

#define VELLUM_STRUCTURAL_ASSERT_TEXT(condition, conditionText, message)                          \
    do                                                                                            \
    {                                                                                             \
        if (!(condition))                                                                         \
            ::Vellum::Metadata::Structural::Detail::failAssertion(conditionText, message, __FILE__, __LINE__); \
    } while (false)
