#include "Exceptions/Exceptions.h"

#include <cxxabi.h>
#include <cstdlib>
#include <typeinfo>

#include "Utils/Text.h"

namespace Vellum
{
namespace Platform
{
void outOfMemory()
{
    throw Exceptions::BadAlloc("Error allocating memory", __FILE__, __LINE__);
}
} // namespace Platform

namespace Exceptions
{
struct BaseException::Impl
{
    VELLUM_CLASS_ALLOCATION
    Templates::wstring message;
    Templates::wstring file;
    int32 line;
    Templates::wstring what;
};

namespace
{
Templates::wstring fromNarrow(char const * text)
{
    return text == nullptr ? Templates::wstring() : Utils::wide(text);
}

Templates::wstring fromWide(unsigned short const * text)
{
    return text == nullptr ? Templates::wstring() : Templates::wstring(text);
}

// The readable name of an exception's most derived class.
Templates::wstring typeName(std::type_info const & type)
{
    int status = 0;
    char * demangled = abi::__cxa_demangle(type.name(), nullptr, nullptr, &status);
    Templates::wstring name = Utils::wide(status == 0 && demangled != nullptr ? demangled : type.name());
    std::free(demangled);
    return name;
}
} // namespace

BaseException::BaseException(unsigned short const * message, char const * file, int line) : impl_(new Impl)
{
    impl_->message = fromWide(message);
    impl_->file = fromNarrow(file);
    impl_->line = line;
}

BaseException::BaseException(char const * message, char const * file, int line) : impl_(new Impl)
{
    impl_->message = fromNarrow(message);
    impl_->file = fromNarrow(file);
    impl_->line = line;
}

BaseException::BaseException(char const * file, int line) : impl_(new Impl)
{
    impl_->file = fromNarrow(file);
    impl_->line = line;
}

BaseException::BaseException(BaseException const & other) : impl_(new Impl(*other.impl_)) {}

BaseException & BaseException::operator=(BaseException const & other)
{
    if (this != &other)
    {
        impl_.reset(new Impl(*other.impl_));
    }
    return *this;
}

BaseException::~BaseException() = default;

unsigned short const * BaseException::message() const
{
    return impl_->message.c_str();
}

unsigned short const * BaseException::what() const
{
    try
    {
        if (impl_->what.size() < 1)
        {
            Templates::wstring text = Utils::wide("Exception '");
            text += typeName(typeid(*this));
            text += Utils::wide("' (");
            text += impl_->file;
            text += Utils::wide(":");
            text += Utils::decimal(int64(impl_->line));
            text += Utils::wide("): ");
            text += impl_->message;
            impl_->what.swap(text);
        }
    }
    catch (...)
    {
    }
    return impl_->what.c_str();
}

unsigned short const * BaseException::filename() const
{
    return impl_->file.c_str();
}

void BaseException::filename(char const * file)
{
    impl_->file = fromNarrow(file);
    impl_->what.clear();
}

int BaseException::lineNumber() const
{
    return impl_->line;
}

void BaseException::lineNumber(int line)
{
    impl_->line = line;
    impl_->what.clear();
}

Templates::string BaseException::whatUtf8() const
{
    return Utils::narrow(what());
}

struct InvalidLength::DataImpl
{
    VELLUM_CLASS_ALLOCATION
    Templates::vector<unsigned char> data;
};

InvalidLength::InvalidLength(unsigned short const * message, char const * file, int line)
    : BaseException(message, file, line), data_(new DataImpl)
{
}

InvalidLength::InvalidLength(char const * message, char const * file, int line)
    : BaseException(message, file, line), data_(new DataImpl)
{
}

InvalidLength::InvalidLength(unsigned char const * data, uint64 length, char const * message, char const * file,
                             int line)
    : BaseException(message, file, line), data_(new DataImpl)
{
    if (data != nullptr && length != 0)
        data_->data.assign(data, data + length);
}

InvalidLength::InvalidLength(InvalidLength const & other) : BaseException(other), data_(new DataImpl(*other.data_)) {}

InvalidLength & InvalidLength::operator=(InvalidLength const & other)
{
    if (this != &other)
    {
        BaseException::operator=(other);
        data_.reset(new DataImpl(*other.data_));
    }
    return *this;
}

InvalidLength::~InvalidLength() = default;

unsigned char const * InvalidLength::readData() const
{
    return data_->data.empty() ? nullptr : data_->data.data();
}

uint64 InvalidLength::readDataLength() const
{
    return data_->data.size();
}

namespace Detail
{
Templates::wstring composeCheckText(char const * condition, char const * message)
{
    Templates::wstring text = fromNarrow(condition);
    text += Utils::wide(": ");
    text += fromNarrow(message);
    return text;
}

Templates::wstring composeCheckText(char const * condition, unsigned short const * message)
{
    Templates::wstring text = fromNarrow(condition);
    text += Utils::wide(": ");
    text += fromWide(message);
    return text;
}
} // namespace Detail
} // namespace Exceptions
} // namespace Vellum
