#pragma once
// The source of a frame wrapped container: content packages with 4-byte BER lengths.

#include "GenericContainer/BaseWorkerImpl.h"

namespace Vellum
{
namespace GenericContainer
{
namespace Multiplexer
{
class FrameWorker_impl : public BaseWorkerImpl
{
public:
    explicit FrameWorker_impl(ContainerData const & data);
    ~FrameWorker_impl() override;
};
} // namespace Multiplexer
} // namespace GenericContainer
} // namespace Vellum
