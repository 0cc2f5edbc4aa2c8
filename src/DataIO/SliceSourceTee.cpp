#include "DataIO/SliceSourceTee.h"

namespace Vellum
{
namespace DataIO
{
struct SliceSourceTee::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(Templates::SharedPtr<SliceSource> const & source, SliceSink * s) : reader(source), sink(s), shown(0) {}

    SliceReader reader;
    SliceSink * sink;
    // Bytes shown to the sink.
    uint64 shown;
};

SliceSourceTee::SliceSourceTee(Templates::SharedPtr<SliceSource> source, SliceSink * sink)
    : impl_(new Impl(source, sink))
{
}

SliceSourceTee::~SliceSourceTee() = default;

Templates::auto_ptr<Slice> SliceSourceTee::read(uint64 size)
{
    Templates::auto_ptr<Slice> slice = impl_->reader.nextSlice(size);
    if (impl_->sink != nullptr && slice->size() != 0)
    {
        impl_->sink->write(Templates::auto_ptr<Slice>(new Slice(*slice)));
        impl_->shown += slice->size();
    }
    return slice;
}

uint64 SliceSourceTee::absoluteOffset() const
{
    return impl_->reader.absoluteOffset();
}

bool SliceSourceTee::endOfStream() const
{
    return impl_->reader.endOfStream();
}

uint64 SliceSourceTee::skip(uint64 size)
{
    if (impl_->sink == nullptr)
        return impl_->reader.skip(size);
    Chain skipped;
    impl_->reader.read(size, skipped);
    uint64 total = 0;
    while (!skipped.empty())
    {
        Templates::auto_ptr<Slice> slice = skipped.erase(skipped.begin());
        total += slice->size();
        impl_->shown += slice->size();
        impl_->sink->write(std::move(slice));
    }
    return total;
}
} // namespace DataIO
} // namespace Vellum
