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
#include "Support/ThrownCompare.h"

namespace ValueTest
{
using VellumTest::Bytes;

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

using VellumTest::thrown;
using VellumTest::Thrown;
using VellumTest::thrownBy;

inline std::string narrow(unsigned short const * text)
{
    return Vellum::Utils::narrow(text).c_str();
}
} // namespace ValueTest
