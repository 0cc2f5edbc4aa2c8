#pragma once
// The library's own version.

#include "Types/ReleaseVersion.h"

namespace Vellum
{
namespace Version
{
unsigned short major();
unsigned short minor();
unsigned short patch();
unsigned short build();
Types::Release::ReleaseVersion releaseVersion();
// "4.2.2.319"
unsigned short const * versionString();
} // namespace Version
} // namespace Vellum
