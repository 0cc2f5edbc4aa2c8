#include "DataIO/BufferAlignDataSource.h"

#include <cstring>

#include "Exceptions/Exceptions.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace DataIO
{
struct BufferAlignDataSource::Impl
{
    VELLUM_CLASS_ALLOCATION

    RandomAccessDataSource & source;
    uint32 align_;
    Templates::vector<unsigned char> buffer;
    // How many bytes of the buffer are valid.
    uint64 bufferFill;
    // The next byte of the buffer to hand out.
    uint64 bufferPosition;

    Impl(RandomAccessDataSource & below, unsigned int alignment, unsigned int bufferSize)
        : source(below), align_(alignment), bufferFill(0), bufferPosition(0)
    {
        THROW_UNLESS(InvalidValue, align_ > 0, "Alignment must be higher than zero");
        if (bufferSize == 0)
            THROW_UNLESS(InvalidValue, align_ == 1, "Alignment must be one if no buffer.");
        THROW_UNLESS(InvalidValue, align_ - 1 <= bufferSize, "Alignment size must be smaller than buffer size.");
        buffer.assign(bufferSize, 0);
    }

    uint64 absoluteOffset() const { return source.absoluteOffset() + bufferPosition - bufferFill; }

    uint64 read(unsigned char * out, uint64 size)
    {
        if (size == 0)
            return 0;
        uint64 const bufferSize = buffer.size();
        uint64 done = 0;
        while (done < size)
        {
            if (bufferFill > bufferPosition)
            {
                // Hand out what the buffer still holds.
                uint64 available = bufferFill - bufferPosition;
                uint64 wanted = size - done;
                uint64 n = available < wanted ? available : wanted;
                std::memcpy(out + done, buffer.data() + bufferPosition, size_t(n));
                done += n;
                bufferPosition += n;
                if (bufferPosition == bufferFill)
                    bufferPosition = bufferFill = 0;
                continue;
            }
            if (source.endOfStream())
                break;
            if (bufferSize < size - done && bufferPosition == 0)
            {
                // Large request at an aligned offset: whole alignments go straight to the caller.
                uint64 direct = ((size - done) / align_) * align_;
                uint64 got = source.read(out + done, direct);
                bufferFill = 0;
                done += got;
                // A source that claims more than it gives must not keep us here.
                if (got == 0)
                    break;
                continue;
            }
            uint64 left = source.remaining();
            uint64 c = left < bufferSize ? left : bufferSize;
            if (c == 0)
                break;
            bufferFill = source.read(buffer.data(), c);
            if (bufferFill == 0)
                break;
        }
        return done;
    }

    uint64 seek(uint64 target)
    {
        uint64 s = source.absoluteOffset();
        if (s + bufferPosition - bufferFill == target)
            return target;
        if (bufferFill <= s && target > s - bufferFill && target <= s)
        {
            // Still in the buffer. Its first byte fails the strict test and reloads below.
            bufferPosition = bufferFill - s + target;
            if (bufferPosition == bufferFill)
                bufferPosition = bufferFill = 0;
            return target;
        }
        uint64 end = s + source.remaining();
        uint64 t = target < end ? target : end;
        bufferPosition = t % align_;
        bufferFill = 0;
        return source.seek(t - bufferPosition) + bufferPosition;
    }

    uint64 skip(uint64 size)
    {
        if (bufferFill > bufferPosition && size < bufferFill - bufferPosition)
        {
            bufferPosition += size;
            return size;
        }
        uint64 logical = absoluteOffset();
        // The seek stops at the end anyway; only the sum must not wrap.
        uint64 target = size > ~uint64(0) - logical ? ~uint64(0) : logical + size;
        return seek(target) - logical;
    }
};

BufferAlignDataSource::BufferAlignDataSource(RandomAccessDataSource & source, unsigned int alignment,
                                             unsigned int bufferSize)
    : impl_(new Impl(source, alignment, bufferSize))
{
}

BufferAlignDataSource::~BufferAlignDataSource() = default;

uint64 BufferAlignDataSource::absoluteOffset() const
{
    return impl_->absoluteOffset();
}

bool BufferAlignDataSource::endOfStream() const
{
    if (impl_->source.endOfStream() && impl_->absoluteOffset() == impl_->source.absoluteOffset())
        return true;
    // A seek to an end that is not aligned leaves the source short of it, on the aligned offset
    // before, with nothing left to hand out: that is the end as well.
    return remaining() == 0;
}

uint64 BufferAlignDataSource::read(unsigned char * buffer, uint64 size)
{
    return impl_->read(buffer, size);
}

uint64 BufferAlignDataSource::skip(uint64 size)
{
    return impl_->skip(size);
}

uint64 BufferAlignDataSource::remaining() const
{
    return impl_->source.remaining() + impl_->bufferFill - impl_->bufferPosition;
}

void BufferAlignDataSource::discard()
{
    skip(remaining());
}

uint64 BufferAlignDataSource::seek(uint64 position)
{
    return impl_->seek(position);
}
} // namespace DataIO
} // namespace Vellum
