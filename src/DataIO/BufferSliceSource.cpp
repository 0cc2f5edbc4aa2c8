#include "DataIO/BufferSliceSource.h"

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace DataIO
{
struct BufferSliceSource::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl() : closed_(false), absoluteOffset(0) {}

    Chain queue;
    bool closed_;
    uint64 absoluteOffset;
};

BufferSliceSource::BufferSliceSource() : impl_(new Impl) {}

BufferSliceSource::~BufferSliceSource() = default;

void BufferSliceSource::write(Templates::auto_ptr<Slice> slice)
{
    THROW_UNLESS_TEXT(InvalidValue, !closed(), "this -> closed () == false", "BufferSliceSource already closed.");
    impl_->queue.push_back(std::move(slice));
}

Templates::auto_ptr<Slice> BufferSliceSource::read(uint64)
{
    if (impl_->queue.empty())
    {
        THROW_UNLESS_TEXT(InvalidValue, !impl_->closed_, "!impl_ -> closed_",
                          "BufferSliceSource::read: Source closed and empty!");
        return Templates::auto_ptr<Slice>(new Slice);
    }
    Templates::auto_ptr<Slice> head = impl_->queue.erase(impl_->queue.begin());
    impl_->absoluteOffset += head->size();
    return head;
}

uint64 BufferSliceSource::absoluteOffset() const
{
    return impl_->absoluteOffset;
}

bool BufferSliceSource::endOfStream() const
{
    return accessible() == 0 && impl_->closed_;
}

uint64 BufferSliceSource::skip(uint64 size)
{
    Chain & queue = impl_->queue;
    uint64 skipped = 0;
    while (skipped < size && !queue.empty())
    {
        Slice & head = *queue.begin();
        uint64 left = size - skipped;
        if (head.size() <= left)
        {
            skipped += head.size();
            queue.erase(queue.begin());
        }
        else
        {
            head.cropBegin(left);
            skipped += left;
        }
    }
    impl_->absoluteOffset += skipped;
    return skipped;
}

void BufferSliceSource::close()
{
    impl_->closed_ = true;
}

bool BufferSliceSource::closed() const
{
    return impl_->closed_;
}

uint64 BufferSliceSource::accessible() const
{
    return impl_->queue.data_size();
}
} // namespace DataIO
} // namespace Vellum
