#pragma once
// Reads a file in large blocks and hands them out as slices, without a copy beyond the block.

#include "DataIO/Block.h"
#include "DataIO/SliceSource.h"
#include "Templates/AutoPtr.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace DataIO
{
namespace File
{
class FileSliceSource : public SliceSource
{
public:
    enum
    {
        DEFAULT_MINIMUM_READ = 0x10000,
        DEFAULT_MAXIMUM_READ = 0x200000
    };

    // Blocks from the MemoryBlockFactory. A read takes at least `minimumRead` and at most
    // `maximumRead` bytes from the file; 0 stands for 64 KiB and 2 MiB.
    explicit FileSliceSource(unsigned short const * path, uint64 minimumRead = 0, uint64 maximumRead = 0);
    FileSliceSource(unsigned short const * path, Templates::SharedPtr<BlockFactory> factory, uint64 minimumRead = 0,
                    uint64 maximumRead = 0);
    ~FileSliceSource() override;

    // A slice of what one read of the file gave: `size` bytes raised to the smallest and
    // capped at the largest read, fewer at the end of the file; an empty slice at the end.
    Templates::auto_ptr<Slice> read(uint64 size) override;
    uint64 absoluteOffset() const override;
    bool endOfStream() const override;
    uint64 skip(uint64 size) override;

private:
    FileSliceSource(FileSliceSource const &) = delete;
    FileSliceSource & operator=(FileSliceSource const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace File
} // namespace DataIO
} // namespace Vellum
