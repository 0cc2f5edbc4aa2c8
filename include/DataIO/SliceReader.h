#pragma once
// Reads a SliceSource in pieces of the caller's choosing, with push-back. Bytes are copied only
// when a read must join pieces across a seam.

#include "DataIO/Chain.h"
#include "DataIO/SliceSource.h"
#include "Templates/AutoPtr.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace DataIO
{
class SliceReader : public SliceSource
{
public:
    explicit SliceReader(Templates::SharedPtr<SliceSource> source);
    ~SliceReader() override;

    // Exactly `size` bytes as one slice: shared with the source when they lie in one piece,
    // else joined in a new block. Throws NotEnoughData when the source ends first; the bytes
    // taken so far stay in the reader.
    Templates::auto_ptr<Slice> read(uint64 size) override;
    // Appends up to `size` bytes to `out` as the pieces come, without copying; fewer only when
    // the source ends.
    void read(uint64 size, Chain & out);
    // The next contiguous piece of at most `size` bytes; may be shorter.
    Templates::auto_ptr<Slice> nextSlice(uint64 size);
    // The next piece of at most `size` bytes, never ending between two multiples of
    // `alignment`: a short piece is cut at its last multiple, or joined up to `alignment`
    // bytes across the seam.
    Templates::auto_ptr<Slice> nextSliceAligned(uint64 size, uint64 alignment);
    // Exactly `size` bytes as one slice, as read() gives them: the piece never ends short of
    // the one multiple asked for.
    Templates::auto_ptr<Slice> readAligned(uint64 size);
    // Puts bytes back in front of what is still to be read. Empty slices are dropped.
    void unget(Templates::auto_ptr<Slice> slice);
    // The same for a whole chain, which is left empty.
    void unget(Chain & chain);
    // Bytes pushed back or read ahead and not yet handed out.
    uint64 cachedSize() const;

    uint64 absoluteOffset() const override;
    bool endOfStream() const override;
    uint64 skip(uint64 size) override;

protected:
    SliceSource & source() const;

private:
    SliceReader(SliceReader const &) = delete;
    SliceReader & operator=(SliceReader const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace DataIO
} // namespace Vellum
