#pragma once
// The exception family: every failure of the library is one of these, thrown by value and caught
// by reference to BaseException.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Exceptions
{
class BaseException
{
public:
    VELLUM_CLASS_ALLOCATION
    BaseException(unsigned short const * message, char const * file, int line);
    BaseException(char const * message, char const * file, int line);
    BaseException(char const * file, int line);
    BaseException(BaseException const & other);
    BaseException & operator=(BaseException const & other);
    virtual ~BaseException();

    // The message alone.
    virtual unsigned short const * message() const;
    // "Exception '<class>' (<file>:<line>): <message>", composed once and kept.
    virtual unsigned short const * what() const;
    virtual int errorCode() const = 0;

    unsigned short const * filename() const;
    void filename(char const * file);
    int lineNumber() const;
    void lineNumber(int line);

    // what() as UTF-8, for narrow streams.
    Templates::string whatUtf8() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

#define VELLUM_DECLARE_EXCEPTION(Name, Code)                                                     \
    class Name : public BaseException                                                             \
    {                                                                                             \
    public:                                                                                       \
        enum                                                                                      \
        {                                                                                         \
            ERROR_CODE = Code                                                                     \
        };                                                                                        \
        Name(unsigned short const * message, char const * file, int line)                        \
            : BaseException(message, file, line)                                                  \
        {                                                                                         \
        }                                                                                         \
        Name(char const * message, char const * file, int line) : BaseException(message, file, line) \
        {                                                                                         \
        }                                                                                         \
        Name(char const * file, int line) : BaseException(file, line) {}                          \
        int errorCode() const override { return Code; }                                           \
    };

VELLUM_DECLARE_EXCEPTION(BadAlloc, 2)
VELLUM_DECLARE_EXCEPTION(BrokenLink, 3)
VELLUM_DECLARE_EXCEPTION(IndexOutOfBounds, 4)
VELLUM_DECLARE_EXCEPTION(InvalidChange, 5)
VELLUM_DECLARE_EXCEPTION(InvalidElement, 6)
VELLUM_DECLARE_EXCEPTION(InvalidElementLength, 7)
VELLUM_DECLARE_EXCEPTION(InvalidFormat, 8)
VELLUM_DECLARE_EXCEPTION(InvalidID, 9)
VELLUM_DECLARE_EXCEPTION(InvalidIndexSegment, 10)
VELLUM_DECLARE_EXCEPTION(InvalidPosition, 12)
VELLUM_DECLARE_EXCEPTION(InvalidLocalTag, 13)
VELLUM_DECLARE_EXCEPTION(InvalidKey, 14)
VELLUM_DECLARE_EXCEPTION(InvalidMetaAttribute, 15)
VELLUM_DECLARE_EXCEPTION(InvalidValue, 16)
VELLUM_DECLARE_EXCEPTION(AlreadySet, 17)
VELLUM_DECLARE_EXCEPTION(InvalidMetadataSet, 18)
VELLUM_DECLARE_EXCEPTION(InvalidMetaElement, 19)
VELLUM_DECLARE_EXCEPTION(InvalidPartitionKind, 21)
VELLUM_DECLARE_EXCEPTION(InvalidPartitionStatus, 22)
VELLUM_DECLARE_EXCEPTION(InvalidStructure, 23)
VELLUM_DECLARE_EXCEPTION(KeyNotFound, 24)
VELLUM_DECLARE_EXCEPTION(IOError, 26)
VELLUM_DECLARE_EXCEPTION(LocalTagNotFound, 27)
VELLUM_DECLARE_EXCEPTION(MetadataSetReferenceNotAllowed, 28)
VELLUM_DECLARE_EXCEPTION(NoFactory, 29)
VELLUM_DECLARE_EXCEPTION(NotEnoughData, 30)
VELLUM_DECLARE_EXCEPTION(NotFound, 31)
VELLUM_DECLARE_EXCEPTION(NotFoundInPrimer, 32)
VELLUM_DECLARE_EXCEPTION(UniversalLabelCollision, 34)
VELLUM_DECLARE_EXCEPTION(InvalidLabel, 35)
VELLUM_DECLARE_EXCEPTION(NotImplemented, 37)
VELLUM_DECLARE_EXCEPTION(InvalidType, 40)
VELLUM_DECLARE_EXCEPTION(OSError, 41)
VELLUM_DECLARE_EXCEPTION(OperationNotAllowed, 42)
VELLUM_DECLARE_EXCEPTION(InvalidState, 43)

#undef VELLUM_DECLARE_EXCEPTION

// Carries the bytes that had been read when the failure struck.
class InvalidLength : public BaseException
{
public:
    enum
    {
        ERROR_CODE = 39
    };
    InvalidLength(unsigned short const * message, char const * file, int line);
    InvalidLength(char const * message, char const * file, int line);
    InvalidLength(unsigned char const * data, uint64 length, char const * message, char const * file, int line);
    InvalidLength(InvalidLength const & other);
    InvalidLength & operator=(InvalidLength const & other);
    ~InvalidLength() override;
    int errorCode() const override { return ERROR_CODE; }

    unsigned char const * readData() const;
    uint64 readDataLength() const;

private:
    struct DataImpl;
    Templates::auto_ptr<DataImpl> data_;
};

namespace Detail
{
// "<condition>: <message>" as interface text.
Templates::wstring composeCheckText(char const * condition, char const * message);
Templates::wstring composeCheckText(char const * condition, unsigned short const * message);

inline unsigned short const * messageText(Templates::wstring const & m) { return m.c_str(); }
inline char const * messageText(char const * m) { return m; }
inline unsigned short const * messageText(unsigned short const * m) { return m; }
inline char const * messageText(Templates::string const & m) { return m.c_str(); }
} // namespace Detail

// The never-returning helper behind THROW_UNLESS: one instantiation for each exception class.
template <class E, class M>
[[noreturn]] void throwFailedCheck(char const * condition, M const & message, char const * file, int line)
{
    Templates::wstring text = Detail::composeCheckText(condition, Detail::messageText(message));
    throw E(text.c_str(), file, line);
}
} // namespace Exceptions
} // namespace Vellum

// Throws Exceptions::ExceptionClass with "<condition text>: <message>" when the condition fails.
#define THROW_UNLESS(ExceptionClass, condition, message)                                         \
    do                                                                                            \
    {                                                                                             \
        if (!(condition))                                                                         \
            ::Vellum::Exceptions::throwFailedCheck<::Vellum::Exceptions::ExceptionClass>(        \
                #condition, message, __FILE__, __LINE__);                                          \
    } while (false)

// The same with the condition's text given explicitly, where the code's own expression differs
// from the text that the message must carry.
#define THROW_UNLESS_TEXT(ExceptionClass, condition, conditionText, message)                     \
    do                                                                                            \
    {                                                                                             \
        if (!(condition))                                                                         \
            ::Vellum::Exceptions::throwFailedCheck<::Vellum::Exceptions::ExceptionClass>(        \
                conditionText, message, __FILE__, __LINE__);                                       \
    } while (false)

// A plain throw: the message stands alone.
#define VELLUM_THROW(ExceptionClass, message)                                                    \
    throw ::Vellum::Exceptions::ExceptionClass(::Vellum::Exceptions::Detail::messageText(message), \
                                               __FILE__, __LINE__)
