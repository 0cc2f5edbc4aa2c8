#include "KLV/Value.h"

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace KLV
{
struct Value::Impl
{
    VELLUM_CLASS_ALLOCATION
    DataIO::DataSource * source;
    uint64 length;
    uint64 startOffset;

    // Where the value ends; a length that would run past the largest offset stops there.
    uint64 endOffset() const
    {
        uint64 const largest = ~uint64(0);
        return length > largest - startOffset ? largest : startOffset + length;
    }
};

Value::Value(DataIO::DataSource & source, uint64 length) : impl_(new Impl)
{
    impl_->source = &source;
    impl_->length = length;
    impl_->startOffset = source.absoluteOffset();
}

Value::~Value()
{
    try
    {
        uint64 left = remaining();
        if (left != 0)
            impl_->source->skip(left);
    }
    catch (...)
    {
    }
}

uint64 Value::absoluteOffset() const
{
    return impl_->source->absoluteOffset();
}

bool Value::endOfStream() const
{
    return remaining() == 0;
}

uint64 Value::read(unsigned char * buffer, uint64 size)
{
    uint64 left = remaining();
    uint64 wanted = size < left ? size : left;
    if (wanted == 0)
        return 0;
    return impl_->source->read(buffer, wanted);
}

uint64 Value::skip(uint64 size)
{
    uint64 left = remaining();
    uint64 wanted = size < left ? size : left;
    if (wanted == 0)
        return 0;
    return impl_->source->skip(wanted);
}

uint64 Value::remaining() const
{
    uint64 end = impl_->endOffset();
    uint64 offset = impl_->source->absoluteOffset();
    return offset > end ? 0 : end - offset;
}

void Value::discard()
{
    skip(remaining());
}

void Value::readValue(unsigned char * out, uint64 size)
{
    uint64 done = 0;
    while (done < size)
    {
        uint64 got = read(out + done, size - done);
        if (got == 0)
            throw Exceptions::InvalidLength(out, done, "Invalid data size in Value", __FILE__, __LINE__);
        done += got;
    }
}

uint64 Value::totalLength() const
{
    return impl_->length;
}
} // namespace KLV
} // namespace Vellum
