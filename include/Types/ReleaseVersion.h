#pragma once
// The kinds of release that the fifth field of a product version tells.

namespace Vellum
{
namespace Types
{
namespace Release
{
enum ReleaseVersion
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
