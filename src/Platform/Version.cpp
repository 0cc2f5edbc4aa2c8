#include "Platform/Version.h"

namespace Vellum
{
namespace Version
{
unsigned short major()
{
    return 4;
}
unsigned short minor()
{
    return 2;
}
unsigned short patch()
{
    return 2;
}
unsigned short build()
{
    return 319;
}
Types::Release::ReleaseVersion releaseVersion()
{
    return Types::Release::PATCHED_VERSION;
}
unsigned short const * versionString()
{
    static unsigned short const text[] = {'4', '.', '2', '.', '2', '.', '3', '1', '9', 0};
    return text;
}
} // namespace Version
} // namespace Vellum
