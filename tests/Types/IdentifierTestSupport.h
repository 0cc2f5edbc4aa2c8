#pragma once
// Helpers shared by the identifier tests: text conversion, random bytes that repeat from run to run
// and a visitor that tells which class it saw, beside those of the value tests.

#include <random>
#include <string>
#include <vector>

#include "Types/Visitor.h"
#include "Utils/Text.h"
#include "ValueTestSupport.h"

namespace Vellum
{
namespace IdentifierTest
{
using ValueTest::Bytes;

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

using ValueTest::Thrown;
using ValueTest::thrownBy;
using ValueTest::thrown;
using ValueTest::ValueOver;

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
