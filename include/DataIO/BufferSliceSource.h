#pragma once
// A queue of slices: written at one end as a SliceSink, read at the other as a SliceSource.
// It has no lock of its own.

#include "DataIO/Chain.h"
#include "DataIO/SliceSource.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
class BufferSliceSource : public SliceSource, public SliceSink
{
public:
    VELLUM_CLASS_ALLOCATION
    BufferSliceSource();
    ~BufferSliceSource() override;

    // Queues the slice. Throws InvalidValue once closed.
    void write(Templates::auto_ptr<Slice> slice) override;
    // The slice at the head, whatever its size; an empty slice while the queue is empty.
    // Throws InvalidValue when closed and empty.
    Templates::auto_ptr<Slice> read(uint64 size) override;
    uint64 absoluteOffset() const override;
    // Closed, and nothing left.
    bool endOfStream() const override;
    // Skips at most what is queued; does not wait for more.
    uint64 skip(uint64 size) override;

    // No more writes after this.
    virtual void close();
    virtual bool closed() const;
    // Bytes queued.
    virtual uint64 accessible() const;

private:
    BufferSliceSource(BufferSliceSource const &) = delete;
    BufferSliceSource & operator=(BufferSliceSource const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace DataIO
} // namespace Vellum
