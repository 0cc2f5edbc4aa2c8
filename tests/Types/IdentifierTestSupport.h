#pragma once
// Helpers shared by the identifier tests: text conversion, random bytes that repeat from run to run, a
// visitor that tells which class it saw, and a way to catch an exception's code and message.

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "Types/Visitor.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace IdentifierTest
{
typedef std::vector<unsigned char> Bytes;

inline Templates::wstring w(char const * text)
{
    return Utils::wide(text);
}

inline Templates::wstring w(std::string const & text)
{
    return Utils::wide(text.c_str());
}

inline std::string n(Templates::wstring const & text)
{
    return Utils::narrow(text).c_str();
}

inline Bytes bytesOf(unsigned char const * data, std::size_t size)
{
    return Bytes(data, data + size);
}

// The same sequence on every run.
inline Bytes randomBytes(std::mt19937 & generator, std::size_t size)
{
    Bytes bytes(size);
    for (unsigned char & b : bytes)
        b = static_cast<unsigned char>(generator() & 0xFF);
    return bytes;
}

// What a call threw: the error code (0 for nothing, -1 for a foreign exception), the message
// and, for InvalidLength, how many bytes it carried.
struct Thrown
{
    int code;
    std::string message;
    uint64 readDataLength;
};

inline Thrown thrownBy(std::function<void()> const & call)
{
    try
    {
        call();
    }
    catch (Exceptions::InvalidLength const & e)
    {
        return Thrown{e.errorCode(), Utils::narrow(e.message()).c_str(), e.readDataLength()};
    }
    catch (Exceptions::BaseException const & e)
    {
        return Thrown{e.errorCode(), Utils::narrow(e.message()).c_str(), 0};
    }
    catch (...)
    {
        return Thrown{-1, "", 0};
    }
    return Thrown{0, "", 0};
}

// A value of exactly the given bytes over its own memory source.
struct ValueOver
{
    explicit ValueOver(Bytes const & bytes)
        : source(bytes.data(), bytes.size()), value(source, bytes.size())
    {
    }
    DataIO::Memory::MemoryDataSource source;
    KLV::Value value;
};

// Remembers the name of the last class it visited.
class NameVisitor : public Types::Visitors::Visitor, public Types::Visitors::NonConstVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
#define VELLUM_TEST_NAME_VISIT(Type)                                                             \
    void visit(Types::Type const &) override { seen = #Type; }                                    \
    void visit(Types::Type &) override { seen = "non-const " #Type; }
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_TEST_NAME_VISIT)
#undef VELLUM_TEST_NAME_VISIT
    std::string seen;
};
} // namespace IdentifierTest
} // namespace Vellum
