#include "DataIO/File/FileImpl.h"

#include <memory>

#include "Exceptions/Exceptions.h"
#include "Platform/Platform.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace DataIO
{
namespace File
{
namespace
{
// "<lead><path><tail><system text>". The system text is taken first, before any allocation
// can disturb the error number.
Templates::wstring pathMessage(char const * lead, unsigned short const * path, char const * tail)
{
    Templates::wstring systemText = Platform::lastErrorMessage();
    Templates::wstring text = Utils::wide(lead);
    text += path;
    text += Utils::wide(tail);
    text += systemText;
    return text;
}

// "<lead><system text>", with the same care.
Templates::wstring systemMessage(char const * lead)
{
    Templates::wstring systemText = Platform::lastErrorMessage();
    Templates::wstring text = Utils::wide(lead);
    text += systemText;
    return text;
}
// "rb" and the like: a stream that is only read has nothing to flush before a seek.
bool isReadOnlyMode(unsigned short const * mode)
{
    if (mode == nullptr || mode[0] != 'r')
        return false;
    for (unsigned short const * m = mode; *m != 0; ++m)
        if (*m == '+')
            return false;
    return true;
}
} // namespace

FileImpl::FileImpl(unsigned short const * path, unsigned short const * mode, int bufferSize)
    : position(0), file_(nullptr), size(0), readOnly_(isReadOnlyMode(mode))
{
    file_ = Platform::fopen(path, mode);
    THROW_UNLESS(IOError, file_ != 0, pathMessage("Error opening: '", path, "'. "));
    // Closes the file should the rest of the construction throw.
    std::unique_ptr<FILE, int (*)(FILE *)> guard(file_, &std::fclose);
    int64 sizeResult = Platform::getFileSize(file_);
    THROW_UNLESS(IOError, sizeResult != -1L, pathMessage("Error getting file length: '", path, "'. "));
    size = uint64(sizeResult);
    if (bufferSize == 0)
        THROW_UNLESS(InvalidValue, ::setvbuf(file_, 0, _IONBF, 0) == 0,
                     pathMessage("Error setting buffering mode in file: '", path, "'. "));
    else if (bufferSize > 0)
    {
        buffer_.resize(size_t(bufferSize));
        THROW_UNLESS(InvalidValue, ::setvbuf(file_, buffer_.data(), _IOFBF, buffer_.size()) == 0,
                     pathMessage("Error setting buffering mode in file: '", path, "'. "));
    }
    guard.release();
}

FileImpl::~FileImpl()
{
    if (file_ != nullptr)
        std::fclose(file_);
}

uint64 FileImpl::read(unsigned char * buffer, uint64 wanted)
{
    uint64 howMuch = wanted < remaining() ? wanted : remaining();
    if (howMuch == 0)
        return 0;
    uint64 got = std::fread(buffer, 1, size_t(howMuch), file_);
    position += got;
    if (got < wanted && std::ferror(file_))
    {
        Templates::wstring text = systemMessage("Error reading from file. ");
        std::clearerr(file_);
        throw Exceptions::IOError(text.c_str(), __FILE__, __LINE__);
    }
    return got;
}

void FileImpl::write(unsigned char const * data, uint64 howMuch)
{
    if (howMuch == 0)
        return;
    uint64 writeResult = std::fwrite(data, 1, size_t(howMuch), file_);
    if (writeResult != howMuch)
    {
        Templates::wstring text = systemMessage("Error writing to file. ");
        std::clearerr(file_);
        THROW_UNLESS(IOError, writeResult == howMuch, text);
    }
    position += howMuch;
    // Grows on a rewrite too: a seek must never stop short of a byte that has been written.
    size += howMuch;
}

namespace
{
unsigned int const SHORT_SKIP = 4096;
}

uint64 FileImpl::seek(uint64 target)
{
    uint64 end = absoluteOffset() + remaining();
    if (target > end)
        target = end;
    // Readers re-position before each packet; staying put costs no system call.
    if (readOnly_ && target == position)
        return target;
    // A short step forward (a fill item, the rest of a small value) is read through the runtime's
    // buffer: a seek there would drop that buffer and cost a system call for a few bytes.
    if (readOnly_ && target > position && target - position <= SHORT_SKIP)
    {
        unsigned char scratch[SHORT_SKIP];
        uint64 wanted = target - position;
        uint64 got = std::fread(scratch, 1, size_t(wanted), file_);
        position += got;
        if (got == wanted)
            return target;
        std::clearerr(file_);
    }
    // A stream that is only read seeks without a flush, so that the runtime keeps what it has
    // buffered: walking small packets skips every value.
    bool moved = readOnly_ ? ::fseeko(file_, off_t(target), SEEK_SET) == 0 : Platform::fileSeek(file_, int64(target));
    THROW_UNLESS_TEXT(IOError, moved, "Platform::fileSeek (file_, position)", systemMessage("Error seeking. "));
    position = target;
    return target;
}

uint64 FileImpl::absoluteOffset() const
{
    return position;
}

uint64 FileImpl::remaining() const
{
    return size > position ? size - position : 0;
}

void FileImpl::flush()
{
    if (file_ != nullptr)
        std::fflush(file_);
}
} // namespace File
} // namespace DataIO
} // namespace Vellum
