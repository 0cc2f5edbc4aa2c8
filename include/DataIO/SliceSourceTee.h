#pragma once
// A SliceSource that shows every byte passing through it, read or skipped, to a SliceSink.

#include "DataIO/SliceReader.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
class SliceSourceTee : public SliceSource
{
public:
    // The sink is not owned; null shows nothing.
    SliceSourceTee(Templates::SharedPtr<SliceSource> source, SliceSink * sink);
    ~SliceSourceTee() override;

    // At most `size` bytes in one piece; the sink gets a slice on the same bytes.
    Templates::auto_ptr<Slice> read(uint64 size) override;
    uint64 absoluteOffset() const override;
    bool endOfStream() const override;
    // With a sink, the skipped bytes are read and shown to it.
    uint64 skip(uint64 size) override;

private:
    SliceSourceTee(SliceSourceTee const &) = delete;
    SliceSourceTee & operator=(SliceSourceTee const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace DataIO
} // namespace Vellum
