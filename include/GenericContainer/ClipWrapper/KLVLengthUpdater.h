#pragma once
// Fixes the key and length of a clip once its length is known: the writer runs it when it can
// seek, and it hands over the finished KL to write over the placeholder.

#include "DataIO/Slice.h"
#include "MXFIO/FutureUpdater.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace GenericContainer
{
namespace ClipWrapper
{
class KLVLengthUpdater : public MXFIO::FutureUpdater
{
public:
    KLVLengthUpdater();
    ~KLVLengthUpdater() override;

    // Moves the finished KL to the end of `patch`; it goes where the clip went.
    uint64 apply(uint64 position, DataIO::Chain & patch) override;
    bool pending() const override;

    // The finished KL.
    void kl(Templates::auto_ptr<DataIO::Slice> slice);

private:
    Templates::auto_ptr<DataIO::Slice> kl_;
};
} // namespace ClipWrapper
} // namespace GenericContainer
} // namespace Vellum
