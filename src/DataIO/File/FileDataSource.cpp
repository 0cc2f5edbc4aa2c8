#include "DataIO/File/FileDataSource.h"

#include "DataIO/File/FileImpl.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace DataIO
{
namespace File
{
struct FileDataSource::Impl : public FileImpl
{
    VELLUM_CLASS_ALLOCATION
    Impl(unsigned short const * path, int bufferSize) : FileImpl(path, Utils::wide("rb").c_str(), bufferSize) {}
};

FileDataSource::FileDataSource(unsigned short const * path, int bufferSize) : impl_(new Impl(path, bufferSize)) {}

FileDataSource::~FileDataSource() = default;

uint64 FileDataSource::absoluteOffset() const
{
    return impl_->absoluteOffset();
}

bool FileDataSource::endOfStream() const
{
    return impl_->remaining() == 0;
}

uint64 FileDataSource::read(unsigned char * buffer, uint64 size)
{
    return impl_->read(buffer, size);
}

uint64 FileDataSource::skip(uint64 size)
{
    uint64 from = impl_->absoluteOffset();
    // The seek stops at the end anyway; only the sum must not wrap.
    uint64 target = size > ~uint64(0) - from ? ~uint64(0) : from + size;
    return impl_->seek(target) - from;
}

uint64 FileDataSource::remaining() const
{
    return impl_->remaining();
}

void FileDataSource::discard()
{
    impl_->seek(impl_->absoluteOffset() + impl_->remaining());
}

uint64 FileDataSource::seek(uint64 position)
{
    return impl_->seek(position);
}
} // namespace File
} // namespace DataIO
} // namespace Vellum
