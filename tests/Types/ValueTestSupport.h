#pragma once
// Helpers shared by the value type tests: a KLV value over given bytes, the wire bytes of a value,
// and what a call threw.

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSink.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "Types/SimpleDataType.h"
#include "Utils/Text.h"

namespace ValueTest
{
typedef std::vector<unsigned char> Bytes;

// A KLV value of `length` bytes (all of them by default) over its own copy of `bytes`.
class ValueOver
{
public:
    explicit ValueOver(Bytes const & bytes)
        : source_(bytes.data(), bytes.size()), value_(source_, bytes.size())
    {
    }
    ValueOver(Bytes const & bytes, Vellum::uint64 length) : source_(bytes.data(), bytes.size()), value_(source_, length)
    {
    }
    Vellum::KLV::Value & value() { return value_; }
    Vellum::DataIO::Memory::MemoryDataSource & source() { return source_; }

private:
    Vellum::DataIO::Memory::MemoryDataSource source_;
    Vellum::KLV::Value value_;
};

// What serialize writes.
inline Bytes wire(Vellum::Types::BaseType const & value)
{
    Vellum::DataIO::Memory::MemoryDataSink sink;
    value.serialize(sink);
    if (sink.serializedSize() == 0)
        return Bytes();
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

// rawBuffer() and serializedSize() of a simple value.
inline Bytes raw(Vellum::Types::SimpleDataType const & value)
{
    return Bytes(value.rawBuffer(), value.rawBuffer() + value.serializedSize());
}

// What a call threw: the error code (0 for nothing, -1 for a foreign exception), the message, and
// for InvalidLength the bytes it carries.
struct Thrown
{
    int code;
    std::string message;
    Bytes readData;
};

inline Thrown thrownBy(std::function<void()> const & call)
{
    try
    {
        call();
    }
    catch (Vellum::Exceptions::InvalidLength const & e)
    {
        return Thrown{e.errorCode(), Vellum::Utils::narrow(e.message()).c_str(),
                      Bytes(e.readData(), e.readData() + e.readDataLength())};
    }
    catch (Vellum::Exceptions::BaseException const & e)
    {
        return Thrown{e.errorCode(), Vellum::Utils::narrow(e.message()).c_str(), Bytes()};
    }
    catch (...)
    {
        return Thrown{-1, "", Bytes()};
    }
    return Thrown{0, "", Bytes()};
}

// Compares code and message only, so that one assertion checks both: EXPECT_EQ(thrown<E>("text"), thrownBy(...)).
inline bool operator==(Thrown const & a, Thrown const & b)
{
    return a.code == b.code && a.message == b.message;
}

inline void PrintTo(Thrown const & t, std::ostream * out)
{
    *out << "code " << t.code << " \"" << t.message << "\"";
}

template <class E>
Thrown thrown(std::string const & message)
{
    return Thrown{E::ERROR_CODE, message, Bytes()};
}

inline std::string narrow(unsigned short const * text)
{
    return Vellum::Utils::narrow(text).c_str();
}
} // namespace ValueTest
