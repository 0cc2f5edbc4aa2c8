#pragma once
// The index that every partition starts with: instance UIDs, this generation UIDs, linked
// package UIDs, track IDs and package UIDs.

#include "Metadata/Listeners/BaseMetadataIndexListener.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
class DefaultMetadataIndexListener : public BaseMetadataIndexListener
{
public:
    VELLUM_CLASS_ALLOCATION
    DefaultMetadataIndexListener();
    ~DefaultMetadataIndexListener() override;

    bool isIndexed(Types::UniversalLabel const & label) override;

private:
    DefaultMetadataIndexListener(DefaultMetadataIndexListener const &) = delete;
    DefaultMetadataIndexListener & operator=(DefaultMetadataIndexListener const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
