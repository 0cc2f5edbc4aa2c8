#pragma once
// While an object of this class lives, generated UUIDs and UMIDs come from a counter that starts
// afresh at 1, and the platform's name is "win32": output can be compared byte for byte.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace Utils
{
namespace Test
{
class DeterministicScope
{
public:
    VELLUM_CLASS_ALLOCATION
    DeterministicScope();
    // Back to generated identifiers and the real platform name.
    ~DeterministicScope();
    DeterministicScope(DeterministicScope const &) = delete;
    DeterministicScope & operator=(DeterministicScope const &) = delete;
};
} // namespace Test
} // namespace Utils
} // namespace Vellum
