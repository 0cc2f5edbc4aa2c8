#include <gtest/gtest.h>

#include "Templates/SafeCast.h"
#include "Utils/Text.h"

using namespace Vellum;

TEST(SafeCast, NarrowsOrThrowsTheCallersClass)
{
    EXPECT_EQ(0xFFFFFFFFu, Templates::safeCast(0xFFFFFFFFull));
    EXPECT_EQ(7u, Templates::safeCast<Exceptions::InvalidElementLength>(7));
    try
    {
        Templates::safeCast(0x100000000ull);
        FAIL() << "no exception";
    }
    catch (Exceptions::IOError const & e)
    {
        EXPECT_EQ("Type size exceeded", Utils::narrow(e.message()));
    }
    EXPECT_THROW(Templates::safeCast<Exceptions::InvalidIndexSegment>(1ull << 40), Exceptions::InvalidIndexSegment);
    EXPECT_THROW(Templates::safeCast<Exceptions::InvalidElementLength>(~0ull), Exceptions::InvalidElementLength);
}
