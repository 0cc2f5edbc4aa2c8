#include "DataIO/File/FileDataSink.h"

#include "DataIO/File/FileImpl.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace DataIO
{
namespace File
{
struct FileDataSink::Impl : public FileImpl
{
    VELLUM_CLASS_ALLOCATION
    Impl(unsigned short const * path, bool append, int bufferSize)
        : FileImpl(path, Utils::wide(append ? "r+b" : "wb").c_str(), bufferSize)
    {
        // Appending writes behind what is there.
        if (append)
            seek(remaining());
    }
};

FileDataSink::FileDataSink(unsigned short const * path, bool append, int bufferSize)
    : impl_(new Impl(path, append, bufferSize))
{
}

FileDataSink::~FileDataSink() = default;

void FileDataSink::write(unsigned char const * data, uint64 size)
{
    impl_->write(data, size);
}

uint64 FileDataSink::absoluteOffset() const
{
    return impl_->absoluteOffset();
}

uint64 FileDataSink::seek(uint64 position)
{
    return impl_->seek(position);
}

void FileDataSink::flush()
{
    impl_->flush();
}
} // namespace File
} // namespace DataIO
} // namespace Vellum
