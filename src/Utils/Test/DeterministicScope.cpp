#include "Utils/Test/DeterministicScope.h"

#include "Platform/Initializer.h"
#include "Platform/Platform.h"
#include "Platform/Services.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Utils
{
namespace Test
{
DeterministicScope::DeterministicScope()
{
    Platform::Synchronization::ScopedLock lock(Initializer::instance().singletonMutex());
    Platform::setenv(wide("deterministic_uids").c_str(), wide("true").c_str());
    Platform::setenv(wide("VELLUM_PLATFORM_NAME").c_str(), wide("win32").c_str());
    Platform::Services::Counting::Counter::counter("Vellum_Deterministic_Counter").reset();
}

DeterministicScope::~DeterministicScope()
{
    try
    {
        Platform::Synchronization::ScopedLock lock(Initializer::instance().singletonMutex());
        Platform::setenv(wide("deterministic_uids").c_str(), wide("false").c_str());
        Platform::setenv(wide("VELLUM_PLATFORM_NAME").c_str(), wide("").c_str());
    }
    catch (...)
    {
        // Out of memory while building the names: the environment stays as it is.
    }
}
} // namespace Test
} // namespace Utils
} // namespace Vellum
