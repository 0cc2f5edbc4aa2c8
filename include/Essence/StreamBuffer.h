#pragma once
// Reads an elementary stream in large blocks and keeps the blocks that a parser still looks at.
// Positions count the bytes of the stream from the first one read. The bytes of a unit go out as
// slices of the blocks: a unit that spans two blocks is two slices, and nothing is copied.

#include "DataIO/Chain.h"
#include "DataIO/DataSource.h"
#include "DataIO/SliceSource.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Essence
{
class StreamBuffer
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        DEFAULT_BLOCK_SIZE = 1 << 20
    };

    // Reads the slice source, asking for `blockSize` bytes at a time (0: 1 MiB).
    explicit StreamBuffer(Templates::SharedPtr<DataIO::SliceSource> source, uint64 blockSize = 0);
    // Reads the byte source into blocks of `blockSize` bytes (0: 1 MiB).
    explicit StreamBuffer(Templates::SharedPtr<DataIO::DataSource> source, uint64 blockSize = 0);
    ~StreamBuffer();

    // Reads until the bytes before `end` are held or the source ends; true when they are held.
    bool fill(uint64 end);
    // The first byte held, and the position behind the last one read.
    uint64 begin() const { return begin_; }
    uint64 end() const { return end_; }
    // The source has nothing more to give.
    bool exhausted() const { return exhausted_; }

    // The contiguous bytes from `position` to the end of its block; `position` must be held.
    unsigned char const * piece(uint64 position, uint64 & size) const;
    // The byte at `position`, which must be held.
    unsigned char at(uint64 position) const;
    // Copies `size` bytes from `position` (a header to parse); false when the stream ends first.
    bool copy(uint64 position, uint64 size, unsigned char * out);
    // Appends the bytes [from, to), which must be held, to `out` as slices of the blocks.
    void chain(uint64 from, uint64 to, DataIO::Chain & out) const;
    // Gives up the blocks that end at or before `position`.
    void release(uint64 position);
    // Reads up to `position` without keeping what lies before it; false when the stream ends
    // first.
    bool skipTo(uint64 position);

private:
    StreamBuffer(StreamBuffer const &) = delete;
    StreamBuffer & operator=(StreamBuffer const &) = delete;

    // Reads one more block; false at the end of the source.
    bool readBlock();
    // The index of the block that holds `position`.
    std::size_t blockOf(uint64 position) const;

    Templates::SharedPtr<DataIO::SliceSource> slices_;
    Templates::SharedPtr<DataIO::DataSource> bytes_;
    // The blocks that the byte source is read into.
    Templates::SharedPtr<DataIO::BlockFactory> pool_;
    uint64 blockSize_;
    // The blocks held, in order, and the stream position of each one's first byte.
    Templates::vector<Templates::auto_ptr<DataIO::Slice>> blocks_;
    Templates::vector<uint64> starts_;
    uint64 begin_;
    uint64 end_;
    bool exhausted_;
};
} // namespace Essence
} // namespace Vellum
