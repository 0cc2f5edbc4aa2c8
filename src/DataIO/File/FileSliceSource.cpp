#include "DataIO/File/FileSliceSource.h"

#include "DataIO/File/FileImpl.h"
#include "DataIO/Memory/MemoryBlock.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace DataIO
{
namespace File
{
struct FileSliceSource::Impl : public FileImpl
{
    VELLUM_CLASS_ALLOCATION
    Impl(unsigned short const * path, Templates::SharedPtr<BlockFactory> const & blockFactory, uint64 minimum,
         uint64 maximum)
        : FileImpl(path, Utils::wide("rb").c_str(), -1), factory(blockFactory),
          minimumRead(minimum != 0 ? minimum : uint64(DEFAULT_MINIMUM_READ)),
          maximumRead(maximum != 0 ? maximum : uint64(DEFAULT_MAXIMUM_READ))
    {
    }

    Templates::SharedPtr<BlockFactory> factory;
    uint64 minimumRead;
    uint64 maximumRead;
};

namespace
{
Templates::SharedPtr<BlockFactory> memoryBlocks()
{
    // The factory is a singleton: the pointer does not own it.
    return Templates::SharedPtr<BlockFactory>(&Memory::MemoryBlockFactory::instance(), false);
}
} // namespace

FileSliceSource::FileSliceSource(unsigned short const * path, uint64 minimumRead, uint64 maximumRead)
    : impl_(new Impl(path, memoryBlocks(), minimumRead, maximumRead))
{
}

FileSliceSource::FileSliceSource(unsigned short const * path, Templates::SharedPtr<BlockFactory> factory,
                                 uint64 minimumRead, uint64 maximumRead)
    : impl_(new Impl(path, factory, minimumRead, maximumRead))
{
}

FileSliceSource::~FileSliceSource() = default;

Templates::auto_ptr<Slice> FileSliceSource::read(uint64 size)
{
    uint64 wanted = size < impl_->minimumRead ? impl_->minimumRead : size;
    if (wanted > impl_->maximumRead)
        wanted = impl_->maximumRead;
    // No block larger than what the file still holds.
    uint64 left = impl_->remaining();
    if (wanted > left)
        wanted = left;
    if (wanted == 0)
        return Templates::auto_ptr<Slice>(new Slice);
    BlockHolder block = impl_->factory->create(wanted);
    uint64 got = impl_->read(block->data(), wanted);
    return Templates::auto_ptr<Slice>(new Slice(block.block(), 0, got));
}

uint64 FileSliceSource::absoluteOffset() const
{
    return impl_->absoluteOffset();
}

bool FileSliceSource::endOfStream() const
{
    return impl_->remaining() == 0;
}

uint64 FileSliceSource::skip(uint64 size)
{
    uint64 offset = impl_->absoluteOffset();
    uint64 left = impl_->remaining();
    return impl_->seek(offset + (size < left ? size : left)) - offset;
}
} // namespace File
} // namespace DataIO
} // namespace Vellum
