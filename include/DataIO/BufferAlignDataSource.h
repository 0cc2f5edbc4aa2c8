#pragma once
// Byte-exact reading over a source that may only be read at multiples of an alignment, such as a
// file opened for direct access with sector alignment.

#include "DataIO/DataSource.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
// Reads the source below in whole buffers from aligned offsets and hands out any byte range.
// Requests larger than the buffer go straight into the caller's buffer, in whole alignments.
// The source is not owned and must outlive this object. For the reads below to stay aligned the
// buffer size should be a multiple of the alignment.
class BufferAlignDataSource : public RandomAccessDataSource
{
public:
    VELLUM_CLASS_ALLOCATION
    // alignment above 0; a bufferSize of 0 needs an alignment of 1 (every read passes through);
    // otherwise the alignment may exceed the buffer size by one at most.
    BufferAlignDataSource(RandomAccessDataSource & source, unsigned int alignment, unsigned int bufferSize);
    ~BufferAlignDataSource() override;

    uint64 absoluteOffset() const override;
    bool endOfStream() const override;
    uint64 read(unsigned char * buffer, uint64 size) override;
    uint64 skip(uint64 size) override;
    uint64 remaining() const override;
    void discard() override;
    uint64 seek(uint64 position) override;

private:
    BufferAlignDataSource(BufferAlignDataSource const &) = delete;
    BufferAlignDataSource & operator=(BufferAlignDataSource const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace DataIO
} // namespace Vellum
