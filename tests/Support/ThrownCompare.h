#pragma once
// Lets a test compare what a call threw with the class code and message it expects in one
// assertion: EXPECT_EQ(thrown<InvalidValue>("text"), thrownBy(...)).

#include <ostream>

#include "Support/Mxf.h"

namespace VellumTest
{
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
} // namespace VellumTest

namespace Vellum
{
namespace KLVTest
{
using VellumTest::operator==;
using VellumTest::thrown;
} // namespace KLVTest
} // namespace Vellum
