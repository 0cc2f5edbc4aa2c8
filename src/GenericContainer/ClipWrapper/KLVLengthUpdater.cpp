// The deferred key and length of a clip.

#include "GenericContainer/ClipWrapper/KLVLengthUpdater.h"

#include "DataIO/Chain.h"

namespace Vellum
{
namespace GenericContainer
{
namespace ClipWrapper
{
KLVLengthUpdater::KLVLengthUpdater() {}

KLVLengthUpdater::~KLVLengthUpdater() {}

uint64 KLVLengthUpdater::apply(uint64 position, DataIO::Chain & patch)
{
    if (kl_.get() != nullptr)
        patch.push_back(std::move(kl_));
    return position;
}

bool KLVLengthUpdater::pending() const { return kl_.get() != nullptr; }

void KLVLengthUpdater::kl(Templates::auto_ptr<DataIO::Slice> slice) { kl_ = std::move(slice); }
} // namespace ClipWrapper
} // namespace GenericContainer
} // namespace Vellum
