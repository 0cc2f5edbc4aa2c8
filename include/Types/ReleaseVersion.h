#pragma once
// The kinds of release that the fifth field of a product version tells.

namespace Vellum
{
namespace Types
{
namespace Release
{
// Sixteen bits wide, as the field that carries it: any number read from a file is a value.
enum ReleaseVersion : unsigned short
{
    UNKNOWN_VERSION = 0,
    RELEASED_VERSION = 1,
    DEVELOPMENT_VERSION = 2,
    PATCHED_VERSION = 3,
    BETA_VERSION = 4,
    PRIVATE_VERSION = 5
};
} // namespace Release
} // namespace Types
} // namespace Vellum
