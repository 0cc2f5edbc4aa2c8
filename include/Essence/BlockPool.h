#pragma once
// Blocks whose memory goes back to a pool when their last reference goes, and comes out again for
// the next block: a reader of a long stream touches the same few megabytes over and over instead of
// fresh pages. The pool lives as long as the last of its blocks.

#include "DataIO/Block.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Essence
{
class BlockPool : public DataIO::BlockFactory
{
public:
    VELLUM_CLASS_ALLOCATION
    // Keeps at most `keep` free buffers of `blockSize` bytes.
    explicit BlockPool(uint64 blockSize, unsigned keep = 8);
    ~BlockPool() override;

    // A block of `size` bytes; one of the pool's buffers when it is no larger than the pool's
    // block size.
    DataIO::BlockHolder create(uint64 size) override;

    struct State;

private:
    BlockPool(BlockPool const &) = delete;
    BlockPool & operator=(BlockPool const &) = delete;

    Templates::SharedPtr<State> state_;
};
} // namespace Essence
} // namespace Vellum
