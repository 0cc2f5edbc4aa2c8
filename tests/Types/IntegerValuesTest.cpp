#include <gtest/gtest.h>

#include <limits>

#include "Types/Integers.h"
#include "ValueTestSupport.h"

using namespace Vellum;
using namespace ValueTest;

namespace
{
// Native -> wire -> read back, for one integer class.
template <class T>
void roundTrip(typename T::NativeType number, Bytes const & expected)
{
    T value(number);
    EXPECT_EQ(number, value.value());
    EXPECT_EQ(expected, raw(value));
    EXPECT_EQ(expected, wire(value));
    EXPECT_EQ(expected.size(), value.serializedSize());

    // Read back from a value with one byte more than the number: that byte stays unread.
    Bytes data = expected;
    data.push_back(0xEE);
    ValueOver over(data);
    T read(over.value());
    EXPECT_EQ(number, read.value());
    EXPECT_EQ(1u, over.value().remaining());

    // Short data fails in readValue, carrying the bytes that were there.
    Bytes shortData(expected.begin(), expected.end() - 1);
    ValueOver shortOver(shortData);
    Thrown t = thrownBy([&] { T failed(shortOver.value()); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in Value", t.message);
    EXPECT_EQ(shortData, t.data);
}
} // namespace

TEST(IntegerValues, HoldTheirBytesBigEndian)
{
    roundTrip<Types::UInt32>(0x01020304u, {1, 2, 3, 4});
    roundTrip<Types::UInt8>(0xFE, {0xFE});
    roundTrip<Types::UInt16>(0xABCD, {0xAB, 0xCD});
    roundTrip<Types::UInt64>(0x0102030405060708ull, {1, 2, 3, 4, 5, 6, 7, 8});
    roundTrip<Types::UInt64>(std::numeric_limits<uint64>::max(), Bytes(8, 0xFF));
    roundTrip<Types::Int8>(-2, {0xFE});
    roundTrip<Types::Int16>(-2, {0xFF, 0xFE});
    roundTrip<Types::Int32>(std::numeric_limits<int32>::min(), {0x80, 0, 0, 0});
    roundTrip<Types::Int32>(0x7F000001, {0x7F, 0, 0, 1});
    roundTrip<Types::Int64>(-1, Bytes(8, 0xFF));
    roundTrip<Types::Length>(0x100000000ll, {0, 0, 0, 1, 0, 0, 0, 0});
    roundTrip<Types::Position>(-25, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xE7});
}

TEST(IntegerValues, CopiesAreDeep)
{
    Types::UInt32 a(7);
    Types::UInt32 b(a);
    Types::UInt32 c(9);
    c = a;
    EXPECT_NE(a.rawBuffer(), b.rawBuffer());
    EXPECT_NE(a.rawBuffer(), c.rawBuffer());
    a = Types::UInt32(8);
    EXPECT_EQ(8u, a.value());
    EXPECT_EQ(7u, b.value());
    EXPECT_EQ(7u, c.value());

    Templates::auto_ptr<Types::SimpleDataType> clone = Types::Position(-3).clone();
    Types::Position const * position = dynamic_cast<Types::Position const *>(clone.get());
    ASSERT_NE(nullptr, position);
    EXPECT_EQ(-3, position->value());
}
