#pragma once
// The version of a product: major, minor, patch, build and release, five 16-bit numbers.

#include "Types/ReleaseVersion.h"
#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class ProductVersion : public SimpleDataType
{
public:
    // The kind of release in the fifth field; the same type as Version::releaseVersion() gives.
    typedef Release::ReleaseVersion ReleaseVersion;
    static constexpr ReleaseVersion UNKNOWN_VERSION = Release::UNKNOWN_VERSION;
    static constexpr ReleaseVersion RELEASED_VERSION = Release::RELEASED_VERSION;
    static constexpr ReleaseVersion DEVELOPMENT_VERSION = Release::DEVELOPMENT_VERSION;
    static constexpr ReleaseVersion PATCHED_VERSION = Release::PATCHED_VERSION;
    static constexpr ReleaseVersion BETA_VERSION = Release::BETA_VERSION;
    static constexpr ReleaseVersion PRIVATE_VERSION = Release::PRIVATE_VERSION;

    // Reads 10 bytes.
    explicit ProductVersion(KLV::Value & value);
    ProductVersion(unsigned short major, unsigned short minor, unsigned short patch, unsigned short build,
                   ReleaseVersion releaseVersion);

    unsigned short major() const;
    unsigned short minor() const;
    unsigned short patch() const;
    unsigned short build() const;
    // Any 16-bit number that the file holds.
    ReleaseVersion releaseVersion() const;

    VELLUM_VALUE_HANDLE(ProductVersion)
};
} // namespace Types
} // namespace Vellum
